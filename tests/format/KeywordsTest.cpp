#include <cstdlib>
#include <numbers>
#include <set>

#include <gtest/gtest.h>

#include "format/Keyword.h"
#include "format/PlainNumber.h"
#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

struct Case {
    std::string_view body;
    std::string_view written;
};

void PrintTo(const Case& test, std::ostream* out) {
    *out << test.body;
}

class Keywords : public testing::TestWithParam<Case> {};

/// What a block becomes tells what each of its lines meant. No message.
TEST_P(Keywords, mean) {
    const Case& test = GetParam();
    EXPECT_EQ(rewritten(block(test.body)), block(test.written));
    EXPECT_EQ(messages(parsed(block(test.body)).report), "");
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, Keywords,
    testing::Values(
        Case{"CIRCLE\n", "circle\n"}, Case{"Ellipse extra words\n", "ellipse\n"}, Case{"arc\n", "arc\n"},
        Case{"cylinder\n", "cylinder\n"}, Case{"hemisphere\n", "hemisphere\n"}, Case{"sphere\n", "sphere\n"},
        Case{"ellipsoid\n", "ellipsoid\n"}, Case{"cone\n", "cone\n"},
        Case{"ll 1 2\npoints\n", "points\nlla 1 2 0\n"},
        Case{"line\nll 1 2\nll 3 4\n", "line\nlla 1 2 0\nlla 3 4 0\n"},
        Case{"linesegs\nxy 1 2\nxy 3 4\n", "linesegs\nxyz 1 2 0\nxyz 3 4 0\n"},
        Case{"poly\nll 1 2\nll 3 4\nll 5 6\n", "polygon\nlla 1 2 0\nlla 3 4 0\nlla 5 6 0\n"},
        Case{"orbit\ncenterll 1 2\ncenterll2 3 4 5\n", "orbit\ncenterlla 1 2 0\ncenterll2 3 4 5\n"},
        Case{"orbit\ncenterxy 1 2\ncenterxy2 3 4 5\n", "orbit\ncenterxyz 1 2 0\ncenterxy2 3 4 5\n"},
        Case{"latlonaltbox 2 1 3 4 5\n", "latlonaltbox 2 1 3 4 5\n"},
        Case{"LatLonAltBox 2n 1 3 4E 5 6 7\n", "latlonaltbox 2 1 3 4 5 6\n"},
        Case{"Annotation  Hello   World\n", "annotation Hello World\n"}));

INSTANTIATE_TEST_SUITE_P(
    Points, Keywords,
    testing::Values(
        Case{"points\nll 1 2\nLLA 3 4 5\nlatlon 6 7 8 extra\n", "points\nlla 1 2 0\nlla 3 4 5\nlla 6 7 8\n"},
        Case{"points\nxy 1 2\nXYZ 3 4 5\nxyz 6 7 8 9\n", "points\nxyz 1 2 0\nxyz 3 4 5\nxyz 6 7 8\n"},
        Case{"points\n\tlla\t-1.5 \t +2.25 .5 \n", "points\nlla -1.5 2.25 0.5\n"},
        Case{"points\nll 1e1 -2E-1 3e0\n", "points\nlla 10 -0.2 3\n"},
        Case{"points\nll 21:18:36S 158W high\n", "points\nlla -21.31 -158 0\n"},
        Case{"points\nll \"21 18 36 N\" \"158 0 0 W\" 7\n", "points\nlla 21.31 -158 7\n"},
        // The first point decides: the others are of the wrong kind.
        Case{"points\nll 1 2\nxy 3 4\nll 5 6\n", "points\nlla 1 2 0\nlla 5 6 0\n"},
        Case{"points\nxy 1 2\nmgrs 31NAA\nll 3 4\n", "points\nxyz 1 2 0\n"},
        Case{"circle\ncenterll 1 2\n", "circle\ncenterlla 1 2 0\n"},
        Case{"circle\ncenterlla 1 2 3\n", "circle\ncenterlla 1 2 3\n"},
        Case{"circle\ncenterlatlon 1 2\n", "circle\ncenterlla 1 2 0\n"},
        Case{"orbit\ncenterll 1 2\ncenterlatlon2 3 4\n", "orbit\ncenterlla 1 2 0\ncenterll2 3 4 0\n"},
        Case{"circle\ncenterxy 1 2\n", "circle\ncenterxyz 1 2 0\n"},
        Case{"circle\ncenterxyz 1 2 3\n", "circle\ncenterxyz 1 2 3\n"},
        Case{"circle\nref 1 2\n", "circle\nref 1 2 0\n"},
        Case{"circle\nReferencePoint 1 2 3\n", "circle\nref 1 2 3\n"},
        // An absolute centre makes the block absolute; the numbers of its points are degrees then.
        Case{"points\ncenterll 1 2\nxy 3 4 5\n", "points\nlla 3 4 5\n"},
        // Latitude and longitude are degrees whatever the units.
        Case{"points\nll 1 2 3\nangleunits rad\nrangeunits km\naltitudeunits m\n",
             "points\nlla 1 2 3\naltitudeunits m\nangleunits rad\nrangeunits km\n"}));

INSTANTIATE_TEST_SUITE_P(
    Attributes, Keywords,
    testing::Values(
        Case{"circle\nLineColor RED\n", "circle\nlinecolor hex 0xff0000ff\n"},
        Case{"circle\nlinecolor purple\n", "circle\nlinecolor hex 0xff0000ff\n"},
        Case{"circle\nlinecolor hex ff00ff00\n", "circle\nlinecolor hex 0xff00ff00\n"},
        Case{"circle\nlinecolor anything 0XFF00FF00\n", "circle\nlinecolor hex 0xff00ff00\n"},
        Case{"circle\nfillcolor cyan\n", "circle\nfillcolor hex 0xffffff00\n"},
        Case{"circle\nfillcolor color6\nfilled\n", "circle\nfilled\nfillcolor hex 0xff00a5ff\n"},
        Case{"annotation A\nlinecolor color4\ntextoutlinecolor black\n",
             "annotation A\nlinecolor hex 0xffff0000\ntextoutlinecolor hex 0xff000000\n"},
        Case{"circle\nlinewidth 2\nlinestyle dash\noutline yes\n",
             "circle\noutline true\nlinewidth 2\nlinestyle dashed\n"},
        Case{"circle\nlinestyle DOT\noutline no\n", "circle\noutline false\nlinestyle dotted\n"},
        Case{"circle\nlinestyle solid\n", "circle\nlinestyle solid\n"},
        Case{"points\nll 1 2\npointsize 5\nlinecolor white\noutline on\n",
             "points\nlla 1 2 0\npointsize 5\nlinecolor hex 0xffffffff\noutline true\n"},
        Case{"circle\noff\ndepthbuffer T\n", "circle\noff\ndepthbuffer true\n"},
        Case{"circle\naltitudemode RelativeToGround\n", "circle\naltitudemode relativetoground\n"},
        Case{"circle\naltitudemode clamptoground\n", "circle\naltitudemode clamptoground\n"},
        Case{"circle\naltitudemode none\n", "circle\naltitudemode none\n"},
        Case{"circle\naltitudemode extrude\n", "circle\nextrude true\n"},
        Case{"circle\nextrude true 5\n", "circle\nextrude true 5\n"},
        Case{"circle\nextrude false 5\n", "circle\n"},
        Case{"circle\naltitudemode none\nextrude 1\n", "circle\nextrude true\n"},
        Case{"circle\nverticaldatum EGM96\n", "circle\nverticaldatum egm1996\n"},
        Case{"circle\nverticaldatum egm08\n", "circle\nverticaldatum egm2008\n"},
        Case{"circle\nverticaldatum egm1984\n", "circle\nverticaldatum egm1984\n"},
        Case{"circle\nverticaldatum wgs84\n", "circle\nverticaldatum wgs84\n"},
        Case{"annotation A\npriority 1.5\nfontname Arial.TTF\nfontsize 12\ntextoutlinethickness thin\n",
             "annotation A\nfontname arial.ttf\nfontsize 12\ntextoutlinethickness thin\npriority 1.5\n"},
        Case{"annotation A\ntextoutlinethickness none\nfontname /Fonts/A.ttf\n",
             "annotation A\nfontname /Fonts/A.ttf\ntextoutlinethickness none\n"},
        Case{"annotation A\ncenterll 1 2\n", "annotation A\nlla 1 2 0\n"},
        Case{"annotation A\nll 3 4\nll 5 6\ncenterll 1 2\n", "annotation A\nlla 3 4 0\n"},
        Case{"annotation A\nll x 4\nll 5 6\ncenterll 1 2\n", "annotation A\nlla 1 2 0\n"},
        Case{"line\nxy 1 2\nxy 3 4\ntessellate true\nlineprojection greatcircle\n",
             "line\nxyz 1 2 0\nxyz 3 4 0\ntessellate true\nlineprojection greatcircle\n"},
        Case{"line\nxy 1 2\nxy 3 4\ntessellate on\nlineprojection straight\n",
             "line\nxyz 1 2 0\nxyz 3 4 0\ntessellate true\nlineprojection rhumbline\n"},
        Case{"line\nxy 1 2\nxy 3 4\ntessellate false\nlineprojection greatcircle\n",
             "line\nxyz 1 2 0\nxyz 3 4 0\ntessellate false\n"},
        Case{"circle\nradius 5\n", "circle\nradius 5\n"},
        Case{"circle\ndiameter 0.1\n", "circle\nradius 0.05\n"},
        Case{"ellipse\nsemimajoraxis 1e3\nsemiminoraxis 0.1\n", "ellipse\nmajoraxis 2000\nminoraxis 0.2\n"},
        Case{"ellipse\nmajoraxis 123456.789012345\nminoraxis 7\n",
             "ellipse\nmajoraxis 123456.789012345\nminoraxis 7\n"},
        Case{"cone\nheight -5\n", "cone\nheight -5\n"},
        Case{"circle\nscale 1 2.5 -3\n", "circle\nscale 1 2.5 -3\n"},
        Case{"circle\norient 45\n", "circle\n3d follow c\n3d offsetcourse 45\n"},
        Case{"circle\nOrient 45 10\n", "circle\n3d follow cp\n3d offsetcourse 45\n3d offsetpitch 10\n"},
        Case{"circle\nrotate 45 10 5 7\n",
             "circle\n3d follow cpr\n3d offsetcourse 45\n3d offsetpitch 10\n3d offsetroll 5\n"},
        Case{"circle\nrotated 45\n", "circle\n3d follow c\n3d offsetcourse 45\n"},
        Case{"circle\n3D Name My_Track  One\n", "circle\n3d name My_Track One\n"},
        Case{"circle\n3d names AB Cd\n", "circle\n3d name ab cd\n"},
        Case{"circle\n3d offsetalt 5\n3d offsetcourse 1\n3d offsetpitch 2\n3d offsetroll 3\n3d follow RP\n",
             "circle\n3d offsetalt 5\n3d follow pr\n3d offsetcourse 1\n3d offsetpitch 2\n3d offsetroll 3\n"},
        Case{"circle\n#  Kept  As It IS\n//x\n/\nComment  Me Too\n",
             "#  Kept  As It IS\n//x\n/\nComment  Me Too\ncircle\n"}));

INSTANTIATE_TEST_SUITE_P(
    AnglesAndUnits, Keywords,
    testing::Values(Case{"arc\nanglestart 370\nangledeg 20\n", "arc\nanglestart 10\nangledeg 20\n"},
                    Case{"arc\nanglestart -90\nangledeg -20\n", "arc\nanglestart 270\nangledeg -20\n"},
                    Case{"arc\nanglestart 360\n", "arc\nanglestart 0\n"},
                    Case{"arc\nanglestart 359.99999999999997\n", "arc\nanglestart 0\n"},
                    Case{"arc\nanglestart 10\nangleend 40\n", "arc\nanglestart 10\nangledeg 30\n"},
                    Case{"arc\nanglestart 350\nangleend 10\n", "arc\nanglestart 350\nangledeg 20\n"},
                    Case{"arc\nangleend 40\n", "arc\nangledeg 40\n"},
                    Case{"arc\nangleend 40\nangledeg 5\n", "arc\nangledeg 5\n"},
                    Case{"circle\nradius 2\nrangeunits Nautical Miles\n",
                         "circle\nradius 2\nrangeunits nm\n"},
                    Case{"circle\nradius 2\nrangeunits sm\n", "circle\nradius 2\nrangeunits mi\n"},
                    Case{"cone\nheight 2\naltitudeunits meters\n", "cone\nheight 2\naltitudeunits m\n"},
                    Case{"arc\nangledeg 2\nangleunits degree\n", "arc\nangledeg 2\nangleunits deg\n"},
                    Case{"arc\nangleunits mil\nangledeg 100\n", "arc\nangledeg 100\nangleunits mil\n"}));

TEST(Values, areMetresAndRadians) {
    const auto ellipse = only<Ellipse>(
        "start\nellipse\ncenterll 45 -90 10\nradius 3\nmajoraxis 2\nangledeg 90\nrangeunits nm\nend\n");
    ASSERT_NE(ellipse, nullptr);
    EXPECT_FALSE(ellipse->isRelative());
    Vec3 center;
    EXPECT_EQ(ellipse->getCenterPosition(center), 0);
    EXPECT_DOUBLE_EQ(center.lat(), std::numbers::pi / 4);
    EXPECT_DOUBLE_EQ(center.lon(), -std::numbers::pi / 2);
    EXPECT_DOUBLE_EQ(center.alt(), 3.0479999);
    double value = 0.0;
    EXPECT_EQ(ellipse->getRadius(value), 0);
    EXPECT_DOUBLE_EQ(value, 5556.0);
    EXPECT_EQ(ellipse->getMajorAxis(value), 0);
    EXPECT_DOUBLE_EQ(value, 3704.0);
    EXPECT_NE(ellipse->getMinorAxis(value), 0);
    EXPECT_EQ(ellipse->getAngleSweep(value), 0);
    EXPECT_DOUBLE_EQ(value, std::numbers::pi / 2);
    EXPECT_FALSE(ellipse->originalUnits().hasAltitudeUnits());
    EXPECT_TRUE(ellipse->originalUnits().hasRangeUnits());
}

/// 31NAA is the square whose south-west corner is at easting 166021 m, northing 0 of zone 31; a digit pair
/// adds kilometres. GeographicLib places 31NEA0000000000 (500000 E, 0 N) at 0 N 3 E.
TEST(Values, gridReferences) {
    const auto points = only<Points>("start\npoints\nmgrs 31nea0000000000 5\nmgrs \"31NEA0000\"\nend\n");
    ASSERT_NE(points, nullptr);
    ASSERT_EQ(points->points().size(), 2u);
    EXPECT_NEAR(points->points()[0].lat(), 0.0, 1e-9);
    EXPECT_NEAR(points->points()[0].lon(), 3.0 * kDegree, 1e-9);
    EXPECT_DOUBLE_EQ(points->points()[0].alt(), 5 * 0.30479999);
}

/// "_" and "\n" in the text make the name; a "3d name" that comes later replaces it.
TEST(Values, annotationTextAndName) {
    std::string text;
    std::string name;
    auto annotation = only<Annotation>("start\nannotation My_Track\\nTwo\nend\n");
    ASSERT_NE(annotation, nullptr);
    annotation->getText(text);
    annotation->getName(name);
    EXPECT_EQ(text, "My_Track\\nTwo");
    EXPECT_EQ(name, "My Track\nTwo");
    annotation = only<Annotation>("start\nannotation My_Track\n3d name My_Track\n# kml_icon Flag.png\nend\n");
    ASSERT_NE(annotation, nullptr);
    annotation->getName(name);
    EXPECT_EQ(name, "My_Track");
    EXPECT_EQ(annotation->getIconFile(text), 0);
    EXPECT_EQ(text, "Flag.png");
}

TEST(Values, coloursCanBeAdded) {
    Parser parser;
    parser.addOverwriteColor("Purple", "0xff800080");
    parser.addOverwriteColor("red", "0xff000001");
    Parser::Shapes shapes;
    parser.parse("start\ncircle\nlinecolor PURPLE\nfillcolor Red\nend\n", shapes);
    ASSERT_EQ(shapes.size(), 1u);
    EXPECT_EQ(written(*shapes[0]),
              "start\ncircle\nlinecolor hex 0xff800080\nfillcolor hex 0xff000001\nend\n");
}

/// The sample has every keyword and every kind of shape: nobody adds one and forgets it there.
TEST(KeywordTable, isWhatTheSampleShows) {
    const std::string text = sample("keywords.zel");
    std::set<std::string_view> used;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const Keyword& keyword = findKeyword(line.substr(0, line.find(' ')));
        if (!keyword.text.empty()) used.insert(keyword.text);
    }
    std::set<std::string_view> all;
    for (const Keyword& keyword : allKeywords()) EXPECT_TRUE(all.insert(keyword.text).second);
    EXPECT_EQ(used, all);
    EXPECT_EQ(all.size(), 74u);
    for (const std::string_view other : {"", "l", "lll", "centerxyz2", "imageoverlay", "Circle", "radiuss"})
        EXPECT_EQ(findKeyword(other).action, KeywordAction::Unknown) << other;

    std::set<ShapeType> kinds;
    for (const auto& shape : parsed(text).shapes) kinds.insert(shape->shapeType());
    EXPECT_EQ(kinds.size(), 16u);
}

/// The fast path gives the nearest double or leaves the number to the slow one.
TEST(PlainNumbers, areTheNearestDoubles) {
    struct Number {
        std::string text;
        bool plain;
    };
    for (const auto& [text, plain] : {Number{"0", true},
                                      {"-0.0", true},
                                      {"+1.5", true},
                                      {".5", true},
                                      {"5.", true},
                                      {"-17.505557", true},
                                      {"9007199254740993", true},
                                      {"0.1234567890123456", true},
                                      {"178.12438112345678", true},
                                      {"1234567890123456789", true},
                                      {"0.00000000000000001", true},
                                      {"12345678901234567890", false},
                                      {"", false},
                                      {"-", false},
                                      {".", false},
                                      {"1e3", false},
                                      {"1,5", false},
                                      {"0x10", false},
                                      {"+-1", false},
                                      {"nan", false},
                                      {"1.2.3", false}}) {
        for (const std::string& line : {text + "\n", text + " 12345678\n"}) {
            const char* p = line.data();
            double value = 0.0;
            ASSERT_EQ(scanPlainNumber(p, line.data() + line.size(), value), plain) << text;
            if (!plain) continue;
            EXPECT_EQ(value, std::strtod(text.c_str(), nullptr)) << text;
            EXPECT_EQ(p, line.data() + text.size());
        }
    }
}

/// Deep in a text several characters are read at once, at its end one by one: it makes no difference.
TEST(PlainNumbers, areReadAlikeInTheMiddleAndAtTheEnd) {
    const std::string_view forms[] = {
        "lla 1 2 3",
        "lla -17.505557 178.124381 123",
        "lla -0 +1.5 -.5",
        "lla 12345678 0.1234567890123456 7",
        "lla 89.123456789012345 -179.12345678901234 1234567.25",
        "lla 1.12345678901234567890 2 3",
        "lla 123456789.5 2 3",
        "lla 00000000000000000000012.5 2 3",
        "lla 1  2 3",
        "lla 1\t2 3",
        "lla 1 2",
        "lla 1 2 ",
        "lla 1 2 3 4 5",
        "lla 1 2 3\r",
        "lla 1 2 3 ",
        "lla 1. .2 3",
        "lla 1.2.3 4 5",
        "lla 1e1 2 3",
        "lla 1 2 3e2",
        "lla 1 2 x",
        "lla 1- 2 3",
        "lla -- 2 3",
        "lla 1 2 3-",
        "lla  1 2 3",
        "lla 12:30 2 3",
        "lla 1.5 2.5 3.5                                                                4",
        "xyz 1.5 -2.25 300",
        "xy 1.5 -2.25",
        "LLA 1 2 3"};
    for (const std::string_view form : forms) {
        const std::string text = block("points\n" + std::string(form) + "\n");
        const Parsed atTheEnd = parsed(text);
        const Parsed inTheMiddle = parsed(text + std::string(200, '\n'));
        EXPECT_EQ(messages(inTheMiddle.report), messages(atTheEnd.report)) << form;
        ASSERT_EQ(inTheMiddle.shapes.size(), atTheEnd.shapes.size()) << form;
        if (atTheEnd.shapes.empty()) continue;
        const auto& expected = dynamic_cast<const Points&>(*atTheEnd.shapes[0]).points();
        EXPECT_EQ(dynamic_cast<const Points&>(*inTheMiddle.shapes[0]).points(), expected) << form;
    }
}

}  // namespace
}  // namespace halCore::ZEL
