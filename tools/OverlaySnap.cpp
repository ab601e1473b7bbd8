#include "tools/OverlaySnap.h"

#include <algorithm>
#include <sstream>

#include "format/ParseReport.h"
#include "format/Parser.h"
#include "model/FileVersion.h"
#include "model/SerializeToShape.h"
#include "model/Utils.h"
#include "model/ZelToSerializer.h"
#include "pi/PIData.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

constexpr std::chrono::milliseconds kAskAgain{400};

}  // namespace

struct OverlaySnap::File {
    void* overlay = nullptr;
    unsigned long platform = 0;
    /// What was read; as long as it stands in the file, the host can have nothing newer.
    FileVersion version;
    /// Where its offsets count from; before the shapes, which count from it.
    PointConverter converter;
    std::vector<std::unique_ptr<Shape>> shapes;
    SnapLayer layer;

    /// The shapes go where their platform is.
    void follow(bool first) {
        Vec3 place;
        Vec3 before;
        converter.getReferenceLla(before);
        const bool moved =
            platform != 0 && Utils::getPlatformLla(platform, place) == 0 && (place != before || first);
        if (moved) converter.setReferenceLla(place, platform);
        if (!moved && !first) return;
        layer.clear();
        for (const auto& shape : shapes)
            if (shape->shown()) layer.add(*shape);
    }
};

OverlaySnap::OverlaySnap(const Preferences& preferences, const Overlay& overlay)
    : preferences_(preferences), overlay_(overlay) {}

OverlaySnap::~OverlaySnap() = default;

std::optional<Snap> OverlaySnap::find(const Query& query) {
    askHost_();
    updateEdited_(query.held);
    for (const auto& file : files_) file->follow(false);

    std::optional<SnapLayer::Hit> best;
    const auto take = [&](std::optional<SnapLayer::Hit> hit) {
        const bool nearer = hit && (!best || hit->away < best->away);
        if (nearer) best = std::move(hit);
        return nearer;
    };
    if (take(platformPoints_.nearestPoint(query)))
        // It may have moved since it was listed.
        Utils::getPlatformLla(platforms_[best->point].id, best->snap.place);
    take(edited_.nearestPoint(query));
    for (const auto& file : files_) take(file->layer.nearestPoint(query));
    if (best) return std::move(best->snap);
    take(edited_.nearestSide(query));
    for (const auto& file : files_) take(file->layer.nearestSide(query));
    return best ? std::optional(std::move(best->snap)) : std::nullopt;
}

void OverlaySnap::updateEdited_(bool held) {
    const PointConverter* const frame = overlay_.pointConverter();
    const std::uint64_t frameRevision = frame ? frame->revision() : 0;
    const bool same = editedFrame_ == frameRevision && editedActive_ == overlay_.active();
    if (same && (held || editedRevision_ == overlay_.revision())) return;
    editedFrame_ = frameRevision;
    editedActive_ = overlay_.active();
    editedRevision_ = overlay_.revision();
    edited_.clear();
    if (!editedActive_) return;
    for (const Shape* const shape : overlay_.shapes())
        if (shape->shown()) edited_.add(*shape);
}

void OverlaySnap::askHost_() {
    const auto now = std::chrono::steady_clock::now();
    if (asked_ && now - *asked_ < kAskAgain) return;
    asked_ = now;

    platforms_.clear();
    platformPoints_.clear();
    std::vector<std::pair<void*, unsigned long>> overlays;
    for (void* const overlay : PIHALVIS::getZELFiles()) overlays.emplace_back(overlay, 0);
    for (const unsigned long id : PIData::getPlatformList()) {
        for (void* const overlay : PIHALVIS::getAttachedZELFiles(id)) overlays.emplace_back(overlay, id);
        Vec3 place;
        if (Utils::getPlatformLla(id, place) != 0 || !isPlace(place)) continue;
        platforms_.push_back({id, Utils::platformName(id)});
        platformPoints_.addPoint(place, "the platform " + platforms_.back().name);
    }
    // What the edited overlay takes the place of is not in view.
    if (overlay_.active())
        std::erase_if(overlays, [&](const auto& known) { return known.first == overlay_.zelId(); });
    std::vector<std::unique_ptr<File>> files;
    for (const auto& [overlay, platform] : overlays) {
        const std::string path = PIHALVIS::getZELFilename(overlay);
        const auto known = std::ranges::find_if(files_, [&, overlay = overlay,
                                                         platform = platform](const auto& file) {
            return file && file->overlay == overlay && file->platform == platform && file->version.isOf(path);
        });
        const bool isKnown = known != files_.end();
        if (isKnown && (*known)->version.isOnDisk()) {
            files.push_back(std::move(*known));
            continue;
        }
        // The host may load a file anew under the same handle, and not as soon as it has changed.
        std::ostringstream text;
        if (PIHALVIS::serializeZELToStream(overlay, text) != 0) text.str({});
        files.push_back(isKnown && (*known)->version.is(path, text.view())
                            ? std::move(*known)
                            : read_(overlay, platform, FileVersion(path, text.view()), text.view()));
    }
    files_ = std::move(files);
}

std::unique_ptr<OverlaySnap::File> OverlaySnap::read_(void* overlay, unsigned long platform,
                                                      FileVersion version, std::string_view text) const {
    auto file = std::make_unique<File>();
    file->overlay = overlay;
    file->platform = platform;
    file->version = std::move(version);
    halCore::ZEL::Parser::Shapes read;
    halCore::ZEL::ParseReport report;
    halCore::ZEL::Parser().parse(text, read, report);
    // What the editor cannot hold is not said here again.
    const ZelToSerializer reader;
    std::erase_if(read, [&](const auto& shape) { return !reader.whyLeftOut(*shape, platform != 0).empty(); });
    SerializeToShape target(preferences_);
    if (platform != 0) {
        Vec3 place;
        if (Utils::getPlatformLla(platform, place) != 0) return file;
        file->converter.setReferenceLla(place, platform);
        target.setPointConverter(&file->converter);
    }
    if (read.empty() || reader.replay(target, read, 0, file->version.path()) != 0) return file;
    file->shapes = target.shapes();
    for (std::size_t i = 0; i < file->shapes.size() && i < read.size(); ++i) {
        bool drawn = true;
        read[i]->getDrawn(drawn);
        file->shapes[i]->setShown(drawn);
    }
    file->follow(true);
    return file;
}

}  // namespace OverlayEditor
