#pragma once

#include <cstdint>
#include <string>

namespace sandbox {

/// A text at a fixed place of the view, over everything else.
struct ScreenText {
    std::uint64_t id = 0;
    std::string text;  ///< UTF-8, may hold line breaks
    double x = 0.0;    ///< left edge, widget pixels
    double y = 0.0;    ///< top edge, widget pixels from the top
    std::uint32_t argb = 0xffffffff;
    int pixelSize = 14;
    std::string fontFile = "arial.ttf";
};

}  // namespace sandbox
