#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "globe/Camera.h"
#include "globe/SceneExtent.h"

namespace sandbox {
namespace {

using halCore::kRadiansPerDegree;
using halCore::Vec3;

struct Look {
    const char* what;
    Vec3 from, to;  ///< degrees
};

/// What is wide fills the width, what is tall the height, up to a margin of an eighth.
TEST(SceneExtent, TheViewIsFilled) {
    for (const Look& look :
         {Look{"wide", Vec3(10, 20, 0), Vec3(10, 24, 0)}, Look{"tall", Vec3(-30, 20, 0), Vec3(-25, 20, 0)},
          Look{"across 180", Vec3(5, 179, 0), Vec3(5, -178, 0)},
          Look{"small", Vec3(60, 20, 0), Vec3(60, 20.01, 0)},
          Look{"high", Vec3(0, 0, 90000), Vec3(0, 3, 90000)},
          Look{"halfway round", Vec3(0, -60, 0), Vec3(0, 60, 0)}}) {
        auto line = std::make_shared<halCore::ZEL::Line>(false);
        const std::array ends = {
            Vec3(look.from.lat() * kRadiansPerDegree, look.from.lon() * kRadiansPerDegree, look.from.alt()),
            Vec3(look.to.lat() * kRadiansPerDegree, look.to.lon() * kRadiansPerDegree, look.to.alt())};
        for (const Vec3& end : ends) line->addPoint(end);
        const OverlayScene::Entry entry{.id = 1, .directory = {}, .shapes = {line}, .reference = {}};
        const OverlayScene::Entry* entries[] = {&entry};
        Camera camera;
        camera.setViewport(1000, 600);
        const auto extent = extentOf(entries);
        ASSERT_TRUE(extent) << look.what;
        const Outlook outlook = outlookOn(*extent, camera);
        camera.setCenter(outlook.center);
        camera.setRange(outlook.range);
        double used = 0.0;
        for (const Vec3& end : ends) {
            const Projected place = camera.project(end);
            EXPECT_TRUE(place.visible) << look.what;
            const double share = std::max(std::abs(place.x / 500.0 - 1.0), std::abs(place.y / 300.0 - 1.0));
            EXPECT_LT(share, 0.95) << look.what;
            used = std::max(used, share);
        }
        // What bends away is looked at whole.
        EXPECT_GT(used, look.to.lon() == 60.0 ? 0.4 : 0.85) << look.what;
    }
}

}  // namespace
}  // namespace sandbox
