#include "globe/OverlayChunk.h"

#include <algorithm>
#include <span>
#include <string>
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

ChunkedOverlay::ChunkedOverlay(const OverlayScene::Entry& shown, FillBudget& fills)
    : entry(&shown), revision(shown.revision), order(drawingOrder(shown.shapes)), fills_(fills) {
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

void ChunkedOverlay::append(std::uint32_t place, double tolerance, DrawList& list) {
    const auto known = fillShares_.find(place);
    const double share = known != fillShares_.end() ? known->second : fills_.share();
    const std::size_t before = list.meshes.size();
    appendGeometry(*entry->shapes[order[place]], entry->reference, tolerance, list, share);
    if (known != fillShares_.end()) return;
    const auto fresh = std::span(list.meshes).subspan(before);
    if (std::ranges::none_of(fresh, &DrawList::Mesh::tangled)) return;
    spent_ += fills_.spend(fresh);
    fillShares_.emplace(place, share);
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

void OverlayChunk::build(std::size_t level, PictureTextures& textures) {
    DrawList list;
    for (std::uint32_t i = first; i < first + count; ++i) overlay->append(i, kTolerances[level], list);
    const std::string& directory = overlay->entry->directory;
    BoundingBox box;
    for (DrawList::Picture& picture : list.pictures) {
        picture.file = findPicture(picture.file.path, directory);
        for (const Ecef& p : picture.vertices) box.add(p);
    }
    for (DrawList::Label& label : list.labels)
        if (!label.icon.path.empty()) label.icon = findPicture(label.icon.path, directory);
    for (const DrawList::Mesh& mesh : list.meshes)
        for (const Ecef& p : mesh.vertices) box.add(p);
    for (const DrawList::Line& line : list.lines)
        for (const Ecef& p : line.points) box.add(p);
    box.grow(kTolerances[level]);
    if (level < boundsLevel) {
        bounds = box;  // the tighter one
        boundsLevel = level;
    }
    for (auto& known : levels)
        if (known && (known->level + 1 < level || known->level > level + 1)) known.reset();
    levels[level % levels.size()] = std::make_unique<ChunkGeometry>(level, list, box, textures);
    labels = std::move(list.labels);
}

}  // namespace sandbox
