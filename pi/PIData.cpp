#include "pi/PIData.h"

#include "pi/CatchallCall.h"

namespace PIData {

namespace {

using Id = PIServerFunctions_t;

template <typename Request>
PIServiceResult callWith(Id service, Request& request) {
    PI_DATA_STRUCT record(&request);
    return handle(service, &record);
}

}  // namespace

bool isScenarioInitialized() {
    PI_DATA_CATCHALL record;
    return handle(Id::IsScenarioInitialized, &record) != 0;
}

std::int32_t getReferenceYear() {
    CatchallCall call(Id::GetReferenceYear);
    call.perform();
    return static_cast<std::int32_t>(call.integerResult(0));
}

std::vector<std::uint64_t> getPlatformList() {
    CatchallCall call(Id::GetPlatformList);
    call.perform();
    std::vector<std::uint64_t> ids;
    ids.reserve(call.integerResults());
    for (std::size_t i = 0; i < call.integerResults(); ++i)
        ids.push_back(static_cast<std::uint64_t>(call.integerResult(i)));
    return ids;
}

double clockGetBegin() {
    CatchallCall call(Id::Clock, PISelector::Clock::Begin);
    call.perform();
    return call.realResult(0);
}

double clockGetVisualTime() {
    CatchallCall call(Id::Clock, PISelector::Clock::VisualTime);
    call.perform();
    return call.realResult(0);
}

std::uint64_t createPlatform(const PIPlatformHeader& header, const PIDataPoint& point,
                             CoordReferenceFrame frame) {
    CreatePlatformRequest request{header, point, frame};
    CatchallCall call(Id::CreateEntity, PISelector::CreateEntity::Platform);
    call.pointer(&request).perform();
    return static_cast<std::uint64_t>(call.integerResult(0));
}

int getHeader(std::uint64_t id, PIPlatformHeader& header) {
    HeaderRequest request{id, {}};
    if (!callWith(Id::GetHeader, request)) return 1;
    header = request.header;
    return 0;
}

CoordReferenceFrame getScenarioCoordReferenceFrame() {
    CatchallCall call(Id::GetScenarioCoordReferenceFrame);
    call.perform();
    return static_cast<CoordReferenceFrame>(call.integerResult(0));
}

void removeEntity(std::uint64_t id) {
    CatchallCall(Id::RemoveEntity).integer(static_cast<std::int64_t>(id)).perform();
}

int getDataPoint(std::uint64_t id, double timeSeconds, PIDataPoint& point) {
    DataPointRequest request{id, timeSeconds, {}};
    if (!callWith(Id::GetDataPoint, request)) return 1;
    point = request.point;
    return 0;
}

}  // namespace PIData
