#include <algorithm>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/OffsetGrid.h"
#include "model/BlockRewriter.h"
#include "model/Document.h"
#include "model/FileDisplays.h"
#include "model/OverlayFile.h"
#include "model/Utils.h"
#include "pi/PIData.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// The platform of the scenario that a journal means: numbers are given anew by each run of a host, names are
/// not. 0 when there is none, or no telling.
unsigned long platformOf(const Attachment::State& state) {
    const auto platforms = PIData::getPlatformList();
    const auto isIt = [&](std::uint64_t id) { return Utils::platformName(id) == state.name; };
    if (std::ranges::find(platforms, state.platform) != platforms.end() && isIt(state.platform))
        return state.platform;
    return std::ranges::count_if(platforms, isIt) == 1 ? *std::ranges::find_if(platforms, isIt) : 0;
}

/// The blocks of the file, in their order, if it is still the one that was edited: shapes that were made of
/// them are told.
std::shared_ptr<const halCore::ZEL::SourceText> findBlocks(const JournalContents& contents,
                                                           const Preferences& preferences,
                                                           std::vector<ShapeSource>& blocks) {
    const JournalHead& head = contents.head;
    std::string text;
    if (head.fileName.empty() || !UTILS::readFile(head.fileName, text).empty() ||
        !head.known.is(head.fileName, text))
        return nullptr;
    const halNotify::Silence silence;
    LoadResult loaded;
    // What names no position is a shape only where the overlay was loaded on a platform.
    for (const unsigned long platform : {0UL, 1UL}) {
        PointConverter anywhere;
        anywhere.setReferenceLla({}, platform);
        loaded = loadOverlayText(text, {}, preferences, &anywhere, 0);
        blocks.clear();
        for (const auto& shape : loaded.shapes) blocks.push_back(shape->source());
        if (std::ranges::all_of(contents.shapes, [&](const auto& shape) {
                const std::size_t block = shape.second->source.block;
                return block == kNoBlock ||
                       std::ranges::binary_search(blocks, block, {}, &ShapeSource::block);
            }))
            break;
    }
    return loaded.error.empty() ? loaded.source : nullptr;
}

}  // namespace

std::string Document::Lost::names() const {
    std::vector<std::string> names;
    for (const auto& [number, state] : contents.shapes) names.push_back(state->name);
    constexpr std::size_t few = 3;
    return UTILS::listed(names, few);
}

std::optional<Document::Lost> Document::findLost() const {
    for (const std::string& path : abandonedJournals()) {
        Lost lost{JournalFile::take(path), {}};
        if (!lost.file) continue;
        std::string text;
        if (const std::string error = UTILS::readFile(path, text); !error.empty()) {
            halNotify::notify(halNotify::Warning) << "A journal of unsaved shapes cannot be read: " << error
                                                  << ". It is kept as " << lost.file->setAside();
            continue;
        }
        lost.contents = readJournal(text);
        if (!lost.contents.shapes.empty()) return lost;
        if (!lost.contents.damaged)
            lost.file->remove();
        else
            halNotify::notify(halNotify::Warning)
                << "A journal of unsaved shapes is damaged, and nothing of it can be read: it is kept as "
                << lost.file->setAside();
    }
    return std::nullopt;
}

bool Document::awaits_() const {
    return !file_.awaited.empty() && attachment_.isReferencePlatform(overlay_.attachedPlatformId()) &&
           !overlay_.referenceWritten();
}

bool Document::namesPlace_() const {
    return awaits_() && overlay_.hasOffsets() && placeOf(*overlay_.pointConverter(), {});
}

JournalHead Document::journalHead_() const {
    JournalHead head{file_.name, file_.known, history_.attachment()};
    if (awaits_()) {
        head.attachment.own = false;
        head.attachment.name = file_.awaited;
    }
    return head;
}

void Document::revive_(const JournalContents& contents, Overlay& overlay, bool active,
                       const PointConverter& frame, PointConverter* converter) const {
    std::vector<ShapeSource> blocks;
    const auto source = findBlocks(contents, preferences_, blocks);
    for (const auto& [number, state] : contents.shapes) {
        Shape* const shape = shapeKind(state->kind).make(preferences_).release();
        shape->setName(state->name);
        overlay.addShape(shape);
        if (!active) shape->setActive(false);
        ShapeState whole = *state;
        const auto block = std::ranges::lower_bound(blocks, state->source.block, {}, &ShapeSource::block);
        const bool found = block != blocks.end() && block->block == state->source.block;
        whole.source = found ? *block : ShapeSource();
        whole.source.digest = state->source.digest;
        const auto& extras = state->source.extras;
        const auto& inBlock = whole.source.extras;
        if (extras && !(inBlock && blockOf(*inBlock) == blockOf(*extras))) whole.source.extras = extras;
        shape->restore(whole, frame, frame.refPlatformId(), converter);
    }
    overlay.restoreSource(source);
}

bool Document::discard(Lost& lost) {
    const Attachment::State& attached = lost.contents.head.attachment;
    PointConverter there;
    there.setReferenceLla(attached.reference, attached.platform);
    Overlay overlay;
    overlay.restoreAttachment(attached.platform, attached.counts ? &there : nullptr);
    overlay.setReferenceWritten(attached.written);
    revive_(lost.contents, overlay, false, there, attached.counts ? &there : nullptr);
    const bool sails = attached.platform != 0 && !attached.own;
    if (overlay.digest() != 0 &&
        !rescue_(overlay, sails ? std::optional(attached.name) : std::nullopt, Unrescued::StayInJournal))
        return false;
    if (const auto begun = overlay.begun(); !begun.empty())
        halNotify::notify(halNotify::Warning) << "Not complete, and given up: " << UTILS::listed(begun);
    lost.file->remove();
    return true;
}

void Document::recover(Lost lost) {
    const JournalHead& head = lost.contents.head;
    history_.commit();
    history_.switchFile(fileState_(), "recover shapes");
    overlay_.clearShapes(false);
    overlay_.adopt(nullptr);
    file_ = {};
    cleanupPriorZEL_();

    Attachment::State attached = head.attachment;
    if (attached.platform != 0 && !attached.own) attached.platform = platformOf(attached);
    // Offsets stay what they are. They count from where it was, until they are attached to it again.
    if (attached.platform == 0 && head.attachment.platform != 0) {
        attached.own = true;
        file_.awaited = attached.name;
        halNotify::notify(halNotify::Warning)
            << attached.name << " is not there: the recovered shapes count from where it was, until the "
            << "overlay is attached to a platform";
    }
    attachment_.restore(attached);
    revive_(lost.contents, overlay_, editing_, attachment_.converter(),
            overlay_.counts() ? &attachment_.converter() : nullptr);
    file_.name = head.fileName;
    file_.known = head.known;
    file_.recovered = true;
    if (void* const zel = displayOf(file_.name)) {
        overlay_.setZelId(zel);
        if (editing_) PIHALVIS::showZELFile(zel, false);
    }
    // No file holds it.
    overlay_.setKept(~overlay_.digest());
    if (lost.contents.damaged)
        halNotify::notify(halNotify::Error) << "The journal of the recovered shapes is damaged: look "
                                               "whether all of them are there, and whole";
    journal_.unsettle();
    journal_.adopt(std::move(lost.file));
}

}  // namespace OverlayEditor
