#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "format/EightBytes.h"

namespace halCore::ZEL {

/// One line split at white space, its words in lower case and joined again by single blanks. A word that
/// begins with a double quote goes on to the closing quote, white space included, and an unclosed one to
/// the end of the line; quotes stay. Words that begin with a double quote, "#" or "/" keep their case, and
/// so do all words behind "annotation", "comment" or "name".
class LineTokens {
  public:
    enum class Case { Fold, Keep };

    /// `limit` is the end of the memory that may be read, at or behind the end of the line.
    void split(std::string_view line, const char* limit, Case letters = Case::Fold);

    std::size_t count() const { return count_; }
    /// A word by its number, from 0; empty when there is none, or when it is beyond the first eight.
    std::string_view operator[](std::size_t index) const {
        if (index >= count_ || index >= kKept) return {};
        return {joined_.get() + begins_[index], ends_[index] - begins_[index]};
    }
    /// The joined line from a word on.
    std::string_view from(std::size_t index) const {
        if (index >= count_ || index >= kKept) return {};
        return {joined_.get() + begins_[index], size_ - begins_[index]};
    }
    std::string_view line() const { return {joined_.get(), size_}; }
    /// The first eight letters of the first word, zeros behind them.
    std::uint64_t beginning() const { return firstOf(loadEight(joined_.get()), lengthOfFirst_()); }

  private:
    /// More than any keyword uses; of the others only the number counts.
    static constexpr std::size_t kKept = 8;

    unsigned lengthOfFirst_() const {
        return count_ == 0 ? 0 : static_cast<unsigned>(std::min<std::size_t>(ends_[0], 8));
    }
    char* takeWord_(const char*& p, const char* end, const char* limit, char* out, bool fold) const;

    std::unique_ptr<char[]> joined_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
    std::array<std::size_t, kKept> begins_{};
    std::array<std::size_t, kKept> ends_{};
    std::size_t count_ = 0;
};

}  // namespace halCore::ZEL
