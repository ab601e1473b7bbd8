#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numbers>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "format/Keyword.h"
#include "format/PlainPoint.h"
#include "format/PointLines.h"
#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

using namespace std::string_literals;

constexpr double kDegree = std::numbers::pi / 180.0;

/// What a block becomes tells what each of its lines meant. No message.
TEST(Keywords, mean) {
    for (const auto& row : rows(R"(
CIRCLE | circle
Ellipse extra words | ellipse
Annotation  Hello   World | annotation Hello World
poly;ll 1 2;ll 3 4;ll 5 6 | polygon;lla 1 2 0;lla 3 4 0;lla 5 6 0
linesegs;xy 1 2;xy 3 4 | linesegs;xyz 1 2 0;xyz 3 4 0
orbit;centerll 1 2;centerll2 3 4 5 | orbit;centerlla 1 2 0;centerll2 3 4 5
orbit;centerlatlon 1 2;centerlatlon2 3 4 | orbit;centerlla 1 2 0;centerll2 3 4 0
orbit;centerxy 1 2;centerxy2 3 4 5 | orbit;centerxyz 1 2 0;centerxy2 3 4 5
LatLonAltBox 2n 1 3 4E 5 6 7 | latlonaltbox 2 1 3 4 5 6
ll 1 2;points;LLA 3 4 5;latlon 6 7 8 extra | points;lla 1 2 0;lla 3 4 5;lla 6 7 8
points;xy 1 2;XYZ 3 4 5;xyz 6 7 8 9 | points;xyz 1 2 0;xyz 3 4 5;xyz 6 7 8
points;	lla	-1.5 	 +2.25 .5 ;ll 1e1 -2E-1 3e0 | points;lla -1.5 2.25 0.5;lla 10 -0.2 3
points;ll 21:18:36S 158W high;ll "21 18 36 N" "158 0 0 W" 7;ll "1 30 n" 2.5 7 | points;lla -21.31 -158 0;lla 21.31 -158 7;lla 1.5 2.5 7
// The first point decides: the others are of the wrong kind.
points;ll 1 2;xy 3 4;ll 5 6 | points;lla 1 2 0;lla 5 6 0
points;xy 1 2;mgrs 31NAA;ll 3 4;xyz 1 2 3 | points;xyz 1 2 0;xyz 1 2 3
// A point that cannot be read is left out, an altitude is 0.
points;lla nan 1 2;lla 1,5 2 0;lla 0x10 2 0;lla 1 2 inf | points;lla 1 2 0
circle;centerlla 1 2 3;ReferencePoint 1 2 3 | circle;centerlla 1 2 3;ref 1 2 3
circle;centerxyz 1 2 3;ref 1 2 | circle;centerxyz 1 2 3;ref 1 2 0
// An absolute centre makes the block absolute; the numbers of its points are degrees then.
points;centerll 1 2;xy 3 4 5 | points;lla 3 4 5
circle;LineColor RED;linewidth 2;linestyle dash;outline yes | circle;outline true;linewidth 2;linecolor hex 0xff0000ff;linestyle dashed
circle;fillcolor color6;filled;linecolor purple;linestyle DOT;outline no | circle;outline false;linecolor hex 0xff0000ff;linestyle dotted;filled;fillcolor hex 0xff00a5ff
circle;linecolor hex ff00ff00;fillcolor any 0XFF00FF00;linestyle solid | circle;linecolor hex 0xff00ff00;linestyle solid;fillcolor hex 0xff00ff00
annotation A;linecolor color4;textoutlinecolor black | annotation A;linecolor hex 0xffff0000;textoutlinecolor hex 0xff000000
points;ll 1 2;pointsize 5;linecolor white;outline on | points;lla 1 2 0;pointsize 5;linecolor hex 0xffffffff;outline true
circle;off;depthbuffer T;altitudemode RelativeToGround;verticaldatum EGM96 | circle;off;depthbuffer true;altitudemode relativetoground;verticaldatum egm1996
circle;altitudemode clamptoground;verticaldatum egm08 | circle;altitudemode clamptoground;verticaldatum egm2008
circle;altitudemode none;verticaldatum egm84 | circle;altitudemode none;verticaldatum egm1984
circle;altitudemode extrude;verticaldatum wgs84 | circle;extrude true;verticaldatum wgs84
circle;altitudemode high;extrude true 5;verticaldatum mars | circle;extrude true 5
circle;extrude false 5 | circle
circle;altitudemode none;extrude 1 | circle;extrude true
annotation A;fontname Arial.TTF;textoutlinethickness thin;priority 1.5 | annotation A;fontname arial.ttf;textoutlinethickness thin;priority 1.5
annotation A;textoutlinethickness none;fontname /Fonts/A.ttf | annotation A;fontname /Fonts/A.ttf;textoutlinethickness none
annotation A;centerll 1 2 | annotation A;lla 1 2 0
annotation A;ll 3 4;ll 5 6;centerll 1 2 | annotation A;lla 3 4 0
annotation A;ll x 4;ll 5 6;centerll 1 2 | annotation A;lla 1 2 0
annotation A;xy 21:18:36 -157:54;xy 5 6;centerll 1 2 | annotation A;lla 21.31 -157.9 0
annotation A;xy x 4;xy 5 6;centerll 1 2 | annotation A;lla 1 2 0
line;xy 1 2;xy 3 4;tessellate on;lineprojection straight | line;xyz 1 2 0;xyz 3 4 0;tessellate true;lineprojection rhumbline
line;xy 1 2;xy 3 4;tessellate false;lineprojection greatcircle | line;xyz 1 2 0;xyz 3 4 0;tessellate false
circle;diameter 0.1 | circle;radius 0.05
ellipse;semimajoraxis 1e3;semiminoraxis 0.1 | ellipse;majoraxis 2000;minoraxis 0.2
ellipse;majoraxis 123456.789012345;minoraxis -7 | ellipse;majoraxis 123456.789012345;minoraxis -7
circle;radius 1e300;3d offsetalt 1e-251;scale 1e-249 -1e299 0.000001 | circle;radius 1e+300;3d offsetalt 0;scale 1e-249 -1e+299 1e-06
circle;orient 45 | circle;3d follow c;3d offsetcourse 45
circle;Orient 45 10 | circle;3d follow cp;3d offsetcourse 45;3d offsetpitch 10
circle;rotate 45 10 5 7 | circle;3d follow cpr;3d offsetcourse 45;3d offsetpitch 10;3d offsetroll 5
circle;rotated 45;3d names AB Cd | circle;3d name ab cd;3d follow c;3d offsetcourse 45
circle;3D Name My_Track  One | circle;3d name My_Track One
circle;3d name "unclosed quote  to the end;radius 5 | circle;radius 5;3d name "unclosed quote  to the end
circle;3d follow RP;3d offsetroll 3 | circle;3d follow pr;3d offsetroll 3
circle;#  Kept  As It IS;//x;/;Comment  Me Too | #  Kept  As It IS;//x;/;Comment  Me Too;circle
arc;anglestart 370;angledeg 20 | arc;anglestart 10;angledeg 20
arc;anglestart -90;angledeg -20 | arc;anglestart 270;angledeg -20
arc;anglestart 360 | arc;anglestart 0
arc;anglestart 359.99999999999997 | arc;anglestart 0
arc;anglestart 10;angleend 40 | arc;anglestart 10;angledeg 30
arc;anglestart 350;angleend 10 | arc;anglestart 350;angledeg 20
arc;angleend 40;angledeg 5 | arc;angledeg 5
arc;angleend 40 | arc;angledeg 40
circle;radius 2;rangeunits Nautical Miles | circle;radius 2;rangeunits nm
circle;radius 2;rangeunits sm | circle;radius 2;rangeunits mi
cone;height 2;altitudeunits meters | cone;height 2;altitudeunits m
arc;angleunits degree;angledeg 2 | arc;angledeg 2;angleunits deg
circle;innerradius 5;timeunits s;version 2;3d billboard on;linestyle;fontname;fontsize;depthbuffer | circle
line;ll 1 2;ll 3 4;tessellate;lineprojection | line;lla 1 2 0;lla 3 4 0
# kml_groundoverlay;# kml_icon Photo.PNG;# KML_LatLonBox 2 1 4 3 90 | # kml_groundoverlay;# kml_icon Photo.PNG;# KML_LatLonBox 2 1 4 3 90
)",
                                2))
        EXPECT_EQ(read(block(row[0])), block(row[1]));
}

/// Whatever stands between good blocks, these are read.
TEST(BadInput, hasADefinedOutcome) {
    const std::string circle = block("circle");
    for (const auto& [text, outcome] : {
             std::pair{""s, ""s},
             {"\n\n \t\r\n# comment\nversion 2 a b\nVERSION\n", ""},
             {"start\ncircle\nend", circle},
             // Outside of a block a point is no point.
             {"lla 1 2 3\nxyz 1 2 3\n" + circle,
              "1: token \"lla\" detected outside of a valid start/end block\n"
              "2: token \"xyz\" detected outside of a valid start/end block\n" +
                  circle},
             // A lone CR is white space: the line goes on.
             {"start\rcircle\ncircle\nend\n", circle},
             {"start\npolygon\nlla 1 2 0\rlla 3 4 0\nll 1 2\nll 3 4\nend\n",
              block("polygon;lla 1 2 0;lla 1 2 0;lla 3 4 0")},
             // A byte order mark is one in front only.
             {"\n\xEF\xBB\xBFstart\n" + circle,
              "2: token \"\xEF\xBB\xBFstart\" detected outside of a valid start/end block\n" + circle},
             {"start\ncircle\n\0\0\nend\n"s, "3: Found unknown ZEL command \0\0\n"s + circle},
             {"st\0art\nend\n"s,
              "1: token \"st\0art\" detected outside of a valid start/end block\n"
              "2: end command encountered before start\n"s},
             {"start\ncircle\n3d name \xff\xfe\nend\n", block("circle;3d name \xff\xfe")},
         }) {
        EXPECT_EQ(read(text), outcome);
        EXPECT_TRUE(written(parsed(text + "\n" + circle)).ends_with(circle)) << text;
    }
}

/// The stream is read in parts: a block and each of its lines may lie across any of their borders.
TEST(BadInput, aLongTextIsReadInParts) {
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += block("line;3d name Line number " + std::to_string(i) + ";linewidth " + std::to_string(i) +
                      ";lla 1." + std::to_string(i) + " 2 3;lla 4 5 6;lla 7 8 9;lla 10 11 12;lla 13 14 15");
    std::istringstream stream(text);
    Parsed result;
    Parser().parse(stream, result.shapes, result.report);
    EXPECT_EQ(messages(result.report) + written(result), rewritten(text));
    EXPECT_EQ(result.shapes.size(), 2000u);
}

/// Four megabytes of the same again and again: anything quadratic would not come to its end here. Every part
/// leaves a good block behind it readable.
TEST(BadInput, repetitionIsReadToItsEnd) {
    const std::pair<std::string, std::string> parts[] = {{"start\n", ""},
                                                         {"start\nline\n", ""},
                                                         {"start\ncircle\nend\n", ""},
                                                         {"ll 1 2\n", "start\npoints\n"},
                                                         {"ll x y\n", "start\npoints\n"},
                                                         {"# comment\n", "start\npoints\n"},
                                                         {"altitudeunits feet\n", "start\ncircle\n"},
                                                         {"x", ""},
                                                         {"a b ", "start\nannotation "},
                                                         {"_ \\n", "start\nannotation "},
                                                         {"\" ", "start\n3d name "},
                                                         {"1", "start\ncircle\nradius "}};
    for (const auto& [part, begin] : parts) {
        std::string text = begin;
        while (text.size() < (std::size_t{1} << 22)) text += part;
        const Parsed result = parsed(text + "\nend\nend\n" + block("sphere"));
        ASSERT_FALSE(result.shapes.empty()) << part;
        EXPECT_EQ(result.shapes.back()->shapeType(), ShapeType::Sphere) << part;
        const bool told = messages(result.report).find("line is longer than 1 MiB") != std::string::npos;
        EXPECT_EQ(told, part.back() != '\n') << part;
    }
}

TEST(Samples, areReadWithoutAMessageAndStayTheSame) {
    for (const auto& [name, blocks] :
         {std::pair("countries-110m.zel", 286u), {"coast-110m.zel", 126u}, {"keywords.zel", 19u}}) {
        const Parsed result = parsed(sample(name));
        EXPECT_EQ(messages(result.report), "");
        EXPECT_EQ(result.shapes.size(), blocks);
        const std::string once = written(result);
        EXPECT_EQ(rewritten(once), once);
        EXPECT_EQ(once.find("3d name Côte d'Ivoire\n") != std::string::npos, blocks == 286u);
    }
}

/// Positions are radians and metres.
TEST(Values, ofPositions) {
    const auto circle = only<Circle>(block("circle;centerll 45 -90 10"));
    ASSERT_NE(circle, nullptr);
    Vec3 center;
    EXPECT_EQ(circle->getCenterPosition(center), 0);
    EXPECT_DOUBLE_EQ(center.lat(), 45.0 * kDegree);
    EXPECT_DOUBLE_EQ(center.lon(), -90.0 * kDegree);
    EXPECT_DOUBLE_EQ(center.alt(), 3.0479999);

    // GeographicLib places 31NEA0000000000 (500000 E, 0 N of zone 31) at 0 N 3 E.
    const auto points = only<Points>(block("points;mgrs 31nea0000000000 5;mgrs \"31NEA0000\""));
    ASSERT_NE(points, nullptr);
    ASSERT_EQ(points->points().size(), 2u);
    EXPECT_NEAR(points->points()[0].lat(), 0.0, 1e-9);
    EXPECT_NEAR(points->points()[0].lon(), 3.0 * kDegree, 1e-9);
    EXPECT_DOUBLE_EQ(points->points()[0].alt(), 5 * 0.30479999);

    const auto overlay =
        only<ImageOverlay>(block("# kml_groundoverlay;# kml_icon Photo.PNG;# kml_latlonbox 2 1 4 3 90"));
    ASSERT_NE(overlay, nullptr);
    double rotation = 0.0;
    EXPECT_EQ(overlay->getRotation(rotation), 0);
    const std::pair<double, double> sides[] = {{overlay->north(), 2.0},
                                               {overlay->south(), 1.0},
                                               {overlay->east(), 4.0},
                                               {overlay->west(), 3.0},
                                               {rotation, 90.0}};
    for (const auto& [side, degrees] : sides) EXPECT_DOUBLE_EQ(side, degrees * kDegree);
    EXPECT_EQ(overlay->imageFile(), "Photo.PNG");
}

TEST(Values, ofColoursThatWereAdded) {
    Parser parser;
    parser.addOverwriteColor("Purple", "0xff800080");
    parser.addOverwriteColor("red", "0xff000001");
    Parsed result;
    parser.parse(block("circle;linecolor PURPLE;fillcolor Red"), result.shapes, result.report);
    EXPECT_EQ(written(result), block("circle;linecolor hex 0xff800080;fillcolor hex 0xff000001"));
}

/// The sample has every keyword and every kind of shape: nobody adds one and forgets it there.
TEST(KeywordTable, isWhatTheSampleShows) {
    const std::string text = sample("keywords.zel");
    std::set<std::string_view> used, all;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        used.insert(findKeyword(line.substr(0, line.find(' '))).text);
    used.erase("");
    for (const Keyword& keyword : allKeywords()) EXPECT_TRUE(all.insert(keyword.text).second);
    EXPECT_EQ(used, all);
    EXPECT_EQ(all.size(), 74u);
    for (const std::string_view other : {"", "l", "lll", "centerxyz2", "imageoverlay", "Circle", "radiuss"})
        EXPECT_EQ(findKeyword(other).action, KeywordAction::Unknown) << other;

    std::set<ShapeType> kinds;
    for (const auto& shape : parsed(text).shapes) kinds.insert(shape->shapeType());
    EXPECT_EQ(kinds.size(), 16u);
}

/// Plain decimal numbers of up to 21 digits, those of an everyday size most often.
std::string randomNumber(std::mt19937& random) {
    const auto digits = [&](unsigned most) {
        std::string text;
        for (auto count = random() % (most + 1); count > 0; --count)
            text += static_cast<char>('0' + random() % 10);
        return text;
    };
    const bool longer = random() % 4 == 0;
    std::string text =
        (random() % 3 == 0 ? "-" : "") + digits(longer ? 18 : 4) + static_cast<char>('0' + random() % 10);
    if (random() % 4 != 0) text += "." + digits(longer ? 20 : 15);
    return text;
}

/// The fast path gives the nearest double or leaves the number to the slow one.
TEST(PlainNumbers, areTheNearestDoubles) {
    std::mt19937 random(3);
    int plain = 0;
    for (int i = 0; i < 50000; ++i) {
        const std::string text = randomNumber(random);
        const std::string line = text + (i % 2 == 0 ? "\n" : " 12345678\n");
        const char* p = line.data();
        double value = 0.0;
        if (!scanPlainNumber(p, line.data() + line.size(), value)) continue;
        ++plain;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value),
                  std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)))
            << text;
        ASSERT_EQ(p, line.data() + text.size());
    }
    EXPECT_GT(plain, 40000);
    for (const std::string& text : test::split(";-;.;1e3;1,5;0x10;+-1;nan;1.2.3;12345678901234567890", ";")) {
        const std::string line = text + "\n";
        const char* p = line.data();
        double value = 0.0;
        EXPECT_FALSE(scanPlainNumber(p, line.data() + line.size(), value)) << text;
    }
}

/// Points are read in several ways, by how they are written and where they stand; all give the nearest
/// doubles.
TEST(PlainNumbers, ofPoints) {
    std::mt19937 random(4);
    std::string text = "start\nrangeunits m\naltitudeunits m\npoints\n";
    std::vector<Vec3> expected;
    for (int i = 0; i < 20000; ++i) {
        std::string numbers[3];
        for (std::string& number : numbers) number = randomNumber(random);
        const char* const blank = random() % 8 == 0 ? "\t" : " ";
        text += "xyz" + (blank + numbers[0]) + blank + numbers[1] + " " + numbers[2] +
                (i % 2 == 0 ? "\n" : "\r\n");
        expected.emplace_back(std::stod(numbers[0]), std::stod(numbers[1]), std::stod(numbers[2]));
    }
    const auto points = only<Points>(text + "end\n");
    ASSERT_NE(points, nullptr);
    EXPECT_EQ(points->points(), expected);
}

/// Whatever is read by vectors is what is read without, to the bit, and as far.
TEST(PlainNumbers, ofPointsAreTheSameWithVectors) {
    if (!PointLines::canRead()) GTEST_SKIP() << "no such instructions";
    std::mt19937 random(5);
    const auto lines = std::make_unique<PointLines>();
    std::size_t count = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        for (auto rest = 1 + random() % 4; rest != 0; --rest)
            text += "lla " + randomNumber(random) + " " + randomNumber(random) + " " + randomNumber(random) +
                    (random() % 4 == 0 ? "\r\n" : "\n");
        for (auto faults = random() % 3; faults != 0; --faults)
            text[4 + random() % (text.size() - 4)] = "0123456789 .-\n\r\te"[random() % 17];
        text += std::string(random() % 100, '\n') + "\n";
        const char* p = text.data();
        const char* const end = p + text.size();
        const char* next = p;
        for (const Vec3& point : lines->read(next, end, 3, {.largestX = 1000.0})) {
            Vec3 same;
            ASSERT_EQ(std::string_view(p, 4), "lla ") << text;
            const char* const stop = scanPlainPoint(p + 3, end, same);
            ASSERT_NE(stop, nullptr) << text;
            ASSERT_EQ(std::memcmp(&same, &point, sizeof same), 0) << text;
            ASSERT_LE(std::abs(point.x()), 1000.0);
            p = stop + 1;
            ++count;
        }
        ASSERT_EQ(p, next) << text;
    }
    EXPECT_GT(count, 3000u);
}

TEST(PlainNumbers, ofUnusualPoints) {
    for (const std::string& line : test::split(
             "lla -0 +1.5 -.5;lla 12345678 0.1234567890123456 7;lla 1.12345678901234567890 2 3;lla 1  2 3;"
             "lla 00000000000000000000012.5 2 3;lla 1 2;lla 1 2 ;lla 1 2 3 4 5;lla 1 2 3\r;lla 1 2 3 ;"
             "lla 1. .2 3;lla 1.2.3 4 5;lla 1e1 2 3;lla 1 2 3e2;lla 1 2 x;lla 1- 2 3;lla -- 2 3;lla 1 2 3-;"
             "lla  1 2 3;lla 12:30 2 3;lla 1.5 2.5 3.5            4;xy 1.5 -2.25;LLA 1 2 3;"
             "lla 1.5 2.5 3.5                                                                4",
             ";"))
        read(block("points;" + line));
}

}  // namespace
}  // namespace halCore::ZEL
