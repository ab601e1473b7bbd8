#pragma once

#include "model/ToolMaker.h"

namespace OverlayEditor {

/// Makes the tools with which shapes are drawn and reshaped in the view.
class MouseToolMaker final : public ToolMaker {
  public:
    MouseToolPtr make(const Preferences& preferences, CylinderShape& shape) override;
    MouseToolPtr make(const Preferences& preferences, OrbitShape& shape) override;
    MouseToolPtr make(const Preferences& preferences, PolygonShape& shape) override;
    MouseToolPtr make(const Preferences& preferences, RectangleShape& shape) override;
    MouseToolPtr make(const Preferences& preferences, FreeDrawShape& shape) override;
    MouseToolPtr make(const Preferences& preferences, AnnotationShape& shape) override;
};

}  // namespace OverlayEditor
