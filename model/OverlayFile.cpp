#include "model/OverlayFile.h"

#include "common/Files.h"
#include "common/NumberText.h"
#include "format/SerializeToZel.h"
#include "model/SerializeToShape.h"
#include "model/TextBuffer.h"
#include "model/ZelToSerializer.h"

namespace OverlayEditor {

namespace {

template <typename Shapes>
std::string textOf(const Shapes& shapes, PointConverter* converter, std::vector<std::string>* skipped) {
    SerializeToZel zel;
    zel.setPointConverter(converter);
    for (const auto& shape : shapes) {
        const bool written = shape->serialize(zel) == 0 && zel.shapes().back();
        if (!written && skipped) skipped->push_back(shape->name());
    }
    if (!zel.hasShapes()) return {};
    const auto buffer = TextBuffer::take();
    buffer->out().precision(UTILS::kSignificantDigits);
    zel.writeTo(buffer->out(), UTILS::kSignificantDigits);
    return buffer->text();
}

}  // namespace

std::string overlayText(const Overlay& overlay, std::vector<std::string>* skipped) {
    return textOf(overlay.shapes(), overlay.pointConverter(), skipped);
}

std::string shapesText(const std::vector<std::unique_ptr<Shape>>& shapes, PointConverter* converter,
                       std::vector<std::string>* skipped) {
    return textOf(shapes, converter, skipped);
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
    SerializeToShape target(preferences);
    target.setPointConverter(converter);
    const bool anyShape = ZelToSerializer().load(target, text, platformId, sourceName, &result.leftOut) == 0;
    result.shapes = target.shapes();
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
