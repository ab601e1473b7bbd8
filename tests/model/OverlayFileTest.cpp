#include <memory>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "geo/Angles.h"
#include "model/CylinderShape.h"
#include "model/Overlay.h"
#include "model/OverlayFile.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using OverlayEditor::CylinderShape;
using OverlayEditor::loadOverlayText;
using OverlayEditor::Overlay;
using OverlayEditor::PointConverter;
using OverlayEditor::Preferences;
using OverlayEditor::Shape;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class OverlayFileTest : public ::testing::Test {
  protected:
    std::vector<std::unique_ptr<Shape>> load(const std::string& text, PointConverter* converter = nullptr,
                                             unsigned long platform = 0) {
        return std::move(loadOverlayText(text, "test", preferences, converter, platform).shapes);
    }
    /// What saving gives after loading.
    std::string again(const std::string& text, PointConverter* converter = nullptr,
                      unsigned long platform = 0) {
        Overlay overlay;
        overlay.setAttachedPlatformId(platform, converter, false);
        for (auto& shape : load(text, converter, platform)) overlay.addShape(shape.release());
        return overlay.text();
    }

    FakeHost host;
    Preferences preferences;
};

std::string block(const std::string& lines) {
    return "start\n" + lines + "end\n";
}

TEST_F(OverlayFileTest, ReportsAFileWithoutShapes) {
    for (const char* text : {"", "# only a comment\nversion 2\n"}) {
        host.notifications.clear();
        const auto loaded = loadOverlayText(text, "empty.zel", preferences, nullptr, 0);
        EXPECT_EQ(loaded.error, "no valid shapes found");
        ASSERT_EQ(host.notifications.size(), 1U);
        EXPECT_THAT(host.notifications[0], HasSubstr("Could not load empty.zel, no valid shapes found\n"));
    }
    host.notifications.clear();
    const auto box = loadOverlayText(block("latlonaltbox 1 2 3 4 5\n"), "box.zel", preferences, nullptr, 0);
    EXPECT_NE(box.error, "");
    EXPECT_THAT(host.notifications, IsEmpty());
}

TEST_F(OverlayFileTest, NamesWhatTheEditorCannotHold) {
    const auto loaded = loadOverlayText(
        block("3d name A\ncircle\ncenterll 1 2\nradius 5\n") + block("3d name B\nlatlonaltbox 4 3 1 2 0\n"),
        "test", preferences, nullptr, 0);
    EXPECT_EQ(loaded.shapes.size(), 1U);
    EXPECT_THAT(loaded.leftOut, ElementsAre("latlonaltbox \"B\""));
}

TEST_F(OverlayFileTest, CircularShapesFromFiles) {
    struct Case {
        const char* lines;
        CylinderShape::Subtype subtype;
        double major, minor, height;
        double start = 0.0, end = 0.0;  // degrees
    };
    constexpr double unset = 0.0;
    const Case cases[] = {
        {"circle\nradius 5\n", CylinderShape::Circle, 5, unset, 0},
        {"circle\ndiameter 5\n", CylinderShape::Circle, 2.5, unset, 0},
        {"sphere\nradius -5\n", CylinderShape::Sphere, 5, unset, 5},
        {"cone\nradius 5\nheight 7\n", CylinderShape::Cone, 5, unset, 7},
        {"ellipse\nmajoraxis 10\nminoraxis 4\n", CylinderShape::Ellipse, 5, 2, 0},
        {"ellipse\nsemimajoraxis 10\nradius 4\n", CylinderShape::Ellipse, 10, 4, 0},
        {"ellipse\nmajoraxis 10\n", CylinderShape::Ellipse, 5, 5, 0},
        {"cylinder\nradius 3\nheight 4\n", CylinderShape::Cylinder, 3, 3, 4},
        {"ellipsoid\nradius 3\nminoraxis 4\nheight 0\n", CylinderShape::Ellipsoid, 3, 2, 0},
        {"ellipsoid\nminoraxis 10\nheight 4\n", CylinderShape::Ellipsoid, 5, 5, 4},
        {"ellipsoid\nradius 3\nheight -2\n", CylinderShape::Ellipsoid, 3, 3, 1},
        {"cylinder\nradius 3\nangledeg 1\nangleunits bam\n", CylinderShape::Cylinder, 3, 3, 0},
        {"cylinder\nradius 3\nangledeg 90\n", CylinderShape::Wedge, 3, 3, 0, 0, 90},
        {"arc\nradius 3\nanglestart 350\nangledeg 20\n", CylinderShape::Arc, 3, 3, 0, 350, 10},
        {"arc\nradius 3\nanglestart 10\nangledeg -30\n", CylinderShape::Arc, 3, 3, 0, 340, 10},
        {"arc\nradius 3\nanglestart 10\nangledeg 360\n", CylinderShape::Arc, 3, 3, 0, 10, 370},
        {"arc\nradius 3\nanglestart 10\nangledeg -800\n", CylinderShape::Arc, 3, 3, 0, 10, 370},
        {"arc\nradius 3\n", CylinderShape::Arc, 3, 3, 0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.lines);
        const auto shapes =
            load(block(std::string(c.lines) + "centerll 20 30\nrangeunits m\naltitudeunits m\n"));
        ASSERT_EQ(shapes.size(), 1U);
        const auto& shape = dynamic_cast<const CylinderShape&>(*shapes[0]);
        EXPECT_EQ(shape.subtype(), c.subtype);
        EXPECT_DOUBLE_EQ(shape.majorAxis(), c.major);
        EXPECT_DOUBLE_EQ(shape.minorAxis(), c.minor);
        EXPECT_DOUBLE_EQ(shape.height(), c.height);
        EXPECT_NEAR(shape.startAngle() * halCore::kDegreesPerRadian, c.start, 1e-12);
        EXPECT_NEAR(shape.endAngle() * halCore::kDegreesPerRadian, c.end, 1e-12);
        EXPECT_EQ(shape.startAnglePt().has_value(), c.end != 0.0);

        Overlay once, twice;
        once.addShape(shape.clone());
        const std::string text = once.text();
        for (auto& again : loadOverlayText(text, "test", preferences, nullptr, 0).shapes)
            twice.addShape(again.release());
        EXPECT_EQ(twice.text(), text);
    }
}

TEST_F(OverlayFileTest, StyleFallsBack) {
    const auto style = [&](const std::string& lines) {
        const auto shapes = load(block("circle\ncenterll 1 2\nradius 3\n" + lines));
        const auto& shape = dynamic_cast<const CylinderShape&>(*shapes.at(0));
        char text[64];
        std::snprintf(text, sizeof text, "%08x %d %08x %d", shape.lineColor(), shape.lineWidth(),
                      shape.fillColor(), shape.filled());
        return std::string(text);
    };
    EXPECT_EQ(style(""), "ff0000ff 1 ff0000ff 0");
    EXPECT_EQ(style("linecolor blue\nfilled\n"), "0000ffff 1 0000ffff 1");
    EXPECT_EQ(style("linewidth 7\nfillcolor hex 80112233\n"), "ff0000ff 7 33221180 0");
}

TEST_F(OverlayFileTest, RelativeShapesCountFromTheirReferenceOrThePlatform) {
    PointConverter platform;
    platform.setReferenceLla(Vec3(0.5, 0.6, 10.0), 3);
    const std::string ring = block("circle\nradius 10\n");
    {
        // No centre: about the platform.
        const auto shapes = load(ring, &platform, 3);
        const auto& shape = dynamic_cast<const CylinderShape&>(*shapes.at(0));
        EXPECT_EQ(*shape.centerPt(), Vec3(0.5, 0.6, 10.0));
        EXPECT_EQ(shape.attachedPlatformId(), 3U);
    }
    {
        const auto shapes = load(block("circle\ncenterxy 0 0\nradius 10\nref 10 20 0\n"), &platform, 3);
        const auto& shape = dynamic_cast<const CylinderShape&>(*shapes.at(0));
        EXPECT_NEAR(shape.centerPt()->lat(), 10 * halCore::kRadiansPerDegree, 1e-15);
    }
    testing::internal::CaptureStderr();
    EXPECT_THAT(load(ring), IsEmpty());
    EXPECT_THAT(load(block("circle\ncenterxy 0 0\nradius 10\nref 90 0\n")), IsEmpty());
    const std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_THAT(messages, HasSubstr("relative to a platform"));
    EXPECT_THAT(messages, HasSubstr("not on the globe"));
}

TEST_F(OverlayFileTest, AttachedOverlayStaysRelative) {
    PointConverter platform;
    platform.setReferenceLla(Vec3(0.5, 0.6, 10.0), 3);
    const std::string text = again(block("line\nxyz 10 20 5\nxyz -30 40 5\nrangeunits m\naltitudeunits m\n") +
                                       block("circle\ncenterxy 7 8\nradius 10\n"),
                                   &platform, 3);
    EXPECT_THAT(text, HasSubstr("xyz 10 20 5\nxyz -30 40 5\n"));
    EXPECT_THAT(text, HasSubstr("centerxyz "));
    EXPECT_EQ(text.find("lla "), std::string::npos);
    EXPECT_EQ(again(text, &platform, 3), text);
}

TEST_F(OverlayFileTest, RadiusBeyondHalfTheEarthIsRefusedAndReported) {
    const auto load = [this](const char* radius) {
        return loadOverlayText(block("circle\ncenterlla 0 0 0\nrangeunits m\n" + std::string(radius)), "test",
                               preferences, nullptr, 0);
    };
    EXPECT_TRUE(load("radius 20003931\n").losses.empty());
    const auto tooFar = load("radius 20003932\n");
    ASSERT_EQ(tooFar.losses.size(), 1U);
    EXPECT_EQ(tooFar.losses[0].text, "the circle \"circle\" is not saved: it is not complete");
    EXPECT_EQ(dynamic_cast<const CylinderShape&>(*tooFar.shapes[0]).majorAxis(), 0.0);
}

}  // namespace
