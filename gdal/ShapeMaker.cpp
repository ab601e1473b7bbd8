#include "gdal/ShapeMaker.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "common/Strings.h"
#include "gdal/FeatureColumns.h"
#include "gdal/Match.h"
#include "gdal/MoveShape.h"
#include "gdal/NewShape.h"
#include "gdal/ReadOptions.h"
#include "gdal/ShapeTexts.h"
#include "gdal/Style.h"
#include "geo/Angles.h"
#include "geo/Wgs84.h"

namespace exchange {

namespace ZEL = halCore::ZEL;
using halCore::GeodeticPath;
using halCore::Vec3;
using ZEL::ShapeType;

namespace {

bool isPointKind(ShapeType kind) {
    return kind == ShapeType::Points || kind == ShapeType::Line || kind == ShapeType::LineSegs ||
           kind == ShapeType::Polygon;
}

std::size_t fewestPoints(ShapeType kind) {
    return kind == ShapeType::Polygon                                   ? 3
           : kind == ShapeType::Points || kind == ShapeType::Annotation ? 1
                                                                        : 2;
}

void setPoints(ZEL::ZelShape& shape, std::vector<Vec3> points) {
    if (auto* based = dynamic_cast<ZEL::PointBasedShape*>(&shape))
        based->setPoints(std::move(points));
    else if (shape.shapeType() == ShapeType::Points)
        static_cast<ZEL::Points&>(shape).setPoints(std::move(points));
    else if (shape.shapeType() == ShapeType::Annotation)
        static_cast<ZEL::Annotation&>(shape).setPosition(points.front());
}

/// Whether the paths are of a geometry that can be a kind's own points.
bool isOfKind(const OGRGeometry& geometry, const std::vector<GeodeticPath>& paths, ShapeType kind) {
    const OGRwkbGeometryType type = OGR_GT_Flatten(geometry.getGeometryType());
    switch (kind) {
        case ShapeType::Annotation:
            return paths.size() == 1 && (type == wkbPoint || type == wkbMultiPoint);
        case ShapeType::Points:
            return type == wkbPoint || type == wkbMultiPoint;
        case ShapeType::Line:
            return paths.size() == 1 && (type == wkbLineString || type == wkbMultiLineString);
        case ShapeType::LineSegs:
            return (type == wkbLineString || type == wkbMultiLineString) &&
                   std::ranges::all_of(paths, [](const GeodeticPath& path) { return path.size() == 2; });
        case ShapeType::Polygon:
            // Where a format has no areas, their outlines are lines.
            return paths.size() == 1 && (type == wkbPolygon || type == wkbMultiPolygon ||
                                         paths.front().front() == paths.front().back());
        default:
            return false;
    }
}

/// A layer of another origin is in metres; what came from an overlay keeps its units, set or not.
void setMetres(ZEL::ZelShape& shape) {
    ZEL::UnitsState units = shape.originalUnits();
    if (!units.hasAltitudeUnits()) units.setAltitudeUnits(halCore::Units::METERS);
    if (!units.hasRangeUnits()) units.setRangeUnits(halCore::Units::METERS);
    shape.setOriginalUnits(units);
}

}  // namespace

ShapeMaker::ShapeMaker(const OGRFeature& feature, const ColumnIndex& index, const OGRGeometry* geometry,
                       std::string style, const Note& note)
    : feature_(feature),
      index_(index),
      geometry_(geometry && !geometry->IsEmpty() ? geometry : nullptr),
      style_(std::move(style)),
      note_(note) {}

std::vector<ZEL::ZelShapePtr> ShapeMaker::make() {
    const std::string word = UTILS::lowerCase(textIn(feature_, index_, Column::Kind).value_or(""));
    const ShapeType kind = ZEL::ZelShape::stringToShapeType(word);
    if (geometry_) {
        paths_ = pathsOf(*geometry_);
        if (!paths_) {
            note_(who_(kind) + "a coordinate is no place on the earth, it is left out");
            return {};
        }
    }
    if (kind != ShapeType::None) {
        if (ZEL::ZelShapePtr shape = byColumns_(kind)) return {std::move(shape)};
        // What turned and stretched the shape of the columns does not turn its outline again.
        for (const Column column :
             {Column::Course, Column::Pitch, Column::Roll, Column::Follow, Column::ScaleX, Column::ScaleY,
              Column::ScaleZ, Column::ReferenceLatitude})
            index_.set(column, -1);
    }
    if (!geometry_) {
        note_(who_(kind) + "it has no geometry, it is left out");
        return {};
    }
    const std::unique_ptr<OGRGeometry> straight(geometry_->getLinearGeometry());
    if (straight) byGeometry_(*straight);
    if (shapes_.empty()) note_(who_(kind) + "its geometry makes no shape, it is left out");
    return std::move(shapes_);
}

ZEL::ZelShapePtr ShapeMaker::byColumns_(ShapeType kind) {
    const bool onGrid = kind == ShapeType::LatLonAltBox || kind == ShapeType::ImageOverlay;
    const bool offset = truthIn(feature_, index_, Column::Relative).value_or(false);
    ZEL::ZelShapePtr shape = newShape(kind, offset || onGrid);
    takeColumns(feature_, index_, *shape, [&](const std::string& text) { note_(who_(kind) + text); });
    finish_(*shape);
    if (kind == ShapeType::Annotation && static_cast<const ZEL::Annotation&>(*shape).label().empty())
        return nullptr;
    const bool hasPlaces = isPointKind(kind) || (kind == ShapeType::Annotation && !offset);
    // Whether the geometry may tell something else than the columns.
    bool altered = true;
    if (hasPlaces && !takePlaces_(*shape, altered)) {
        if (geometry_) note_(who_(kind) + "its geometry is of another kind, which counts");
        return nullptr;
    }
    if (!altered) return shape;
    const bool fits = fits_(*shape);
    if (!isWhole_(*shape)) return nullptr;
    if (fits) return shape;
    note_(who_(kind) + "its geometry is no longer the one of its columns; the geometry counts");
    return nullptr;
}

/// The points of a shape that has nothing else: from its column, or else its geometry. `altered` whether the
/// geometry is still to be compared.
bool ShapeMaker::takePlaces_(ZEL::ZelShape& shape, bool& altered) {
    const ShapeType kind = shape.shapeType();
    if (const auto text = textIn(feature_, index_, Column::Points); text && isPointKind(kind)) {
        std::vector<Vec3> points = pointsOfText(*text, !shape.isRelative());
        if (points.size() >= fewestPoints(kind)) {
            setPoints(shape, std::move(points));
            altered = true;
            return true;
        }
    }
    altered = false;
    if (!geometry_ || shape.isRelative() || !isOfKind(*geometry_, *paths_, kind)) return false;
    std::vector<Vec3> points;
    for (const GeodeticPath& path : *paths_) points.insert(points.end(), path.begin(), path.end());
    if (kind == ShapeType::Polygon && points.size() > 1 && points.front() == points.back()) points.pop_back();
    if (points.size() < fewestPoints(kind)) return false;
    setPoints(shape, std::move(points));
    return true;
}

/// Whether a shape is what the geometry shows, or was moved to where it is.
bool ShapeMaker::fits_(ZEL::ZelShape& shape) {
    if (!geometry_) return true;
    const bool is3d = geometry_->Is3D();
    // A place is enough for what has a size in its columns.
    auto* const circular = dynamic_cast<ZEL::CircularShape*>(&shape);
    if (circular && !shape.isRelative() && OGR_GT_Flatten(geometry_->getGeometryType()) == wkbPoint) {
        Vec3 center;
        circular->getCenterPosition(center);
        const Vec3& place = paths_->front().front();
        circular->setCenterPosition({place.lat(), place.lon(), is3d ? place.alt() : center.alt()});
        return true;
    }
    const auto text = textIn(feature_, index_, Column::About);
    const auto about = text ? placeOfText(*text) : std::nullopt;
    const double tolerance = numberIn(feature_, index_, Column::Tolerance).value_or(0.0);
    const auto outlined = [&] { return outlineOf(shape, about, tolerance); };
    const Outline outline = outlined();
    const double allowed = allowedFor(outline);
    if (matches(outline, *paths_, is3d, allowed)) return true;

    std::optional<Vec3> shift = shiftOf(outline, *paths_, is3d, allowed);
    if (shift) {
        if (!moveShape(shape, *shift)) return false;
    } else {
        // Moved over the earth, not over the map: the middle of the outline is not that of the shape.
        for (int round = 0; round < 4; ++round) {
            shift = middleShift(outlined(), *paths_, is3d);
            if (!shift || !moveShape(shape, *shift)) return false;
        }
        if (!matches(outlined(), *paths_, is3d, allowed)) return false;
    }
    note_(who_(shape.shapeType()) + "its geometry was moved, and it with it");
    return true;
}

/// Whether a shape of somebody else's columns has what its kind needs. An overlay's own blocks may lack
/// what they please.
bool ShapeMaker::isWhole_(const ZEL::ZelShape& shape) const {
    const auto* const circular = dynamic_cast<const ZEL::CircularShape*>(&shape);
    if (!circular || numberIn(feature_, index_, Column::SourceLine)) return true;
    Vec3 place;
    const char* missing = nullptr;
    // Half way round the earth nothing is round any more.
    constexpr double most = halCore::kPi * halCore::wgs84::a;
    const auto isLength = [](double metres) { return metres > 0.0 && metres <= most; };
    double radius = 0.0;
    double sweep = 1.0;
    circular->getRadius(radius);
    bool sized = isLength(radius);
    for (const Column axis : {Column::Major, Column::Minor})
        if (const auto length = numberIn(feature_, index_, axis)) sized = isLength(*length);
    if (const auto* const sector = dynamic_cast<const ZEL::EllipticalShape*>(&shape))
        if (sector->getAngleSweep(sweep) != 0) sweep = 1.0;
    if (circular->getCenterPosition(place) != 0)
        missing = "it has no place";
    else if (!sized)
        missing = "it has no radius, or none that there is on the earth";
    else if (sweep == 0.0)
        missing = "it sweeps over no angle";
    else if (shape.shapeType() == ShapeType::Orbit &&
             static_cast<const ZEL::Orbit&>(shape).getCenterPosition2(place) != 0)
        missing = "it has no second centre";
    if (missing) note_(who_(shape.shapeType()) + missing + (geometry_ ? "; its geometry counts" : ""));
    return !missing;
}

void ShapeMaker::byGeometry_(const OGRGeometry& geometry) {
    if (geometry.IsEmpty()) return;
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (OGR_GT_IsSubClassOf(type, wkbPolygon)) {
        addPolygon_(*geometry.toPolygon());
        return;
    }
    if (type == wkbPoint || type == wkbLineString || type == wkbMultiPoint) {
        GeodeticPath points;
        for (const GeodeticPath& path : pathsOf(geometry).value_or(Paths()))
            points.insert(points.end(), path.begin(), path.end());
        const bool isLabel = type == wkbPoint && !label_().empty();
        addShape_(isLabel                 ? ShapeType::Annotation
                  : type == wkbLineString ? ShapeType::Line
                                          : ShapeType::Points,
                  std::move(points));
        return;
    }
    if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection)) {
        for (const OGRGeometry* member : *geometry.toGeometryCollection()) byGeometry_(*member);
    } else if (OGR_GT_IsSubClassOf(type, wkbPolyhedralSurface)) {
        for (const OGRPolygon* patch : *geometry.toPolyhedralSurface()) byGeometry_(*patch);
    }
}

void ShapeMaker::addPolygon_(const OGRPolygon& polygon) {
    const Paths rings = pathsOf(polygon).value_or(Paths());
    for (std::size_t i = 0; i < rings.size(); ++i) {
        const std::size_t before = shapes_.size();
        addShape_(ShapeType::Polygon, rings[i]);
        if (i == 0 || shapes_.size() == before) continue;
        static_cast<ZEL::Polygon&>(*shapes_.back()).setFilled(false);
        if (i == 1) note_(who_(ShapeType::Polygon) + "its holes become outlines of their own");
    }
}

void ShapeMaker::addShape_(ShapeType kind, GeodeticPath points) {
    if (points.size() < fewestPoints(kind)) return;
    ZEL::ZelShapePtr shape = newShape(kind, false);
    // What cannot be read of them has been told.
    takeColumns(feature_, index_, *shape, [](const std::string&) {});
    if (kind == ShapeType::Annotation) static_cast<ZEL::Annotation&>(*shape).setLabel(label_());
    setPoints(*shape, std::move(points));
    finish_(*shape);
    shapes_.push_back(std::move(shape));
}

/// What all shapes get, wherever they came from.
void ShapeMaker::finish_(ZEL::ZelShape& shape) const {
    completeComments(shape);
    // The columns of what came from an overlay say all, and what they leave open was open.
    if (numberIn(feature_, index_, Column::SourceLine)) return;
    applyStyle(style_.c_str(), shape);
    setMetres(shape);
}

std::string ShapeMaker::label_() const {
    if (auto text = textIn(feature_, index_, Column::Text)) return *text;
    // The name of points is no text to be shown.
    if (textIn(feature_, index_, Column::Kind).value_or("") == "points") return {};
    std::string text = labelOfStyle(style_.c_str());
    return text.empty() ? textIn(feature_, index_, Column::Name).value_or("") : text;
}

std::string ShapeMaker::who_(ShapeType kind) const {
    std::string who(ZEL::ZelShape::shapeTypeToString(kind));
    if (who.empty()) who = "feature";
    if (const auto name = textIn(feature_, index_, Column::Name); name && *name != who)
        who.append(" \"").append(UTILS::excerpt(*name)).append("\"");
    return who.append(": ");
}

}  // namespace exchange
