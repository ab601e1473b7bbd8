#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/Strings.h"
#include "format/Keyword.h"
#include "model/OverlayFile.h"
#include "support/FakeHost.h"

using namespace OverlayEditor;
using ::testing::HasSubstr;

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

class LossReportTest : public ::testing::Test {
  protected:
    LossReportTest() {
        halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
        platform.setReferenceLla({0.3, 0.4, 5.0}, 7);
    }
    ~LossReportTest() override { halNotify::setNotifyHandler({}); }

    using Losses = std::vector<std::pair<std::size_t, std::string>>;
    /// Of a text as it is, and as other editors write it.
    Losses lossesIn(const std::string& text) {
        std::string other = "\xEF\xBB\xBF";
        for (const char c : text) other += c == '\n' ? "\r\n" : std::string(1, c);
        Losses found[2];
        for (const bool plain : {false, true})
            for (const auto& loss :
                 loadOverlayText(plain ? text : other, "test", preferences, &platform, 7).losses)
                found[plain].emplace_back(loss.line, loss.text);
        EXPECT_EQ(found[false], found[true]);
        return found[true];
    }

    /// The losses of one block, the "start" being line 1; without the shape's kind and name.
    std::string lossesOf(const std::string& lines) {
        // Twice, so that one place of each line is far from the end of the text.
        const std::string block = "start\n" + lines + "end\n";
        const auto height = static_cast<std::size_t>(std::count(block.begin(), block.end(), '\n'));
        const Losses losses = lossesIn(block + block);
        std::string all;
        for (std::size_t i = 0; i < losses.size() / 2; ++i) {
            const auto& [line, what] = losses[i];
            EXPECT_EQ(losses[losses.size() / 2 + i].first, line + height);
            const std::size_t name = what.find("\": ");
            all += std::to_string(line) + ": " + what.substr(name == std::string::npos ? 0 : name + 3) + "\n";
        }
        return all;
    }

    /// \param block each line perhaps with what is reported of it: behind "=>" what follows its own text, or
    /// a
    ///        word for it, behind "=!" the whole; on a line without more, what is reported of the "start"
    void expectLosses(const std::string& block) {
        static const std::map<std::string, std::string> words{
            {"unused", "means nothing here and is dropped"},
            {"unread", "cannot be read and is dropped"},
            {"level", "loses its altitude, which cannot be read"},
            {"cut", "loses what stands behind its values"},
            {"red", "names no color that is known, and means red"},
            {"metres", "is not kept: saved in metres and degrees"}};
        std::string lines, expected;
        std::size_t number = 1;
        for (const std::string& line : linesOf(block)) {
            const std::size_t mark = line.find(" =");
            const std::string own = line.substr(0, mark);
            if (!own.empty()) ++number, lines += own + "\n";
            if (mark == std::string::npos) continue;
            expected += std::to_string(number) + ": ";
            std::string what = line.substr(mark + 4);
            if (line[mark + 2] == '>') expected += "\"" + own + "\" ";
            if (what.starts_with("by ")) what = "is dropped, because line " + what.substr(3) + " counts";
            const auto word = words.find(what);
            expected += (word == words.end() ? what : word->second) + "\n";
        }
        EXPECT_EQ(lossesOf(lines), expected) << lines;
    }

    FakeHost host;
    Preferences preferences;
    PointConverter platform;  // of relative blocks without a reference
};

TEST_F(LossReportTest, GoesFromBlockToBlock) {
    const Losses losses = lossesIn(
        "# top\nstart\nend\nstart\nradius 5\nline\nlla 1 2 3\nlla 4 5 6\nend\nlla 1 2 3\n# between\n"
        "start\nlatlonaltbox 4 3 1 2 0\n# inside\nend\n// behind\n"
        "start\nannotation A\nll 1 2\nend\nstart\nannotation B\ncenterll 3 4\nend");
    std::string all;
    for (const auto& [line, text] : losses) all += std::to_string(line) + ": " + text + "\n";
    EXPECT_EQ(all,
              "1: the comment \"# top\" is dropped\n3: end command encountered before recognized ZEL shape "
              "type keyword\n5: line \"line\": \"radius 5\" means nothing here and is dropped\n10: token "
              "\"lla\" detected outside of a valid start/end block\n11: the comment \"# between\" is "
              "dropped\n12: the latlonaltbox \"latlonaltbox\" is not saved: the editor has no such "
              "shape\n16: the comment \"// behind\" is dropped\n");
}

TEST_F(LossReportTest, NamesTheLineThatIsLost) {
    const std::string line = "line\nlla 1 2 3\nlla 4 5 6\n";
    const std::string circle = "circle\ncenterlla 1 2 3\nrangeunits m\n";
    const std::string label = "annotation A\n";
    const std::string cases[] = {
        line,
        line + "lla 1:30:00N 2.5e1 -7\nll 1 2\nmgrs 4QFJ1234567890 100\n",
        // A point that is no position, an altitude that is no number.
        line + "lla abc 5 => unread\n",
        line + "lla 1 2 high => level\n",
        line + "mgrs 4qfj12 x => level\n",
        "circle\ncenterll 1 2 x => level\nradius 1\n",
        "orbit\ncenterll 1 2\ncenterll2 1 3 x => level\nradius 1\n",
        "line\nxy 1 2\nxy 2 3\nref 1 2 x => level\n",
        // Points of two kinds: the first one decides. A centre makes offsets count as degrees.
        line + "xyz 1 2 3 => unused\n",
        "line\nxyz 1 2 3\nxyz 4 5 6\nlla 7 8 9 => unused\ncenterll 1 2 => unused\n",
        "line\nmgrs nonsense =! Unable to convert MGRS coordinate to lat/lon\nxy 1 2\nxy 2 3\nref 1 2\n",
        // A label has one place.
        label + "ll 1 2\n",
        label + "centerll 1 2\n",
        label + "ll 1 2\nll 3 4 => by 3\n",
        label + "centerll 3 4 => by 4\nll 1 2\n",
        label + "ll x 2 => unread\nll 3 4 => unused\ncenterll 5 6\n",
        // Of attributes given again, the last one counts.
        circle + "radius 5 => by 7\nradius 6 => by 7\nradius 7\n",
        circle + "radius 5 => by 6\ndiameter 12\nradius =! radius command requires 1 argument\n",
        circle + "radius 5\nradius 5\nfilled\nfilled\n",
        circle +
            "radius 5\nlinecolor red => by 7\nlinecolor hex ff0000ff\nlinecolor a b c =! linecolor command "
            "requires at least 1 argument\n",
        circle + "radius 5\nlinecolor Magenta\nfillcolor \"red\" => red\n",
        circle + "radius 5\nlinecolor purple => red\nlinecolor black\n",
        "circle\ncenterlla 1 2 3\nrangeunits m => by 6\nradius 5\nrangeunits ft => metres\n",
        circle + "radius 5\n3d name A => by 7\n3d name B\n",
        "3d name B => by 3\nannotation A\nll 1 2\n",
        "3d name A\nannotation A\nll 1 2\n",
        label + "ll 1 2\n3d name B => is dropped, because the text counts\n",
        "arc\ncenterll 1 2\nradius 5\nangleend 20 => by 6\nangledeg 30\nanglestart 0\n",
        line + "linestyle dashed => is dropped\nlinestyle solid\n",
        "arc\ncenterll 1 2\nradius 5\nanglestart 5 => is dropped without a sweep\n",
        "cylinder\ncenterll 1 2\nradius 5\nangledeg 1 => is dropped\nangleunits bam => metres\n",
        // What belongs to other kinds, or to the other kind of positions.
        circle + "radius 5\nheight 3 => unused\nanglestart 5 => unused\n",
        circle + "radius 5\ncenterxy 1 2 => unused\ncenterll2 3 4 => unused\nref 1 2 => unused\n",
        "orbit\ncenterll 1 2\ncenterll2 1 3\ncenterxy2 1 3 => unused\nrangeunits m\nradius 5\n",
        label + "ll 1 2\nfillcolor red => unused\nfilled => unused\nlinewidth 2 => unused\n",
        label + "centerxy 3 4 => by 4\nxy 1 2\n",
        label + "xy 1:30:00 2 => unread\n",
        "line\nxy 1:30:00 2\nxy 2 3\ncenterll 1 2 => unused\n",
        line + "extrude bar\nrotate 5 => is dropped\n",
        // Words behind those that a line needs.
        "line\nxy 1 2\nxy 2 3\nref 1 2 3 4 => cut\n",
        circle + "radius 5 km => cut\nfilled true\n",
        "line # home => cut\nlla 1 2 3 # door => cut\nlla 4 5 6\n",
        // Sizes that the editor does not take as they are.
        circle + "radius -5 => is saved without its sign\n",
        circle + "radius 20003931\n",
        "ellipsoid\ncenterll 1 2\nradius 3\nheight 1\n",
        "ellipsoid\ncenterll 1 2\nmajoraxis 5\nminoraxis 4\nradius 3 => is dropped, because the axes "
        "count\nheight -2 => means as high as the longer radius, and is saved so\n",
    };
    for (const std::string& each : cases) expectLosses(each);
}

std::string readSource(const std::string& path) {
    std::string text;
    EXPECT_EQ(UTILS::readFile(OE_SOURCE_DIR "/" + path, text), "");
    return text;
}

/// What stands in backquotes.
std::vector<std::string> quoted(const std::string& text) {
    std::vector<std::string> words;
    for (std::size_t open = text.find('`'); open != std::string::npos; open = text.find('`', open)) {
        const std::size_t close = text.find('`', open + 1);
        words.push_back(text.substr(open + 1, close - open - 1));
        open = close + 1;
    }
    return words;
}

/// A keyword as the documentation's table has it: of "3d" the second word belongs to it.
std::string keywordOf(const std::string& line) {
    const std::size_t first = line.find(' ');
    const std::string word = line.substr(0, first);
    return word == "3d" ? line.substr(0, line.find(' ', first + 1)) : word;
}

/// The documented report on a keyword.
struct Documented {
    std::string report;
    /// The value that is not reported; empty when there is none.
    std::string harmless;
};

/// From the first and last columns of all tables.
std::map<std::string, Documented> documentedReports() {
    std::map<std::string, Documented> reports;
    for (const std::string& line : linesOf(readSource("docs/manual/kept-and-lost.md"))) {
        if (!line.starts_with("| `") || !line.ends_with(" |")) continue;
        const std::size_t lastColumn = line.rfind("| ", line.size() - 2);
        const std::string report = line.substr(lastColumn + 2, line.size() - lastColumn - 4);
        const auto harmless = quoted(report);
        for (const std::string& keyword : quoted(line.substr(0, line.find(" | ")))) {
            const Documented entry{report.substr(0, report.find(',')),
                                   harmless.empty() ? "" : harmless.front()};
            EXPECT_TRUE(reports.emplace(keyword, entry).second) << keyword << " has two rows";
        }
    }
    return reports;
}

TEST_F(LossReportTest, TheDocumentationHasEveryKeyword) {
    std::set<std::string> all{"#", "/", "kml_groundoverlay"};
    for (const auto& keyword : halCore::ZEL::allKeywords()) all.emplace(keyword.text);
    all.erase("3d");
    for (const char* word :
         {"name", "offsetalt", "offsetcourse", "offsetpitch", "offsetroll", "follow", "billboard"})
        all.emplace(std::string("3d ") + word);
    std::set<std::string> documented;
    for (const auto& [keyword, report] : documentedReports()) documented.insert(keyword);
    EXPECT_EQ(documented, all);
}

TEST_F(LossReportTest, IsWhatTheDocumentationSaysOfTheSample) {
    const std::string text = readSource("samples/keywords.zel");
    std::map<std::size_t, halNotify::Severity> severities;
    std::set<std::size_t> unsaved;  // the blocks, by the line of their "start"
    for (const auto& loss : loadOverlayText(text, "sample", preferences, &platform, 7).losses) {
        severities.emplace(loss.line, loss.severity);
        if (loss.text.find(" is not saved: ") != std::string::npos) unsaved.insert(loss.line);
    }
    const auto reportOn = [&](std::size_t line) -> std::string {
        const auto found = severities.find(line);
        if (found == severities.end()) return "no";
        return found->second == halNotify::Notice ? "changed" : "lost";
    };

    const auto documented = documentedReports();
    std::set<std::string> seen;
    std::size_t start = 0;
    std::size_t number = 0;
    for (const std::string& line : linesOf(text)) {
        SCOPED_TRACE(line);
        ++number;
        if (line.empty()) continue;
        if (line == "start") start = number;
        std::string keyword = line.starts_with('/') ? "/" : keywordOf(line);
        // Of a block that is not saved, its kind stands for all.
        const bool tellsKind = keyword == "latlonaltbox" || line == "# kml_groundoverlay";
        if (unsaved.contains(start) && !tellsKind) continue;
        if (line == "# kml_groundoverlay") keyword = "kml_groundoverlay";
        ASSERT_TRUE(documented.contains(keyword));
        const auto& [report, harmless] = documented.at(keyword);
        const bool isHarmless = !harmless.empty() && line == keyword + " " + harmless;
        EXPECT_EQ(reportOn(tellsKind ? start : number), isHarmless ? "no" : report);
        if (!isHarmless) seen.insert(keyword);
    }
    for (const auto& [keyword, entry] : documented) {
        SCOPED_TRACE(keyword);
        EXPECT_TRUE(seen.contains(keyword)) << "the sample does not show what is reported";
        const auto withValue = [&](const std::string& value) {
            return lossesOf("line\nll 1 2\nll 3 4\n" + keyword + " " + value + "\n");
        };
        if (!entry.harmless.empty()) {
            EXPECT_EQ(withValue(entry.harmless), "");
        } else if (entry.report != "no") {
            for (const char* value : {"solid", "true", "false", "none", "wgs84", "meters", "degrees"})
                EXPECT_NE(withValue(value), "") << value;
        }
    }
}

}  // namespace
