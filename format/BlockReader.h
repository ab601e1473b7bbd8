#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "format/LineTokens.h"
#include "format/MessageSink.h"
#include "format/ModifierState.h"
#include "format/ParsedShape.h"
#include "format/Parser.h"
#include "format/PointLines.h"
#include "format/SilentLines.h"

namespace halCore::ZEL {

struct Keyword;

/// The reader's state machine: takes lines, gives shapes. Outside a block until "start", inside until "end".
class BlockReader {
  public:
    /// All four are only referred to.
    BlockReader(const Parser& parser, const UnitsRegistry& registry, Parser::Shapes& shapes,
                const MessageSink& messages)
        : parser_(parser),
          registry_(registry),
          shapes_(shapes),
          messages_(messages),
          lineNumber_(messages.report() ? messages.report()->linesBefore : 0),
          silent_(messages.report() ? messages.report()->silent : nullptr) {}

    /// Reads whole lines: `text` is empty or ends with a line feed.
    void readLines(std::string_view text);

    /// How many bytes are known to stand behind the text that is read next.
    void expect(std::size_t bytes) { behind_ = bytes; }

    /// Passes over bytes that are no line.
    void skip(std::size_t bytes) { offset_ += bytes; }

    /// After the last line: completes the report.
    void finish();

  private:
    const char* readPlainPoints_(const char* p, const char* end);
    const char* readWords_(const char* p, const char* end);
    void readOutside_(const Keyword& keyword);
    bool takesPoints_() const;
    void addSilent_(const char* begin, const char* end);
    void readComment_(const char* begin, const char* end);
    void readImageOverlay_(std::string_view line, const char* end);

    /// Tells where the block that is open begins, or where it ends.
    void spanBegins_() const;
    void spanEnds_(bool makesShape) const;
    void openBlock_();
    void closeBlock_();
    void makeShape_();
    bool setShape_(ShapeType type);

    void readKeyword_(const Keyword& keyword);
    void readAnnotation_();
    void readBox_();
    /// Warns of places of the line that are perhaps not meant as they are read.
    void advise_(const Keyword& keyword) const;
    void tellAdvice_(std::size_t line, std::string text) const;
    void readColor_(const Keyword& keyword);
    void readGridPoint_();
    void readScaled_(const Keyword& keyword, double factor);
    void readOrient_();
    void readExtrude_();
    void read3d_();
    void readUnknown_();
    void set_(ShapeParameter parameter, std::string_view value);
    /// Whether the line has `count` words besides the keyword; if not, reports `message`.
    bool hasArguments_(std::size_t count, std::string_view label, std::string_view message);
    PositionStrings position_() const { return {tokens_[1], tokens_[2], tokens_[3]}; }
    void error_(std::initializer_list<std::string_view> parts) const;

    const Parser& parser_;
    const UnitsRegistry& registry_;
    Parser::Shapes& shapes_;
    const MessageSink& messages_;

    LineTokens tokens_;
    PointLines pointLines_;
    std::size_t lineNumber_ = 0;
    /// The text that is being read, and how much was read before it.
    const char* text_ = nullptr;
    const char* textEnd_ = nullptr;
    std::size_t offset_ = 0;
    std::size_t behind_ = 0;
    /// The line that is being read as words, from its first to its line feed.
    const char* line_ = nullptr;
    const char* lineFeed_ = nullptr;
    bool insideBlock_ = false;
    bool badBlock_ = false;
    std::size_t blocks_ = 0;
    std::size_t made_ = 0;
    ParsedShape record_;
    ModifierState modifiers_;
    /// Null unless somebody wants to know what is passed over.
    std::vector<ParseMessage>* silent_ = nullptr;
    SilentLines silentLines_;
};

}  // namespace halCore::ZEL
