#include "geo/PathMeasure.h"

#include <cmath>
#include <optional>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>

#include "geo/Angles.h"
#include "geo/GeodesicPath.h"

namespace halCore {

using GeographicLib::Geodesic;
using GeographicLib::PolygonArea;

namespace {

double degrees(double radians) {
    return radians / kRadiansPerDegree;
}

}  // namespace

struct PathMeasure::Sums {
    PolygonArea way{Geodesic::WGS84(), true};
    PolygonArea area{Geodesic::WGS84(), false};
};

PathMeasure::PathMeasure() : sums_(std::make_unique<Sums>()) {}

PathMeasure::~PathMeasure() = default;

void PathMeasure::clear() {
    sums_->way.Clear();
    sums_->area.Clear();
    size_ = 0;
}

void PathMeasure::add(const Vec3& point) {
    sums_->way.AddPoint(degrees(point.lat()), degrees(point.lon()));
    sums_->area.AddPoint(degrees(point.lat()), degrees(point.lon()));
    ++size_;
}

double PathMeasure::lengthTo(const Vec3& next) const {
    double length = 0.0;
    double area = 0.0;
    sums_->way.TestPoint(degrees(next.lat()), degrees(next.lon()), false, true, length, area);
    return length;
}

double PathMeasure::areaTo(const Vec3& next) const {
    double length = 0.0;
    double area = 0.0;
    sums_->area.TestPoint(degrees(next.lat()), degrees(next.lon()), false, true, length, area);
    return std::abs(area);
}

namespace {

/// The area within a rim. Two polygons on it lack of it what shrinks with the square of their sides.
template <typename PlaceAt>
double areaWithin(int sides, const std::optional<Vec3>& corner, PlaceAt&& placeAt) {
    PolygonArea fine(Geodesic::WGS84());
    PolygonArea coarse(Geodesic::WGS84());
    for (int i = 0; i < sides + (corner ? 1 : 0); ++i) {
        const Vec3 place = placeAt(static_cast<double>(i) / sides);
        fine.AddPoint(degrees(place.lat()), degrees(place.lon()));
        if (i % 2 == 0) coarse.AddPoint(degrees(place.lat()), degrees(place.lon()));
    }
    const auto area = [&](PolygonArea& polygon) {
        if (corner) polygon.AddPoint(degrees(corner->lat()), degrees(corner->lon()));
        double length = 0.0;
        double result = 0.0;
        polygon.Compute(true, false, length, result);
        return result;
    };
    return (4.0 * area(fine) - area(coarse)) / 3.0;
}

constexpr int kSides = 180;

}  // namespace

double areaOfDisc(const Vec3& center, double radius) {
    return areaWithin(kSides, std::nullopt,
                      [&](double share) { return geodesicFrom(center, kTwoPi * share, radius); });
}

double areaOfSector(const Vec3& center, double halfEast, double halfNorth, double azimuth, double sweep) {
    const bool isWhole = sweep >= kTwoPi;
    const EllipticalArc arc(center, halfEast, halfNorth, 0.0, azimuth, sweep);
    return areaWithin(kSides, isWhole ? std::nullopt : std::optional(center),
                      [&](double share) { return arc.at(share); });
}

}  // namespace halCore
