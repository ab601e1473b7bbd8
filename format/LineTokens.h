#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace halCore::ZEL {

/// One line split at white space, its words in lower case and joined again by single blanks. A word that
/// begins with a double quote goes on to the closing quote, white space included, and an unclosed one to
/// the end of the line; quotes stay. Words that begin with a double quote, "#" or "/" keep their case, and
/// so do all words behind "annotation", "comment" or "name".
///
/// Most lines are so already: then the words are views of the text, and nothing is copied.
class LineTokens {
  public:
    enum class Case { Fold, Keep };

    /// Of a longer line only so many bytes are split: 1 MiB.
    static constexpr std::size_t kLongest = std::size_t{1} << 20;

    /// Splits the line that begins at `p` and returns its line feed, which must stand before `end`.
    const char* split(const char* p, const char* end, Case letters = Case::Fold);
    /// The same for a line without its line feed; nothing of it is viewed.
    void split(std::string_view line, Case letters = Case::Fold);

    std::size_t count() const { return count_; }
    /// A word by its number, from 0; empty when there is none, or when it is beyond the first eight.
    std::string_view operator[](std::size_t index) const {
        if (index >= count_ || index >= kKept) return {};
        return {begins_[index], static_cast<std::size_t>(ends_[index] - begins_[index])};
    }
    /// The joined line from a word on.
    std::string_view from(std::size_t index) const {
        if (index >= count_ || index >= kKept) return {};
        return {begins_[index], static_cast<std::size_t>(lineEnd_ - begins_[index])};
    }
    std::string_view line() const { return from(0); }

    /// Whether a word that is now in lower case ended in a capital S, in a line that is not all in capitals.
    bool endedInCapitalS() const { return endedInCapitalS_; }
    /// Whether there was more of the line.
    bool isCut() const { return isCut_; }

  private:
    /// More than any keyword uses; of the others only the number counts.
    static constexpr std::size_t kKept = 8;

    const char* view_(const char* p, const char* end, Case letters);
    void add_(const char* begin, const char* end) {
        if (count_ < kKept) {
            begins_[count_] = begin;
            ends_[count_] = end;
        }
        ++count_;
        lineEnd_ = end;
    }

    std::size_t count_ = 0;
    std::array<const char*, kKept> begins_{};
    std::array<const char*, kKept> ends_{};
    const char* lineEnd_ = nullptr;
    bool endedInCapitalS_ = false;
    bool isCut_ = false;
    /// The line in lower case and joined, where the text is not.
    std::string joined_;
};

}  // namespace halCore::ZEL
