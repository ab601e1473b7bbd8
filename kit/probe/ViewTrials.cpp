#include <algorithm>
#include <cmath>

#include "kit/probe/Trials.h"

namespace probe {

namespace {

constexpr double kRightAngle = 1.5707963267948966;
constexpr double kLatitude = 0.17, kLongitude = 0.35, kRange = 2e6;
constexpr std::int64_t kEllipsoid = 1;

bool isPlace(const std::vector<double>& reals) {
    return reals.size() == 3 && std::abs(reals[0]) <= kRightAngle &&
           std::abs(reals[1]) <= 4.0 * kRightAngle && std::isfinite(reals[2]);
}

/// North and east of the place that is looked at, in radians of latitude and longitude, and the altitude.
bool isNear(const std::vector<double>& place, double north, double east, double up, double within) {
    return isPlace(place) && std::abs(place[0] - kLatitude - north) < within &&
           std::abs(place[1] - kLongitude - east) < within && std::abs(place[2] - up) < 0.01 * kRange;
}

/// \return whether the view is from straight above the place
bool tryCamera(Trial& trial) {
    using Op = PISelector::Camera;
    const auto eye = [] { return ask(Id::Camera, Op::EyePosition); };
    const Answer first = eye();
    if (trial.serves(Id::Camera, "tells the eye's position", !first.isRefused()))
        trial.expect(Id::Camera, "it is in radians and metres", isPlace(first.doubles), first);
    const Answer centre = ask(Id::Camera, Op::SetCenter, {.doubles = {kLatitude, kLongitude, 0.0}});
    const bool looks = trial.serves(Id::Camera, "looks at a place", centre.result != 0);
    const auto view = [](double azimuth, double elevation) {
        return ask(Id::Camera, Op::SetRangeAzimuthElevation, {.doubles = {kRange, azimuth, elevation}})
            .result;
    };
    if (!trial.serves(Id::Camera, "looks from a range, azimuth and elevation", view(0.0, kRightAngle) != 0) ||
        !looks || first.isRefused())
        return false;
    const Answer above = eye();
    trial.expect(Id::Camera, "straight down, the eye is that far above that place",
                 isNear(above.doubles, 0.0, 0.0, kRange, 1e-3), above);
    // Half way down the eye is behind the place: to its south when it looks north, and to its west when it
    // looks east.
    constexpr double kSlant = kRightAngle / 2.0, kEarth = 6371e3;
    const double aside = kRange * std::cos(kSlant), up = kEarth + kRange * std::sin(kSlant);
    const double behind = std::atan2(aside, up), altitude = std::hypot(aside, up) - kEarth;
    constexpr double kWithin = 0.03;  // the earth is no sphere, and a parallel no great circle
    view(0.0, kSlant);
    const Answer north = eye();
    trial.expect(Id::Camera, "with an azimuth of 0 it looks north, from the south",
                 isNear(north.doubles, -behind, 0.0, altitude, kWithin), north);
    view(kRightAngle, kSlant);
    const Answer east = eye();
    trial.expect(Id::Camera, "azimuths are clockwise: at a right angle it looks east, from the west",
                 isNear(east.doubles, 0.0, -behind, altitude, kWithin), east);
    view(0.0, kRightAngle);
    return true;
}

/// 0 is none; a host that lists no platforms cannot be asked.
bool isPlatform(std::int64_t id) {
    const Answer list = ask(Id::GetPlatformList, Arguments{});
    return id == 0 || list.isRefused() || std::ranges::find(list.integers, id) != list.integers.end();
}

/// \param above whether the view is known to be from straight above, with the north up
void tryCursor(Trial& trial, bool above) {
    using Op = PISelector::Cursor;
    const auto at = [](std::int64_t x, std::int64_t y) {
        return ask(Id::Cursor, Op::LlaAtPixel, {.integers = {x, y, kEllipsoid}});
    };
    // Somewhere in the middle of whatever view there is.
    const Answer place = at(400, 300), east = at(440, 300), south = at(400, 340);
    if (!trial.serves(Id::Cursor, "tells the place at a pixel", !place.isRefused())) return;
    for (const Answer* const each : {&place, &east, &south})
        trial.expect(Id::Cursor, "it is in radians, at altitude 0",
                     isPlace(each->doubles) && std::abs(each->doubles[2]) < 1e-3, *each);
    trial.expect(Id::Cursor, "another pixel is another place",
                 place.doubles != east.doubles && place.doubles != south.doubles, east);
    if (above && isPlace(place.doubles) && isPlace(east.doubles) && isPlace(south.doubles)) {
        trial.expect(Id::Cursor, "x grows to the right, and y downwards",
                     east.doubles[1] > place.doubles[1] && south.doubles[0] < place.doubles[0], south);
        // What can be seen from there ends 0.71 radians away.
        constexpr double kHorizon = 0.75;
        trial.expect(Id::Cursor, "what is seen lies below the eye",
                     std::abs(place.doubles[0] - kLatitude) < kHorizon &&
                         std::abs(place.doubles[1] - kLongitude) < kHorizon / std::cos(kHorizon),
                     place);
    }
    const Answer beside = at(-100000, -100000);
    trial.expect(Id::Cursor, "a pixel beside the earth has no place", beside.isRefused(), beside);
    const Answer platform = ask(Id::Cursor, Op::PlatformAtCursor);
    if (trial.serves(Id::Cursor, "tells the platform at the cursor", !platform.isRefused()))
        trial.expect(Id::Cursor, "that is one integer, 0 or the id of a platform",
                     platform.integers.size() == 1 && isPlatform(platform.integers[0]), platform);
}

void tryScreenText(Trial& trial) {
    using Op = PISelector::ScreenText;
    const Answer text = ask(Id::ScreenText, Op::Add,
                            {.strings = {"ScreenText\nEnabled FLOAT64 1.0\nText STRING Probed\nFont STRING "
                                         "arial.ttf 12\nPosX FLOAT64 10\nPosY FLOAT64 10\nTextColor STRING "
                                         "0xffffffff\nHAlign STRING L\nVAlign STRING T\n"}});
    if (!trial.serves(Id::ScreenText, "shows a text in the view", text.handle() != nullptr)) return;
    const auto remove = [&] { return ask(Id::ScreenText, Op::Remove, {.pointers = {text.handle()}}).result; };
    if (trial.serves(Id::ScreenText, "removes it", remove() != 0))
        trial.refuses(Id::ScreenText, "a text that is gone", remove());
}

class MenuObserver final : public PIHALVIS::ContextMenuCallbackV3 {
  public:
    void menuRequested(const std::string&, const PIHALVIS::ContextMenuData*, void*) override {}
};

void tryContextMenus(Trial& trial) {
    using Op = PISelector::ContextMenu;
    static MenuObserver observer;
    const auto tell = [](Op op) {
        void* const pointer = static_cast<PIHALVIS::ContextMenuCallbackV3*>(&observer);
        return ask(Id::ContextMenu, op, {.pointers = {pointer}}).result;
    };
    if (!trial.serves(Id::ContextMenu, "takes an observer of context menus", tell(Op::Register) != 0)) return;
    trial.refuses(Id::ContextMenu, "an item for a menu that is not open",
                  ask(Id::ContextMenu, Op::AddItem,
                      {{1, 1}, {}, {"Probed"}, {strange(), callback([](PIObject*, void*) {})}})
                      .result);
    if (trial.serves(Id::ContextMenu, "forgets it", tell(Op::Remove) != 0))
        trial.refuses(Id::ContextMenu, "to forget one that it does not have", tell(Op::Remove));
}

}  // namespace

bool tryView(Trial& trial) {
    const bool above = tryCamera(trial);
    tryCursor(trial, above);
    tryScreenText(trial);
    tryContextMenus(trial);
    return above;
}

void tryMiddle(Trial& trial, int width, int height) {
    const Answer middle =
        ask(Id::Cursor, PISelector::Cursor::LlaAtPixel, {.integers = {width / 2, height / 2, kEllipsoid}});
    // Far more than the pixel beside, far less than what is seen.
    constexpr double kWithin = 0.02;
    trial.expect(Id::Cursor, "the middle of the view, in the frame's pixels, is the place that is looked at",
                 isNear(middle.doubles, 0.0, 0.0, 0.0, kWithin), middle);
}

}  // namespace probe
