#include "model/OverlayFile.h"

#include "common/Files.h"
#include "common/NumberText.h"
#include "common/SaveFile.h"
#include "format/MessageSink.h"
#include "format/SerializeToZel.h"
#include "model/SerializeToShape.h"
#include "model/ShapeLabel.h"
#include "model/ShapePlace.h"
#include "model/TextBuffer.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {

namespace {

/// The text of a file. Each shape is written as soon as it is described, so that there is but one in memory.
class TextOfShapes {
  public:
    TextOfShapes(PointConverter* converter, bool referenceWritten, SkippedShapes* skipped)
        : skipped_(skipped) {
        zel_.setReferenceWritten(referenceWritten);
        zel_.setPointConverter(converter);
        buffer_->out().precision(UTILS::kSignificantDigits);
        SerializeToZel::writeHeadTo(buffer_->out());
    }

    void add(Shape& shape) {
        // Asked before: a shape that cannot be written makes a message, which may be its end.
        std::string name = skipped_ ? shape.name() : std::string();
        const Shape::Survival survives(shape);
        if ((shape.serialize(zel_) != 0 || !zel_.shapes().back()) && skipped_)
            skipped_->push_back({std::move(name), survives && hasPlace(shape)});
        any_ = any_ || zel_.hasShapes();
        zel_.writeShapesTo(buffer_->out());
        zel_.clear();
    }

    /// Empty when there is nothing to write.
    std::string text() const { return any_ ? buffer_->text() : std::string(); }

  private:
    SerializeToZel zel_;
    TextBuffer::Ptr buffer_ = TextBuffer::take();
    SkippedShapes* skipped_;
    bool any_ = false;
};

/// What the reader says when it has no report to write to.
void log(const halCore::ZEL::ParseReport& report) {
    const halCore::ZEL::MessageSink sink(nullptr);
    for (const auto& message : report.messages) {
        if (message.severity == halNotify::Error)
            sink.error(message.line, {message.text});
        else
            sink.warning(message.line, message.text);
    }
}

/// Whether saving would write the shape. Lists of points need no trial.
bool isWritten(Shape& shape, PointConverter* converter) {
    if (const auto* const list = dynamic_cast<PolygonShape*>(&shape)) return list->isComplete();
    SerializeToZel zel;
    zel.setPointConverter(converter);
    return shape.serialize(zel) == 0;
}

/// Adds what a shape that was read says about offsets. \param absolute whether one without them was read
void noteOffsets(const halCore::ZEL::ZelShape& shape, bool& absolute,
                 std::optional<LoadResult::Offsets>& offsets) {
    if (!shape.isRelative()) {
        absolute = true;
        return;
    }
    if (!offsets) offsets.emplace();
    halCore::Vec3 reference;
    if (shape.getReferencePosition(reference) != 0)
        offsets->assumed = true;
    else if (!offsets->reference)
        offsets->reference = reference;
}

}  // namespace

std::string overlayText(const Overlay& overlay, SkippedShapes* skipped) {
    TextOfShapes text(overlay.pointConverter(), overlay.referenceWritten(), skipped);
    for (Shape* shape : overlay.shapes())
        if (overlay.contains(shape)) text.add(*shape);
    return text.text();
}

std::string shapesText(const std::vector<std::unique_ptr<Shape>>& shapes, PointConverter* converter,
                       SkippedShapes* skipped) {
    TextOfShapes text(converter, false, skipped);
    for (const auto& shape : shapes) text.add(*shape);
    return text.text();
}

SaveResult saveOverlayFile(const Overlay& overlay, const std::string& path) {
    SaveResult result;
    const std::string text = overlayText(overlay, &result.skipped);
    result.error = text.empty() ? "there is nothing to save" : UTILS::saveFile(path, text);
    return result;
}

LoadResult loadOverlayText(std::string_view text, const std::string& sourceName,
                           const Preferences& preferences, PointConverter* converter,
                           unsigned long platformId) {
    LoadResult result;
    halCore::ZEL::Parser::Shapes read;
    halCore::ZEL::ParseReport report;
    halCore::ZEL::Parser().parse(text, read, report);
    log(report);
    report.addUnterminatedBlock();

    SerializeToShape target(preferences);
    target.setPointConverter(converter);
    std::vector<std::string> reasons;
    const bool anyShape = ZelToSerializer().replay(target, read, platformId, sourceName, &reasons) == 0;
    result.shapes = target.shapes();
    auto shape = result.shapes.begin();
    bool absolute = false;
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (!reasons[i].empty()) {
            result.leftOut.push_back(labelOf(*read[i]));
            continue;
        }
        noteOffsets(*read[i], absolute, result.offsets);
        if (!isWritten(**shape++, converter)) reasons[i] = "it is not complete";
    }
    if (result.offsets) result.offsets->mixed = absolute;
    result.losses = lossReport(text, read, report, reasons);
    result.logged = !anyShape;
    if (result.shapes.empty())
        result.error = anyShape ? "none of its shapes can be edited" : "no valid shapes found";
    return result;
}

LoadResult loadOverlayFile(const std::string& path, const Preferences& preferences, PointConverter* converter,
                           unsigned long platformId) {
    LoadResult result;
    std::string text;
    result.error = UTILS::readFile(path, text);
    if (!result.error.empty()) return result;
    return loadOverlayText(text, path, preferences, converter, platformId);
}

}  // namespace OverlayEditor
