#pragma once

namespace OverlayEditor {

struct ShapeState;

/// How a concrete shape tells what it is. (A class by itself: those above the concrete shapes have the
/// virtual functions that others call by their places, and no more.)
class Stateful {
  public:
    /// Fills in all of it. \param like null, or a state with which it shares what is the same
    virtual void saveState_(ShapeState& state, const ShapeState* like) const = 0;
    /// Takes over what Shape itself does not have.
    virtual void takeState_(const ShapeState& state) = 0;

  protected:
    ~Stateful() = default;
};

}  // namespace OverlayEditor
