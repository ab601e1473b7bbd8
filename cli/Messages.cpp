#include "cli/Messages.h"

#include <ostream>

#include "cli/Printable.h"

namespace cli {

void printMessages(std::ostream& out, const std::string& file,
                   std::span<const halCore::ZEL::ParseMessage> messages) {
    const std::string name = printable(file);
    for (const halCore::ZEL::ParseMessage& message : messages)
        out << name << ':' << message.line << ": " << printable(message.text) << '\n';
}

}  // namespace cli
