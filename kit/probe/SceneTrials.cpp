#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "kit/probe/Trials.h"

namespace probe {

Seen seen;

namespace {

constexpr double kRightAngle = 1.5707963267948966;
constexpr const char* kOverlay =
    "version 2\nstart\naltitudeunits m\nrangeunits m\ncircle\ncenterlla 10 20 0\nradius 500\nend\n";

bool isPlace(const std::vector<double>& reals) {
    return reals.size() == 3 && std::abs(reals[0]) <= kRightAngle &&
           std::abs(reals[1]) <= 4.0 * kRightAngle && std::isfinite(reals[2]);
}

class OverlayObserver final : public PIHALVIS::ZELEventObserver {
  public:
    void addedZEL(void* overlay) override { added.push_back(overlay); }
    void removedZEL(void* overlay) override { removed.push_back(overlay); }
    std::vector<void*> added, removed;
};

class MenuObserver final : public PIHALVIS::ContextMenuCallbackV3 {
  public:
    void menuRequested(const std::string&, const PIHALVIS::ContextMenuData*, void*) override {}
};

using Files = PISelector::OverlayFiles;

std::string textOf(void* overlay) {
    std::ostringstream stream;
    ask(Id::OverlayFiles, Files::SerializeToStream,
        {.pointers = {overlay, static_cast<std::ostream*>(&stream)}});
    return stream.str();
}

bool isListed(void* overlay) {
    const Answer list = ask(Id::OverlayLists, PISelector::OverlayLists::Unattached);
    return std::ranges::find(list.pointers, overlay) != list.pointers.end();
}

Answer loadStream(const char* text, std::int64_t platform = 0) {
    std::istringstream stream(text);
    return ask(Id::OverlayFiles, Files::LoadStream,
               {.integers = {platform}, .pointers = {static_cast<std::istream*>(&stream)}});
}

void tryStreams(Trial& trial, OverlayObserver* observer) {
    const Answer overlay = loadStream(kOverlay);
    if (!trial.serves(Id::OverlayFiles, "loads an overlay from a stream", overlay.handle() != nullptr))
        return;
    trial.expect(Id::OverlayFiles, "its handle stands behind the arguments", true, overlay);
    const Answer lists = ask(Id::OverlayLists, PISelector::OverlayLists::Unattached);
    if (lists.result)
        trial.expect(Id::OverlayLists, "an overlay from a stream is in no list", !isListed(overlay.handle()));
    if (observer) trial.expect(Id::OverlayFiles, "observers do not hear of streams", observer->added.empty());
    trial.refuses(Id::OverlayFiles, "an empty stream", loadStream("").result);
    const Answer gone = ask(Id::OverlayFiles, Files::Unload, {.pointers = {overlay.handle()}});
    trial.expect(Id::OverlayFiles, "unloads it", gone.result != 0, gone);
    trial.refuses(Id::OverlayFiles, "an overlay that is gone",
                  ask(Id::OverlayFiles, Files::Unload, {.pointers = {overlay.handle()}}).result);
}

bool loadAndUnload(const std::string& path) {
    std::ofstream(path) << kOverlay;
    void* const overlay =
        ask(Id::OverlayFiles, Files::LoadFile, {.integers = {0, 1}, .strings = {path}}).handle();
    if (overlay) ask(Id::OverlayFiles, Files::Unload, {.pointers = {overlay}});
    std::remove(path.c_str());
    return overlay != nullptr;
}

void tryFiles(Trial& trial, OverlayObserver* observer, const std::string& path) {
    std::ofstream(path) << kOverlay;
    const Answer file = ask(Id::OverlayFiles, Files::LoadFile, {.integers = {0, 1}, .strings = {path}});
    if (!trial.serves(Id::OverlayFiles, "loads a file", file.handle() != nullptr)) return;
    void* const overlay = file.handle();
    if (observer)
        trial.expect(Id::OverlayFiles, "observers hear of it before the call returns",
                     std::ranges::count(observer->added, overlay) == 1);
    const Answer name = ask(Id::OverlayFiles, Files::FileName, {.pointers = {overlay}});
    if (trial.serves(Id::OverlayFiles, "tells an overlay's file", !name.isRefused()))
        trial.expect(Id::OverlayFiles, "it is the one that was loaded",
                     name.strings == std::vector<std::string>{path}, name);
    const Answer found = ask(Id::OverlayFiles, Files::FindByFileName, {.strings = {path}});
    if (trial.serves(Id::OverlayFiles, "finds an overlay by its file", !found.isRefused()))
        trial.expect(Id::OverlayFiles, "it is the one that was loaded", found.handle() == overlay, found);
    const Answer host = ask(Id::OverlayFiles, Files::Host, {.pointers = {overlay}});
    if (trial.serves(Id::OverlayFiles, "tells an overlay's platform", !host.isRefused()))
        trial.expect(Id::OverlayFiles, "one that is attached to none has 0",
                     host.integers == std::vector<std::int64_t>{0}, host);
    const std::string text = textOf(overlay);
    if (trial.serves(Id::OverlayFiles, "writes an overlay's text", !text.empty()))
        trial.expect(Id::OverlayFiles, "it holds the shape", text.find("circle") != std::string::npos, text);
    const Answer hidden = ask(Id::OverlayFiles, Files::Show, {.integers = {0}, .pointers = {overlay}});
    trial.serves(Id::OverlayFiles, "hides an overlay", hidden.result != 0);
    if (trial.serves(Id::OverlayLists, "lists overlays",
                     ask(Id::OverlayLists, PISelector::OverlayLists::Unattached).result != 0))
        trial.expect(Id::OverlayLists, "a file is listed, hidden or not", isListed(overlay));
    const Answer missing =
        ask(Id::OverlayFiles, Files::LoadFile, {.integers = {0, 1}, .strings = {path + ".missing"}});
    trial.expect(Id::OverlayFiles, "a file that is missing gives no handle", missing.handle() == nullptr,
                 missing);
    const Answer gone = ask(Id::OverlayFiles, Files::Unload, {.pointers = {overlay}});
    trial.expect(Id::OverlayFiles, "unloads a file", gone.result != 0, gone);
    if (observer)
        trial.expect(Id::OverlayFiles, "observers hear of that, too",
                     std::ranges::count(observer->removed, overlay) == 1);
    std::remove(path.c_str());
}

void tryCamera(Trial& trial) {
    using Op = PISelector::Camera;
    const Answer eye = ask(Id::Camera, Op::EyePosition);
    if (trial.serves(Id::Camera, "tells the eye's position", !eye.isRefused()))
        trial.expect(Id::Camera, "it is in radians and metres", isPlace(eye.doubles), eye);
    const Answer centre = ask(Id::Camera, Op::SetCenter, {.doubles = {0.17, 0.35, 0.0}});
    trial.serves(Id::Camera, "looks at a place", centre.result != 0);
    const Answer view = ask(Id::Camera, Op::SetRangeAzimuthElevation, {.doubles = {2e6, 0.0, kRightAngle}});
    if (!trial.serves(Id::Camera, "looks from a range and straight down", view.result != 0)) return;
    const Answer above = ask(Id::Camera, Op::EyePosition);
    if (!above.isRefused() && centre.result)
        trial.expect(Id::Camera, "the eye is then that far above that place",
                     isPlace(above.doubles) && std::abs(above.doubles[0] - 0.17) < 1e-3 &&
                         std::abs(above.doubles[1] - 0.35) < 1e-3 && std::abs(above.doubles[2] - 2e6) < 2e4,
                     above);
}

void tryCursor(Trial& trial) {
    using Op = PISelector::Cursor;
    constexpr std::int64_t kEllipsoid = 1;
    // Somewhere in the middle of whatever view there is.
    const Answer place = ask(Id::Cursor, Op::LlaAtPixel, {.integers = {400, 300, kEllipsoid}});
    if (!trial.serves(Id::Cursor, "tells the place at a pixel", !place.isRefused())) return;
    const Answer east = ask(Id::Cursor, Op::LlaAtPixel, {.integers = {440, 300, kEllipsoid}});
    const Answer south = ask(Id::Cursor, Op::LlaAtPixel, {.integers = {400, 340, kEllipsoid}});
    for (const Answer* const each : {&place, &east, &south})
        trial.expect(Id::Cursor, "it is in radians, at altitude 0",
                     isPlace(each->doubles) && std::abs(each->doubles[2]) < 1e-3, *each);
    trial.expect(Id::Cursor, "another pixel is another place",
                 place.doubles != east.doubles && place.doubles != south.doubles, east);
    const Answer beside = ask(Id::Cursor, Op::LlaAtPixel, {.integers = {-100000, -100000, kEllipsoid}});
    trial.expect(Id::Cursor, "a pixel beside the earth has no place", beside.isRefused(), beside);
    const Answer platform = ask(Id::Cursor, Op::PlatformAtCursor);
    trial.serves(Id::Cursor, "tells the platform at the cursor", !platform.isRefused());
}

/// Between the platform and another one like it.
void tryLine(Trial& trial, std::int64_t from, PIData::CreatePlatformRequest& request) {
    using Op = PISelector::AnimatedLine;
    request.point.lonRad += 0.01;
    const Answer other = ask(Id::CreateEntity, PISelector::CreateEntity::Platform, {.pointers = {&request}});
    if (other.integers.empty()) return;
    const std::int64_t to = other.integers.front();
    const Answer line = ask(Id::AnimatedLine, Op::Create, {.integers = {from, to, 0xff0000ff}});
    if (trial.serves(Id::AnimatedLine, "draws an animated line", line.handle() != nullptr)) {
        const Answer gone = ask(Id::AnimatedLine, Op::Remove, {.pointers = {line.handle()}});
        trial.expect(Id::AnimatedLine, "removes it", gone.result != 0, gone);
    }
    ask(Id::RemoveEntity, {.integers = {to}});
}

}  // namespace

void tryScenario(Trial& trial) {
    trial.serves(Id::IsScenarioInitialized, "says whether there is a scenario",
                 ask(Id::IsScenarioInitialized, Arguments{}).result != 0);
    const Answer year = ask(Id::GetReferenceYear, Arguments{});
    if (trial.serves(Id::GetReferenceYear, "tells the reference year", !year.isRefused()))
        trial.expect(Id::GetReferenceYear, "it is a year",
                     year.integers.size() == 1 && year.integers[0] > 1900, year);
    const Answer clock = ask(Id::Clock, PISelector::Clock::VisualTime);
    if (trial.serves(Id::Clock, "tells the time that is shown", !clock.isRefused()))
        trial.expect(Id::Clock, "it is one number of seconds",
                     clock.doubles.size() == 1 && std::isfinite(clock.doubles[0]), clock);
    const Answer frame = ask(Id::GetScenarioCoordReferenceFrame, Arguments{});
    trial.serves(Id::GetScenarioCoordReferenceFrame, "tells the frame of positions", !frame.isRefused());
    const auto isListed = [](std::int64_t id) {
        const Answer list = ask(Id::GetPlatformList, Arguments{});
        return std::ranges::find(list.integers, id) != list.integers.end();
    };
    const bool lists = trial.serves(Id::GetPlatformList, "lists platforms",
                                    !ask(Id::GetPlatformList, Arguments{}).isRefused());

    PIData::CreatePlatformRequest request;
    request.header.name = "HostProbe's platform";
    request.point.latRad = 0.2;
    request.point.lonRad = -0.3;
    const Answer made = ask(Id::CreateEntity, PISelector::CreateEntity::Platform, {.pointers = {&request}});
    if (!trial.serves(Id::CreateEntity, "creates a platform", !made.integers.empty())) return;
    const std::int64_t id = made.integers.front();
    if (lists) trial.expect(Id::GetPlatformList, "the new one is listed", isListed(id));
    PIData::HeaderRequest header;
    header.id = static_cast<std::uint64_t>(id);
    if (trial.serves(Id::GetHeader, "tells a platform's header",
                     call<PI_DATA_STRUCT>(Id::GetHeader, static_cast<void*>(&header)) != 0))
        trial.expect(Id::GetHeader, "it has the name that was given",
                     header.header.name == request.header.name, header.header.name);
    PIData::DataPointRequest point;
    point.id = static_cast<std::uint64_t>(id);
    if (!clock.doubles.empty()) point.timeSeconds = clock.doubles.front();
    if (trial.serves(Id::GetDataPoint, "tells where a platform is",
                     call<PI_DATA_STRUCT>(Id::GetDataPoint, static_cast<void*>(&point)) != 0))
        trial.expect(Id::GetDataPoint, "it is where it was put, in radians",
                     std::abs(point.point.latRad - 0.2) < 1e-9 && std::abs(point.point.lonRad + 0.3) < 1e-9,
                     std::to_string(point.point.latRad) + " " + std::to_string(point.point.lonRad));
    tryLine(trial, id, request);
    seen = {};
    const Answer removed = ask(Id::RemoveEntity, {.integers = {id}});
    if (!trial.serves(Id::RemoveEntity, "removes a platform", removed.result != 0)) return;
    trial.expect(Id::RemoveEntity, "EntityRemoved comes from inside the call",
                 seen.removed == 1 && seen.lastRemoved == static_cast<std::uint64_t>(id),
                 std::to_string(seen.removed) + " times");
    trial.refuses(Id::RemoveEntity, "a platform that is gone",
                  ask(Id::RemoveEntity, {.integers = {id}}).result);
    trial.refuses(Id::GetHeader, "the header of one that is gone",
                  call<PI_DATA_STRUCT>(Id::GetHeader, static_cast<void*>(&header)));
    if (lists) trial.expect(Id::GetPlatformList, "one that is gone is not listed", !isListed(id));
}

void tryScene(Trial& trial, const std::string& path) {
    // A host that does not forget it calls it later.
    static OverlayObserver observer;
    observer = {};
    void* const pointer = static_cast<PIHALVIS::ZELEventObserver*>(&observer);
    const bool hears =
        trial.serves(Id::OverlayFiles, "takes an observer of overlays",
                     ask(Id::OverlayFiles, Files::RegisterObserver, {.pointers = {pointer}}).result != 0);
    tryStreams(trial, hears ? &observer : nullptr);
    tryFiles(trial, hears ? &observer : nullptr, path);
    trial.refuses(Id::OverlayFiles, "a handle that is none",
                  ask(Id::OverlayFiles, Files::Unload, {.pointers = {strange()}}).result);
    if (hears) {
        const Answer gone = ask(Id::OverlayFiles, Files::RemoveObserver, {.pointers = {pointer}});
        trial.expect(Id::OverlayFiles, "forgets the observer", gone.result != 0, gone);
        const std::size_t heard = observer.added.size();
        if (loadAndUnload(path))
            trial.expect(Id::OverlayFiles, "an observer that is forgotten hears no more",
                         observer.added.size() == heard);
    }
    tryCursor(trial);
    tryCamera(trial);

    const Answer text = ask(Id::ScreenText, PISelector::ScreenText::Add,
                            {.strings = {"ScreenText\nEnabled FLOAT64 1.0\nText STRING Probed\nFont STRING "
                                         "arial.ttf 12\nPosX FLOAT64 10\nPosY FLOAT64 10\nTextColor STRING "
                                         "0xffffffff\nHAlign STRING L\nVAlign STRING T\n"}});
    if (trial.serves(Id::ScreenText, "shows a text in the view", text.handle() != nullptr)) {
        const Answer gone =
            ask(Id::ScreenText, PISelector::ScreenText::Remove, {.pointers = {text.handle()}});
        trial.expect(Id::ScreenText, "removes it", gone.result != 0, gone);
    }
    static MenuObserver menus;
    void* const menu = static_cast<PIHALVIS::ContextMenuCallbackV3*>(&menus);
    const Answer asked = ask(Id::ContextMenu, PISelector::ContextMenu::Register, {.pointers = {menu}});
    if (trial.serves(Id::ContextMenu, "takes an observer of context menus", asked.result != 0)) {
        const Answer gone = ask(Id::ContextMenu, PISelector::ContextMenu::Remove, {.pointers = {menu}});
        trial.expect(Id::ContextMenu, "forgets it", gone.result != 0, gone);
    }
}

}  // namespace probe
