#include "cli/Messages.h"

#include <ostream>

#include "cli/Printable.h"

namespace cli {

void completeMessages(halCore::ZEL::ParseReport& report) {
    if (report.unterminatedBlock != 0)
        report.messages.push_back(
            {report.unterminatedBlock, halNotify::Error, "start without end, the block is lost"});
}

void printMessages(std::ostream& out, const std::string& file, const halCore::ZEL::ParseReport& report) {
    const std::string name = printable(file);
    for (const halCore::ZEL::ParseMessage& message : report.messages)
        out << name << ':' << message.line << ": " << printable(message.text) << '\n';
}

}  // namespace cli
