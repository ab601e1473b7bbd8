#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "format/SerializeToZel.h"
#include "model/Overlay.h"
#include "model/RandomShapes.h"
#include "model/ShapeKinds.h"
#include "model/ShapeRegistry.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;

namespace {

class OverlayTest : public ::testing::Test {
  protected:
    OverlayTest() { platform.setReferenceLla({0.3, 0.4, 5.0}, 7); }

    /// \param number 0: a shape without a place, 1: one that is begun; the others are complete
    Shape* make(std::size_t number) {
        const Vec3 near(0.3, 0.4, 100.0);
        const int kind = number == 5 ? 12 : random.integer(0, RandomShapes::kKinds - 1);  // a box, or any
        if (number > 4) return random.make(kind, &near).release();
        auto* const circle = new CylinderShape(preferences, CylinderShape::Circle);
        if (number > 0) circle->setCenter(near);
        if (number > 1) circle->setMajorRadius(1000.0);
        return circle;
    }

    FakeHost host;
    Preferences preferences;
    PointConverter platform;
    RandomShapes random{preferences};
};

/// Whatever is done to it, the overlay has its shapes in their order and knows its text without making it.
TEST_F(OverlayTest, KnowsWhatItHoldsAndWhetherItChanged) {
    std::vector<Shape*> all(7);
    Overlay overlay;
    std::vector<Shape*> expected;
    std::map<std::string, std::uint64_t> digests;
    std::map<std::uint64_t, std::string> texts;
    std::string kept;
    const auto name = [&] { return std::string(1, static_cast<char>('A' + random.integer(0, 2))); };
    for (int step = 0; step < 4000; ++step) {
        const auto number = static_cast<std::size_t>(random.integer(0, 6));
        Shape*& shape = all[number];
        if (!shape) shape = make(number);
        const auto at = std::find(expected.begin(), expected.end(), shape);
        const bool inside = at != expected.end();
        bool keptAnew = false;
        switch (const int deed = random.integer(0, 9)) {
            case 0:
                delete shape;
                overlay.removeShape(shape);  // of what is gone, only the address is used
                shape = nullptr;
                if (inside) expected.erase(at);
                break;
            case 1:
                overlay.setReferenceWritten(random.maybe());
                break;
            case 2:
                overlay.setAttachedPlatformId(overlay.attachedPlatformId() ? 0 : 7, &platform, false);
                break;
            case 3: {
                platform.setReferenceLla({random.number(0.2, 0.4), random.number(0.3, 0.5), 5.0}, 7);
                // What counts from a reference that no file names is the same wherever that is.
                keptAnew = overlay.isKept() && (!overlay.referenceWritten() || !overlay.attachedPlatformId());
                overlay.referenceMoved();
                break;
            }
            case 4:
                overlay.keep();
                keptAnew = true;
                break;
            case 5:
                shape->setName(name());
                break;
            case 6:
                if (auto* const line = dynamic_cast<BaseLineShape*>(shape))
                    line->setLineWidth(random.integer(1, 2));
                break;
            case 7:
                if (step % 50 != 0) break;
                overlay.clearShapes(false);
                for (Shape* gone : expected) *std::find(all.begin(), all.end(), gone) = nullptr;
                expected.clear();
                break;
            default:
                if (deed == 8 && inside) {
                    overlay.removeShape(shape);
                    expected.erase(at);
                } else if (deed == 9) {
                    overlay.addShape(shape);
                    if (!inside) expected.push_back(shape);
                }
        }
        ASSERT_EQ(overlay.shapes(), expected);
        const std::string wanted = name();
        const auto first = std::find_if(expected.begin(), expected.end(),
                                        [&](const Shape* one) { return one->name() == wanted; });
        ASSERT_EQ(overlay.findShape(wanted), first == expected.end() ? nullptr : *first);

        const std::uint64_t digest = overlay.digest();
        const bool isKept = overlay.isKept();
        std::vector<std::string> begun, missing, skipped;
        for (const Shape* one : expected) {
            if (one == all[1]) begun.push_back(one->name());
            if (one == all[0] || one == all[1]) missing.push_back(one->name());
        }
        ASSERT_EQ(overlay.begun(), begun);
        const std::string text = overlay.text(&skipped);
        ASSERT_EQ(skipped, missing);
        ASSERT_EQ(digest == 0, text.empty());
        ASSERT_EQ(digests.emplace(text, digest).first->second, digest) << "the same text";
        ASSERT_EQ(texts.emplace(digest, text).first->second, text) << "another text";
        if (keptAnew) kept = text;
        ASSERT_EQ(isKept, text == kept);
        SerializeToZel zel;
        const int result = overlay.serializeShapes(zel);
        ASSERT_EQ(result, text.empty() ? -1 : 0);
        ASSERT_EQ(zel.hasShapes(), !text.empty());
        ASSERT_EQ(zel.pointConverter(), overlay.pointConverter());
    }
    for (Shape* shape : all)
        if (!overlay.contains(shape)) delete shape;
}

TEST_F(OverlayTest, ShowsWhatItTakesInAndLeavesWhatItGivesBack) {
    Overlay overlay;
    overlay.setAttachedPlatformId(7, &platform, false);
    Shape* const shape = make(2);
    overlay.addShape(shape);
    overlay.addShape(shape);
    overlay.addShape(nullptr);
    EXPECT_TRUE(shape->shown() && shape->active());
    ASSERT_EQ(host.overlays.size(), 1U);
    EXPECT_EQ(host.overlays.begin()->second.platform, 7U);
    overlay.removeShape(shape);
    const std::unique_ptr<Shape> mine(shape);
    overlay.setShown(false);
    overlay.clearShapes(false);
    EXPECT_EQ(host.overlays.size(), 1U);
}

TEST_F(OverlayTest, KindsAreRegisteredInTheOrderOfTheMenu) {
    ShapeRegistry registry;
    addAllKinds(registry, preferences);
    std::vector<std::string> names;
    for (const Shape* shape : registry.getShapes()) names.push_back(shape->name());
    EXPECT_THAT(names, ::testing::ElementsAre("Free Draw", "Text", "Line", "Polygon", "Rectangle", "Triangle",
                                              "Circle", "Ellipse", "Arc", "Cylinder", "Wedge", "Sphere",
                                              "Hemisphere", "Ellipsoid", "Cone", "Orbit"));
    EXPECT_EQ(registry.addPrototype(CylinderShape(preferences, CylinderShape::Circle)), 6U);
    EXPECT_EQ(registry.numPrototypes(), 16U);
    EXPECT_EQ(registry.getShapeByName("Circle"), registry.getShapeByIndex(6));
    EXPECT_EQ(registry.getShapeByName("circle"), nullptr);
    EXPECT_EQ(registry.getShapeByIndex(16), nullptr);
}

}  // namespace
