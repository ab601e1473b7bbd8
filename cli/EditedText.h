#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "format/ParseReport.h"

namespace cli {

/// What came of a text that the editor loads and saves, beside the text.
struct Edited {
    std::size_t shapes = 0;
    /// Lines that are not in the new text.
    halCore::ZEL::ParseReport lost;
    /// Why the editor does not load it: then the text is as it was. Empty when it does.
    std::string error;
};

/// Loads a text as the editor does and saves it, a part at a time: there are never more shapes in memory than
/// of a few parts. What the editor says comes as notifications, as if it were loaded at once.
/// \param anew whether every block is written as if its shape had been changed beyond what a line can say
/// \param write gets the new text, in order, in pieces
/// \param part how many bytes a part has, about
Edited editText(std::string text, const std::string& name, bool anew,
                const std::function<void(std::string_view)>& write, std::size_t part = std::size_t(1) << 20U);

}  // namespace cli
