#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>

#include "cli/Pieces.h"
#include "support/ZelText.h"

namespace cli {
namespace {

using namespace halCore::ZEL;

struct Read {
    ParseReport report;
    std::vector<ParseMessage> silent;
    std::string text;
    int pieces = 0;
};

Read readPiece(std::istream& piece, std::size_t linesBefore) {
    Read read;
    read.report.linesBefore = linesBefore;
    read.report.silent = &read.silent;
    read.report.keepsComments = true;
    read.report.advisesOnPlaces = true;
    Parsed made;
    Parser().parse(piece, made.shapes, read.report);
    read.text = written(made);
    return read;
}

Read readWhole(const std::string& text, const PieceLimits& limits) {
    Read all;
    std::istringstream stream(text);
    readInPieces(
        stream,
        [&all](std::istream& piece, std::size_t linesBefore) -> FinishPiece {
            const auto part = std::make_shared<Read>(readPiece(piece, linesBefore));
            return [&all, part] {
                all.report.append(std::move(part->report));
                all.silent.insert(all.silent.end(), part->silent.begin(), part->silent.end());
                all.text += part->text;
                ++all.pieces;
            };
        },
        limits);
    return all;
}

/// Wherever it is cut and on however many threads it is read, a text means the same, and the same lines are
/// named. Blocks are short here, long, open, nested, or nothing; "end" stands in every way.
TEST(Pieces, MeanWhatTheWholeMeans) {
    std::mt19937 random(11);
    const std::vector<std::string> parts = {"start\ncircle\ncenterll 1 2\nradius 3\nend\n",
                                            "start\r\nline\r\nll 1 2\r\nll 3 4\r\nend\r\n",
                                            "start\npoints\n",
                                            "lla 1 2 3\n",
                                            "end\n",
                                            "  END \t\n",
                                            "end here\n",
                                            "# end\n",
                                            "\"end\"\n",
                                            "bend\n",
                                            "\xEF\xBB\xBF",
                                            "\xEF\xBB\xBFstart\n",
                                            "\n",
                                            "radius 4\nradius 5\n",
                                            "lla 95 1\n",
                                            "en",
                                            "d\n",
                                            "end",
                                            "wrong ",
                                            "# a comment between blocks\n",
                                            "start\n" + std::string(300, 'x') + "\nend\n"};
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 100000 : 300;
    int pieces = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        std::string text;
        const auto count = random() % 120;
        // Half of them of whole blocks only, or nothing but the first fault would count.
        for (unsigned i = 0; i < count; ++i) text += parts[random() % (random() % 2 == 0 ? parts.size() : 2)];
        const PieceLimits limits{
            .threads = random() % 8 + 1, .chunk = random() % 300 + 1, .waiting = random() % 500};
        SCOPED_TRACE(text);
        std::istringstream stream(text);
        const Read one = readPiece(stream, 0);
        const Read many = readWhole(text, limits);
        pieces += many.pieces;
        EXPECT_EQ(many.text, one.text);
        EXPECT_EQ(many.report.messages, one.report.messages);
        EXPECT_EQ(many.silent, one.silent);
        EXPECT_EQ(many.report.lines, one.report.lines);
        EXPECT_EQ(many.report.blocks, one.report.blocks);
        EXPECT_EQ(many.report.shapes, one.report.shapes);
        EXPECT_EQ(many.report.shapeLines, one.report.shapeLines);
        EXPECT_EQ(many.report.unterminatedBlock, one.report.unterminatedBlock);
        ASSERT_EQ(many.report.looseComments.size(), one.report.looseComments.size());
        for (std::size_t i = 0; i < one.report.looseComments.size(); ++i)
            EXPECT_EQ(many.report.looseComments[i], one.report.looseComments[i]);
    }
    EXPECT_GT(pieces, rounds * 5);
}

/// What goes wrong in a piece is told where the text is read, and nothing waits for ever.
TEST(Pieces, FailTogether) {
    std::string text;
    for (int i = 0; i < 1000; ++i) text += "start\nend\n";
    std::istringstream stream(text);
    std::atomic<int> done = 0;
    EXPECT_THROW(readInPieces(stream,
                              [&done](std::istream&, std::size_t) -> FinishPiece {
                                  if (++done == 5) throw std::bad_alloc();
                                  return {};
                              },
                              {.threads = 3, .chunk = 64, .waiting = 256}),
                 std::bad_alloc);
}

}  // namespace
}  // namespace cli
