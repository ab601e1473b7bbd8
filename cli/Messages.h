#pragma once

#include <iosfwd>
#include <string>

#include "format/ParseReport.h"

namespace cli {

/// Adds the message that the library does not make: a last block without "end" is lost in silence.
void completeMessages(halCore::ZEL::ParseReport& report);

/// One line a message, "FILE:LINE: message".
void printMessages(std::ostream& out, const std::string& file, const halCore::ZEL::ParseReport& report);

}  // namespace cli
