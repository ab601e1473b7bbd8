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
    target.setPointConverter(&anywhere_);
    ZelToSerializer().replay(target, read, 0, {});
    const auto shapes = target.shapes();
    if (shapes.size() != 1) return nullptr;
    bool drawn = true;
    read.front()->getDrawn(drawn);
    SerializeToZel zel;
    zel.setPointConverter(&anywhere_);
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

BlockRewriter::Rewritten BlockRewriter::rewrite(const ZEL::SourceText& source, std::size_t block,
                                                ZEL::ZelShape& after, const Preferences& preferences,
                                                bool anew) {
    using Extent = ZEL::BlockPatch::Extent;
    const std::string_view old = source.blockText(block);
    const std::string written = blockOf(after);
    const auto read = read_(old);
    if (read.size() != 1) return {.lines = source.withLineEnds(written), .lost = {}};
    if (const ZEL::ZelShapePtr before = anew ? nullptr : asWritten_(read, preferences)) {
        bool was = true;
        bool is = true;
        before->getDrawn(was);
        after.getDrawn(is);
        if (was != is) {
            before->setDrawn(is);
            const bool same = blockOf(*before) == written;
            before->setDrawn(was);
            if (same)
                return {
                    .lines = ZEL::BlockPatch::drawn(old, *read.front(), is), .lost = {}, .sameKind = true};
        }
        const std::string meant = meaningOf_(written, preferences);
        const ZEL::BlockPatch patch(old, *read.front(), *before, after);
        for (const Extent extent : {Extent::Changed, Extent::All}) {
            auto lines = patch.lines(extent);
            if (lines && sayTheSame(meaningOf_(*lines, preferences), meant))
                return {.lines = std::move(*lines), .lost = {}};
        }
    }
    auto lost = ZEL::lostLines(old, source.block(block).line, *read.front(), written, after);
    const std::string label = labelOf(*read.front()) + ": ";
    for (auto& line : lost) line.text.insert(0, label);
    return {.lines = source.withLineEnds(written), .lost = std::move(lost)};
}

}  // namespace OverlayEditor
