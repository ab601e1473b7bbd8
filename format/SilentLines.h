#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "format/Keyword.h"
#include "format/LineTokens.h"
#include "format/ParseReport.h"
#include "format/ParsedShape.h"
#include "format/ZelShape.h"

namespace halCore::ZEL {

/// Finds the lines of a block that the reader passes over without a message, because they mean nothing to the
/// shape, cannot be read, or another line counts; and those of which it takes less than stands there. Used
/// again for block after block.
class SilentLines {
  public:
    void clear() { lines_.clear(); }
    /// Any line of the block but comments and the plainest points.
    void add(std::size_t number, const Keyword& keyword, std::string_view line);
    /// \param start the line of the block's "start" \param shape what was made of the block
    /// \param pointType of the points that it takes
    void tell(std::size_t start, const ZelShape& shape, ParsedShape::PointType pointType,
              std::vector<ParseMessage>& silent);

  private:
    struct Line {
        std::size_t number = 0;
        std::string text;
        const Keyword* keyword = nullptr;
    };

    /// What becomes of a line, as the end of a sentence about it; empty for nothing.
    std::string fateOf_(const Line& line, const ZelShape& shape, ParsedShape::PointType pointType);
    std::string fateOfPoint_(const Line& line, const ZelShape& shape, ParsedShape::PointType pointType);

    std::vector<Line> lines_;
    LineTokens tokens_;
    /// For each parameter the line that counts; 0 for none.
    std::array<std::size_t, kParameterCount> counts_{};
    std::size_t labelPoint_ = 0;
};

}  // namespace halCore::ZEL
