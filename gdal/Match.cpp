#include "gdal/Match.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/Wgs84.h"

namespace exchange {

using halCore::Ecef;
using halCore::GeodeticPath;
using halCore::Vec3;

namespace {

constexpr double kAltitude = 0.01;
constexpr double kOnSeam = 1e-9;

bool append(const OGRPoint& point, GeodeticPath& path) {
    constexpr double k = halCore::kRadiansPerDegree;
    const double alt = point.Is3D() ? point.getZ() : 0.0;
    if (!std::isfinite(point.getX()) || !std::isfinite(alt) || !(std::abs(point.getY()) <= 90.0))
        return false;
    const double lon = point.getX() * k;
    path.emplace_back(point.getY() * k, std::abs(point.getX()) <= 180.0 ? lon : halCore::wrapToPi(lon), alt);
    return true;
}

bool append(const OGRSimpleCurve& curve, bool closed, std::vector<GeodeticPath>& paths) {
    GeodeticPath& path = paths.emplace_back();
    path.reserve(static_cast<std::size_t>(curve.getNumPoints()));
    OGRPoint point;
    for (int i = 0; i < curve.getNumPoints(); ++i) {
        curve.getPoint(i, &point);
        if (!append(point, path)) return false;
    }
    if (closed && path.size() > 1 && path.front() == path.back()) path.pop_back();
    return true;
}

bool append(const OGRGeometry& geometry, std::vector<GeodeticPath>& paths) {
    if (geometry.IsEmpty()) return true;
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (type == wkbPoint) return append(*geometry.toPoint(), paths.emplace_back());
    if (type == wkbLineString) return append(*geometry.toLineString(), false, paths);
    if (OGR_GT_IsSubClassOf(type, wkbPolygon)) {
        for (const OGRLinearRing* ring : *geometry.toPolygon())
            if (!append(*ring, true, paths)) return false;
        return true;
    }
    if (!OGR_GT_IsSubClassOf(type, wkbGeometryCollection)) return true;
    for (const OGRGeometry* member : *geometry.toGeometryCollection())
        if (!append(*member, paths)) return false;
    return true;
}

Ecef onSphere(const Vec3& place) {
    return normalized(toUnitSphere(toEcef(Vec3(place.lat(), place.lon(), 0.0))));
}

/// Lines on the unit sphere, to measure from.
class Lines {
  public:
    Lines(const std::vector<GeodeticPath>& paths, bool closed) {
        for (const GeodeticPath& path : paths) {
            const std::size_t first = points_.size();
            for (const Vec3& place : path) points_.push_back(onSphere(place));
            if (closed && path.size() > 2) points_.push_back(points_[first]);
            breaks_.push_back(points_.size());
        }
    }

    /// Whether a point is within so much of one of the lines. Asked for points in their order it is quick.
    bool isNear(const Ecef& point, double allowed) const {
        const std::size_t count = points_.size();
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = (last_ + i) % count;
            if (distance(point, at) > allowed) continue;
            last_ = at;
            return true;
        }
        return false;
    }

  private:
    double distance(const Ecef& point, std::size_t at) const {
        const Ecef& from = points_[at];
        const bool isEnd = at + 1 == points_.size() || std::ranges::binary_search(breaks_, at + 1);
        const Ecef along = isEnd ? Ecef{} : points_[at + 1] - from;
        const double size = dot(along, along);
        const double share = size > 0.0 ? std::clamp(dot(point - from, along) / size, 0.0, 1.0) : 0.0;
        return length(point - normalized(from + along * share));
    }

    std::vector<Ecef> points_;
    std::vector<std::size_t> breaks_;
    mutable std::size_t last_ = 0;
};

bool isOnSeam(const Vec3& place) {
    return std::abs(place.lon()) > halCore::kPi - kOnSeam ||
           std::abs(place.lat()) > halCore::kHalfPi - kOnSeam;
}

bool allNear(const std::vector<GeodeticPath>& paths, const Lines& lines, double allowed, bool skipSeam) {
    for (const GeodeticPath& path : paths)
        for (const Vec3& place : path)
            if (!(skipSeam && isOnSeam(place)) && !lines.isNear(onSphere(place), allowed)) return false;
    return true;
}

/// The smallest and the largest latitude, longitude and altitude. Longitudes lead on from the first one's.
struct Bounds {
    Vec3 low{1e9, 1e9, 1e12};
    Vec3 high{-1e9, -1e9, -1e12};

    explicit Bounds(const std::vector<GeodeticPath>& paths) {
        double lon = paths.empty() || paths.front().empty() ? 0.0 : paths.front().front().lon();
        for (const GeodeticPath& path : paths) {
            for (const Vec3& place : path) {
                lon += halCore::wrapToPi(place.lon() - lon);
                low.set(std::min(low.lat(), place.lat()), std::min(low.lon(), lon),
                        std::min(low.alt(), place.alt()));
                high.set(std::max(high.lat(), place.lat()), std::max(high.lon(), lon),
                         std::max(high.alt(), place.alt()));
            }
        }
    }
};

}  // namespace

std::optional<std::vector<GeodeticPath>> pathsOf(const OGRGeometry& geometry) {
    std::vector<GeodeticPath> paths;
    if (!append(geometry, paths)) return std::nullopt;
    return paths;
}

bool matches(const Outline& outline, const std::vector<GeodeticPath>& paths, bool hasAltitudes,
             double allowed) {
    if (outline.parts.empty() || paths.empty()) return false;
    if (hasAltitudes) {
        const Bounds ours(outline.parts);
        const Bounds theirs(paths);
        if (!(std::abs(ours.low.alt() - theirs.low.alt()) <= kAltitude) ||
            !(std::abs(ours.high.alt() - theirs.high.alt()) <= kAltitude))
            return false;
    }
    const bool closed = outline.form == Outline::Form::Area;
    const double share = allowed / halCore::wgs84::a;
    // Where an outline leads along the seam, or round a pole, the map has edges that the outline has not.
    return allNear(paths, Lines(outline.parts, closed), share, true) &&
           allNear(outline.parts, Lines(paths, closed), share, true);
}

std::optional<Vec3> middleShift(const Outline& outline, const std::vector<GeodeticPath>& paths,
                                bool hasAltitudes) {
    if (paths.size() != 1 || outline.parts.size() != 1) return std::nullopt;
    const Bounds ours(outline.parts);
    const Bounds theirs(paths);
    const auto wide = [](const Bounds& bounds) {
        return bounds.high.lon() - bounds.low.lon() > halCore::kPi ||
               std::max(std::abs(bounds.high.lat()), std::abs(bounds.low.lat())) > halCore::kHalfPi - kOnSeam;
    };
    if (wide(ours) || wide(theirs)) return std::nullopt;
    const auto middle = [](double low, double high) { return 0.5 * (low + high); };
    return Vec3(middle(theirs.low.lat(), theirs.high.lat()) - middle(ours.low.lat(), ours.high.lat()),
                middle(theirs.low.lon(), theirs.high.lon()) - middle(ours.low.lon(), ours.high.lon()),
                hasAltitudes ? theirs.low.alt() - ours.low.alt() : 0.0);
}

std::optional<Vec3> shiftOf(const Outline& outline, const std::vector<GeodeticPath>& paths, bool hasAltitudes,
                            double allowed) {
    const std::optional<Vec3> shift = middleShift(outline, paths, hasAltitudes);
    if (!shift) return std::nullopt;
    std::vector<GeodeticPath> back = paths;
    for (GeodeticPath& path : back)
        for (Vec3& place : path)
            place.set(place.lat() - shift->lat(), place.lon() - shift->lon(), place.alt() - shift->alt());
    if (!matches(outline, back, hasAltitudes, allowed)) return std::nullopt;
    return shift;
}

double allowedFor(const Outline& outline) {
    double size = 0.0;
    if (!outline.parts.empty() && !outline.parts.front().empty()) {
        const Ecef first = onSphere(outline.parts.front().front());
        for (const GeodeticPath& path : outline.parts)
            for (const Vec3& place : path) size = std::max(size, length(onSphere(place) - first));
    }
    return std::max(0.02, defaultTolerance(0.5 * size * halCore::wgs84::a));
}

}  // namespace exchange
