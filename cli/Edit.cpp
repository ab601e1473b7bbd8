// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#include <iostream>
#include <iterator>

#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "cli/Printable.h"
#include "common/Notify.h"
#include "model/OverlayFile.h"
#include "model/QuietServiceTable.h"

namespace cli {

using OverlayEditor::LoadResult;

namespace {

/// What saving gives after loading; empty when there is nothing to save.
std::string saved(LoadResult& loaded, std::size_t& count) {
    OverlayEditor::Overlay overlay;
    for (auto& shape : loaded.shapes) overlay.addShape(shape.release());
    std::vector<std::string> skipped;
    std::string text = OverlayEditor::overlayText(overlay, &skipped);
    count = overlay.shapes().size() - skipped.size();
    return text;
}

}  // namespace

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
        const std::string text{std::istreambuf_iterator<char>(input.stream()), {}};
        LoadResult loaded = OverlayEditor::loadOverlayText(text, file, preferences, nullptr, 0);
        std::size_t written = 0;
        progress.hide();
        std::cout << saved(loaded, written);
        printMessages(std::cerr, file, loaded.losses);
        shapes += written;
        for (const auto& loss : loaded.losses) ++(loss.severity <= halNotify::Warning ? lost : changed);
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
