#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Notify.h"
#include "geo/Angles.h"
#include "gui/Form.h"
#include "gui/TestEquipment.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "pi/PIWidgets.h"

using halCore::kRadiansPerDegree;
using halCore::Vec3;
using namespace OverlayEditor;

namespace {

Vec3 degrees(double lat, double lon, double alt) {
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
}

/// A shape with its panel, as the dialog shows it.
class ShapePanelsTest : public ::testing::Test {
  protected:
    ShapePanelsTest() {
        host.eye = degrees(10, 20, 5e6);
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
    }
    ~ShapePanelsTest() override {
        shape.reset();
        halNotify::setNotifyHandler({});
        freeFunctors();
    }

    template <typename Kind, typename... Arguments>
    Kind& open(Arguments... arguments) {
        auto made = std::make_unique<Kind>(preferences, arguments...);
        Kind& kind = *made;
        shape = std::move(made);
        shape->setShown(true);
        shape->setActive(true);
        shape->createGui(&preferences, &canvas);
        return kind;
    }
    void press(const std::string& caption) { host.activate(*host.find(caption)); }
    bool enabled(const std::string& caption) { return host.find(caption)->enabled; }

    FakeHost host;
    TestEquipment equipment;
    Preferences preferences;
    PointConverter converter;
    PIGUI::PICanvas canvas{nullptr};
    Form form{host};
    std::vector<std::string> messages;
    std::unique_ptr<Shape> shape;
};

TEST_F(ShapePanelsTest, EachKindHasItsFieldsInOrder) {
    const auto captions = [this] {
        std::string found;
        for (const auto& [handle, widget] : host.widgets) {
            const std::string text = widget.caption.substr(0, widget.caption.find('\t'));
            const bool unit = widget.kind == FakeHost::Id::CreateLabel && widget.caption == text &&
                              text != "Points" && text != "Point" && text != "Corner Point";
            if (widget.shown && !text.empty() && !unit) found += text + "|";
        }
        return found;
    };
    const std::string line = "Line Width: |Line Color:|";
    const std::string fill = line + "Filled:|Fill Color:|";
    open<PolygonShape>(PolygonShape::Polygon);
    EXPECT_EQ(captions(), "Draw:|Points|<-|->|Insert|Delete|Point|Lat:|Lon: |Alt:|" + fill);
    open<RectangleShape>(RectangleShape::Rectangle);
    EXPECT_EQ(captions(),
              "Draw:|Anchor Point:|Center|Corner 1|Lat:|Lon: |Alt:|Width/Height|Corner 2|Width:         |"
              "Height:|Corner Point|Lat:|Lon: |Alt:|" +
                  fill);
    open<OrbitShape>();
    EXPECT_EQ(captions(), "Draw:|Center 1:|Lat:|Lon: |Alt:|Center 2:|Lat:|Lon: |Alt:|Radius:|" + fill);
    open<AnnotationShape>();
    EXPECT_EQ(captions(), "Draw:|Lat:|Lon: |Alt:|Line Color:|Font:|Font Size:|");
    open<FreeDrawShape>();
    EXPECT_EQ(captions(), "Draw:|Pixel Precision:|" + line);
}

TEST_F(ShapePanelsTest, PointsAreSteppedInsertedAndDeleted) {
    PolygonShape& line = open<PolygonShape>(PolygonShape::Line);
    EXPECT_EQ(host.find("Point")->text, "New Point");
    EXPECT_FALSE(enabled("<-") || enabled("->"));
    // A typed coordinate makes the new point one of the line's.
    form.type("Lat:", "1");
    ASSERT_EQ(line.points().size(), 1u);
    EXPECT_NEAR(line.points()[0].lon(), 20 * kRadiansPerDegree, 1e-15) << "it starts from the view";
    press("->");
    form.type("Lat:", "3");
    form.type("Alt:", "100");
    ASSERT_EQ(line.points().size(), 2u);
    press("Insert");
    ASSERT_EQ(line.points().size(), 3u);
    // The middle of a piece of a meridian, to the meridian's change of curvature; the altitude is the mean.
    EXPECT_NEAR(line.points()[1].lat(), 2 * kRadiansPerDegree, 1e-6);
    EXPECT_EQ(line.points()[1].alt(), 50);
    form.type("Lon: ", "21 30 00 W");
    EXPECT_NEAR(line.points()[1].lon(), -21.5 * kRadiansPerDegree, 1e-15);
    press("Delete");
    press("Delete");
    ASSERT_EQ(line.points().size(), 1u);
    EXPECT_FALSE(enabled("<-"));
    EXPECT_TRUE(enabled("->"));
    // What the mouse does appears at once.
    line.mouseSetPointAtIndex(7, degrees(5, 6, 7));
    EXPECT_EQ(form.text("Alt:"), "7.00 m");
}

TEST_F(ShapePanelsTest, AttachedPointsAreOffsets) {
    PolygonShape& line = open<PolygonShape>(PolygonShape::Line);
    line.insertPointAtIndex(0, degrees(42, 10, 0));
    line.insertPointAtIndex(1, degrees(42.5, 10, 1.0 / 3.0));
    converter.setReferenceLla(degrees(42, 10, 0), 7);
    line.setAttachedPlatformId(7, &converter, false);
    EXPECT_FALSE(form.has("Lat:"));
    press("<-");
    form.type("X:", "5 nm");
    Vec3 offset;
    ASSERT_EQ(converter.convertLlaToXyz(line.points()[0], offset), 0);
    EXPECT_NEAR(offset.x(), 9260, 1e-6);
    EXPECT_NEAR(offset.y(), 0, 1e-6);
    EXPECT_EQ(line.points()[1].alt(), 1.0 / 3.0);
    line.setAttachedPlatformId(0, nullptr, false);
    EXPECT_TRUE(form.has("Lat:"));
}

// A nautical mile is 1852 m, and what was typed is the number that stays.
TEST_F(ShapePanelsTest, ARectangleIsSpannedByItsSizeOrItsCorner) {
    RectangleShape& box = open<RectangleShape>(RectangleShape::Rectangle);
    form.type("Lat:", "42");
    EXPECT_FALSE(box.isComplete()) << "a place is no rectangle yet";
    form.type("Width:         ", "2 nm");
    form.type("Height:", "1000");
    ASSERT_TRUE(box.isComplete());
    EXPECT_EQ(box.width(), 3704);
    EXPECT_EQ(box.height(), 1000);
    EXPECT_EQ(box.center().lat(), 42 * kRadiansPerDegree);
    EXPECT_FALSE(form.field("Width:         ").text.empty());

    const Vec3 last = *box.lastCorner();
    host.find("Center")->checked = false;
    host.find("Corner 1")->checked = true;
    press("Corner 1");
    EXPECT_FALSE(box.anchorCenter());
    EXPECT_EQ(box.lastCorner()->lat(), last.lat()) << "choosing changes nothing";
    form.type("Width:         ", "500");
    EXPECT_EQ(box.width(), 500);
    EXPECT_EQ(box.height(), 1000);
}

TEST_F(ShapePanelsTest, ARectangleWaitsForItsOtherCorner) {
    RectangleShape& box = open<RectangleShape>(RectangleShape::Rectangle);
    for (const auto& [choice, other] : {std::pair("Corner 1", "Center"), {"Corner 2", "Width/Height"}}) {
        host.find(other)->checked = false;
        host.find(choice)->checked = true;
        press(choice);
    }
    // Latitude, longitude and altitude of the anchor, then of the corner.
    const auto type = [this](std::size_t field, const char* text) {
        host.type(*form.textFields().at(field).widget, text);
    };
    type(0, "42");
    type(1, "5");
    EXPECT_FALSE(box.isComplete()) << "the other corner goes along";
    type(3, "43");
    type(4, "7");
    ASSERT_TRUE(box.isComplete());
    EXPECT_EQ(*box.firstCorner(), degrees(42, 5, 0));
    EXPECT_EQ(*box.lastCorner(), degrees(43, 7, 0));
}

TEST_F(ShapePanelsTest, AnOrbitKeepsItsOtherNumbers) {
    OrbitShape& orbit = open<OrbitShape>();
    orbit.setCenter(degrees(10, 20, 0));
    orbit.setCenter2(degrees(11, 20, 0));
    orbit.setMinorRadius(1234.5678901);
    orbit.fillGui();
    form.type("Lat:", "9");
    EXPECT_EQ(orbit.minorAxis(), 1234.5678901);
    EXPECT_EQ(orbit.centerPt2()->lat(), 11 * kRadiansPerDegree);
    form.type("Radius:", "3 km");
    EXPECT_EQ(orbit.minorAxis(), 3000);
}

TEST_F(ShapePanelsTest, LabelsAndFreeDrawingsTakeWhatIsChosen) {
    AnnotationShape& label = open<AnnotationShape>();
    label.setFontName("own.ttf");
    label.mouseSetPosition(degrees(1, 2, 3));
    label.fillGui();
    auto& font = form.field("Font:");
    ASSERT_EQ(font.items.size(), 30u);
    EXPECT_EQ(font.items[0] + " " + font.items[28] + " " + font.items[29],
              "andalemo.ttf verdanaz.ttf own.ttf");
    form.choose("Font Size:", 0);
    EXPECT_EQ(messages.size(), 1u);
    EXPECT_EQ(label.fontSize(), 8);
    form.choose("Font Size:", 14);
    form.choose("Font:", 16);
    form.choose("Line Color:", 0x01020304);
    EXPECT_EQ(label.fontName(), "impact.ttf");
    EXPECT_EQ(label.fontSize(), 14);
    EXPECT_EQ(label.color(), 0x01020304u);

    FreeDrawShape& drawing = open<FreeDrawShape>();
    form.choose("Pixel Precision:", 12);
    EXPECT_EQ(drawing.pixelPrecision(), 12);
}

}  // namespace
