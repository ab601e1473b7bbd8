#include <algorithm>
#include <limits>

#include "common/Printable.h"
#include "kit/checks/Checks.h"

namespace kit {

namespace {

using Event = Plugin::Event;
using Slot = PIParameterName_t;

/// What other events bring, with numbers that none of them has.
PIFunctionParams_t foreignRecord() {
    PIFunctionParams_t record;
    for (int slot = -1; slot < 30; ++slot) {
        const auto name = static_cast<Slot>(slot);
        record.integers[name] = slot % 2 ? std::numeric_limits<std::int32_t>::max() : -1;
        record.strings[name] = "not this";
        record.pointers[name] = nullptr;
    }
    return record;
}

bool isSame(const PIFunctionParams_t& a, const PIFunctionParams_t& b) {
    const auto equal = [](const auto& x, const auto& y) {
        return std::equal(x.begin(), x.end(), y.begin(), y.end());
    };
    return equal(a.strings, b.strings) && equal(a.integers, b.integers) && equal(a.pointers, b.pointers);
}

/// Whether Status is success or failure of the event, so that a plug-in which is closed has to say it.
bool tellsSuccess(std::int32_t number) {
    switch (static_cast<Event>(number)) {
        case Event::StartUp:
        case Event::Callback:
        case Event::Close:
        case Event::ConfigureCommandLine:
            return true;
        default:
            return false;
    }
}

}  // namespace

void checkTexts(Context& context) {
    Session session(context);
    std::string first;
    const auto judge = [&](Plugin& plugin, const char* when) {
        std::string all;
        for (const Event event : {Event::Name, Event::Description, Event::Author, Event::Version, Event::URL,
                                  Event::ContactInfo}) {
            PIFunctionParams_t record;
            plugin.dispatch(static_cast<std::int32_t>(event), &record);
            const std::string text = record.string(event == Event::Name ? Slot::NameText : Slot::InfoText);
            if (event == Event::Name && text.empty())
                context.findings.fault(std::string("the plug-in has no name ") + when);
            if (text.find('\0') != std::string::npos)
                context.findings.fault("the text of event " + std::to_string(static_cast<int>(event)) +
                                       " holds a zero");
            if (!UTILS::isUtf8(text))
                context.findings.fault("the text of event " + std::to_string(static_cast<int>(event)) +
                                       " is no UTF-8");
            all += text + "\n";
        }
        if (first.empty()) first = all;
        if (all != first) context.findings.fault(std::string("the texts are others ") + when);
    };
    session.prepare = [&](Plugin& plugin, Hands&) { judge(plugin, "after init"); };
    session.use = [&](Plugin& plugin, Hands&) { judge(plugin, "after StartUp"); };
    session.play();
}

void checkDispatch(Context& context) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    const std::pair<Phase, const char*> states[] = {{Phase::Loaded, "before init"},
                                                    {Phase::Initialised, "after init"},
                                                    {Phase::Started, "after StartUp"},
                                                    {Phase::Closed, "after Close"},
                                                    {Phase::CleanedUp, "after clean-up"}};
    for (const auto& [state, name] : states) {
        resetFiles(context.settings.home);
        Host host(context.findings, context.situation, &context);
        Plugin plugin(context.settings.library, context.findings, context.situation);
        if (state >= Phase::Initialised) plugin.initialise(host);
        if (state >= Phase::Started) plugin.start();
        if (state >= Phase::Closed) plugin.close();
        if (state == Phase::CleanedUp) plugin.cleanUp();
        std::vector<std::int32_t> numbers{kMost, kClientFunctionCount, -1, -kMost - 1};
        // From above: starting up is the last thing that is tried.
        for (std::int32_t number = kClientFunctionCount - 1; number >= 0; --number) numbers.push_back(number);
        for (const std::int32_t number : numbers) {
            const bool known = number >= 0 && number < kClientFunctionCount;
            if (static_cast<Event>(number) == Event::Close && state < Phase::Closed) continue;
            const std::string what = "event " + std::to_string(number) + ' ' + name;
            context.situation.setRound(what);
            plugin.dispatch(number, nullptr);
            for (const PIFunctionParams_t& before : {PIFunctionParams_t(), foreignRecord()}) {
                PIFunctionParams_t record = before;
                plugin.dispatch(number, &record);
                if (state <= Phase::Started && known) continue;
                const auto* const status = record.integers.find(Slot::Status);
                const bool saysClosed = status && *status == kStatusClosed;
                if (!saysClosed && !isSame(record, before))
                    context.findings.fault(what + " changes its record");
                if (state == Phase::Closed && tellsSuccess(number) && !saysClosed)
                    context.findings.fault(what + " does not say that the plug-in is closed: Status is not " +
                                           std::to_string(kStatusClosed));
            }
        }
        context.situation.setRound({});
    }
}

}  // namespace kit
