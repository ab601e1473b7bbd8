#include "model/OverlayFile.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "common/Notify.h"
#include "format/MessageSink.h"
#include "format/Parser.h"
#include "format/ShapeExtras.h"
#include "format/ShapeFields.h"
#include "model/SerializeToShape.h"
#include "model/ShapeLabel.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {

namespace {

namespace ZEL = halCore::ZEL;

/// What the reader says when it has no report to write to, without drowning what else is said: a file that
/// is no overlay has something to say about each of its lines.
void log(const halCore::ZEL::ParseReport& report, const std::string& sourceName) {
    constexpr std::size_t most = 5;
    const halCore::ZEL::MessageSink sink(nullptr);
    const auto& messages = report.messages;
    for (std::size_t i = 0; i < std::min(messages.size(), most); ++i) {
        if (messages[i].severity == halNotify::Error)
            sink.error(messages[i].line, {messages[i].text});
        else if (messages[i].text == halCore::ZEL::kMultipleShapes)
            sink.warning(messages[i].line, messages[i].text);
        else
            halNotify::notify(halNotify::Warning)
                << sourceName << ", line " << messages[i].line << ": " << messages[i].text;
    }
    if (messages.size() > most)
        halNotify::notify(halNotify::Warning)
            << sourceName << " has " << report.messageCount() - most
            << (report.messageCount() - most == 1 ? " more line that is" : " more lines that are")
            << " not understood";
}

/// Whether a shape's position is an offset. One without a position has none: it stands on the platform of an
/// overlay that has one.
bool isOffset(const ZEL::ZelShape& shape) {
    return shape.isRelative() && (ZEL::pointsOf(shape) || ZEL::anchorOf(shape));
}

/// Adds what a shape that can be held says about offsets.
void noteOffsets(const ZEL::ZelShape& shape, LoadResult& result) {
    if (!isOffset(shape) || !ZelToSerializer().whyLeftOut(shape, true).empty()) return;
    halCore::Vec3 reference;
    if (shape.getReferencePosition(reference) != 0)
        result.fromNowhere = true;
    else if (!result.reference)
        result.reference = reference;
}

/// What a block turns into once its shape is changed.
const char* becomes(const ZEL::ZelShape& shape) {
    switch (shape.shapeType()) {
        case ZEL::ShapeType::Points:
            return "becomes a line through all of its points";
        case ZEL::ShapeType::LineSegs:
            return "becomes one line through all of its points";
        default:
            return nullptr;
    }
}

/// Counts things of a kind in the order in which they come.
class Counts {
  public:
    void add(const std::string& one, const std::string& many) {
        const auto known = std::ranges::find(counts_, one, &Count::one);
        known == counts_.end() ? counts_.push_back({one, many, 1}) : void(++known->number);
    }
    /// "1 latlonaltbox, 2 cones and 3 blocks with errors"
    std::string text() const {
        std::string text;
        for (std::size_t i = 0; i < counts_.size(); ++i) {
            if (i > 0) text += i + 1 == counts_.size() ? " and " : ", ";
            text.append(std::to_string(counts_[i].number)).append(" ");
            text += counts_[i].number == 1 ? counts_[i].one : counts_[i].many;
        }
        return text;
    }

  private:
    struct Count {
        std::string one;
        std::string many;
        std::size_t number = 0;
    };
    std::vector<Count> counts_;
};

/// Keeps the text, and tells each shape its block.
/// \param read the shapes that were read, of which those are held that have no reason why not
void takeSource(std::string text, std::vector<ZEL::BlockSpan> spans, const ZEL::Parser::Shapes& read,
                const std::vector<std::string>& reasons, LoadResult& result) {
    std::vector<bool> held(spans.size());
    Counts kept;
    std::size_t made = 0;
    std::vector<ShapeSource> sources;
    for (std::size_t i = 0; i < spans.size(); ++i) {
        if (spans[i].makesShape && reasons[made].empty()) {
            held[i] = true;
            sources.push_back({.text = nullptr,
                               .block = i,
                               .digest = 0,
                               .extras = ZEL::extrasOf(read[made]),
                               .becomes = becomes(*read[made])});
        } else if (spans[i].makesShape) {
            const std::string kind(ZEL::ZelShape::shapeTypeToString(read[made]->shapeType()));
            kept.add(kind, kind.ends_with('x') ? kind : kind + 's');
        } else if (spans[i].isEnded) {
            kept.add("block with errors", "blocks with errors");
        } else {
            kept.add("block without \"end\"", "");
        }
        if (!held[i]) ++result.keptBlocks;
        if (spans[i].makesShape) ++made;
    }
    result.kept = kept.text();
    result.source =
        std::make_shared<const ZEL::SourceText>(std::move(text), std::move(spans), std::move(held));
    for (std::size_t i = 0; i < result.shapes.size(); ++i) {
        sources[i].text = result.source;
        result.shapes[i]->setSource(std::move(sources[i]));
    }
}

/// Lines with errors, but for those of blocks that are kept as a whole.
std::size_t faultyLines(const ZEL::ParseReport& report, const ZEL::SourceText& source) {
    std::size_t count = 0;
    for (const ZEL::ParseMessage& message : report.messages) {
        const auto block = source.blockOfLine(message.line);
        if (message.severity == halNotify::Error && (!block || source.isHeld(*block))) ++count;
    }
    return count + report.omittedMessages;
}

}  // namespace

bool hasLooseOffsets(std::string_view text) {
    ZEL::Parser::Shapes shapes;
    ZEL::ParseReport report;
    ZEL::Parser().parse(text, shapes, report);
    halCore::Vec3 reference;
    return std::ranges::any_of(shapes, [&](const ZEL::ZelShapePtr& shape) {
        return isOffset(*shape) && shape->getReferencePosition(reference) != 0;
    });
}

LoadResult loadOverlayText(std::string text, const std::string& sourceName, const Preferences& preferences,
                           PointConverter* converter, unsigned long platformId) {
    LoadResult result;
    ZEL::Parser::Shapes read;
    ZEL::ParseReport report;
    std::vector<ZEL::BlockSpan> spans;
    report.spans = &spans;
    ZEL::Parser().parse(std::string_view(text), read, report);
    log(report, sourceName);
    for (const ZEL::ZelShapePtr& shape : read) noteOffsets(*shape, result);

    SerializeToShape target(preferences);
    // Of the others each names what it counts from, or nothing.
    const bool isPlatform = converter && converter->refPlatformId() != 0;
    target.setPointConverter(result.fromNowhere || isPlatform ? converter : nullptr);
    std::vector<std::string> reasons;
    const bool isEmpty = spans.empty() && report.messages.empty();
    if (!isEmpty && ZelToSerializer().replay(target, read, platformId, sourceName, &reasons) != 0) {
        result.error = "no valid shapes found";
        return result;
    }
    result.shapes = target.shapes();
    auto shape = result.shapes.begin();
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (!reasons[i].empty()) {
            result.leftOut.push_back(labelOf(*read[i]));
            continue;
        }
        bool drawn = true;
        read[i]->getDrawn(drawn);
        (*shape++)->setShown(drawn);
    }
    takeSource(std::move(text), std::move(spans), read, reasons, result);
    result.faultyLines = faultyLines(report, *result.source);
    return result;
}

}  // namespace OverlayEditor
