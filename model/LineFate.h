#pragma once

#include <string_view>

#include "common/Notify.h"
#include "format/Keyword.h"
#include "format/LineTokens.h"
#include "format/ZelShape.h"

namespace OverlayEditor {

/// What becomes of one line of a block when its shape is loaded into the editor and saved again.
struct LineFate {
    halNotify::Severity severity = halNotify::Warning;
    /// Follows the line's text in a message; empty when the line is kept.
    std::string_view what;

    bool isKept() const { return what.empty(); }
};

inline constexpr LineFate kUnreadLine{halNotify::Warning, "cannot be read and is dropped"};
inline constexpr LineFate kUnusedLine{halNotify::Warning, "means nothing here and is dropped"};

/// Whether a shape is a list of points.
bool hasPoints(const halCore::ZEL::ZelShape& shape);

/// Of a line that is no point, taken by itself: other lines of the block may still take its place.
/// \param shape what the reader made of the whole block
LineFate fateOfLine(const halCore::ZEL::Keyword& keyword, const halCore::ZEL::LineTokens& tokens,
                    const halCore::ZEL::ZelShape& shape);

/// Of a point that the shape takes.
/// \param asDegrees whether its first two numbers are a latitude and a longitude
LineFate fateOfPoint(const halCore::ZEL::Keyword& keyword, const halCore::ZEL::LineTokens& tokens,
                     bool asDegrees);

}  // namespace OverlayEditor
