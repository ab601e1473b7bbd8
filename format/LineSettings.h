#pragma once

#include <optional>
#include <string_view>

#include "format/Keyword.h"
#include "format/LineTokens.h"
#include "format/ParsedShape.h"

namespace halCore::ZEL {

/// The keyword of a line inside a block: "rotate" and "extrude" are known by the beginning of a word.
const Keyword& keywordOf(const LineTokens& tokens);

/// What a line of two words sets, "3d name x": known by its beginning, so that "3d names x" is a name, too.
/// Nothing for no such line.
std::optional<ShapeParameter> parameterOf3d(const LineTokens& tokens);

/// The kind of point that a line adds: None for one that adds none, be it because words are missing.
ParsedShape::PointType pointOf(const Keyword& keyword, const LineTokens& tokens);

/// The attributes that a line sets, each with words that mean the same only where they are the same; none for
/// one that lacks words, and for points, shapes and boxes.
class LineSettings {
  public:
    struct Setting {
        ShapeParameter parameter{};
        std::string_view value;
    };

    LineSettings(const Keyword& keyword, const LineTokens& tokens);

    const Setting* begin() const { return settings_; }
    const Setting* end() const { return settings_ + count_; }
    bool empty() const { return count_ == 0; }
    bool sets(ShapeParameter parameter) const;

  private:
    void add_(ShapeParameter parameter, std::string_view value) { settings_[count_++] = {parameter, value}; }

    static constexpr std::size_t kMost = 4;
    Setting settings_[kMost];
    std::size_t count_ = 0;
};

}  // namespace halCore::ZEL
