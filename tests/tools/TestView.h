#pragma once

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <GeographicLib/Geocentric.hpp>

#include "support/FakeHost.h"
#include "tools/ToolView.h"

constexpr double kDegree = std::numbers::pi / 180.0;

inline halCore::Vec3 degrees(double lat, double lon, double alt = 0.0) {
    return {lat * kDegree, lon * kDegree, alt};
}

/// A camera without OpenGL for the tools: knows where pixels lie and keeps what is painted. Projection goes
/// through the code under test, the way back from a pixel to the ground through GeographicLib.
class TestView final : public OverlayEditor::ToolView {
  public:
    struct Painted {
        OverlayEditor::Pixel pixel;
        std::string label;
        bool highlighted;
        bool textAbove;
        std::uint32_t color;
    };

    static constexpr int kWidth = 800;
    static constexpr int kHeight = 600;

    /// Looks from `eye`, `tilt` radians away from straight down towards the azimuth.
    explicit TestView(const halCore::Vec3& eye, double azimuth = 0.0, double tilt = 0.0) {
        look(eye, azimuth, tilt);
        install(this);
    }
    ~TestView() override { install(nullptr); }

    void look(const halCore::Vec3& eye, double azimuth = 0.0, double tilt = 0.0) {
        std::vector<double> enu(9);
        GeographicLib::Geocentric::WGS84().Forward(eye.lat() / kDegree, eye.lon() / kDegree, eye.alt(),
                                                   eye_[0], eye_[1], eye_[2], enu);
        for (std::size_t i = 0; i < 3; ++i) {
            const double east = enu[3 * i], north = enu[3 * i + 1], up = enu[3 * i + 2];
            const double forward = east * std::sin(azimuth) + north * std::cos(azimuth);
            axes_[0][i] = east * std::cos(azimuth) - north * std::sin(azimuth);
            axes_[1][i] = forward * std::cos(tilt) + up * std::sin(tilt);
            axes_[2][i] = -forward * std::sin(tilt) + up * std::cos(tilt);
        }
    }

    /// Modelview and projection, column by column.
    std::pair<std::array<double, 16>, std::array<double, 16>> matrices() const {
        std::array<double, 16> modelview{};
        for (std::size_t row = 0; row < 3; ++row)
            for (std::size_t column = 0; column < 3; ++column)
                modelview[column * 4 + row] = axes_[row][column];
        modelview[15] = 1.0;
        std::array<double, 16> perspective{};
        perspective[0] = kFocal * kHeight / kWidth;
        perspective[5] = kFocal;
        perspective[10] = -1.0;
        perspective[11] = -1.0;
        perspective[14] = -2.0;
        return {modelview, perspective};
    }
    OverlayEditor::ViewProjection projection(double scale = 1.0) const {
        const auto [modelview, perspective] = matrices();
        return {{eye_[0], eye_[1], eye_[2]}, modelview, perspective, kWidth, kHeight, scale};
    }

    /// Where the ray through a pixel meets the ellipsoid.
    std::optional<halCore::Vec3> pick(double x, double y) const {
        const double right = (x / kWidth * 2.0 - 1.0) / (kFocal * kHeight / kWidth);
        const double up = (1.0 - y / kHeight * 2.0) / kFocal;
        const auto& earth = GeographicLib::Geocentric::WGS84();
        const double radius = earth.EquatorialRadius();
        const std::array<double, 3> axis{radius, radius, radius * (1.0 - earth.Flattening())};
        std::array<double, 3> ray{};
        double dd = 0.0, ed = 0.0, ee = -1.0;
        for (std::size_t i = 0; i < 3; ++i) {
            ray[i] = axes_[0][i] * right + axes_[1][i] * up - axes_[2][i];
            dd += ray[i] * ray[i] / (axis[i] * axis[i]);
            ed += ray[i] * eye_[i] / (axis[i] * axis[i]);
            ee += eye_[i] * eye_[i] / (axis[i] * axis[i]);
        }
        const double root = ed * ed - dd * ee;
        if (root < 0.0 || ed > 0.0) return std::nullopt;
        const double t = ee / (-ed + std::sqrt(root));
        double lat = 0.0, lon = 0.0, alt = 0.0;
        earth.Reverse(eye_[0] + t * ray[0], eye_[1] + t * ray[1], eye_[2] + t * ray[2], lat, lon, alt);
        return degrees(lat, lon);
    }

    OverlayEditor::ViewProjection capture(int, int) override { return projection(density); }
    void paint(const OverlayEditor::ViewProjection& view,
               const OverlayEditor::ToolPicture& picture) override {
        painted.clear();
        lines.clear();
        for (const auto* line : picture.lines()) lines.emplace_back(line->from(), line->to());
        picture.eachPoint([&](const OverlayEditor::ToolPicture::Point& entry) {
            if (const auto pixel = view.pixel(entry.ecef))
                painted.push_back({*pixel, entry.point->getDescription(), entry.point->isHighlighted(),
                                   entry.point->drawsTextAbove(), entry.point->getColor()});
        });
    }
    void sawCursor(const OverlayEditor::ViewProjection&, int, int, const halCore::Vec3&) override {}

    std::vector<Painted> painted;
    /// From where to where.
    std::vector<std::pair<halCore::Vec3, halCore::Vec3>> lines;
    /// Device pixels per pixel of the mouse.
    double density = 1.0;

    static constexpr double kFocal = 3.0;

  private:
    /// To the right, up, and backwards.
    std::array<std::array<double, 3>, 3> axes_{};
    std::array<double, 3> eye_{};
};
