#pragma once

#include <string>
#include <vector>

namespace UTILS {

/// Patterns for a file dialog of what the zel command turns into overlays: "*.geojson *.kml ...".
extern const char* const kOtherFormats;

/// Whether a file's suffix is one of those, in any case.
bool isOtherFormat(const std::string& fileName);

/// Has the zel command turn a file of another program into overlay text, and waits for it.
/// \param messages what it says of the file, a line each
/// \return an empty text, or why there is none; then that is not among the messages
std::string readOtherFormat(const std::string& fileName, std::string& text,
                            std::vector<std::string>& messages);

}  // namespace UTILS
