#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "globe/Camera.h"
#include "globe/OverlayScene.h"
#include "support/ZelText.h"

/// What the view's tests have in common.
namespace sandbox {

using halCore::kRadiansPerDegree;

/// In degrees and metres.
inline halCore::Vec3 at(double lat, double lon, double alt = 0.0) {
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
}

/// Angles in degrees.
inline Camera looking(const halCore::Vec3& center, double range, double azimuth = 0.0,
                      double elevation = 90.0) {
    Camera camera;
    camera.setViewport(1000, 600);
    camera.setCenter(center);
    camera.setRangeAzimuthElevation(range, azimuth * kRadiansPerDegree, elevation * kRadiansPerDegree);
    return camera;
}

/// Shapes by the lines of their blocks: "circle; centerll 1 2; radius 500 | points; ll 1 2". Lengths are
/// metres.
inline OverlayScene::Shapes shapesOf(std::string_view text) {
    const std::string head = "start\nrangeunits m\naltitudeunits m\n";
    std::string file = head;
    for (const char c : text) {
        if (c == '|')
            file += "\nend\n" + head;
        else
            file += c == ';' ? '\n' : c;
    }
    auto [shapes, report] = halCore::ZEL::parsed(file + "\nend\n");
    EXPECT_EQ(halCore::ZEL::messages(report), "") << text;
    return shapes;
}

}  // namespace sandbox
