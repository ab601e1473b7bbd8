#include "geo/PathMeasure.h"

#include <cmath>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>

#include "geo/Angles.h"

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

double areaOfDisc(const Vec3& center, double radius) {
    // Two polygons on the rim; what they lack of the disc shrinks with the square of their sides.
    constexpr int sides = 180;
    PolygonArea fine(Geodesic::WGS84());
    PolygonArea coarse(Geodesic::WGS84());
    for (int i = 0; i < sides; ++i) {
        double lat = 0.0;
        double lon = 0.0;
        Geodesic::WGS84().Direct(degrees(center.lat()), degrees(center.lon()), 360.0 * i / sides, radius, lat,
                                 lon);
        fine.AddPoint(lat, lon);
        if (i % 2 == 0) coarse.AddPoint(lat, lon);
    }
    const auto area = [](const PolygonArea& polygon) {
        double length = 0.0;
        double result = 0.0;
        polygon.Compute(true, false, length, result);
        return result;
    };
    return (4.0 * area(fine) - area(coarse)) / 3.0;
}

}  // namespace halCore
