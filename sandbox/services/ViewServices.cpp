#include <cmath>

#include "globe/GlobeView.h"
#include "sandbox/Host.h"
#include "sandbox/services/Services.h"

namespace sandbox {

namespace {

using Id = PIServerFunctions_t;

void givePosition(Arguments& arguments, const halCore::Vec3& position) {
    arguments.give(position.lat());
    arguments.give(position.lon());
    arguments.give(position.alt());
}

bool areFinite(const ServiceCall& call, const Arguments& arguments) {
    if (std::isfinite(arguments.real(0)) && std::isfinite(arguments.real(1)) &&
        std::isfinite(arguments.real(2)))
        return true;
    call.misuse("not a finite number");
    return false;
}

void addCamera(Host& host) {
    using Selector = PISelector::Camera;
    ServiceTable& table = host.services();
    table.addSelected(Id::Camera, Selector::EyePosition, "eye position", {},
                      [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          givePosition(arguments, host.view().camera().eyePosition());
                          return 1;
                      });
    table.addSelected(Id::Camera, Selector::SetCenter, "camera centre", {.reals = 3},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          if (!areFinite(call, arguments)) return 0;
                          host.view().setCenter({arguments.real(0), arguments.real(1), arguments.real(2)});
                          return 1;
                      });
    table.addSelected(Id::Camera, Selector::SetRangeAzimuthElevation, "camera range", {.reals = 3},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          if (!areFinite(call, arguments)) return 0;
                          host.view().setRangeAzimuthElevation(arguments.real(0), arguments.real(1),
                                                               arguments.real(2));
                          return 1;
                      });
}

bool isDatum(const ServiceCall& call, std::int64_t datum) {
    if (datum == static_cast<std::int64_t>(PIData::PIVerticalDatum_t::WGS84) ||
        datum == static_cast<std::int64_t>(PIData::PIVerticalDatum_t::MeanSeaLevel))
        return true;
    call.misuse(QString("unknown vertical datum %1").arg(datum));
    return false;
}

PIServiceResult giveGround(Host& host, Arguments& arguments, double x, double y) {
    const auto ground = host.view().camera().pick(x, y);
    if (!ground) return 0;
    givePosition(arguments, *ground);
    return 1;
}

void addCursor(Host& host) {
    using Selector = PISelector::Cursor;
    ServiceTable& table = host.services();
    table.addSelected(Id::Cursor, Selector::LlaAtPixel, "position at a pixel", {.integers = 3},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          if (!isDatum(call, arguments.integer(2))) return 0;
                          return giveGround(host, arguments, static_cast<double>(arguments.integer(0)),
                                            static_cast<double>(arguments.integer(1)));
                      });
    table.addSelected(Id::Cursor, Selector::LlaAtCursor, "position at the cursor", {.integers = 1},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          const auto cursor = host.cursor();
                          if (!isDatum(call, arguments.integer(0)) || !cursor) return 0;
                          return giveGround(host, arguments, cursor->x(), cursor->y());
                      });
    table.addSelected(Id::Cursor, Selector::PlatformAtCursor, "platform at the cursor", {},
                      [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          const auto cursor = host.cursor();
                          const auto id =
                              cursor ? host.view().platformAt(cursor->x(), cursor->y()) : std::nullopt;
                          arguments.give(static_cast<std::int64_t>(id.value_or(0)));
                          return 1;
                      });
}

void addMouse(Host& host) {
    using Selector = PISelector::MouseGrab;
    ServiceTable& table = host.services();
    table.addSelected(Id::MouseGrab, Selector::Grab, "grab mouse", {},
                      [&host](ServiceCall& call, Arguments&) -> PIServiceResult {
                          ++host.registrations().mouseGrabs[&call.plugin()];
                          host.updateMouseGrab();
                          return 1;
                      });
    table.addSelected(Id::MouseGrab, Selector::Ungrab, "ungrab mouse", {},
                      [&host](ServiceCall& call, Arguments&) -> PIServiceResult {
                          auto& grabs = host.registrations().mouseGrabs;
                          const auto at = grabs.find(&call.plugin());
                          if (at == grabs.end()) return call.misuse("ungrabbed without a grab");
                          if (--at->second == 0) grabs.erase(at);
                          host.updateMouseGrab();
                          return 1;
                      });
}

}  // namespace

void addViewServices(Host& host) {
    addCamera(host);
    addCursor(host);
    addMouse(host);
    // The only service without a record.
    host.services().addBare(Id::ForceRedraw, "redraw",
                            [&host](ServiceCall& call, void* record) -> PIServiceResult {
                                if (record) return call.misuse("a record where there is none");
                                host.view().requestRedraw();
                                return 1;
                            });
}

}  // namespace sandbox
