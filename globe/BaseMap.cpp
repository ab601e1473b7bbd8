#include "globe/BaseMap.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "common/Vec3.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/Camera.h"
#include "globe/map/MapClip.h"
#include "globe/map/MapData.h"

namespace sandbox {

using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kPi;
using halCore::Vec3;
namespace wgs84 = halCore::wgs84;

namespace {

constexpr int kWorldWidth = 2048;
/// How many elements of that field a pixel may cover before a detail is wanted.
constexpr double kFineEnough = 0.23;
/// The largest detail, an angle: what is seen from where the field of all the earth becomes too coarse.
constexpr double kWidest = 1.02;
/// Of a detail's picture, elements along an edge.
constexpr int kLeastSize = 512;
constexpr int kMostSize = 2048;

double angleBetween(const Vec3& a, const Vec3& b) {
    const Ecef u = normalized(toUnitSphere(toEcef(Vec3(a.lat(), a.lon(), 0.0))));
    const Ecef v = normalized(toUnitSphere(toEcef(Vec3(b.lat(), b.lon(), 0.0))));
    return 2.0 * std::asin(std::min(1.0, length(u - v) / 2.0));
}

/// What a view sees of the ground.
struct Sight {
    double radius = 0.0;  ///< the largest angle from the camera's centre to a place at the view's rim
    bool sky = false;     ///< the rim shows more than the ground
};

Sight sightOf(const Camera& camera) {
    Sight sight;
    constexpr int kSteps = 4;
    for (int i = 0; i <= kSteps; ++i)
        for (int j = 0; j <= kSteps; ++j) {
            if (i % kSteps != 0 && j % kSteps != 0) continue;
            const auto place =
                camera.pick(camera.width() * i / double{kSteps}, camera.height() * j / double{kSteps});
            if (place)
                sight.radius = std::max(sight.radius, angleBetween(camera.center(), *place));
            else
                sight.sky = true;
        }
    return sight;
}

/// The longitudes and latitudes that a view may show.
MapBox boxOf(const Camera& camera) {
    const Vec3 eye = camera.eyePosition();
    const double horizon = std::acos(std::clamp(wgs84::b / length(camera.eye()), -1.0, 1.0));
    const Sight sight = sightOf(camera);
    const Vec3& middle = sight.sky ? eye : camera.center();
    const double far = std::min((sight.sky ? horizon : sight.radius) * 1.1, kHalfPi);
    MapBox box{middle.lat() - far, middle.lat() + far, middle.lon() - kPi, middle.lon() + kPi};
    if (box.south > -kHalfPi && box.north < kHalfPi) {
        const double wide = std::asin(std::min(1.0, std::sin(far) / std::cos(middle.lat()))) * 1.1;
        box.west = middle.lon() - wide;
        box.east = middle.lon() + wide;
    }
    return box;
}

}  // namespace

const MapField& BaseMap::world() {
    if (!world_) world_ = drawWorldField(kWorldWidth, kWorldWidth / 2);
    return *world_;
}

void BaseMap::update(const Camera& camera, double pixelRatio, const MapOptions& options) {
    if (!options.land && !options.coastlines && !options.borders) return;
    Sight sight = sightOf(camera);
    // As far as the ground can be seen is never far from straight above.
    if (sight.sky) {
        const double horizon = std::acos(std::clamp(wgs84::b / length(camera.eye()), -1.0, 1.0));
        sight.radius = horizon + angleBetween(camera.eyePosition(), camera.center());
    }
    const double pixel = camera.metersPerPixel() / pixelRatio / wgs84::a;
    const double worldElement = 2.0 * kPi / kWorldWidth;
    detailNeeded_ = pixel < kFineEnough * worldElement;
    detailEnough_ = false;
    if (!detailNeeded_) return;
    // Where a view has too many pixels, an element covers some of them: lines stay sharp.
    const double reach = std::min(1.35 * sight.radius, kWidest);
    const double wanted = std::clamp(2.0 * reach / kMostSize, pixel, 2.5 * pixel);
    const auto covers = [&](const MapRegion& region) {
        const double off = angleBetween({region.lat, region.lon, 0.0}, camera.center());
        return off + sight.radius <= region.radius;
    };
    if (detail_) {
        const MapRegion& region = detail_->region;
        const double element = region.metersPerElement() / wgs84::a;
        const double off = angleBetween({region.lat, region.lon, 0.0}, camera.center());
        const bool fine = element < 1.7 * wanted && element > 0.5 * wanted;
        // What looks far away is never covered: then the detail should reach a good deal around the middle.
        detailEnough_ = covers(region);
        if (fine && (detailEnough_ || (sight.radius > 0.75 * region.radius && off < 0.25 * region.radius)))
            return;
    }
    const double radius = std::min(reach, kMostSize * 0.5 * wanted);
    MapRegion region{camera.center().lat(), camera.center().lon(), radius, 0};
    const double elements = 4.0 * std::sin(radius / 2.0) / wanted;
    region.size = std::clamp(static_cast<int>(elements) / 2 * 2, kLeastSize, kMostSize);
    const std::uint64_t revision = detail_ ? detail_->revision + 1 : 1;
    detail_ = Detail{region, drawField(region), revision};
    detailEnough_ = covers(region);
}

std::vector<DrawList::Label> BaseMap::names(const Camera& camera) {
    constexpr double kSmall = 11.0;
    constexpr double kLarge = 17.0;
    std::vector<DrawList::Label> labels;
    if (camera.range() > kFarthest) return labels;
    for (const MapName& name : MapData::names()) {
        const Ecef place = toEcef(Vec3(name.lat, name.lon, 0.0));
        const Projected seen = camera.project(place);
        if (!seen.visible || seen.x < 0 || seen.y < 0 || seen.x > camera.width() || seen.y > camera.height())
            continue;
        const Ecef sight = camera.eye() - place;
        const double distance = length(sight);
        // Towards the rim of the earth there is no room.
        if (dot(sight, normalized(place)) < 0.35 * distance) continue;
        const double pixel = 2.0 * distance * camera.tanHalfHeight() / camera.height();
        const double room = name.roomMeters / pixel;
        // Half a name's width is about three times its size.
        const double size = std::min(kLarge, kSmall + (room - 12.0) / 10.0);
        if (room * 2.0 < 3.0 * kSmall || room > 4.0 * camera.height()) continue;
        DrawList::Label label;
        label.position = place;
        label.text = name.text;
        label.fontName = "arial.ttf";
        label.pixelSize = static_cast<int>(size);
        label.color = {255, 252, 240, 205};
        label.outlineColor = {16, 26, 34, 190};
        label.outlineWidth = 1;
        label.priority = name.roomMeters;
        labels.push_back(std::move(label));
    }
    return labels;
}

std::vector<DrawList::Line> BaseMap::lines(const Camera& camera, const MapOptions& options) {
    std::vector<DrawList::Line> lines;
    if (!options.coastlines && !options.borders) return lines;
    DrawList::Line line;
    bool wanted = false;
    const auto finish = [&] {
        if (line.points.size() > 1) lines.push_back(line);
        line.points.clear();
    };
    Ecef before;
    MapClip clip;
    clip.begin = [&](MapPath::Kind kind, bool) {
        const bool border = kind == MapPath::Kind::Border;
        wanted = border ? options.borders : options.coastlines;
        line.color = border ? kBorderColor : kCoastColor;
        line.points.clear();
    };
    clip.point = [&](double lat, double lon, bool drawn) {
        if (!wanted) return;
        const Ecef place = toEcef(Vec3(lat, lon, 0.0));
        if (!drawn) finish();
        if (drawn && line.points.empty()) line.points.push_back(before);
        if (drawn) line.points.push_back(place);
        before = place;
    };
    clip.end = finish;
    clip.run(MapData::levelFor(camera.metersPerPixel()), boxOf(camera));
    return lines;
}

}  // namespace sandbox
