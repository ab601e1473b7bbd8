#include "cli/Messages.h"

#include <ostream>

#include "common/Printable.h"

namespace cli {

void printMessages(std::ostream& out, const std::string& file,
                   std::span<const halCore::ZEL::ParseMessage> messages) {
    const std::string name = UTILS::printable(file);
    for (const halCore::ZEL::ParseMessage& message : messages)
        out << name << ':' << message.line << ": " << UTILS::printable(message.text, UTILS::kLongestShown)
            << '\n';
}

}  // namespace cli
