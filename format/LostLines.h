#pragma once

#include <string_view>
#include <vector>

#include "format/ParseReport.h"
#include "format/ZelShape.h"

namespace halCore::ZEL {

/// The lines of a block of which nothing is left in the block that takes its place, by line: comments,
/// unknown words, and what means nothing to the shape. \param firstLine of the block \param read, written
/// what a reader makes of the old and of the new one
std::vector<ParseMessage> lostLines(std::string_view block, std::size_t firstLine, const ZelShape& read,
                                    std::string_view anew, const ZelShape& written);

}  // namespace halCore::ZEL
