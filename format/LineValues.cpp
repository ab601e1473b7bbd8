#include "format/LineValues.h"

#include <algorithm>
#include <vector>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "format/ColorNames.h"
#include "format/FileNumber.h"

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;

/// Replaces words of a line, the last ones first, so that the others stay where they are.
class Words {
  public:
    explicit Words(std::string_view line) : text_(line), words_(wordsOf(line)) {
        text_.remove_suffix(line.size() - endOf_(words_.size() - 1));
        result_ = text_;
    }

    std::size_t count() const { return words_.size(); }
    std::string_view operator[](std::size_t word) const { return words_[word]; }
    void set(std::size_t word, std::string_view value) {
        result_.replace(beginOf_(word), words_[word].size(), value);
    }
    /// Everything from a word on.
    void setRest(std::size_t word, std::string_view value) {
        if (word < words_.size())
            result_.replace(beginOf_(word), std::string::npos, value);
        else
            result_.append(" ").append(value);
    }
    void addBehind(std::size_t word, std::string_view value) {
        result_.insert(endOf_(word), std::string(" ").append(value));
    }
    const std::string& text() const { return result_; }

  private:
    std::size_t beginOf_(std::size_t word) const {
        return static_cast<std::size_t>(words_[word].data() - text_.data());
    }
    std::size_t endOf_(std::size_t word) const { return beginOf_(word) + words_[word].size(); }

    std::string_view text_;
    std::vector<std::string_view> words_;
    std::string result_;
};

/// "hex 0xff0000ff" in the line's own way: by name, or without "0x".
void setColor(Words& words, const ShapeField& after) {
    const std::string& value = after.values.back();
    if (words.count() == 2) {
        const auto named =
            std::ranges::find(kColorNames, value, [](const ColorName& color) { return color.value; });
        // The first name of each is a number; people write the second.
        const auto written =
            named != kColorNames.end() && named->name.starts_with("color") ? named + 1 : named;
        words.setRest(1, named == kColorNames.end() ? "hex " + value : std::string(written->name));
    } else {
        const bool bare = !UTILS::lowerCase(words[2]).starts_with("0x");
        words.set(2, bare ? value.substr(2) : value);
    }
}

void setPosition(Words& words, const ShapeField* before, const ShapeField& after, bool sameKind) {
    const auto same = [&](std::size_t i) {
        return sameKind && before && before->values[i] == after.values[i];
    };
    const std::string& up = after.values[2];
    const bool hasUp = words.count() > 3 && readFileNumber(words[3]);
    if (!same(2)) {
        if (hasUp)
            words.set(3, up);
        else if (up != "0" || words.count() > 3)
            words.addBehind(2, up);
    }
    for (const std::size_t i : {std::size_t{1}, std::size_t{0}})
        if (!same(i)) words.set(i + 1, after.values[i]);
    if (!sameKind) words.set(0, after.keyword);
}

std::string scaled(const std::string& number, double factor) {
    const auto value = UTILS::readNumber(number);
    return value ? UTILS::writeNumber(*value * factor) : number;
}

}  // namespace

std::string withValues(const BlockLines::Line& line, const ShapeField* before, const ShapeField& after) {
    Words words(line.text);
    const bool relative = after.keyword.find("xy") != std::string::npos;
    switch (line.keyword->action) {
        case Action::Shape:
            if (!UTILS::equalsIgnoringCase(words[0], after.keyword)) words.set(0, after.keyword);
            break;
        case Action::AnnotationText:
            words.setRest(1, after.values[0]);
            break;
        case Action::ThreeD:
            words.setRest(2, after.values[0]);
            break;
        case Action::Color:
            setColor(words, after);
            break;
        case Action::Value:
        case Action::QuietValue:
            words.set(1, after.values[0]);
            break;
        case Action::Half:
            words.set(1, scaled(after.values[0], 2.0));
            break;
        case Action::Double:
            words.set(1, scaled(after.values[0], 0.5));
            break;
        case Action::AbsolutePoint:
        case Action::AbsolutePosition:
            setPosition(words, before, after, !relative);
            break;
        case Action::ReferencePoint:
            setPosition(words, before, after, true);
            break;
        case Action::RelativePoint:
        case Action::RelativePosition:
            setPosition(words, before, after, relative);
            break;
        case Action::GridPoint: {
            const bool moved = !before || relative || before->values[0] != after.values[0] ||
                               before->values[1] != after.values[1];
            const std::string& up = after.values[2];
            if (words.count() > 2 && readFileNumber(words[2]))
                words.set(2, up);
            else if (up != "0" || words.count() > 2)
                words.addBehind(1, up);
            if (!moved) break;
            words.set(1, after.values[0] + ' ' + after.values[1]);
            words.set(0, after.keyword);
            break;
        }
        default:
            break;
    }
    return words.text();
}

}  // namespace halCore::ZEL
