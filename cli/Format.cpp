#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "common/NumberText.h"
#include "common/Printable.h"
#include "common/SaveFile.h"
#include "format/Parser.h"
#include "format/ShapeFields.h"
#include "format/SourceText.h"
#include "format/TextBuffer.h"

namespace cli {
namespace {

using halCore::ZEL::ParseMessage;
using halCore::ZEL::Parser;
using halCore::ZEL::ParseReport;

/// All that the format can carry: the shapes with their comments, and the comments between them.
std::string formatted(const Parser::Shapes& shapes, const ParseReport& report) {
    const auto buffer = OverlayEditor::TextBuffer::take();
    std::ostream& out = buffer->out();
    out.precision(UTILS::kSignificantDigits);
    out << "version 2\n\n";
    auto comment = report.looseComments.begin();
    for (std::size_t i = 0; i <= shapes.size(); ++i) {
        for (; comment != report.looseComments.end() && comment->shapesBefore <= i; ++comment)
            out << comment->line << '\n';
        if (i == shapes.size()) break;
        // It would come back on whatever platform there is; a warning has told it.
        if (halCore::ZEL::isPlaceless(*shapes[i])) continue;
        shapes[i]->serializeToStream(out);
        out << '\n';
    }
    return buffer->text();
}

/// The same with the line ends and the byte order mark of the text that it is made of.
std::string formatted(std::string text, const Parser::Shapes& shapes, const ParseReport& report) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    const std::string_view begin = text.starts_with(byteOrderMark) ? byteOrderMark : "";
    const halCore::ZEL::SourceText source(std::move(text), {}, {});
    return std::string(begin).append(source.withLineEnds(formatted(shapes, report)));
}

}  // namespace

int format(const FormatOptions& options) {
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    bool complete = true;
    for (const std::string& file : files) {
        Input input(file, progress);
        std::string text{std::istreambuf_iterator<char>(input.stream()), {}};
        if (const std::string error = input.error(); !error.empty()) {
            failures.report(file, error);
            continue;
        }
        ParseReport report;
        std::vector<ParseMessage> silent;
        report.silent = &silent;
        Parser::Shapes shapes;
        Parser().parse(text, shapes, report);
        report.addUnterminatedBlock();
        const bool clean = report.messages.empty() && silent.empty();
        const bool inPlace = options.inPlace && file != kStandardInput;
        std::string problem;
        if (inPlace && shapes.empty()) {
            problem = "There is no shape in it, not rewritten";
        } else if (inPlace && !clean && !options.force) {
            problem = "Not rewritten, because what the messages name would be lost (use --force to lose it)";
        } else {
            const std::string now = formatted(text, shapes, report);
            if (!inPlace) {
                progress.hide();
                std::cout << now;
            } else if (now != text) {
                problem = UTILS::saveFile(file, now);
            }
        }
        if (!problem.empty() || !clean) progress.hide();
        printMessages(std::cerr, file, report.messages, silent, report.omittedMessages);
        if (!problem.empty()) std::cerr << "zel: " << UTILS::printable(file) << ": " << problem << '\n';
        complete = complete && problem.empty() && clean;
    }
    if (failures.any()) return kUnreadable;
    return complete ? kClean : kMessages;
}

}  // namespace cli
