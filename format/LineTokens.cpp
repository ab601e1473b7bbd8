#include "format/LineTokens.h"

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
    joined_.clear();
    count_ = 0;
    bool fold = letters == Case::Fold;
    const char* p = line.data();
    const char* const end = p + line.size();
    while (true) {
        while (p != end && UTILS::isBlank(*p)) ++p;
        if (p == end) return;
        const char* const begin = p;
        if (*p == '"') {
            ++p;
            while (p != end && *p != '"') ++p;
        }
        while (p != end && !UTILS::isBlank(*p)) ++p;

        if (count_ != 0) joined_ += ' ';
        const std::size_t at = joined_.size();
        joined_.append(begin, p);
        if (fold && !keepsCase(*begin)) {
            for (std::size_t i = at; i < joined_.size(); ++i) joined_[i] = lowered(joined_[i]);
            fold = !endsFolding(std::string_view(joined_).substr(at));
        }
        if (count_ < kKept) {
            begins_[count_] = at;
            ends_[count_] = joined_.size();
        }
        ++count_;
    }
}

std::string_view LineTokens::operator[](std::size_t index) const {
    if (index >= count_ || index >= kKept) return {};
    return std::string_view(joined_).substr(begins_[index], ends_[index] - begins_[index]);
}

std::string_view LineTokens::from(std::size_t index) const {
    if (index >= count_ || index >= kKept) return {};
    return std::string_view(joined_).substr(begins_[index]);
}

}  // namespace halCore::ZEL
