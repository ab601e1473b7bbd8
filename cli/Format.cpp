#include <iostream>

#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "common/Files.h"
#include "common/NumberText.h"
#include "common/Printable.h"
#include "common/SaveFile.h"
#include "format/Parser.h"
#include "format/ShapeFields.h"
#include "format/TextBuffer.h"

namespace cli {
namespace {

using halCore::ZEL::ParseMessage;
using halCore::ZEL::Parser;
using halCore::ZEL::ParseReport;

/// All that the format can carry: the shapes with their comments, and the comments between them.
void write(std::ostream& out, const Parser::Shapes& shapes, const ParseReport& report) {
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
}

/// Empty, or why the file is left as it is.
std::string formatInPlace(const std::string& file, const std::string& text, const FormatOptions& options,
                          ParseReport& report, const std::vector<ParseMessage>& silent) {
    Parser::Shapes shapes;
    Parser().parse(text, shapes, report);
    report.addUnterminatedBlock();
    if (shapes.empty()) return "There is no shape in it, not rewritten";
    if (!(report.messages.empty() && silent.empty()) && !options.force)
        return "Not rewritten, because what the messages name would be lost (use --force to lose it)";
    const auto formatted = OverlayEditor::TextBuffer::take();
    write(formatted->out(), shapes, report);
    return formatted->text() == text ? std::string() : UTILS::saveFile(file, formatted->text());
}

}  // namespace

int format(const FormatOptions& options) {
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    bool complete = true;
    for (const std::string& file : files) {
        ParseReport report;
        std::vector<ParseMessage> silent;
        report.silent = &silent;
        if (options.inPlace && file != kStandardInput) {
            std::string text;
            if (const std::string error = UTILS::readFile(file, text); !error.empty()) {
                failures.report(file, error);
                continue;
            }
            const std::string problem = formatInPlace(file, text, options, report, silent);
            progress.advance(text.size());
            const bool clean = report.messages.empty() && silent.empty();
            if (!problem.empty() || !clean) progress.hide();
            printMessages(std::cerr, file, report.messages, silent);
            if (!problem.empty()) std::cerr << "zel: " << UTILS::printable(file) << ": " << problem << '\n';
            complete = complete && problem.empty() && clean;
            continue;
        }
        Input input(file, progress);
        Parser::Shapes shapes;
        Parser().parse(input.stream(), shapes, report);
        report.addUnterminatedBlock();
        progress.hide();
        write(std::cout, shapes, report);
        printMessages(std::cerr, file, report.messages, silent);
        complete = complete && report.messages.empty() && silent.empty();
        if (const std::string error = input.error(); !error.empty()) failures.report(file, error);
    }
    if (failures.any()) return kUnreadable;
    return complete ? kClean : kMessages;
}

}  // namespace cli
