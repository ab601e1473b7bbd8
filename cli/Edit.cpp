#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Columns.h"
#include "cli/Commands.h"
#include "cli/EditedText.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "common/Notify.h"
#include "common/Printable.h"
#include "model/QuietServiceTable.h"

namespace cli {

int edit(const EditOptions& options) {
    std::vector<std::string> said;
    bool anyError = false;
    halNotify::setNotifyHandler([&](halNotify::Severity severity, const std::string& message) {
        said.push_back(message);
        anyError = anyError || severity == halNotify::Error;
    });
    const OverlayEditor::QuietServiceTable host;
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    std::size_t read = 0;
    std::size_t shapes = 0;
    std::size_t lost = 0;
    for (const std::string& file : files) {
        Input input(file, progress);
        said.clear();
        const Edited edited = editText(input.readAll(), file, options.rewrite, [&](std::string_view text) {
            progress.hide();
            std::cout << text;
        });
        if (!edited.error.empty()) said = {edited.error};
        for (const std::string& message : said) {
            if (!message.starts_with(file)) std::cerr << UTILS::printable(file) << ": ";
            std::cerr << UTILS::printable(message, UTILS::kLongestShown) << '\n';
        }
        printMessages(std::cerr, file, edited.lost.messages, {}, edited.lost.omittedMessages);
        shapes += edited.shapes;
        lost += edited.lost.messageCount();
        if (const std::string error = input.error(); !error.empty())
            failures.report(file, error);
        else
            ++read;
    }
    if (!options.quiet)
        std::cerr << counted(read, "file") << ", " << counted(shapes, "shape") << ", "
                  << counted(lost, "line") << " lost\n";
    if (failures.any()) return kUnreadable;
    return lost == 0 && !anyError ? kClean : kMessages;
}

}  // namespace cli
