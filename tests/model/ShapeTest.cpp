#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/CylinderShape.h"
#include "model/Overlay.h"
#include "model/Shape.h"
#include "model/ShapeRegistry.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using OverlayEditor::CylinderShape;
using OverlayEditor::Overlay;
using OverlayEditor::Preferences;
using OverlayEditor::Shape;
using OverlayEditor::ShapeRegistry;
using ::testing::HasSubstr;

namespace {

class ShapeTest : public ::testing::Test {
  protected:
    std::unique_ptr<CylinderShape> circle(const std::string& name = "Circle") const {
        auto shape = std::make_unique<CylinderShape>(preferences, CylinderShape::Circle);
        shape->setCenter(Vec3(0.1, 0.2, 0.0));
        shape->setMajorRadius(1000.0);
        shape->setName(name);
        return shape;
    }

    FakeHost host;
    Preferences preferences;
};

TEST_F(ShapeTest, FreshShape) {
    const CylinderShape shape(preferences, CylinderShape::NoSubtype);
    EXPECT_EQ(shape.lineColor(), 0x00FF00FFU);
    EXPECT_EQ(shape.lineWidth(), 2);
    EXPECT_EQ(shape.fillColor(), 0xFF00FFA0U);
    EXPECT_FALSE(shape.filled());
    EXPECT_FALSE(shape.shown());
    EXPECT_FALSE(shape.active());
    EXPECT_TRUE(shape.showPoints());
    EXPECT_TRUE(shape.anchorCenter());
    EXPECT_EQ(shape.attachedPlatformId(), 0U);
    EXPECT_EQ(shape.name(), "");
    EXPECT_EQ(shape.mouseTool(), nullptr);
}

TEST_F(ShapeTest, LineWidthIsTruncated) {
    const auto shape = circle();
    struct Case {
        double set;
        int expected;
    };
    for (const Case& c : {Case{2.9, 2}, Case{-1.5, -1}, Case{1e30, 2147483647}, Case{-1e30, -2147483648}}) {
        shape->setLineWidth(c.set);
        EXPECT_EQ(shape->lineWidth(), c.expected);
    }
}

TEST_F(ShapeTest, IsInTheHostExactlyWhenShownAndActive) {
    const auto shape = circle();
    shape->setShown(true);
    EXPECT_EQ(host.loads, 0);
    shape->setActive(true);
    EXPECT_EQ(host.overlays.size(), 1U);
    EXPECT_THAT(host.lastText, HasSubstr("circle\n"));
    shape->setLineColor(1, 2, 3, 4);
    EXPECT_EQ(host.overlays.size(), 1U);
    EXPECT_THAT(host.lastText, HasSubstr("linecolor hex 0x04030201\n"));
    shape->setActive(false);
    EXPECT_TRUE(host.overlays.empty());
    EXPECT_TRUE(shape->shown());
    shape->setActive(true);
    EXPECT_EQ(host.overlays.size(), 1U);

    const std::unique_ptr<Shape> copy(shape->clone());
    EXPECT_EQ(host.overlays.size(), 1U);
    copy->setShown(true);
    EXPECT_EQ(host.overlays.size(), 2U);

    const int calls = host.loads + host.unloads;
    shape->setAnchorCenter(false);
    shape->setShowPoints(true);
    shape->setName("Other");
    EXPECT_EQ(host.loads + host.unloads, calls);
}

TEST_F(ShapeTest, DestructorHides) {
    {
        const auto shape = circle();
        shape->setShown(true);
        shape->setActive(true);
        EXPECT_EQ(host.overlays.size(), 1U);
    }
    EXPECT_TRUE(host.overlays.empty());
}

TEST_F(ShapeTest, DetachedTextIsDrawnAsAbsolute) {
    OverlayEditor::PointConverter platform;
    platform.setReferenceLla(Vec3(0.1, 0.2, 0.0), 42);
    const auto shape = circle();
    shape->setActive(true);
    shape->setShown(true);
    shape->setAttachedPlatformId(42, &platform, false);
    EXPECT_EQ(host.overlays.begin()->second.platform, 42U);
    EXPECT_THAT(host.lastText, HasSubstr("centerxyz 0 0 0\n"));
    shape->setAttachedPlatformId(0, &platform, false);
    EXPECT_EQ(host.overlays.begin()->second.platform, 0U);
    EXPECT_THAT(host.lastText, HasSubstr("centerlla "));
}

TEST_F(ShapeTest, AShapeThatTheHostRefusedIsLoadedAtItsNextRefresh) {
    const auto shape = circle();
    shape->setActive(true);
    shape->setShown(true);
    host.refuseAll = true;
    shape->setLineWidth(5);
    host.refuseAll = false;
    shape->setLineWidth(6);
    EXPECT_THAT(host.lastText, HasSubstr("linewidth 6"));
    shape->setShown(false);
}

TEST_F(ShapeTest, OverlayTakesShapesInAndGivesThemBack) {
    Overlay overlay;
    OverlayEditor::PointConverter platform;
    overlay.setAttachedPlatformId(5, &platform, false);
    auto* const first = circle("A").release();
    auto* const second = circle("A").release();
    overlay.addShape(first);
    overlay.addShape(second);
    overlay.addShape(nullptr);
    EXPECT_TRUE(first->shown());
    EXPECT_TRUE(first->active());
    EXPECT_EQ(first->attachedPlatformId(), 5U);
    EXPECT_EQ(host.overlays.size(), 2U);

    EXPECT_EQ(overlay.findShape("A"), first);
    first->setName("B");
    EXPECT_EQ(overlay.findShape("A"), second);
    EXPECT_EQ(overlay.findShape("B"), first);
    EXPECT_EQ(overlay.findShape("b"), nullptr);
    first->setName("A");
    EXPECT_EQ(overlay.findShape("A"), first);

    const auto stranger = circle("A");
    overlay.removeShape(stranger.get());
    EXPECT_EQ(overlay.shapes(), (std::vector<Shape*>{first, second}));
    overlay.removeShape(first);
    const std::unique_ptr<Shape> mine(first);
    EXPECT_EQ(overlay.findShape("A"), second);
    EXPECT_EQ(host.overlays.size(), 2U);  // removed, not hidden
    first->setName("C");
    EXPECT_EQ(overlay.findShape("C"), nullptr);

    overlay.clearShapes(false);
    EXPECT_TRUE(overlay.shapes().empty());
    EXPECT_EQ(host.overlays.size(), 1U);
}

TEST_F(ShapeTest, ShapesKeepTheirOrderWhileOthersComeAndGo) {
    Overlay overlay;
    std::vector<Shape*> expected;
    std::mt19937 random(1);
    const auto name = [&random] { return std::string(1, static_cast<char>('A' + random() % 26)); };
    for (int step = 0; step < 3000; ++step) {
        if (expected.empty() || random() % (step < 1500 ? 3 : 2) != 0) {
            expected.push_back(circle(name()).release());
            overlay.addShape(expected.back());
        } else {
            const auto at = expected.begin() + static_cast<std::ptrdiff_t>(random() % expected.size());
            overlay.removeShape(*at);
            delete *at;
            expected.erase(at);
        }
        ASSERT_EQ(overlay.shapes(), expected);
        const std::string wanted = name();
        const auto first = std::find_if(expected.begin(), expected.end(),
                                        [&](const Shape* shape) { return shape->name() == wanted; });
        ASSERT_EQ(overlay.findShape(wanted), first == expected.end() ? nullptr : *first);
    }
}

TEST_F(ShapeTest, ADeletedShapeLeavesItsOverlay) {
    Overlay overlay;
    auto* const first = circle("A").release();
    auto* const second = circle("B").release();
    overlay.addShape(first);
    overlay.addShape(second);
    delete first;
    overlay.removeShape(first);
    overlay.setShown(true);
    EXPECT_EQ(overlay.shapes(), std::vector<Shape*>{second});
    EXPECT_EQ(overlay.findShape("A"), nullptr);
    overlay.removeShape(second);
    const std::unique_ptr<Shape> mine(second);
    EXPECT_EQ(overlay.findShape("B"), nullptr);
}

TEST_F(ShapeTest, RegistryKeepsOnePrototypeOfAName) {
    ShapeRegistry registry;
    EXPECT_EQ(registry.addPrototype(CylinderShape(preferences, CylinderShape::Circle)), 0U);
    EXPECT_EQ(registry.addPrototype(CylinderShape(preferences, CylinderShape::Cone)), 1U);
    EXPECT_EQ(registry.addPrototype(CylinderShape(preferences, CylinderShape::Circle)), 0U);
    EXPECT_EQ(registry.numPrototypes(), 2U);
    EXPECT_EQ(registry.getShapeByName("Cone"), registry.getShapeByIndex(1));
    EXPECT_EQ(registry.getShapeByName("cone"), nullptr);
    EXPECT_EQ(registry.getShapeByIndex(2), nullptr);
}

TEST_F(ShapeTest, CenterPointIsTheMiddleOfTheBox) {
    struct Boxed final : CylinderShape {
        using CylinderShape::CylinderShape;
        std::pair<Vec3, Vec3> boundingBox() const override { return {Vec3(0, 0, 0), Vec3(10, 20, -4)}; }
    };
    EXPECT_EQ(Boxed(preferences, CylinderShape::NoSubtype).centerPoint(), Vec3(5, 10, -2));
}

}  // namespace
