#include "model/BlockRewriter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/Notify.h"
#include "common/NumberText.h"
#include "format/BlockPatch.h"
#include "format/LostLines.h"
#include "format/SerializeToZel.h"
#include "format/ShapeExtras.h"
#include "format/ShapeFields.h"
#include "format/TextBuffer.h"
#include "model/SerializeToShape.h"
#include "model/ShapeLabel.h"
#include "model/ToolMaker.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {
namespace {

namespace ZEL = halCore::ZEL;

/// While one lives shapes are made without tools: nobody draws them.
class WithoutTools {
  public:
    WithoutTools() : maker_(ToolMaker::installed()) { ToolMaker::install(nullptr); }
    ~WithoutTools() { ToolMaker::install(maker_); }
    WithoutTools(const WithoutTools&) = delete;
    WithoutTools& operator=(const WithoutTools&) = delete;

  private:
    ToolMaker* maker_;
};

}  // namespace

bool sayTheSame(std::string_view a, std::string_view b) {
    constexpr double rounding = 2e-14;
    while (a != b) {
        if (a.empty() || b.empty()) return false;
        const std::string_view wordA = a.substr(0, a.find_first_of(" \n"));
        const std::string_view wordB = b.substr(0, b.find_first_of(" \n"));
        if (wordA != wordB) {
            const auto x = UTILS::readNumber(wordA);
            const auto y = UTILS::readNumber(wordB);
            if (!x || !y || std::abs(*x - *y) > rounding * std::max(std::abs(*x), std::abs(*y))) return false;
        }
        a.remove_prefix(wordA.size());
        b.remove_prefix(wordB.size());
        if (a.empty() || b.empty() || a.front() != b.front()) return a == b;
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return true;
}

std::string blockOf(const ZEL::ZelShape& shape) {
    const auto buffer = TextBuffer::take();
    buffer->out().precision(UTILS::kSignificantDigits);
    shape.serializeToStream(buffer->out());
    return buffer->text();
}

BlockRewriter::BlockRewriter() {
    units_.registerDefaultUnits();
    parser_.setUnitsRegistry(&units_);
}

ZEL::Parser::Shapes BlockRewriter::read_(std::string_view block) {
    ZEL::Parser::Shapes shapes;
    ZEL::ParseReport report;
    parser_.parse(block, shapes, report);
    return shapes;
}

ZEL::ZelShapePtr BlockRewriter::asWritten_(const ZEL::Parser::Shapes& read, const Preferences& preferences) {
    const halNotify::Silence silence;
    const WithoutTools withoutTools;
    SerializeToShape target(preferences);
    target.setPointConverter(frame_);
    ZelToSerializer().replay(target, read, 0, {});
    const auto shapes = target.shapes();
    if (shapes.size() != 1) return nullptr;
    bool drawn = true;
    read.front()->getDrawn(drawn);
    SerializeToZel zel;
    zel.setPointConverter(frame_);
    ShapeSource source;
    source.block = 0;
    shapes.front()->setSource(source);
    shapes.front()->setShown(drawn);
    if (shapes.front()->serialize(zel) != 0 || !zel.hasShapes()) return nullptr;
    const ZEL::ZelShapePtr written = zel.shapes().back();
    ZEL::setExtras(*read.front(), *written);
    written->setDrawn(drawn);
    return written;
}

std::string BlockRewriter::meaningOf_(std::string_view block, const Preferences& preferences) {
    const auto read = read_(block);
    if (read.size() != 1) return {};
    const ZEL::ZelShapePtr written = asWritten_(read, preferences);
    return written ? blockOf(*written) : std::string();
}

std::optional<BlockRewriter::Rewritten> BlockRewriter::patched_(std::string_view old, ZEL::ZelShape& after,
                                                                const Preferences& preferences) {
    using Extent = ZEL::BlockPatch::Extent;
    auto read = read_(old);
    if (read.size() != 1) return std::nullopt;
    const auto untouched = ZEL::UntouchedPoints::find(old, *read.front(), after);
    if (!untouched.empty()) read = read_(untouched.rest(old));
    const ZEL::WithoutPoints fewer(after, untouched);
    const ZEL::ZelShapePtr before = asWritten_(read, preferences);
    if (!before) return std::nullopt;
    const std::string written = blockOf(after);
    const ZEL::BlockPatch patch(old, *read.front(), *before, after, untouched);
    bool was = true;
    bool is = true;
    before->getDrawn(was);
    after.getDrawn(is);
    if (was != is) {
        before->setDrawn(is);
        if (blockOf(*before) == written)
            return Rewritten{.lines = patch.drawn(is), .lost = {}, .sameKind = true};
        before->setDrawn(was);
    }
    // What is written may be read a last digit beside.
    std::optional<std::string> meant;
    const auto isMeant = [&](std::string_view lines) {
        const std::string means = meaningOf_(lines, preferences);
        if (sayTheSame(means, written)) return true;
        if (!meant) meant = meaningOf_(written, preferences);
        return sayTheSame(means, *meant);
    };
    for (const Extent extent : {Extent::Changed, Extent::All})
        if (auto lines = patch.lines(extent);
            lines && isMeant(untouched.empty() ? lines->whole : lines->rest))
            return Rewritten{.lines = std::move(lines->whole), .lost = std::move(lines->lost)};
    return std::nullopt;
}

BlockRewriter::Rewritten BlockRewriter::rewrite(const ZEL::SourceText& source, std::size_t block,
                                                ZEL::ZelShape& after, const Preferences& preferences,
                                                bool anew) {
    const std::string_view old = source.blockText(block);
    // Of what cannot be read where it stands, no other words say the same.
    const bool isPlaceless = ZEL::isPlaceless(after);
    frame_ = isPlaceless ? nullptr : &anywhere_;
    std::optional<Rewritten> rewritten;
    if (!anew || isPlaceless) rewritten = patched_(old, after, preferences);
    ZEL::Parser::Shapes read;
    if (!rewritten) {
        std::string written = blockOf(after);
        rewritten.emplace();
        if (!ZEL::hasAllLines(written, old)) read = read_(old);
        if (read.size() == 1) rewritten->lost = ZEL::lostLines(old, *read.front(), written, after);
        rewritten->lines = source.withLineEnds(std::move(written));
    } else if (!rewritten->lost.empty()) {
        read = read_(old);
    }
    for (auto& line : rewritten->lost) {
        line.line += source.block(block).line;
        line.text.insert(0, labelOf(*read.front()) + ": ");
    }
    return std::move(*rewritten);
}

}  // namespace OverlayEditor
