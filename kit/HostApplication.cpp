#include <algorithm>
#include <iostream>

#include "kit/HostRecords.h"

namespace kit {

PIServiceResult Host::serveApplication_(Service service, void* record) {
    switch (service) {
        case Service::RegistrySetValue: {
            const auto& setting = as_<PI_DATA_POINTER_STRING_AND_STRING>(record);
            settings[setting.text] = setting.second;
            return 1;
        }
        case Service::RegistryGetValue: {
            auto& setting = as_<PI_DATA_POINTER_AND_STRING>(record);
            const auto found = settings.find(setting.text);
            setting.text = found == settings.end() ? std::string() : found->second;
            return 1;
        }
        case Service::ForceRedraw:
            if (record) throw Misuse("it brings a record, and takes none");
            return ++redraws, 1;
        case Service::MouseGrab: {
            using Op = PISelector::MouseGrab;
            grabs_ += selector_(as_<PI_DATA_CATCHALL>(record), Op::Ungrab) == Op::Grab ? 1 : -1;
            if (grabs_ >= 0) return 1;
            grabs_ = 0;
            if (answer) return 0;  // the grab may have been refused
            throw Misuse("the mouse is not grabbed");
        }
        case Service::Icon:
            return icon_(as_<PI_DATA_CATCHALL>(record));
        case Service::FileDialog:
            return fileDialog_(as_<PI_DATA_CATCHALL>(record));
        case Service::Timeout:
            return timeout_(as_<PI_DATA_CATCHALL>(record));
        case Service::Action:
            return action_(as_<PI_DATA_CATCHALL>(record));
        case Service::Service:
            return service_(as_<PI_DATA_CATCHALL>(record));
        case Service::Notify:
            return notify_(as_<PI_DATA_CATCHALL>(record));
        default:
            throw Misuse("the contract has no such number");
    }
}

PIServiceResult Host::icon_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::Icon;
    switch (selector_(record, Op::Destroy)) {
        case Op::LoadPng: {
            static constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";
            const auto size = static_cast<std::size_t>(integer_(record, 1));
            const auto* const bytes = static_cast<const char*>(pointer_(record, 0));
            if (!bytes || size < kSignature.size() ||
                std::string_view(bytes, kSignature.size()) != kSignature)
                throw Misuse("the icon is no PNG");
            record.pointers.push_back(newHandle_());
            icons_.insert(record.pointers.back());
            return 1;
        }
        case Op::SetDialogIcon:
        case Op::SetMenuItemIcon:
            widget_(pointer_(record, 0));
            known_(icons_, pointer_(record, 1), "icon");
            return 1;
        case Op::Destroy:
            icons_.erase(known_(icons_, pointer_(record, 0), "icon"));
            return 1;
    }
    return 0;
}

/// The person chooses the check's own directory, or a file in it: always the same, so that what was saved can
/// be loaded.
PIServiceResult Host::fileDialog_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::FileDialog;
    const Op operation = selector_(record, Op::Directory);
    text_(record, 3);
    for (std::size_t row = 4; row < record.strings.size(); ++row) {
        const std::string& filter = record.strings[row];
        if (const auto tab = filter.find('\t'); tab == std::string::npos || tab + 1 == filter.size())
            throw Misuse("the filter row \"" + filter + "\" is not a text, a tab, and patterns");
    }
    if (directory.empty()) return 0;
    const std::string path = operation == Op::Directory ? directory : directory + "/chosen.zel";
    const std::string group = text_(record, 1), key = text_(record, 2);
    if (!key.empty()) settings[group == "SETTINGS" ? key : group + "/" + key] = path;
    record.strings.push_back(path);
    return 1;
}

PIServiceResult Host::timeout_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::Timeout;
    if (selector_(record, Op::Cancel) == Op::Cancel) {
        timeouts.erase(known_(timeouts, pointer_(record, 0), "timeout"));
        return 1;
    }
    if (integer_(record, 1) < 0) throw Misuse("it is to fire in the past");
    const Timeout timeout{callback_(pointer_(record, 0)), pointer_(record, 1)};
    if (!timeout.callback) throw Misuse("the callback is null");
    record.pointers.push_back(newHandle_());
    timeouts[record.pointers.back()] = timeout;
    return 1;
}

PIServiceResult Host::action_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::Action;
    const Op operation = selector_(record, Op::Destroy);
    if (operation == Op::Destroy) {
        actions.erase(known_(actions, pointer_(record, 0), "action"));
        return 1;
    }
    const auto named = std::find_if(actions.begin(), actions.end(), [&](const auto& entry) {
        return entry.second.owner == text_(record, 0) && entry.second.label == text_(record, 1);
    });
    if (operation == Op::SetChecked) {
        if (named == actions.end()) {
            if (answer) return 0;  // it may have been refused
            throw Misuse("there is no action \"" + text_(record, 1) + "\"");
        }
        named->second.checked = integer_(record, 1) != 0;
        return 1;
    }
    if (named != actions.end()) throw Misuse("there is an action \"" + text_(record, 1) + "\" already");
    const Action action{text_(record, 0), text_(record, 1), callback_(pointer_(record, 0)), false};
    record.pointers.push_back(newHandle_());
    actions[record.pointers.back()] = action;
    return 1;
}

PIServiceResult Host::service_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::Service;
    const Op operation = selector_(record, Op::Find);
    const std::string& name = text_(record, 0);
    const auto found = services.find(name);
    switch (operation) {
        case Op::Register:
            if (found != services.end()) return 0;
            services[name] = pointer_(record, 0);
            return 1;
        case Op::Unregister:
            if (found == services.end() || found->second != pointer_(record, 0)) {
                if (answer) return 0;  // it may have been refused
                throw Misuse("there is no service \"" + name + "\" with that interface");
            }
            services.erase(found);
            return 1;
        case Op::Find:
            if (found == services.end()) return 0;
            record.pointers.push_back(found->second);
            return 1;
    }
    return 0;
}

PIServiceResult Host::notify_(PI_DATA_CATCHALL& record) {
    using Op = PISelector::Notify;
    selector_(record, Op::Debug);
    const std::int64_t severity = integer_(record, 1);
    if (severity < 0 || severity > 6) throw Misuse("there is no severity " + std::to_string(severity));
    std::cout << severity << ' ' << text_(record, 0) << ": " << text_(record, 1) << '\n';
    return 1;
}

}  // namespace kit
