// Any text is read, written, read and written: the two written texts are the same, and the first of them
// makes no more messages than the text did (some come from comments, which are kept). A stream gives what
// memory gives.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "common/NumberText.h"
#include "format/Parser.h"

namespace {

using halCore::ZEL::Parser;
using halCore::ZEL::ParseReport;

std::string written(const Parser::Shapes& shapes) {
    std::ostringstream out;
    out.precision(UTILS::kSignificantDigits);
    for (const auto& shape : shapes) shape->serializeToStream(out);
    return out.str();
}

void require(bool condition, std::string_view what, std::string_view first, std::string_view second) {
    if (condition) return;
    std::cerr << what << "\n--- first\n" << first << "--- second\n" << second;
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const Parser parser;
    Parser::Shapes shapes;
    ParseReport report;
    parser.parse(text, shapes, report);
    const std::string first = written(shapes);

    Parser::Shapes again;
    ParseReport fewer;
    parser.parse(first, again, fewer);
    const std::string second = written(again);
    require(first == second, "Writing what was read changes it", first, second);
    require(fewer.messages.size() <= report.messages.size(), "What was written makes new messages", first,
            second);
    require(again.size() == shapes.size(), "A shape is lost", first, second);

    // Far from the end of a text more of it is read at once.
    Parser::Shapes streamed;
    ParseReport streamReport;
    std::istringstream stream{std::string(text).append(100, '\n')};
    parser.parse(stream, streamed, streamReport);
    require(written(streamed) == first, "A stream gives other shapes", first, written(streamed));
    require(streamReport.messages == report.messages, "A stream gives other messages", "", "");
    return 0;
}
