#pragma once

namespace OverlayEditor {

/// The part of a mouse tool that a shape with a list of points talks to: others than the tool change
/// the list as well.
class PointsTool {
  public:
    /// The list has changed: points may have come or gone, and indices may mean other points.
    virtual void resetPoints_() = 0;

  protected:
    ~PointsTool() = default;
};

}  // namespace OverlayEditor
