#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <istream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <utility>

#include "common/NumberText.h"
#include "kit/HostRecords.h"

namespace kit {

namespace {

bool isPlace(double latitude, double longitude, double altitude) {
    return std::abs(latitude) <= kRightAngle && std::isfinite(longitude) && std::isfinite(altitude);
}

/// As much as this host knows of the format.
bool holdsShape(const std::string& text) {
    return text.find("start") != std::string::npos && text.find("end") != std::string::npos;
}

/// What is wrong with a screen text's record; empty for nothing. Other lines than those that it needs may be
/// more of its text.
std::string faultOfScreenText(const std::string& record) {
    std::istringstream lines(record);
    std::string line;
    if (!std::getline(lines, line) || line != "ScreenText") return "its first line is not \"ScreenText\"";
    std::map<std::string, std::string> values;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string key, type;
        words >> key >> type >> std::ws;
        std::getline(words, values[key + " " + type]);
    }
    const auto isOneOf = [](std::string_view letters) {
        return [letters](const std::string& value) {
            return value.size() == 1 && letters.find(value) != std::string_view::npos;
        };
    };
    const auto isNumber = [](const std::string& value) { return UTILS::readNumber(value).has_value(); };
    const auto isColour = [](const std::string& value) {
        return value.size() == 10 && value.starts_with("0x") &&
               value.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string::npos;
    };
    const auto isFont = [&](const std::string& value) {
        const auto blank = value.rfind(' ');
        return blank != std::string::npos && blank > 0 && isNumber(value.substr(blank + 1));
    };
    const std::pair<const char*, std::function<bool(const std::string&)>> needed[] = {
        {"Enabled FLOAT64", isNumber},     {"Text STRING", [](const std::string&) { return true; }},
        {"Font STRING", isFont},           {"PosX FLOAT64", isNumber},
        {"PosY FLOAT64", isNumber},        {"TextColor STRING", isColour},
        {"HAlign STRING", isOneOf("LCR")}, {"VAlign STRING", isOneOf("TCB")}};
    for (const auto& [name, isRight] : needed) {
        const auto found = values.find(name);
        if (found == values.end()) return std::string("its record has no line \"") + name + "\"";
        if (!isRight(found->second)) return std::string(name) + " is \"" + found->second + "\"";
    }
    return {};
}

}  // namespace

/// Calls each of those that are there now, unless it goes meanwhile.
template <typename Observer, typename Call>
void Host::forEach_(std::vector<Observer*>& all, const char* name, Call call) {
    for (Observer* const observer : std::vector(all))
        if (enter && std::ranges::find(all, observer) != all.end()) enter(name, [&] { call(*observer); });
}

PIServiceResult Host::serveScene_(Service service, void* record) {
    switch (service) {
        case Service::GetHeader: {
            auto* const request = static_cast<PIData::HeaderRequest*>(as_<PI_DATA_STRUCT>(record).pointer);
            if (!request) throw Misuse("the structure is null");
            const auto found = platforms.find(request->id);
            if (found == platforms.end()) return 0;
            request->header = found->second.header;
            return 1;
        }
        case Service::GetDataPoint: {
            auto* const request = static_cast<PIData::DataPointRequest*>(as_<PI_DATA_STRUCT>(record).pointer);
            if (!request) throw Misuse("the structure is null");
            const auto found = platforms.find(request->id);
            if (found == platforms.end()) return 0;
            request->point = found->second.point;
            request->point.timeSeconds = request->timeSeconds;
            return 1;
        }
        default:
            break;
    }
    auto& arguments = as_<PI_DATA_CATCHALL>(record);
    switch (service) {
        case Service::IsScenarioInitialized:
            return 1;
        case Service::GetReferenceYear:
            return arguments.integers.push_back(2026), 1;
        case Service::Clock:
            selector_(arguments, PISelector::Clock::VisualTime);
            return arguments.doubles.push_back(1000.0), 1;
        case Service::GetScenarioCoordReferenceFrame:
            return arguments.integers.push_back(0), 1;
        case Service::GetPlatformList:
        case Service::CreateEntity:
        case Service::RemoveEntity:
            return platform_(service, arguments);
        case Service::AnimatedLine:
            if (selector_(arguments, PISelector::AnimatedLine::Remove) == PISelector::AnimatedLine::Remove) {
                lines_.erase(known_(lines_, pointer_(arguments, 0), "animated line"));
                return 1;
            }
            integer_(arguments, 3);
            for (const std::size_t end : {1U, 2U})
                if (!platforms.contains(static_cast<std::uint64_t>(integer_(arguments, end)))) return 0;
            arguments.pointers.push_back(newHandle_());
            lines_.insert(arguments.pointers.back());
            return 1;
        case Service::Camera:
            return camera_(arguments);
        case Service::Cursor:
            return cursor_(arguments);
        case Service::OverlayFiles:
            return overlayFiles_(arguments);
        case Service::ScreenText:
            if (selector_(arguments, PISelector::ScreenText::Remove) == PISelector::ScreenText::Remove) {
                texts_.erase(known_(texts_, pointer_(arguments, 0), "screen text"));
                return 1;
            }
            if (const std::string wrong = faultOfScreenText(text_(arguments, 0)); !wrong.empty())
                throw Misuse(wrong);
            arguments.pointers.push_back(newHandle_());
            texts_.insert(arguments.pointers.back());
            return 1;
        case Service::OverlayLists: {
            using Op = PISelector::OverlayLists;
            const bool attached = selector_(arguments, Op::Attached) == Op::Attached;
            const auto id = attached ? static_cast<std::uint64_t>(integer_(arguments, 1)) : 0;
            for (const auto& [handle, overlay] : overlays)
                if (!overlay.path.empty() && overlay.platform == id) arguments.pointers.push_back(handle);
            return 1;
        }
        case Service::ContextMenu:
            return contextMenu_(arguments);
        default:
            throw Misuse("the contract has no such number");
    }
}

PIServiceResult Host::platform_(Service service, PI_DATA_CATCHALL& record) {
    if (service == Service::GetPlatformList) {
        for (const auto& [id, platform] : platforms) record.integers.push_back(static_cast<std::int64_t>(id));
        return 1;
    }
    if (service == Service::CreateEntity) {
        selector_(record, PISelector::CreateEntity::Platform);
        const auto* const request = static_cast<PIData::CreatePlatformRequest*>(pointer_(record, 0));
        if (!request) throw Misuse("the structure is null");
        const auto& point = request->point;
        if (!isPlace(point.latRad, point.lonRad, point.altMeters))
            throw Misuse("the new platform is at no place: radians and metres are wanted");
        const std::uint64_t id = platforms.empty() ? 1 : platforms.rbegin()->first + 1;
        platforms[id] = {request->header, point, true};
        platforms[id].header.id = id;
        record.integers.push_back(static_cast<std::int64_t>(id));
        if (tell) tell(PIApplicationEvents_t::PlatformAdded, id);
        return 1;
    }
    const auto id = static_cast<std::uint64_t>(integer_(record, 0));
    if (platforms.erase(id) == 0) return 0;
    for (auto& [handle, overlay] : overlays)
        if (overlay.platform == id) overlay.platform = 0;
    if (tell) tell(PIApplicationEvents_t::EntityRemoved, id);
    return 1;
}

PIServiceResult Host::camera_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::Camera;
    const Op operation = selector_(record, Op::SetRangeAzimuthElevation);
    if (operation == Op::EyePosition) {
        // On a sphere: behind the place that is looked at, and above it.
        constexpr double kEarth = 6371e3;
        const double aside = range_ * std::cos(elevation_), up = kEarth + range_ * std::sin(elevation_);
        const double behind = std::atan2(aside, up);
        const double latitude =
            std::clamp(latitude_ - behind * std::cos(azimuth_), -kRightAngle, kRightAngle);
        const double across = std::max(0.1, std::cos(latitude_));
        record.doubles.insert(
            record.doubles.end(),
            {latitude, longitude_ - behind * std::sin(azimuth_) / across, std::hypot(aside, up) - kEarth});
        return 1;
    }
    const double first = real_(record, 0), second = real_(record, 1), third = real_(record, 2);
    if (operation == Op::SetCenter && !isPlace(first, second, third))
        throw Misuse("the centre is no place: radians and metres are wanted");
    if (operation == Op::SetRangeAzimuthElevation && !(first > 0.0 && isPlace(third, second, first)))
        throw Misuse("such a view is none: range in metres, angles in radians");
    if (operation == Op::SetCenter) latitude_ = first, longitude_ = second;
    if (operation == Op::SetRangeAzimuthElevation) range_ = first, azimuth_ = second, elevation_ = third;
    return 1;
}

/// A view in which a pixel is two tenths of a milliradian, whatever the range; its left edge is beside the
/// earth.
PIServiceResult Host::cursor_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::Cursor;
    const Op operation = selector_(record, Op::PlatformAtCursor);
    if (operation == Op::PlatformAtCursor) {
        record.integers.push_back(platforms.empty() ? 0
                                                    : static_cast<std::int64_t>(platforms.begin()->first));
        return 1;
    }
    const bool atPixel = operation == Op::LlaAtPixel;
    const std::int64_t x = atPixel ? integer_(record, 1) : 400, y = atPixel ? integer_(record, 2) : 300;
    if (const std::int64_t datum = integer_(record, atPixel ? 3 : 1); datum != 1 && datum != 2)
        throw Misuse("there is no vertical datum " + std::to_string(datum));
    if (x < 5) return 0;
    constexpr double kPixel = 0.0002;
    const double north = kPixel * static_cast<double>(300 - y % 4000),
                 east = kPixel * static_cast<double>(x % 4000 - 400);
    record.doubles.insert(record.doubles.end(),
                          {std::clamp(latitude_ + north, -kRightAngle, kRightAngle), longitude_ + east, 0.0});
    return 1;
}

PIServiceResult Host::addOverlay_(PI_DATA_CATCHALL& record, Overlay overlay) {
    if (!holdsShape(overlay.text)) return 0;
    overlay.platform = static_cast<std::uint64_t>(integer_(record, 1));
    if (overlay.platform != 0 && !platforms.contains(overlay.platform)) return 0;
    void* const handle = newHandle_();
    const bool isFile = !overlay.path.empty();
    overlays[handle] = std::move(overlay);
    record.pointers.push_back(handle);
    if (isFile)
        forEach_(observers, "an observer of overlays", [&](auto& observer) { observer.addedZEL(handle); });
    return 1;
}

PIServiceResult Host::overlayFiles_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::OverlayFiles;
    const Op operation = selector_(record, Op::RemoveObserver);
    const auto read = [](std::istream& stream) {
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    switch (operation) {
        case Op::LoadStream: {
            auto* const stream = static_cast<std::istream*>(pointer_(record, 0));
            if (!stream) throw Misuse("the stream is null");
            return addOverlay_(record, {read(*stream), "", 0, true});
        }
        case Op::LoadFile: {
            const bool shown = integer_(record, 2) != 0;
            std::ifstream file(text_(record, 0));
            return addOverlay_(record, {read(file), text_(record, 0), 0, shown});
        }
        case Op::FindByFileName:
            for (const auto& [handle, overlay] : overlays)
                if (overlay.path == text_(record, 0)) return record.pointers.push_back(handle), 1;
            return 0;
        case Op::RegisterObserver:
        case Op::RemoveObserver: {
            auto* const observer = static_cast<PIHALVIS::ZELEventObserver*>(pointer_(record, 0));
            if (!observer) throw Misuse("the observer is null");
            if (std::erase(observers, observer) == 0 && operation == Op::RemoveObserver) {
                if (answer) return 0;  // it may have been refused
                throw Misuse("there is no such observer");
            }
            if (operation == Op::RegisterObserver) observers.push_back(observer);
            return 1;
        }
        default:
            break;
    }
    void* const handle = pointer_(record, 0);
    Overlay& overlay = known_(overlays, handle, "overlay")->second;
    switch (operation) {
        case Op::Unload:
            closeFile(handle);
            break;
        case Op::Show:
            overlay.shown = integer_(record, 1) != 0;
            break;
        case Op::FileName:
            record.strings.push_back(overlay.path);
            break;
        case Op::Host:
            record.integers.push_back(static_cast<std::int64_t>(overlay.platform));
            break;
        default: {
            auto* const stream = static_cast<std::ostream*>(pointer_(record, 1));
            if (!stream) throw Misuse("the stream is null");
            *stream << overlay.text;
            return stream->good() ? 1 : 0;
        }
    }
    return 1;
}

PIServiceResult Host::contextMenu_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::ContextMenu;
    const Op operation = selector_(record, Op::AddItem);
    if (operation == Op::AddItem) {
        if (!openMenu_ || pointer_(record, 0) != openMenu_) throw Misuse("that menu is not open");
        text_(record, 0);
        integer_(record, 2);
        contextItems.push_back(callback_(pointer_(record, 1)));
        return 1;
    }
    auto* const observer = static_cast<PIHALVIS::ContextMenuCallbackV3*>(pointer_(record, 0));
    if (!observer) throw Misuse("the observer is null");
    if (std::erase(contextMenus, observer) == 0 && operation == Op::Remove) {
        if (answer) return 0;  // it may have been refused
        throw Misuse("there is no such observer");
    }
    if (operation == Op::Register) contextMenus.push_back(observer);
    return 1;
}

void Host::openFile(const std::string& path) {
    std::ifstream file(path);
    PI_DATA_CATCHALL record;
    record.integers = {0, 0};
    addOverlay_(record, {std::string(std::istreambuf_iterator<char>(file), {}), path, 0, true});
}

void Host::closeFile(void* overlay) {
    const auto found = overlays.find(overlay);
    if (found == overlays.end()) return;
    const bool isFile = !found->second.path.empty();
    overlays.erase(found);
    if (isFile)
        forEach_(observers, "an observer of overlays", [&](auto& observer) { observer.removedZEL(overlay); });
}

void Host::requestMenu(void* overlay) {
    PIHALVIS::ZelMenuData data;
    data.overlays = {overlay};
    int menu = 0;
    void* const before = std::exchange(openMenu_, &menu);
    // Of something else, about which there is nothing to tell.
    forEach_(contextMenus, "an observer of context menus",
             [&](auto& observer) { observer.menuRequested("Others", nullptr, &menu); });
    contextItems.clear();
    forEach_(contextMenus, "an observer of context menus", [&](auto& observer) {
        observer.menuRequested(PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME, &data, &menu);
    });
    openMenu_ = before;
}

}  // namespace kit
