#include "globe/map/MapField.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "geo/Angles.h"
#include "geo/Wgs84.h"
#include "globe/map/MapClip.h"
#include "globe/map/MapData.h"

namespace sandbox {

using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::kRadiansPerDegree;
namespace wgs84 = halCore::wgs84;

namespace {

/// In elements, from the lower left corner.
struct Spot {
    double x = 0.0;
    double y = 0.0;
    bool drawn = false;  ///< the way from the spot before is a coast or border
};

/// The unit sphere's point of a geodetic position on the ground.
Ecef onUnitSphere(double lat, double lon) {
    const double sine = wgs84::b / wgs84::a * std::sin(lat);
    const double cosine = std::cos(lat);
    const double size = std::sqrt(sine * sine + cosine * cosine);
    return {cosine * std::cos(lon) / size, cosine * std::sin(lon) / size, sine / size};
}

/// Takes in paths and gives the field.
class Canvas {
  public:
    Canvas(int width, int height)
        : width_(width),
          height_(height),
          turns_(static_cast<std::size_t>(width + 1) * static_cast<std::size_t>(height)),
          toCoast_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 255),
          toBorder_(toCoast_) {}

    void add(const std::vector<Spot>& spots, bool land) {
        for (std::size_t i = 1; i < spots.size(); ++i) {
            if (land) cross(spots[i - 1], spots[i]);
            if (spots[i].drawn) splat(spots[i - 1], spots[i], land ? toCoast_ : toBorder_);
        }
    }

    MapField field() const {
        MapField result{width_, height_, {}};
        result.bytes.resize(2 * toCoast_.size());
        // Far from the coast a rough answer does: the distance to the next block with a piece of it.
        const int across = (width_ + kBlock - 1) / kBlock;
        const int along = (height_ + kBlock - 1) / kBlock;
        const std::vector<float> far = blocksToCoast(across, along);
        const auto farAt = [&](int x, int y) {
            const float bx = (static_cast<float>(x) + 0.5F) / kBlock - 0.5F;
            const float by = (static_cast<float>(y) + 0.5F) / kBlock - 0.5F;
            const int left = std::clamp(static_cast<int>(bx), 0, std::max(across - 2, 0));
            const int low = std::clamp(static_cast<int>(by), 0, std::max(along - 2, 0));
            const float* corner = far.data() + static_cast<std::ptrdiff_t>(low) * across + left;
            const float fx = std::clamp(bx - static_cast<float>(left), 0.0F, 1.0F);
            const float fy = std::clamp(by - static_cast<float>(low), 0.0F, 1.0F);
            const float lower = corner[0] + (corner[1] - corner[0]) * fx;
            const float upper = corner[across] + (corner[across + 1] - corner[across]) * fx;
            return lower + (upper - lower) * fy;
        };
        constexpr float kFarScale = 63.0F / static_cast<float>(MapField::kFarReach - MapField::kReach);
        std::size_t at = 0;
        for (int y = 0; y < height_; ++y) {
            const std::int8_t* turn =
                turns_.data() + static_cast<std::ptrdiff_t>(y) * static_cast<std::ptrdiff_t>(width_ + 1);
            int winding = 0;
            for (int x = 0; x < width_; ++x, ++at) {
                winding += turn[x];
                const int distance = toCoast_[at];
                int value = 128 + distance / 2;
                if (winding == 0) {
                    value = 127 - distance / 4;
                    if (distance == 255) {
                        const float beyond = (farAt(x, y) - static_cast<float>(MapField::kReach)) * kFarScale;
                        value = 63 - static_cast<int>(std::clamp(beyond, 0.0F, 63.0F));
                    }
                }
                result.bytes[2 * at] = static_cast<std::uint8_t>(value);
                result.bytes[2 * at + 1] = toBorder_[at];
            }
        }
        return result;
    }

  private:
    static constexpr int kBlock = 4;  ///< elements

    /// Of each block the distance to the coast in elements, by steps to its neighbours.
    std::vector<float> blocksToCoast(int across, int along) const {
        std::vector<float> far(static_cast<std::size_t>(across) * static_cast<std::size_t>(along),
                               static_cast<float>(2.0 * MapField::kFarReach));
        for (int y = 0; y < height_; ++y) {
            const std::uint8_t* row = toCoast_.data() + static_cast<std::ptrdiff_t>(y) * width_;
            float* blocks = far.data() + static_cast<std::ptrdiff_t>(y / kBlock) * across;
            for (int x = 0; x < width_; ++x)
                if (row[x] < 255)
                    blocks[x / kBlock] =
                        std::min(blocks[x / kBlock],
                                 static_cast<float>(row[x]) * static_cast<float>(MapField::kReach / 255.0));
        }
        constexpr float kStraight = kBlock;
        constexpr float kSlanting = kBlock * 1.4142F;
        const auto spread = [&](int y, int x, int dy, int dx, float step) {
            if (x + dx < 0 || x + dx >= across || y + dy < 0 || y + dy >= along) return;
            float& here = far[static_cast<std::size_t>(y * across + x)];
            here = std::min(here, far[static_cast<std::size_t>((y + dy) * across + x + dx)] + step);
        };
        const auto visit = [&](int y, int x, int way) {
            spread(y, x, 0, -way, kStraight);
            spread(y, x, -way, 0, kStraight);
            spread(y, x, -way, -way, kSlanting);
            spread(y, x, -way, way, kSlanting);
        };
        for (int y = 0; y < along; ++y)
            for (int x = 0; x < across; ++x) visit(y, x, 1);
        for (int y = along - 1; y >= 0; --y)
            for (int x = across - 1; x >= 0; --x) visit(y, x, -1);
        return far;
    }

    /// Notes in which elements of a row a ring's way up or down begins to count, those to the right of it.
    void cross(const Spot& a, const Spot& b) {
        if (a.y == b.y) return;
        const bool up = b.y > a.y;
        const Spot& low = up ? a : b;
        const Spot& high = up ? b : a;
        const double least = std::max(std::ceil(low.y - 0.5), 0.0);
        const double most = std::min(std::ceil(high.y - 0.5), static_cast<double>(height_));
        const double slope = (high.x - low.x) / (high.y - low.y);
        for (int y = static_cast<int>(least); y < static_cast<int>(most); ++y) {
            const double x = low.x + (y + 0.5 - low.y) * slope;
            const auto column =
                static_cast<std::ptrdiff_t>(std::clamp(std::ceil(x - 0.5), 0.0, static_cast<double>(width_)));
            // Sums may run over on their way, not in their end.
            std::int8_t& turn =
                turns_[static_cast<std::size_t>(y * static_cast<std::ptrdiff_t>(width_ + 1) + column)];
            turn = static_cast<std::int8_t>(turn + (up ? 1 : -1));
        }
    }

    void splat(const Spot& a, const Spot& b, std::vector<std::uint8_t>& distances) const {
        constexpr double reach = MapField::kReach;
        const auto span = [](double low, double high, int size) {
            return std::pair{
                static_cast<int>(std::clamp(std::ceil(low - reach - 0.5), 0.0, double(size))),
                static_cast<int>(std::clamp(std::floor(high + reach - 0.5) + 1.0, 0.0, double(size)))};
        };
        const auto [bottom, top] = span(std::min(a.y, b.y), std::max(a.y, b.y), height_);
        const auto [left, right] = span(std::min(a.x, b.x), std::max(a.x, b.x), width_);
        if (bottom >= top || left >= right) return;
        const auto dx = static_cast<float>(b.x - a.x);
        const auto dy = static_cast<float>(b.y - a.y);
        const float size = dx * dx + dy * dy;
        const float inverse = size > 0.0F ? 1.0F / size : 0.0F;
        constexpr float kScale = 255.0F / static_cast<float>(reach);
        // Of a long slanting piece a row sees little.
        const float slant = dy != 0.0F ? dx / dy : 0.0F;
        const float wide = static_cast<float>(reach) * std::sqrt(1.0F + slant * slant) + 1.0F;
        const bool narrow = right - left > 24 && dy != 0.0F;
        for (int y = bottom; y < top; ++y) {
            const float py = static_cast<float>(y + 0.5 - a.y);
            int from = left;
            int to = right;
            if (narrow) {
                const float middle = static_cast<float>(a.x) + py * slant;
                from = static_cast<int>(std::clamp(middle - wide, float(left), float(right)));
                to = static_cast<int>(std::clamp(middle + wide + 1.0F, float(left), float(right)));
            }
            std::uint8_t* row = distances.data() + static_cast<std::ptrdiff_t>(y) * width_;
            for (int x = from; x < to; ++x) {
                const float px = static_cast<float>(x + 0.5 - a.x);
                const float share = std::clamp((px * dx + py * dy) * inverse, 0.0F, 1.0F);
                const float ox = px - share * dx;
                const float oy = py - share * dy;
                const float off = std::sqrt(ox * ox + oy * oy) * kScale;
                if (off < static_cast<float>(row[x])) row[x] = static_cast<std::uint8_t>(off);
            }
        }
    }

    int width_;
    int height_;
    std::vector<std::int8_t> turns_;  ///< by how much the winding number changes at an element
    std::vector<std::uint8_t> toCoast_;
    std::vector<std::uint8_t> toBorder_;
};

/// Without points that the picture cannot tell apart.
void thinOut(std::vector<Spot>& spots) {
    constexpr double kNear = 0.7;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < spots.size(); ++i) {
        const bool middle = i > 0 && i + 1 < spots.size() && spots[i].drawn && spots[i + 1].drawn;
        if (middle && std::hypot(spots[i].x - spots[kept - 1].x, spots[i].y - spots[kept - 1].y) < kNear)
            continue;
        spots[kept++] = spots[i];
    }
    spots.resize(kept);
}

/// With corners rounded that are no truer than so many elements: from close by, the source's points would
/// show as what they are.
std::vector<Spot> rounded(const std::vector<Spot>& spots, double reach) {
    std::vector<Spot> result;
    for (std::size_t i = 0; i < spots.size(); ++i) {
        if (i == 0 || i + 1 == spots.size() || !spots[i].drawn || !spots[i + 1].drawn) {
            result.push_back(spots[i]);
            continue;
        }
        const Spot& corner = spots[i];
        const auto towards = [&](const Spot& other) {
            const double far = std::hypot(other.x - corner.x, other.y - corner.y);
            const double share = far > 0.0 ? std::min(0.5, reach / far) : 0.0;
            return Spot{std::lerp(corner.x, other.x, share), std::lerp(corner.y, other.y, share), true};
        };
        const Spot from = towards(spots[i - 1]);
        const Spot to = towards(spots[i + 1]);
        const double size = std::hypot(from.x - to.x, from.y - to.y);
        const int steps = std::clamp(static_cast<int>(size / 4.0), 2, 16);
        for (int k = 0; k <= steps; ++k) {
            const double t = static_cast<double>(k) / steps;
            const double u = 1.0 - t;
            result.push_back({u * u * from.x + 2.0 * u * t * corner.x + t * t * to.x,
                              u * u * from.y + 2.0 * u * t * corner.y + t * t * to.y, true});
        }
    }
    return result;
}

/// \param meters what an element covers
template <typename Projection>
MapField draw(int width, int height, double meters, const MapBox& box, Projection&& project) {
    /// How far the source's points may be off.
    constexpr double kGrain = 400.0;
    Canvas canvas(width, height);
    std::vector<Spot> spots;
    bool land = true;
    MapClip clip;
    clip.begin = [&](MapPath::Kind kind, bool) {
        spots.clear();
        land = kind != MapPath::Kind::Border;
    };
    clip.point = [&](double lat, double lon, bool drawn) {
        Spot spot = project(lat, lon);
        spot.drawn = drawn;
        spots.push_back(spot);
    };
    clip.end = [&] {
        thinOut(spots);
        const double grain = kGrain / meters;
        canvas.add(grain > 3.0 ? rounded(spots, grain) : spots, land);
    };
    clip.run(MapData::levelFor(meters), box);
    return canvas.field();
}

}  // namespace

MapRegion::Frame MapRegion::frame() const {
    const Ecef middle = onUnitSphere(lat, lon);
    const Ecef east{-std::sin(lon), std::cos(lon), 0.0};
    return {middle, east, cross(middle, east)};
}

double MapRegion::scale() const {
    return size / (4.0 * std::sin(radius / 2.0));
}

double MapRegion::metersPerElement() const {
    return wgs84::a / scale();
}

MapField drawField(const MapRegion& region) {
    // Geodetic latitudes differ a little from those there. A box that reached the place on the other side of
    // the earth would turn land and sea round: with less than 60 degrees none does.
    const double far = std::min(region.radius * 1.02 + 16.0 / region.scale(), 60.0 * kRadiansPerDegree);
    MapBox box{region.lat - far, region.lat + far, region.lon - kPi, region.lon + kPi};
    if (box.south > -kHalfPi && box.north < kHalfPi) {
        const double wide = std::asin(std::min(1.0, std::sin(far) / std::cos(region.lat))) * 1.02;
        box.west = region.lon - wide;
        box.east = region.lon + wide;
    }
    box.south = std::max(box.south, -kHalfPi);
    box.north = std::min(box.north, kHalfPi);
    const MapRegion::Frame frame = region.frame();
    const double scale = region.scale();
    const double half = region.size / 2.0;
    return draw(region.size, region.size, region.metersPerElement(), box, [&](double lat, double lon) {
        const Ecef d = onUnitSphere(lat, lon) - frame.middle;
        const double grown = scale / std::sqrt(std::max(1.0 - dot(d, d) / 4.0, 1e-6));
        return Spot{half + dot(d, frame.east) * grown, half + dot(d, frame.north) * grown, false};
    });
}

MapField drawWorldField(int width, int height) {
    return draw(width, height, halCore::kTwoPi * wgs84::a / width, {-kHalfPi, kHalfPi, -kPi, kPi},
                [&](double lat, double lon) {
                    return Spot{(lon + kPi) / halCore::kTwoPi * width, (lat + kHalfPi) / kPi * height, false};
                });
}

}  // namespace sandbox
