#pragma once

#include <algorithm>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "format/Parser.h"
#include "format/ZelShapes.h"
#include "support/Rows.h"

/// What the format's tests have in common.
namespace halCore::ZEL {

using test::lines;
using test::rows;

struct Parsed {
    Parser::Shapes shapes;
    ParseReport report;
};

inline Parsed parsed(std::string_view text) {
    Parsed result;
    Parser().parse(text, result.shapes, result.report);
    return result;
}

inline std::string written(const ZelShape& shape) {
    std::ostringstream out;
    out.precision(15);
    shape.serializeToStream(out);
    return out.str();
}

inline std::string written(const Parsed& read) {
    std::string result;
    for (const auto& shape : read.shapes) result += written(*shape);
    return result;
}

/// The messages' texts, one a line, each with its line number.
inline std::string messages(const ParseReport& report) {
    std::string result;
    for (const ParseMessage& message : report.messages)
        result.append(std::to_string(message.line)).append(": ").append(message.text).append("\n");
    return result;
}

/// All shapes of a text as they are written back.
inline std::string rewritten(std::string_view text) {
    return written(parsed(text));
}

/// Messages and shapes. They are the same for a stream, even one that throws at its end, with other line
/// ends, behind a byte order mark, and for a text with more behind it, where several characters are read at
/// once.
inline std::string read(const std::string& text) {
    const Parsed plain = parsed(text);
    const auto outcome = [](const Parsed& result) { return messages(result.report) + written(result); };
    const std::string expected = outcome(plain);
    std::string carriageReturns;
    for (const char c : text) carriageReturns.append(c == '\n' ? "\r\n" : std::string(1, c));
    for (const std::string& same :
         {text, "\xEF\xBB\xBF" + text, carriageReturns, text + std::string(200, '\n')}) {
        EXPECT_EQ(outcome(parsed(same)), expected) << same;
        for (const auto throws :
             {std::ios::goodbit, std::ios::badbit | std::ios::failbit | std::ios::eofbit}) {
            Parsed result;
            std::istringstream stream(same);
            stream.exceptions(throws);
            Parser().parse(stream, result.shapes, result.report);
            EXPECT_EQ(outcome(result), expected) << same;
        }
    }
    return expected;
}

/// The text of a sample file.
inline std::string sample(const std::string& name) {
    std::ifstream file(OE_SOURCE_DIR "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Lines, each ended by a ";" or the text's end, between "start" and "end".
inline std::string block(std::string_view body) {
    return "start\n" + lines(body) + "end\n";
}

/// The only shape of a text, as its class.
template <typename Shape>
std::shared_ptr<Shape> only(std::string_view text) {
    const Parsed result = parsed(text);
    return result.shapes.size() == 1 ? std::dynamic_pointer_cast<Shape>(result.shapes.front()) : nullptr;
}

}  // namespace halCore::ZEL
