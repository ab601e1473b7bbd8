#include <cstdlib>
#include <sstream>
#include <thread>

#include "Gallery.h"

namespace probe {

using Id = PIServerFunctions_t;
using Words = std::vector<std::string>;

/// The commands of the probe's field: service calls, argument by argument. What a call gives is answered as
/// JSON.
class Commands {
  public:
    explicit Commands(Gallery& owner) : gallery_(owner) {}

    std::string perform(Words words);

  private:
    std::string ask(const Words& words);
    std::string call(const Words& words);
    std::string platform(const Words& words);
    /// Of a widget or a handle that a command has kept; "#12" is the number itself.
    void* pointer(const std::string& name) const;
    std::string nameOf(const void* pointer) const;

    Gallery& gallery_;
};

namespace {

/// "_" stands for a blank, "|" for a tab, "^" for a line feed.
std::string decoded(std::string text) {
    for (char& letter : text)
        letter = letter == '|' ? '\t' : letter == '_' ? ' ' : letter == '^' ? '\n' : letter;
    return text;
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char letter : text) {
        if (letter == '"' || letter == '\\') result += '\\';
        result += letter == '\n' ? "\\n" : letter == '\t' ? "\\t" : std::string(1, letter);
    }
    return result + '"';
}

template <typename Values, typename Write>
std::string list(const Values& values, Write write) {
    std::ostringstream text;
    text.precision(17);
    for (const auto& value : values) text << (text.tellp() > 0 ? "," : "") << write(value);
    return "[" + text.str() + "]";
}

/// Says that it was called: "fired:NAME" by a timeout, "asked:NAME" by an action, with what they pass.
Functor* callbackOf(const std::string& text) {
    const std::string name = decoded(text.substr(text.find(':') + 1));
    if (text.starts_with("asked"))
        return callback([name](PIObject*, void* data) {
            say(name + " asked for " + std::to_string(*static_cast<const std::int32_t*>(data)));
        });
    return callback([name](PIObject* sender, void* data) {
        say(name + " fired" + (sender ? " with a sender" : "") + (data == gallery ? " with its data" : ""));
    });
}

// A PNG image of one pixel.
unsigned char kPng[] = {137, 80, 78, 71,  13, 10,  26,  10, 0,   0,   0,   13,  73,  72,  68,  82,  0, 0,
                        0,   1,  0,  0,   0,  1,   8,   6,  0,   0,   0,   31,  21,  196, 137, 0,   0, 0,
                        13,  73, 68, 65,  84, 120, 156, 99, 248, 223, 192, 240, 31,  0,   6,   128, 2, 127,
                        16,  76, 27, 225, 0,  0,   0,   0,  73,  69,  78,  68,  174, 66,  96,  130};

}  // namespace

std::string Gallery::perform(const std::vector<std::string>& words) {
    return Commands(*this).perform(words);
}

void* Commands::pointer(const std::string& name) const {
    if (name.starts_with('#')) return reinterpret_cast<void*>(std::atoll(name.c_str() + 1));
    if (name == "gallery") return &gallery_;
    if (name == "instance") return instance;
    if (name == "menu-item") return gallery_.menuItem_;
    if (name == "png") return kPng;
    if (name == "thrower") return static_cast<PIGUI::PICloseObserver*>(&gallery_.throwingObserver_);
    if (name == "observer") return static_cast<PIHALVIS::ZELEventObserver*>(&gallery_.overlayObserver_);
    if (name == "menus") return static_cast<PIHALVIS::ContextMenuCallbackV3*>(&gallery_.menuObserver_);
    const auto kept = gallery_.handles_.find(name);
    return kept != gallery_.handles_.end() ? kept->second : gallery_.widget(name);
}

std::string Commands::nameOf(const void* pointer) const {
    for (const auto& [name, handle] : gallery_.handles_)
        if (pointer && handle == pointer) return name;
    if (pointer == &gallery_) return "gallery";
    if (pointer == instance) return "instance";
    return "#" + std::to_string(reinterpret_cast<std::intptr_t>(pointer));
}

/// ask SERVICE ARGUMENT...: a catch-all record. i, d and s stand before integers, reals and texts, S before a
/// text that is decoded, p before a pointer's name, c before a callback; t gives a stream of a text, o one
/// that is written and whose text is answered behind the others; ">" names the handle that comes back.
std::string Commands::ask(const Words& words) {
    Catchall arguments;
    std::istringstream in;
    std::ostringstream out;
    std::string name;
    for (std::size_t i = 2; i < words.size(); ++i) {
        const char kind = words[i].front();
        const std::string value = words[i].substr(1);
        if (kind == 'i') arguments.integers.push_back(std::atoll(value.c_str()));
        if (kind == 'd') arguments.reals.push_back(std::atof(value.c_str()));
        if (kind == 's') arguments.texts.push_back(value);
        if (kind == 'S') arguments.texts.push_back(decoded(value));
        if (kind == 'p') arguments.pointers.push_back(pointer(value));
        if (kind == 'c') arguments.pointers.push_back(callbackOf(value));
        if (kind == 't') in.str(decoded(value));
        if (kind == 't') arguments.pointers.push_back(static_cast<std::istream*>(&in));
        if (kind == 'o') arguments.pointers.push_back(static_cast<std::ostream*>(&out));
        if (kind == '>') name = decoded(value);
    }
    Answer answer = probe::ask(static_cast<Id>(std::atoi(words.at(1).c_str())), arguments);
    if (!name.empty()) gallery_.handles_[name] = answer.handle();
    if (out.tellp() > 0) answer.texts.push_back(out.str());
    const auto same = [](auto value) { return value; };
    return "{\"result\":" + std::to_string(answer.result) + ",\"integers\":" + list(answer.integers, same) +
           ",\"reals\":" + list(answer.reals, same) + ",\"texts\":" + list(answer.texts, quoted) +
           ",\"pointers\":" + list(answer.pointers, [&](void* p) { return quoted(nameOf(p)); }) + "}";
}

/// call SERVICE KIND HANDLE VALUE...: a record of a kind, the bare handle, or null; ">" names the handle
/// returned.
std::string Commands::call(const Words& words) {
    const auto service = static_cast<Id>(std::atoi(words.at(1).c_str()));
    const std::string& kind = words.at(2);
    const auto word = [&](std::size_t i) { return i < words.size() ? words[i] : std::string(); };
    void* const handle = pointer(word(3));
    const int number = std::atoi(word(4).c_str());
    PIServiceResult result = 0;
    std::string text;
    if (kind == "null" || kind == "bare") {
        result = probe::call(service, handle);
    } else if (kind == "int") {
        result = probe::call<PI_DATA_POINTER_AND_INT>(service, handle, number);
    } else if (kind == "real") {
        result = probe::call<PI_DATA_POINTER_AND_DOUBLE>(service, handle, std::atof(word(4).c_str()));
    } else if (kind == "bool") {
        result = probe::call<PI_DATA_POINTER_AND_BOOL>(service, handle, number != 0);
    } else if (kind == "pointer") {
        result = probe::call<PI_DATA_POINTER_AND_POINTER>(service, handle, pointer(word(4)));
    } else if (kind == "item") {
        result = probe::call<PI_DATA_POINTER_STRING_AND_FUNCTION>(service, handle, word(4), nullptr);
    } else if (kind == "texts") {
        result = probe::call<PI_DATA_POINTER_STRING_AND_STRING>(service, handle, word(4), decoded(word(5)));
    } else if (kind == "text") {
        PI_DATA_POINTER_AND_STRING record(handle, decoded(word(4)));
        result = probe::call(service, &record);
        text = record.text;
    } else if (kind == "option") {
        PI_DATA_POINTER_INT_AND_STRING record(handle, number, "");
        result = probe::call(service, &record);
        text = record.text;
    } else {
        return "unknown kind " + kind;
    }
    if (words.back().front() == '>')
        gallery_.handles_[words.back().substr(1)] = reinterpret_cast<void*>(result);
    return "{\"result\":" + std::to_string(result) + ",\"text\":" + quoted(text) + "}";
}

/// What has structures of its own: create NAME LATITUDE LONGITUDE, header ID, point ID SECONDS.
std::string Commands::platform(const Words& words) {
    const auto id = static_cast<std::uint64_t>(std::atoll(words.at(1).c_str()));
    if (words[0] == "create") {
        PIData::CreatePlatformRequest request;
        request.header.name = words[1];
        request.header.icon = "x2";
        request.point.latRad = std::atof(words.at(2).c_str());
        request.point.lonRad = std::atof(words.at(3).c_str());
        const auto made =
            probe::ask(Id::CreateEntity, PISelector::CreateEntity::Platform, {.pointers = {&request}});
        return made.integers.empty() ? "refused" : std::to_string(made.integers.front());
    }
    if (words[0] == "header") {
        PIData::HeaderRequest request;
        request.id = id;
        if (!probe::call<PI_DATA_STRUCT>(Id::GetHeader, &request)) return "unknown";
        return std::to_string(request.header.id) + " " + request.header.name + " " + request.header.icon;
    }
    PIData::DataPointRequest request;
    request.id = id;
    request.timeSeconds = std::atof(words.at(2).c_str());
    if (!probe::call<PI_DATA_STRUCT>(Id::GetDataPoint, &request)) return "unknown";
    std::ostringstream text;
    text.precision(17);
    text << request.point.latRad << ' ' << request.point.lonRad << ' ' << request.point.altMeters << ' '
         << request.point.headingRad;
    return text.str();
}

std::string Commands::perform(Words words) {
    if (words.empty()) return {};
    const std::string verb = words[0];
    if (verb == "ask") return ask(words);
    if (verb == "call") return call(words);
    if (verb == "create" || verb == "header" || verb == "point") return platform(words);
    if (verb == "on-thread" || verb == "as-other") {
        words.erase(words.begin());
        std::string answer;
        void* const own = std::exchange(instance, verb == "as-other" ? &gallery_ : instance);
        if (verb == "on-thread")
            std::thread([&] { answer = call(words); }).join();
        else
            answer = call(words);
        instance = own;
        return answer;
    }
    if (verb == "destroy") gallery_.destroy(words.at(1));
    if (verb == "mouse") {
        gallery_.reportsMouse_ = words.at(1) != "off";
        gallery_.consumesMouse_ = words[1] == "consume";
    }
    if (verb == "stream-in-hook") gallery_.streamsInHook_ = words.at(1) == "on";
    if (verb == "leave-everything") gallery_.leaves_ = true;
    return "done";
}

}  // namespace probe
