#pragma once

#include <cstddef>
#include <iosfwd>
#include <span>
#include <string>

#include "format/ParseReport.h"

namespace cli {

/// One line a message, "FILE:LINE: message", in the order of the lines; of warnings "FILE:LINE: warning:
/// message". At the end how many were omitted, if there were any.
void printMessages(std::ostream& out, const std::string& file,
                   std::span<const halCore::ZEL::ParseMessage> messages,
                   std::span<const halCore::ZEL::ParseMessage> warnings = {}, std::size_t omitted = 0);

}  // namespace cli
