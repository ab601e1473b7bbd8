#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "geo/TypedPosition.h"
#include "gui/PanelRows.h"
#include "model/PlacedPoint.h"

namespace OverlayEditor {

/// Three rows for one position in one way of writing it: radians, metres.
class PointEditor {
  public:
    virtual ~PointEditor() = default;
    /// Shows a position; what the user typed before no longer counts as an edit.
    virtual void setPosition(const PlacedPoint& point) = 0;
    /// The position with what the user typed since the last setPosition; nothing when there was no edit.
    /// Components that nobody typed keep all of their digits.
    virtual std::optional<PlacedPoint> edited() const = 0;
    /// Whether more than the height was typed since the last setPosition.
    virtual bool placeEdited() const = 0;
    /// Asked about texts that are nothing by themselves: whether they are whole positions, which are then
    /// taken. \see ValueUnitEntry::Taker
    using Taker = std::function<bool(const std::string& text, UTILS::TypedInto into, std::string& reason)>;
    virtual void setTaker(const Taker& taker) = 0;
    virtual void setShown(bool shown) {
        for (Row* row : rows_()) row->setShown(shown);
    }
    void setEnabled(bool enabled) {
        for (Row* row : rows_()) row->setEnabled(enabled);
    }

    /// The position in view is that of another point.
    void startAnew() {
        for (Row* row : rows_()) row->startAnew();
    }

  protected:
    using Row = PanelRow<PIGUI::PITextField>;
    virtual std::array<Row*, 3> rows_() = 0;
};

}  // namespace OverlayEditor
