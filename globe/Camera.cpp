#include "globe/Camera.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/Wgs84.h"

namespace sandbox {

using halCore::Ecef;
using halCore::kHalfPi;
using halCore::kTwoPi;
using halCore::LocalFrame;
using halCore::localFrame;
namespace wgs84 = halCore::wgs84;

namespace {

constexpr double kMinimumElevation = 0.02;
/// When a place counts as under the cursor (pixels). Small, for zooming in magnifies what is left.
constexpr double kClose = 1e-5;
constexpr int kRounds = 20;

}  // namespace

void Camera::setCenter(const halCore::Vec3& geodetic) {
    if (!std::isfinite(geodetic.lat()) || !std::isfinite(geodetic.lon()) || !std::isfinite(geodetic.alt()))
        return;
    center_ = {std::clamp(geodetic.lat(), -kHalfPi, kHalfPi), halCore::wrapToPi(geodetic.lon()),
               std::max(0.0, geodetic.alt())};
    update();
}

void Camera::setRangeAzimuthElevation(double range, double azimuth, double elevation) {
    if (!std::isfinite(range) || !std::isfinite(azimuth) || !std::isfinite(elevation)) return;
    range_ = std::clamp(range, kMinimumRange, kMaximumRange);
    azimuth_ = halCore::wrapToTwoPi(azimuth);
    elevation_ = std::clamp(elevation, kMinimumElevation, kHalfPi);
    update();
}

void Camera::setRange(double range) {
    setRangeAzimuthElevation(range, azimuth_, elevation_);
}

void Camera::setViewport(int width, int height) {
    width_ = std::max(1, width);
    height_ = std::max(1, height);
}

void Camera::update() {
    const LocalFrame frame = localFrame(center_.lat(), center_.lon());
    const Ecef ahead = frame.east * std::sin(azimuth_) + frame.north * std::cos(azimuth_);
    const double sinElevation = std::sin(elevation_);
    // Exactly straight down: cos(pi/2) would leave a trace of the horizontal.
    const double cosElevation = elevation_ >= kHalfPi ? 0.0 : std::cos(elevation_);
    back_ = frame.up * sinElevation - ahead * cosElevation;
    up_ = frame.up * cosElevation + ahead * sinElevation;
    right_ = cross(up_, back_);
    eye_ = toEcef(center_) + back_ * range_;
}

double Camera::tanHalfHeight() const {
    return std::tan(kFieldOfView / 2) * height_ / std::min(width_, height_);
}
double Camera::tanHalfWidth() const {
    return std::tan(kFieldOfView / 2) * width_ / std::min(width_, height_);
}

Ecef Camera::ray(double x, double y) const {
    const double right = (2.0 * x / width_ - 1.0) * tanHalfWidth();
    const double up = (1.0 - 2.0 * y / height_) * tanHalfHeight();
    return right_ * right + up_ * up - back_;
}

std::optional<halCore::Vec3> Camera::pick(double x, double y) const {
    const Ecef direction = ray(x, y);
    const Ecef e = toUnitSphere(eye_);
    const Ecef d = toUnitSphere(direction);
    const double a = dot(d, d);
    const double b = dot(e, d);
    const double c = dot(e, e) - 1.0;
    const double discriminant = b * b - a * c;
    if (!(discriminant >= 0.0) || b >= 0.0) return std::nullopt;
    // The nearer root, in the form that loses no digits close to the ground.
    const double t = c / (-b + std::sqrt(discriminant));
    halCore::Vec3 hit = toGeodetic(eye_ + direction * t);
    hit.setAlt(0.0);
    return hit;
}

Projected Camera::project(const Ecef& position) const {
    const Ecef v = position - eye_;
    const double depth = -dot(v, back_);
    if (!(depth > 0.0)) return {};
    Projected result;
    result.x = (dot(v, right_) / (depth * tanHalfWidth()) + 1.0) * 0.5 * width_;
    result.y = (1.0 - dot(v, up_) / (depth * tanHalfHeight())) * 0.5 * height_;
    result.visible = !isHiddenByEarth(eye_, position);
    return result;
}

bool Camera::bring(const halCore::Vec3& grabbed, double x, double y) {
    if (!pick(x, y)) return false;
    const Camera before = *this;
    if (bringNorthUp(grabbed, x, y)) return true;
    *this = before;
    if (bringTurning(grabbed, x, y)) return true;
    *this = before;
    return false;
}

bool Camera::bringNorthUp(const halCore::Vec3& grabbed, double x, double y) {
    const Ecef target = toEcef(grabbed);
    const double step = std::clamp(1e-5 * range_ / wgs84::a, 1e-11, 1e-5);
    const auto missX = [&](const Camera& camera) { return camera.project(target).x - x; };
    const auto missY = [&](const Camera& camera) { return camera.project(target).y - y; };
    for (int round = 0; round < kRounds; ++round) {
        const double dx = missX(*this);
        const double dy = missY(*this);
        if (std::hypot(dx, dy) < kClose) return project(target).visible;
        Camera other = *this;
        const double latStep = center_.lat() > 0.0 ? -step : step;
        other.setCenter({center_.lat() + latStep, center_.lon(), center_.alt()});
        const double xByLat = (missX(other) - dx) / latStep;
        const double yByLat = (missY(other) - dy) / latStep;
        other.setCenter({center_.lat(), center_.lon() + step, center_.alt()});
        const double xByLon = (missX(other) - dx) / step;
        const double yByLon = (missY(other) - dy) / step;
        const double determinant = xByLat * yByLon - xByLon * yByLat;
        // Close to a pole a turn about the axis hardly moves the place sideways: there is no answer.
        const double scale = std::hypot(xByLat, yByLat) * std::hypot(xByLat, yByLat);
        if (!(std::abs(determinant) > 0.02 * scale)) return false;
        const double lat = center_.lat() - (yByLon * dx - xByLon * dy) / determinant;
        const double lon = center_.lon() - (xByLat * dy - yByLat * dx) / determinant;
        if (std::abs(lat) >= kHalfPi || std::abs(lon - center_.lon()) > 1.0) return false;
        setCenter({lat, lon, center_.alt()});
    }
    return false;
}

bool Camera::bringTurning(const halCore::Vec3& grabbed, double x, double y) {
    const Ecef target = toEcef(grabbed);
    for (int round = 0; round < kRounds; ++round) {
        const Projected now = project(target);
        if (now.visible && std::hypot(now.x - x, now.y - y) < kClose) return true;
        const std::optional<halCore::Vec3> under = pick(x, y);
        if (!under) return false;
        // The shortest turn about the earth's centre that takes the place under the pixel to the target.
        const Ecef from = normalized(toEcef(*under));
        const Ecef to = normalized(target);
        const Ecef sine = cross(from, to);
        const double angle = std::atan2(length(sine), dot(from, to));
        const Ecef axis = normalized(sine);
        const auto turn = [&](const Ecef& v) {
            return v * std::cos(angle) + cross(axis, v) * std::sin(angle) +
                   axis * (dot(axis, v) * (1.0 - std::cos(angle)));
        };
        const Ecef ahead = turn(up_ * std::sin(elevation_) - back_ * std::cos(elevation_));
        const halCore::Vec3 center = toGeodetic(turn(toEcef(center_)));
        const LocalFrame frame = localFrame(center.lat(), center.lon());
        center_ = {center.lat(), center.lon(), center_.alt()};
        setRangeAzimuthElevation(range_, std::atan2(dot(ahead, frame.east), dot(ahead, frame.north)),
                                 elevation_);
    }
    return false;
}

void Camera::zoom(double factor, double x, double y) {
    const std::optional<halCore::Vec3> under = pick(x, y);
    setRange(range_ * factor);
    if (under) bring(*under, x, y);
}

double Camera::metersPerPixel() const {
    return 2.0 * range_ * tanHalfHeight() / height_;
}

std::array<double, 16> Camera::modelview() const {
    return {right_.x, up_.x, back_.x, 0.0, right_.y, up_.y, back_.y, 0.0,
            right_.z, up_.z, back_.z, 0.0, 0.0,      0.0,   0.0,     1.0};
}

std::array<double, 16> Camera::projection() const {
    const double n = nearPlane();
    const double f = farPlane();
    return {1.0 / tanHalfWidth(),
            0.0,
            0.0,
            0.0,
            0.0,
            1.0 / tanHalfHeight(),
            0.0,
            0.0,
            0.0,
            0.0,
            -(f + n) / (f - n),
            -1.0,
            0.0,
            0.0,
            -2.0 * f * n / (f - n),
            0.0};
}

double Camera::nearPlane() const {
    const double height = std::max(0.0, eyePosition().alt());
    return std::max(0.2, 0.02 * std::min(range_, height));
}

double Camera::farPlane() const {
    return length(eye_) + 2.0 * wgs84::a;
}

}  // namespace sandbox
