#pragma once

#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "format/Parser.h"
#include "format/ZelShapes.h"

/// What the format's tests have in common.
namespace halCore::ZEL {

inline void PrintTo(const ParseMessage& message, std::ostream* out) {
    *out << message.line << ": " << message.text;
}

struct Parsed {
    Parser::Shapes shapes;
    ParseReport report;
};

inline Parsed parsed(std::string_view text) {
    Parsed result;
    Parser().parse(text, result.shapes, result.report);
    return result;
}

inline std::string written(const ZelShape& shape, int precision = 15) {
    std::ostringstream out;
    out.precision(precision);
    shape.serializeToStream(out);
    return out.str();
}

/// All shapes of a text as they are written back.
inline std::string rewritten(std::string_view text) {
    std::string result;
    for (const auto& shape : parsed(text).shapes) result += written(*shape);
    return result;
}

/// The text of a sample file.
inline std::string sample(const std::string& name) {
    std::ifstream file(OE_SOURCE_DIR "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Lines between "start" and "end".
inline std::string block(std::string_view body) {
    return std::string("start\n").append(body).append("end\n");
}

/// The messages' texts, one a line, each with its line number.
inline std::string messages(const ParseReport& report) {
    std::string result;
    for (const ParseMessage& message : report.messages)
        result.append(std::to_string(message.line)).append(": ").append(message.text).append("\n");
    return result;
}

/// The only shape of a text, as its class.
template <typename Shape>
std::shared_ptr<Shape> only(std::string_view text) {
    const Parsed result = parsed(text);
    return result.shapes.size() == 1 ? std::dynamic_pointer_cast<Shape>(result.shapes.front()) : nullptr;
}

}  // namespace halCore::ZEL
