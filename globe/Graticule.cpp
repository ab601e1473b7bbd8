#include "globe/Graticule.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/Camera.h"

namespace sandbox {

using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::kTwoPi;
namespace wgs84 = halCore::wgs84;

namespace {

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kDegree = 60 * kMinute;
constexpr double kRadians = kPi / (180.0 * kDegree);

constexpr std::array<std::int64_t, 21> kSpacings = {
    kSecond / 10, kSecond / 5,  kSecond / 2, kSecond,     2 * kSecond,  5 * kSecond,  10 * kSecond,
    20 * kSecond, 30 * kSecond, kMinute,     2 * kMinute, 5 * kMinute,  10 * kMinute, 20 * kMinute,
    30 * kMinute, kDegree,      2 * kDegree, 5 * kDegree, 10 * kDegree, 15 * kDegree, 30 * kDegree};

/// In thousandths of a second.
struct Window {
    double south = 0.0;
    double north = 0.0;
    double west = 0.0;
    double east = 0.0;
};

/// What can be seen of the earth, from wherever it is looked at.
Window horizonWindow(const Camera& camera) {
    const halCore::Vec3 eye = camera.eyePosition();
    // A little more than the horizon of the largest sphere: the earth is flat at the poles.
    const double reach =
        std::acos(std::clamp(wgs84::b / (wgs84::a + std::max(0.0, eye.alt())), 0.0, 1.0)) + 0.005;
    Window window{eye.lat() - reach, eye.lat() + reach, eye.lon() - kPi, eye.lon() + kPi};
    if (window.south > -kHalfPi && window.north < kHalfPi) {
        const double sideways = std::asin(std::min(1.0, std::sin(reach) / std::cos(eye.lat())));
        window.west = eye.lon() - sideways;
        window.east = eye.lon() + sideways;
    }
    return window;
}

Window visibleWindow(const Camera& camera) {
    Window window = horizonWindow(camera);
    const double middle = camera.center().lon();
    Window seen{kPi, -kPi, kPi, -kPi};
    constexpr int kSteps = 16;
    bool everywhere = true;
    for (int row = 0; row <= kSteps && everywhere; ++row) {
        for (int column = 0; column <= kSteps && everywhere; ++column) {
            const auto place =
                camera.pick(camera.width() * column / double{kSteps}, camera.height() * row / double{kSteps});
            if (!place) {
                everywhere = false;
                break;
            }
            const double lon = halCore::wrapToPi(place->lon() - middle);
            seen = {std::min(seen.south, place->lat()), std::max(seen.north, place->lat()),
                    std::min(seen.west, lon), std::max(seen.east, lon)};
        }
    }
    if (everywhere) {
        bool pole = false;
        for (const double lat : {-kHalfPi, kHalfPi}) {
            const Projected p = camera.project(halCore::Vec3(lat, 0.0, 0.0));
            if (!p.visible || p.x < 0 || p.y < 0 || p.x > camera.width() || p.y > camera.height()) continue;
            pole = true;
            (lat < 0.0 ? seen.south : seen.north) = lat;
        }
        window.south = seen.south;
        window.north = seen.north;
        window.west = middle + (pole ? -kPi : seen.west);
        window.east = middle + (pole ? kPi : seen.east);
    }
    window.south = std::max(window.south, -kHalfPi);
    window.north = std::min(window.north, kHalfPi);
    return {window.south / kRadians, window.north / kRadians, window.west / kRadians, window.east / kRadians};
}

/// The finest spacing of at least so much, with few enough lines.
std::int64_t spacingFor(double least, double extent) {
    constexpr double kMostLines = 60.0;
    const auto found = std::ranges::find_if(kSpacings, [&](std::int64_t spacing) {
        return static_cast<double>(spacing) >= least && extent / static_cast<double>(spacing) <= kMostLines;
    });
    return found == kSpacings.end() ? kSpacings.back() : *found;
}

std::int64_t floorTo(double value, std::int64_t spacing) {
    return static_cast<std::int64_t>(std::floor(value / static_cast<double>(spacing)));
}

std::int64_t mostNorthern(std::int64_t spacing) {
    return 90 * kDegree / spacing;
}

/// Pieces between two neighbouring crossings: enough for the curve of a parallel.
constexpr int kPieces = 4;

Ecef onGround(double lat, double lon) {
    return toEcef(halCore::Vec3(std::clamp(lat * kRadians, -kHalfPi, kHalfPi), lon * kRadians, 0.0));
}

/// Meridians stop short of the poles, where they would crowd; every quarter goes through.
std::vector<Ecef> meridian(const GraticuleGrid& grid, std::int64_t index) {
    const bool quarter = index * grid.lonSpacing % (90 * kDegree) == 0;
    const std::int64_t last = mostNorthern(grid.latSpacing) - (quarter ? 0 : 1);
    const std::int64_t from = std::max(grid.south, -last);
    const std::int64_t to = std::min(grid.north, last);
    std::vector<Ecef> points;
    for (std::int64_t i = from * kPieces; i <= to * kPieces; ++i)
        points.push_back(onGround(static_cast<double>(i * grid.latSpacing) / kPieces,
                                  static_cast<double>(index * grid.lonSpacing)));
    return points;
}

std::vector<Ecef> parallel(const GraticuleGrid& grid, std::int64_t index) {
    std::vector<Ecef> points;
    for (std::int64_t i = grid.west * kPieces; i <= grid.east * kPieces; ++i)
        points.push_back(onGround(static_cast<double>(index * grid.latSpacing),
                                  static_cast<double>(i * grid.lonSpacing) / kPieces));
    return points;
}

bool isPole(const GraticuleGrid& grid, std::int64_t index) {
    return std::abs(index * grid.latSpacing) == 90 * kDegree;
}

/// Where a line, as it appears, crosses a vertical (or horizontal) line of the view, as the other coordinate.
std::optional<double> crossing(const std::vector<Ecef>& line, const Camera& camera, bool vertical, double at,
                               double low, double high) {
    Projected before;
    for (const Ecef& p : line) {
        const Projected now = camera.project(p);
        if (before.visible && now.visible) {
            const double a = vertical ? before.x : before.y;
            const double b = vertical ? now.x : now.y;
            if ((a < at) != (b < at)) {
                const double share = (at - a) / (b - a);
                const double other =
                    vertical ? before.y + share * (now.y - before.y) : before.x + share * (now.x - before.x);
                if (other >= low && other <= high) return other;
            }
        }
        before = now;
    }
    return std::nullopt;
}

}  // namespace

GraticuleGrid graticuleGrid(const Camera& camera) {
    constexpr double kPixels = 90.0;
    const Window window = visibleWindow(camera);
    const double least = kPixels * camera.metersPerPixel() / wgs84::a / kRadians;
    const double shrink = std::max(0.02, std::cos(camera.center().lat()));
    GraticuleGrid grid;
    grid.latSpacing = spacingFor(least, window.north - window.south);
    grid.lonSpacing = std::max(grid.latSpacing, spacingFor(least / shrink, window.east - window.west));
    const std::int64_t pole = mostNorthern(grid.latSpacing);
    grid.south = std::max(floorTo(window.south, grid.latSpacing), -pole);
    grid.north = std::min(floorTo(window.north, grid.latSpacing) + 1, pole);
    grid.west = floorTo(window.west, grid.lonSpacing);
    grid.east =
        std::min(floorTo(window.east, grid.lonSpacing) + 1, grid.west + 360 * kDegree / grid.lonSpacing);
    return grid;
}

std::vector<DrawList::Line> graticuleLines(const GraticuleGrid& grid) {
    std::vector<DrawList::Line> lines;
    const auto add = [&lines](std::vector<Ecef> points) {
        if (points.size() < 2) return;
        // A bright line on a dark one shows on oceans and on ice.
        DrawList::Line& shadow = lines.emplace_back();
        shadow.points = points;
        shadow.color = {0, 0, 0, 40};
        shadow.width = 3.0F;
        DrawList::Line& line = lines.emplace_back();
        line.points = std::move(points);
        line.color = {255, 255, 255, 105};
    };
    const bool wholeTurn = (grid.east - grid.west) * grid.lonSpacing == 360 * kDegree;
    for (std::int64_t i = grid.west; i <= grid.east - (wholeTurn ? 1 : 0); ++i) add(meridian(grid, i));
    for (std::int64_t i = grid.south; i <= grid.north; ++i)
        if (!isPole(grid, i)) add(parallel(grid, i));
    return lines;
}

std::string graticuleText(std::int64_t milliSeconds, bool isLatitude, std::int64_t spacing) {
    std::int64_t value = milliSeconds;
    if (!isLatitude) {
        value %= 360 * kDegree;
        if (value > 180 * kDegree) value -= 360 * kDegree;
        if (value <= -180 * kDegree) value += 360 * kDegree;
    }
    const std::int64_t size = std::abs(value);
    const auto part = [size](std::int64_t unit, std::int64_t of) {
        return static_cast<int>(size / unit % of);
    };
    char text[40];
    int length = std::snprintf(text, sizeof text, "%d\u00B0", part(kDegree, 361));
    const auto rest = [&] { return sizeof text - static_cast<std::size_t>(length); };
    if (spacing % kDegree != 0) length += std::snprintf(text + length, rest(), "%02d'", part(kMinute, 60));
    if (spacing % kMinute != 0) {
        length += std::snprintf(text + length, rest(), "%02d", part(kSecond, 60));
        if (spacing % kSecond != 0)
            length += std::snprintf(text + length, rest(), ".%d", part(kSecond / 10, 10));
        length += std::snprintf(text + length, rest(), "\"");
    }
    std::string result(text, static_cast<std::size_t>(length));
    if (size == 0 || size == 180 * kDegree) return result;
    return result + (isLatitude ? (value > 0 ? 'N' : 'S') : (value > 0 ? 'E' : 'W'));
}

std::vector<GraticuleLabel> graticuleLabels(const GraticuleGrid& grid, const Camera& camera) {
    constexpr double kFromLeft = 34.0;
    constexpr double kFromBottom = 11.0;
    constexpr double kCorner = 70.0;  // free of names: both edges have theirs here
    const double width = camera.width();
    const double height = camera.height();
    std::vector<GraticuleLabel> labels;
    const auto add = [&](double x, double y, std::string text, bool isMeridian) {
        constexpr double kApartX = 64.0;
        constexpr double kApartY = 18.0;
        for (const GraticuleLabel& other : labels)
            if (std::abs(other.x - x) < kApartX && std::abs(other.y - y) < kApartY) return;
        labels.push_back({x, y, std::move(text), isMeridian});
    };
    // The names of lines that end within the view stand along the line through the middle.
    const auto inTheMiddle = [&](double lat, double lon, const std::string& text, bool isMeridian) {
        const Ecef place = onGround(lat, lon);
        // At the rim of the earth they would stand in the sky.
        const Ecef sight = camera.eye() - place;
        if (dot(sight, normalized(place)) < 0.25 * length(sight)) return;
        const Projected p = camera.project(place);
        if (p.visible && p.x > 0 && p.x < width && p.y > 0 && p.y < height) add(p.x, p.y, text, isMeridian);
    };
    const auto nearest = [](double radians, std::int64_t spacing) {
        return std::round(radians / kRadians / static_cast<double>(spacing)) * static_cast<double>(spacing);
    };
    const double midLat = nearest(camera.center().lat(), grid.latSpacing);
    const double midLon = nearest(camera.center().lon(), grid.lonSpacing);
    const bool wholeTurn = (grid.east - grid.west) * grid.lonSpacing == 360 * kDegree;
    for (std::int64_t i = grid.west; i <= grid.east - (wholeTurn ? 1 : 0); ++i) {
        const std::int64_t lon = i * grid.lonSpacing;
        const std::string text = graticuleText(lon, false, grid.lonSpacing);
        const std::vector<Ecef> line = meridian(grid, i);
        if (const auto x = crossing(line, camera, false, height - kFromBottom, kCorner, width - kCorner))
            add(*x, height - kFromBottom, text, true);
        else if (!crossing(line, camera, false, height - 1.0, 0.0, width))
            inTheMiddle(midLat, static_cast<double>(lon), text, true);
    }
    for (std::int64_t i = grid.south; i <= grid.north; ++i) {
        if (isPole(grid, i)) continue;
        const std::int64_t lat = i * grid.latSpacing;
        const std::string text = graticuleText(lat, true, grid.latSpacing);
        const std::vector<Ecef> line = parallel(grid, i);
        if (const auto y = crossing(line, camera, true, kFromLeft, 12.0, height - 30.0))
            add(kFromLeft, *y, text, false);
        else if (!crossing(line, camera, true, 1.0, 0.0, height))
            inTheMiddle(static_cast<double>(lat), midLon, text, false);
    }
    return labels;
}

}  // namespace sandbox
