#include "format/LineTokens.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "common/Strings.h"
#include "format/LetterBits.h"

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
    isCut_ = false;
    if (const char* const stop = view_(p, end, letters)) return stop;
    const auto* const stop =
        static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
    split(std::string_view(p, static_cast<std::size_t>(stop - p)), letters);
    return stop;
}

/// Views the words of a line of the ordinary form: a few words in lower case with single blanks between them,
/// 63 characters at most. Null for every other line.
const char* LineTokens::view_(const char* p, const char* end, Case letters) {
    constexpr std::ptrdiff_t half = LetterBits::kCount;
    LetterBits bits = letterBitsOf(p, end);
    if (bits.controls == 0) {
        const LetterBits second = letterBitsOf(p + half, end);
        if (second.controls == 0) return nullptr;
        bits.blanks |= second.blanks << half;
        bits.controls |= second.controls << half;
        bits.upperCase |= second.upperCase << half;
    }
    const auto size = static_cast<unsigned>(std::countr_zero(bits.controls));
    const char* stop = p + size;
    if (*stop == '\r') ++stop;
    if (*stop != '\n') return nullptr;
    const std::uint64_t line = (1ULL << size) - 1;
    // Behind every blank a word begins.
    std::uint64_t blanks = bits.blanks & line;
    if ((blanks << 1 & (blanks | ~line)) != 0) return nullptr;
    const std::uint64_t upperCase = letters == Case::Fold ? bits.upperCase & line : 0;
    endedInCapitalS_ = false;
    bool isFolding = true;
    std::size_t count = 0;
    const char* begin = p;
    for (bool isLast = false; !isLast; ++count) {
        isLast = blanks == 0;
        const char* const behind = isLast ? p + size : p + std::countr_zero(blanks);
        if (count == kKept || *begin == '"') return nullptr;
        begins_[count] = begin;
        ends_[count] = behind;
        begin = behind + 1;
        blanks &= blanks - 1;
    }
    count_ = count;
    lineEnd_ = p + size;
    if (upperCase != 0) {
        // Allowed only behind a word that ends the folding.
        const char* const first = p + std::countr_zero(upperCase);
        for (std::size_t i = 0; i < count && isFolding && ends_[i] < first; ++i)
            isFolding = !endsFolding((*this)[i]);
        if (isFolding) return nullptr;
    }
    return stop;
}

void LineTokens::split(std::string_view line, Case letters) {
    isCut_ = line.size() > kLongest;
    line = UTILS::trimmed(line.substr(0, kLongest));
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
