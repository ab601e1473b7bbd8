#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "kit/probe/Trials.h"

namespace probe {

const char* const kOverlay =
    "version 2\nstart\naltitudeunits m\nrangeunits m\ncircle\ncenterlla 10 20 0\nradius 500\nend\n"
    "start\naltitudeunits m\nrangeunits m\ncircle\ncenterlla 10.1 20.1 0\nradius 600\nend\n";

namespace {

using Files = PISelector::OverlayFiles;
using Lists = PISelector::OverlayLists;

class Observer final : public PIHALVIS::ZELEventObserver {
  public:
    void addedZEL(void* overlay) override {
        added.push_back(overlay);
        named.push_back(ask(Id::OverlayFiles, Files::FileName, {.pointers = {overlay}}).strings);
    }
    void removedZEL(void* overlay) override { removed.push_back(overlay); }
    std::vector<void*> added, removed;
    std::vector<std::vector<std::string>> named;  ///< the file of what was added, as the host tells it then
};

Answer does(Files operation, void* overlay) {
    return ask(Id::OverlayFiles, operation, {.pointers = {overlay}});
}
Answer loadStream(const char* text, std::int64_t platform = 0) {
    std::istringstream stream(text);
    return ask(Id::OverlayFiles, Files::LoadStream,
               {.integers = {platform}, .pointers = {static_cast<std::istream*>(&stream)}});
}
Answer loadFile(const std::string& path, std::int64_t platform = 0) {
    std::ofstream(path) << kOverlay;
    return ask(Id::OverlayFiles, Files::LoadFile, {.integers = {platform, 1}, .strings = {path}});
}
bool isIn(const Answer& list, void* overlay) {
    return std::ranges::find(list.pointers, overlay) != list.pointers.end();
}
bool isUnattached(void* overlay) {
    return isIn(ask(Id::OverlayLists, Lists::Unattached), overlay);
}

/// How often a line of the text is the word.
std::ptrdiff_t linesOf(const std::string& text, const std::string& word) {
    std::istringstream stream(text);
    std::ptrdiff_t count = 0;
    for (std::string first, line; std::getline(stream, line); first.clear())
        count += std::istringstream(line) >> first && first == word;
    return count;
}

void tryText(Trial& trial, void* overlay) {
    std::ostringstream stream;
    const auto write = [&](std::ostream* into) {
        return ask(Id::OverlayFiles, Files::SerializeToStream, {.pointers = {overlay, into}}).result;
    };
    if (!trial.serves(Id::OverlayFiles, "writes an overlay's text", write(&stream) != 0)) return;
    const std::string text = stream.str();
    bool whole = true;
    for (const char* const word : {"start", "circle", "end"}) whole &= linesOf(text, word) == 2;
    trial.expect(Id::OverlayFiles, "it holds both shapes, whole and once", whole, text);
    std::ostream broken(nullptr);
    trial.refuses(Id::OverlayFiles, "to have written all where nothing could be", write(&broken));
}

/// \param observer null when the host takes none
void tryStreams(Trial& trial, const Observer* observer) {
    const Answer overlay = loadStream(kOverlay);
    if (!trial.serves(Id::OverlayFiles, "loads an overlay from a stream", overlay.handle() != nullptr))
        return;
    trial.expect(Id::OverlayFiles, "its handle stands behind the arguments", true, overlay);
    trial.expect(Id::OverlayLists, "an overlay from a stream is in no list", !isUnattached(overlay.handle()));
    if (observer) trial.expect(Id::OverlayFiles, "observers do not hear of streams", observer->added.empty());
    trial.refuses(Id::OverlayFiles, "an empty stream", loadStream("").result);
    if (!trial.serves(Id::OverlayFiles, "unloads it", does(Files::Unload, overlay.handle()).result != 0))
        return;
    trial.refuses(Id::OverlayFiles, "an overlay that is gone", does(Files::Unload, overlay.handle()).result);
}

void tryFiles(Trial& trial, const Observer* observer, const std::string& path) {
    const Answer file = loadFile(path);
    if (!trial.serves(Id::OverlayFiles, "loads a file", file.handle() != nullptr)) return;
    void* const overlay = file.handle();
    if (observer)
        trial.expect(Id::OverlayFiles, "observers hear of it before the call returns",
                     std::ranges::count(observer->added, overlay) == 1);
    const Answer name = does(Files::FileName, overlay);
    if (trial.serves(Id::OverlayFiles, "tells an overlay's file", !name.isRefused())) {
        if (observer)
            trial.expect(Id::OverlayFiles, "it tells it already when observers hear of it",
                         std::ranges::count(observer->named, name.strings) != 0);
        trial.expect(Id::OverlayFiles, "it is the one that was loaded",
                     name.strings == std::vector<std::string>{path}, name);
    }
    const Answer found = ask(Id::OverlayFiles, Files::FindByFileName, {.strings = {path}});
    if (trial.serves(Id::OverlayFiles, "finds an overlay by its file", !found.isRefused()))
        trial.expect(Id::OverlayFiles, "it is the one that was loaded", found.handle() == overlay, found);
    const Answer host = does(Files::Host, overlay);
    if (trial.serves(Id::OverlayFiles, "tells an overlay's platform", !host.isRefused()))
        trial.expect(Id::OverlayFiles, "one that is attached to none has 0",
                     host.integers == std::vector<std::int64_t>{0}, host);
    tryText(trial, overlay);
    const Answer hidden = ask(Id::OverlayFiles, Files::Show, {.integers = {0}, .pointers = {overlay}});
    trial.serves(Id::OverlayFiles, "hides an overlay", hidden.result != 0);
    if (trial.serves(Id::OverlayLists, "lists overlays",
                     ask(Id::OverlayLists, Lists::Unattached).result != 0))
        trial.expect(Id::OverlayLists, "a file is listed, hidden or not", isUnattached(overlay));
    const Answer missing =
        ask(Id::OverlayFiles, Files::LoadFile, {.integers = {0, 1}, .strings = {path + ".missing"}});
    trial.expect(Id::OverlayFiles, "a file that is missing gives no handle", missing.handle() == nullptr,
                 missing);
    if (!trial.serves(Id::OverlayFiles, "unloads a file", does(Files::Unload, overlay).result != 0)) return;
    if (observer)
        trial.expect(Id::OverlayFiles, "observers hear of that, too",
                     std::ranges::count(observer->removed, overlay) == 1);
}

/// Where an overlay has a platform, and the platform goes.
void tryAttached(Trial& trial, const Observer* observer, const std::string& path) {
    // No host has given that out.
    constexpr std::int64_t kNone = 0x7ead7ead7ead;
    for (const Answer& answer : {loadFile(path, kNone), loadStream(kOverlay, kNone)}) {
        trial.expect(Id::OverlayFiles, "an unknown platform loads nothing", answer.handle() == nullptr,
                     answer);
        if (answer.handle()) does(Files::Unload, answer.handle());
    }
    const auto id = createPlatform(0.3, 0.4);
    if (!id) return;
    void* const file = loadFile(path, *id).handle();
    void* const stream = loadStream(kOverlay, *id).handle();
    const auto isOf = [&](const char* expectation, void* overlay, std::int64_t platform) {
        const Answer host = does(Files::Host, overlay);
        trial.expect(Id::OverlayFiles, expectation, host.integers == std::vector{platform}, host);
    };
    if (file && trial.serves(Id::OverlayLists, "lists the overlays of a platform",
                             ask(Id::OverlayLists, Lists::Attached, {.integers = {*id}}).result != 0)) {
        const Answer list = ask(Id::OverlayLists, Lists::Attached, {.integers = {*id}});
        trial.expect(Id::OverlayLists, "a file is among those of its platform, and a stream is not",
                     list.pointers == std::vector{file}, list);
        trial.expect(Id::OverlayLists, "a file that has a platform is not among those that have none",
                     !isUnattached(file));
    }
    for (void* const overlay : {file, stream})
        if (overlay) isOf("an overlay is attached to the platform that was given", overlay, *id);
    if (trial.serves(Id::RemoveEntity, "removes a platform that has overlays",
                     ask(Id::RemoveEntity, {.integers = {*id}}).result != 0)) {
        if (observer)
            trial.expect(Id::RemoveEntity, "that unloads no file",
                         !std::ranges::count(observer->removed, file));
        for (void* const overlay : {file, stream})
            if (overlay) isOf("an overlay whose platform is gone stays, attached to none", overlay, 0);
        if (file && ask(Id::OverlayLists, Lists::Unattached).result)
            trial.expect(Id::OverlayLists, "it is listed so", isUnattached(file));
    }
    for (void* const overlay : {file, stream})
        if (overlay) does(Files::Unload, overlay);
}

void tryAll(Trial& trial, const std::string& path) {
    // A host that does not forget it calls it later.
    static Observer observer;
    observer = {};
    const auto tell = [](Files operation) {
        return does(operation, static_cast<PIHALVIS::ZELEventObserver*>(&observer)).result;
    };
    const bool hears =
        trial.serves(Id::OverlayFiles, "takes an observer of overlays", tell(Files::RegisterObserver) != 0);
    const Observer* const heard = hears ? &observer : nullptr;
    tryStreams(trial, heard);
    tryFiles(trial, heard, path);
    tryAttached(trial, heard, path);
    trial.refuses(Id::OverlayFiles, "a handle that is none", does(Files::Unload, strange()).result);
    if (!hears || !trial.serves(Id::OverlayFiles, "forgets the observer", tell(Files::RemoveObserver) != 0))
        return;
    const std::size_t before = observer.added.size();
    if (void* const overlay = loadFile(path).handle()) {
        does(Files::Unload, overlay);
        trial.expect(Id::OverlayFiles, "an observer that is forgotten hears no more",
                     observer.added.size() == before);
    }
    trial.refuses(Id::OverlayFiles, "to forget an observer that it does not have",
                  tell(Files::RemoveObserver));
}

}  // namespace

void tryOverlays(Trial& trial, const std::string& path) {
    tryAll(trial, path);
    std::remove(path.c_str());
}

}  // namespace probe
