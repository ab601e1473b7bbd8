#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "format/ParseReport.h"
#include "format/ZelShape.h"

namespace halCore::ZEL {

/// That a line is gone. \param number of it in its block
ParseMessage lostLine(std::size_t number, std::string_view line);

/// Whether each line of a block stands in the block that takes its place, but for blanks at its ends: then
/// none is lost.
bool hasAllLines(std::string_view anew, std::string_view block);

/// The lines of a block of which nothing is left in the block that takes its place, by their number in it,
/// from 0: comments, unknown words, what means nothing to the shape, and what cannot be read. \param read,
/// written what a reader makes of the old and of the new one
std::vector<ParseMessage> lostLines(std::string_view block, const ZelShape& read, std::string_view anew,
                                    const ZelShape& written);

}  // namespace halCore::ZEL
