#include <iostream>

#include "cli/Columns.h"
#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "format/Parser.h"

namespace cli {

using halCore::ZEL::Parser;
using halCore::ZEL::ParseReport;

int check(const CheckOptions& options) {
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    const Parser parser;
    std::size_t blocks = 0;
    std::size_t shapes = 0;
    std::size_t messages = 0;
    std::size_t warnings = 0;
    std::size_t read = 0;
    for (const std::string& file : files) {
        Input input(file, progress);
        ParseReport report;
        std::vector<halCore::ZEL::ParseMessage> silent;
        report.silent = &silent;
        report.advisesOnPlaces = true;
        Parser::Shapes made;
        parser.parse(input.stream(), made, report);
        report.addUnterminatedBlock();
        if (!report.messages.empty() || !silent.empty()) progress.hide();
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
