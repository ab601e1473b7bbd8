#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "format/Keyword.h"
#include "format/LineSettings.h"
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

    /// Of a line outside of a block that has no message.
    static void tellOutside(std::size_t number, std::string_view line, std::vector<ParseMessage>& silent);

  private:
    struct Line {
        std::size_t number = 0;
        std::string text;
        const Keyword* keyword = nullptr;
    };
    /// The last line that sets an attribute; line 0 for none.
    struct Last {
        std::size_t line = 0;
        std::string value;
    };

    const Last& lastOf_(ShapeParameter parameter) const { return last_[static_cast<std::size_t>(parameter)]; }
    bool isSet_(ShapeParameter parameter) const { return lastOf_(parameter).line != 0; }
    static void tell_(std::size_t number, std::string_view line, std::string_view fate,
                      std::vector<ParseMessage>& silent);
    /// What becomes of a line, whose words are split, as the end of a sentence about it; empty for nothing.
    std::string fateOf_(const Line& line, const ZelShape& shape, ParsedShape::PointType pointType) const;
    std::string fateOfPoint_(const Line& line, const ZelShape& shape, ParsedShape::PointType pointType) const;
    std::string fateOfSettings_(const Line& line, const LineSettings& settings, const ZelShape& shape) const;

    std::vector<Line> lines_;
    LineTokens tokens_;
    std::array<Last, kParameterCount> last_{};
    /// The first of the points that the shape takes, and whether a label stands there.
    std::size_t firstPoint_ = 0;
    bool labelStands_ = false;
};

}  // namespace halCore::ZEL
