#include "model/OverlayFile.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "format/MessageSink.h"
#include "format/Parser.h"
#include "format/ShapeExtras.h"
#include "format/ShapeFields.h"
#include "format/TextReading.h"
#include "model/SerializeToShape.h"
#include "model/ShapeLabel.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {

namespace {

namespace ZEL = halCore::ZEL;

/// Whether a shape's position is an offset. One without a position has none: it stands on the platform of an
/// overlay that has one.
bool isOffset(const ZEL::ZelShape& shape) {
    return shape.isRelative() && (ZEL::pointsOf(shape) || ZEL::anchorOf(shape));
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

void TextOffsets::note(const ZEL::ZelShape& shape) {
    if (!isOffset(shape) || !ZelToSerializer().whyLeftOut(shape, true).empty()) return;
    halCore::Vec3 named;
    if (shape.getReferencePosition(named) != 0)
        fromNowhere = true;
    else if (!reference)
        reference = named;
}

void TextOffsets::append(const TextOffsets& next) {
    fromNowhere = fromNowhere || next.fromNowhere;
    if (!reference) reference = next.reference;
}

void KindCounts::add(const std::string& one, const std::string& many, std::size_t number) {
    const auto known = std::ranges::find(counts_, one, &Count::one);
    known == counts_.end() ? counts_.push_back({one, many, number}) : void(known->number += number);
}

std::size_t KindCounts::total() const {
    std::size_t total = 0;
    for (const Count& count : counts_) total += count.number;
    return total;
}

std::string KindCounts::text() const {
    std::string text;
    for (std::size_t i = 0; i < counts_.size(); ++i) {
        if (i > 0) text += i + 1 == counts_.size() ? " and " : ", ";
        text.append(std::to_string(counts_[i].number)).append(" ");
        text += counts_[i].number == 1 ? counts_[i].one : counts_[i].many;
    }
    return text;
}

void LoadRemarks::append(const LoadRemarks& next) {
    kept.add(next.kept);
    faultyLines += next.faultyLines;
    leftOut += next.leftOut;
}

void LoadRemarks::tellLeftOut(const std::string& sourceName) const {
    if (const std::size_t untold = leftOut - std::min(leftOut, UTILS::kMostListed); untold > 0)
        halNotify::notify(halNotify::Error)
            << sourceName << ": " << untold
            << (untold == 1 ? " more shape cannot be edited and is left out"
                            : " more shapes cannot be edited and are left out");
}

void LoadRemarks::tell(const std::string& sourceName) const {
    if (faultyLines > 0)
        halNotify::notify(halNotify::Error)
            << sourceName << " is loaded without what its faulty lines say: " << faultyLines
            << " of them. They are kept as they are";
    if (const std::size_t count = kept.total(); count > 0)
        halNotify::notify(halNotify::Warning) << sourceName << ": " << kept.text()
                                              << (count == 1 ? " is kept as it is" : " are kept as they are");
}

/// A file that is no overlay has something to say about each of its lines.
void tellMessages(const ZEL::ParseReport& report, const std::string& sourceName) {
    constexpr std::size_t most = 5;
    const ZEL::MessageSink sink(nullptr);
    const auto& messages = report.messages;
    for (std::size_t i = 0; i < std::min(messages.size(), most); ++i) {
        if (messages[i].severity == halNotify::Error)
            sink.error(messages[i].line, {messages[i].text});
        else if (messages[i].text == ZEL::kMultipleShapes)
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

bool hasLooseOffsets(std::string_view text) {
    ZEL::Parser::Shapes shapes;
    ZEL::ParseReport report;
    ZEL::Parser().parse(text, shapes, report);
    halCore::Vec3 reference;
    return std::ranges::any_of(shapes, [&](const ZEL::ZelShapePtr& shape) {
        return isOffset(*shape) && shape->getReferencePosition(reference) != 0;
    });
}

/// One phase after the other, each with its place among what it walks over.
struct OverlayReading::State {
    State(std::string read, std::string name, const Preferences& preferences, PointConverter* frame,
          unsigned long id, const TextPart* of)
        : text(std::move(read)),
          size(text.size()),
          sourceName(std::move(name)),
          converter(frame),
          platformId(id),
          target(preferences) {
        if (of) {
            part = *of;
            report.linesBefore = of->linesBefore;
            static_cast<TextOffsets&>(result) = of->offsets;
        }
        report.spans = &spans;
        parsing.emplace(text, shapes, report);
    }

    // Each goes on until it is through, or the slice is over. \return whether it is through
    bool parse(Slice& slice);
    /// Once all is read.
    void begin();
    bool makeShapes(Slice& slice);
    void make(ZEL::ZelShapePtr shape, std::size_t block);
    /// A block of which the reader made nothing.
    void keep(const ZEL::BlockSpan& block);
    void finish();

    std::string text;
    const std::size_t size;
    const std::string sourceName;
    PointConverter* const converter;
    const unsigned long platformId;
    std::optional<TextPart> part;
    std::size_t phase = 0;
    std::size_t next = 0;
    ZEL::Parser::Shapes shapes;
    ZEL::ParseReport report;
    std::vector<ZEL::BlockSpan> spans;
    std::optional<ZEL::TextReading> parsing;
    /// The text and its blocks, once they are read.
    std::shared_ptr<ZEL::SourceText> source;
    SerializeToShape target;
    /// How many of the shapes belong to blocks before the next.
    std::size_t made = 0;
    LoadResult result;
};

namespace {

// In microseconds, about.
constexpr std::size_t kBytesOfAUnit = 256;
constexpr std::size_t kBytesAtOnce = std::size_t{64} << 10;
constexpr std::size_t kUnitsOfAShape = 4;
constexpr std::size_t kPointsOfAUnit = 20;

std::size_t unitsOf(const ZEL::ZelShape& shape) {
    const auto* const points = ZEL::pointsOf(shape);
    return kUnitsOfAShape + (points ? points->size() / kPointsOfAUnit : 0);
}

}  // namespace

bool OverlayReading::State::parse(Slice& slice) {
    for (bool isThrough = false; !isThrough;) {
        isThrough = parsing->goOn(kBytesAtOnce);
        // At once, while what was read is still at hand.
        const std::size_t looked = shapes.size() - next;
        while (next < shapes.size()) result.note(*shapes[next++]);
        if (!isThrough && slice.isOver(kBytesAtOnce / kBytesOfAUnit + looked)) return false;
    }
    parsing.reset();
    if (!part) tellMessages(report, sourceName);
    begin();
    return true;
}

void OverlayReading::State::begin() {
    // Of the others each names what it counts from, or nothing.
    const bool isPlatform = converter && converter->refPlatformId() != 0;
    target.setPointConverter(result.fromNowhere || isPlatform ? converter : nullptr);
    const bool isEmpty = part || (spans.empty() && report.messages.empty());
    const bool isNone =
        shapes.empty() && !isEmpty && ZelToSerializer().replay(target, {}, platformId, sourceName) != 0;
    if (isNone) {
        result.error = kNoShapes;
        spans.clear();
    }
    source = std::make_shared<ZEL::SourceText>(std::move(text), std::move(spans), std::vector<bool>(),
                                               part ? part->lineEnd : std::string_view());
    result.source = source;
    result.shapes.reserve(shapes.size());
}

bool OverlayReading::State::makeShapes(Slice& slice) {
    while (next < source->blockCount()) {
        const std::size_t block = next++;
        std::size_t units = 1;
        if (source->block(block).makesShape) {
            // What was read goes as soon as the shape is made of it: of very many there is no room for both.
            ZEL::ZelShapePtr shape = std::move(shapes[made++]);
            units = unitsOf(*shape);
            make(std::move(shape), block);
        } else {
            keep(source->block(block));
        }
        if (slice.isOver(units)) return false;
    }
    finish();
    return true;
}

void OverlayReading::State::make(ZEL::ZelShapePtr shape, std::size_t block) {
    // Each message may take a host longer than the shape.
    std::optional<halNotify::Silence> silence;
    if (result.leftOut + (part ? part->leftOutBefore : 0) >= UTILS::kMostListed &&
        !ZelToSerializer().whyLeftOut(*shape, target.pointConverter() != nullptr).empty())
        silence.emplace();
    const std::string_view reason = ZelToSerializer().take(target, *shape, platformId);
    if (!reason.empty()) {
        const std::string kind(ZEL::ZelShape::shapeTypeToString(shape->shapeType()));
        result.kept.add(kind, kind.ends_with('x') ? kind : kind + 's');
        if (ZelToSerializer().typeOf(*shape) != Serializer::ShapeType::None) ++result.leftOut;
        return;
    }
    bool drawn = true;
    shape->getDrawn(drawn);
    const char* const later = becomes(*shape);
    source->hold(block);
    result.shapes.push_back(target.lastShape());
    result.shapes.back()->setShown(drawn);
    result.shapes.back()->setSource(
        {.text = source, .block = block, .extras = ZEL::extrasOf(std::move(shape)), .becomes = later});
}

void OverlayReading::State::keep(const ZEL::BlockSpan& block) {
    if (block.isEnded)
        result.kept.add("block with errors", "blocks with errors");
    else
        result.kept.add("block without \"end\"", "");
}

void OverlayReading::State::finish() {
    shapes = {};
    if (!part) result.tellLeftOut(sourceName);
    result.faultyLines = faultyLines(report, *source);
}

OverlayReading::OverlayReading(std::string text, std::string sourceName, const Preferences& preferences,
                               PointConverter* converter, unsigned long platformId, const TextPart* part)
    : state_(std::make_unique<State>(std::move(text), std::move(sourceName), preferences, converter,
                                     platformId, part)) {}

OverlayReading::~OverlayReading() = default;

bool OverlayReading::goOn(Slice& slice) {
    static constexpr std::array phases = {&State::parse, &State::makeShapes};
    while (state_->phase < phases.size() && state_->result.error.empty()) {
        if (!(*state_.*phases[state_->phase])(slice)) return false;
        ++state_->phase;
        state_->next = 0;
    }
    return true;
}

double OverlayReading::part() const {
    const auto of = [](std::size_t done, std::size_t all) {
        return all != 0 ? static_cast<double>(done) / static_cast<double>(all) : 1.0;
    };
    if (state_->phase == 0) return 0.5 * of(state_->parsing ? state_->parsing->done() : 0, state_->size);
    return 0.5 + 0.5 * (state_->phase == 1 ? of(state_->next, state_->source->blockCount()) : 1.0);
}

LoadResult OverlayReading::take() {
    return std::move(state_->result);
}

LoadResult loadOverlayText(std::string text, const std::string& sourceName, const Preferences& preferences,
                           PointConverter* converter, unsigned long platformId) {
    OverlayReading reading(std::move(text), sourceName, preferences, converter, platformId);
    Slice whole;
    reading.goOn(whole);
    return reading.take();
}

}  // namespace OverlayEditor
