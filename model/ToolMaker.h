#pragma once

#include "model/Installed.h"
#include "model/ToolRetirement.h"

namespace OverlayEditor {

class AnnotationShape;
class CylinderShape;
class FreeDrawShape;
class OrbitShape;
class PolygonShape;
class Preferences;
class RectangleShape;

/// Gives a shape its mouse tool, which the model does not know: without an installed one shapes have none.
/// One overload a concrete shape, so that a new one does not compile until its tool exists.
class ToolMaker : public Installed<ToolMaker> {
  public:
    virtual ~ToolMaker() = default;

    /// Null for a circular shape of no subtype. The tool keeps the references.
    virtual MouseToolPtr make(const Preferences& preferences, CylinderShape& shape) = 0;
    virtual MouseToolPtr make(const Preferences& preferences, OrbitShape& shape) = 0;
    virtual MouseToolPtr make(const Preferences& preferences, PolygonShape& shape) = 0;
    virtual MouseToolPtr make(const Preferences& preferences, RectangleShape& shape) = 0;
    virtual MouseToolPtr make(const Preferences& preferences, FreeDrawShape& shape) = 0;
    virtual MouseToolPtr make(const Preferences& preferences, AnnotationShape& shape) = 0;
};

}  // namespace OverlayEditor
