#include <iostream>
#include <utility>

#include "cli/Columns.h"
#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "common/Notify.h"
#include "common/Printable.h"
#include "model/Document.h"
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
    const OverlayEditor::Preferences preferences;
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    std::size_t read = 0;
    std::size_t shapes = 0;
    std::size_t lost = 0;
    for (const std::string& file : files) {
        Input input(file, progress);
        std::string text = input.readAll();
        OverlayEditor::Overlay overlay;
        OverlayEditor::Document document(preferences, overlay);
        document.history().keepNothing();
        said.clear();
        auto reading = document.read(std::move(text), file);
        OverlayEditor::Overlay::Losses losses;
        if (reading.loaded.error.empty()) {
            document.take(std::move(reading));
            const bool anew = options.rewrite && !overlay.shapes().empty();
            text = anew ? overlay.textAnew(losses) : document.text();
        } else {
            // What cannot be loaded is not saved either.
            said = {reading.loaded.error};
            text = reading.loaded.source->text();
        }
        progress.hide();
        std::cout << text;
        for (const std::string& message : said) {
            if (!message.starts_with(file)) std::cerr << UTILS::printable(file) << ": ";
            std::cerr << UTILS::printable(message, UTILS::kLongestShown) << '\n';
        }
        printMessages(std::cerr, file, losses);
        shapes += overlay.shapes().size();
        lost += losses.size();
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
