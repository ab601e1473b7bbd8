#pragma once

#include <array>
#include <string_view>
#include <type_traits>

#include "format/ZelShapes.h"
#include "gdal/Columns.h"
#include "gdal/ShapeTexts.h"
#include "geo/Angles.h"

namespace exchange {

template <typename To, typename From>
auto& as(From& shape) {
    return static_cast<std::conditional_t<std::is_const_v<From>, const To, To>&>(shape);
}

/// A position, in one set of columns or the other.
template <typename Shape, typename Archive, typename Get, typename Set>
void describePosition(Shape& shape, Archive& archive, Column geodetic, Column offset, Get get, Set set) {
    if (shape.isRelative())
        archive.vector(offset, shape, get, set, false);
    else
        archive.vector(geodetic, shape, get, set, true);
}

template <typename Shape, typename Archive>
void describeFillable(Shape& shape, Archive& archive) {
    using namespace halCore::ZEL;
    static constexpr std::array<std::string_view, 3> kStyles = {"solid", "dashed", "dotted"};
    auto& fillable = as<FillableShape>(shape);
    archive.color(Column::LineColor, fillable, &FillableShape::getLineColor, &FillableShape::setLineColor);
    archive.whole(Column::LineWidth, fillable, &FillableShape::getLineWidth, &FillableShape::setLineWidth);
    archive.word(Column::LineStyle, fillable, &FillableShape::getLineStyle, &FillableShape::setLineStyle,
                 kStyles);
    archive.truth(Column::Filled, fillable, &FillableShape::getFilled, &FillableShape::setFilled);
    archive.color(Column::FillColor, fillable, &FillableShape::getFillColor, &FillableShape::setFillColor);
    archive.truth(Column::Outline, as<OutlinedShape>(shape), &OutlinedShape::getOutlined,
                  &OutlinedShape::setOutlined);
}

template <typename Shape, typename Archive>
void describeCircular(Shape& shape, Archive& archive) {
    using namespace halCore::ZEL;
    describeFillable(shape, archive);
    auto& circular = as<CircularShape>(shape);
    describePosition(circular, archive, Column::Latitude, Column::EastOffset,
                     &CircularShape::getCenterPosition, &CircularShape::setCenterPosition);
    archive.real(Column::Radius, circular, &CircularShape::getRadius, &CircularShape::setRadius);
}

template <typename Kind, typename Shape, typename Archive>
void describeAxes(Shape& shape, Archive& archive) {
    auto& kind = as<Kind>(shape);
    archive.real(Column::Major, kind, &Kind::getMajorAxis, &Kind::setMajorAxis);
    archive.real(Column::Minor, kind, &Kind::getMinorAxis, &Kind::setMinorAxis);
}

template <typename Kind, typename Shape, typename Archive>
void describeHeight(Shape& shape, Archive& archive) {
    archive.real(Column::Height, as<Kind>(shape), &Kind::getHeight, &Kind::setHeight);
}

template <typename Shape, typename Archive>
void describeElliptical(Shape& shape, Archive& archive) {
    using namespace halCore::ZEL;
    describeCircular(shape, archive);
    auto& elliptical = as<EllipticalShape>(shape);
    archive.real(Column::Start, elliptical, &EllipticalShape::getAngleStart, &EllipticalShape::setAngleStart,
                 halCore::kDegreesPerRadian);
    archive.real(Column::Sweep, elliptical, &EllipticalShape::getAngleSweep, &EllipticalShape::setAngleSweep,
                 halCore::kDegreesPerRadian);
    describeAxes<EllipticalShape>(shape, archive);
}

template <typename Shape, typename Archive>
void describeAnnotation(Shape& shape, Archive& archive) {
    using namespace halCore::ZEL;
    static constexpr std::array<std::string_view, 3> kThickness = {"none", "thin", "thick"};
    auto& label = as<Annotation>(shape);
    const auto text = [](const Annotation& from, std::string& out) {
        out = from.label();
        return out.empty() ? 1 : 0;
    };
    archive.text(Column::Text, label, text, &Annotation::setLabel);
    // The place of others is their geometry.
    if (shape.isRelative())
        archive.vector(Column::EastOffset, label, &Annotation::getPosition, &Annotation::setPosition, false);
    archive.text(Column::Font, label, &Annotation::getFontName, &Annotation::setFontName);
    archive.whole(Column::FontSize, label, &Annotation::getTextSize, &Annotation::setTextSize);
    archive.color(Column::LineColor, label, &Annotation::getTextColor, &Annotation::setTextColor);
    archive.color(Column::HaloColor, label, &Annotation::getOutlineColor, &Annotation::setOutlineColor);
    archive.word(Column::Halo, label, &Annotation::getOutlineThickness, &Annotation::setOutlineThickness,
                 kThickness);
    archive.text(Column::IconFile, label, &Annotation::getIconFile, &Annotation::setIconFile);
    archive.real(Column::Priority, label, &Annotation::getPriority, &Annotation::setPriority);
}

/// The four sides of a box or a picture, which are always there.
template <typename Kind, typename Shape, typename Archive>
void describeSides(Shape& shape, Archive& archive) {
    const auto side = [&](Column column, auto get, auto set) {
        const auto always = [get](const Kind& from, double& out) {
            out = (from.*get)();
            return 0;
        };
        archive.real(column, as<Kind>(shape), always, set, halCore::kDegreesPerRadian);
    };
    side(Column::North, &Kind::north, &Kind::setNorth);
    side(Column::South, &Kind::south, &Kind::setSouth);
    side(Column::West, &Kind::west, &Kind::setWest);
    side(Column::East, &Kind::east, &Kind::setEast);
}

template <typename Shape, typename Archive>
void describeCommon(Shape& shape, Archive& archive) {
    using namespace halCore::ZEL;
    static constexpr std::array<std::string_view, 4> kModes = {"none", "relativetoground", "clamptoground",
                                                               "extrude"};
    auto& any = as<ZelShape>(shape);
    constexpr double kDegrees = halCore::kDegreesPerRadian;
    archive.text(Column::Name, any, &ZelShape::getName, &ZelShape::setName);
    archive.truth(Column::Drawn, any, &ZelShape::getDrawn, &ZelShape::setDrawn);
    archive.truth(Column::DepthTest, any, &ZelShape::getDepthBufferActive, &ZelShape::setDepthBufferActive);
    archive.real(Column::Raise, any, &ZelShape::getAltitudeOffset, &ZelShape::setAltitudeOffset);
    archive.word(Column::AltitudeMode, any, &ZelShape::getAltitudeMode, &ZelShape::setAltitudeMode, kModes);
    archive.real(Column::Extrude, any, &ZelShape::getExtrudeHeight, &ZelShape::setExtrudeHeight);
    archive.vector(Column::ReferenceLatitude, any, &ZelShape::getReferencePosition,
                   &ZelShape::setReferencePosition, true);
    archive.vector(Column::ScaleX, any, &ZelShape::getScale, &ZelShape::setScale, false);
    archive.real(Column::Course, any, &ZelShape::getYawOffset, &ZelShape::setYawOffset, kDegrees);
    archive.real(Column::Pitch, any, &ZelShape::getPitchOffset, &ZelShape::setPitchOffset, kDegrees);
    archive.real(Column::Roll, any, &ZelShape::getRollOffset, &ZelShape::setRollOffset, kDegrees);
    archive.text(Column::Follow, any, followLetters, setFollowLetters);
    archive.text(Column::Datum, any, &ZelShape::getVerticalDatum, &ZelShape::setVerticalDatum);
    archive.text(Column::AltitudeUnit, any, getAltitudeUnit, setAltitudeUnit);
    archive.text(Column::RangeUnit, any, getRangeUnit, setRangeUnit);
    archive.text(Column::AngleUnit, any, getAngleUnit, setAngleUnit);
    archive.text(Column::Comments, any, commentLines, setCommentLines);
}

/// Tells an archive every attribute of a shape but its points: the column, the shape as the class that has
/// it, how it is got (0 and the value when it is set) and how it is set.
template <typename Shape, typename Archive>
void describe(Shape& shape, Archive& archive) {
    using namespace halCore::ZEL;
    switch (shape.shapeType()) {
        case ShapeType::None:
            return;
        case ShapeType::Annotation:
            describeAnnotation(shape, archive);
            break;
        case ShapeType::Points: {
            auto& points = as<Points>(shape);
            archive.color(Column::LineColor, points, &Points::getColor, &Points::setColor);
            archive.whole(Column::PointSize, points, &Points::getPointSize, &Points::setPointSize);
            archive.truth(Column::Outline, as<OutlinedShape>(shape), &OutlinedShape::getOutlined,
                          &OutlinedShape::setOutlined);
            break;
        }
        case ShapeType::Line:
        case ShapeType::LineSegs:
        case ShapeType::Polygon: {
            static constexpr std::array<std::string_view, 3> kCurves = {"none", "rhumbline", "greatcircle"};
            describeFillable(shape, archive);
            archive.word(Column::Curve, as<PointBasedShape>(shape), &PointBasedShape::getTessellation,
                         &PointBasedShape::setTessellation, kCurves);
            break;
        }
        case ShapeType::Circle:
        case ShapeType::Sphere:
        case ShapeType::Hemisphere:
            describeCircular(shape, archive);
            break;
        case ShapeType::Arc:
        case ShapeType::Ellipse:
            describeElliptical(shape, archive);
            break;
        case ShapeType::Cylinder:
            describeElliptical(shape, archive);
            describeHeight<Cylinder>(shape, archive);
            break;
        case ShapeType::Ellipsoid:
            describeCircular(shape, archive);
            describeAxes<Ellipsoid>(shape, archive);
            describeHeight<CircularHeightShape>(shape, archive);
            break;
        case ShapeType::Cone:
            describeCircular(shape, archive);
            describeHeight<CircularHeightShape>(shape, archive);
            break;
        case ShapeType::Orbit: {
            describeCircular(shape, archive);
            describePosition(as<Orbit>(shape), archive, Column::Latitude2, Column::EastOffset2,
                             &Orbit::getCenterPosition2, &Orbit::setCenterPosition2);
            break;
        }
        case ShapeType::LatLonAltBox: {
            describeFillable(shape, archive);
            describeSides<LatLonAltBox>(shape, archive);
            const auto altitude = [](const LatLonAltBox& box, double& out) {
                out = box.altitude();
                return 0;
            };
            archive.real(Column::Altitude, as<LatLonAltBox>(shape), altitude, &LatLonAltBox::setAltitude);
            describeHeight<LatLonAltBox>(shape, archive);
            break;
        }
        case ShapeType::ImageOverlay: {
            describeSides<ImageOverlay>(shape, archive);
            auto& picture = as<ImageOverlay>(shape);
            archive.real(Column::Rotation, picture, &ImageOverlay::getRotation, &ImageOverlay::setRotation,
                         halCore::kDegreesPerRadian);
            const auto file = [](const ImageOverlay& from, std::string& out) {
                out = from.imageFile();
                return 0;
            };
            archive.text(Column::ImageFile, picture, file, &ImageOverlay::setImageFile);
            break;
        }
    }
    describeCommon(shape, archive);
}

}  // namespace exchange
