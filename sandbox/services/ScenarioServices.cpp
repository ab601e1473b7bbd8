#include <cmath>

#include "geo/Angles.h"
#include "sandbox/Host.h"
#include "sandbox/services/Services.h"

namespace sandbox {

using halCore::kHalfPi;

namespace {

using Id = PIServerFunctions_t;

bool isPlace(const PIData::PIDataPoint& point) {
    return std::abs(point.latRad) <= kHalfPi && std::isfinite(point.lonRad) && std::isfinite(point.altMeters);
}

void addQuestions(Host& host) {
    ServiceTable& table = host.services();
    table.addCatchall(Id::IsScenarioInitialized, "scenario initialized", {},
                      [](ServiceCall&, Arguments&) -> PIServiceResult { return 1; });
    table.addCatchall(Id::GetReferenceYear, "reference year", {},
                      [](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          arguments.give(std::int64_t{Scenario::kReferenceYear});
                          return 1;
                      });
    table.addCatchall(Id::GetScenarioCoordReferenceFrame, "reference frame", {},
                      [](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          arguments.give(static_cast<std::int64_t>(PIData::CoordReferenceFrame::Geodetic));
                          return 1;
                      });
    table.addSelected(Id::Clock, PISelector::Clock::Begin, "begin of the clock", {},
                      [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          arguments.give(host.scenario().beginTime());
                          return 1;
                      });
    table.addSelected(Id::Clock, PISelector::Clock::VisualTime, "visual time", {},
                      [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          arguments.give(host.scenario().time());
                          return 1;
                      });
    table.addCatchall(Id::GetPlatformList, "platforms", {},
                      [&host](ServiceCall&, Arguments& arguments) -> PIServiceResult {
                          for (const auto& [id, platform] : host.scenario().platforms())
                              arguments.give(static_cast<std::int64_t>(id));
                          return 1;
                      });
}

void addPlatformData(Host& host) {
    ServiceTable& table = host.services();
    // An id that is gone is no misuse: a plug-in learns of it by asking.
    table.add<PI_DATA_STRUCT>(Id::GetHeader, "platform header",
                              [&host](ServiceCall& call, PI_DATA_STRUCT& record) -> PIServiceResult {
                                  auto* request = static_cast<PIData::HeaderRequest*>(record.pointer);
                                  if (!request) return call.misuse("no request");
                                  const Scenario::Platform* platform = host.scenario().find(request->id);
                                  if (!platform) return 0;
                                  request->header = {request->id, platform->name, platform->icon.text()};
                                  return 1;
                              });
    table.add<PI_DATA_STRUCT>(Id::GetDataPoint, "data point",
                              [&host](ServiceCall& call, PI_DATA_STRUCT& record) -> PIServiceResult {
                                  auto* request = static_cast<PIData::DataPointRequest*>(record.pointer);
                                  if (!request) return call.misuse("no request");
                                  if (!std::isfinite(request->timeSeconds))
                                      return call.misuse("not a finite number");
                                  const auto point = host.scenario().at(request->id, request->timeSeconds);
                                  if (!point) return 0;
                                  request->point = *point;
                                  return 1;
                              });
}

void addChanges(Host& host) {
    ServiceTable& table = host.services();
    table.addSelected(Id::CreateEntity, PISelector::CreateEntity::Platform, "create platform",
                      {.pointers = 1}, [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          const auto* request = arguments.pointer<const PIData::CreatePlatformRequest>(0);
                          if (!request) return call.misuse("no request");
                          if (request->frame != PIData::CoordReferenceFrame::Geodetic)
                              return call.misuse("unknown reference frame");
                          if (!isPlace(request->point)) return call.misuse("not a place on the earth");
                          const std::uint64_t id =
                              host.scenario().add(request->header, request->point, &call.plugin());
                          arguments.give(static_cast<std::int64_t>(id));
                          return 1;
                      });
    table.addCatchall(Id::RemoveEntity, "remove platform", {.integers = 1},
                      [&host](ServiceCall& call, Arguments& arguments) -> PIServiceResult {
                          const auto id = static_cast<std::uint64_t>(arguments.integer(0));
                          if (host.scenario().remove(id)) return 1;
                          return call.misuse(QString("unknown platform %1").arg(id));
                      });
}

}  // namespace

void addScenarioServices(Host& host) {
    addQuestions(host);
    addPlatformData(host);
    addChanges(host);
}

}  // namespace sandbox
