#include <algorithm>
#include <cmath>

#include "kit/probe/Trials.h"

namespace probe {

Seen seen;

namespace {

constexpr double kLatitude = 0.2, kLongitude = -0.3, kAltitude = 1500.0, kHeading = 0.5;

PIData::CreatePlatformRequest requestAt(double latitude, double longitude) {
    PIData::CreatePlatformRequest request;
    request.header.name = "HostProbe's platform";
    request.point.latRad = latitude;
    request.point.lonRad = longitude;
    request.point.altMeters = kAltitude;
    request.point.headingRad = kHeading;
    return request;
}
Answer create(PIData::CreatePlatformRequest request) {
    return ask(Id::CreateEntity, PISelector::CreateEntity::Platform, {.pointers = {&request}});
}
PIServiceResult remove(std::int64_t id) {
    return ask(Id::RemoveEntity, {.integers = {id}}).result;
}
std::optional<PIData::PIPlatformHeader> headerOf(std::int64_t id) {
    PIData::HeaderRequest request;
    request.id = static_cast<std::uint64_t>(id);
    if (!call<PI_DATA_STRUCT>(Id::GetHeader, static_cast<void*>(&request))) return std::nullopt;
    return request.header;
}
bool isListed(std::int64_t id) {
    const Answer list = ask(Id::GetPlatformList, Arguments{});
    return std::ranges::find(list.integers, id) != list.integers.end();
}

/// \return the time that is shown
double tryClock(Trial& trial) {
    using Op = PISelector::Clock;
    const Answer shown = ask(Id::Clock, Op::VisualTime);
    if (!trial.serves(Id::Clock, "tells the time that is shown", !shown.isRefused())) return 0.0;
    // A scenario lasts no ten years, so these are no milliseconds, and do not count from 1970.
    constexpr double kLongest = 10 * 366 * 86400.0;
    const auto isTime = [&](const Answer& time) {
        return time.doubles.size() == 1 && std::abs(time.doubles[0]) < kLongest;
    };
    trial.expect(Id::Clock, "it is one number of seconds since the start of the reference year",
                 isTime(shown), shown);
    const Answer begin = ask(Id::Clock, Op::Begin);
    if (trial.serves(Id::Clock, "tells the scenario's begin", !begin.isRefused()))
        trial.expect(Id::Clock, "that is such a number, too, and not after what is shown",
                     isTime(begin) && isTime(shown) && begin.doubles[0] <= shown.doubles[0], begin);
    return shown.doubles.empty() ? 0.0 : shown.doubles.front();
}

/// Between the platform and another one.
void tryLine(Trial& trial, std::int64_t from) {
    using Op = PISelector::AnimatedLine;
    const auto to = createPlatform(kLatitude, kLongitude + 0.01);
    if (!to) return;
    trial.expect(Id::CreateEntity, "another one has another id", *to != from, std::to_string(*to));
    if (*to == from) return;
    const auto draw = [&](std::int64_t other) {
        return ask(Id::AnimatedLine, Op::Create, {.integers = {from, other, 0xff0000ff}});
    };
    const Answer line = draw(*to);
    if (trial.serves(Id::AnimatedLine, "draws an animated line", line.handle() != nullptr)) {
        const auto erase = [&] {
            return ask(Id::AnimatedLine, Op::Remove, {.pointers = {line.handle()}}).result;
        };
        if (trial.serves(Id::AnimatedLine, "removes it", erase() != 0))
            trial.refuses(Id::AnimatedLine, "a line that is gone", erase());
    }
    if (remove(*to)) trial.refuses(Id::AnimatedLine, "a line to a platform that is gone", draw(*to).result);
}

/// What the host tells of the platform that was made.
void tryData(Trial& trial, std::int64_t id, double time) {
    const PIData::CreatePlatformRequest given = requestAt(kLatitude, kLongitude);
    const auto header = headerOf(id);
    if (trial.serves(Id::GetHeader, "tells a platform's header", header.has_value())) {
        trial.expect(Id::GetHeader, "it has the name that was given", header->name == given.header.name,
                     header->name);
        trial.expect(Id::GetHeader, "it has its id", header->id == static_cast<std::uint64_t>(id),
                     std::to_string(header->id));
    }
    PIData::DataPointRequest request;
    request.id = static_cast<std::uint64_t>(id);
    request.timeSeconds = time;
    if (!trial.serves(Id::GetDataPoint, "tells where a platform is",
                      call<PI_DATA_STRUCT>(Id::GetDataPoint, static_cast<void*>(&request)) != 0))
        return;
    const PIData::PIDataPoint& point = request.point;
    trial.expect(Id::GetDataPoint, "it is where it was put, in radians and metres",
                 std::abs(point.latRad - kLatitude) < 1e-9 && std::abs(point.lonRad - kLongitude) < 1e-9 &&
                     std::abs(point.altMeters - kAltitude) < 1e-3,
                 std::to_string(point.latRad) + " " + std::to_string(point.lonRad) + " " +
                     std::to_string(point.altMeters));
    trial.expect(Id::GetDataPoint, "it has the heading that was given",
                 std::abs(point.headingRad - kHeading) < 1e-9, std::to_string(point.headingRad));
    trial.expect(Id::GetDataPoint, "it is of the time that was asked for",
                 std::abs(point.timeSeconds - time) < 1e-3, std::to_string(point.timeSeconds));
}

/// PlatformAdded may come from inside the call, or later.
void awaitAdded(Trial& trial, std::uint64_t id) {
    Report& report = trial.report();
    const auto entry = report.add(0, "PlatformAdded tells of a new platform", Verdict::Waits);
    seen.onAdded = [&report, entry, id] {
        if (std::ranges::count(seen.added, id)) report.decide(entry, Verdict::Holds);
    };
    seen.onAdded();
}

}  // namespace

std::optional<std::int64_t> createPlatform(double latitude, double longitude) {
    const Answer made = create(requestAt(latitude, longitude));
    if (made.integers.empty() || made.integers.front() == 0) return std::nullopt;
    return made.integers.front();
}

void tryScenario(Trial& trial) {
    trial.serves(Id::IsScenarioInitialized, "says whether there is a scenario",
                 ask(Id::IsScenarioInitialized, Arguments{}).result != 0);
    const Answer year = ask(Id::GetReferenceYear, Arguments{});
    if (trial.serves(Id::GetReferenceYear, "tells the reference year", !year.isRefused()))
        trial.expect(Id::GetReferenceYear, "it is a year",
                     year.integers.size() == 1 && year.integers[0] > 1900, year);
    const double time = tryClock(trial);
    const Answer frame = ask(Id::GetScenarioCoordReferenceFrame, Arguments{});
    trial.serves(Id::GetScenarioCoordReferenceFrame, "tells the frame of positions", !frame.isRefused());
    const bool lists = trial.serves(Id::GetPlatformList, "lists platforms",
                                    !ask(Id::GetPlatformList, Arguments{}).isRefused());

    seen = {};
    const Answer made = create(requestAt(kLatitude, kLongitude));
    if (!trial.serves(Id::CreateEntity, "creates a platform", !made.isRefused())) return;
    trial.expect(Id::CreateEntity, "its id is one integer, and not 0",
                 made.integers.size() == 1 && made.integers.front() != 0, made);
    if (made.integers.empty()) return;
    const std::int64_t id = made.integers.front();
    awaitAdded(trial, static_cast<std::uint64_t>(id));
    if (lists) trial.expect(Id::GetPlatformList, "the new one is listed", isListed(id));
    tryData(trial, id, time);
    tryLine(trial, id);
    seen.removed.clear();
    bool wasThere = false;
    seen.onRemoved = [&] { wasThere |= headerOf(id).has_value(); };
    const bool removed = remove(id) != 0;
    seen.onRemoved = {};
    if (!trial.serves(Id::RemoveEntity, "removes a platform", removed)) return;
    trial.expect(Id::RemoveEntity, "EntityRemoved comes from inside the call",
                 seen.removed == std::vector{static_cast<std::uint64_t>(id)},
                 std::to_string(seen.removed.size()) + " times");
    trial.expect(Id::RemoveEntity, "the platform that EntityRemoved tells of is gone then", !wasThere);
    trial.refuses(Id::RemoveEntity, "a platform that is gone", remove(id));
    trial.refuses(Id::GetHeader, "the header of one that is gone", headerOf(id).has_value());
    PIData::DataPointRequest request;
    request.id = static_cast<std::uint64_t>(id);
    request.timeSeconds = time;
    trial.refuses(Id::GetDataPoint, "the place of one that is gone",
                  call<PI_DATA_STRUCT>(Id::GetDataPoint, static_cast<void*>(&request)));
    if (lists) trial.expect(Id::GetPlatformList, "one that is gone is not listed", !isListed(id));
}

}  // namespace probe
