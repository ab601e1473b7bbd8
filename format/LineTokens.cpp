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

void LineTokens::split(std::string_view line, Case letters) {
    if (line.size() > capacity_) {
        capacity_ = 2 * line.size();
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
        if (fold && !keepsCase(*p)) {
            for (; p != end && !UTILS::isBlank(*p); ++p) *out++ = lowered(*p);
            fold = !endsFolding({begin, static_cast<std::size_t>(out - begin)});
        } else {
            const char* const word = p;
            if (*p == '"') {
                ++p;
                while (p != end && *p != '"') ++p;
            }
            while (p != end && !UTILS::isBlank(*p)) ++p;
            out = std::copy(word, p, out);
        }
        if (count_ < kKept) {
            begins_[count_] = static_cast<std::size_t>(begin - joined_.get());
            ends_[count_] = static_cast<std::size_t>(out - joined_.get());
        }
        ++count_;
    }
    size_ = static_cast<std::size_t>(out - joined_.get());
}

}  // namespace halCore::ZEL
