#include "model/ShapeMiddle.h"

#include <algorithm>
#include <iterator>

#include "geo/Wgs84.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"

namespace OverlayEditor {

using halCore::Ecef;
using halCore::Vec3;

namespace {

/// Adds up the straight sides of lines, each as heavy as it is long.
class SideSum {
  public:
    /// \param places of the points
    void addLine(const std::vector<Vec3>& points, const std::vector<Ecef>& places, bool closed) {
        if (points.empty()) return;
        for (std::size_t i = 1; i < points.size(); ++i)
            addSide_({places[i - 1], points[i - 1].alt()}, {places[i], points[i].alt()});
        // The middle of points that all lie in one place.
        if (!only_) only_ = points.front();
        if (closed) addSide_({places.back(), points.back().alt()}, {places.front(), points.front().alt()});
    }
    void addLine(const std::vector<Vec3>& points) {
        std::vector<Ecef> places;
        std::ranges::transform(points, std::back_inserter(places), halCore::toEcef);
        addLine(points, places, false);
    }
    std::optional<Vec3> middle() const {
        if (!(length_ > 0.0)) return only_;
        const Ecef place = twice_ * (0.5 / length_);
        // That of what lies all about the earth is within it.
        constexpr double deep = 0.1 * halCore::wgs84::a;
        if (halCore::length(place) < deep) return std::nullopt;
        const Vec3 lla = halCore::toGeodetic(place);
        return Vec3(lla.lat(), lla.lon(), 0.5 * altitudes_ / length_);
    }

  private:
    struct Place {
        Ecef ecef;
        double alt;
    };
    void addSide_(const Place& from, const Place& to) {
        const double length = halCore::length(to.ecef - from.ecef);
        twice_ = twice_ + (from.ecef + to.ecef) * length;
        altitudes_ += (from.alt + to.alt) * length;
        length_ += length;
    }

    Ecef twice_;
    double altitudes_ = 0.0;
    double length_ = 0.0;
    std::optional<Vec3> only_;
};

}  // namespace

std::optional<Vec3> ShapeMiddle::of(const Shape& shape) {
    if (const auto* const line = dynamic_cast<const PolygonShape*>(&shape)) {
        if (!line->isComplete() || !line->placed().hasAllPlaces()) return std::nullopt;
        place_(line->points());
        SideSum sum;
        sum.addLine(points_, places_, line->subtype() == PolygonShape::Polygon);
        return sum.middle();
    }
    if (const auto* const drawn = dynamic_cast<const FreeDrawShape*>(&shape)) {
        SideSum sum;
        for (const auto& line : drawn->lines()) sum.addLine(line);
        return drawn->isComplete() ? sum.middle() : std::nullopt;
    }
    if (const auto* const orbit = dynamic_cast<const OrbitShape*>(&shape)) {
        if (!orbit->centerPt() || !orbit->centerPt2()) return std::nullopt;
        SideSum sum;
        sum.addLine({*orbit->centerPt(), *orbit->centerPt2()});
        return sum.middle();
    }
    if (const auto* const round = dynamic_cast<const CylinderShape*>(&shape))
        return round->isComplete() ? round->centerPt() : std::nullopt;
    if (const auto* const rectangle = dynamic_cast<const RectangleShape*>(&shape)) {
        const Vec3 center = rectangle->center();
        const bool lies = rectangle->isComplete() && rectangle->placed().hasAllPlaces() && isPlace(center);
        return lies ? std::optional(center) : std::nullopt;
    }
    return std::nullopt;
}

void ShapeMiddle::place_(const std::vector<Vec3>& points) {
    const std::size_t known = std::min(points_.size(), points.size());
    places_.resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        if (i >= known || points_[i] != points[i]) places_[i] = halCore::toEcef(points[i]);
    points_ = points;
}

}  // namespace OverlayEditor
