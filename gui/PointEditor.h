#pragma once

#include <optional>

#include "common/Vec3.h"

namespace OverlayEditor {

/// Fields for one geodetic position in one way of writing it: radians, metres.
class PointEditor {
  public:
    virtual ~PointEditor() = default;
    /// Shows a position; what the user typed before no longer counts as an edit.
    virtual void setPosition(const halCore::Vec3& lla) = 0;
    /// The position with what the user typed since the last setPosition; nothing when there was no edit.
    /// Components that nobody typed keep all of their digits.
    virtual std::optional<halCore::Vec3> edited() const = 0;
    /// Whether more than the height was typed since the last setPosition.
    virtual bool placeEdited() const = 0;
    /// Units or precision changed: everything is shown anew.
    virtual void notifyPrefsUpdate() = 0;
    virtual void setShown(bool shown) = 0;
    virtual void setEnabled(bool enabled) = 0;
};

}  // namespace OverlayEditor
