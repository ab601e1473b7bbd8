#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/OverlayFile.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class OverlayFileTest : public ::testing::Test {
  protected:
    OverlayFileTest() {
        halNotify::setNotifyHandler([this](halNotify::Severity severity, const std::string& text) {
            messages.push_back((severity == halNotify::Error ? "error: " : "warning: ") + text);
        });
        platform.setReferenceLla(Vec3(0.5, 0.6, 10.0), 3);
    }
    ~OverlayFileTest() override { halNotify::setNotifyHandler({}); }

    LoadResult load(const std::string& text, PointConverter* converter = nullptr) {
        const unsigned long id = converter ? converter->refPlatformId() : 0;
        return loadOverlayText(text, "test.zel", preferences, converter, id);
    }
    template <typename Kind = CylinderShape>
    std::unique_ptr<Kind> only(const std::string& lines, PointConverter* converter = nullptr) {
        auto shapes = load("start\n" + lines + "end\n", converter).shapes;
        auto* const kind = shapes.size() == 1 ? dynamic_cast<Kind*>(shapes[0].get()) : nullptr;
        if (kind) shapes[0].release();
        return std::unique_ptr<Kind>(kind);
    }

    FakeHost host;
    Preferences preferences;
    PointConverter platform;
    std::vector<std::string> messages;
};

std::string block(const std::string& lines) {
    return "start\n" + lines + "end\n";
}

TEST_F(OverlayFileTest, TellsWhatItCouldNotRead) {
    const auto nothing = load("# a block without its end\nstart\n");
    EXPECT_EQ(nothing.error, "no valid shapes found");
    ASSERT_EQ(host.notifications.size(), 1U);
    EXPECT_THAT(host.notifications[0], HasSubstr("Could not load test.zel, no valid shapes found\n"));

    const std::string box = block("3d name B\nlatlonaltbox 4 3 1 2 0\n");
    const auto unknown = load(box);
    EXPECT_EQ(unknown.error, "");
    EXPECT_EQ(unknown.kept.text(), "1 latlonaltbox");
    EXPECT_EQ(host.notifications.size(), 1U);

    const auto mixed = load(box + block("circle\ncenterll 1 2\nradius 5\nradius\n") + block("annotation\n") +
                            "start\nline\n");
    EXPECT_EQ(mixed.error, "");
    EXPECT_EQ(mixed.shapes.size(), 1U);
    EXPECT_THAT(messages[0], HasSubstr("error: ZEL error: radius"));
    EXPECT_EQ(mixed.kept.text(), "1 latlonaltbox, 1 block with errors and 1 block without \"end\"");
    EXPECT_EQ(mixed.faultyLines, 1U) << "those of the block with errors are told by its name";

    // Of very many of a kind the last ones are counted.
    messages.clear();
    std::string many;
    for (int i = 0; i < 25; ++i) many += box + block("circle\nrangeunits nm\ncenterll 1 2\nradius 50000\n");
    EXPECT_EQ(load(many).kept.total(), 50U);
    ASSERT_EQ(messages.size(), 21U);
    EXPECT_THAT(messages.back(), HasSubstr("test.zel: 5 more shapes cannot be edited and are left out"));
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
        {"ellipsoid\nradius 3\nminoraxis 4\nheight 0\n", CylinderShape::Ellipsoid, 3, 2, 3},
        {"ellipsoid\nminoraxis 10\nheight 4\n", CylinderShape::Ellipsoid, 5, 5, 4},
        {"ellipsoid\nradius 3\nheight -2\n", CylinderShape::Ellipsoid, 3, 3, 3},
        {"cylinder\nradius 3\nangledeg 1\nangleunits bam\n", CylinderShape::Cylinder, 3, 3, 0},
        {"cylinder\nradius 3\nangledeg 90\n", CylinderShape::Wedge, 3, 3, 0, 0, 90},
        {"arc\nradius 3\nanglestart 350\nangledeg 20\n", CylinderShape::Arc, 3, 3, 0, 350, 10},
        {"arc\nradius 3\nanglestart 10\nangledeg -30\n", CylinderShape::Arc, 3, 3, 0, 340, 10},
        {"arc\nradius 3\nanglestart 10\nangledeg 360\n", CylinderShape::Arc, 3, 3, 0, 10, 370},
        {"arc\nradius 3\nanglestart 10\nangledeg -800\n", CylinderShape::Arc, 3, 3, 0, 10, 370},
        {"arc\nradius 3\nanglestart 10\nangledeg 5e-9\n", CylinderShape::Arc, 3, 3, 0, 10, 10 + 5e-9},
        {"arc\nradius 3\nangledeg -5e-9\n", CylinderShape::Arc, 3, 3, 0, 0, 5e-9},
        {"arc\nradius 3\nanglestart 10\nangledeg 5e-17\n", CylinderShape::Arc, 3, 3, 0, 10, 10},
        {"arc\nradius 3\n", CylinderShape::Arc, 3, 3, 0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.lines);
        const auto shape = only(std::string(c.lines) + "centerll 20 30\nrangeunits m\naltitudeunits m\n");
        ASSERT_TRUE(shape);
        EXPECT_EQ(shape->subtype(), c.subtype);
        EXPECT_DOUBLE_EQ(shape->majorAxis(), c.major);
        EXPECT_DOUBLE_EQ(shape->minorAxis(), c.minor);
        EXPECT_DOUBLE_EQ(shape->height(), c.height);
        EXPECT_NEAR(shape->startAngle() * halCore::kDegreesPerRadian, c.start, 1e-12);
        EXPECT_NEAR(shape->endAngle() * halCore::kDegreesPerRadian, c.end, 1e-12);
    }
}

TEST_F(OverlayFileTest, StyleFallsBack) {
    const auto style = [&](const std::string& lines) {
        const auto shape = only("circle\ncenterll 1 2\nradius 3\n" + lines);
        char text[64];
        std::snprintf(text, sizeof text, "%08x %d %08x %d", shape->lineColor(), shape->lineWidth(),
                      shape->fillColor(), shape->filled());
        return std::string(text);
    };
    EXPECT_EQ(style(""), "ff0000ff 1 ff0000ff 0");
    EXPECT_EQ(style("linecolor blue\nfilled\n"), "0000ffff 1 0000ffff 1");
    EXPECT_EQ(style("linewidth 7\nfillcolor hex 80112233\n"), "ff0000ff 7 33221180 0");
    EXPECT_EQ(only<PolygonShape>("points\nll 1 2\nlinecolor blue\n")->lineColor(), 0x0000FFFFU);
    EXPECT_EQ(only<PolygonShape>("linesegs\nll 1 2\nll 3 4\nll 5 6\nll 7 8\n")->getNumPoints(), 4U);
    // As the host draws a label without a font.
    const auto label = only<AnnotationShape>("annotation A\nll 1 2\n");
    EXPECT_EQ(label->fontName(), "arial.ttf");
    EXPECT_EQ(label->fontSize(), 15);
}

TEST_F(OverlayFileTest, OffsetsCountFromTheirReferenceOrThePlatform) {
    // No centre: about the platform.
    const auto ring = only("circle\nradius 10\n", &platform);
    EXPECT_NEAR(ring->centerPoint().lat(), 0.5, 1e-9);
    EXPECT_EQ(ring->attachedPlatformId(), 3U);
    const auto own = only("circle\ncenterxy 0 0\nradius 10\nref 10 20 0\n", &platform);
    EXPECT_NEAR(own->centerPoint().lat(), 10 * halCore::kRadiansPerDegree, 1e-9);
    // A label can still be put somewhere.
    for (const char* nowhere : {"", "xy 1 2\n"}) {
        const auto label = only<AnnotationShape>(std::string("annotation A\n") + nowhere);
        EXPECT_TRUE(label && !label->hasPoint());
    }
    EXPECT_FALSE(only("circle\nradius 10\n"));
    EXPECT_THAT(messages, ElementsAre(HasSubstr("relative to a platform")));
    // Offsets that lead nowhere are kept, and so are the numbers about them.
    const auto polar = only("circle\ncenterxy 0 0\nradius 10\nref 90 0\nrangeunits m\n");
    ASSERT_TRUE(polar);
    EXPECT_FALSE(polar->centerPt());
    EXPECT_EQ(polar->majorAxis(), 10.0);
    EXPECT_TRUE(polar->isComplete());

    const std::string line = "line\nxy 1 2\nxy 3 4\n";
    const LoadResult absolute = load(block("line\nll 1 2\nll 3 4\n"));
    EXPECT_FALSE(absolute.reference || absolute.fromNowhere);
    const auto named = load(block(line + "ref 1 2\n") + block(line + "ref 3 4\n"), &platform);
    EXPECT_NEAR(named.reference->lat(), halCore::kRadiansPerDegree, 1e-15) << "the first one";
    EXPECT_FALSE(named.fromNowhere);
    EXPECT_TRUE(load(block(line), &platform).fromNowhere);
    // What names no position is no offset, and stands nowhere without a platform, unless offsets do.
    PointConverter camera;
    const std::string others =
        block("latlonaltbox 4 3 1 2 0\n") + block("circle\ncenterxy 0 0\nradius 1e9\n");
    const std::string lacking =
        block("annotation A\n") + block("annotation B\nref 1 2\n") + block("circle\n");
    for (const auto& [offsets, waiting, shapes] :
         {std::tuple{block(line + "ref 3 4\n"), true, 3U}, {block(line), false, 4U}}) {
        const auto loaded = load(lacking + others + offsets, &camera);
        EXPECT_EQ(loaded.fromNowhere, !waiting);
        EXPECT_NEAR(loaded.reference.value_or(Vec3()).lat(), waiting ? 3 * halCore::kRadiansPerDegree : 0,
                    1e-15);
        ASSERT_EQ(loaded.shapes.size(), shapes);
        EXPECT_EQ(loaded.shapes[0]->placed().has(0), !waiting);
        EXPECT_EQ(loaded.source->isHeld(2), !waiting);
    }
}

TEST_F(OverlayFileTest, BoxesComeBackAsRectanglesAndNothingElseDoes) {
    const auto is = [&](const std::string& points) {
        return only<RectangleShape>("polygon\n" + points) != nullptr;
    };
    EXPECT_TRUE(is("ll 1 2\nll 1 4\nll 3 4\nll 3 2\n"));
    EXPECT_TRUE(is("ll 1 2\nll 3 2\nll 3 4\nll 1 4\n"));
    EXPECT_TRUE(is("ll 3 -179\nll 3 179\nll 1 179\nll 1 -179\n"));
    EXPECT_FALSE(is("ll 1 2\nll 1 4\nll 3 4\nll 3 2.5\n"));              // the last side slants
    EXPECT_FALSE(is("ll 1 3\nll 2 4\nll 3 3\nll 2 2\n"));                // turned
    EXPECT_FALSE(is("ll 1 2\nll 3 4\nll 1 4\nll 3 2\n"));                // crosses itself
    EXPECT_FALSE(is("ll 1 2 9\nll 1 4\nll 3 4\nll 3 2\n"));              // not flat
    EXPECT_FALSE(is("ll 1 2\nll 1 4\nll 3 4\nll 3 2 9\n"));              // not flat
    EXPECT_FALSE(is("ll 1 2\nll 1 4\nll 3 4\nll 3 2\nll 1 2\n"));        // closed explicitly
    EXPECT_TRUE(is("xy 1 2\nxy 1 4\nxy 3 4\nxy 3 2\nref 50 60 100\n"));  // offsets
}

}  // namespace
