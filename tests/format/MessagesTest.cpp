#include <gtest/gtest.h>

#include "common/Notify.h"
#include "format/ParsedShape.h"
#include "format/ShapeBuilder.h"
#include "geo/UnitsRegistry.h"
#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

struct Case {
    std::string_view text;
    std::string_view messages;
    /// What is written back.
    std::string_view survived;
};

void PrintTo(const Case& test, std::ostream* out) {
    *out << test.text;
}

/// One expected message, or none.
std::string messageAt(std::string_view line, std::string_view message) {
    std::string text;
    if (!message.empty()) text.append(line).append(message).append("\n");
    return text;
}

class Messages : public testing::TestWithParam<Case> {};

TEST_P(Messages, nameTheLineAndLoseOnlyIt) {
    const Case& test = GetParam();
    const Parsed result = parsed(test.text);
    EXPECT_EQ(messages(result.report), test.messages);
    EXPECT_EQ(rewritten(test.text), test.survived);
}

#define CIRCLE "start\ncircle\nend\n"

INSTANTIATE_TEST_SUITE_P(
    Structure, Messages,
    testing::Values(
        Case{"", "", ""}, Case{"\n# comment\nversion 2 a b\nVERSION\n", "", ""},
        Case{"circle\n" CIRCLE, "1: token \"circle\" detected outside of a valid start/end block\n", CIRCLE},
        Case{"\n \"Two Words\" X\n",
             "2: token \"\"Two Words\"\" detected outside of a valid start/end block\n", ""},
        Case{"end\n" CIRCLE, "1: end command encountered before start\n", CIRCLE},
        Case{"start\nstart\ncircle\nend\n", "2: nested start command not allowed\n", CIRCLE},
        Case{"start\nlinewidth 3\nend\n" CIRCLE,
             "3: end command encountered before recognized ZEL shape type keyword\n", CIRCLE},
        Case{CIRCLE "start\nline\ncircle\nend\n" CIRCLE,
             "6: Multiple shape keywords found in single start/end block\n", CIRCLE CIRCLE},
        Case{"start\ncircle\ncircle\nend\n", "3: Multiple shape keywords found in single start/end block\n",
             ""},
        // Only where small letters make another latitude of it.
        Case{"start\npoints\nLL 21d18m36S 158\nll 21:18:36S 158\nll \"21d18m36S\" 158\nll 21d18m36s 158\n"
             "ll -21d18m36S 158\nend\n",
             "3: The S of \"21d18m36S\" is taken for seconds, not for south\n",
             "start\npoints\nlla 21.31 158 0\nlla -21.31 158 0\nlla -21.31 158 0\nlla 21.31 158 0\n"
             "lla -21.31 158 0\nend\n"},
        Case{"start\nlatlonaltbox 2 1 3 4 0\nannotation x\nend\n",
             "3: Multiple shape keywords found in single start/end block\n", ""},
        Case{"start\n# kml_groundoverlay\ncircle\nend\n",
             "3: Multiple shape keywords found in single start/end block\n", ""},
        Case{"start\ncircle\nFoo  BAR 1\nend\n", "3: Found unknown ZEL command foo bar 1\n", CIRCLE},
        Case{"start\ncircle\n3d wings\nimageoverlay\nend\n",
             "3: Found unknown ZEL command 3d wings\n4: Found unknown ZEL command imageoverlay\n", CIRCLE},
        Case{"start\ncircle\ninnerradius 5\ntimeunits s\nversion 2\n3d billboard on\nend\n", "", CIRCLE},
        Case{CIRCLE "start\ncircle\n", "", CIRCLE}));

#define POINTS "points\nlla 1 2 0\n"

/// A line that says too little is reported and has no effect.
struct ShortLine {
    std::string_view line;
    std::string_view message;
};

void PrintTo(const ShortLine& test, std::ostream* out) {
    *out << test.line;
}

class ShortLines : public testing::TestWithParam<ShortLine> {};

TEST_P(ShortLines, areReportedAndHaveNoEffect) {
    const std::string body = std::string(POINTS).append(GetParam().line).append("\n");
    const Parsed result = parsed(block(body));
    EXPECT_EQ(messages(result.report), messageAt("4: ", GetParam().message));
    EXPECT_EQ(rewritten(block(body)), block(POINTS));
}

INSTANTIATE_TEST_SUITE_P(
    All, ShortLines,
    testing::Values(
        ShortLine{"annotation", "annotation command requires at least 1 argument"},
        ShortLine{"latlonaltbox 1 2 3 4", "latlonaltbox command requires at least 5 arguments"},
        ShortLine{"ll 1", "ll/lla/latlon command requires at least 2 arguments"},
        ShortLine{"lla", "ll/lla/latlon command requires at least 2 arguments"},
        ShortLine{"LatLon 1", "ll/lla/latlon command requires at least 2 arguments"},
        ShortLine{"xy 1", "xy/xyz command requires at least 2 arguments"},
        ShortLine{"xyz", "xy/xyz command requires at least 2 arguments"},
        ShortLine{"mgrs", "mgrs command requires at least 2 arguments"},
        ShortLine{"mgrs 99ZZZ", "Unable to convert MGRS coordinate to lat/lon"},
        ShortLine{"centerll 1", "centerll/centerlla/centerlatlon command requires at least 2 arguments"},
        ShortLine{"centerlla 1", "centerll/centerlla/centerlatlon command requires at least 2 arguments"},
        ShortLine{"centerlatlon", "centerll/centerlla/centerlatlon command requires at least 2 arguments"},
        ShortLine{"centerll2 1", "centerll2 command requires at least 2 arguments"},
        ShortLine{"centerlatlon2 1", "centerll2 command requires at least 2 arguments"},
        ShortLine{"centerxy 1", "centerxy/centerxyz command requires at least 2 arguments"},
        ShortLine{"centerxyz 1", "centerxy/centerxyz command requires at least 2 arguments"},
        ShortLine{"centerxy2 1", "centerxy2 command requires at least 2 arguments"},
        ShortLine{"ref 1", "ref/referencepoint command requires at least 2 arguments"},
        ShortLine{"referencepoint", "ref/referencepoint command requires at least 2 arguments"},
        ShortLine{"linecolor", "linecolor command requires at least 1 argument"},
        ShortLine{"linecolor hex 0xff0000ff extra", "linecolor command requires at least 1 argument"},
        ShortLine{"fillcolor", "fillcolor command requires at least 1 argument"},
        ShortLine{"textoutlinecolor", "textoutlinecolor command requires at least 1 argument"},
        ShortLine{"linewidth", "linewidth command requires 1 argument"},
        ShortLine{"pointsize", "pointsize command requires 1 argument"},
        ShortLine{"outline", "outline command requires 1 argument"},
        ShortLine{"altitudemode", "altitudemode command requires 1 argument"},
        ShortLine{"extrude", "extrude command requires at least 1 argument"},
        ShortLine{"altitudeunits", "altitudeunits command requires 1 argument"},
        ShortLine{"rangeunits", "rangeunits command requires 1 argument"},
        ShortLine{"angleunits", "angleunits command requires 1 argument"},
        ShortLine{"verticaldatum", "verticaldatum command requires 1 argument"},
        ShortLine{"priority", "priority command requires 1 argument"},
        ShortLine{"textoutlinethickness", "textoutlinethickness command requires 1 argument"},
        ShortLine{"radius", "radius command requires 1 argument"},
        ShortLine{"diameter", "diameter command requires 1 argument"},
        ShortLine{"anglestart", "anglestart command requires 1 argument"},
        ShortLine{"angleend", "angleend command requires 1 argument"},
        ShortLine{"angledeg", "angledeg command requires 1 argument"},
        ShortLine{"majoraxis", "majoraxis command requires 1 argument"},
        ShortLine{"minoraxis", "minoraxis command requires 1 argument"},
        ShortLine{"semimajoraxis", "semimajoraxis command requires 1 argument"},
        ShortLine{"semiminoraxis", "semiminoraxis command requires 1 argument"},
        ShortLine{"height", "height command requires 1 argument"},
        ShortLine{"scale 1 2", "scale command requires 3 arguments"},
        ShortLine{"orient", "orient command requires at least 1 argument"},
        ShortLine{"rotate", "orient command requires at least 1 argument"},
        ShortLine{"3d name", "3d command requires at least 2 arguments"},
        ShortLine{"3d offsetalt", "3d command requires at least 2 arguments"},
        ShortLine{"3d offsetcourse", "3d command requires at least 2 arguments"},
        ShortLine{"3d offsetpitch", "3d command requires at least 2 arguments"},
        ShortLine{"3d offsetroll", "3d command requires at least 2 arguments"},
        ShortLine{"3d follow", "3d command requires at least 2 arguments"},
        ShortLine{"3d", "Found unknown ZEL command 3d"},
        // These say nothing when they lack a value.
        ShortLine{"linestyle", ""}, ShortLine{"fontname", ""}, ShortLine{"fontsize", ""},
        ShortLine{"depthbuffer", ""}, ShortLine{"tessellate", ""}, ShortLine{"lineprojection", ""},
        // Points of the other kind and values that are not validated are dropped in silence.
        ShortLine{"xyz 1 2 3", ""}, ShortLine{"lla one two 3", ""}, ShortLine{"altitudemode high", ""},
        ShortLine{"verticaldatum mars", ""}));

/// Messages of the builder: at the line of the block's "start", which is 2 here.
class Building : public testing::TestWithParam<Case> {};

TEST_P(Building, reportsWhatItCannotUse) {
    const Case& test = GetParam();
    const std::string text = std::string("\n").append(block(test.text));
    EXPECT_EQ(messages(parsed(text).report), messageAt("2: ", test.messages));
    EXPECT_EQ(rewritten(text), test.survived.empty() ? "" : block(test.survived));
}

INSTANTIATE_TEST_SUITE_P(
    Dropped, Building,
    testing::Values(
        Case{"points\n3d name Set\n", "point Set has no points, cannot create shape", ""},
        Case{"points\nll a b\n", "point points has no valid points, cannot create shape", ""},
        Case{"line\n", "line line has no points, cannot create shape", ""},
        Case{"line\nll 1 2\n", "line line has less than the required number of points, cannot create shape",
             ""},
        Case{"linesegs\n3d name Two\nll a 2\nll 1 b\n",
             "linesegs Two has no valid points, cannot create shape", ""},
        Case{"linesegs\nll 1 2\nll 1 b\n",
             "linesegs linesegs has less than the required number of valid points, cannot create shape", ""},
        Case{"polygon\nll 1 2\nll 3 4\n",
             "polygon polygon has less than the required number of points, cannot create shape", ""},
        Case{"poly\nll 1 2\nll 3 4\nll 5 nan\n",
             "polygon polygon has less than the required number of valid points, cannot create shape", ""},
        Case{"orbit\ncenterll 1 2\n", "orbit orbit missing or invalid center points, cannot create shape",
             ""},
        Case{"orbit\n3d name Hold\ncenterxy 1 2\ncenterxy2 x 2\n",
             "orbit Hold missing or invalid center points, cannot create shape", ""},
        Case{"latlonaltbox 2 1 3 east 0\n",
             "latlonaltbox latlonaltbox had invalid values, cannot create shape", ""},
        Case{"latlonaltbox 2 1 3 4 high\n",
             "latlonaltbox latlonaltbox had invalid values, cannot create shape", ""},
        Case{"# kml_groundoverlay\n# kml_latlonbox 2 1 4 3 0\n",
             "kml_groundoverlay imageoverlay had invalid values, cannot create shape", ""},
        Case{"# kml_groundoverlay\n# kml_icon a.png\n# kml_latlonbox 2 1 4 3\n",
             "kml_groundoverlay imageoverlay had invalid values, cannot create shape", ""}));

INSTANTIATE_TEST_SUITE_P(
    Kept, Building,
    testing::Values(
        Case{"circle\nlinecolor hex zz\n", "Invalid linecolor: 0xzz", "circle\n"},
        Case{"circle\nlinecolor hex 0x1ffffffff\n", "Invalid linecolor: 0x1ffffffff", "circle\n"},
        Case{"circle\nlinecolor hex -1\n", "Invalid linecolor: 0x-1", "circle\n"},
        Case{"circle\nlinecolor hex 0x\n", "Invalid linecolor: 0x", "circle\n"},
        // It quotes the line colour, not the fill colour.
        Case{"circle\nlinecolor red\nfillcolor hex zz\n", "Invalid fillcolor: 0xff0000ff",
             "circle\nlinecolor hex 0xff0000ff\n"},
        Case{"circle\nfillcolor hex zz\n", "Invalid fillcolor: ", "circle\n"},
        Case{"circle\nlinestyle wavy\n", "Invalid linestyle: wavy", "circle\n"},
        Case{"circle\nlinewidth 1.5\n", "Invalid linewidth: 1.5", "circle\n"},
        Case{"circle\nlinewidth 3000000000\n", "Invalid linewidth: 3000000000", "circle\n"},
        Case{"points\nll 1 2\npointsize big\n", "Invalid pointsize: big", "points\nlla 1 2 0\n"},
        Case{"circle\n3d name C\nradius 1,5\n", "Invalid radius: 1,5 for circle C", "circle\n3d name C\n"},
        Case{"circle\nradius 0x10\n", "Invalid radius: 0x10 for circle circle", "circle\n"},
        Case{"circle\nradius nan\n", "Invalid radius: nan for circle circle", "circle\n"},
        Case{"circle\nradius 1e999\n", "Invalid radius: 1e999 for circle circle", "circle\n"},
        Case{"circle\ndiameter wide\n", "Invalid radius: wide for circle circle", "circle\n"},
        Case{"circle\ncenterll 1 x\n", "circle circle invalid center point", "circle\n"},
        Case{"arc\nangledeg 0\n", "arc arc angledeg cannot be 0", "arc\n"},
        Case{"arc\nanglestart 10\nangleend 370\n", "arc arc angleend cannot be the same as anglestart",
             "arc\nanglestart 10\n"},
        Case{"arc\nanglestart x\n", "Invalid anglestart: x for arc arc", "arc\n"},
        Case{"arc\nangledeg x\n", "Invalid angledeg: x for arc arc", "arc\n"},
        Case{"arc\nangleend x\n", "Invalid angleend: x for arc arc", "arc\n"},
        Case{"ellipse\nmajoraxis x\n", "Invalid majoraxis: x for ellipse ellipse", "ellipse\n"},
        Case{"ellipse\nsemiminoraxis x\n", "Invalid minoraxis: x for ellipse ellipse", "ellipse\n"},
        Case{"cone\nheight x\n", "Invalid height: x for cone cone", "cone\n"},
        Case{"annotation A_b\nfontsize x\n", "Invalid fontsize: x", "annotation A_b\n"},
        Case{"annotation A\ntextoutlinethickness fat\n", "Invalid textoutlinethickness: fat",
             "annotation A\n"},
        Case{"annotation A\ntextoutlinecolor hex g\n", "Invalid textoutlinecolor: 0xg", "annotation A\n"},
        Case{"annotation A\npriority high\n", "Invalid priority: high for annotation A", "annotation A\n"},
        Case{"latlonaltbox 2 1 3 4 0 high\n", "Invalid height: high for latlonaltbox latlonaltbox",
             "latlonaltbox 2 1 3 4 0\n"},
        Case{"# kml_groundoverlay\n# kml_icon a.png\n# kml_latlonbox 2 1 4 3 x\n",
             "Invalid rotation: x for imageoverlay imageoverlay",
             "# kml_groundoverlay\n# kml_icon a.png\n# kml_latlonbox 2 1 4 3 x\n"},
        Case{"circle\nref 1 x 3\n", "Invalid referencepoint: 1 x 3", "circle\n"},
        Case{"circle\nscale 1 x 3\n", "Invalid scale y: x for circle circle", "circle\n"},
        Case{"circle\n3d offsetalt x\n", "Invalid offsetalt: x for circle circle", "circle\n"},
        Case{"circle\n3d offsetcourse x\n", "Invalid offsetcourse: x for circle circle", "circle\n"},
        Case{"circle\n3d offsetpitch x\n", "Invalid offsetpitch: x for circle circle", "circle\n"},
        Case{"circle\n3d offsetroll x\n", "Invalid offsetroll: x for circle circle", "circle\n"},
        Case{"circle\nextrude true x\n", "Invalid extrude height: x for circle circle",
             "circle\nextrude true\n"},
        // The default unit holds, here yards.
        Case{"circle\nradius 5\nrangeunits furlongs\n", "Invalid rangeunits: furlongs for circle circle",
             "circle\nradius 5\n"},
        Case{"circle\n3d offsetalt 5\naltitudeunits secs\n", "Invalid altitudeunits: secs for circle circle",
             "circle\n3d offsetalt 5\n"},
        Case{"arc\nangledeg 5\nangleunits ft\n", "Invalid angleunits: ft for arc arc", "arc\nangledeg 5\n"}));

TEST(MessagesByCall, annotationWithoutText) {
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
TEST(MessagesInTheLog, haveTheirFormAndSeverity) {
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

TEST(Report, countsAndNamesTheOpenBlock) {
    const Parsed result = parsed("# a\n" CIRCLE "// b\nstart\nline\nend\n\nstart\ncircle\n");
    EXPECT_EQ(result.report.lines, 11u);
    EXPECT_EQ(result.report.blocks, 3u);
    EXPECT_EQ(result.report.shapes, 1u);
    EXPECT_EQ(result.report.unterminatedBlock, 10u);
    ASSERT_EQ(result.report.looseComments.size(), 2u);
    EXPECT_EQ(result.report.looseComments[0].shapesBefore, 0u);
    EXPECT_EQ(result.report.looseComments[0].line, "# a");
    EXPECT_EQ(result.report.looseComments[1].shapesBefore, 1u);
    EXPECT_EQ(result.report.looseComments[1].line, "// b");
}

}  // namespace
}  // namespace halCore::ZEL
