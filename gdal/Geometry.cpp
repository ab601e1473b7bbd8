#include "gdal/Geometry.h"

#include <cmath>

#include "gdal/NewShape.h"
#include "gdal/Seam.h"
#include "geo/Angles.h"
#include "geo/Wgs84.h"

namespace exchange {

namespace ZEL = halCore::ZEL;

namespace {

std::unique_ptr<OGRPoint> pointOf(const halCore::Vec3& place) {
    return std::make_unique<OGRPoint>(degreesOf(halCore::wrapToPi(place.lon())), degreesOf(place.lat()),
                                      place.alt());
}

void fill(OGRSimpleCurve& curve, const Track& track) {
    curve.setPoints(static_cast<int>(track.size()), track.lon.data(), track.lat.data(), track.alt.data());
}

std::unique_ptr<OGRLineString> lineOf(const Track& track) {
    auto line = std::make_unique<OGRLineString>();
    fill(*line, track);
    return line;
}

std::unique_ptr<OGRPolygon> polygonOf(Track&& track) {
    auto polygon = std::make_unique<OGRPolygon>();
    auto ring = std::make_unique<OGRLinearRing>();
    track.add(track, 0);
    fill(*ring, track);
    polygon->addRingDirectly(ring.release());
    return polygon;
}

/// The one member, or all of them in a collection.
template <typename Collection, typename Member>
std::unique_ptr<OGRGeometry> joined(std::vector<std::unique_ptr<Member>> members, bool always) {
    if (members.empty()) return nullptr;
    if (members.size() == 1 && !always) return std::move(members.front());
    auto all = std::make_unique<Collection>();
    for (auto& member : members) all->addGeometryDirectly(member.release());
    return all;
}

std::unique_ptr<OGRGeometry> linesOf(const Outline& outline, bool split, bool& altered) {
    const bool isGiven = outline.origin == Outline::Origin::Given;
    std::vector<std::unique_ptr<OGRLineString>> lines;
    for (const halCore::GeodeticPath& part : outline.parts) {
        Track track = toTrack(part);
        if ((!split && isGiven) || !crossesSeam(track, false)) {
            lines.push_back(lineOf(track));
            continue;
        }
        altered = true;
        for (const Track& piece : layLine(std::move(track), split)) lines.push_back(lineOf(piece));
    }
    return joined<OGRMultiLineString>(std::move(lines), outline.form == Outline::Form::Lines);
}

/// The map without some parts of it; those themselves where GDAL was built without what cuts them out.
std::unique_ptr<OGRGeometry> mapWithout(const OGRGeometry& parts, double altitude) {
    Track border;
    border.add(-180.0, -90.0, altitude);
    border.add(180.0, -90.0, altitude);
    border.add(180.0, 90.0, altitude);
    border.add(-180.0, 90.0, altitude);
    return std::unique_ptr<OGRGeometry>(polygonOf(std::move(border))->Difference(&parts));
}

std::unique_ptr<OGRGeometry> areaOf(const Outline& outline, bool split, bool& altered) {
    Track track = toTrack(outline.parts.front());
    if (outline.origin == Outline::Origin::Given && (!split || !crossesSeam(track, true)))
        return polygonOf(std::move(track));
    altered = true;
    bool outside = false;
    std::vector<std::unique_ptr<OGRPolygon>> polygons;
    for (Track& ring : layArea(std::move(track), outline.origin, split, outside))
        polygons.push_back(polygonOf(std::move(ring)));
    auto inside = joined<OGRMultiPolygon>(std::move(polygons), false);
    if (!outside || !inside) return inside;
    auto rest = mapWithout(*inside, outline.parts.front().front().alt());
    return rest ? std::move(rest) : std::move(inside);
}

/// Whether a shape that reaches so many metres from a place may lead across 180 degrees or a pole.
bool mayMeetSeam(const halCore::Vec3& place, double meters) {
    const double reach = 1.01 * meters / halCore::wgs84::b;
    const double farthest = std::abs(place.lat()) + reach;
    if (!(farthest < halCore::kHalfPi)) return true;
    return !(std::abs(halCore::wrapToPi(place.lon())) + reach / std::cos(farthest) < halCore::kPi);
}

bool mayMeetSeam(const ZEL::ZelShape& shape) {
    const auto crosses = [](const std::vector<halCore::Vec3>& points, bool closed) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const halCore::Vec3& last = points[i > 0 ? i - 1 : closed ? points.size() - 1 : 0];
            if (std::abs(points[i].lon()) > halCore::kPi) return true;
            if (std::abs(points[i].lon() - last.lon()) > halCore::kPi) return true;
        }
        return false;
    };
    if (const auto* points = dynamic_cast<const ZEL::PointBasedShape*>(&shape))
        return crosses(points->points(), shape.shapeType() == ZEL::ShapeType::Polygon);
    if (const auto* box = dynamic_cast<const ZEL::LatLonAltBox*>(&shape)) return !(box->west() < box->east());
    const auto* circular = dynamic_cast<const ZEL::CircularShape*>(&shape);
    if (!circular) return true;
    halCore::Vec3 center;
    circular->getCenterPosition(center);
    double reach = 0.0;
    circular->getRadius(reach);
    const auto widen = [&reach](const auto& axes) {
        double axis = 0.0;
        if (axes.getMajorAxis(axis) == 0) reach = std::max(reach, std::abs(axis));
        if (axes.getMinorAxis(axis) == 0) reach = std::max(reach, std::abs(axis));
    };
    if (const auto* elliptical = dynamic_cast<const ZEL::EllipticalShape*>(&shape)) widen(*elliptical);
    if (const auto* ellipsoid = dynamic_cast<const ZEL::Ellipsoid*>(&shape)) widen(*ellipsoid);
    halCore::Vec3 second;
    if (const auto* orbit = dynamic_cast<const ZEL::Orbit*>(&shape);
        orbit && orbit->getCenterPosition2(second) == 0)
        reach = std::abs(reach) + geodesicBetween(center, second).meters;
    halCore::Vec3 scale;
    shape.getScale(scale);
    return mayMeetSeam(center, std::abs(reach) * std::max(std::abs(scale.x()), std::abs(scale.y())));
}

}  // namespace

std::unique_ptr<OGRGeometry> geometryOf(const Outline& outline, bool split, bool& altered) {
    altered = false;
    switch (outline.form) {
        case Outline::Form::None:
            return nullptr;
        case Outline::Form::Point:
            return pointOf(outline.parts.front().front());
        case Outline::Form::Points: {
            std::vector<std::unique_ptr<OGRPoint>> points;
            for (const halCore::GeodeticPath& part : outline.parts) points.push_back(pointOf(part.front()));
            return joined<OGRMultiPoint>(std::move(points), true);
        }
        case Outline::Form::Line:
        case Outline::Form::Lines:
            return linesOf(outline, split, altered);
        case Outline::Form::Area:
            return areaOf(outline, split, altered);
    }
    return nullptr;
}

OGRwkbGeometryType geometryTypeOf(const ZEL::ZelShape& shape) {
    switch (shape.shapeType()) {
        case ZEL::ShapeType::Annotation:
            return wkbPoint25D;
        case ZEL::ShapeType::Points:
            return wkbMultiPoint25D;
        case ZEL::ShapeType::LineSegs:
            return wkbMultiLineString25D;
        default:
            break;
    }
    if (hasOffsets(shape) || mayMeetSeam(shape)) return wkbUnknown;
    if (shape.shapeType() == ZEL::ShapeType::Line) return wkbLineString25D;
    if (shape.shapeType() != ZEL::ShapeType::Arc) return wkbPolygon25D;
    const auto& arc = static_cast<const ZEL::Arc&>(shape);
    bool filled = false;
    double sweep = 0.0;
    arc.getFilled(filled);
    const bool whole = arc.getAngleSweep(sweep) != 0 || std::abs(sweep) > halCore::kTwoPi - 1e-9;
    return whole || filled ? wkbPolygon25D : wkbLineString25D;
}

}  // namespace exchange
