#include "model/LossReport.h"

#include <algorithm>

#include "common/Strings.h"
#include "format/Keyword.h"
#include "format/LineTokens.h"
#include "format/PlainPoint.h"
#include "model/BlockLosses.h"
#include "model/ShapeLabel.h"

namespace OverlayEditor {
namespace {

namespace ZEL = halCore::ZEL;
using Action = ZEL::KeywordAction;
using PointType = BlockLosses::PointType;

/// Goes through a text line by line as the reader does.
class Walk {
  public:
    Walk(const ZEL::Parser::Shapes& shapes, const ZEL::ParseReport& report,
         std::span<const std::string> reasons, std::vector<ZEL::ParseMessage>& losses)
        : shapes_(shapes), report_(report), reasons_(reasons), losses_(losses), block_(losses) {}

    void lines(std::string_view text) {
        end_ = text.data() + text.size();
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
        while (!text.empty()) {
            const std::size_t length = std::min(text.find('\n'), text.size());
            ++number_;
            line_(UTILS::trimmed(text.substr(0, length)));
            text.remove_prefix(std::min(length + 1, text.size()));
        }
    }

  private:
    void line_(std::string_view line) {
        if (line.empty()) return;
        if (inside_ && plainPoint_(line)) return;
        if (line.front() == '#' || line.front() == '/') {
            comment_(line);
            return;
        }
        tokens_.split(line);
        const ZEL::Keyword& keyword = ZEL::findKeyword(tokens_[0]);
        if (keyword.action == Action::Comment) {
            comment_(line);
            return;
        }
        if (!inside_ && keyword.action == Action::Start) start_();
        if (!hasShape_) {
            if (keyword.action == Action::End) inside_ = false;
            return;
        }
        block_.line(number_, line, keyword, tokens_);
        if (keyword.action != Action::End) return;
        block_.finish();
        inside_ = hasShape_ = false;
    }

    void start_() {
        inside_ = true;
        if (next_ == shapes_.size() || report_.shapeLines[next_] != number_) return;
        const ZEL::ZelShape& shape = *shapes_[next_];
        const std::string& reason = reasons_[next_++];
        hasShape_ = reason.empty();
        if (hasShape_)
            block_.start(shape);
        else
            losses_.push_back(
                {number_, halNotify::Warning, "the " + labelOf(shape) + " is not saved: " + reason});
    }

    /// The lines that a large file consists of.
    bool plainPoint_(std::string_view line) const {
        const auto type = line.starts_with("lla ")   ? PointType::Absolute
                          : line.starts_with("xyz ") ? PointType::Relative
                                                     : PointType::None;
        if (type == PointType::None) return false;
        if (!hasShape_) return true;
        if (!block_.keepsPoints(type)) return false;
        constexpr std::ptrdiff_t window = 80;
        const char* const numbers = line.data() + 3;
        halCore::Vec3 point;
        return end_ - numbers >= window && ZEL::readPlainPoint(numbers, point);
    }

    void comment_(std::string_view line) {
        if (!inside_)
            losses_.push_back(
                {number_, halNotify::Warning, "the comment \"" + UTILS::excerpt(line) + "\" is dropped"});
        else if (hasShape_)
            block_.comment(number_, line);
    }

    const ZEL::Parser::Shapes& shapes_;
    const ZEL::ParseReport& report_;
    std::span<const std::string> reasons_;
    std::vector<ZEL::ParseMessage>& losses_;
    ZEL::LineTokens tokens_;
    BlockLosses block_;
    const char* end_ = nullptr;
    std::size_t number_ = 0;
    std::size_t next_ = 0;
    bool inside_ = false;
    /// Whether the block that is open gave a shape that is saved; `block_` is in use only then.
    bool hasShape_ = false;
};

}  // namespace

std::vector<ZEL::ParseMessage> lossReport(std::string_view text, const ZEL::Parser::Shapes& shapes,
                                          const ZEL::ParseReport& report,
                                          std::span<const std::string> reasons) {
    std::vector<ZEL::ParseMessage> losses = report.messages;
    Walk(shapes, report, reasons, losses).lines(text);
    std::stable_sort(losses.begin(), losses.end(),
                     [](const auto& a, const auto& b) { return a.line < b.line; });
    return losses;
}

bool losesAnything(std::span<const ZEL::ParseMessage> losses) {
    return std::any_of(losses.begin(), losses.end(),
                       [](const auto& loss) { return loss.severity <= halNotify::Warning; });
}

}  // namespace OverlayEditor
