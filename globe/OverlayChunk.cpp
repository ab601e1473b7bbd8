#include "globe/OverlayChunk.h"

#include <algorithm>
#include <utility>

#include "globe/DrawingOrder.h"
#include "globe/ShapeGeometry.h"

namespace sandbox {

using halCore::Ecef;

namespace {

/// An entry's chunks: at least so many if it has the shapes for it, until they hold so many points.
constexpr std::size_t kChunks = 64;
constexpr std::size_t kChunkSize = 4000;

}  // namespace

ChunkedOverlay::ChunkedOverlay(const OverlayScene::Entry& shown, DetailBudget& budget)
    : entry(&shown), revision(shown.revision), order(drawingOrder(shown.shapes)), budget_(budget) {
    std::size_t total = 0;
    for (const auto& shape : entry->shapes) total += shape ? roughSize(*shape) : 0;
    const std::size_t enough = std::min(kChunkSize, total / kChunks);
    std::size_t size = 0;
    for (std::uint32_t i = 0; i < order.size(); ++i) {
        const std::size_t more = roughSize(*entry->shapes[order[i]]);
        if (chunks.empty() || size + more > enough) {
            chunks.push_back({.overlay = this, .first = i, .count = 0});
            size = 0;
        }
        size += more;
        ++chunks.back().count;
    }
    chunks.shrink_to_fit();
}

double ChunkedOverlay::rowsOf(std::uint32_t place) const {
    const auto known = rows_.find(place);
    return known != rows_.end() ? known->second : shares().rows;
}

void ChunkedOverlay::spendRows(std::uint32_t place, double share, std::size_t triangles) {
    if (triangles > 0 && rows_.emplace(place, share).second) spend({.triangles = triangles});
}

void ChunkedOverlay::spend(const DetailCount& more) {
    budget_.spend(more);
    spent_ += more;
}

OverlayChunk::Unfinished::Unfinished(const OverlayChunk& chunk, std::size_t number, PictureTextures& textures)
    : level(number),
      pieces(chunk.pieces == kUnknown ? static_cast<float>(chunk.overlay->shares().pieces) : chunk.pieces),
      work(chunk.workOut(*this, textures)) {}

bool OverlayChunk::isQuick() const {
    constexpr std::size_t kFew = 4;
    constexpr std::size_t kPoints = 2000;
    std::size_t size = 0;
    for (std::uint32_t i = first; count <= kFew && i < first + count; ++i)
        size += roughSize(*overlay->entry->shapes[overlay->order[i]]);
    return count <= kFew && size <= kPoints;
}

bool OverlayChunk::placeRoughly() {
    BoundingBox box;
    for (std::uint32_t i = first; i < first + count; ++i) {
        const auto place = roughPlace(*overlay->entry->shapes[overlay->order[i]], overlay->entry->reference);
        if (!place) return false;
        const Ecef reach{place->radius, place->radius, place->radius};
        box.add(place->center - reach);
        box.add(place->center + reach);
    }
    bounds = box;
    boundsLevel = kRoughly;
    return true;
}

bool OverlayChunk::build(std::size_t level, PictureTextures& textures, Slice& slice) {
    for (;;) {
        // What throws is given up.
        std::unique_ptr<Unfinished> building = std::move(unfinished);
        if (!building || building->level > level + 1 || building->level + 1 < level)
            building = std::make_unique<Unfinished>(*this, level, textures);
        const bool done = building->work.goOn(slice);
        if (building->placed) place(*building);
        if (!done) {
            unfinished = std::move(building);
            return false;
        }
        keep(*building);
        if (building->level == level) return true;
    }
}

Work OverlayChunk::workOut(Unfinished& into, PictureTextures& textures) const {
    DrawList& list = into.list;
    BoundingBox& box = into.box;
    const double tolerance = kTolerances[into.level];
    constexpr std::size_t kUnitsOfAFile = 10;
    constexpr std::size_t kPointsInAUnit = 500;
    for (std::uint32_t i = first; i < first + count; ++i) {
        const OverlayScene::Entry& entry = *overlay->entry;
        const halCore::ZEL::ZelShape& shape = *entry.shapes[overlay->order[i]];
        const DetailShares shares{overlay->rowsOf(i), into.pieces};
        const std::size_t meshes = list.meshes.size();
        const std::size_t lines = list.lines.size();
        co_await workOutGeometry(shape, entry.reference, tolerance, shares, list);
        const DetailCount count =
            detailOf(shape, std::span(list.meshes).subspan(meshes), std::span(list.lines).subspan(lines));
        overlay->spendRows(i, shares.rows, count.triangles);
        into.linePieces += count.pieces;
    }
    for (DrawList::Picture& picture : list.pictures) {
        picture.file = findPicture(picture.file.path, overlay->entry->directory);
        for (const Ecef& p : picture.vertices) box.add(p);
        co_yield kUnitsOfAFile;
    }
    for (DrawList::Label& label : list.labels) {
        if (label.icon.path.empty()) continue;
        label.icon = findPicture(label.icon.path, overlay->entry->directory);
        co_yield kUnitsOfAFile;
    }
    for (const DrawList::Mesh& mesh : list.meshes)
        for (Pieces some(mesh.vertices.size(), kPointsInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i) box.add(mesh.vertices[i]);
    for (const DrawList::Line& line : list.lines)
        for (Pieces some(line.points.size(), kPointsInAUnit); some.next(); co_yield some.units())
            for (std::size_t i = some.first; i < some.last; ++i) box.add(line.points[i]);
    box.grow(tolerance);
    into.placed = true;
    co_await makeGeometry(into.level, list, box, textures, into.made);
}

/// What waits for a picture has its place.
void OverlayChunk::place(Unfinished& placed) {
    if (placed.level < boundsLevel) {
        bounds = placed.box;  // the tighter one
        boundsLevel = placed.level;
    }
    if (!placed.list.labels.empty()) labels = std::move(placed.list.labels);
}

void OverlayChunk::keep(Unfinished& finished) {
    const std::size_t level = finished.level;
    for (auto& known : levels)
        if (known && (known->level + 1 < level || known->level > level + 1)) known.reset();
    levels[level % levels.size()] = std::move(finished.made);
    if (pieces != kUnknown) return;
    pieces = finished.pieces;
    overlay->spend({.pieces = finished.linePieces});
}

}  // namespace sandbox
