#pragma once

#include "pi/PIApplication.h"

namespace OverlayEditor {

/// The one plug-in object: made by HPI_InitializeFunctionMap, destroyed by the host's Close.
class OverlayEditorPlugin final : public PIApp::PIApplication_v1_24 {
  public:
    std::string Name() const override;
    std::string Description() const override;
};

}  // namespace OverlayEditor
