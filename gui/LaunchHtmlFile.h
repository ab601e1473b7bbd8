#pragma once

#include <string>

namespace UTILS {

/// Opens a file or an address ("file:///...") in the desktop's viewer for it, without waiting for that.
/// \return an empty text, or why no viewer could be started
std::string LaunchHtmlFile(const std::string& address);

}  // namespace UTILS
