#include "format/LabelText.h"

#include <cstddef>

#include "common/Strings.h"
#include "format/LineTokens.h"

namespace halCore::ZEL {
namespace {

constexpr std::string_view kBreak = "\\n";

/// Line breaks (LF, CR LF, CR) as `lineBreak`, every other white space as a blank.
std::string onOneLine(std::string_view text, std::string_view lineBreak) {
    std::string result;
    if (text.find_first_of("\t\n\v\f\r") == std::string_view::npos) {
        result = text;
        return result;
    }
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        if (c == '\n' || c == '\r')
            result += lineBreak;
        else
            result += UTILS::isBlank(c) ? ' ' : c;
    }
    return result;
}

/// Whether there is nothing to change: words with single blanks between them.
bool isAsInLine(std::string_view name) {
    char before = ' ';
    for (const char c : name) {
        if (UTILS::isBlank(c) && (c != ' ' || before == ' ')) return false;
        before = c;
    }
    return before != ' ' || name.empty();
}

std::string withLineBreaks(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i).starts_with(kBreak)) {
            result += '\n';
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

bool isSpaceLike(char c) {
    return c == ' ' || c == '_';
}

/// The run of blanks and underscores (or of anything else) at the front of `text`, taken off it.
std::string_view takeRun(std::string_view& text, bool spaceLike) {
    std::size_t length = 0;
    while (length < text.size() && isSpaceLike(text[length]) == spaceLike) ++length;
    const std::string_view run = text.substr(0, length);
    text.remove_prefix(length);
    return run;
}

}  // namespace

std::string textFromLabel(std::string_view label) {
    std::string text = onOneLine(label, kBreak);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != ' ') continue;
        std::size_t end = i;
        while (end < text.size() && text[end] == ' ') ++end;
        if (i == 0 || end == text.size() || end - i > 1)
            for (; i < end; ++i) text[i] = '_';
        i = end;
    }
    return text;
}

std::string labelFromText(std::string_view text) {
    std::string label = withLineBreaks(text);
    for (char& c : label)
        if (c == '_') c = ' ';
    return label;
}

std::string nameInLine(std::string_view name) {
    if (isAsInLine(name)) return std::string(name);
    LineTokens words;
    words.split(onOneLine(name, kBreak), LineTokens::Case::Keep);
    return std::string(words.line());
}

std::string labelFromTextAndName(std::string_view text, std::string_view name) {
    std::string meaning = labelFromText(text);
    const std::string candidate = withLineBreaks(name);
    std::string result;
    std::string_view meant = meaning;
    std::string_view named = candidate;
    while (!meant.empty() || !named.empty()) {
        const std::string_view meantRun = takeRun(meant, true);
        const std::string_view namedRun = takeRun(named, true);
        if (namedRun.size() > meantRun.size()) return meaning;
        const std::string missing(meantRun.size() - namedRun.size(), ' ');
        // Where a blank is left of several, else at the text's end or in front.
        std::size_t at = namedRun.find(' ');
        if (at == std::string_view::npos) at = meant.empty() ? namedRun.size() : 0;
        result.append(namedRun.substr(0, at)).append(missing).append(namedRun.substr(at));
        const std::string_view meantWord = takeRun(meant, false);
        if (takeRun(named, false) != meantWord) return meaning;
        result += meantWord;
    }
    return result;
}

}  // namespace halCore::ZEL
