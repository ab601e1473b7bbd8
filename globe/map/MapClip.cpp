#include "globe/map/MapClip.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geo/Angles.h"

namespace sandbox {

using halCore::kHalfPi;
using halCore::kTwoPi;

namespace {

struct Place {
    double lat;
    double lon;
};

enum Side : unsigned { kSouth = 1, kNorth = 2, kWest = 4, kEast = 8 };

unsigned sidesOf(const MapBox& box, Place p) {
    return (p.lat < box.south ? kSouth : 0U) | (p.lat > box.north ? kNorth : 0U) |
           (p.lon < box.west ? kWest : 0U) | (p.lon > box.east ? kEast : 0U);
}

/// The sides beyond which a whole part lies.
unsigned sidesOf(const MapBox& box, const MapLevel::Box& part, double turn) {
    return (part.north < box.south ? kSouth : 0U) | (part.south > box.north ? kNorth : 0U) |
           (part.east + turn < box.west ? kWest : 0U) | (part.west + turn > box.east ? kEast : 0U);
}

/// One path on its way.
class Walk {
  public:
    Walk(const MapClip& clip, const MapBox& box)
        : clip_(clip), box_(box), stride_(std::max(box.north - box.south, box.east - box.west) / 16.0) {}

    void start(Place p) {
        last_ = p;
        put(clamped(p), false);
    }

    void go(Place p, bool own) {
        const unsigned from = sidesOf(box_, last_);
        const unsigned to = sidesOf(box_, p);
        if ((from | to) == 0) {
            put(p, own);
        } else if ((from & to) != 0) {
            put(clamped(p), false);
        } else {
            // Shares of the way, its end last.
            std::array<double, 6> cuts{0.0, 1.0, 1.0, 1.0, 1.0, 1.0};
            std::size_t count = 1;
            const auto cut = [&](double edge, double a, double b) {
                if ((a < edge) != (b < edge)) cuts[count++] = (edge - a) / (b - a);
            };
            cut(box_.south, last_.lat, p.lat);
            cut(box_.north, last_.lat, p.lat);
            cut(box_.west, last_.lon, p.lon);
            cut(box_.east, last_.lon, p.lon);
            ++count;
            std::sort(cuts.begin(), cuts.end());
            const auto at = [&](double share) {
                return Place{std::lerp(last_.lat, p.lat, share), std::lerp(last_.lon, p.lon, share)};
            };
            for (std::size_t i = 1; i < count; ++i)
                put(clamped(at(cuts[i])), own && sidesOf(box_, at((cuts[i - 1] + cuts[i]) / 2.0)) == 0);
        }
        last_ = p;
    }

    /// A part that lies beyond one side: only where it ends matters.
    void skipTo(Place p) {
        put(clamped(p), false);
        last_ = p;
    }

  private:
    Place clamped(Place p) const {
        return {std::clamp(p.lat, box_.south, box_.north), std::clamp(p.lon, box_.west, box_.east)};
    }

    /// Long ways in steps: they are straight in latitude and longitude.
    void put(Place p, bool drawn) {
        if (begun_) {
            const double most = std::max(std::abs(p.lat - shown_.lat), std::abs(p.lon - shown_.lon));
            if (most == 0.0) return;
            const int steps = static_cast<int>(std::min(most / stride_, 64.0)) + 1;
            for (int i = 1; i < steps; ++i) {
                const double share = static_cast<double>(i) / steps;
                clip_.point(std::lerp(shown_.lat, p.lat, share), std::lerp(shown_.lon, p.lon, share), drawn);
            }
        }
        begun_ = true;
        shown_ = p;
        clip_.point(p.lat, p.lon, drawn);
    }

    const MapClip& clip_;
    const MapBox& box_;
    double stride_;
    Place last_{};
    Place shown_{};
    bool begun_ = false;
};

}  // namespace

void MapClip::run(const MapLevel& level, const MapBox& box) const {
    std::size_t firstBox = 0;
    for (const MapPath& path : level.paths) {
        const std::size_t parts = (path.count + MapLevel::kPart - 1) / MapLevel::kPart;
        const std::size_t boxes = firstBox;
        firstBox += parts;
        const bool closed = path.kind != MapPath::Kind::Border;
        for (const double turn : {-kTwoPi, 0.0, kTwoPi}) {
            unsigned beyond = kSouth | kNorth | kWest | kEast;
            for (std::size_t i = 0; i < parts; ++i) beyond &= sidesOf(box, level.boxes[boxes + i], turn);
            // Land around a pole reaches down to it.
            if (path.kind == MapPath::Kind::LandAroundPole) beyond &= ~unsigned{kNorth};
            if (beyond != 0) continue;
            const auto place = [&](std::size_t i) {
                const MapPoint& p = level.points[path.first + i];
                return Place{p.lat, p.lon + turn};
            };
            begin(path.kind, closed);
            Walk walk(*this, box);
            walk.start(place(0));
            for (std::size_t part = 0; part < parts; ++part) {
                const std::size_t from = part * MapLevel::kPart;
                const std::size_t to = std::min(from + MapLevel::kPart, path.count);
                if (from > 0) walk.go(place(from), true);
                if (sidesOf(box, level.boxes[boxes + part], turn) != 0)
                    walk.skipTo(place(to - 1));
                else
                    for (std::size_t i = from + 1; i < to; ++i) walk.go(place(i), true);
            }
            if (path.kind == MapPath::Kind::LandAroundPole) {
                walk.go({-kHalfPi, place(path.count - 1).lon}, false);
                walk.go({-kHalfPi, place(0).lon}, false);
                walk.go(place(0), false);
            } else if (closed) {
                walk.go(place(0), true);
            }
            end();
        }
    }
}

}  // namespace sandbox
