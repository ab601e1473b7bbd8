#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "common/Notify.h"

namespace halCore::ZEL {

struct ParseMessage {
    /// From 1; for a message about a whole block the line of its "start".
    std::size_t line = 0;
    halNotify::Severity severity = halNotify::Error;
    /// Without "ZEL error: " and without the line number.
    std::string text;

    friend bool operator==(const ParseMessage&, const ParseMessage&) = default;
};

/// Comments between blocks, which belong to no shape.
struct LooseComments {
    /// The number of shapes that were made before them.
    std::size_t shapesBefore = 0;
    /// One after the other, each with a line feed.
    std::string lines;

    friend bool operator==(const LooseComments&, const LooseComments&) = default;
};

/// Where a block stands in the text that was read.
struct BlockSpan {
    /// From the beginning of the line of its "start" to behind the line end of its "end"; without one, to the
    /// end of the text. Bytes.
    std::size_t begin = 0;
    std::size_t end = std::size_t(-1);
    /// Of its "start" and of its "end", from 1.
    std::size_t line = 0;
    std::size_t lastLine = std::size_t(-1);
    bool isEnded = false;
    bool makesShape = false;
};

/// What a reader has to tell about a text besides its shapes.
struct ParseReport {
    /// More than anybody reads. A text of nothing but faults must not take a hundred times its own room.
    static constexpr std::size_t kMostMessages = 100'000;

    /// The first ones, and how many there were behind them.
    std::vector<ParseMessage> messages;
    std::size_t omittedMessages = 0;
    std::vector<LooseComments> looseComments;
    std::size_t lines = 0;
    /// Blocks opened, and shapes made of them; the difference was dropped.
    std::size_t blocks = 0;
    std::size_t shapes = 0;
    /// The "start" line of each shape made.
    std::vector<std::size_t> shapeLines;
    /// When given, gets the place of every block. Not owned.
    std::vector<BlockSpan>* spans = nullptr;
    /// When given, gets what means nothing and has no message, such as points of the other sort and names of
    /// colours that nobody knows. Reading takes longer then. Not owned.
    std::vector<ParseMessage>* silent = nullptr;
    /// The "start" line of a last block that has no "end", otherwise 0. Its loss makes no message.
    std::size_t unterminatedBlock = 0;

    /// Of a text that is a part of another: the lines in front of it, which count in every line told.
    std::size_t linesBefore = 0;
    /// Also asks for the comments between blocks.
    bool keepsComments = false;
    /// Also asks for messages about places that lie beyond the globe or seem to be mistyped: among the silent
    /// lines, when these are asked for.
    bool advisesOnPlaces = false;

    /// Adds the message that reading does not make.
    void addUnterminatedBlock() {
        if (unterminatedBlock != 0)
            tell({unterminatedBlock, halNotify::Error, "start without end, the block is lost"});
    }
    void tell(ParseMessage message) {
        if (messages.size() < kMostMessages)
            messages.push_back(std::move(message));
        else
            ++omittedMessages;
    }
    /// Adds what was told of the part of the text that comes next; spans and silent lines are their owners'.
    void append(ParseReport next) {
        for (ParseMessage& message : next.messages) tell(std::move(message));
        omittedMessages += next.omittedMessages;
        for (LooseComments& comments : next.looseComments) {
            const std::size_t before = shapes + comments.shapesBefore;
            if (!looseComments.empty() && looseComments.back().shapesBefore == before)
                looseComments.back().lines += comments.lines;
            else
                looseComments.push_back({before, std::move(comments.lines)});
        }
        shapeLines.insert(shapeLines.end(), next.shapeLines.begin(), next.shapeLines.end());
        lines += next.lines;
        blocks += next.blocks;
        shapes += next.shapes;
        if (next.unterminatedBlock != 0) unterminatedBlock = next.unterminatedBlock;
    }
    std::size_t messageCount() const { return messages.size() + omittedMessages; }
};

}  // namespace halCore::ZEL
