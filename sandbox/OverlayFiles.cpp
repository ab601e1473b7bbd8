#include "sandbox/OverlayFiles.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <utility>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/NumberText.h"
#include "format/Parser.h"
#include "geo/Angles.h"
#include "sandbox/Log.h"
#include "sandbox/OverlayNotes.h"
#include "sandbox/PlatformView.h"
#include "sandbox/Plugin.h"
#include "sandbox/scenario/Scenario.h"

namespace sandbox {

using halCore::kPi;

namespace {

std::string wholePath(const std::string& path) {
    std::error_code error;
    const auto whole = std::filesystem::weakly_canonical(path, error);
    return error ? path : whole.string();
}

std::string readAll(std::istream& stream) {
    std::ostringstream text;
    text << stream.rdbuf();
    std::string all = std::move(text).str();
    // A stream takes half a kilobyte at least.
    all.shrink_to_fit();
    return all;
}

OverlayScene::Shapes parse(const std::string& text) {
    OverlayScene::Shapes shapes;
    halCore::ZEL::Parser().parse(std::string_view(text), shapes);
    return shapes;
}

/// From which a file counts the names of its pictures; a text without a file counts from nowhere.
std::string directoryOf(const LoadedOverlay& overlay) {
    return std::filesystem::path(overlay.path).parent_path().string();
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
    turn_.setSingleShot(true);
    connect(&turn_, &QTimer::timeout, this, &OverlayFiles::readOn);
}

OverlayFiles::Coming::Coming(std::unique_ptr<LoadedOverlay> with)
    : overlay(std::move(with)), text(overlay->text, shapes, report) {}

bool OverlayFiles::Coming::goOn(Slice& slice) {
    constexpr std::size_t bytes = std::size_t{64} << 10;
    constexpr std::size_t bytesOfAUnit = 256;
    while (!isRead) {
        isRead = text.goOn(bytes);
        if (slice.isOver(bytes / bytesOfAUnit)) break;
    }
    return isRead;
}

void OverlayFiles::report(LoadedOverlay& overlay, halCore::ZEL::ParseReport report,
                          const OverlayScene::Shapes& shapes) {
    report.addUnterminatedBlock();
    overlay.messages = std::move(report.messages);
    if (!overlay.isStream()) {
        for (OverlayNote& note : notesOn(shapes, directoryOf(overlay), overlay.platform != 0))
            overlay.messages.push_back({report.shapeLines[note.shape],
                                        note.isFault ? halNotify::Warning : halNotify::Notice,
                                        std::move(note.text)});
    }
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
    report(overlay, std::move(told), shapes);
    return shapes;
}

LoadedOverlay* OverlayFiles::add(std::unique_ptr<LoadedOverlay> overlay, OverlayScene::Shapes shapes,
                                 Plugin* owner) {
    if (shapes.empty()) return nullptr;
    overlay->sceneId = scene_.add(std::move(shapes), referenceOf(scenario_, overlay->platform),
                                  overlay->shown, directoryOf(*overlay));
    return handles_.add(std::move(overlay), owner);
}

std::unique_ptr<LoadedOverlay> OverlayFiles::open(const std::string& path, std::uint64_t platform,
                                                  bool shown) {
    auto overlay = std::make_unique<LoadedOverlay>(scene_);
    overlay->path = wholePath(path);
    overlay->platform = platform;
    overlay->shown = shown;
    const std::string error = UTILS::readFile(path, overlay->text);
    if (error.empty()) return overlay;
    log_.add(halNotify::Error, "host",
             QString("%1 cannot be opened: %2").arg(overlay->describe(), QString::fromStdString(error)));
    return nullptr;
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

// What is read in the pauses

void OverlayFiles::loadFileSoon(const std::string& path, std::function<void(bool)> then) {
    waiting_.push_back({.path = path, .then = std::move(then), .coming = nullptr, .begun = {}});
    if (waiting_.size() == 1) readOn();
}

void OverlayFiles::readOn() {
    // What is small is read at once, whatever the clock says.
    constexpr std::size_t atLeast = 4000;
    constexpr std::chrono::milliseconds atOnce{40};
    constexpr int untoldMilliseconds = 1000;
    while (!waiting_.empty()) {
        Waiting& first = waiting_.front();
        if (!first.coming) {
            auto overlay = open(first.path, 0, true);
            if (!overlay) {
                if (const Waiting gone = takeFirst(); gone.then) gone.then(false);
                continue;
            }
            first.begun.start();
            first.coming = std::make_unique<Coming>(std::move(overlay));
        }
        Slice slice(atLeast, atOnce);
        if (!first.coming->goOn(slice)) {
            const std::size_t size = first.coming->overlay->text.size();
            if (first.begun.elapsed() > untoldMilliseconds)
                emit reading(QString::fromStdString(first.path),
                             static_cast<int>(100 * first.coming->text.done() / size));
            turn_.start();
            return;
        }
        const std::unique_ptr<Coming> coming = std::move(first.coming);
        const Waiting read = takeFirst();
        bool shown = !findAll(read.path).empty();  // a plug-in has been faster
        if (!shown) {
            report(*coming->overlay, std::move(coming->report), coming->shapes);
            shown = addFile(std::move(coming->overlay), std::move(coming->shapes)) != nullptr;
        }
        if (read.then) read.then(shown);
    }
}

OverlayFiles::Waiting OverlayFiles::takeFirst() {
    Waiting first = std::move(waiting_.front());
    waiting_.pop_front();
    emit reading({}, 0);
    return first;
}

void OverlayFiles::cancelReading() {
    if (waiting_.empty()) return;
    const Waiting ended = takeFirst();
    log_.add(
        halNotify::Warning, "host",
        QString("overlay file %1 is not opened: it was canceled").arg(QString::fromStdString(ended.path)));
    if (ended.then) ended.then(false);
    if (!waiting_.empty()) turn_.start();
}

void OverlayFiles::cancelAllReading() {
    while (!waiting_.empty()) cancelReading();
    turn_.stop();
}

bool OverlayFiles::reload(LoadedOverlay& overlay) {
    LoadedOverlay fresh(scene_);
    fresh.path = overlay.path;
    fresh.platform = overlay.platform;
    if (const std::string error = UTILS::readFile(overlay.path, fresh.text); !error.empty()) {
        log_.add(halNotify::Error, "host",
                 QString("%1 cannot be opened: %2").arg(overlay.describe(), QString::fromStdString(error)));
        return false;
    }
    if (fresh.text == overlay.text) return true;
    auto shapes = read(fresh);
    if (shapes.empty()) return false;
    overlay.text = std::move(fresh.text);
    overlay.messages = std::move(fresh.messages);
    scene_.replace(overlay.sceneId, std::move(shapes));
    emit filesChanged();
    return true;
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
    if (overlay.shown == shown) return;
    overlay.shown = shown;
    scene_.setShown(overlay.sceneId, shown);
    if (!overlay.isStream()) emit filesChanged();
}

void OverlayFiles::attach(LoadedOverlay& overlay, std::uint64_t platform) {
    if (overlay.platform == platform) return;
    const std::string path = overlay.path;
    const bool shown = overlay.shown;
    // First, so that an overlay that cannot be read any more stays.
    if (loadFile(path, platform, shown)) unload(overlay);
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

OverlayScene::Shapes OverlayFiles::line(std::span<const PIData::PIDataPoint> places, std::uint32_t rgba,
                                        int width) {
    constexpr double degree = kPi / 180.0;
    // The file's colours run alpha, blue, green, red.
    const std::uint32_t abgr =
        (rgba & 0xff) << 24 | (rgba >> 8 & 0xff) << 16 | (rgba >> 16 & 0xff) << 8 | rgba >> 24;
    const QString color = QString("0x%1").arg(abgr, 8, 16, QChar('0'));
    std::string text = "start\nline\naltitudeunits m\nlinewidth " + std::to_string(width) +
                       "\nlinecolor hex " + color.toStdString() + '\n';
    for (const PIData::PIDataPoint& place : places)
        text += "lla " + UTILS::writeNumber(place.latRad / degree) + ' ' +
                UTILS::writeNumber(place.lonRad / degree) + ' ' + UTILS::writeNumber(place.altMeters) + '\n';
    return parse(text + "end\n");
}

void OverlayFiles::platformChanged(std::uint64_t id) {
    for (const LoadedOverlay* overlay : handles_.all<LoadedOverlay>())
        if (overlay->platform == id) scene_.setReference(overlay->sceneId, referenceOf(scenario_, id));
}

void OverlayFiles::platformRemoved(std::uint64_t id) {
    bool changed = false;
    for (LoadedOverlay* overlay : handles_.all<LoadedOverlay>()) {
        if (overlay->platform != id) continue;
        overlay->platform = 0;
        scene_.setReference(overlay->sceneId, std::nullopt);
        changed = changed || !overlay->isStream();
    }
    if (changed) emit filesChanged();
}

}  // namespace sandbox
