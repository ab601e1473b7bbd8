#include "model/ZelToSerializer.h"

#include <cmath>
#include <optional>
#include <utility>

#include "common/Notify.h"
#include "format/Parser.h"
#include "format/ShapeCast.h"
#include "format/ShapeFields.h"
#include "geo/Angles.h"
#include "model/CylinderShape.h"
#include "model/ShapeKinds.h"
#include "model/ShapeLabel.h"
#include "pi/PICommon.h"

namespace OverlayEditor {
namespace {

namespace ZEL = halCore::ZEL;
using halCore::Vec3;
using Type = Serializer::ShapeType;

/// A cylinder with this sweep is none that is meant as a wedge's.
constexpr double kSweepOfACylinder = 0.6366197723675814;
/// A sweep this close to a full turn is one.
constexpr double kSameAngle = 1e-10;

/// The value of an attribute that may not be set.
template <typename Value, typename Object>
std::optional<Value> valueOf(const Object& object, int (Object::*getter)(Value&) const) {
    Value value{};
    if ((object.*getter)(value) != 0) return std::nullopt;
    return value;
}

/// Tells a target one shape's positions: places as they are, offsets with what they count from.
class Placement {
  public:
    using Use = Serializer::Use;

    Placement(const ZEL::ZelShape& shape, Serializer& target)
        : target_(target), relative_(shape.isRelative()), frame_(target.pointConverter()) {
        if (!relative_) return;
        const auto reference = valueOf(shape, &ZEL::ZelShape::getReferencePosition);
        if (!reference) return;
        own_.emplace().setReferenceLla(*reference, 0);
        frame_ = &*own_;
    }
    Placement(const Placement&) = delete;
    Placement& operator=(const Placement&) = delete;

    bool isPossible() const { return !relative_ || frame_; }
    /// \param own null, or the shape whose positions they are when it gives them away
    void giveAll(Use use, const std::vector<Vec3>& positions, ZEL::ZelShape* own) const {
        if (relative_ || use != Use::Point)
            for (const Vec3& position : positions) give(use, position);
        else if (own)
            target_.takePoints(std::exchange(*ZEL::pointsOf(*own), {}));
        else
            target_.addPoints(positions);
    }
    void give(Use use, const Vec3& position) const {
        if (relative_)
            target_.giveOffset(use, position, *frame_, own_.has_value());
        else
            target_.give(use, position);
    }

  private:
    Serializer& target_;
    bool relative_;
    std::optional<PointConverter> own_;
    const PointConverter* frame_;
};

/// Whether four corners, in their order, are those of a flat box along the meridians and parallels (or along
/// the axes, when they are offsets).
bool isBox(const std::vector<Vec3>& p) {
    if (p.size() != 4) return false;
    if (p[0].z() != p[1].z() || p[0].z() != p[2].z() || p[0].z() != p[3].z()) return false;
    const bool alongX =
        p[0].x() == p[1].x() && p[1].y() == p[2].y() && p[2].x() == p[3].x() && p[3].y() == p[0].y();
    const bool alongY =
        p[0].y() == p[1].y() && p[1].x() == p[2].x() && p[2].y() == p[3].y() && p[3].x() == p[0].x();
    return alongX || alongY;
}

std::string nameOf(const ZEL::ZelShape& shape) {
    if (const auto* annotation = ZEL::shapeAs<ZEL::Annotation>(shape)) return annotation->label();
    std::string name;
    shape.getName(name);
    return name;
}

void lineColor(Serializer& target, const ZEL::Color& color) {
    target.setLineColor(color.red(), color.green(), color.blue(), color.alpha());
}

void style(Serializer& target, const ZEL::ZelShape& shape) {
    ZEL::Color line(255, 0, 0, 255);
    int width = 1;
    if (const auto* fillable = ZEL::shapeAs<ZEL::FillableShape>(shape)) {
        ZEL::Color fill(255, 0, 0, 255);
        if (const auto color = valueOf(*fillable, &ZEL::FillableShape::getLineColor)) line = fill = *color;
        if (const auto color = valueOf(*fillable, &ZEL::FillableShape::getFillColor)) fill = *color;
        width = valueOf(*fillable, &ZEL::FillableShape::getLineWidth).value_or(width);
        target.setFilled(valueOf(*fillable, &ZEL::FillableShape::getFilled).value_or(false));
        target.setFillColor(fill.red(), fill.green(), fill.blue(), fill.alpha());
    }
    lineColor(target, line);
    target.setLineWidth(width);
}

struct Radii {
    std::optional<double> major, minor;
};

/// Halves of the axes that the file sets; the radius stands in for an axis, and one axis for the other.
Radii radiiOf(const std::optional<double>& radius, const std::optional<double>& majorAxis,
              const std::optional<double>& minorAxis) {
    Radii radii{radius, radius};
    if (majorAxis) radii.major = 0.5 * *majorAxis;
    if (minorAxis) radii.minor = 0.5 * *minorAxis;
    if (!radii.major) radii.major = radii.minor;
    if (!radii.minor) radii.minor = radii.major;
    return radii;
}

Radii radiiOf(const ZEL::CircularShape& shape) {
    const auto radius = valueOf(shape, &ZEL::CircularShape::getRadius);
    if (const auto* ellipse = ZEL::shapeAs<ZEL::EllipticalShape>(shape))
        return radiiOf(radius, valueOf(*ellipse, &ZEL::EllipticalShape::getMajorAxis),
                       valueOf(*ellipse, &ZEL::EllipticalShape::getMinorAxis));
    if (const auto* ellipsoid = ZEL::shapeAs<ZEL::Ellipsoid>(shape))
        return radiiOf(radius, valueOf(*ellipsoid, &ZEL::Ellipsoid::getMajorAxis),
                       valueOf(*ellipsoid, &ZEL::Ellipsoid::getMinorAxis));
    return {radius, std::nullopt};
}

void sector(Serializer& target, const ZEL::EllipticalShape& shape) {
    auto sweep = valueOf(shape, &ZEL::EllipticalShape::getAngleSweep);
    if (!sweep) return;
    // Bounds that close to each other would be one, from below 0.
    if (std::abs(*sweep) < kSameAngle) sweep = std::abs(*sweep);
    const double start = valueOf(shape, &ZEL::EllipticalShape::getAngleStart).value_or(0.0);
    // A sweep that is lost in the sum is still no full turn.
    const double other =
        start + *sweep != start ? start + *sweep : std::nextafter(start, start + std::copysign(1.0, *sweep));
    if (std::abs(*sweep) >= halCore::kTwoPi - kSameAngle)
        target.setStartEndAngles(start, start + halCore::kTwoPi);
    else if (*sweep < 0.0)
        target.setStartEndAngles(other, start);
    else
        target.setStartEndAngles(start, other);
}

void circular(Serializer& target, const ZEL::CircularShape& shape, Type type) {
    const Radii radii = radiiOf(shape);
    if (radii.major) target.setMajorRadius(*radii.major);
    if (radii.minor) target.setMinorRadius(*radii.minor);
    if (const auto* ellipse = ZEL::shapeAs<ZEL::EllipticalShape>(shape)) {
        if (type != Type::Cylinder) sector(target, *ellipse);
        if (const auto* cylinder = ZEL::shapeAs<ZEL::Cylinder>(shape))
            if (const auto height = valueOf(*cylinder, &ZEL::Cylinder::getHeight)) target.setHeight(*height);
        return;
    }
    if (const auto* high = ZEL::shapeAs<ZEL::CircularHeightShape>(shape))
        if (const auto height = valueOf(*high, &ZEL::CircularHeightShape::getHeight))
            // To a host, an ellipsoid that is not above 0 high has no height.
            if (type != Type::Ellipsoid || *height > 0.0) target.setHeight(*height);
}

void annotationStyle(Serializer& target, const ZEL::Annotation& annotation) {
    if (const auto font = valueOf(annotation, &ZEL::Annotation::getFontName)) target.setFontName(*font);
    if (const auto size = valueOf(annotation, &ZEL::Annotation::getTextSize)) target.setTextSize(*size);
    if (const auto color = valueOf(annotation, &ZEL::Annotation::getTextColor)) lineColor(target, *color);
}

bool isWedge(const ZEL::Cylinder& cylinder) {
    const auto sweep = valueOf<double, ZEL::EllipticalShape>(cylinder, &ZEL::EllipticalShape::getAngleSweep);
    return sweep && *sweep != kSweepOfACylinder;
}

}  // namespace

int ZelToSerializer::load(Serializer& target, std::istream& text, unsigned long platformId,
                          const std::string& sourceName) const {
    std::vector<ZEL::ZelShapePtr> shapes;
    ZEL::Parser().parse(text, shapes);
    return replay(target, shapes, platformId, sourceName);
}

int ZelToSerializer::replay(Serializer& target, std::span<const ZEL::ZelShapePtr> shapes,
                            unsigned long platformId, const std::string& sourceName) const {
    if (shapes.empty()) {
        if (halNotify::isNotifyEnabled(halNotify::Error))
            PICommon::Notify(halNotify::Error)
                << "Could not load " << sourceName << ", no valid shapes found\n";
        return 1;
    }
    for (const auto& shape : shapes) serializeOneZel_(target, *shape, platformId, nullptr);
    return 0;
}

std::string_view ZelToSerializer::take(Serializer& target, ZEL::ZelShape& shape,
                                       unsigned long platformId) const {
    return serializeOneZel_(target, shape, platformId, &shape);
}

Serializer::ShapeType ZelToSerializer::getShapeType_(const ZEL::ZelShape& shape) const {
    const ZEL::ShapeType block = shape.shapeType();
    if (block == ZEL::ShapeType::Points) return Type::Points;
    if (block == ZEL::ShapeType::LineSegs) return Type::LineSegs;
    for (const ShapeKind& kind : shapeKinds())
        if (kind.block == block && kind.read != Type::None) return kind.read;
    return Type::None;
}

Serializer::ShapeType ZelToSerializer::typeOf(const ZEL::ZelShape& shape) const {
    const Type type = getShapeType_(shape);
    if (type == Type::Cylinder && isWedge(static_cast<const ZEL::Cylinder&>(shape))) return Type::Wedge;
    return type == Type::Polygon && isBox(*ZEL::pointsOf(shape)) ? Type::Rectangle : type;
}

std::string_view ZelToSerializer::whyLeftOut(const ZEL::ZelShape& shape, bool hasFrame) const {
    return whyLeftOut_(shape, typeOf(shape), hasFrame);
}

std::string_view ZelToSerializer::whyLeftOut_(const ZEL::ZelShape& shape, Type type, bool hasFrame) const {
    if (type == Type::None) return "the editor has no such shape";
    const auto* const round = ZEL::shapeAs<ZEL::CircularShape>(shape);
    Vec3 reference;
    const bool isPossible = !shape.isRelative() || hasFrame || shape.getReferencePosition(reference) == 0;
    // A label can still be put somewhere by the user.
    if (!isPossible && type != Type::Annotation)
        return "its position is relative to a platform, and it has none";
    if (!round) return {};
    if (!shape.isRelative() && !ZEL::anchorOf(shape)) return "it has no center";
    if (type == Type::Orbit &&
        !valueOf(static_cast<const ZEL::Orbit&>(shape), &ZEL::Orbit::getCenterPosition2))
        return "it has no second center";
    const Radii radii = radiiOf(*round);
    for (const auto& radius : {radii.major, radii.minor})
        if (radius && !CylinderShape::isRadius(*radius))
            return "its radius reaches round more than half of the earth";
    return {};
}

std::string_view ZelToSerializer::serializeOneZel_(Serializer& target, const ZEL::ZelShape& shape,
                                                   unsigned long platformId, ZEL::ZelShape* own) const {
    // What a shape lacks first: one that cannot be placed must not be begun.
    const Type type = typeOf(shape);
    const std::string_view reason = whyLeftOut_(shape, type, target.pointConverter() != nullptr);
    if (!reason.empty() && type != Type::None && halNotify::isNotifyEnabled(halNotify::Error))
        halNotify::notify(halNotify::Error)
            << "The " << labelOf(shape) << " cannot be edited and is left out: " << reason;
    if (!reason.empty()) return reason;
    const Placement placement(shape, target);
    const auto* const points = ZEL::pointsOf(shape);
    auto position = ZEL::anchorOf(shape);
    // An offset that is not given is zero: such a shape stands on its platform.
    if (!position && shape.isRelative()) position = Vec3();

    target.beginShape(type, platformId);
    target.setItemName(nameOf(shape));
    style(target, shape);
    if (points) {
        const auto use = type == Type::Rectangle ? Serializer::Use::Corner : Serializer::Use::Point;
        placement.giveAll(use, *points, own);
        if (type == Type::Points)
            if (const auto color = valueOf(static_cast<const ZEL::Points&>(shape), &ZEL::Points::getColor))
                lineColor(target, *color);
    } else {
        if (position && placement.isPossible()) placement.give(Serializer::Use::Point, *position);
        if (type == Type::Annotation)
            annotationStyle(target, static_cast<const ZEL::Annotation&>(shape));
        else
            circular(target, static_cast<const ZEL::CircularShape&>(shape), type);
        if (type == Type::Orbit)
            placement.give(Serializer::Use::Center2,
                           *valueOf(static_cast<const ZEL::Orbit&>(shape), &ZEL::Orbit::getCenterPosition2));
    }
    target.endShape();
    return {};
}

}  // namespace OverlayEditor
