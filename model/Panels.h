#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "geo/PointConverter.h"
#include "model/PlacedPoint.h"

/// The property panels as the shapes see them. A panel only holds values: the shape writes its state
/// into it, and reads the values back when the panel reports an edit. Setters never report an edit. A
/// getter answers only for a field that the user has edited since its last setter: what nobody typed is
/// not written back, so that a value shown with two decimals keeps all of its digits.
namespace OverlayEditor {

class PolygonShape;

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

/// What every panel has.
class ShapePanel {
  public:
    virtual ~ShapePanel() = default;

    /// Used to show positions as offsets; null for places. Not owned.
    virtual void setPointConverter(const PointConverter* converter) = 0;
    /// Units or precision changed: every field is labelled and shown anew.
    virtual void notifyPrefsUpdate() = 0;
};

/// A panel whose check button draws or hides the shape.
class CheckedPanel : public ShapePanel {
  public:
    virtual void setDrawCheck(bool drawn) = 0;
    virtual bool drawCheck() const = 0;
};

/// Panel of the circular shapes. Which fields it has depends on the subtype; setters of fields it does not
/// have do nothing, their getters answer nothing. Lengths in metres, angles in radians.
class CylinderPanel : public CheckedPanel {
  public:
    virtual void setCenterLla(const PlacedPoint& point) = 0;
    virtual std::optional<PlacedPoint> centerLla() const = 0;
    /// Whether more than an altitude of it was edited.
    virtual bool placesCenter() const = 0;
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
};

/// Panel of the orbit. Lengths in metres.
class OrbitPanel : public CheckedPanel {
  public:
    virtual void setCenterLla(const PlacedPoint& point) = 0;
    virtual std::optional<PlacedPoint> centerLla() const = 0;
    /// Whether more than an altitude of it was edited; the same of the second one.
    virtual bool placesCenter() const = 0;
    virtual bool placesCenter2() const = 0;
    virtual void setCenterLla2(const PlacedPoint& point) = 0;
    virtual std::optional<PlacedPoint> centerLla2() const = 0;
    virtual void setRadius(double meters) = 0;
    virtual std::optional<double> radius() const = 0;
    virtual LineStyleGUI& lineStyle() = 0;
    virtual FillStyleGUI& fillStyle() = 0;
};

/// Panel of lines and polygons. Its list of points edits the shape's points itself.
class PolygonPanel : public CheckedPanel {
  public:
    /// Shows the shape's points; the shape must outlive the panel.
    virtual void setShape(PolygonShape& shape) = 0;
    /// Goes to a point, one that was changed for instance, and shows it and the number of points.
    virtual void refreshPoint(unsigned long index) = 0;
    virtual unsigned long shownPoint() const = 0;
    virtual LineStyleGUI& lineStyle() = 0;
    virtual FillStyleGUI& fillStyle() = 0;
};

/// Panel of rectangles and triangles: an anchor, the centre or the first corner, and either the size or the
/// other corner, whichever the user has chosen. Lengths in metres, width to the east and height to the
/// north. Once something is edited, the getters answer the rectangle that the fields describe.
class RectanglePanel : public CheckedPanel {
  public:
    virtual void setAnchor(const PlacedPoint& point) = 0;
    virtual void setAnchorCenter(bool center) = 0;
    virtual bool isAnchorCenter() const = 0;
    virtual void setLastCorner(const PlacedPoint& point) = 0;
    virtual void updateWidthHeight(double width, double height) = 0;

    /// Whether the user has edited the anchor's position, the size or the corner since the setters.
    virtual bool edited() const = 0;
    /// Whether a width, a height or the place of the other corner was edited.
    virtual bool spanned() const = 0;
    /// Whether width and height span the rectangle, and not the other corner.
    virtual bool isSized() const = 0;
    /// Whether more than an altitude was edited. Otherwise the corners stay where they are.
    virtual bool reshaped() const = 0;
    virtual PlacedPoint anchor() const = 0;
    virtual PlacedPoint getFirstCorner() const = 0;
    virtual PlacedPoint getLastCorner() const = 0;
    virtual double getWidth() const = 0;
    virtual double getHeight() const = 0;
    virtual LineStyleGUI& lineStyle() = 0;
    virtual FillStyleGUI& fillStyle() = 0;
};

/// Panel of lines drawn by hand.
class FreeDrawPanel : public CheckedPanel {
  public:
    virtual void setPixelPrecision(int pixels) = 0;
    virtual int pixelPrecision() const = 0;
    virtual LineStyleGUI& lineStyle() = 0;
};

/// Panel of labels.
class AnnotationPanel : public CheckedPanel {
  public:
    void setDraw(bool drawn) { setDrawCheck(drawn); }
    bool isDrawn() const { return drawCheck(); }
    virtual void setPosition(const PlacedPoint& point) = 0;
    virtual std::optional<PlacedPoint> position() const = 0;
    /// Whether more than an altitude of it was edited.
    virtual bool places() const = 0;
    /// Red in the top byte, alpha in the lowest.
    virtual void setColor(std::uint32_t rgba) = 0;
    virtual std::uint32_t color() const = 0;
    /// A font file's name; one that is not on the list is kept until the user chooses another.
    virtual void setFontName(const std::string& fileName) = 0;
    virtual std::string fontName() const = 0;
    virtual void setFontSize(int points) = 0;
    virtual int fontSize() const = 0;
};

}  // namespace OverlayEditor
