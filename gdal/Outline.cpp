#include "gdal/Outline.h"

#include <algorithm>
#include <cmath>

#include "format/BoxOutline.h"
#include "format/RoundOutline.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/Wgs84.h"

namespace exchange {

using halCore::Ecef;
using halCore::GeodeticPath;
using halCore::kPi;
using halCore::Vec3;
namespace ZEL = halCore::ZEL;

namespace {

/// How far `point` is, along the ground, from the straight piece between two others, all at altitude 0.
double offPiece(const Ecef& point, const Ecef& from, const Ecef& to) {
    const Ecef along = to - from;
    const double size = dot(along, along);
    const double share = size > 0.0 ? std::clamp(dot(point - from, along) / size, 0.0, 1.0) : 0.0;
    const Ecef off = point - (from + along * share);
    const Ecef up = normalized(point);
    return length(off - up * dot(off, up));
}

struct Place {
    double share = 0.0;
    Vec3 lla;
    Ecef ground;
};

Ecef groundAt(double lat, double lon) {
    return toEcef(Vec3(lat, lon, 0.0));
}

/// Cuts a curve, a function of a share from 0 to 1, into straight pieces.
template <typename Curve>
class Cutter {
  public:
    Cutter(const Curve& curve, double tolerance, GeodeticPath& path)
        : curve_(curve), tolerance_(tolerance), path_(path) {}

    /// Appends both ends and what is needed in between; at least so many pieces.
    void cut(int pieces) {
        Place from = at(0.0);
        path_.push_back(from.lla);
        for (int i = 1; i <= pieces; ++i) {
            const Place to = at(static_cast<double>(i) / pieces);
            cut(from, to, kMostHalvings);
            from = to;
        }
    }

  private:
    static constexpr int kMostHalvings = 12;
    /// A curve bends between the places at which it is looked at, too.
    static constexpr double kMargin = 0.7;

    Place at(double share) const {
        const Vec3 lla = curve_(share);
        return {share, lla, groundAt(lla.lat(), lla.lon())};
    }

    void cut(const Place& from, const Place& to, int halvings) {
        const Place middle = at(0.5 * (from.share + to.share));
        const double lon = from.lla.lon() + 0.5 * halCore::wrapToPi(to.lla.lon() - from.lla.lon());
        const Ecef onMap = groundAt(0.5 * (from.lla.lat() + to.lla.lat()), lon);
        const double most = kMargin * tolerance_;
        const bool fits = offPiece(middle.ground, from.ground, to.ground) <= most &&
                          std::min(offPiece(middle.ground, from.ground, onMap),
                                   offPiece(middle.ground, onMap, to.ground)) <= most;
        if (fits || halvings == 0) {
            path_.push_back(to.lla);
            return;
        }
        cut(from, middle, halvings - 1);
        cut(middle, to, halvings - 1);
    }

    const Curve& curve_;
    double tolerance_;
    GeodeticPath& path_;
};

template <typename Curve>
void appendCurve(const Curve& curve, int pieces, double tolerance, GeodeticPath& path) {
    Cutter(curve, tolerance, path).cut(pieces);
}

/// The geodesic from the path's last point; neither end is appended.
void appendLeg(const Vec3& to, double tolerance, GeodeticPath& path) {
    const Vec3 from = path.back();
    const halCore::DistanceAndAzimuth way = geodesicBetween(from, to);
    const auto curve = [&](double share) {
        Vec3 place = geodesicFrom(from, way.azimuthAtStart, way.meters * share);
        place.setAlt(std::lerp(from.alt(), to.alt(), share));
        return place;
    };
    path.pop_back();
    appendCurve(curve, 4, tolerance, path);
    path.pop_back();
}

Outline roundShape(const ZEL::CircularShape& shape, const ZEL::Placement& placement, double wanted) {
    Outline out;
    const std::optional<ZEL::RoundOutline> round = roundOutline(shape, placement);
    if (!round) return out;
    const double tolerance = wanted > 0.0 ? wanted : defaultTolerance(round->arcs.front().longerHalf());
    const auto append = [&](const halCore::EllipticalArc& arc, GeodeticPath& path) {
        appendCurve([&](double share) { return arc.at(share); }, 24, tolerance, path);
    };
    out.origin = Outline::Origin::Curve;
    GeodeticPath& path = out.parts.emplace_back();
    append(round->arcs.front(), path);
    bool filled = false;
    shape.getFilled(filled);
    if (!round->whole && shape.shapeType() == ZEL::ShapeType::Arc && !filled) {
        out.form = Outline::Form::Line;
        return out;
    }
    out.form = Outline::Form::Area;
    bool clockwise = false;
    if (!round->whole) {
        const Vec3 rim = path.front();
        appendLeg(round->center, tolerance, path);
        path.push_back(round->center);
        appendLeg(rim, tolerance, path);
        double sweep = 0.0;
        static_cast<const ZEL::EllipticalShape&>(shape).getAngleSweep(sweep);
        clockwise = sweep > 0.0;
    } else if (round->arcs.size() > 1) {
        GeodeticPath back;
        append(round->arcs.back(), back);
        appendLeg(back.front(), tolerance, path);
        path.insert(path.end(), back.begin(), back.end());
        appendLeg(Vec3(path.front()), tolerance, path);
        clockwise = true;
    } else {
        path.pop_back();
    }
    if (clockwise) std::ranges::reverse(path);
    return out;
}

/// Four corners, counter-clockwise, joined by lines that are straight on a map.
Outline straightOnMap(const std::vector<Vec3>& corners, double wanted) {
    Outline out;
    out.form = Outline::Form::Area;
    out.origin = Outline::Origin::Grid;
    double size = 0.0;
    for (const Vec3& corner : corners) {
        const double lon = (corner.lon() - corners[0].lon()) * std::cos(corner.lat());
        size = std::max(size, halCore::wgs84::a * std::hypot(corner.lat() - corners[0].lat(), lon));
    }
    const double tolerance = wanted > 0.0 ? wanted : defaultTolerance(0.5 * size);
    GeodeticPath& path = out.parts.emplace_back();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Vec3& from = corners[i];
        const Vec3& to = corners[(i + 1) % corners.size()];
        const double turn = std::abs(to.lon() - from.lon());
        appendCurve(
            [&](double share) {
                return Vec3(std::lerp(from.lat(), to.lat(), share), std::lerp(from.lon(), to.lon(), share),
                            from.alt());
            },
            1 + static_cast<int>(turn * 2), tolerance, path);
        path.pop_back();
    }
    return out;
}

Outline pointsOf(const std::vector<Vec3>& points, Outline::Form form, std::size_t perPart,
                 const ZEL::Placement& placement) {
    Outline out;
    GeodeticPath path;
    if (placement.relative()) {
        for (const Vec3& point : points) {
            const std::optional<Vec3> placed = placement.place(point);
            if (!placed) return out;
            path.push_back(*placed);
        }
    } else {
        path = points;
    }
    out.form = form;
    if (perPart == 0) {
        out.parts.push_back(std::move(path));
        return out;
    }
    for (std::size_t i = 0; i + perPart <= path.size(); i += perPart) {
        const auto first = path.begin() + static_cast<std::ptrdiff_t>(i);
        out.parts.emplace_back(first, first + static_cast<std::ptrdiff_t>(perPart));
    }
    return out;
}

}  // namespace

double defaultTolerance(double radius) {
    return std::clamp(1e-4 * radius, 1e-6, 1.0);
}

Outline outlineOf(const ZEL::ZelShape& shape, const std::optional<ZEL::Reference>& reference,
                  double tolerance) {
    using Form = Outline::Form;
    const ZEL::Placement placement(shape, reference, tolerance);
    switch (shape.shapeType()) {
        case ZEL::ShapeType::None:
            return {};
        case ZEL::ShapeType::Annotation: {
            Vec3 position;
            if (static_cast<const ZEL::Annotation&>(shape).getPosition(position) != 0 && !shape.isRelative())
                return {};
            return pointsOf({position}, Form::Point, 1, placement);
        }
        case ZEL::ShapeType::Points:
            return pointsOf(static_cast<const ZEL::Points&>(shape).points(), Form::Points, 1, placement);
        case ZEL::ShapeType::Line:
            return pointsOf(static_cast<const ZEL::Line&>(shape).points(), Form::Line, 0, placement);
        case ZEL::ShapeType::LineSegs:
            return pointsOf(static_cast<const ZEL::LineSegs&>(shape).points(), Form::Lines, 2, placement);
        case ZEL::ShapeType::Polygon:
            return pointsOf(static_cast<const ZEL::Polygon&>(shape).points(), Form::Area, 0, placement);
        case ZEL::ShapeType::LatLonAltBox: {
            const auto& box = static_cast<const ZEL::LatLonAltBox&>(shape);
            const double south = std::min(box.south(), box.north());
            const double north = std::max(box.south(), box.north());
            const double east = box.west() + ZEL::eastward(box.west(), box.east());
            const double alt = placement.altitude(box.altitude());
            return straightOnMap(
                {{south, box.west(), alt}, {south, east, alt}, {north, east, alt}, {north, box.west(), alt}},
                tolerance);
        }
        case ZEL::ShapeType::ImageOverlay: {
            const auto& picture = static_cast<const ZEL::ImageOverlay&>(shape);
            return straightOnMap({placeInPicture(picture, 0, 1), placeInPicture(picture, 1, 1),
                                  placeInPicture(picture, 1, 0), placeInPicture(picture, 0, 0)},
                                 tolerance);
        }
        default:
            return roundShape(static_cast<const ZEL::CircularShape&>(shape), placement, tolerance);
    }
}

}  // namespace exchange
