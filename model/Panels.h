#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "common/Vec3.h"
#include "geo/PointConverter.h"

/// The property panels as the shapes see them. A panel only holds values: the shape writes its state
/// into it, and reads the values back when the panel reports an edit. Setters never report an edit. A
/// getter answers only for a field that the user has edited since its last setter: what nobody typed is
/// not written back, so that a value shown with two decimals keeps all of its digits.
namespace OverlayEditor {

/// Called by a panel after each edit of the user's.
using PanelChange = std::function<void()>;

/// Line width and colour, part of a panel.
class LineStyleGUI {
  public:
    virtual ~LineStyleGUI() = default;
    /// Red in the top byte, alpha in the lowest.
    virtual void setColor(std::uint32_t rgba) = 0;
    virtual std::uint32_t color() const = 0;
    virtual void setWidth(int pixels) = 0;
    virtual int width() const = 0;
};

/// Filled flag and fill colour, part of a panel.
class FillStyleGUI {
  public:
    virtual ~FillStyleGUI() = default;
    virtual void setFilled(bool filled) = 0;
    virtual bool filled() const = 0;
    virtual void setColor(std::uint32_t rgba) = 0;
    virtual std::uint32_t color() const = 0;
};

/// Panel of the circular shapes. Which fields it has depends on the subtype; setters of fields it does not
/// have do nothing, their getters answer nothing. Lengths in metres, angles in radians.
class CylinderPanel {
  public:
    virtual ~CylinderPanel() = default;

    virtual void setDrawCheck(bool drawn) = 0;
    virtual bool drawCheck() const = 0;
    virtual void setCenterLla(const halCore::Vec3& lla) = 0;
    virtual std::optional<halCore::Vec3> centerLla() const = 0;
    virtual void setXradius(double meters) = 0;
    virtual std::optional<double> xRadius() const = 0;
    virtual void setYradius(double meters) = 0;
    virtual std::optional<double> yRadius() const = 0;
    virtual void setHeight(double meters) = 0;
    virtual std::optional<double> height() const = 0;
    virtual void setStartEndAngles(double startRad, double endRad) = 0;
    virtual std::optional<double> startAngle() const = 0;
    virtual std::optional<double> endAngle() const = 0;
    virtual LineStyleGUI& lineStyle() = 0;
    virtual FillStyleGUI& fillStyle() = 0;

    /// Used to show the centre relative to a platform; null for absolute. Not owned.
    virtual void setPointConverter(PointConverter* converter) = 0;
    /// Units or precision changed: every field is labelled and shown anew.
    virtual void notifyPrefsUpdate() = 0;
};

}  // namespace OverlayEditor
