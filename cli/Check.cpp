#include <iostream>
#include <memory>
#include <utility>

#include "cli/Columns.h"
#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "cli/Pieces.h"
#include "cli/Told.h"
#include "format/Parser.h"

namespace cli {
namespace {

/// The shapes themselves are of no use here.
Told check(std::istream& stream) {
    Told told;
    readInPieces(stream, [&told](std::istream& piece, std::size_t linesBefore) -> FinishPiece {
        const auto part = std::make_shared<Told>();
        part->report.linesBefore = linesBefore;
        part->report.silent = &part->silent;
        part->report.advisesOnPlaces = true;
        halCore::ZEL::Parser::Shapes shapes;
        halCore::ZEL::Parser().parse(piece, shapes, part->report);
        return [&told, part] { told.append(std::move(*part)); };
    });
    told.report.addUnterminatedBlock();
    return told;
}

}  // namespace

int check(const CheckOptions& options) {
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    std::size_t blocks = 0;
    std::size_t shapes = 0;
    std::size_t messages = 0;
    std::size_t warnings = 0;
    std::size_t read = 0;
    for (const std::string& file : files) {
        Input input(file, progress);
        const Told told = check(input.stream());
        const auto& [report, silent] = told;
        if (!told.isClean()) progress.hide();
        printMessages(std::cout, file, report.messages, silent, report.omittedMessages);
        blocks += report.blocks;
        shapes += report.shapes;
        messages += report.messageCount();
        warnings += silent.size();
        if (const std::string error = input.error(); !error.empty())
            failures.report(file, error);
        else
            ++read;
    }
    progress.hide();
    if (!options.quiet)
        std::cout << counted(read, "file") << ", " << counted(blocks, "block") << " read, "
                  << counted(shapes, "shape") << " made, " << blocks - shapes << " dropped, "
                  << counted(messages, "message") << (warnings > 0 ? ", " + counted(warnings, "warning") : "")
                  << '\n';
    if (failures.any()) return kUnreadable;
    return messages == 0 && (warnings == 0 || !options.strict) ? kClean : kMessages;
}

}  // namespace cli
