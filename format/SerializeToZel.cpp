#include "format/SerializeToZel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <utility>

#include "common/Notify.h"
#include "format/ShapeCast.h"
#include "format/ShapeExtras.h"
#include "format/ShapeFields.h"
#include "geo/Angles.h"
#include "geo/OffsetGrid.h"

namespace OverlayEditor {
namespace {

namespace ZEL = halCore::ZEL;

ZEL::ZelShapePtr makeShape(Serializer::ShapeType type, bool relative) {
    switch (type) {
        case Serializer::Points:
            return std::make_shared<ZEL::Points>(relative);
        case Serializer::Line:
            return std::make_shared<ZEL::Line>(relative);
        case Serializer::LineSegs:
            return std::make_shared<ZEL::LineSegs>(relative);
        case Serializer::Polygon:
        case Serializer::Rectangle:
            return std::make_shared<ZEL::Polygon>(relative);
        case Serializer::Circle:
            return std::make_shared<ZEL::Circle>(relative);
        case Serializer::Ellipse:
            return std::make_shared<ZEL::Ellipse>(relative);
        case Serializer::Arc:
            return std::make_shared<ZEL::Arc>(relative);
        case Serializer::Cylinder:
        case Serializer::Wedge:
            return std::make_shared<ZEL::Cylinder>(relative);
        case Serializer::Sphere:
            return std::make_shared<ZEL::Sphere>(relative);
        case Serializer::Hemisphere:
            return std::make_shared<ZEL::Hemisphere>(relative);
        case Serializer::Ellipsoid:
            return std::make_shared<ZEL::Ellipsoid>(relative);
        case Serializer::Annotation:
            return std::make_shared<ZEL::Annotation>(relative);
        case Serializer::Cone:
            return std::make_shared<ZEL::Cone>(relative);
        case Serializer::Orbit:
            return std::make_shared<ZEL::Orbit>(relative);
        case Serializer::None:
            break;
    }
    return nullptr;
}

constexpr const char* kNoNumber = "a position is not a number";
constexpr const char* kNoOffset = "a position cannot be expressed relative to the platform";

bool isFinite(const halCore::Vec3& position) {
    return std::isfinite(position.x()) && std::isfinite(position.y()) && std::isfinite(position.z());
}

/// Whether all are finite. Only numbers that are not have an exponent of nothing but ones, which one more
/// carries into the sign: to ask all at once is faster than one by one.
bool areFinite(std::span<const halCore::Vec3> positions) {
    constexpr std::uint64_t exponent = 0x7FF0'0000'0000'0000;
    constexpr std::uint64_t one = 0x0010'0000'0000'0000;
    const auto sum = [](double value) { return (std::bit_cast<std::uint64_t>(value) & exponent) + one; };
    std::uint64_t any = 0;
    for (const halCore::Vec3& position : positions)
        any |= sum(position.x()) | sum(position.y()) | sum(position.z());
    return any >> 63U == 0;
}

/// To the nearest 1e-12 degrees. The difference of two angles loses less than that.
double onAngleGrid(double radians) {
    constexpr double steps = 1e12;
    return std::nearbyint(radians * halCore::kDegreesPerRadian * steps) / steps * halCore::kRadiansPerDegree;
}

ZEL::LineStyle zelLineStyle(Serializer::LineStyle style) {
    switch (style) {
        case Serializer::Dashed:
            return ZEL::LineStyle::Dashed;
        case Serializer::Dotted:
            return ZEL::LineStyle::Dotted;
        case Serializer::Solid:
            break;
    }
    return ZEL::LineStyle::Solid;
}

}  // namespace

// Every block names its units. The reader's defaults are feet and yards, whose scales here are not those of
// other programs; metres and degrees mean the same to everybody, and a typed 1000 stands as 1000.
SerializeToZel::SerializeToZel() : units_(ZEL::UnitsState::metric()) {}

void SerializeToZel::beginShape(ShapeType type, unsigned long platformId) {
    auto shape = makeShape(type, platformId != 0);
    if (!shape) return;
    shape->setOriginalUnits(units_);
    if (referenceWritten_ && platformId != 0 && pointConverter()) {
        halCore::Vec3 reference;
        pointConverter()->getReferenceLla(reference);
        shape->setReferencePosition(reference);
    }
    current_ = std::move(shape);
    failure_ = nullptr;
    findFaces_();
}

void SerializeToZel::findFaces_() {
    ZEL::ZelShape& shape = *current_;
    const ZEL::ShapeType type = shape.shapeType();
    as_ = Faces{};
    as_.pointBased = ZEL::shapeAs<ZEL::PointBasedShape>(shape, type);
    as_.points = ZEL::shapeAs<ZEL::Points>(shape, type);
    as_.annotation = ZEL::shapeAs<ZEL::Annotation>(shape, type);
    as_.fillable = ZEL::shapeAs<ZEL::FillableShape>(shape, type);
    as_.circular = ZEL::shapeAs<ZEL::CircularShape>(shape, type);
    as_.orbit = ZEL::shapeAs<ZEL::Orbit>(shape, type);
    as_.elliptical = ZEL::shapeAs<ZEL::EllipticalShape>(shape, type);
    as_.ellipsoid = ZEL::shapeAs<ZEL::Ellipsoid>(shape, type);
    as_.circularHeight = ZEL::shapeAs<ZEL::CircularHeightShape>(shape, type);
    as_.cylinder = ZEL::shapeAs<ZEL::Cylinder>(shape, type);
}

void SerializeToZel::endShape() {
    if (as_.annotation && !failure_) {
        std::string text;
        as_.annotation->getText(text);
        if (text.empty()) failure_ = "it has no text";
    }
    if (current_ && failure_) {
        if (halNotify::isNotifyEnabled(halNotify::Error)) {
            std::string name;
            current_->getName(name);
            halNotify::notify(halNotify::Error)
                << "The " << ZEL::ZelShape::shapeTypeToString(current_->shapeType()) << " \"" << name
                << "\" cannot be written: " << failure_;
        }
        current_ = nullptr;
    }
    if (current_ && extras_) {
        current_->setComments(std::move(roomForComments_));
        ZEL::setExtras(*extras_, *current_);
    }
    finished_.push_back(std::move(current_));
    current_ = nullptr;
    as_ = Faces{};
}

halCore::Vec3 SerializeToZel::filePosition_(const halCore::Vec3& lla) {
    if (!isFinite(lla)) {
        failure_ = kNoNumber;
        return {};
    }
    if (!current_->isRelative()) return lla;
    if (!converter_) {
        failure_ = "it is attached, but the platform's position is not known";
        return {};
    }
    const auto offset = offsetOf(*converter_, lla);
    if (!offset) failure_ = kNoOffset;
    return offset.value_or(halCore::Vec3());
}

double SerializeToZel::checked_(double value) {
    if (!std::isfinite(value)) failure_ = "a length or an angle is not a number";
    return value;
}

void SerializeToZel::setItemName(const std::string& name) {
    if (!current_) return;
    if (as_.annotation)
        as_.annotation->setLabel(name);
    else
        current_->setName(name);
}

void SerializeToZel::put_(Use use, const halCore::Vec3& position) {
    if (use == Use::Center2) {
        if (as_.orbit) as_.orbit->setCenterPosition2(position);
    } else if (as_.pointBased) {
        as_.pointBased->addPoint(position);
    } else if (as_.points) {
        as_.points->addPoint(position);
    } else if (as_.annotation) {
        as_.annotation->setPosition(position);
    } else if (as_.circular) {
        as_.circular->setCenterPosition(position);
    }
}

void SerializeToZel::addPoint(const halCore::Vec3& lla) {
    if (current_) put_(Use::Point, filePosition_(lla));
}

void SerializeToZel::addPoints(std::span<const halCore::Vec3> llas) {
    if (!current_) return;
    if (!as_.pointBased || current_->isRelative()) return Serializer::addPoints(llas);
    if (!areFinite(llas)) failure_ = kNoNumber;
    auto& points = as_.pointBased->points();
    if (points.empty()) points.swap(roomForPoints_);
    points.insert(points.end(), llas.begin(), llas.end());
}

void SerializeToZel::setCenterPoint2(const halCore::Vec3& lla) {
    if (as_.orbit) put_(Use::Center2, filePosition_(lla));
}

void SerializeToZel::giveOffset(Use use, const halCore::Vec3& xyz, const PointConverter& frame, bool named) {
    if (!current_) return;
    if (!isFinite(xyz)) failure_ = kNoNumber;
    halCore::Vec3 lla;
    if (named) {
        frame.getReferenceLla(lla);
        current_->setReferencePosition(lla);
    } else if (&frame != converter_) {
        if (frame.convertXyzToLla(xyz, lla) != 0) failure_ = kNoOffset;
        give(use, lla);
        return;
    }
    put_(use, xyz);
}

void SerializeToZel::setMajorRadius(double meters) {
    // In a file a radius is half of what an axis is.
    if (as_.elliptical)
        as_.elliptical->setMajorAxis(2.0 * checked_(meters));
    else if (as_.ellipsoid)
        as_.ellipsoid->setMajorAxis(2.0 * checked_(meters));
    else if (as_.circular)
        as_.circular->setRadius(checked_(meters));
}

void SerializeToZel::setMinorRadius(double meters) {
    if (as_.elliptical)
        as_.elliptical->setMinorAxis(2.0 * checked_(meters));
    else if (as_.ellipsoid)
        as_.ellipsoid->setMinorAxis(2.0 * checked_(meters));
}

void SerializeToZel::setHeight(double meters) {
    if (as_.cylinder)
        as_.cylinder->setHeight(checked_(meters));
    else if (as_.circularHeight)
        as_.circularHeight->setHeight(checked_(meters));
}

void SerializeToZel::setStartEndAngles(double startRad, double endRad) {
    if (!as_.elliptical) return;
    checked_(startRad);
    checked_(endRad);
    const double sweep = startRad > endRad ? halCore::kTwoPi - startRad + endRad : endRad - startRad;
    const double kept = onAngleGrid(sweep);
    // What readers take for a full turn is written as one.
    constexpr double kNearlyWhole = 1e-10;
    const bool isWhole = sweep == 0.0 || halCore::kTwoPi - sweep < kNearlyWhole;
    as_.elliptical->setAngleStart(startRad);
    // A sweep of 0 is no sweep to a reader.
    as_.elliptical->setAngleSweep(isWhole ? halCore::kTwoPi : kept != 0.0 ? kept : sweep);
}

void SerializeToZel::setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    const ZEL::Color color(r, g, b, a);
    if (as_.annotation)
        as_.annotation->setTextColor(color);
    else if (as_.points)
        as_.points->setColor(color);
    else if (as_.fillable)
        as_.fillable->setLineColor(color);
}

void SerializeToZel::setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) {
    if (as_.fillable) as_.fillable->setFillColor(ZEL::Color(r, g, b, a));
}

void SerializeToZel::setFilled(bool filled) {
    if (as_.fillable) as_.fillable->setFilled(filled);
}

void SerializeToZel::setVisible(bool visible) {
    if (current_) current_->setDrawn(visible);
}

void SerializeToZel::setLineWidth(int pixels) {
    if (as_.fillable) as_.fillable->setLineWidth(pixels);
}

void SerializeToZel::setPointSize(int pixels) {
    if (as_.points) as_.points->setPointSize(pixels);
}

void SerializeToZel::setLineStyle(LineStyle style) {
    if (as_.fillable) as_.fillable->setLineStyle(zelLineStyle(style));
}

void SerializeToZel::setFontName(const std::string& fileName) {
    if (as_.annotation) as_.annotation->setFontName(fileName);
}

void SerializeToZel::setTextSize(int points) {
    if (as_.annotation) as_.annotation->setTextSize(points);
}

bool SerializeToZel::hasShapes() const {
    return std::any_of(finished_.begin(), finished_.end(),
                       [](const auto& shape) { return shape != nullptr; });
}

void SerializeToZel::writeTo(std::ostream& stream, unsigned int) const {
    writeHeadTo(stream);
    writeShapesTo(stream);
}

void SerializeToZel::writeHeadTo(std::ostream& stream) {
    stream << "version 2\n\n";
}

void SerializeToZel::writeShapesTo(std::ostream& stream) const {
    for (const auto& shape : finished_) {
        if (!shape) continue;
        shape->serializeToStream(stream);
        stream << '\n';
    }
}

void SerializeToZel::clear() {
    current_ = nullptr;
    as_ = Faces{};
    failure_ = nullptr;
    if (!finished_.empty() && finished_.back().use_count() == 1) reuse_(*finished_.back());
    finished_.clear();
}

void SerializeToZel::reuse_(ZEL::ZelShape& shape) {
    // A long list would be held for the sake of many that are short.
    constexpr std::size_t most = 4096;
    roomForComments_ = shape.takeComments();
    auto* const points = ZEL::pointsOf(shape);
    if (!points || points->capacity() > most) return;
    roomForPoints_ = std::move(*points);
    roomForPoints_.clear();
}

}  // namespace OverlayEditor
