#include "geo/GeodesicPath.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/GeodesicLine.hpp>
#include <GeographicLib/Rhumb.hpp>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/NearGeodesic.h"
#include "geo/PlacesAround.h"
#include "geo/SinCos.h"

namespace halCore {

namespace {

constexpr int kMostPieces = 20000;

const GeographicLib::Geodesic& geodesic() {
    return GeographicLib::Geodesic::WGS84();
}

int piecesOfPath(double meters, double step) {
    return std::clamp(static_cast<int>(std::ceil(meters / step)), 1, kMostPieces);
}

/// Calls `add` for the points that cut the way into pieces of at most `step` metres, from the first-th on,
/// and for so many of them at most. `chord`: how far apart the ends are in a straight line. \return whether
/// that was all
template <typename Add>
bool forPointsBetween(const Vec3& from, const Vec3& to, double chord, PathKind kind, double step, int first,
                      int most, const Add& add) {
    bool all = true;
    const auto addAlong = [&](double meters, const auto& position) {
        const int pieces = piecesOfPath(meters, step);
        const int last = std::min(pieces, first + most);
        all = last == pieces;
        for (int i = first; i < last; ++i) {
            const double share = static_cast<double>(i) / pieces;
            double lat = 0.0;
            double lon = 0.0;
            position(meters * share, lat, lon);
            add(Vec3(lat * kRadiansPerDegree, lon * kRadiansPerDegree,
                     std::lerp(from.alt(), to.alt(), share)));
        }
    };
    if (kind == PathKind::Rhumb) {
        const GeographicLib::Rhumb& rhumb = GeographicLib::Rhumb::WGS84();
        double meters = 0.0;
        double azimuth = 0.0;
        rhumb.Inverse(from.lat() / kRadiansPerDegree, from.lon() / kRadiansPerDegree,
                      to.lat() / kRadiansPerDegree, to.lon() / kRadiansPerDegree, meters, azimuth);
        const GeographicLib::RhumbLine line =
            rhumb.Line(from.lat() / kRadiansPerDegree, from.lon() / kRadiansPerDegree, azimuth);
        addAlong(meters, [&](double at, double& lat, double& lon) { line.Position(at, lat, lon); });
    } else if (chord > step) {
        const GeographicLib::GeodesicLine line =
            geodesic().InverseLine(from.lat() / kRadiansPerDegree, from.lon() / kRadiansPerDegree,
                                   to.lat() / kRadiansPerDegree, to.lon() / kRadiansPerDegree);
        addAlong(line.Distance(), [&](double at, double& lat, double& lon) { line.Position(at, lat, lon); });
    }
    return all;
}

}  // namespace

int piecesOfArc(double radius, double sweep, double tolerance) {
    // What twelve pieces of a whole turn lack, of the radius.
    constexpr double kCoarsest = 0.0341;
    const double allowed = std::max({0.01, 2e-6 * radius, tolerance});
    const double share = std::clamp(allowed / std::max(radius, 1e-3), 1e-7, kCoarsest);
    const double wanted = std::ceil(std::abs(sweep) / (2.0 * std::acos(1.0 - share)));
    const int pieces = std::max(2, static_cast<int>(std::min(wanted, 4092.0)));
    return std::abs(sweep) < kTwoPi - 1e-9 ? pieces : (pieces + 11) / 12 * 12;
}

DistanceAndAzimuth geodesicBetween(const Vec3& from, const Vec3& to) {
    DistanceAndAzimuth result;
    geodesic().Inverse(from.lat() / kRadiansPerDegree, from.lon() / kRadiansPerDegree,
                       to.lat() / kRadiansPerDegree, to.lon() / kRadiansPerDegree, result.meters,
                       result.azimuthAtStart, result.azimuthAtEnd);
    result.azimuthAtStart *= kRadiansPerDegree;
    result.azimuthAtEnd *= kRadiansPerDegree;
    return result;
}

Vec3 geodesicFrom(const Vec3& from, double azimuth, double meters) {
    double lat = 0.0;
    double lon = 0.0;
    geodesic().Direct(from.lat() / kRadiansPerDegree, from.lon() / kRadiansPerDegree,
                      azimuth / kRadiansPerDegree, meters, lat, lon);
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, from.alt()};
}

void appendPath(GeodeticPath& path, const Vec3& to, PathKind kind, double step) {
    const Vec3 from = path.back();
    forPointsBetween(from, to, length(toEcef(to) - toEcef(from)), kind, step, 1, kMostPieces,
                     [&path](const Vec3& p) { path.push_back(p); });
    path.push_back(to);
}

bool appendSome(PlacedPath& path, std::size_t from, const Vec3& start, const Vec3& to, const Ecef& place,
                PathKind kind, double step) {
    constexpr int kMost = 300;
    // Of so many pieces a near geodesic is off by a hundredth of what they are off, being straight.
    constexpr double kFew = 22.0;
    const int next = static_cast<int>(path.places.size() - from);
    const double chord = length(place - path.places[from]);
    const double longest = std::min(kFew * step, NearGeodesic::kFarthest);
    bool all = true;
    if (kind == PathKind::Geodesic && chord > step && chord < longest && start.alt() == to.alt()) {
        NearGeodesic way(start, path.places[from], to, place);
        const int pieces = piecesOfPath(way.meters(), step);
        for (way.start(1.0 / pieces, 1.0 / pieces);
             path.places.size() < from + static_cast<std::size_t>(pieces); way.next())
            path.add(path.placesOnly ? Vec3() : way.point(), way.place());
    } else {
        all = forPointsBetween(start, to, chord, kind, step, next, kMost,
                               [&path](const Vec3& p) { path.add(p, toEcef(p)); });
    }
    if (all) path.add(to, place);
    return all;
}

EllipticalArc::EllipticalArc(const Vec3& center, double halfEast, double halfNorth, double turn,
                             double azimuth, double sweep)
    : center_(center), halfEast_(halfEast), halfNorth_(halfNorth), turn_(turn) {
    // The parameter angle p of the point seen at azimuth z: tan z = east sin p / (north cos p). Both
    // angles agree at the quarters, which keeps whole turns whole.
    const auto parameter = [&](double seenAt) {
        const double quarters = std::round(seenAt / kHalfPi) * kHalfPi;
        const double raw = std::atan2(std::sin(seenAt) * halfNorth, std::cos(seenAt) * halfEast);
        return quarters + wrapToPi(raw - quarters);
    };
    from_ = parameter(azimuth - turn);
    sweep_ = parameter(azimuth - turn + sweep) - from_;
}

double EllipticalArc::longerHalf() const {
    return std::max(halfEast_, halfNorth_);
}

Vec3 EllipticalArc::at(double share) const {
    const double p = from_ + sweep_ * share;
    const double east = halfEast_ * std::sin(p);
    const double north = halfNorth_ * std::cos(p);
    return geodesicFrom(center_, std::atan2(east, north) + turn_, std::hypot(east, north));
}

template <typename Point>
std::vector<Point> EllipticalArc::points(double tolerance) const {
    constexpr bool earthCentred = std::is_same_v<Point, Ecef>;
    std::vector<Point> result;
    const auto add = [&](const Vec3& point) {
        if constexpr (earthCentred)
            result.push_back(toEcef(point));
        else
            result.push_back(point);
    };
    const int pieces = piecesOfArc(longerHalf(), sweep_, tolerance);
    result.reserve(static_cast<std::size_t>(pieces) + 1);
    if (longerHalf() > PlacesAround::kFarthest || !(std::abs(center_.lat()) <= kHalfPi)) {
        for (int i = 0; i <= pieces; ++i) add(at(static_cast<double>(i) / pieces));
        return result;
    }
    const PlacesAround around(center_);
    const SinCos turn(turn_);
    for (int i = 0; i <= pieces; ++i) {
        const SinCos p(from_ + sweep_ * i / pieces);
        const double east = halfEast_ * p.sin;
        const double north = halfNorth_ * p.cos;
        const double meters = std::sqrt(east * east + north * north);
        if (!(meters > 0.0)) {
            add(center_);
            continue;
        }
        const double eastShare = (east * turn.cos + north * turn.sin) / meters;
        const double northShare = (north * turn.cos - east * turn.sin) / meters;
        if constexpr (earthCentred)
            result.push_back(around.placeAt(eastShare, northShare, meters));
        else
            result.push_back(around.at(eastShare, northShare, meters));
    }
    return result;
}

GeodeticPath EllipticalArc::path(double tolerance) const {
    return points<Vec3>(tolerance);
}

std::vector<Ecef> EllipticalArc::places(double tolerance) const {
    return points<Ecef>(tolerance);
}

std::vector<EllipticalArc> racetrackArcs(const Vec3& center, const Vec3& center2, double radius) {
    const DistanceAndAzimuth way = geodesicBetween(center, center2);
    if (way.meters < 1e-3) return {{center, radius, radius, 0.0, 0.0, -kTwoPi}};
    return {{center2, radius, radius, 0.0, way.azimuthAtEnd - kHalfPi, kPi},
            {center, radius, radius, 0.0, way.azimuthAtStart + kHalfPi, kPi}};
}

void simplify(PlacedPath& path, double tolerance, std::size_t from) {
    const std::vector<Ecef>& places = path.places;
    if (places.size() < from + 3 || !(tolerance > 0.0)) return;
    std::vector<bool> keep(places.size() - from, false);
    keep.front() = keep.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> todo{{from, places.size() - 1}};
    while (!todo.empty()) {
        const auto [first, last] = todo.back();
        todo.pop_back();
        const Ecef along = places[last] - places[first];
        const double size = std::max(dot(along, along), 1e-12);
        double most = tolerance * tolerance;
        std::size_t farthest = first;
        for (std::size_t i = first + 1; i < last; ++i) {
            const Ecef v = places[i] - places[first];
            const Ecef off = v - along * std::clamp(dot(v, along) / size, 0.0, 1.0);
            if (dot(off, off) <= most) continue;
            most = dot(off, off);
            farthest = i;
        }
        if (farthest == first) continue;
        keep[farthest - from] = true;
        todo.emplace_back(first, farthest);
        todo.emplace_back(farthest, last);
    }
    std::size_t kept = from;
    for (std::size_t i = from; i < places.size(); ++i) {
        if (!keep[i - from]) continue;
        path.points[kept] = path.points[i];
        path.places[kept++] = path.places[i];
    }
    path.points.resize(kept);
    path.places.resize(kept);
}

std::vector<Ecef> toEcef(const GeodeticPath& path) {
    std::vector<Ecef> result;
    result.reserve(path.size());
    for (const Vec3& point : path) result.push_back(toEcef(point));
    return result;
}

}  // namespace halCore
