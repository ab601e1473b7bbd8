#include <clocale>
#include <iomanip>
#include <locale>
#include <numbers>

#include <gtest/gtest.h>

#include "format/LabelText.h"
#include "geo/Units.h"
#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

UnitsState metresAndDegrees() {
    UnitsState units;
    units.setAltitudeUnits(Units::METERS);
    units.setRangeUnits(Units::METERS);
    units.setAngleUnits(Units::DEGREES);
    return units;
}

constexpr std::string_view kFillable =
    "outline false\nlinewidth 3\nlinecolor hex 0x80112233\nlinestyle dashed\nfilled\n"
    "fillcolor hex 0x40030201\n";

void setFillable(FillableShape& shape) {
    shape.setOutlined(false);
    shape.setLineWidth(3);
    shape.setLineColor(Color(0x33, 0x22, 0x11, 0x80));
    shape.setLineStyle(LineStyle::Dashed);
    shape.setFilled(true);
    shape.setFillColor(Color(1, 2, 3, 0x40));
}

constexpr std::string_view kCommon =
    "3d name My Name\noff\n3d offsetalt 12.5\ndepthbuffer true\nextrude true 100\nref 21.3 -158 10\n"
    "scale 1 2 0.5\nverticaldatum egm1996\naltitudeunits m\nangleunits deg\nrangeunits m\n"
    "3d follow cpr\n3d offsetcourse 45\n3d offsetpitch -10\n3d offsetroll 5\n";

void setCommon(ZelShape& shape) {
    shape.addComment("# First");
    shape.addComment("comment  Second");
    shape.setName("My Name");
    shape.setDrawn(false);
    shape.setDepthBufferActive(true);
    shape.setAltitudeOffset(12.5);
    shape.setAltitudeMode(AltitudeMode::Extrude);
    shape.setExtrudeHeight(100.0);
    shape.setReferencePosition(Vec3(21.3 * kDegree, -158.0 * kDegree, 10.0));
    shape.setScale(Vec3(1.0, 2.0, 0.5));
    shape.setVerticalDatum("egm1996");
    shape.setFollowYaw(true);
    shape.setFollowPitch(true);
    shape.setFollowRoll(true);
    shape.setYawOffset(45.0 * kDegree);
    shape.setPitchOffset(-10.0 * kDegree);
    shape.setRollOffset(5.0 * kDegree);
    shape.setOriginalUnits(metresAndDegrees());
}

/// The whole text: the type's lines among what every shape has. It reads back without a message and is
/// written the same again.
void expectText(ZelShape& shape, const std::string& lines) {
    setCommon(shape);
    const std::string expected = "start\n# First\ncomment  Second\n" + lines + std::string(kCommon) + "end\n";
    EXPECT_EQ(written(shape), expected);
    EXPECT_EQ(messages(parsed(expected).report), "");
    EXPECT_EQ(rewritten(expected), expected);
}

void setPoints(auto& shape) {
    shape.addPoint(Vec3(21.3 * kDegree, -158.05 * kDegree, 10.25));
    shape.addPoint(Vec3(0.0, 180.0 * kDegree, -3.0));
    shape.addPoint(Vec3(-1e-5 * kDegree, 1e-7 * kDegree, 0.0));
}

constexpr std::string_view kPoints = "lla 21.3 -158.05 10.25\nlla 0 180 -3\nlla -1e-05 1e-07 0\n";

TEST(WriterAllSet, points) {
    Points shape(false);
    setPoints(shape);
    shape.setPointSize(4);
    shape.setColor(Color(255, 165, 0, 255));
    shape.setOutlined(true);
    expectText(shape,
               "points\n" + std::string(kPoints) + "pointsize 4\nlinecolor hex 0xff00a5ff\noutline true\n");
}

template <typename Shape>
void expectPointBased(const std::string& keyword, TessellationStyle style, const std::string& tessellation) {
    Shape shape(false);
    setPoints(shape);
    setFillable(shape);
    shape.setTessellation(style);
    expectText(shape, keyword + "\n" + std::string(kPoints) + std::string(kFillable) + tessellation);
}

TEST(WriterAllSet, pointLists) {
    expectPointBased<Line>("line", TessellationStyle::None, "tessellate false\n");
    expectPointBased<LineSegs>("linesegs", TessellationStyle::RhumbLine,
                               "tessellate true\nlineprojection rhumbline\n");
    expectPointBased<Polygon>("polygon", TessellationStyle::GreatCircle,
                              "tessellate true\nlineprojection greatcircle\n");
}

void setCircular(CircularShape& shape) {
    setFillable(shape);
    shape.setCenterPosition(Vec3(-33.5 * kDegree, 151.25 * kDegree, 7.0));
    shape.setRadius(1500.0);
}

std::string circular(const std::string& keyword) {
    return keyword + "\n" + std::string(kFillable) + "centerlla -33.5 151.25 7\nradius 1500\n";
}

TEST(WriterAllSet, circularShapes) {
    Circle circle(false);
    setCircular(circle);
    expectText(circle, circular("circle"));
    Sphere sphere(false);
    setCircular(sphere);
    expectText(sphere, circular("sphere"));
    Hemisphere hemisphere(false);
    setCircular(hemisphere);
    expectText(hemisphere, circular("hemisphere"));
    Orbit orbit(false);
    setCircular(orbit);
    orbit.setCenterPosition2(Vec3(-34.0 * kDegree, 151.5 * kDegree, 8.0));
    expectText(orbit, circular("orbit") + "centerll2 -34 151.5 8\n");
}

void setElliptical(EllipticalShape& shape) {
    setCircular(shape);
    shape.setAngleStart(350.0 * kDegree);
    shape.setAngleSweep(-20.5 * kDegree);
    shape.setMajorAxis(400.0);
    shape.setMinorAxis(200.0);
}

constexpr std::string_view kElliptical = "anglestart 350\nangledeg -20.5\nmajoraxis 400\nminoraxis 200\n";

TEST(WriterAllSet, ellipticalShapes) {
    Arc arc(false);
    setElliptical(arc);
    expectText(arc, circular("arc") + std::string(kElliptical));
    Ellipse ellipse(false);
    setElliptical(ellipse);
    expectText(ellipse, circular("ellipse") + std::string(kElliptical));
    Cylinder cylinder(false);
    setElliptical(cylinder);
    cylinder.setHeight(90.0);
    expectText(cylinder, circular("cylinder") + std::string(kElliptical) + "height 90\n");
}

TEST(WriterAllSet, shapesWithHeight) {
    Cone cone(false);
    setCircular(cone);
    cone.setHeight(90.0);
    expectText(cone, circular("cone") + "height 90\n");
    Ellipsoid ellipsoid(false);
    setCircular(ellipsoid);
    ellipsoid.setHeight(90.0);
    ellipsoid.setMajorAxis(400.0);
    ellipsoid.setMinorAxis(200.0);
    expectText(ellipsoid, circular("ellipsoid") + "height 90\nmajoraxis 400\nminoraxis 200\n");
}

TEST(WriterAllSet, box) {
    LatLonAltBox box(true);
    box.setNorth(2.5 * kDegree);
    box.setSouth(-2.5 * kDegree);
    box.setWest(-170.0 * kDegree);
    box.setEast(175.0 * kDegree);
    box.setAltitude(1000.0);
    box.setHeight(50.0);
    setFillable(box);
    expectText(box, "latlonaltbox 2.5 -2.5 -170 175 1000 50\n" + std::string(kFillable));
}

TEST(WriterAllSet, annotation) {
    Annotation annotation(false);
    annotation.setText("Text here");
    annotation.setPosition(Vec3(1.0 * kDegree, 2.0 * kDegree, 3.0));
    annotation.setFontName("arialbd.ttf");
    annotation.setTextSize(24);
    annotation.setTextColor(Color(255, 255, 255, 255));
    annotation.setOutlineColor(Color(0, 0, 0, 128));
    annotation.setOutlineThickness(OutlineThickness::Thick);
    annotation.setPriority(99.5);
    expectText(
        annotation,
        "annotation Text here\nlla 1 2 3\nfontname arialbd.ttf\nfontsize 24\nlinecolor hex 0xffffffff\n"
        "textoutlinecolor hex 0x80000000\ntextoutlinethickness thick\npriority 99.5\n");
}

/// An image overlay lives in its comments.
TEST(WriterAllSet, imageOverlay) {
    const std::string text =
        "start\n# kml_groundoverlay\n# kml_icon Photo.PNG\n# KML_LatLonBox 2 1 4 3 90\nend\n";
    const auto overlay = only<ImageOverlay>(text);
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(overlay->imageFile(), "Photo.PNG");
    EXPECT_DOUBLE_EQ(overlay->north(), 2.0 * kDegree);
    EXPECT_DOUBLE_EQ(overlay->south(), 1.0 * kDegree);
    EXPECT_DOUBLE_EQ(overlay->east(), 4.0 * kDegree);
    EXPECT_DOUBLE_EQ(overlay->west(), 3.0 * kDegree);
    double rotation = 0.0;
    EXPECT_EQ(overlay->getRotation(rotation), 0);
    EXPECT_DOUBLE_EQ(rotation, 90.0 * kDegree);
    EXPECT_EQ(written(*overlay), text);
}

/// With nothing set there is the keyword alone, and every getter says so and gives its default.
TEST(WriterNoneSet, keywordOnly) {
    const std::pair<std::shared_ptr<ZelShape>, std::string> cases[] = {
        {std::make_shared<Points>(false), "points\n"},
        {std::make_shared<Line>(false), "line\n"},
        {std::make_shared<LineSegs>(false), "linesegs\n"},
        {std::make_shared<Polygon>(false), "polygon\n"},
        {std::make_shared<Arc>(false), "arc\n"},
        {std::make_shared<Circle>(false), "circle\n"},
        {std::make_shared<Ellipse>(false), "ellipse\n"},
        {std::make_shared<Ellipsoid>(false), "ellipsoid\n"},
        {std::make_shared<Cylinder>(false), "cylinder\n"},
        {std::make_shared<Sphere>(false), "sphere\n"},
        {std::make_shared<Hemisphere>(false), "hemisphere\n"},
        {std::make_shared<LatLonAltBox>(false), "latlonaltbox 0 0 0 0 0\n"},
        {std::make_shared<Cone>(false), "cone\n"},
        {std::make_shared<ImageOverlay>(false), ""},
        {std::make_shared<Orbit>(false), "orbit\n"}};
    for (const auto& [shape, lines] : cases) EXPECT_EQ(written(*shape), block(lines));

    Annotation annotation(false);
    annotation.setText("A");
    EXPECT_EQ(written(annotation), "start\nannotation A\nend\n");
    std::string text;
    EXPECT_NE(annotation.getFontName(text), 0);
    EXPECT_EQ(text, "arial.ttf");
    EXPECT_NE(annotation.getVerticalDatum(text), 0);
    EXPECT_EQ(text, "wgs84");
    EXPECT_NE(annotation.getName(text), 0);
    EXPECT_EQ(text, "annotation");
    bool drawn = false;
    EXPECT_NE(annotation.getDrawn(drawn), 0);
    EXPECT_TRUE(drawn);
}

/// Without units lines everything is in what the reader takes then: feet, yards, degrees.
TEST(Writer, defaultUnits) {
    Cylinder shape(true);
    shape.setCenterPosition(Vec3(2 * 0.91439997, -3 * 0.91439997, 4 * 0.30479999));
    shape.setRadius(5 * 0.91439997);
    shape.setAngleStart(6 * kDegree);
    shape.setHeight(7 * 0.30479999);
    shape.setExtrudeHeight(8 * 0.30479999);
    shape.setAltitudeMode(AltitudeMode::Extrude);
    EXPECT_EQ(written(shape),
              "start\ncylinder\ncenterxyz 2 -3 4\nradius 5\nanglestart 6\nheight 7\nextrude true 8\nend\n");
    EXPECT_EQ(rewritten(written(shape)), written(shape));
}

TEST(Writer, smallChoices) {
    Circle shape(true);
    shape.setAltitudeMode(AltitudeMode::ClampToGround);
    shape.setExtrudeHeight(5.0);
    shape.setFilled(false);
    shape.setDrawn(true);
    shape.setLineStyle(LineStyle::Dotted);
    shape.setFollowYaw(false);
    shape.setFollowRoll(true);
    shape.setName("Hidden");
    shape.setSerializeName(false);
    EXPECT_EQ(written(shape),
              "start\ncircle\nlinestyle dotted\naltitudemode clamptoground\n3d follow r\nend\n");
    shape.setAltitudeMode(AltitudeMode::RelativeToGround);
    shape.setLineStyle(LineStyle::Solid);
    shape.setFollowRoll(false);
    EXPECT_EQ(written(shape), "start\ncircle\nlinestyle solid\naltitudemode relativetoground\nend\n");
}

/// Precision and flags are the stream's, its locale and the process's are not.
TEST(Writer, followsTheStream) {
    Circle shape(true);
    UnitsState units;
    units.setRangeUnits(Units::METERS);
    shape.setOriginalUnits(units);
    shape.setRadius(1234567.891);
    const auto radius = [&shape](auto&&... manipulators) {
        std::ostringstream out;
        static_cast<void>((out << ... << manipulators));
        shape.serializeToStream(out);
        const std::string text = out.str();
        const std::size_t begin = text.find("radius ") + 7;
        return text.substr(begin, text.find('\n', begin) - begin);
    };
    EXPECT_EQ(radius(std::setprecision(15)), "1234567.891");
    EXPECT_EQ(radius(), "1.23457e+06");
    EXPECT_EQ(radius(std::setprecision(0)), "1e+06");
    EXPECT_EQ(radius(std::fixed, std::setprecision(1)), "1234567.9");
    EXPECT_EQ(radius(std::scientific, std::setprecision(2)), "1.23e+06");
    EXPECT_EQ(radius(std::showpos, std::setprecision(10)), "+1234567.891");
    EXPECT_EQ(radius(std::setprecision(30)), "1234567.89100000006146728992462");

    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::ostringstream out;
    out.imbue(std::locale(out.getloc(), new Comma));
    out << std::fixed << std::setprecision(3);
    shape.serializeToStream(out);
    EXPECT_NE(out.str().find("radius 1234567.891\n"), std::string::npos);
}

/// A stream that fails, even one that throws then, is left in its failed state and nothing escapes.
TEST(Writer, survivesAFailingStream) {
    struct Full : std::streambuf {
    } full;
    std::ostream out(&full);
    out.exceptions(std::ios::badbit);
    Circle(true).serializeToStream(out);
    EXPECT_TRUE(out.bad());
}

TEST(Writer, nothingBreaksTheFile) {
    Circle shape(true);
    shape.setName(" a\nend\r\nb\tc\r ");
    shape.addComment("# first\nend");
    shape.addComment("plain");
    EXPECT_EQ(written(shape), "start\n# first\n# end\n# plain\ncircle\n3d name a\\nend\\nb c\\n\nend\n");
    shape.setName(" \t ");
    EXPECT_EQ(written(shape), "start\n# first\n# end\n# plain\ncircle\nend\n");
}

struct LabelCase {
    std::string label;
    std::string lines;
};

TEST(Labels, roundTrip) {
    const LabelCase cases[] = {
        {"Hello World", "annotation Hello World\n"},
        {"two\nlines", "annotation two\\nlines\n"},
        {"dos\r\nlines", "annotation dos\\nlines\n"},
        {" led", "annotation _led\n"},
        {"trailed ", "annotation trailed_\n"},
        {"far  apart", "annotation far__apart\n"},
        {"tab\there", "annotation tab here\n"},
        {"My_Track", "annotation My_Track\n3d name My_Track\n"},
        {"_", "annotation _\n3d name _\n"},
        {" ", "annotation _\n"},
        {"a_b  c\nd", "annotation a_b__c\\nd\n3d name a_b c\\nd\n"},
        {" a_b ", "annotation _a_b_\n3d name a_b\n"},
        {"\"quoted  text", "annotation \"quoted__text\n"},
        {"# no comment", "annotation # no comment\n"},
        {"end", "annotation end\n"},
        {"Größe 10 µ", "annotation Größe 10 µ\n"},
    };
    for (const LabelCase& test : cases) {
        Annotation annotation(true);
        annotation.setLabel(test.label);
        const std::string text = written(annotation);
        EXPECT_EQ(text, block(test.lines));
        const auto read = only<Annotation>(text);
        ASSERT_NE(read, nullptr) << text;
        std::string expected = test.label;
        if (const auto tab = expected.find('\t'); tab != std::string::npos) expected[tab] = ' ';
        if (const auto cr = expected.find('\r'); cr != std::string::npos) expected.erase(cr, 1);
        EXPECT_EQ(read->label(), expected);
        EXPECT_EQ(rewritten(rewritten(text)), rewritten(text));
    }
}

TEST(Labels, nameOfAnotherMeaningIsKeptButNotShown) {
    const std::string text = "start\nannotation Shown_text\n3d name Other_name\nend\n";
    const auto annotation = only<Annotation>(text);
    ASSERT_NE(annotation, nullptr);
    EXPECT_EQ(annotation->label(), "Shown text");
    EXPECT_EQ(written(*annotation), text);
}

TEST(Labels, emptyOneIsNotWrittenAndSaysSo) {
    std::string log;
    halNotify::setNotifyHandler([&log](halNotify::Severity, const std::string& text) { log += text; });
    Annotation annotation(true);
    annotation.setLabel("");
    EXPECT_EQ(written(annotation), "");
    halNotify::setNotifyHandler(halNotify::Handler());
    EXPECT_NE(log.find("not written"), std::string::npos);
}

TEST(ColorText, bothWays) {
    EXPECT_EQ(Color(1, 2, 3, 4).serialize(), "0x04030201");
    EXPECT_EQ(Color::parse("0x04030201"), Color(1, 2, 3, 4));
    EXPECT_EQ(Color::parse("0xff"), Color(255, 0, 0, 0));
    for (const std::string_view bad : {"", "0x", "ff0000ff", "0x-1", "0xff0000ff0", "0xff0000fg", "0x ff"})
        EXPECT_FALSE(Color::parse(bad)) << bad;
}

}  // namespace
}  // namespace halCore::ZEL
