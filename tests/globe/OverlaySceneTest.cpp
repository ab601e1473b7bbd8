#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "globe/DrawingOrder.h"
#include "globe/OverlayScene.h"
#include "globe/SceneExtent.h"
#include "globe/ShapeText.h"

namespace sandbox {
namespace {

using halCore::Vec3;

TEST(OverlayScene, ReportsRealChangesOnly) {
    OverlayScene scene;
    int reports = 0;
    scene.setChangeCallback([&] { ++reports; });
    const auto id = scene.add({});
    scene.setShown(id, true);
    scene.setReference(id, std::nullopt);
    scene.remove(id + 1);
    scene.replace(id + 1, {});
    EXPECT_EQ(reports, 1) << "it was added";
    const auto revision = scene.find(id)->revision;
    scene.setShown(id, false);
    EXPECT_EQ(scene.find(id)->revision, revision) << "hiding rebuilds nothing";
    scene.setReference(id, OverlayReference{at(1, 2), 0, 0, 0});
    EXPECT_GT(scene.find(id)->revision, revision);
    scene.remove(id);
    EXPECT_EQ(reports, 4);
    EXPECT_NE(scene.add({}), id) << "an id is never given twice";
}

/// Who looks now and then, however rarely, knows what there is; who has seen all that came and sees all that
/// goes need not look at everything.
TEST(OverlayScene, FollowersKeepUp) {
    OverlayScene scene;
    std::mt19937 random(7);
    std::uint64_t seen = scene.changes();
    std::set<OverlayScene::Id> known;
    const auto look = [&] {
        const auto changed = scene.changedSince(seen);
        if (!changed) known.clear();
        const auto follow = [&](OverlayScene::Id id) {
            if (scene.contains(id))
                known.insert(id);
            else
                known.erase(id);
        };
        for (const OverlayScene::Id id : changed.value_or(std::span<const OverlayScene::Id>())) follow(id);
        if (!changed)
            for (const auto& [id, entry] : scene.entries()) follow(id);
        seen = scene.changes();
        return changed.has_value();
    };
    for (int round = 0; round < 60; ++round) {
        if (round % 20 == 19) scene.clear();
        const std::size_t comes = random() % 4000;
        for (std::size_t i = 0; i < comes; ++i) scene.add({});
        if (random() % 2 == 0) look();
        const std::size_t stays = random() % (scene.entries().size() + 1);
        while (scene.entries().size() > stays) scene.remove(scene.entries().begin()->first);
        look();
        ASSERT_EQ(known.size(), scene.entries().size());
        for (const auto& [id, entry] : scene.entries()) ASSERT_TRUE(known.contains(id));
    }
    scene.clear();
    look();
    for (int i = 0; i < 20000; ++i) scene.add({});
    look();
    while (!scene.entries().empty()) scene.remove(scene.entries().begin()->first);
    EXPECT_TRUE(look());
}

/// Lines and areas of one look are gathered by place; anything else keeps all in their order.
TEST(DrawingOrder, GathersOnlyWhatLooksAlike) {
    const std::string text =
        "polygon; ll 1 5; ll 2 5; ll 2 6 | line; ll 1 95; ll 2 95 | line; ll 1 6; ll 2 6";
    const auto order = [&](const std::string& look) {
        OverlayScene::Shapes shapes = shapesOf(text + look);
        shapes.insert(shapes.begin() + 1, nullptr);
        return drawingOrder(shapes);
    };
    using Order = std::vector<std::size_t>;
    EXPECT_EQ(order(""), (Order{0, 3, 2}));
    for (const char* other :
         {"; linecolor blue", "; linewidth 2", "; linestyle dotted", "; filled", "; fillcolor blue",
          "; outline false", "; depthbuffer false", " | points; ll 0 0"}) {
        const Order all = order(other);
        EXPECT_TRUE(std::ranges::is_sorted(all) && all.size() > 2) << other;
    }
    EXPECT_TRUE(drawingOrder({}).empty());
}

/// What is wide fills the width, what is tall the height, up to a margin of an eighth.
TEST(SceneExtent, TheViewIsFilled) {
    for (const std::string line :
         {"line; ll 10 20; ll 10 24", "line; ll -30 20; ll -25 20", "line; ll 5 179; ll 5 -178",
          "line; ll 60 20; ll 60 20.01", "line; lla 0 0 90000; lla 0 3 90000", "line; ll 0 -60; ll 0 60"}) {
        const OverlayScene::Entry entry{1, {}, shapesOf(line), {}};
        Camera camera = looking(Vec3(), 1e6);
        std::optional<SceneExtent> extent;
        measureExtent({entry}, {}, extent).finish();
        ASSERT_TRUE(extent) << line;
        const Outlook outlook = outlookOn(*extent, camera);
        camera.setCenter(outlook.center);
        camera.setRange(outlook.range);
        double used = 0.0;
        for (const Vec3& end : static_cast<const halCore::ZEL::Line&>(*entry.shapes.front()).points()) {
            const Projected place = camera.project(end);
            EXPECT_TRUE(place.visible) << line;
            const double share = std::max(std::abs(place.x / 500.0 - 1.0), std::abs(place.y / 300.0 - 1.0));
            EXPECT_LT(share, 0.95) << line;
            used = std::max(used, share);
        }
        // What bends away is looked at whole.
        EXPECT_GT(used, line.ends_with(" 60") ? 0.4 : 0.85) << line;
    }
}

}  // namespace
}  // namespace sandbox
