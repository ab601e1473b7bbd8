#include "model/Document.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <sstream>
#include <utility>
#include <vector>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/SaveFile.h"
#include "common/Strings.h"
#include "common/TemporaryFile.h"
#include "geo/OffsetGrid.h"
#include "model/FileDisplays.h"
#include "model/Utils.h"
#include "pi/PIHALVIS.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

namespace {

/// The host's setting with the directory of the last save.
constexpr const char* kSaveDirectoryKey = "OverlayEditorSaveDirectory";

/// Tells what a save has lost, a line each.
void tellLosses(const std::string& fileName, const Overlay::Losses& losses) {
    for (std::size_t i = 0; i < std::min(losses.size(), UTILS::kMostListed); ++i)
        halNotify::notify(halNotify::Warning)
            << "Not in the new " << fileName << ": line " << losses[i].line << ": " << losses[i].text;
    if (losses.size() > UTILS::kMostListed)
        halNotify::notify(halNotify::Warning)
            << "Not in the new " << fileName << ": " << losses.size() - UTILS::kMostListed
            << (losses.size() - UTILS::kMostListed == 1 ? " more line is lost" : " more lines are lost");
}

/// Copies a file's text to its name with "~", or the next one that is free, and tells so.
/// \param copy gets that name \return why it could not be written, empty when it was
std::string copyOldText(const std::string& fileName, const std::string& old, const std::string& why,
                        std::string& copy) {
    copy = fileName + "~";
    std::string kept;
    if (!UTILS::readFile(copy, kept).empty() || kept != old) {
        const auto name = [&](int i) { return fileName + "~" + (i > 0 ? std::to_string(i + 1) : ""); };
        if (std::string error = UTILS::saveCopy(fileName, name, old, copy); !error.empty()) return error;
    }
    halNotify::notify(halNotify::Warning) << "The old " << fileName << " is kept as " << copy << ": " << why;
    return {};
}

constexpr const char* kForeign = "somebody else has written it meanwhile";
constexpr const char* kOwn = "you have saved something else in it meanwhile";

}  // namespace

Document::Document(const Preferences& preferences, Overlay& overlay)
    : preferences_(preferences), overlay_(overlay) {
    overlay_.setLater([this] { return turns_.comeBack(); });
    turns_.add([this](Slice& slice) {
        if (!overlay_.workOff(slice) && !turns_.comeBack()) workOff_();
    });
    // Saving may have been cut short when the host ended last.
    const std::string directory = PIGUI::PIRegistry::getValue(kSaveDirectoryKey);
    if (!directory.empty()) UTILS::removeAbandonedFiles(directory);
}

void Document::workOff_() {
    overlay_.setLater({});
    Slice whole;
    overlay_.workOff(whole);
}

void Document::setEditing(bool editing) {
    editing_ = editing;
    overlay_.setActive(editing);
    if (overlay_.zelId()) PIHALVIS::showZELFile(overlay_.zelId(), !editing);
    showKeptBlocks_();
}

void Document::showKeptBlocks_() {
    if (void* const shown = std::exchange(keptBlocks_, nullptr)) PIHALVIS::unloadZELFile(shown);
    if (!editing_) return;
    std::istringstream text(overlay_.keptBlocks());
    if (!text.view().empty()) keptBlocks_ = PIHALVIS::loadZELStream(text, overlay_.attachedPlatformId());
}

// History

FileState Document::fileState_() const {
    FileState file = file_;
    file.kept = overlay_.kept();
    file.zel = overlay_.zelId();
    file.source = overlay_.source();
    return file;
}

void Document::takeFile_(FileState file) {
    overlay_.restoreSource(file.source);
    overlay_.setKept(file.kept);
    if (file.zel != overlay_.zelId()) {
        if (void* const before = overlay_.zelId()) PIHALVIS::showZELFile(before, true);
        // The host may have loaded the file anew, or have given the number to another overlay.
        const std::vector<void*> showing = file.name.empty() ? std::vector<void*>() : displaysOf(file.name);
        const bool stands = std::ranges::find(showing, file.zel) != showing.end();
        overlay_.setZelId(!stands && !showing.empty() ? showing.front() : stands ? file.zel : nullptr);
        if (overlay_.zelId() && editing_) PIHALVIS::showZELFile(overlay_.zelId(), false);
    }
    file_ = std::move(file);
    showKeptBlocks_();
}

History::Outcome Document::undo() {
    return step_(&History::undo);
}

History::Outcome Document::redo() {
    return step_(&History::redo);
}

History::Outcome Document::step_(History::Outcome (History::*step)(FileState&)) {
    history_.commit();
    FileState file = fileState_();
    const std::uint64_t before = history_.fileSwitches();
    // Redo may never come, and nobody has made what is given up since the host began.
    const bool leaves =
        file_.recovered && (step == &History::undo ? history_.undoSwitches() : history_.redoSwitches());
    const bool rescued = !leaves || rescue_(Unrescued::StayInJournal);
    const History::Outcome outcome = (history_.*step)(file);
    takeFile_(std::move(file));
    if (!rescued) journal_.leave();
    // Of another file nobody knows which shapes differ from it.
    if (history_.fileSwitches() != before) isSaved() ? journal_.settle() : journal_.unsettle();
    return outcome;
}

// What the document holds

void Document::clear() {
    history_.commit();
    const bool any = !overlay_.shapes().empty() || !file_.name.empty() || overlay_.source() ||
                     overlay_.zelId() || overlay_.attachedPlatformId() != 0 || file_.recovered;
    if (any) history_.switchFile(fileState_(), "delete all shapes");
    Overlay gone;
    gone.restoreAttachment(overlay_.attachedPlatformId(), overlay_.pointConverter());
    overlay_.exchange(gone);
    file_.name.clear();
    file_.awaited.clear();
    cleanupPriorZEL_();
    if (any && history_.keeps()) history_.exchange({});
    keep_();
    showKeptBlocks_();
    overlay_.deleteShapes(gone);
}

bool Document::attach(unsigned long platform, bool center) {
    followPlatform();
    // Where the shapes stand should the platform go before this is taken back.
    history_.commit();
    const bool attached = attachment_.attach(platform, center);
    showKeptBlocks_();
    return attached;
}

bool Document::platformRemoved(unsigned long id) {
    if (id == 0 || id != overlay_.attachedPlatformId()) return false;
    halNotify::notify(halNotify::Warning)
        << "The platform of the edited overlay is gone; its shapes stay where they are";
    history_.commit();
    attachment_.attach(0, false);
    showKeptBlocks_();
    return true;
}

void Document::overlayRemoved(void* zel) {
    if (zel && zel == keptBlocks_) keptBlocks_ = nullptr;
    if (!zel || zel != overlay_.zelId()) return;
    overlay_.setZelId(nullptr);
    halNotify::notify(halNotify::Warning)
        << "The host has unloaded the edited overlay; its shapes stay in the "
           "editor, and saving loads them again";
}

// Saving

bool Document::isKept_() const {
    return overlay_.isKept() && (overlay_.digest() == 0 || file_.known.isOnDisk());
}

unsigned long Document::base_() const {
    constexpr unsigned long fixedPoint = ~0UL;
    const unsigned long platform = overlay_.attachedPlatformId();
    return attachment_.isReferencePlatform(platform) ? fixedPoint : platform;
}

void Document::keep_() {
    overlay_.keep();
    file_.keptPlatform = base_();
    file_.keptOffsets = overlay_.hasOffsets();
    file_.recovered = false;
    journal_.settle();
}

bool Document::isSaved() const {
    return isKept_() && overlay_.begun().empty() && (overlay_.digest() == 0 || base_() == file_.keptPlatform);
}

std::string Document::whatAttachingChanges_() const {
    const unsigned long platform = overlay_.attachedPlatformId();
    const std::string name = platform == 0 ? "no platform" : Utils::platformName(platform);
    const bool counts = platform != 0 && overlay_.hasOffsets();
    if (!counts) return file_.keptOffsets ? "offsets become positions" : "shown on " + name;
    return (file_.keptOffsets ? "offsets count from " : "positions become offsets from ") + name;
}

std::string Document::whatBecameOfFile_() const {
    if (std::string why = file_.known.whyNot(file_.name); !why.empty()) return why;
    const bool own = std::ranges::any_of(written_, [this](const FileVersion& version) {
        return UTILS::isSameFile(version.path(), file_.name) && version.isOnDisk();
    });
    return own ? "you have saved something else in the file" : "somebody else has written the file";
}

bool Document::isOwn_(const std::string& fileName, std::string_view text) const {
    return std::ranges::any_of(written_, [&](const FileVersion& version) {
        return UTILS::isSameFile(version.path(), fileName) && version.is(version.path(), text);
    });
}

std::string Document::text_(std::vector<std::string>* skipped, Overlay::Losses* lost) const {
    return namesPlace_() ? overlay_.textWithReference(skipped, lost) : overlay_.text(skipped, lost);
}

std::string Document::changes() const {
    std::string text = isSaved() ? "None" : "Not saved";
    const bool any = overlay_.digest() != 0;
    if (any && !file_.name.empty() && !file_.known.isOnDisk()) text += "; " + whatBecameOfFile_();
    if (any && !file_.recovered && base_() != file_.keptPlatform) text += "; " + whatAttachingChanges_();
    if (any && awaits_())
        text += "; offsets count from " +
                (namesPlace_() ? "where " + file_.awaited + " was" : file_.awaited + ", which is not there");
    constexpr std::size_t few = 3;
    if (const auto incomplete = overlay_.incomplete(); !incomplete.empty())
        text += "; not complete: " + UTILS::listed(incomplete, few);
    if (const auto hidden = overlay_.hidden(); !hidden.empty())
        text += "; hidden: " + UTILS::listed(hidden, few);
    return text;
}

bool Document::keepOldFile_(const std::string& fileName, Replacement& saving) const {
    // What cannot be replaced needs no copy; saving tells why.
    if (!UTILS::fileIsFile(fileName) || !UTILS::whyNotReplaced(fileName).empty()) return true;
    std::string& old = saving.old;
    if (const std::string error = UTILS::readFile(fileName, old); !error.empty()) {
        halNotify::notify(halNotify::Error)
            << "Not saved: " << fileName << " cannot be read, so that no copy of it can be kept: " << error
            << ". It is as it was";
        return false;
    }
    if (old.empty() || old == saving.text) return true;
    const auto isAs = [&](const FileVersion& version) { return saving.own && version.is(file_.name, old); };
    const bool foreign = !isAs(file_.known);
    const bool lossy = saving.lossy && !isAs(file_.saved);
    // Others may show it, too: what they show changes.
    std::vector<void*> others = displaysOf(fileName);
    std::erase(others, displayReplaced_(others));
    bool strands = false;
    if (!others.empty()) {
        saving.hadOffsets = hasLooseOffsets(old);
        saving.hasOffsets = hasLooseOffsets(saving.text);
        strands = saving.hadOffsets && !saving.hasOffsets &&
                  std::ranges::any_of(others, [](void* zel) { return PIHALVIS::getZELHost(zel) != 0; });
    }
    // Nobody asked for what went with a platform to stand still.
    const bool stops = namesPlace_() && hasLooseOffsets(old);
    if (!foreign && !lossy && !strands && !stops && !saving.emptied) return true;

    const std::string why = foreign          ? !saving.own             ? "it is not the file that is edited"
                                               : isOwn_(fileName, old) ? kOwn
                                                                       : kForeign
                            : saving.emptied ? "its last shape is deleted"
                            : strands        ? "it has offsets, and is shown elsewhere, too"
                            : stops          ? "its offsets count from " + file_.awaited
                                             : "it holds what the editor cannot keep";
    std::string copy;
    if (const std::string error = copyOldText(fileName, old, why, copy); !error.empty()) {
        halNotify::notify(halNotify::Error) << "Not saved: no copy of " << fileName << " could be kept as "
                                            << copy << ": " << error << ". It is as it was (" << why << ")";
        return false;
    }
    return true;
}

bool Document::save(const std::string& fileName) {
    std::vector<std::string> skipped;
    Overlay::Losses lost;
    Replacement saving;
    std::string& text = saving.text;
    std::string error;
    std::string replaced;
    try {
        text = text_(&skipped, &lost);
        saving.lossy = !lost.empty();
        saving.own = !file_.name.empty() && UTILS::isSameFile(fileName, file_.name);
        saving.emptied = saving.own && overlay_.shapes().empty();
        if (saving.emptied) text = overlay_.textWithoutShapes();
        // Nothing to write must not even cost an older copy.
        if (!text.empty() && !keepOldFile_(fileName, saving)) return false;
        PIGUI::PIRegistry::setValue(kSaveDirectoryKey, UTILS::directoryOf(fileName));
        error = overlay_.shapes().empty() && !saving.emptied ? "there is no shape"
                : text.empty()                               ? "no shape is complete"
                : text == saving.old                         ? ""  // not even its time changes
                                                             : UTILS::saveFile(fileName, text, &replaced);
    } catch (const std::bad_alloc&) {
        error = "not enough memory";
    }
    if (!error.empty()) {
        const char* const still = UTILS::fileIsFile(fileName) ? " is as it was" : " is not written";
        halNotify::notify(halNotify::Error) << "Not saved: " << error << ". " << fileName << still;
        return false;
    }
    // Written by others after it was looked at.
    if (std::string copy; !replaced.empty() && replaced != saving.old &&
                          !copyOldText(fileName, replaced, kForeign, copy).empty())
        writeRescueFile(replaced, Unrescued::AreLost);
    file_.name = fileName;
    file_.known = FileVersion(fileName, text);
    std::erase_if(written_,
                  [&](const FileVersion& known) { return UTILS::isSameFile(known.path(), fileName); });
    written_.push_back(file_.known);
    file_.saved = lost.empty() ? FileVersion() : file_.known;
    attachment_.forgetOffsets();
    keep_();
    if (!skipped.empty())
        halNotify::notify(halNotify::Warning)
            << "Saved in " << fileName << ", but for what is not complete: " << UTILS::listed(skipped);
    if (namesPlace_())
        halNotify::notify(halNotify::Warning)
            << "The offsets in " << fileName << " count from where " << file_.awaited
            << " was: attach the overlay to it when it is there, and save again";
    else if (awaits_() && overlay_.hasOffsets())
        halNotify::notify(halNotify::Warning)
            << "The offsets in " << fileName << " count from " << file_.awaited
            << ", which is not there: attach them to it, or they are shown nowhere";
    tellLosses(fileName, lost);
    reload_(saving);
    return true;
}

void* Document::displayReplaced_(const std::vector<void*>& displays) const {
    const auto edited = std::ranges::find(displays, overlay_.zelId());
    if (edited != displays.end()) return *edited;
    const unsigned long platform = sails_() ? overlay_.attachedPlatformId() : 0;
    const auto there =
        std::ranges::find_if(displays, [&](void* zel) { return PIHALVIS::getZELHost(zel) == platform; });
    if (there != displays.end()) return *there;
    return displays.size() == 1 ? displays.front() : nullptr;
}

void Document::reload_(const Replacement& saved) {
    void* const edited = overlay_.zelId();
    // The host may show a file more than once, on several platforms.
    std::vector<void*> others = displaysOf(file_.name);
    void* const replaced = displayReplaced_(others);
    std::erase(others, replaced);
    // The host tells its observers: the overlay may not name what is gone.
    overlay_.setZelId(nullptr);
    if (replaced) PIHALVIS::unloadZELFile(replaced);
    if (edited && edited != replaced) PIHALVIS::showZELFile(edited, true);
    const bool emptied = saved.emptied && overlay_.keptBlocks().empty();
    const auto tellNotLoaded = [this] {
        halNotify::notify(halNotify::Error)
            << file_.name << " is saved, but not shown: the host could not load it";
    };
    std::vector<std::string> platforms;
    bool fixed = false;
    for (void* const other : others) {
        const std::uint64_t platform = PIHALVIS::getZELHost(other);
        const std::string name = PIHALVIS::getZELFilename(other);
        PIHALVIS::unloadZELFile(other);
        if (emptied) continue;
        if (!PIHALVIS::loadZELFile(name, platform, 1)) tellNotLoaded();
        platform == 0 ? void(fixed = true) : platforms.push_back(Utils::platformName(platform));
    }
    if (emptied) return;
    if (fixed && saved.hasOffsets && sails_())
        halNotify::notify(halNotify::Warning)
            << file_.name << " is shown without a platform, too: what is attached now is not drawn there";
    if (!platforms.empty() && saved.hadOffsets != saved.hasOffsets)
        halNotify::notify(halNotify::Warning)
            << file_.name << " is shown on " << UTILS::listed(platforms) << ", too: "
            << (saved.hasOffsets ? "what is attached now is drawn about it there"
                                 : "what is detached now does not go with it any more");
    // While it is edited the editor's shapes are drawn in its place.
    overlay_.setZelId(PIHALVIS::loadZELFile(file_.name, overlay_.attachedPlatformId(), editing_ ? 0 : 1));
    if (!overlay_.zelId()) tellNotLoaded();
}

bool Document::rescue(Rescue how) {
    const bool atEnd = how == Rescue::AtEnd;
    const bool insists = how == Rescue::OrGiveUp;
    const bool rescued = rescue_(atEnd     ? Unrescued::AreLost
                                 : insists ? Unrescued::AreGivenUp
                                           : Unrescued::StayInEditor);
    if (atEnd) rescued ? journal_.end() : journal_.leave();
    return rescued || insists;
}

bool Document::rescue_(Unrescued otherwise) {
    std::optional<std::string> platform;
    if (sails_()) platform = Utils::platformName(overlay_.attachedPlatformId());
    if (awaits_()) platform = file_.awaited;
    if (overlay_.digest() != 0 && !isKept_() && !rescue_(overlay_, platform, otherwise)) return false;
    // No file can hold half a shape.
    if (const auto begun = overlay_.begun(); !begun.empty())
        halNotify::notify(halNotify::Warning) << "Not complete, and given up: " << UTILS::listed(begun);
    return true;
}

bool Document::rescue_(const Overlay& overlay, const std::optional<std::string>& platform,
                       Unrescued otherwise) {
    // Nobody attaches the file to what the overlay was attached to, but a fixed point is found again. One
    // from which nothing leads anywhere, as a pole, would be a dead end.
    const bool anchored = platform && overlay.pointConverter() && placeOf(*overlay.pointConverter(), {});
    const std::string file =
        writeRescueFile(anchored ? overlay.textWithReference() : overlay.text(), otherwise);
    if (file.empty()) return false;
    rescueFile_ = file;
    if (platform && !anchored)
        halNotify::notify(halNotify::Warning) << "The offsets in " << file << " count from " << *platform
                                              << ": attach them to it once they are loaded";
    return true;
}

}  // namespace OverlayEditor
