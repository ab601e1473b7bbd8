#include "pi/HostFaults.h"

#include <exception>
#include <set>

#include "common/Notify.h"
#include "pi/EntryScope.h"

namespace HostFaults {

namespace {

std::set<PIServerFunctions_t> told;
std::uint64_t thrown = 0;

}  // namespace

void report(PIServerFunctions_t service, const std::string& problem) noexcept {
    try {
        if (!told.insert(service).second) return;
        std::string text = "A fault in the host: service " + std::to_string(static_cast<int>(service));
        text.append(": ").append(problem);
        const auto tell = [text] { halNotify::notify(halNotify::Error) << text; };
        if (EntryScope::isOpen())
            EntryScope::wait({&told, static_cast<std::int64_t>(service)}, tell);
        else
            tell();
    } catch (const std::exception&) {
        // Without memory the call has failed all the same.
    }
}

void reportException(PIServerFunctions_t service) noexcept {
    ++thrown;
    try {
        try {
            throw;
        } catch (const std::exception& problem) {
            report(service, std::string("it threw \"") + problem.what() + '"');
        }
    } catch (...) {
        report(service, "it threw something");
    }
}

std::uint64_t exceptions() {
    return thrown;
}

void forget() {
    told.clear();
}

}  // namespace HostFaults
