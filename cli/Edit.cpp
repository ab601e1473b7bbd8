#include <iostream>
#include <iterator>
#include <utility>

#include "cli/Columns.h"
#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "common/Notify.h"
#include "model/Document.h"
#include "model/QuietServiceTable.h"

namespace cli {

int edit(const EditOptions& options) {
    // All that the log would say is among the losses, and with its place.
    halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
    const OverlayEditor::QuietServiceTable host;
    const OverlayEditor::Preferences preferences;
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    std::size_t read = 0;
    std::size_t shapes = 0;
    std::size_t lost = 0;
    std::size_t changed = 0;
    for (const std::string& file : files) {
        Input input(file, progress);
        std::string text{std::istreambuf_iterator<char>(input.stream()), {}};
        OverlayEditor::Overlay overlay;
        OverlayEditor::Document document(preferences, overlay);
        auto reading = document.read(std::move(text), file);
        const auto losses = std::move(reading.loaded.losses);
        if (reading.loaded.error.empty()) document.take(std::move(reading));
        overlay.adopt(nullptr);
        std::vector<std::string> skipped;
        const std::string saved = overlay.text(&skipped);
        progress.hide();
        std::cout << saved;
        printMessages(std::cerr, file, losses);
        shapes += overlay.shapes().size() - skipped.size();
        for (const auto& loss : losses) ++(loss.severity <= halNotify::Warning ? lost : changed);
        if (const std::string error = input.error(); !error.empty())
            failures.report(file, error);
        else
            ++read;
    }
    if (!options.quiet)
        std::cerr << counted(read, "file") << ", " << counted(shapes, "shape") << " saved, " << lost
                  << " lost, " << changed << " changed\n";
    if (failures.any()) return kUnreadable;
    return lost == 0 ? kClean : kMessages;
}

}  // namespace cli
