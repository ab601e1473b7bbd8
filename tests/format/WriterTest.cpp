#include <cmath>
#include <iomanip>
#include <locale>
#include <random>

#include <gtest/gtest.h>

#include "common/Notify.h"
#include "format/TextBuffer.h"
#include "geo/Units.h"
#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

UnitsState unitsOf(const Units& altitude, const Units& range, const Units& angle) {
    UnitsState units;
    units.setAltitudeUnits(altitude);
    units.setRangeUnits(range);
    units.setAngleUnits(angle);
    return units;
}

/// The lines with zeros for the signs: behind altitudes "^", behind ranges "*", behind angles "%".
std::string scaled(const std::string& body, std::string_view altitude, std::string_view range,
                   std::string_view angle) {
    std::string result;
    for (const char c : body) {
        const std::size_t sign = std::string_view("^*%").find(c);
        result.append(sign == std::string_view::npos ? std::string_view(&c, 1)
                                                     : std::array{altitude, range, angle}[sign]);
    }
    return result;
}

/// Every line of every kind, in each unit it may have: read and written again it is the same, and in other
/// units only the numbers that are in this unit are others.
TEST(Writer, writesEveryLineInItsUnit) {
    const std::string fill =
        ";outline false;linewidth 3;linecolor hex 0x80112233;linestyle dashed;filled;fillcolor hex "
        "0x40030201";
    const std::string circular = fill + ";centerlla -33.5 151.25 7^;radius 15*";
    const std::string axes = ";majoraxis 4*;minoraxis 2*";
    const std::string elliptical = circular + ";anglestart 3%;angledeg -2%" + axes;
    const std::string places = ";lla 21.3 -158.05 1^;lla 0 180 -3^;lla -1e-05 1e-07 0";
    const std::string offsets = ";xyz 1* 2* 3^;xyz -4* 5* -6^;xyz 7* 8* 9^";
    for (const std::string& kind :
         {"points" + places + ";pointsize 4;linecolor hex 0xff00a5ff;outline true",
          "line" + places + fill + ";tessellate false",
          "linesegs" + offsets + fill + ";tessellate true;lineprojection rhumbline",
          "polygon" + places + fill + ";tessellate true;lineprojection greatcircle", "circle" + circular,
          "sphere" + fill + ";centerxyz 1* 2* 3^;radius 4*", "hemisphere" + circular,
          "orbit" + circular + ";centerll2 -34 151.5 8^",
          "orbit" + fill + ";centerxyz 1* 2* 3^;radius 4*;centerxy2 5* 6* 7^", "arc" + elliptical,
          "ellipse" + elliptical, "cylinder" + elliptical + ";height 9^", "cone" + circular + ";height -9^",
          "ellipsoid" + circular + ";height 9^" + axes, "latlonaltbox 2.5 -2.5 -170 175 1^ 5^" + fill,
          "annotation Text here;lla 1 2 3^;" +
              std::string("fontname arialbd.ttf;fontsize 24;linecolor hex 0xffffffff;"
                          "textoutlinecolor hex 0x80000000;textoutlinethickness thick;priority 99.5"),
          "annotation A" + offsets.substr(0, 13)}) {
        const auto text = [&](const std::string& units, std::string_view altitude, std::string_view range,
                              std::string_view angle) {
            return block(
                scaled("# First;comment  Second;" + kind +
                           ";3d name My Name;off;3d offsetalt 12^;depthbuffer true;extrude true 100^;"
                           "ref 21.3 -158 10^;scale 1 2 0.5;verticaldatum egm1996;" +
                           units + ";3d follow cpr;3d offsetcourse 4%;3d offsetpitch -1%;3d offsetroll 5%",
                       altitude, range, angle));
        };
        const std::string given = text("altitudeunits km;angleunits rad;rangeunits cm", "", "", "");
        EXPECT_EQ(read(given), given);
        const Parsed result = parsed(given);
        ASSERT_EQ(result.shapes.size(), 1u);
        result.shapes[0]->setOriginalUnits(
            unitsOf(Units::CENTIMETERS, Units::MILLIMETERS, Units::MILLIRADIANS));
        EXPECT_EQ(written(result),
                  text("altitudeunits cm;angleunits mrad;rangeunits mm", "00000", "0", "000"));
    }
}

/// Without units lines everything is in feet, yards and degrees.
TEST(Writer, defaultUnits) {
    const std::string text =
        block("cylinder;centerxyz 2 -3 4;radius 5;anglestart 6;height 7;extrude true 8;3d offsetroll 9");
    const Parsed result = parsed(text);
    EXPECT_EQ(written(result), text);
    result.shapes.at(0)->setOriginalUnits(unitsOf(Units::METERS, Units::METERS, Units::DEGREES));
    EXPECT_EQ(written(result),
              block("cylinder;centerxyz 1.82879994 -2.74319991 1.21919996;radius 4.57199985;anglestart 6;"
                    "height 2.13359993;extrude true 2.43839992;altitudeunits m;angleunits deg;rangeunits m;"
                    "3d offsetroll 9"));
}

/// With nothing set there is the keyword alone, and the getters say so and give the default.
TEST(Writer, nothingSet) {
    for (const char* const kind : {"arc", "circle", "ellipse", "ellipsoid", "cylinder", "sphere",
                                   "hemisphere", "cone", "latlonaltbox 0 0 0 0 0", "annotation A"})
        EXPECT_EQ(read(block(kind)), block(kind));

    const Annotation annotation(false);
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

/// What is switched off is not written.
TEST(Writer, switchedOff) {
    Circle shape(true);
    shape.setAltitudeMode(AltitudeMode::ClampToGround);
    shape.setExtrudeHeight(5.0);
    shape.setFilled(false);
    shape.setDrawn(true);
    shape.setFollowYaw(false);
    shape.setFollowRoll(true);
    shape.setName("Hidden");
    shape.setSerializeName(false);
    EXPECT_EQ(written(shape), block("circle;altitudemode clamptoground;3d follow r"));
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

TEST(Labels, areWrittenInOneLine) {
    for (const auto& [label, body] : {std::pair{"Hello World", "annotation Hello World"},
                                      {"two\nlines\r\nmore", "annotation two\\nlines\\nmore"},
                                      {" led by two  blanks ", "annotation _led by two__blanks_"},
                                      {"tab\there", "annotation tab here"},
                                      {" My_Track", "annotation _My_Track;3d name My_Track"},
                                      {"\"quoted  text", "annotation \"quoted__text"},
                                      {"# no comment", "annotation # no comment"},
                                      {"end", "annotation end"}}) {
        Annotation annotation(true);
        annotation.setLabel(label);
        EXPECT_EQ(written(annotation), block(body));
    }
}

/// Whatever a label is made of, it comes back.
TEST(Labels, roundTrip) {
    const std::string_view parts[] = {" ", "  ", "\n", "a", "b_c", "\"", "#", "\\"};
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i) {
        std::string label;
        for (auto count = 1 + random() % 7; count > 0; --count) label += parts[random() % std::size(parts)];
        Annotation annotation(true);
        annotation.setLabel(label);
        const std::string text = written(annotation);
        const auto again = only<Annotation>(text);
        ASSERT_NE(again, nullptr) << text;
        ASSERT_EQ(again->label(), label) << text;
        ASSERT_EQ(written(*again), text);
    }
}

TEST(Labels, nameOfAnotherMeaningIsKeptButNotShown) {
    const std::string text = block("# kml_icon Flag.png;annotation Shown_text;3d name Other_name");
    const auto annotation = only<Annotation>(text);
    ASSERT_NE(annotation, nullptr);
    EXPECT_EQ(annotation->label(), "Shown text");
    EXPECT_EQ(written(*annotation), text);
    std::string value;
    annotation->getName(value);
    EXPECT_EQ(value, "Other_name");
    EXPECT_EQ(annotation->getIconFile(value), 0);
    EXPECT_EQ(value, "Flag.png");
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

/// Lines that were kept of a long list are those that would be written now: points changed, added and removed
/// at any places, other units, offsets, digits and other shapes in between.
TEST(Writer, keepsLinesOfWhatDidNotChange) {
    std::mt19937 random(3);
    const auto any = [&] { return std::ldexp(static_cast<double>(random()) - 2e9, -31); };
    const Units* const units[] = {&Units::METERS, &Units::FEET};
    std::vector<Vec3> lists[2];
    for (auto& points : lists)
        for (int i = 0; i < 1003; ++i) points.emplace_back(any(), any(), i % 3 * any());
    for (int round = 0; round < 300 && !HasFailure(); ++round) {
        std::vector<Vec3>& points = lists[random() % 16 == 0];
        for (auto changes = random() % 3; changes > 0; --changes) {
            const auto at = points.begin() +
                            static_cast<std::ptrdiff_t>(random() % 4 == 0 ? random() % 2 * (points.size() - 1)
                                                                          : random() % points.size());
            if (random() % 3 == 0)
                points.insert(at, Vec3(any(), -0.0, 0.0));
            else if (random() % 3 == 0)
                points.erase(at);
            else
                *at = Vec3(at->x(), random() % 2 == 0 ? -at->y() : any(), -at->z());
        }
        Line line(random() % 16 == 0);
        line.setPoints(points);
        line.setOriginalUnits(
            unitsOf(*units[random() % 16 == 0], *units[random() % 16 == 0], Units::DEGREES));
        const int digits = random() % 16 == 0 ? 9 : 15;
        std::ostringstream plain;
        plain.precision(digits);
        line.serializeToStream(plain);
        const auto buffer = OverlayEditor::TextBuffer::take();
        buffer->out().precision(digits);
        line.serializeToStream(buffer->out());
        EXPECT_EQ(buffer->text(), plain.str());
    }
}

}  // namespace
}  // namespace halCore::ZEL
