#include "sandbox/OverlayFiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <ios>
#include <memory>
#include <optional>
#include <ranges>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "common/Files.h"
#include "common/Notify.h"
#include "format/Parser.h"
#include "format/PointBasedShape.h"
#include "format/TextReading.h"
#include "geo/Angles.h"
#include "sandbox/Log.h"
#include "sandbox/OverlayNotes.h"
#include "sandbox/PlatformView.h"
#include "sandbox/Plugin.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

using halCore::kHalfPi;

namespace {

std::string wholePath(const std::string& path) {
    std::error_code error;
    const auto whole = std::filesystem::weakly_canonical(path, error);
    return error ? path : whole.string();
}

/// What there is, up to where a plug-in's stream fails, if it does.
std::string readAll(std::istream& stream) {
    std::string all;
    std::streambuf* const from = stream.rdbuf();
    if (!from) return all;
    try {
        // Texts know their size: they are neither copied as they grow nor take more than they need.
        all.reserve(static_cast<std::size_t>(std::max<std::streamsize>(from->in_avail(), 0)));
        std::array<char, std::size_t{64} << 10> part;
        std::streamsize count = 0;
        while ((count = from->sgetn(part.data(), part.size())) > 0)
            all.append(part.data(), static_cast<std::size_t>(count));
    } catch (...) {  // whatever a plug-in's stream throws
    }
    return all;
}

/// From which a file counts the names of its pictures; a text without a file counts from nowhere.
std::string directoryOf(const LoadedOverlay& overlay) {
    return std::filesystem::path(overlay.path).parent_path().string();
}

std::vector<OverlayNote> notesOn(const OverlayScene::Shapes& shapes, const LoadedOverlay& overlay) {
    std::vector<OverlayNote> notes;
    takeNotes(shapes, directoryOf(overlay), overlay.platform != 0, notes).finish();
    return notes;
}

}  // namespace

QString LoadedOverlay::describe() const {
    return isStream() ? QString("overlay text")
                      : QString("overlay file %1").arg(QString::fromStdString(path));
}

OverlayFiles::OverlayFiles(OverlayScene& scene, const Scenario& scenario, HandleRegistry& handles, Log& log)
    : scene_(scene), scenario_(scenario), handles_(handles), log_(log) {
    connect(&scenario, &Scenario::platformMoved, this, &OverlayFiles::platformChanged);
    connect(&scenario, &Scenario::platformRemoved, this, &OverlayFiles::platformRemoved);
    connect(&scenario, &Scenario::timeChanged, this, [this] {
        for (const auto& [platform, overlays] : carried_)
            if (scenario_.moves(platform)) platformChanged(platform);
    });
}

void OverlayFiles::report(LoadedOverlay& overlay, halCore::ZEL::ParseReport report,
                          const OverlayScene::Shapes& shapes, std::vector<OverlayNote> notes) {
    report.addUnterminatedBlock();
    overlay.messages = std::move(report.messages);
    for (OverlayNote& note : notes)
        overlay.messages.push_back({report.shapeLines[note.shape],
                                    note.isFault ? halNotify::Warning : halNotify::Notice,
                                    std::move(note.text)});
    const QString source = overlay.isStream() ? overlay.describe() : QString::fromStdString(overlay.path);
    FileMessages told(log_, source);
    for (const auto& message : overlay.messages) told.add(message.severity, message.line, message.text);
    if (report.omittedMessages > 0) told.addUntold(halNotify::Error, report.omittedMessages);
    if (shapes.empty()) log_.add(halNotify::Error, "host", overlay.describe() + " holds no shape");
}

OverlayScene::Shapes OverlayFiles::read(LoadedOverlay& overlay) {
    halCore::ZEL::ParseReport told;
    OverlayScene::Shapes shapes;
    halCore::ZEL::Parser().parse(std::string_view(overlay.text), shapes, told);
    auto notes = overlay.isStream() ? std::vector<OverlayNote>() : notesOn(shapes, overlay);
    report(overlay, std::move(told), shapes, std::move(notes));
    return shapes;
}

LoadedOverlay* OverlayFiles::add(std::unique_ptr<LoadedOverlay> overlay, OverlayScene::Shapes shapes,
                                 Plugin* owner) {
    if (shapes.empty()) return nullptr;
    overlay->sceneId = scene_.add(std::move(shapes), referenceOf(scenario_, overlay->platform),
                                  overlay->shown, directoryOf(*overlay));
    LoadedOverlay* added = handles_.add(std::move(overlay), owner);
    if (added->platform != 0) noteCarried(*added);
    return added;
}

void OverlayFiles::noteCarried(const LoadedOverlay& overlay) {
    Carried& carried = carried_[overlay.platform];
    if (carried.handles.size() == carried.most) {
        std::erase_if(carried.handles,
                      [this](void* handle) { return !handles_.find<LoadedOverlay>(handle); });
        carried.most = std::max(carried.most, 2 * carried.handles.size());
    }
    carried.handles.push_back(overlay.handle());
}

std::vector<LoadedOverlay*> OverlayFiles::carriedBy(std::uint64_t platform) const {
    std::vector<LoadedOverlay*> overlays;
    if (const auto at = carried_.find(platform); at != carried_.end())
        for (void* handle : at->second.handles)
            if (auto* overlay = handles_.find<LoadedOverlay>(handle)) overlays.push_back(overlay);
    return overlays;
}

std::unique_ptr<LoadedOverlay> OverlayFiles::unread(const std::string& path, std::uint64_t platform,
                                                    bool shown) {
    auto overlay = std::make_unique<LoadedOverlay>(scene_);
    overlay->path = wholePath(path);
    overlay->platform = platform;
    overlay->shown = overlay->wanted = shown;
    return overlay;
}

std::unique_ptr<LoadedOverlay> OverlayFiles::open(const std::string& path, std::uint64_t platform,
                                                  bool shown) {
    auto overlay = unread(path, platform, shown);
    const std::string error = UTILS::readFile(path, overlay->text);
    if (error.empty()) return overlay;
    tellUnread(*overlay, error);
    return nullptr;
}

void OverlayFiles::tellUnread(const LoadedOverlay& overlay, const std::string& error) {
    log_.add(halNotify::Error, "host",
             QString("%1 cannot be opened: %2").arg(overlay.describe(), QString::fromStdString(error)));
}

LoadedOverlay* OverlayFiles::addFile(std::unique_ptr<LoadedOverlay> overlay, OverlayScene::Shapes shapes) {
    LoadedOverlay* loaded = add(std::move(overlay), std::move(shapes), nullptr);
    if (!loaded) return nullptr;
    emit filesChanged();
    void* handle = loaded->handle();
    tell("overlay added", [handle](PIHALVIS::ZELEventObserver* observer) { observer->addedZEL(handle); });
    // An observer may have unloaded it again.
    return handles_.find<LoadedOverlay>(handle);
}

LoadedOverlay* OverlayFiles::loadFile(const std::string& path, std::uint64_t platform, bool shown) {
    auto overlay = open(path, platform, shown);
    if (!overlay) return nullptr;
    auto shapes = read(*overlay);
    return addFile(std::move(overlay), std::move(shapes));
}

/// An overlay whose text is being read.
class OverlayFiles::Coming final : public ComingFile {
  public:
    Coming(OverlayFiles& files, std::unique_ptr<LoadedOverlay> with, const std::string& path, bool again)
        : files_(files), overlay_(std::move(with)), again_(again), file_(path) {
        if (!file_.error().empty()) files_.tellUnread(*overlay_, file_.error());
    }
    bool isOpen() const { return file_.error().empty(); }

    bool goOn(Slice& slice) override {
        constexpr std::size_t bytes = std::size_t{64} << 10;
        constexpr std::size_t bytesOfAUnit = 256;
        constexpr std::size_t copied = std::size_t{1} << 20;
        constexpr std::size_t copiedOfAUnit = 2048;
        if (!text_ && !isRead_) {
            while (!file_.goOn(copied))
                if (slice.isOver(copied / copiedOfAUnit)) return false;
            beginText();
            if (slice.isOver(copied / copiedOfAUnit)) return isRead_;
        }
        while (!isRead_) {
            isRead_ = text_->goOn(bytes);
            if (isRead_)
                noting_.emplace(takeNotes(shapes_, directoryOf(*overlay_), overlay_->platform != 0, notes_));
            if (slice.isOver(bytes / bytesOfAUnit)) return false;
        }
        return !noting_ || noting_->goOn(slice);
    }
    int percent() const override {
        const std::size_t done = text_ ? text_->done() : 0;
        return static_cast<int>(100 * done / std::max<std::size_t>(overlay_->text.size(), 1));
    }
    bool show(Slice&) override {
        shown_ = show();
        return true;
    }
    bool isShown() const override { return shown_; }

  private:
    bool show() {
        if (!isOpen()) return false;
        const auto standing = files_.findAll(overlay_->path);
        if (standing.empty()) {
            if (again_) return false;
            if (std::exchange(overlay_->platform, 0) != 0) notes_ = notesOn(shapes_, *overlay_);
            files_.report(*overlay_, std::move(report_), shapes_, std::move(notes_));
            return files_.addFile(std::move(overlay_), std::move(shapes_)) != nullptr;
        }
        if ((overlay_->platform != 0) != (standing.front()->platform != 0)) {
            overlay_->platform = standing.front()->platform;
            notes_ = notesOn(shapes_, *overlay_);
        }
        bool good = files_.renew(*standing.front(), *overlay_, std::move(report_), std::move(shapes_),
                                 std::move(notes_));
        for (LoadedOverlay* const other : standing | std::views::drop(1))
            good = files_.reload(*other) && good;
        return good;
    }

    void beginText() {
        overlay_->text = file_.takeContents();
        const auto standing = files_.findAll(overlay_->path);
        isRead_ = !isOpen() ||
                  (!standing.empty() && std::ranges::all_of(standing, [this](const LoadedOverlay* stands) {
                      return stands->text == overlay_->text;
                  }));
        if (!isOpen()) files_.tellUnread(*overlay_, file_.error());
        if (isRead_) return;
        // Where it will be shown first.
        if (!standing.empty()) overlay_->platform = standing.front()->platform;
        text_.emplace(overlay_->text, shapes_, report_);
    }

    OverlayFiles& files_;
    std::unique_ptr<LoadedOverlay> overlay_;
    bool again_;
    UTILS::FileReading file_;
    OverlayScene::Shapes shapes_;
    halCore::ZEL::ParseReport report_;
    std::optional<halCore::ZEL::TextReading> text_;  ///< once it is in memory
    bool isRead_ = false;
    bool shown_ = false;
    std::vector<OverlayNote> notes_;
    std::optional<Work> noting_;  ///< once the text is read
};

std::unique_ptr<ComingFile> OverlayFiles::comingFile(const std::string& path, bool again) {
    if (again && !find(path)) return nullptr;
    auto coming = std::make_unique<Coming>(*this, unread(path, 0, true), path, again);
    return coming->isOpen() ? std::move(coming) : nullptr;
}

bool OverlayFiles::renew(LoadedOverlay& overlay, LoadedOverlay& read, halCore::ZEL::ParseReport report,
                         OverlayScene::Shapes shapes, std::vector<OverlayNote> notes) {
    if (read.text == overlay.text) return true;
    read.platform = overlay.platform;
    this->report(read, std::move(report), shapes, std::move(notes));
    if (shapes.empty()) return false;
    overlay.text = std::move(read.text);
    overlay.messages = std::move(read.messages);
    scene_.replace(overlay.sceneId, std::move(shapes));
    emit filesChanged();
    return true;
}

bool OverlayFiles::reload(LoadedOverlay& overlay) {
    const auto fresh = open(overlay.path, overlay.platform, true);
    if (!fresh) return false;
    halCore::ZEL::ParseReport told;
    OverlayScene::Shapes shapes;
    if (fresh->text != overlay.text)
        halCore::ZEL::Parser().parse(std::string_view(fresh->text), shapes, told);
    auto notes = notesOn(shapes, *fresh);
    return renew(overlay, *fresh, std::move(told), std::move(shapes), std::move(notes));
}

LoadedOverlay* OverlayFiles::loadStream(std::istream& stream, std::uint64_t platform, Plugin* owner) {
    auto overlay = std::make_unique<LoadedOverlay>(scene_);
    overlay->text = readAll(stream);
    overlay->platform = platform;
    auto shapes = read(*overlay);
    return add(std::move(overlay), std::move(shapes), owner);
}

void OverlayFiles::unload(LoadedOverlay& overlay) {
    const bool isFile = !overlay.isStream();
    void* handle = overlay.handle();
    handles_.remove(handle);
    if (!isFile) return;
    emit filesChanged();
    tell("overlay removed", [handle](PIHALVIS::ZELEventObserver* observer) { observer->removedZEL(handle); });
}

void OverlayFiles::show(LoadedOverlay& overlay, bool shown) {
    overlay.wanted = shown;
    showForPlugin(overlay, shown);
}

void OverlayFiles::showForPlugin(LoadedOverlay& overlay, bool shown) {
    overlay.wanted |= shown;
    if (overlay.shown == shown) return;
    overlay.shown = shown;
    scene_.setShown(overlay.sceneId, shown);
    if (!overlay.isStream()) emit filesChanged();
}

void OverlayFiles::attach(LoadedOverlay& overlay, std::uint64_t platform) {
    if (overlay.platform == platform) return;
    const std::string path = overlay.path;
    const bool shown = overlay.shown;
    const bool wanted = overlay.wanted;
    // First, so that an overlay that cannot be read any more stays.
    if (LoadedOverlay* attached = loadFile(path, platform, shown)) {
        attached->wanted = wanted;
        unload(overlay);
    }
}

std::vector<LoadedOverlay*> OverlayFiles::findAll(const std::string& path) const {
    auto found = files();
    std::erase_if(found,
                  [whole = wholePath(path)](const LoadedOverlay* overlay) { return overlay->path != whole; });
    return found;
}

LoadedOverlay* OverlayFiles::find(const std::string& path) const {
    const auto found = findAll(path);
    return found.empty() ? nullptr : found.front();
}

std::vector<LoadedOverlay*> OverlayFiles::files() const {
    auto found = handles_.all<LoadedOverlay>();
    std::erase_if(found, [](const LoadedOverlay* overlay) { return overlay->isStream(); });
    return found;
}

std::vector<LoadedOverlay*> OverlayFiles::streams() const {
    auto found = handles_.all<LoadedOverlay>();
    std::erase_if(found, [](const LoadedOverlay* overlay) { return !overlay->isStream(); });
    return found;
}

bool OverlayFiles::addObserver(PIHALVIS::ZELEventObserver* observer, Plugin* owner) {
    if (std::ranges::find(observers_, observer, &Observer::observer) != observers_.end()) return false;
    observers_.push_back({observer, owner});
    return true;
}

bool OverlayFiles::removeObserver(PIHALVIS::ZELEventObserver* observer, const Plugin* owner) {
    return std::erase_if(observers_, [observer, owner](const Observer& entry) {
               return entry.observer == observer && entry.owner == owner;
           }) > 0;
}

int OverlayFiles::removeObservers(const Plugin* owner) {
    return static_cast<int>(
        std::erase_if(observers_, [owner](const Observer& entry) { return entry.owner == owner; }));
}

/// An observer may add and remove observers, itself included: each is looked up again before its call.
template <typename Event>
void OverlayFiles::tell(const char* what, Event event) {
    for (const Observer& entry : std::vector(observers_)) {
        if (std::ranges::find(observers_, entry.observer, &Observer::observer) != observers_.end())
            entry.owner->enter(what, [&] { event(entry.observer); });
    }
}

OverlayScene::Shapes OverlayFiles::line(std::size_t count,
                                        const std::function<PIData::PIDataPoint(std::size_t)>& place,
                                        std::uint32_t rgba, int width) {
    // A long line is worked out and left out of the view in parts, each from where the one before ends.
    constexpr std::size_t kMostOfAPart = 100000;
    const auto byte = [rgba](int from) { return static_cast<std::uint8_t>(rgba >> from); };
    const halCore::ZEL::Color color(byte(24), byte(16), byte(8), byte(0));
    OverlayScene::Shapes parts;
    for (std::size_t first = 0; first + 1 < count; first += kMostOfAPart) {
        std::vector<halCore::Vec3> points;
        const std::size_t end = std::min(count, first + kMostOfAPart + 1);
        points.reserve(end - first);
        for (std::size_t i = first; i < end; ++i) {
            // Plug-ins name some of them.
            const PIData::PIDataPoint at = place(i);
            const bool isPlace =
                std::abs(at.latRad) <= kHalfPi && std::isfinite(at.lonRad) && std::isfinite(at.altMeters);
            if (isPlace) points.emplace_back(at.latRad, at.lonRad, at.altMeters);
        }
        if (points.size() < 2) continue;
        auto part = std::make_shared<halCore::ZEL::Line>(false);
        part->setLineWidth(width);
        part->setLineColor(color);
        part->setPoints(std::move(points));
        parts.push_back(std::move(part));
    }
    return parts;
}

void OverlayFiles::platformChanged(std::uint64_t id) {
    for (const LoadedOverlay* overlay : carriedBy(id))
        scene_.setReference(overlay->sceneId, referenceOf(scenario_, id));
}

void OverlayFiles::platformRemoved(std::uint64_t id) {
    bool changed = false;
    for (LoadedOverlay* overlay : carriedBy(id)) {
        overlay->platform = 0;
        scene_.setReference(overlay->sceneId, std::nullopt);
        changed = changed || !overlay->isStream();
    }
    carried_.erase(id);
    if (changed) emit filesChanged();
}

}  // namespace sandbox
