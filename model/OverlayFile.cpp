#include "model/OverlayFile.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "common/Notify.h"
#include "format/MessageSink.h"
#include "format/SerializeToZel.h"
#include "model/SerializeToShape.h"
#include "model/ShapeLabel.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {

namespace {

/// What the reader says when it has no report to write to, without drowning what else is said: a file that
/// is no overlay has something to say about each of its lines.
void log(const halCore::ZEL::ParseReport& report, const std::string& sourceName) {
    constexpr std::size_t most = 5;
    const halCore::ZEL::MessageSink sink(nullptr);
    const auto& messages = report.messages;
    for (std::size_t i = 0; i < std::min(messages.size(), most); ++i) {
        if (messages[i].severity == halNotify::Error)
            sink.error(messages[i].line, {messages[i].text});
        else
            sink.warning(messages[i].line, messages[i].text);
    }
    if (messages.size() > most)
        halNotify::notify(halNotify::Warning)
            << sourceName << " has " << messages.size() - most << " more lines that are not understood";
}

/// Whether saving would write the shape. Lists of points need no trial.
bool isWritten(Shape& shape, PointConverter* converter) {
    if (const auto* const list = dynamic_cast<PolygonShape*>(&shape)) return list->isComplete();
    SerializeToZel zel;
    zel.setPointConverter(converter);
    return shape.serialize(zel) == 0;
}

/// Adds what a shape that was read says about offsets.
void noteOffsets(const halCore::ZEL::ZelShape& shape, LoadResult& result) {
    if (!shape.isRelative()) return;
    halCore::Vec3 reference;
    if (shape.getReferencePosition(reference) != 0)
        result.fromNowhere = true;
    else if (!result.reference)
        result.reference = reference;
}

/// Keeps the text, and tells each shape its block.
/// \param reasons for each shape that was read why the editor does not hold it
void takeSource(std::string text, std::vector<halCore::ZEL::BlockSpan> spans,
                const std::vector<std::string>& reasons, LoadResult& result) {
    std::vector<bool> held(spans.size());
    std::vector<std::size_t> blocks;
    std::size_t made = 0;
    for (std::size_t i = 0; i < spans.size(); ++i) {
        if (!spans[i].makesShape) continue;
        held[i] = made < reasons.size() && reasons[made].empty();
        if (held[i]) blocks.push_back(i);
        ++made;
    }
    result.source =
        std::make_shared<const halCore::ZEL::SourceText>(std::move(text), std::move(spans), std::move(held));
    for (std::size_t i = 0; i < result.shapes.size(); ++i)
        result.shapes[i]->setSource(
            {.text = result.source, .block = blocks[i], .digest = 0, .extras = nullptr});
}

}  // namespace

LoadResult loadOverlayText(std::string text, const std::string& sourceName, const Preferences& preferences,
                           PointConverter* converter, unsigned long platformId) {
    LoadResult result;
    halCore::ZEL::Parser::Shapes read;
    halCore::ZEL::ParseReport report;
    std::vector<halCore::ZEL::BlockSpan> spans;
    report.spans = &spans;
    halCore::ZEL::Parser().parse(std::string_view(text), read, report);
    log(report, sourceName);
    report.addUnterminatedBlock();

    SerializeToShape target(preferences);
    target.setPointConverter(converter);
    std::vector<std::string> reasons;
    const bool anyShape = ZelToSerializer().replay(target, read, platformId, sourceName, &reasons) == 0;
    result.shapes = target.shapes();
    const std::vector<std::string> reasonsToLeaveOut = reasons;
    auto shape = result.shapes.begin();
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (!reasons[i].empty()) {
            result.leftOut.push_back(labelOf(*read[i]));
            continue;
        }
        noteOffsets(*read[i], result);
        if (!isWritten(**shape++, converter)) reasons[i] = "it is not complete";
    }
    result.losses = lossReport(text, read, report, reasons);
    takeSource(std::move(text), std::move(spans), reasonsToLeaveOut, result);
    if (result.shapes.empty())
        result.error = anyShape ? "none of its shapes can be edited" : "no valid shapes found";
    return result;
}

}  // namespace OverlayEditor
