#pragma once

#include <functional>
#include <string>

#include "gui/RefusedText.h"
#include "model/StepPreview.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// Whose next click a line stands for.
struct NextTarget {
    /// The shape that is drawn, null for none.
    std::function<Shape*()> shape;
    /// Called before the shape changes, and after it has.
    std::function<void()> begin;
    std::function<void()> taken;
    /// Drawing is over.
    std::function<void()> finish;
};

/// A line that does what the next click would, at exactly the place that it says. While it is typed it tells,
/// below and as an orange outline in the view, what was understood; Enter takes it, and Enter in the empty
/// line finishes. Where the host knows no such lines a changed one is taken as it is left, without being
/// shown before.
class NextRow {
  public:
    /// \param table two columns; the row takes two lines of it
    NextRow(PIGUI::PICanvas* table, NextTarget target);
    ~NextRow() { callbacks_.disconnect(); }
    NextRow(const NextRow&) = delete;
    NextRow& operator=(const NextRow&) = delete;

    void setEnabled(bool enabled) { field_.setEnabled(enabled); }
    /// Shows anew what the line would do: the shape has changed.
    void refresh();
    /// Another shape is drawn: what was typed goes.
    void forget();

    int onCmdEntered(PIObject* sender, void* data);
    int onCmdTyping(PIObject* sender, void* data);

  private:
    UTILS::TypedStep read_(const Shape& shape, const std::string& text, std::string& reason) const;

    NextTarget target_;
    StepPreview preview_;
    CallbackList<NextRow> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PITextField field_;
    PIGUI::PILabel filler_;
    PIGUI::PILabel understood_;
    RefusedText refused_{field_};
    bool isLine_ = false;
};

}  // namespace OverlayEditor
