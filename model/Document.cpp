#include "model/Document.h"

#include <algorithm>
#include <new>
#include <sstream>
#include <utility>
#include <vector>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/NumberText.h"
#include "common/SaveFile.h"
#include "common/TemporaryFile.h"
#include "format/Parser.h"
#include "format/TextBuffer.h"
#include "model/RescueFile.h"
#include "model/Utils.h"
#include "pi/PIData.h"
#include "pi/PIHALVIS.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

namespace {

/// The host's setting with the directory of the last save.
constexpr const char* kSaveDirectoryKey = "OverlayEditorSaveDirectory";

/// "a, b, c", and how many more when there are many.
std::string listed(const std::vector<std::string>& names) {
    constexpr std::size_t kMost = 20;
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kMost); ++i) list += (i ? ", " : "") + names[i];
    if (names.size() > kMost) list += " and " + std::to_string(names.size() - kMost) + " more";
    return list;
}

/// Whether two texts are of the same shapes; line ends and the like do not count.
bool sameShapes(std::string_view a, std::string_view b) {
    const auto canonical = [](std::string_view text) {
        halCore::ZEL::Parser::Shapes shapes;
        halCore::ZEL::ParseReport report;
        halCore::ZEL::Parser().parse(text, shapes, report);
        const auto buffer = TextBuffer::take();
        buffer->out().precision(UTILS::kSignificantDigits);
        for (const auto& shape : shapes) shape->serializeToStream(buffer->out());
        return buffer->text();
    };
    return a == b || canonical(a) == canonical(b);
}

/// Where the host shows a file, on whatever platform.
std::vector<void*> overlaysOf(const std::string& fileName) {
    std::vector<void*> overlays = PIHALVIS::getZELFiles();
    for (const std::uint64_t platform : PIData::getPlatformList()) {
        const auto attached = PIHALVIS::getAttachedZELFiles(platform);
        overlays.insert(overlays.end(), attached.begin(), attached.end());
    }
    std::erase_if(overlays, [&](void* overlay) { return PIHALVIS::getZELFilename(overlay) != fileName; });
    return overlays;
}

/// What replacing a text by its shapes would lose; tried without a word.
LoadResult tryText(std::string_view text, const Preferences& preferences) {
    const halNotify::Silence silence;
    // Offsets are no loss, whatever they count from.
    PointConverter anywhere;
    return loadOverlayText(text, {}, preferences, &anywhere, 0);
}

}  // namespace

Document::Document(const Preferences& preferences, Overlay& overlay)
    : preferences_(preferences), overlay_(overlay) {
    // Saving may have been cut short when the host ended last.
    const std::string directory = PIGUI::PIRegistry::getValue(kSaveDirectoryKey);
    if (!directory.empty()) UTILS::removeAbandonedFiles(directory);
}

void Document::setEditing(bool editing) {
    editing_ = editing;
    overlay_.setActive(editing);
    if (overlay_.zelId()) PIHALVIS::showZELFile(overlay_.zelId(), !editing);
}

// Loading

Document::Reading Document::read(std::string_view text, const std::string& fileName, void* zel) const {
    Reading reading;
    reading.fileName = fileName;
    reading.zel = zel;
    reading.platform = zel ? PIHALVIS::getZELHost(zel) : 0;
    const auto reference = Attachment::findDefaultRefLla(reading.platform);
    reading.converter = std::make_unique<PointConverter>();
    reading.converter->setReferenceLla(reference.value_or(halCore::Vec3()), 0);
    LoadResult& loaded = reading.loaded;
    loaded = loadOverlayText(text, fileName, preferences_, reading.converter.get(), 0);
    if (!reference && loaded.offsets && loaded.offsets->mixed && !loaded.offsets->reference) {
        loaded = loadOverlayText(text, fileName, preferences_, nullptr, 0);
        loaded.offsets.reset();
    }
    if (!loaded.error.empty() && !loaded.logged)
        halNotify::notify(halNotify::Error) << "Could not load " << fileName << ": " << loaded.error;
    if (loaded.error.empty() && !loaded.leftOut.empty())
        halNotify::notify(halNotify::Warning)
            << fileName
            << " holds what the editor cannot keep and would not save: " << listed(loaded.leftOut);
    return reading;
}

Document::Reading Document::readFile(const std::string& fileName) const {
    std::string error;
    try {
        std::string text;
        error = UTILS::readFile(fileName, text);
        if (error.empty()) {
            // A file that the host displays is edited in its place, so that it is not drawn twice.
            Reading reading = read(text, fileName, PIHALVIS::getZELObject(fileName));
            reading.version = FileVersion(fileName, text);
            return reading;
        }
    } catch (const std::bad_alloc&) {
        error = "not enough memory";
    }
    halNotify::notify(halNotify::Error) << "Could not load " << fileName << ": " << error;
    Reading reading;
    reading.loaded.error = std::move(error);
    return reading;
}

Document::Reading Document::readOverlay(void* zel) const {
    const std::string fileName = PIHALVIS::getZELFilename(zel);
    std::ostringstream text;
    if (PIHALVIS::serializeZELToStream(zel, text) != 0) {
        Reading reading;
        reading.loaded.error = "the host gave no text of it";
        halNotify::notify(halNotify::Error)
            << "Could not load " << (fileName.empty() ? "the overlay" : fileName) << ": "
            << reading.loaded.error;
        return reading;
    }
    Reading reading = read(text.view(), fileName, zel);
    if (std::string inFile; UTILS::readFile(fileName, inFile).empty()) {
        if (sameShapes(text.view(), inFile))
            reading.version = FileVersion(fileName, inFile);
        else if (reading.loaded.error.empty())
            halNotify::notify(halNotify::Warning)
                << fileName
                << " holds something else than the host shows of it: that is edited, and the file "
                << "will be copied before it is replaced";
    }
    return reading;
}

void Document::take(Reading reading) {
    overlay_.clearShapes(false);
    // Should memory run out, part of one file is not saved as another.
    fileName_.clear();
    knownFile_ = {};
    // The reference platform goes, also when it is the one that the host has the overlay on.
    unsigned long platform = reading.platform;
    if (attachment_.isReferencePlatform(platform)) platform = 0;
    cleanupPriorZEL_();
    // A reference in the file counts for more than a platform, in the host as here.
    const auto& offsets = reading.loaded.offsets;
    const bool fixed = offsets && (offsets->reference || platform == 0);
    halCore::Vec3 reference;
    reading.converter->getReferenceLla(reference);
    if (fixed) {
        if (offsets->reference)
            reference = *offsets->reference;
        else
            warnOfAssumedReference_(reading.fileName, reference);
        // Without a reference in the file its absolute positions would be lost beside offsets from nothing.
        if (!attachment_.takeReference(std::move(reading.converter), reference,
                                       offsets->reference || offsets->mixed))
            halNotify::notify(halNotify::Warning) << "The host makes no reference platform: the offsets of "
                                                  << reading.fileName << " become absolute positions";
    } else {
        attachment_.take(std::move(reading.converter), reference, platform);
    }
    overlay_.setZelId(reading.zel);
    if (reading.zel && editing_) PIHALVIS::showZELFile(reading.zel, false);
    for (auto& loaded : reading.loaded.shapes) {
        Shape* const shape = loaded.release();
        overlay_.addShape(shape);
        if (!editing_) shape->setActive(false);
    }
    // On a platform of the scenario, saving makes offsets of what the file has as absolute positions.
    const bool absolute = platform != 0 && !fixed && (!offsets || offsets->mixed);
    if (absolute)
        halNotify::notify(halNotify::Warning)
            << reading.fileName << " has absolute positions, and the host has it on "
            << Utils::platformName(platform)
            << ": saved, they are offsets from there, unless the overlay is detached first";
    fileName_ = std::move(reading.fileName);
    knownFile_ = std::move(reading.version);
    keep_(absolute ? 0 : overlay_.attachedPlatformId());
}

void Document::warnOfAssumedReference_(const std::string& fileName, const halCore::Vec3& lla) const {
    const auto& units = *preferences_.unitsProvider();
    halNotify::notify(halNotify::Warning)
        << fileName << " has offsets and no reference of its own: they are taken to count from "
        << units.formatLatitude(lla.lat()) << ' ' << units.formatLongitude(lla.lon())
        << " until the overlay is attached to a platform";
}

void Document::cleanupPriorZEL_() {
    overlay_.setAttachedPlatformId(0, nullptr, false);
    if (void* const zel = overlay_.zelId()) {
        overlay_.setZelId(nullptr);
        PIHALVIS::showZELFile(zel, true);
    }
    attachment_.release();
}

void Document::clear() {
    overlay_.clearShapes(false);
    fileName_.clear();
    cleanupPriorZEL_();
    keep_(0);
}

bool Document::platformRemoved(unsigned long id) {
    if (id == 0 || id != overlay_.attachedPlatformId()) return false;
    halNotify::notify(halNotify::Warning)
        << "The platform of the edited overlay is gone; its shapes stay where they are";
    attachment_.attach(0, false);
    return true;
}

void Document::overlayRemoved(void* zel) {
    if (!zel || zel != overlay_.zelId()) return;
    overlay_.setZelId(nullptr);
    halNotify::notify(halNotify::Warning)
        << "The host has unloaded the edited overlay; its shapes stay in the "
           "editor, and saving loads them again";
}

// Saving

bool Document::isKept_() const {
    return overlay_.isKept() && (overlay_.digest() == 0 || knownFile_.isOnDisk());
}

void Document::keep_(unsigned long platform) {
    overlay_.keep();
    keptPlatform_ = platform;
}

bool Document::isSaved() const {
    return isKept_() && overlay_.begun().empty() &&
           (overlay_.digest() == 0 || overlay_.attachedPlatformId() == keptPlatform_);
}

bool Document::keepOldFile_(const std::string& fileName) const {
    // What is no file cannot be replaced; saving tells so.
    if (!UTILS::fileIsFile(fileName)) return true;
    std::string old;
    if (const std::string error = UTILS::readFile(fileName, old); !error.empty()) {
        halNotify::notify(halNotify::Error)
            << "Could not save " << fileName << ": what it holds cannot be read, and not be kept: " << error;
        return false;
    }
    if (old.empty() || savedFile_.is(fileName, old)) return true;
    const LoadResult read = tryText(old, preferences_);
    const bool foreign = !knownFile_.is(fileName, old);
    const bool lossy = !read.error.empty() || losesAnything(read.losses);
    if (!foreign && !lossy) return true;

    const char* const why = !foreign                    ? "it holds what the editor cannot keep"
                            : knownFile_.isOf(fileName) ? "somebody else has written it meanwhile"
                                                        : "it is not the file that is edited";
    std::string copy = fileName + "~";
    std::string kept;
    if (!UTILS::readFile(copy, kept).empty() || kept != old) {
        const auto name = [&](int i) { return fileName + "~" + (i > 0 ? std::to_string(i + 1) : ""); };
        if (const std::string error = UTILS::saveCopy(fileName, name, old, copy); !error.empty()) {
            halNotify::notify(halNotify::Error)
                << "Could not save " << fileName << ": " << why << ", and the copy " << copy
                << " could not be written: " << error;
            return false;
        }
    }
    halNotify::notify(halNotify::Warning) << "The old " << fileName << " is kept as " << copy << ": " << why;
    if (!lossy) return true;
    std::vector<std::string> lost;
    for (const auto& loss : read.losses)
        if (loss.severity != halNotify::Notice)
            lost.push_back("line " + std::to_string(loss.line) + ": " + loss.text);
    halNotify::notify(halNotify::Warning)
        << "Not in the new " << fileName << ": " << (lost.empty() ? "the old text" : listed(lost));
    return true;
}

bool Document::save(const std::string& fileName) {
    std::vector<std::string> skipped;
    std::string text;
    std::string error;
    try {
        text = overlay_.text(&skipped);
        // Nothing to write must not even cost an older copy.
        if (!text.empty() && !keepOldFile_(fileName)) return false;
        PIGUI::PIRegistry::setValue(kSaveDirectoryKey, UTILS::directoryOf(fileName));
        error = text.empty() ? "there is nothing to save" : UTILS::saveFile(fileName, text);
    } catch (const std::bad_alloc&) {
        error = "not enough memory; the file is as it was";
    }
    if (!error.empty()) {
        halNotify::notify(halNotify::Error) << "Could not save " << fileName << ": " << error;
        return false;
    }
    fileName_ = fileName;
    savedFile_ = knownFile_ = FileVersion(fileName, text);
    attachment_.forgetOffsets();
    keep_(overlay_.attachedPlatformId());
    if (!skipped.empty())
        halNotify::notify(halNotify::Warning)
            << "Not complete, and not in " << fileName << ": " << listed(skipped);
    reload_();
    return true;
}

void Document::reload_() {
    void* const edited = overlay_.zelId();
    // The host may show a file more than once, on several platforms.
    std::vector<void*> showing = overlaysOf(fileName_);
    const bool own = std::find(showing.begin(), showing.end(), edited) != showing.end();
    void* const replaced = own ? edited : PIHALVIS::getZELObject(fileName_);
    std::erase(showing, replaced);
    // The host tells its observers: the overlay may not name what is gone.
    overlay_.setZelId(nullptr);
    if (replaced) PIHALVIS::unloadZELFile(replaced);
    if (edited && edited != replaced) PIHALVIS::showZELFile(edited, true);
    for (void* const other : showing) {
        const std::uint64_t platform = PIHALVIS::getZELHost(other);
        PIHALVIS::unloadZELFile(other);
        PIHALVIS::loadZELFile(fileName_, platform, 1);
    }
    // While it is edited the editor's shapes are drawn in its place.
    overlay_.setZelId(PIHALVIS::loadZELFile(fileName_, overlay_.attachedPlatformId(), editing_ ? 0 : 1));
    if (!overlay_.zelId())
        halNotify::notify(halNotify::Error) << fileName_ << " is saved, but the host could not load it";
}

bool Document::rescue(Rescue how) const {
    if (overlay_.digest() != 0 && !isKept_() && !writeRescueFile(overlay_.text(), how == Rescue::AtEnd))
        return false;
    // No file can hold half a shape.
    if (const auto begun = overlay_.begun(); !begun.empty())
        halNotify::notify(halNotify::Warning) << "Not complete, and given up: " << listed(begun);
    return true;
}

}  // namespace OverlayEditor
