#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "model/DrawingStep.h"
#include "model/ShapeKinds.h"
#include "model/ShapeState.h"
#include "model/StepPreview.h"
#include "support/FakeHost.h"

using ::testing::HasSubstr;

namespace OverlayEditor {
namespace {

struct DrawingStepTest : ::testing::Test {
    FakeHost host;
    Preferences preferences;
    PointConverter ship;

    std::unique_ptr<Shape> make(ShapeKind::Id kind, bool attached = false) {
        auto shape = shapeKind(kind).make(preferences);
        ship.setReferenceLla(
            halCore::Vec3(64 * halCore::kRadiansPerDegree, 179.95 * halCore::kRadiansPerDegree, 0), 7);
        if (attached) shape->setAttachedPlatformId(7, &ship, false);
        shape->setActive(true);
        shape->setShown(true);
        return shape;
    }
    UTILS::TypedStep read(const Shape& shape, const std::string& text) {
        std::string reason;
        auto step = UTILS::readTypedStep(text, *preferences.unitsProvider(), takesOffsets(shape), reason);
        EXPECT_EQ(reason, "") << text;
        return step;
    }
};

/// Every kind is drawn by lines alone; what was seen of a line before is what it does.
TEST_F(DrawingStepTest, LinesDrawEveryKindByExactNumbers) {
    struct Row {
        ShapeKind::Id kind;
        bool attached;
        std::vector<const char*> lines;
        const char* written;
    };
    using enum ShapeKind::Id;
    const std::vector<Row> table{
        {Text, false, {"21.3N, 158W, 30 m"}, "lla 21.3 -158 30\n"},
        {Text, true, {"100, 200"}, "xyz 100 200 0\n"},
        {Line, false, {"1N 2E", "90N 1E"}, "lla 1 2 0\nlla 90 1 0\n"},
        {Polygon, true, {"0, 0", "100, 0, 7", "100, 100"}, "xyz 0 0 0\nxyz 100 0 7\nxyz 100 100 7\n"},
        {Rectangle, false, {"1N 2E", "3N 5E"}, "lla 1 2 0\nlla 1 5 0\nlla 3 5 0\nlla 3 2 0\n"},
        {Circle, false, {"1N 2E", "5 nm"}, "centerlla 1 2 0\nradius 9260\n"},
        {Circle, false, {"90N 0E", "5 nm 270"}, "centerlla 90 0 0\nradius 9260\n"},
        {Circle, true, {"3000"}, "centerxyz 0 0 0\nradius 3000\n"},
        {Ellipse, false, {"1N 2E", "5 nm", "3 nm"}, "centerlla 1 2 0\nmajoraxis 18520\nminoraxis 11112\n"},
        {Arc,
         false,
         {"1N 2E", "5 nm 350", "6 nm 10"},
         "anglestart 350\nangledeg 20\nmajoraxis 22224\nminoraxis 22224\n"},
        {Wedge,
         true,
         {"12 nm 270 330", "2000"},
         "centerxyz 0 0 0\nanglestart 270\nangledeg 60\nmajoraxis 44448\nminoraxis 44448\nheight 2000\n"},
        {Cone, false, {"1N 2E", "5 nm", "7"}, "radius 9260\nheight 7\n"},
        {Cylinder, false, {"1N 2E", "5 nm", "3 nm 0", "7"}, "majoraxis 18520\nminoraxis 11112\nheight 7\n"},
        {Orbit, false, {"1N 2E", "+1 m E", "3 nm"}, "radius 5556\n"}};
    for (const auto& [kind, attached, lines, written] : table) {
        const auto shape = make(kind, attached);
        for (const char* const line : lines) {
            const auto before = shape->state();
            const auto overlays = host.overlays.size();
            StepPreview preview;
            const StepTaken seen = preview.show(*shape, read(*shape, line), 0.0);
            // Of half a shape there is nothing to show.
            const bool isShown = line == lines.front() || line == lines.back();
            EXPECT_GE(host.overlays.size(), overlays + (isShown ? 1 : 0)) << line;
            EXPECT_TRUE(*shape->state() == *before) << "looking changes nothing: " << line;
            preview.hide();
            EXPECT_EQ(host.overlays.size(), overlays);
            const StepTaken taken = takeStep(*shape, read(*shape, line), 0.0);
            EXPECT_EQ(taken.reason, "") << line;
            EXPECT_EQ(taken.done, seen.done);
            EXPECT_NE(taken.done, "");
        }
        EXPECT_THAT(host.lastText, HasSubstr(written)) << shapeKind(kind).name;
    }
}

TEST_F(DrawingStepTest, WhatCannotBeTakenLeavesTheShapeAsItWas) {
    struct Row {
        ShapeKind::Id kind;
        bool attached;
        std::vector<const char*> lines;
        const char* reason;
    };
    using enum ShapeKind::Id;
    for (const auto& [kind, attached, lines, reason] :
         std::vector<Row>{{Line, false, {"5 nm 270"}, "no point yet"},
                          {Line, false, {"1N 2E", "5 nm"}, "a position is missing"},
                          {Circle, false, {"5 nm"}, "no center yet"},
                          {Circle, true, {"12 nm 270 330"}, "a length alone"},
                          {Circle, true, {"-5"}, "greater than 0"},
                          {Circle, false, {"1N 2E", "1N 2E"}, "greater than 0"},
                          {Circle, false, {"1N 2E", "5 nm", "5 nm"}, "is complete"},
                          {Wedge, true, {"5 nm"}, "the angles are missing"},
                          {Rectangle, false, {"1N 2E", "1N 2E"}, "the first corner"},
                          {Text, false, {"1N 2E", "1N 2E"}, "is complete"},
                          {Circle, false, {"1N 2E\n3N 4E"}, "several positions"},
                          {FreeDraw, false, {"1N 2E"}, "by hand alone"}}) {
        const auto shape = make(kind, attached);
        for (std::size_t i = 0; i + 1 < lines.size(); ++i) takeStep(*shape, read(*shape, lines[i]), 0.0);
        const auto before = shape->state();
        const StepTaken taken = takeStep(*shape, read(*shape, lines.back()), 0.0);
        EXPECT_THAT(taken.reason, HasSubstr(reason)) << lines.back();
        EXPECT_TRUE(*shape->state() == *before) << lines.back();
    }
}

}  // namespace
}  // namespace OverlayEditor
