#include "kit/Host.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/Printable.h"
#include "kit/HostRecords.h"

namespace kit {

namespace {

/// Two services bring a bare handle, and one nothing.
bool bringsRecord(Service service) {
    return service != Service::DialogShow && service != Service::WindowShown &&
           service != Service::ForceRedraw;
}

/// Whether the plug-in lets go of something with the call. If the host then answers falsely it may still hold
/// it.
bool isRelease(Service service, void* record) {
    if (!bringsRecord(service)) return false;
    auto* const base = static_cast<PI_DATA_BASE_CLASS*>(record);
    if (service == Service::BindWidget) {
        const auto* const bind = dynamic_cast<PI_DATA_POINTER_AND_POINTER*>(base);
        return bind && !bind->second;
    }
    if (service == Service::RemoveEntity) return true;
    const auto* const arguments = dynamic_cast<PI_DATA_CATCHALL*>(base);
    if (!arguments || arguments->integers.empty()) return false;
    const auto is = [&](auto selector) {
        return arguments->integers.front() == static_cast<std::int64_t>(selector);
    };
    switch (service) {
        case Service::MouseGrab:
            return is(PISelector::MouseGrab::Ungrab);
        case Service::Icon:
            return is(PISelector::Icon::Destroy);
        case Service::Timeout:
            return is(PISelector::Timeout::Cancel);
        case Service::Action:
            return is(PISelector::Action::Destroy);
        case Service::Service:
            return is(PISelector::Service::Unregister);
        case Service::AnimatedLine:
            return is(PISelector::AnimatedLine::Remove);
        case Service::OverlayFiles:
            return is(PISelector::OverlayFiles::Unload) || is(PISelector::OverlayFiles::RemoveObserver);
        case Service::ScreenText:
            return is(PISelector::ScreenText::Remove);
        case Service::ContextMenu:
            return is(PISelector::ContextMenu::Remove);
        default:
            return false;
    }
}

/// The first of its texts that is no UTF-8, but for the two bytes that Hands pastes; null for none.
const std::string* foreignText(void* record) {
    auto* const base = static_cast<PI_DATA_BASE_CLASS*>(record);
    std::vector<const std::string*> texts;
    const auto add = [&](const auto* known) {
        if (!known) return;
        texts.push_back(&known->text);
        if constexpr (requires { known->second; }) texts.push_back(&known->second);
    };
    add(dynamic_cast<PI_DATA_POINTER_AND_STRING*>(base));
    add(dynamic_cast<PI_DATA_POINTER_INT_AND_STRING*>(base));
    add(dynamic_cast<PI_DATA_POINTER_STRING_AND_STRING*>(base));
    add(dynamic_cast<PI_DATA_POINTER_STRING_AND_FUNCTION*>(base));
    if (const auto* const arguments = dynamic_cast<PI_DATA_CATCHALL*>(base))
        for (const std::string& text : arguments->strings) texts.push_back(&text);
    const auto found = std::ranges::find_if(texts, [](const std::string* text) {
        std::string own;
        std::ranges::copy_if(*text, std::back_inserter(own),
                             [](char c) { return c != '\xff' && c != '\xfe'; });
        return !UTILS::isUtf8(own);
    });
    return found == texts.end() ? nullptr : *found;
}

/// Whether the contract allows the service already before StartUp, and still after Close.
bool isDueAfterInit(Service service, void* record) {
    switch (service) {
        case Service::IdentityOverride:
        case Service::RegistrySetValue:
        case Service::RegistryGetValue:
            return true;
        case Service::Notify: {
            const auto* const arguments =
                dynamic_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(record));
            return arguments && !arguments->integers.empty() &&
                   arguments->integers.front() == static_cast<std::int64_t>(PISelector::Notify::Debug);
        }
        default:
            return false;
    }
}

const char* nameOf(Phase phase) {
    const char* const names[] = {"before its initialisation", "before StartUp, or after one that has failed",
                                 "while it is started", "after Close", "after clean-up"};
    return names[static_cast<int>(phase)];
}

}  // namespace

Host::Host(Findings& findings, Situation& situation, void* instance)
    : findings_(findings), situation_(situation), instance_(instance) {
    for (const auto& [id, name] : {std::pair{77, "Ship"}, {78, "Tug"}}) {
        Platform& platform = platforms[static_cast<std::uint64_t>(id)];
        platform.header = {static_cast<std::uint64_t>(id), name, "x"};
        platform.point.latRad = 0.37;
        platform.point.lonRad = -2.6 + 0.01 * (id - 77);
    }
}

PIServiceResult Host::handle(void* identity, Service service, void* record) {
    const std::string number = "service " + std::to_string(static_cast<int>(service));
    if (std::this_thread::get_id() != thread_) {
        findings_.fault(number + " is called on another thread than the host's");
        return 0;
    }
    const bool isIdentity = service == Service::IdentityOverride;
    if (!isIdentity) {
        ++calls;
        numbers.insert(service);
        situation_.service = static_cast<int>(service);
    }
    try {
        judgeCall_(identity, service, record);
    } catch (const Misuse& misuse) {
        findings_.fault(number + ": " + misuse.what());
    }
    if (onCall && !inside_ && !isIdentity) {
        inside_ = true;
        onCall(service);
        inside_ = false;
    }
    if (answer && (!isIdentity || answersIdentity)) {
        const bool release = isRelease(service, record);
        try {
            if (const auto given = answer(service, bringsRecord(service) ? record : nullptr))
                return lostRelease_ |= release, *given;
        } catch (...) {
            lostRelease_ |= release;
            throw;
        }
    }
    try {
        return serve_(service, record);
    } catch (const Gone&) {
        return 0;
    } catch (const Misuse& misuse) {
        if (!lies) findings_.fault(number + ": " + misuse.what());
        return 0;
    }
}

void Host::judgeCall_(void* identity, Service service, void* record) {
    const bool due = phase == Phase::Started || ((phase == Phase::Initialised || phase == Phase::Closed) &&
                                                 isDueAfterInit(service, record));
    if (!due) throw Misuse(std::string("it is called ") + nameOf(phase));
    const bool isIdentity = service == Service::IdentityOverride;
    void* const wanted = isIdentity ? nullptr : identities_.empty() ? instance_ : identities_.back();
    if (identity != wanted && !lies)
        throw Misuse(isIdentity ? "it is called with an identity"
                                : "it does not bring the identity that the host has given");
    if (!bringsRecord(service) || !record || lies) return;
    if (const std::string* const text = foreignText(record)) throw Misuse("\"" + *text + "\" is no UTF-8");
}

PIServiceResult Host::serve_(Service service, void* record) {
    if (service == Service::IdentityOverride) return identity_(as_<PI_DATA_CATCHALL>(record));
    if (isWidgetService_(service)) return serveWidget_(service, record);
    const int number = static_cast<int>(service);
    const bool isScene = (number >= 200 && number < 300) || (number >= 400 && number < 900);
    return isScene ? serveScene_(service, record) : serveApplication_(service, record);
}

PIServiceResult Host::identity_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::IdentityOverride;
    switch (selector_(record, Op::Pop)) {
        case Op::Query:
            if (!identities_.empty()) record.pointers.push_back(identities_.back());
            return 1;
        case Op::Push:
            identities_.push_back(pointer_(record, 0));
            return 1;
        case Op::Pop:
            if (identities_.empty()) throw Misuse("nothing was pushed that could be popped");
            identities_.pop_back();
            return 1;
    }
    return 0;
}

std::vector<std::string> Host::leftovers() const {
    std::vector<std::string> left;
    const auto add = [&](std::string what) { left.push_back(std::move(what)); };
    for (const auto& [handle, widget] : widgets)
        add("widget of service " + std::to_string(static_cast<int>(widget.kind)) + " \"" + widget.caption +
            "\"");
    for (std::size_t i = 0; i < timeouts.size(); ++i) add("timeout");
    for (const auto& [handle, action] : actions) add("action \"" + action.label + "\"");
    for (const auto& [name, interface] : services) add("service \"" + name + "\"");
    for (const auto& [id, platform] : platforms)
        if (platform.isPlugins) add("platform \"" + platform.header.name + "\"");
    for (const auto& [handle, overlay] : overlays)
        if (overlay.path.empty()) add("overlay from a stream");
    for (std::size_t i = 0; i < observers.size(); ++i) add("observer of overlays");
    for (std::size_t i = 0; i < contextMenus.size(); ++i) add("observer of context menus");
    for (std::size_t i = 0; i < icons_.size(); ++i) add("icon");
    for (std::size_t i = 0; i < lines_.size(); ++i) add("animated line");
    for (std::size_t i = 0; i < texts_.size(); ++i) add("screen text");
    if (grabs_ > 0) add("grabbed mouse");
    if (!identities_.empty()) add("pushed identity");
    return left;
}

void Host::judgeLeftovers(const std::string& when) {
    if (lies || lostRelease_) return;
    const auto left = leftovers();
    if (left.empty()) return;
    std::string text = "left in the host " + when + ": ";
    constexpr std::size_t kMost = 5;
    for (std::size_t i = 0; i < left.size() && i < kMost; ++i) text.append(i ? ", " : "").append(left[i]);
    if (left.size() > kMost)
        text.append(", and ").append(std::to_string(left.size() - kMost)).append(" more");
    findings_.fault(text);
}

void Host::dropLeftovers() {
    widgets.clear();
    timeouts.clear();
    actions.clear();
    services.clear();
    observers.clear();
    contextMenus.clear();
    contextItems.clear();
    icons_.clear();
    lines_.clear();
    texts_.clear();
    identities_.clear();
    grabs_ = 0;
    std::erase_if(overlays, [](const auto& entry) { return entry.second.path.empty(); });
    std::erase_if(platforms, [](const auto& entry) { return entry.second.isPlugins; });
}

std::int64_t Host::integer_(const PI_DATA_CATCHALL& record, std::size_t index) {
    if (index < record.integers.size()) return record.integers[index];
    throw Misuse("integer " + std::to_string(index + 1) + " is missing");
}
double Host::real_(const PI_DATA_CATCHALL& record, std::size_t index) {
    if (index < record.doubles.size()) return record.doubles[index];
    throw Misuse("real " + std::to_string(index + 1) + " is missing");
}
const std::string& Host::text_(const PI_DATA_CATCHALL& record, std::size_t index) {
    if (index < record.strings.size()) return record.strings[index];
    throw Misuse("string " + std::to_string(index + 1) + " is missing");
}
void* Host::pointer_(const PI_DATA_CATCHALL& record, std::size_t index) {
    if (index < record.pointers.size()) return record.pointers[index];
    throw Misuse("pointer " + std::to_string(index + 1) + " is missing");
}
FunctorTwoParams__* Host::callback_(void* callback) {
    auto* const functor = static_cast<FunctorTwoParams__*>(callback);
    if (functor) callbacks.insert(functor);
    return functor;
}

}  // namespace kit
