#pragma once

#include <memory>

#include "model/DrawingStep.h"

namespace OverlayEditor {

/// What a step would make of a shape, shown in the host's view in orange while it is typed: of a line or a
/// polygon what comes to it, of others all; and a mark where a first point would be.
class StepPreview {
  public:
    /// In place of what it showed before. The shape stays as it is. \return as takeStep
    StepTaken show(const Shape& shape, const UTILS::TypedStep& step, double altitude);
    void hide() { shown_.reset(); }

  private:
    std::unique_ptr<Shape> shown_;
};

}  // namespace OverlayEditor
