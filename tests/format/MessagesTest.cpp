#include <gtest/gtest.h>

#include "common/Notify.h"
#include "format/ParsedShape.h"
#include "format/ShapeBuilder.h"
#include "geo/UnitsRegistry.h"
#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

/// Of a whole text: the messages, and what is written back. "@" stands for a good block.
TEST(Messages, nameTheLineAndLoseOnlyIt) {
    const auto text = [](const std::string& cell) {
        std::string result;
        for (const char c : lines(cell)) result += c == '@' ? "start\ncircle\nend" : std::string(1, c);
        return result;
    };
    for (const auto& row : rows(R"(
circle;@ | 1: token "circle" detected outside of a valid start/end block | @
; "Two Words" X | 2: token ""Two Words"" detected outside of a valid start/end block |
end;@ | 1: end command encountered before start | @
start;start;end;end | 2: nested start command not allowed;3: end command encountered before recognized ZEL shape type keyword;4: end command encountered before start |
start;linewidth 3;end;@ | 3: end command encountered before recognized ZEL shape type keyword | @
@;start;line;circle;end;@ | 6: Multiple shape keywords found in single start/end block | @;@
start;circle;circle;end | 3: Multiple shape keywords found in single start/end block |
start;latlonaltbox 2 1 3 4 0;annotation x;end | 3: Multiple shape keywords found in single start/end block |
start;# kml_groundoverlay;circle;end | 3: Multiple shape keywords found in single start/end block |
start;circle;Foo  BAR 1;3d wings;imageoverlay;end | 3: Found unknown ZEL command foo bar 1;4: Found unknown ZEL command 3d wings;5: Found unknown ZEL command imageoverlay | @
@;start;circle |  | @
// Only where small letters make another latitude of it.
start;points;LL 21d18m36S 158;ll 21:18:36S 158;ll "21d18m36S" 158;ll 21d18m36s 158;ll -21d18m36S 158;end | 3: 21d18m36S is read as 21.31 north, as words are in small letters: in quotes, "21d18m36S", it is 21.31 south | start;points;lla 21.31 158 0;lla -21.31 158 0;lla -21.31 158 0;lla 21.31 158 0;lla -21.31 158 0;end
start;points;LL 21D18M36S 158D3M2S;ll 21 158d18m36S;end |  | start;points;lla 21.31 158.050555555556 0;lla 21 158.31 0;end
start;points;mgrs 4QFJ 12345 67890;mgrs 4QFJ 123456;mgrs 4QFJ 1200;mgrs 4QFJ12346789 100 200;end | 3: 4QFJ is read as the corner of its square, at an altitude of 12345: written without blanks, 4QFJ1234567890, it is another place;4: 4QFJ is read as the corner of its square, at an altitude of 123456: written without blanks, 4QFJ123456, it is another place | start;points;lla 20.797189 -158.0391289 12345;lla 20.797189 -158.0391289 123456;lla 20.797189 -158.0391289 1200;lla 21.409797 -157.9161294 100;end
)",
                                3))
        EXPECT_EQ(read(text(row[0])), text(row[1]) + text(row[2])) << row[0];
}

/// Those who ask are told of places that nobody can mean.
TEST(Messages, ofPlaces) {
    for (const auto& row : rows(R"(
ll 90 360;lla -90 -360 5;ll 21:18 -157:54;latlonaltbox 2 1 3 4 0 |
ll 100 200 | "100" is a latitude of 100 degrees
lla -157.5 21.3 0 | "-157.5" is a latitude of -157.5 degrees; are latitude and longitude changed over?
ll 21 361 | "361" is a longitude of 361 degrees
centerll 211836N 1575400W | "211836n" is a latitude of 211836 degrees; in degrees and minutes it is "21:18:36n"
ll 2118.5s 5 | "2118.5s" is a latitude of -2118.5 degrees; in degrees and minutes it is "21:18.5s"
ref 5 15754w 5 | "15754w" is a longitude of -15754 degrees; in degrees and minutes it is "157:54w"
latlonaltbox 2 -91 3 4 0 | "-91" is a latitude of -91 degrees
latlonaltbox 100 20 10 30 0 | "100" is a latitude of 100 degrees
latlonaltbox 10 20 30 40 0 | the north side, "10", lies south of the south side, "20"
# kml_latlonbox 10 20 30 40 0 | the north side, "10", lies south of the south side, "20"
latlonaltbox 20 10 3 361 0 | "361" is a longitude of 361 degrees
)",
                                2)) {
        ParseReport report;
        report.advisesOnPlaces = true;
        Parser::Shapes shapes;
        std::istringstream in("start\n" + lines(row[0]) + "points\nll 1 2\nend\n");
        Parser().parse(in, shapes, report);
        std::erase_if(report.messages, [](auto& message) { return message.text.starts_with("Multiple"); });
        EXPECT_EQ(messages(report), row[1].empty() ? "" : "2: " + row[1] + "\n") << row[0];
    }
}

/// A line that says too little, or what has no meaning, is reported and has no effect. "*" stands for the
/// line.
TEST(Messages, ofShortLines) {
    for (const auto& row : rows(R"(
annotation command requires at least 1 argument | annotation
latlonaltbox command requires at least 5 arguments | latlonaltbox 1 2 3 4
ll/lla/latlon command requires at least 2 arguments | ll 1;lla;LatLon 1
xy/xyz command requires at least 2 arguments | xy 1;xyz
mgrs command requires at least 2 arguments | mgrs
Unable to convert MGRS coordinate to lat/lon | mgrs 99ZZZ
centerll/centerlla/centerlatlon command requires at least 2 arguments | centerll 1;centerlla 1;centerlatlon
centerll2 command requires at least 2 arguments | centerll2 1;centerlatlon2 1
centerxy/centerxyz command requires at least 2 arguments | centerxy 1;centerxyz 1
centerxy2 command requires at least 2 arguments | centerxy2 1
ref/referencepoint command requires at least 2 arguments | ref 1;referencepoint
linecolor command requires at least 1 argument | linecolor hex 0xff0000ff extra
* command requires at least 1 argument | linecolor;fillcolor;textoutlinecolor;extrude;orient
orient command requires at least 1 argument | rotate
* command requires 1 argument | linewidth;pointsize;outline;altitudemode;altitudeunits;rangeunits;angleunits
* command requires 1 argument | verticaldatum;priority;textoutlinethickness;radius;diameter;anglestart;angleend
* command requires 1 argument | angledeg;majoraxis;minoraxis;semimajoraxis;semiminoraxis;height
scale command requires 3 arguments | scale 1 2
3d command requires at least 2 arguments | 3d name;3d offsetalt;3d offsetcourse;3d offsetpitch;3d follow
Found unknown ZEL command 3d | 3d
)",
                                2)) {
        for (const std::string& line : test::split(row[1], ";")) {
            const std::string message = row[0].starts_with('*') ? line + row[0].substr(1) : row[0];
            EXPECT_EQ(read(block("points;lla 1 2 0;ll 3 4;" + line)),
                      "5: " + message + "\n" + block("points;lla 1 2 0;lla 3 4 0"));
        }
    }
}

/// Of the builder: the block's lines, the message, at the line of its "start", and what remains of it.
TEST(Messages, ofBlocks) {
    for (const auto& row : rows(R"(
points;3d name Set | point Set has no points, cannot create shape |
points;ll a b | point points has no valid points, cannot create shape |
line | line line has no points, cannot create shape |
line;ll 1 2 | line line has less than the required number of points, cannot create shape |
linesegs;3d name Two;ll a 2;ll 1 b | linesegs Two has no valid points, cannot create shape |
linesegs;ll 1 2;ll 1 b | linesegs linesegs has less than the required number of valid points, cannot create shape |
polygon;ll 1 2;ll 3 4 | polygon polygon has less than the required number of points, cannot create shape |
poly;ll 1 2;ll 3 4;ll 5 nan | polygon polygon has less than the required number of valid points, cannot create shape |
orbit;centerll 1 2 | orbit orbit missing or invalid center points, cannot create shape |
orbit;3d name Hold;centerxy 1 2;centerxy2 x 2 | orbit Hold missing or invalid center points, cannot create shape |
latlonaltbox 2 1 3 east 0 | latlonaltbox latlonaltbox had invalid values, cannot create shape |
latlonaltbox 2 1 3 4 high | latlonaltbox latlonaltbox had invalid values, cannot create shape |
# kml_groundoverlay;# kml_latlonbox 2 1 4 3 0 | kml_groundoverlay imageoverlay had invalid values, cannot create shape |
# kml_groundoverlay;# kml_icon a.png;# kml_latlonbox 2 1 4 3 | kml_groundoverlay imageoverlay had invalid values, cannot create shape |
circle;linecolor hex zz | Invalid linecolor: 0xzz | circle
// It quotes the line colour, not the fill colour.
circle;linecolor red;fillcolor hex zz | Invalid fillcolor: 0xff0000ff | circle;linecolor hex 0xff0000ff
circle;linestyle wavy | Invalid linestyle: wavy | circle
circle;linewidth 1.5 | Invalid linewidth: 1.5 | circle
circle;linewidth 3000000000 | Invalid linewidth: 3000000000 | circle
points;ll 1 2;pointsize big | Invalid pointsize: big | points;lla 1 2 0
circle;3d name C;radius 1,5 | Invalid radius: 1,5 for circle C | circle;3d name C
circle;radius 0x10 | Invalid radius: 0x10 for circle circle | circle
circle;diameter wide | Invalid radius: wide for circle circle | circle
ellipse;semimajoraxis 9e299 | Invalid majoraxis: 1.8e+300 for ellipse ellipse | ellipse
ellipse;semiminoraxis x | Invalid minoraxis: x for ellipse ellipse | ellipse
circle;centerll 1 x | circle circle invalid center point | circle
arc;angledeg 0 | arc arc angledeg cannot be 0 | arc
arc;anglestart x | Invalid anglestart: x for arc arc | arc
arc;angledeg x | Invalid angledeg: x for arc arc | arc
arc;angleend x | Invalid angleend: x for arc arc | arc
cone;height x | Invalid height: x for cone cone | cone
annotation A_b;fontsize x | Invalid fontsize: x | annotation A_b
annotation A;textoutlinethickness fat | Invalid textoutlinethickness: fat | annotation A
annotation A;textoutlinecolor hex g | Invalid textoutlinecolor: 0xg | annotation A
annotation A;priority high | Invalid priority: high for annotation A | annotation A
latlonaltbox 2 1 3 4 0 high | Invalid height: high for latlonaltbox latlonaltbox | latlonaltbox 2 1 3 4 0
# kml_groundoverlay;# kml_icon a;# kml_latlonbox 2 1 4 3 x | Invalid rotation: x for imageoverlay imageoverlay | # kml_groundoverlay;# kml_icon a;# kml_latlonbox 2 1 4 3 x
circle;ref 1 x 3 | Invalid referencepoint: 1 x 3 | circle
circle;scale 1 x 3 | Invalid scale y: x for circle circle | circle
circle;3d offsetalt x | Invalid offsetalt: x for circle circle | circle
circle;3d offsetcourse x | Invalid offsetcourse: x for circle circle | circle
circle;3d offsetpitch x | Invalid offsetpitch: x for circle circle | circle
circle;3d offsetroll x | Invalid offsetroll: x for circle circle | circle
circle;extrude true x | Invalid extrude height: x for circle circle | circle;extrude true
circle;radius 5;rangeunits furlongs | Invalid rangeunits: furlongs for circle circle | circle;radius 5
circle;3d offsetalt 5;altitudeunits secs | Invalid altitudeunits: secs for circle circle | circle;3d offsetalt 5
arc;angledeg 5;angleunits ft | Invalid angleunits: ft for arc arc | arc;angledeg 5
)",
                                3))
        EXPECT_EQ(read("\n" + block(row[0])), "2: " + row[1] + "\n" + (row[2].empty() ? "" : block(row[2])));
}

/// Whole turns apart is the same angle, in whatever digits; a sweep that is given is one.
TEST(Messages, ofEqualAngles) {
    for (int tenths = -3600; tenths <= 7200; tenths += 7)
        for (const int turns : {-2, -1, 0, 1, 2}) {
            const auto decimal = [](int value) {
                return (value < 0 ? "-" : "") + std::to_string(std::abs(value) / 10) + "." +
                       std::to_string(std::abs(value) % 10);
            };
            const std::string text = read(
                block("arc;anglestart " + decimal(tenths) + ";angleend " + decimal(tenths + 3600 * turns)));
            EXPECT_TRUE(text.starts_with("1: arc arc angleend cannot be the same as anglestart\n")) << text;
            EXPECT_EQ(text.find("angledeg"), std::string::npos) << text;
        }
    EXPECT_EQ(read(block("arc;anglestart 10;angledeg 5e-09")), block("arc;anglestart 10;angledeg 5e-09"));
}

TEST(Messages, ofAnAnnotationWithoutText) {
    ParsedShape record;
    record.setLineNumber(7);
    record.setShape(ShapeType::Annotation);
    record.set(ShapeParameter::Name, "N");
    ParseReport report;
    const MessageSink sink(&report);
    EXPECT_EQ(ShapeBuilder(record, UnitsRegistry(), sink).build(), nullptr);
    EXPECT_EQ(messages(report), "7: Annotation N missing text, cannot create shape\n");
}

/// Without a report messages go to the log, with prefix and line; the warning goes there as it is.
TEST(Messages, haveTheirFormAndSeverityInTheLog) {
    std::string log;
    halNotify::setNotifyHandler([&log](halNotify::Severity severity, const std::string& text) {
        log.append(std::to_string(severity)).append(" ").append(text).append("\n");
    });
    Parser::Shapes shapes;
    Parser().parse("end\nstart\nline\npoly\nend\n", shapes);
    halNotify::setNotifyHandler(halNotify::Handler());
    EXPECT_EQ(log,
              "2 ZEL error: end command encountered before start, line: 1\n"
              "3 Multiple shape keywords found in single start/end block\n");
}

/// A text of nothing but faults takes no more room than its own, and all are counted.
TEST(Report, keepsSoManyMessages) {
    std::string text = std::string(1 << 20, 'x') + '\n';
    for (std::size_t i = 0; i < ParseReport::kMostMessages + 2; ++i) text += "x\n";
    const ParseReport report = parsed(text).report;
    EXPECT_EQ(report.messages.size(), ParseReport::kMostMessages);
    EXPECT_EQ(report.messageCount(), ParseReport::kMostMessages + 3);
    EXPECT_LT(report.messages[0].text.size(), 20'000u);
}

TEST(Report, countsAndNamesTheOpenBlock) {
    Parser::Shapes shapes;
    ParseReport report;
    report.keepsComments = true;
    Parser().parse("# a\n #c\nstart\ncircle\nend\n// b\nstart\nline\nend\n\nstart\ncircle\n", shapes, report);
    EXPECT_EQ(report.lines, 12u);
    EXPECT_EQ(report.blocks, 3u);
    EXPECT_EQ(report.shapes, 1u);
    EXPECT_EQ(report.unterminatedBlock, 11u);
    EXPECT_EQ(report.shapeLines, std::vector<std::size_t>{3});
    const std::vector<LooseComments> comments{{0, "# a\n#c\n"}, {1, "// b\n"}};
    EXPECT_EQ(report.looseComments, comments);
}

}  // namespace
}  // namespace halCore::ZEL
