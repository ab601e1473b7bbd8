#include <ostream>

#include "sandbox/Host.h"
#include "sandbox/services/Services.h"

namespace sandbox {

namespace {

using Id = PIServerFunctions_t;
using Selector = PISelector::OverlayFiles;

/// Whether overlays may be attached to the platform; 0 stands for none.
bool isPlatform(Host& host, const ServiceCall& call, std::uint64_t id) {
    if (id == 0 || host.scenario().find(id)) return true;
    call.misuse(QString("unknown platform %1").arg(id));
    return false;
}

void addLoading(Host& host) {
    ServiceTable& table = host.services();
    table.addSelected(Id::OverlayFiles, Selector::LoadFile, "load overlay file", {.integers = 2, .texts = 1},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          const auto platform = static_cast<std::uint64_t>(arguments.integer(0));
                          if (!isPlatform(host, call, platform)) return 0;
                          auto* overlay = host.overlays().loadFile(arguments.text(0), platform,
                                                                   arguments.integer(1) != 0);
                          if (!overlay) return 0;
                          overlay->wanted = true;
                          arguments.give(overlay->handle());
                          return 1;
                      });
    table.addSelected(Id::OverlayFiles, Selector::LoadStream, "load overlay text",
                      {.integers = 1, .pointers = 1},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* stream = arguments.pointer<std::istream>(0);
                          if (!stream) return call.misuse("no stream");
                          const auto platform = static_cast<std::uint64_t>(arguments.integer(0));
                          if (!isPlatform(host, call, platform)) return 0;
                          auto* overlay = host.overlays().loadStream(*stream, platform, &call.plugin());
                          if (!overlay) return 0;
                          arguments.give(overlay->handle());
                          return 1;
                      });
}

/// An operation on the overlay whose handle is the first pointer.
template <typename Operation>
void addForOverlay(ServiceTable& table, Selector selector, const char* name, Signature signature,
                   Operation operation) {
    table.addSelected(Id::OverlayFiles, selector, name, signature,
                      [operation](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* overlay = call.object<LoadedOverlay>(arguments.pointer(0), "overlay");
                          return overlay ? operation(call, *overlay, arguments) : 0;
                      });
}

void addOverlayOperations(Host& host) {
    ServiceTable& table = host.services();
    addForOverlay(table, Selector::Unload, "unload overlay", {.pointers = 1},
                  [&host](ServiceCall&, LoadedOverlay& overlay, Arguments&) -> PIServiceResult {
                      host.overlays().unload(overlay);
                      return 1;
                  });
    addForOverlay(table, Selector::Show, "show overlay", {.integers = 1, .pointers = 1},
                  [&host](ServiceCall&, LoadedOverlay& overlay, Arguments& arguments) -> PIServiceResult {
                      host.overlays().showForPlugin(overlay, arguments.integer(0) != 0);
                      return 1;
                  });
    addForOverlay(table, Selector::FileName, "overlay's file name", {.pointers = 1},
                  [](ServiceCall&, LoadedOverlay& overlay, Arguments& arguments) -> PIServiceResult {
                      arguments.give(overlay.path);
                      return 1;
                  });
    addForOverlay(table, Selector::Host, "overlay's platform", {.pointers = 1},
                  [](ServiceCall&, LoadedOverlay& overlay, Arguments& arguments) -> PIServiceResult {
                      arguments.give(static_cast<std::int64_t>(overlay.platform));
                      return 1;
                  });
    addForOverlay(table, Selector::SerializeToStream, "overlay's text", {.pointers = 2},
                  [](ServiceCall& call, LoadedOverlay& overlay, Arguments& arguments) -> PIServiceResult {
                      auto* stream = arguments.pointer<std::ostream>(1);
                      if (!stream) return call.misuse("no stream");
                      *stream << overlay.text;
                      return stream->good() ? 1 : 0;
                  });
    table.addSelected(Id::OverlayFiles, Selector::FindByFileName, "find overlay", {.texts = 1},
                      [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          const LoadedOverlay* overlay = host.overlays().find(arguments.text(0));
                          if (!overlay) return 0;
                          arguments.give(overlay->handle());
                          return 1;
                      });
}

void addObservers(Host& host) {
    ServiceTable& table = host.services();
    table.addSelected(Id::OverlayFiles, Selector::RegisterObserver, "register overlay observer",
                      {.pointers = 1}, [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* observer = arguments.pointer<PIHALVIS::ZELEventObserver>(0);
                          if (!observer) return call.misuse("no observer");
                          if (host.overlays().addObserver(observer, &call.plugin())) return 1;
                          return call.misuse("registered already");
                      });
    table.addSelected(Id::OverlayFiles, Selector::RemoveObserver, "remove overlay observer", {.pointers = 1},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          auto* observer = arguments.pointer<PIHALVIS::ZELEventObserver>(0);
                          if (host.overlays().removeObserver(observer, &call.plugin())) return 1;
                          return call.misuse("unknown observer");
                      });
}

void addLists(Host& host) {
    using Lists = PISelector::OverlayLists;
    ServiceTable& table = host.services();
    const auto give = [&host](Arguments& arguments, std::uint64_t platform) {
        for (const LoadedOverlay* overlay : host.overlays().files())
            if (overlay->platform == platform) arguments.give(overlay->handle());
    };
    table.addSelected(Id::OverlayLists, Lists::Unattached, "unattached overlays", {},
                      [give](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          give(arguments, 0);
                          return 1;
                      });
    table.addSelected(Id::OverlayLists, Lists::Attached, "attached overlays", {.integers = 1},
                      [give](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          const auto platform = static_cast<std::uint64_t>(arguments.integer(0));
                          if (platform != 0) give(arguments, platform);
                          return 1;
                      });
}

}  // namespace

void addOverlayServices(Host& host) {
    addLoading(host);
    addOverlayOperations(host);
    addObservers(host);
    addLists(host);
}

}  // namespace sandbox
