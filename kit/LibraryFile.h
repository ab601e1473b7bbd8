#pragma once

#include <string>
#include <vector>

namespace kit {

/// Looks at the file alone; nothing of it runs.
/// \throws std::runtime_error that says why it cannot be a plug-in at all: there is none, it cannot be read,
/// it is no library of this processor, or it is cut
void judgeFile(const std::string& path);

/// The names of the symbols that a library defines and shows, sorted, without weak ones; nothing when it is
/// no 64-bit ELF file.
std::vector<std::string> visibleSymbols(const std::string& library);

}  // namespace kit
