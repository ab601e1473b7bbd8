#include "format/LineTokens.h"

#include <algorithm>

#include "common/Strings.h"

namespace halCore::ZEL {
namespace {

constexpr char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool keepsCase(char first) {
    return first == '"' || first == '#' || first == '/';
}

constexpr bool endsFolding(std::string_view word) {
    return word == "name" || word == "comment" || word == "annotation";
}

}  // namespace

/// Copies a word to `out` and returns its end there; `p` moves to the word's end. Up to seven bytes more may
/// be written.
char* LineTokens::takeWord_(const char*& p, const char* end, const char* limit, char* out, bool fold) const {
    while (limit - p >= 8) {
        const std::uint64_t word = loadEight(p);
        const unsigned count = countBeforeBlank(word);
        storeEight(out, fold ? loweredEight(word) : word);
        p += count;
        out += count;
        if (count == 8) continue;
        if (p >= end || UTILS::isBlank(*p)) return out;
        // A control character that is no white space is part of the word.
        *out++ = *p++;
    }
    for (; p != end && !UTILS::isBlank(*p); ++p) *out++ = fold ? lowered(*p) : *p;
    return out;
}

void LineTokens::split(std::string_view line, const char* limit, Case letters) {
    constexpr std::size_t slack = 16;
    if (line.size() + slack > capacity_) {
        capacity_ = 2 * line.size() + 256;
        joined_ = std::make_unique_for_overwrite<char[]>(capacity_);
    }
    size_ = 0;
    count_ = 0;
    bool fold = letters == Case::Fold;
    const char* p = line.data();
    const char* const end = p + line.size();
    char* out = joined_.get();
    while (true) {
        while (p != end && UTILS::isBlank(*p)) ++p;
        if (p == end) break;
        // Never more than the line has: a blank is written where one or more were read.
        if (count_ != 0) *out++ = ' ';
        char* const begin = out;
        if (*p == '"') {
            const char* const quote = p++;
            while (p != end && *p != '"') ++p;
            out = std::copy(quote, p, out);
        }
        const bool foldWord = fold && (out == begin && !keepsCase(*p));
        out = takeWord_(p, end, limit, out, foldWord);
        if (foldWord) fold = !endsFolding({begin, static_cast<std::size_t>(out - begin)});
        if (count_ < kKept) {
            begins_[count_] = static_cast<std::size_t>(begin - joined_.get());
            ends_[count_] = static_cast<std::size_t>(out - joined_.get());
        }
        ++count_;
    }
    size_ = static_cast<std::size_t>(out - joined_.get());
}

}  // namespace halCore::ZEL
