#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "cli/Pieces.h"
#include "cli/TextView.h"
#include "cli/Told.h"
#include "common/NumberText.h"
#include "common/Printable.h"
#include "common/SaveFile.h"
#include "format/Parser.h"
#include "format/ShapeFields.h"
#include "format/SourceText.h"
#include "format/TextBuffer.h"

namespace cli {
namespace {

using halCore::ZEL::Parser;
using halCore::ZEL::ParseReport;
using halCore::ZEL::SourceText;

/// All that the format can carry: the shapes with their comments, and the comments between them. What has
/// been written is let go, before there are more copies of it.
std::string formatted(Parser::Shapes shapes, std::vector<halCore::ZEL::LooseComments> comments,
                      const SourceText& lineEnds) {
    const auto buffer = OverlayEditor::TextBuffer::take();
    std::ostream& out = buffer->out();
    out.precision(UTILS::kSignificantDigits);
    auto comment = comments.begin();
    for (std::size_t i = 0; i <= shapes.size(); ++i) {
        for (; comment != comments.end() && comment->shapesBefore <= i; ++comment)
            out << std::exchange(comment->lines, {});
        if (i == shapes.size()) break;
        // It would come back on whatever platform there is; a warning has told it.
        if (halCore::ZEL::isPlaceless(*shapes[i])) continue;
        shapes[i]->serializeToStream(out);
        out << '\n';
        shapes[i].reset();
    }
    return lineEnds.withLineEnds(buffer->text());
}

struct Formatted {
    Told told;
    std::string text;
};

/// With the line ends and the byte order mark of the text that it is made of.
Formatted formatted(const std::string& text) {
    Formatted all;
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) all.text = byteOrderMark;
    const SourceText lineEnds(text.substr(0, text.find('\n') + 1), {}, {});
    all.text += lineEnds.withLineEnds("version 2\n\n");
    TextView view(text);
    std::istream stream(&view);
    readInPieces(stream, [&](std::istream& piece, std::size_t linesBefore) -> FinishPiece {
        const auto part = std::make_shared<Formatted>();
        part->told.report.linesBefore = linesBefore;
        part->told.report.silent = &part->told.silent;
        part->told.report.keepsComments = true;
        Parser::Shapes shapes;
        Parser().parse(piece, shapes, part->told.report);
        part->text = formatted(std::move(shapes), std::move(part->told.report.looseComments), lineEnds);
        return [&all, part] {
            all.told.append(std::move(part->told));
            all.text += part->text;
        };
    });
    all.told.report.addUnterminatedBlock();
    return all;
}

}  // namespace

int format(const FormatOptions& options) {
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    bool complete = true;
    for (const std::string& file : files) {
        const bool inPlace = options.inPlace && file != kStandardInput;
        Formatted made;
        std::string problem;
        try {
            Input input(file, progress);
            const std::string text = input.readAll();
            if (const std::string error = input.error(); !error.empty()) {
                failures.report(file, error);
                continue;
            }
            made = formatted(text);
            if (inPlace && made.told.report.shapes == 0) {
                problem = "There is no shape in it, not rewritten";
            } else if (inPlace && !made.told.isClean() && !options.force) {
                problem =
                    "Not rewritten, because what the messages name would be lost (use --force to lose it)";
            } else if (!inPlace) {
                progress.hide();
                std::cout << made.text;
            } else if (made.text != text) {
                problem = UTILS::saveFile(file, made.text);
            }
        } catch (const std::bad_alloc&) {
            // Nothing is allocated once the file is the new one.
            failures.report(file, inPlace ? "Not enough memory, the file is as it was" : "Not enough memory");
            continue;
        }
        const auto& [report, silent] = made.told;
        const bool clean = made.told.isClean();
        if (!problem.empty() || !clean) progress.hide();
        printMessages(std::cerr, file, report.messages, silent, report.omittedMessages);
        if (!problem.empty()) std::cerr << "zel: " << UTILS::printable(file) << ": " << problem << '\n';
        complete = complete && problem.empty() && clean;
    }
    if (failures.any()) return kUnreadable;
    return complete ? kClean : kMessages;
}

}  // namespace cli
