#include "cli/Messages.h"

#include <algorithm>
#include <ostream>
#include <utility>
#include <vector>

#include "common/Printable.h"

namespace cli {

void printMessages(std::ostream& out, const std::string& file,
                   std::span<const halCore::ZEL::ParseMessage> messages,
                   std::span<const halCore::ZEL::ParseMessage> warnings, std::size_t omitted) {
    const std::string name = UTILS::printable(file);
    std::vector<std::pair<const halCore::ZEL::ParseMessage*, const char*>> all;
    for (const auto& message : messages) all.emplace_back(&message, ": ");
    for (const auto& warning : warnings) all.emplace_back(&warning, ": warning: ");
    if (!warnings.empty())
        std::ranges::stable_sort(all, {}, [](const auto& entry) { return entry.first->line; });
    for (const auto& [message, mark] : all)
        out << name << ':' << message->line << mark << UTILS::printable(message->text, UTILS::kLongestShown)
            << '\n';
    if (omitted > 0) out << name << ": " << omitted << " more messages\n";
}

}  // namespace cli
