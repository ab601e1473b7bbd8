#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "format/Keyword.h"
#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

/// Blocks of any keywords with any words behind them, many more or fewer than there should be.
class RandomBlocks {
  public:
    using Line = std::vector<std::string>;

    std::vector<Line> make() {
        static const Line kinds = {"circle",     "line",     "polygon",     "points",    "linesegs",
                                   "annotation", "arc",      "orbit",       "ellipsoid", "cone",
                                   "sphere",     "cylinder", "latlonaltbox"};
        std::vector<Line> block = {{"start"}, {any(kinds)}};
        if (block[1][0] == "annotation") block[1].push_back("Pier_7");
        if (block[1][0] == "latlonaltbox") block[1] = {"latlonaltbox", "4", "3", "1", "2", "7", "9"};
        const bool relative = random_() % 3 == 0;
        for (int i = 0; i < 3; ++i) block.push_back({relative ? "xyz" : "ll", number(), number(), number()});
        block.push_back({relative ? "centerxy" : "centerll", number(), number()});
        if (block[1][0] == "orbit")
            block.push_back({relative ? "centerxy2" : "centerll2", number(), number()});
        for (auto more = random_() % 6; more > 0; --more) block.push_back(line());
        if (block[1][0] == "sphere" && random_() % 2 == 0) {
            block.push_back({"# kml_groundoverlay"});
            block.push_back({"# kml_icon a.png"});
            block.push_back({"# kml_latlonbox 4 3 2 1 0"});
        }
        if (random_() % 8 == 0) block[random_() % block.size()].push_back(word());
        std::shuffle(block.begin() + 1, block.end(), random_);
        block.push_back({"end"});
        return block;
    }

  private:
    std::string any(const Line& words) { return words[random_() % words.size()]; }
    std::string number() {
        std::string text = std::to_string(random_() % 80 + 1);
        return text.append(".").append(std::to_string(random_() % 900 + 1));
    }
    std::string word() {
        return any(
            {"true",  "false",    "cp",      "cq",     "xyz",           "m",           "deg",    "blue",
             "hex",   "ff00ff80", "extrude", "none",   "clamptoground", "greatcircle", "dashed", "thick",
             "egm96", "1",        "2",       number(), number()});
    }
    Line line() {
        std::string keyword;
        do {
            keyword = allKeywords()[random_() % allKeywords().size()].text;
        } while (keyword == "start" || keyword == "end" || keyword == "comment");
        Line line = {keyword};
        if (keyword == "3d")
            line.push_back(any({"name", "offsetalt", "offsetcourse", "follow", "billboard"}));
        for (auto words = random_() % 5; words > 0; --words) line.push_back(word());
        return line;
    }

    std::mt19937 random_{7};
};

std::string textOf(const std::vector<RandomBlocks::Line>& block) {
    std::string text;
    for (const auto& line : block) {
        for (std::size_t i = 0; i < line.size(); ++i) text.append(i == 0 ? "" : " ").append(line[i]);
        if (!line.empty()) text += '\n';
    }
    // Plain points are read in another way at the text's end.
    if (block.size() % 2 == 0) text.append("# ").append(100, 'x').append("\n");
    return text;
}

/// What the library writes has lost nothing that no message and no warning names: wherever a word is taken
/// out of a line without either, another block is written.
TEST(SilentLines, EveryWordCountsOrIsNamed) {
    RandomBlocks random;
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 1000000 : 4000;
    int looked = 0;
    for (int round = 0; round < rounds && !::testing::Test::HasFailure(); ++round) {
        const auto block = random.make();
        Parsed read;
        std::vector<ParseMessage> silent;
        read.report.silent = &silent;
        Parser().parse(textOf(block), read.shapes, read.report);
        std::set<std::size_t> named;
        for (const auto& told : {read.report.messages, silent})
            for (const ParseMessage& message : told) named.insert(message.line);
        // Of what the builder complains of the line is not told.
        if (read.shapes.empty() || named.contains(1)) continue;
        const std::string whole = written(read);
        const auto changes = [&](std::size_t line, std::size_t word, std::size_t otherLine = 0) {
            auto less = block;
            if (otherLine != 0) less[otherLine].clear();
            const std::string before = otherLine != 0 ? rewritten(textOf(less)) : whole;
            auto& words = less[line];
            word == 0 ? words.clear() : void(words.erase(words.begin() + static_cast<std::ptrdiff_t>(word)));
            return rewritten(textOf(less)) != before;
        };
        for (std::size_t line = 0; line < block.size(); ++line)
            for (std::size_t word = line == 0 ? 1 : 0; word < block[line].size(); ++word) {
                const auto& words = block[line];
                const bool saysNothing =
                    words.front() == "version" || words.front() == "filled" || words.front() == "off";
                if (named.contains(line + 1) || saysNothing || changes(line, word)) continue;
                // Said twice, it may be said once.
                bool twice = false;
                for (std::size_t other = 1; other < block.size(); ++other)
                    twice = twice || (other != line && !changes(other, 0) && changes(line, word, other));
                EXPECT_TRUE(twice) << textOf(block) << "line " << line + 1 << ", word " << word;
            }
        ++looked;
    }
    EXPECT_GT(looked, rounds / 10);
}

TEST(SilentLines, NameNothingThatCountsOrIsTold) {
    for (const auto& [body, told] : {std::pair{"annotation Lab;xy 21:18:36 -157:54;centerll 3 4",
                                               "\"centerll 3 4\" is passed over, because line 3 counts"},
                                     {"points;mgrs 4QFJ 12345 67890", ""},
                                     {"points;mgrs 4QFJ12346789 100 200",
                                      "\"mgrs 4QFJ12346789 100 200\" has more words than are read"}}) {
        Parsed read;
        std::vector<ParseMessage> silent;
        read.report.silent = &silent;
        Parser().parse("start\n" + test::lines(body) + "end\n", read.shapes, read.report);
        EXPECT_EQ(silent.empty() ? "" : silent[0].text, told);
        EXPECT_LE(silent.size(), 1u);
    }
}

}  // namespace
}  // namespace halCore::ZEL
