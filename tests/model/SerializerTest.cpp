#include <cmath>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "format/SerializeToZel.h"
#include "geo/Angles.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/Overlay.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/SerializeToShape.h"
#include "model/ShapeKinds.h"
#include "model/ShapeRegistry.h"
#include "model/ZelToSerializer.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;
using ::testing::HasSubstr;

namespace {

/// Writes down the calls, one a line: name and numbers, positions in whole degrees.
class Recorder final : public Serializer {
  public:
    void beginShape(ShapeType type, unsigned long platform) override { note("begin", int(type), platform); }
    void endShape() override { note("end"); }
    void setItemName(const std::string& name) override { note("name", name); }
    void addPoint(const Vec3& lla) override { position("point", lla); }
    void addCorner(const Vec3& lla) override { position("corner", lla); }
    void setCenterPoint2(const Vec3& lla) override { position("center2", lla); }
    void setMajorRadius(double meters) override { note("major", meters); }
    void setMinorRadius(double meters) override { note("minor", meters); }
    void setHeight(double meters) override { note("height", meters); }
    void setStartEndAngles(double start, double end) override { note("angles", start, end); }
    void setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) override {
        note("lineColor", int(r), int(g), int(b), int(a));
    }
    void setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) override {
        note("fillColor", int(r), int(g), int(b), int(a));
    }
    void setFilled(bool filled) override { note("filled", filled); }
    void setVisible(bool visible) override { note("visible", visible); }
    void setLineWidth(int pixels) override { note("width", pixels); }
    void setPointSize(int pixels) override { note("pointSize", pixels); }
    void setLineStyle(LineStyle style) override { note("lineStyle", int(style)); }
    void setFontName(const std::string& name) override { note("font", name); }
    void setTextSize(int points) override { note("textSize", points); }

    std::string calls() const { return calls_.str(); }

  private:
    template <typename... Values>
    void note(const char* call, const Values&... values) {
        calls_ << call;
        (..., (calls_ << ' ' << values));
        calls_ << '\n';
    }
    void position(const char* call, const Vec3& lla) {
        note(call, std::round(lla.lat() * halCore::kDegreesPerRadian),
             std::round(lla.lon() * halCore::kDegreesPerRadian), lla.alt());
    }

    std::ostringstream calls_;
};

Vec3 degrees(double lat, double lon, double alt) {
    return {lat * halCore::kRadiansPerDegree, lon * halCore::kRadiansPerDegree, alt};
}

class SerializerTest : public ::testing::Test {
  protected:
    static std::string callsOf(Shape& shape) {
        Recorder recorder;
        return shape.serialize(recorder) == 0 ? recorder.calls() : "";
    }
    /// What a block gives a serializer.
    static std::string replayed(const std::string& lines) {
        Recorder recorder;
        std::istringstream text("start\n" + lines + "rangeunits m\naltitudeunits m\nend\n");
        EXPECT_EQ(ZelToSerializer().load(recorder, text, 0, "test"), 0);
        return recorder.calls();
    }

    FakeHost host;
    Preferences preferences;
};

TEST_F(SerializerTest, ShapesDescribeThemselvesInTheirOrder) {
    const auto styleOf = [](const std::string& name) {
        return "name " + name + "\nwidth 2\nlineColor 0 255 0 255\nfillColor 255 0 255 160\nfilled 0\nend\n";
    };
    PolygonShape line(preferences, PolygonShape::Line);
    line.addPoint(degrees(1, 2, 3));
    EXPECT_EQ(callsOf(line), "");
    line.addPoint(degrees(4, 5, 6));
    EXPECT_EQ(callsOf(line), "begin 2 0\nvisible 0\npoint 1 2 3\npoint 4 5 6\n" + styleOf("Line"));

    FreeDrawShape drawing(preferences);
    drawing.startLine(degrees(1, 2, 3));
    drawing.addPoint(degrees(4, 5, 6));
    EXPECT_EQ(callsOf(drawing), "begin 2 0\nvisible 0\npoint 1 2 3\npoint 4 5 6\n" + styleOf("Free Draw"));

    RectangleShape rectangle(preferences, RectangleShape::Rectangle);
    rectangle.setFirstCorner(degrees(1, 2, 3));
    rectangle.setLastCorner(degrees(4, 5, 3));
    EXPECT_EQ(callsOf(rectangle),
              "begin 5 0\nvisible 0\ncorner 1 2 3\ncorner 1 5 3\ncorner 4 5 3\ncorner 4 2 3\n" +
                  styleOf("Rectangle"));

    CylinderShape wedge(preferences, CylinderShape::Wedge);
    wedge.setCenter(degrees(1, 2, 3));
    wedge.setMajorRadius(10.0);
    wedge.setMinorRadius(20.0);
    EXPECT_EQ(callsOf(wedge), "begin 9 0\npoint 1 2 3\nmajor 10\nminor 20\nheight 0\n" + styleOf("Wedge"));
    wedge.setHeight(30.0);
    wedge.setStartAngle(0.5);
    wedge.setEndAngle(1.5);
    EXPECT_EQ(callsOf(wedge),
              "begin 9 0\npoint 1 2 3\nmajor 10\nminor 20\nangles 0.5 1.5\nheight 30\n" + styleOf("Wedge"));

    OrbitShape orbit(preferences);
    orbit.setCenter(degrees(1, 2, 3));
    EXPECT_EQ(callsOf(orbit), "");
    orbit.setCenter2(degrees(4, 5, 6));
    EXPECT_EQ(callsOf(orbit), "begin 15 0\npoint 1 2 3\ncenter2 4 5 6\nmajor 50\n" + styleOf("Orbit"));

    AnnotationShape label(preferences);
    EXPECT_EQ(callsOf(label), "");
    label.setPosition(degrees(1, 2, 3));
    PointConverter converter;
    label.setAttachedPlatformId(7, &converter, false);
    EXPECT_EQ(
        callsOf(label),
        "begin 13 7\nname Text\npoint 1 2 3\nlineColor 255 0 0 255\nfont arialbd.ttf\ntextSize 8\nend\n");
}

TEST_F(SerializerTest, FilesAreReplayedInTheOrderOfTheShapes) {
    const std::string noFill = "filled 0\nfillColor 255 0 0 255\n";
    const std::string line = "lineColor 255 0 0 255\nwidth 1\n";
    EXPECT_EQ(replayed("points\nlla 1 2 3\nlinecolor blue\n"),
              "begin 1 0\nname points\n" + line + "point 1 2 3\nlineColor 0 0 255 255\nend\n");
    EXPECT_EQ(replayed("line\nlla 1 2 3\nlla 4 5 6\nfilled\nlinecolor blue\nlinewidth 7\n"),
              "begin 2 0\nname line\nfilled 1\nfillColor 0 0 255 255\nlineColor 0 0 255 255\nwidth 7\n"
              "point 1 2 3\npoint 4 5 6\nend\n");
    EXPECT_EQ(replayed("polygon\nll 1 2\nll 1 5\nll 4 5\nll 4 2\n"),
              "begin 5 0\nname polygon\n" + noFill + line +
                  "corner 1 2 0\ncorner 1 5 0\ncorner 4 5 0\ncorner 4 2 0\nend\n");
    EXPECT_EQ(
        replayed("annotation A\nll 1 2\nfontname f\nfontsize 9\nlinecolor blue\n"),
        "begin 13 0\nname A\n" + line + "point 1 2 0\nfont f\ntextSize 9\nlineColor 0 0 255 255\nend\n");
    EXPECT_EQ(replayed("cylinder\ncenterll 1 2\nmajoraxis 20\nminoraxis 40\nheight 5\nangleunits rad\n"
                       "anglestart 1\nangledeg 0.5\n"),
              "begin 16 0\nname cylinder\n" + noFill + line +
                  "point 1 2 0\nmajor 10\nminor 20\nangles 1 1.5\nheight 5\nend\n");
    EXPECT_EQ(replayed("orbit\ncenterll 1 2\ncenterll2 3 4\nradius 5\n"),
              "begin 15 0\nname orbit\n" + noFill + line + "point 1 2 0\nmajor 5\ncenter2 3 4 0\nend\n");
    EXPECT_EQ(replayed("latlonaltbox 4 3 1 2 0\n"), "");
    Recorder recorder;
    std::istringstream comments("# nothing\n");
    EXPECT_EQ(ZelToSerializer().load(recorder, comments, 0, "comments.zel"), 1);
    ASSERT_EQ(host.notifications.size(), 1U);
    EXPECT_THAT(host.notifications[0], HasSubstr("Could not load comments.zel, no valid shapes found\n"));
}

TEST_F(SerializerTest, EachTypeHasItsClasses) {
    struct Case {
        const char *inFile, *inEditor;
    };
    const Case cases[] = {{"", ""},
                          {"points", "Line"},
                          {"line", "Line"},
                          {"linesegs", "Line"},
                          {"polygon", "Polygon"},
                          {"polygon", "Rectangle"},
                          {"circle", "Circle"},
                          {"ellipse", "Ellipse"},
                          {"arc", "Arc"},
                          {"cylinder", "Cylinder"},
                          {"sphere", "Sphere"},
                          {"hemisphere", "Hemisphere"},
                          {"ellipsoid", "Ellipsoid"},
                          {"annotation", "Text"},
                          {"cone", "Cone"},
                          {"orbit", "Orbit"},
                          {"cylinder", "Wedge"},
                          {"", ""}};
    SerializeToZel zel;
    SerializeToShape shapes(preferences);
    int number = 0;
    for (const Case& c : cases) {
        const auto type = static_cast<Serializer::ShapeType>(number++);
        SCOPED_TRACE(number);
        zel.clear();
        zel.setLineWidth(3);  // between shapes: nobody's
        zel.beginShape(type, 0);
        zel.setItemName("A");
        zel.endShape();
        const auto& made = zel.shapes().back();
        EXPECT_EQ(made ? halCore::ZEL::ZelShape::shapeTypeToString(made->shapeType()) : "", c.inFile);

        shapes.setItemName("nobody's");
        shapes.beginShape(type, 0);
        shapes.endShape();
        const auto taken = shapes.shapes();
        EXPECT_EQ(taken.empty() ? "" : taken[0]->name(), c.inEditor);
    }
}

TEST_F(SerializerTest, LabelsLookAsTheHostDrawsTheirFile) {
    SerializeToShape shapes(preferences);
    std::istringstream text(
        "start\nannotation A\nll 1 2\nend\nstart\nannotation B\nll 1 2\nfontsize 20\nend\n");
    ASSERT_EQ(ZelToSerializer().load(shapes, text, 0, "labels.zel"), 0);
    const auto taken = shapes.shapes();
    ASSERT_EQ(taken.size(), 2U);
    const auto& plain = dynamic_cast<const AnnotationShape&>(*taken[0]);
    EXPECT_EQ(plain.fontName(), "arial.ttf");
    EXPECT_EQ(plain.fontSize(), 15);
    EXPECT_EQ(dynamic_cast<const AnnotationShape&>(*taken[1]).fontSize(), 20);
}

TEST_F(SerializerTest, AnEmptyEntryIsSurvived) {
    SerializeToZel zel;
    const auto text = [&] {
        std::ostringstream out;
        zel.writeTo(out, 2);
        return out.str();
    };
    EXPECT_EQ(text(), "version 2\n\n");
    zel.endShape();
    EXPECT_EQ(text(), "version 2\n\n");
    // An arc runs forward from start to end across north.
    zel.beginShape(Serializer::Wedge, 0);
    zel.addPoint({0.1, 0.2, 0.0});
    zel.setStartEndAngles(5.5, 0.5);
    zel.endShape();
    const auto& wedge = dynamic_cast<const halCore::ZEL::Cylinder&>(*zel.shapes().back());
    double start = 0.0, sweep = 0.0;
    EXPECT_EQ(wedge.getAngleStart(start), 0);
    EXPECT_EQ(wedge.getAngleSweep(sweep), 0);
    EXPECT_EQ(start, 5.5);
    EXPECT_NEAR(sweep, 2 * halCore::kPi - 5.0, 1e-13);
}

TEST_F(SerializerTest, OverlaySkipsWhatCannotBeWritten) {
    Overlay overlay;
    Recorder nothing;
    EXPECT_EQ(overlay.serializeShapes(nothing), -1);
    overlay.addShape(new PolygonShape(preferences, PolygonShape::Line));
    EXPECT_EQ(overlay.serializeShapes(nothing), -1);
    EXPECT_EQ(nothing.calls(), "");
    auto* const label = new AnnotationShape(preferences);
    label->setPosition({});
    overlay.addShape(label);
    PointConverter converter;
    overlay.setAttachedPlatformId(7, &converter, false);
    EXPECT_EQ(overlay.serializeShapes(nothing), 0);
    EXPECT_EQ(nothing.pointConverter(), &converter);
    overlay.setAttachedPlatformId(0, &converter, false);
    overlay.serializeShapes(nothing);
    EXPECT_EQ(nothing.pointConverter(), nullptr);
}

TEST_F(SerializerTest, KindsAreRegisteredInTheOrderOfTheMenu) {
    ShapeRegistry registry;
    addAllKinds(registry, preferences);
    std::vector<std::string> names;
    for (const Shape* shape : registry.getShapes()) names.push_back(shape->name());
    EXPECT_THAT(names, ::testing::ElementsAre("Free Draw", "Text", "Line", "Polygon", "Rectangle", "Triangle",
                                              "Circle", "Ellipse", "Arc", "Cylinder", "Wedge", "Sphere",
                                              "Hemisphere", "Ellipsoid", "Cone", "Orbit"));
    EXPECT_EQ(registry.addPrototype(CylinderShape(preferences, CylinderShape::Circle)), 6U);
    EXPECT_EQ(registry.numPrototypes(), 16U);
    EXPECT_EQ(registry.getShapeByIndex(16), nullptr);
}

#ifdef __GXX_ABI_VERSION
/// The place of a virtual function among those of its class, as this ABI keeps it in a member pointer. The
/// destructor has the places 0 and 1.
template <typename Function>
std::size_t slotOf(Function function) {
    std::size_t value = 0;
    std::memcpy(&value, &function, sizeof value);
    return (value - 1) / sizeof(void*);
}

struct ShapeSlots : BaseFilledShape {
    static std::vector<std::size_t> all() {
        return {slotOf(&Shape::clone),
                slotOf(&Shape::serialize),
                slotOf(&Shape::mouseTool),
                slotOf(&Shape::createGui),
                slotOf(&Shape::notifyPrefsUpdate),
                slotOf(&Shape::fillGui),
                slotOf(&Shape::deleteGui),
                slotOf(&Shape::canAttach),
                slotOf(&Shape::name),
                slotOf(&Shape::shown),
                slotOf(&Shape::setAttachedPlatformId),
                slotOf(&Shape::setName),
                slotOf(&Shape::setShown),
                slotOf(&Shape::setActive),
                slotOf(&Shape::boundingBox),
                slotOf(&ShapeSlots::dirty_),
                slotOf(&ShapeSlots::hide_),
                slotOf(&BaseLineShape::setLineWidth),
                slotOf(&BaseLineShape::lineWidth),
                slotOf(&BaseLineShape::setLineColor),
                slotOf(&BaseLineShape::lineColor),
                slotOf(&BaseLineShape::setLineFromGui),
                slotOf(&BaseLineShape::clear),
                slotOf(&BaseFilledShape::setFilled),
                slotOf(&BaseFilledShape::filled),
                slotOf(&BaseFilledShape::setFillColor),
                slotOf(&BaseFilledShape::fillColor),
                slotOf(&BaseFilledShape::setOutlined),
                slotOf(&BaseFilledShape::setFillFromGui)};
    }
};

std::vector<std::size_t> from2(std::size_t count) {
    std::vector<std::size_t> slots;
    for (std::size_t i = 0; i < count; ++i) slots.push_back(i + 2);
    return slots;
}

TEST(Slots, StandInTheOrderThatOthersCallThemBy) {
    EXPECT_EQ(ShapeSlots::all(), from2(29));
    using S = Serializer;
    const std::vector<std::size_t> serializer{
        slotOf(&S::beginShape),        slotOf(&S::endShape),          slotOf(&S::setItemName),
        slotOf(&S::addPoint),          slotOf(&S::addCorner),         slotOf(&S::setCenterPoint2),
        slotOf(&S::setMajorRadius),    slotOf(&S::setMinorRadius),    slotOf(&S::setHeight),
        slotOf(&S::setStartEndAngles), slotOf(&S::setLineColor),      slotOf(&S::setFillColor),
        slotOf(&S::setFilled),         slotOf(&S::setVisible),        slotOf(&S::setLineWidth),
        slotOf(&S::setPointSize),      slotOf(&S::setPointConverter), slotOf(&S::setLineStyle),
        slotOf(&S::setFontName),       slotOf(&S::setTextSize)};
    EXPECT_EQ(serializer, from2(20));
    using C = PointsContainer;
    EXPECT_EQ((std::vector<std::size_t>{slotOf(&C::getNumPoints), slotOf(&C::pointAtIndex),
                                        slotOf(&C::setPointAtIndex), slotOf(&C::insertPointAtIndex),
                                        slotOf(&C::deletePointAtIndex)}),
              from2(5));
}
#endif

}  // namespace
