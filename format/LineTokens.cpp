#include "format/LineTokens.h"

#include <bit>
#include <cstring>

#include "common/Strings.h"
#include "format/EightBytes.h"

namespace halCore::ZEL {
namespace {

constexpr char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool keepsCase(char first) {
    return first == '"' || first == '#' || first == '/';
}

/// In any case.
bool endsFolding(std::string_view word) {
    switch (word.size()) {
        case 4:
            return lowered(word[0]) == 'n' && UTILS::equalsIgnoringCase(word, "name");
        case 7:
            return lowered(word[0]) == 'c' && UTILS::equalsIgnoringCase(word, "comment");
        case 10:
            return lowered(word[0]) == 'a' && UTILS::equalsIgnoringCase(word, "annotation");
        default:
            return false;
    }
}

}  // namespace

const char* LineTokens::split(const char* p, const char* end, Case letters) {
    if (const char* const stop = view_(p, end, letters)) return stop;
    const auto* const stop =
        static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
    split(std::string_view(p, static_cast<std::size_t>(stop - p)), letters);
    return stop;
}

/// Views the words of a line of the ordinary form: a few words in lower case with single blanks between
/// them. Null for every other line, and for one so close to the end that a word of eight is too far.
const char* LineTokens::view_(const char* p, const char* end, Case letters) {
    bool fold = letters == Case::Fold;
    std::size_t count = 0;
    endedInCapitalS_ = false;
    while (count < kKept && *p != '"') {
        const char* const begin = p;
        std::uint64_t upperCase = 0;
        std::uint64_t blank = 0;
        do {
            if (end - p < 8) return nullptr;
            const std::uint64_t text = loadEight(p);
            blank = findBlank(text);
            upperCase |= mayBeUpperCase(text, blank);
            p += blank == 0 ? 8 : std::countr_zero(blank) / 8;
        } while (blank == 0);
        if (upperCase != 0 && fold) {
            // Allowed only behind a word that ends the folding.
            for (std::size_t i = 0; i < count && fold; ++i) fold = !endsFolding((*this)[i]);
            if (fold) return nullptr;
        }
        begins_[count] = begin;
        ends_[count] = p;
        count_ = ++count;
        if (*p == ' ' && static_cast<unsigned char>(p[1]) > ' ') {
            ++p;
            continue;
        }
        lineEnd_ = p;
        if (*p == '\r') ++p;
        return *p == '\n' ? p : nullptr;
    }
    return nullptr;
}

void LineTokens::split(std::string_view line, Case letters) {
    line = UTILS::trimmed(line);
    bool fold = letters == Case::Fold;
    // Never longer than the line, so that words do not move.
    joined_.clear();
    joined_.reserve(line.size());
    count_ = 0;
    endedInCapitalS_ = false;
    const char* p = line.data();
    const char* const end = p + line.size();
    while (p != end) {
        if (UTILS::isBlank(*p)) {
            ++p;
            continue;
        }
        if (count_ != 0) joined_ += ' ';
        const std::size_t at = joined_.size();
        const char* const begin = p;
        if (*p == '"') {
            ++p;
            while (p != end && *p != '"') ++p;
        }
        while (p != end && !UTILS::isBlank(*p)) ++p;
        joined_.append(begin, p);
        if (fold && !keepsCase(*begin)) {
            endedInCapitalS_ |= joined_.back() == 'S';
            for (std::size_t i = at; i < joined_.size(); ++i) joined_[i] = lowered(joined_[i]);
            fold = !endsFolding(std::string_view(joined_).substr(at));
        }
        add_(joined_.data() + at, joined_.data() + joined_.size());
    }
    if (endedInCapitalS_)
        endedInCapitalS_ = line.find_first_of("abcdefghijklmnopqrstuvwxyz") != std::string_view::npos;
}

}  // namespace halCore::ZEL
