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

/// The editor attaches a file with offsets to a platform of its own. Here it has this id.
constexpr unsigned long kReference = 1;

/// What loading gives. Where offsets count from nothing the place does not matter, as only the offsets are
/// saved; beside absolute positions it would, and they are lost.
/// \param preferences outlive the shapes
LoadResult load(const std::string& text, const std::string& file,
                const OverlayEditor::Preferences& preferences, OverlayEditor::PointConverter& converter) {
    converter.setReferenceLla(halCore::Vec3(), kReference);
    LoadResult loaded = OverlayEditor::loadOverlayText(text, file, preferences, &converter, 0);
    if (!loaded.offsets || loaded.offsets->reference || !loaded.offsets->mixed) return loaded;
    loaded = OverlayEditor::loadOverlayText(text, file, preferences, nullptr, 0);
    loaded.offsets.reset();
    return loaded;
}

/// What saving gives after loading; empty when there is nothing to save.
std::string saved(LoadResult& loaded, OverlayEditor::PointConverter& converter, std::size_t& count) {
    OverlayEditor::Overlay overlay;
    if (loaded.offsets) {
        const auto& reference = loaded.offsets->reference;
        if (reference) converter.setReferenceLla(*reference, kReference);
        overlay.setAttachedPlatformId(kReference, &converter, false);
        overlay.setReferenceWritten(reference.has_value());
    }
    for (auto& shape : loaded.shapes) overlay.addShape(shape.release());
    OverlayEditor::SkippedShapes skipped;
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
        OverlayEditor::PointConverter converter;
        LoadResult loaded = load(text, file, preferences, converter);
        std::size_t written = 0;
        progress.hide();
        std::cout << saved(loaded, converter, written);
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
