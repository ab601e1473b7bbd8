#include "globe/ChunkGeometry.h"

#include <algorithm>
#include <utility>

#include "globe/DetailChoice.h"
#include "globe/FillCost.h"
#include "globe/PictureTextures.h"

namespace sandbox {

using halCore::Ecef;

namespace {

/// What is longer is cut into lines of so many segments: the wider they are, the longer each takes to draw.
std::size_t longest(const DrawList::Line& line) {
    constexpr float kOfAPixel = 1024.0F;
    return static_cast<std::size_t>(kOfAPixel / std::clamp(line.width, 2.0F, 255.0F));
}

/// A part has so many, and what its last line adds.
constexpr std::size_t kSegments = 4096;

/// Cuts a line into shorter ones, one after the other, that look the same together.
class LineCut {
  public:
    explicit LineCut(const DrawList::Line& line)
        : line_(line),
          closed_(line.closed && line.points.size() > 2),
          segments_(line.points.size() - (closed_ ? 0 : 1)),
          longest_(longest(line)) {}

    bool isOver() const { return done_ == segments_; }
    DrawList::Line next() {
        const std::size_t end = std::min(done_ + longest_, segments_);
        DrawList::Line piece;
        piece.color = line_.color;
        piece.width = line_.width;
        piece.stroke = line_.stroke;
        piece.solid = line_.solid;
        piece.overBodies = line_.overBodies;
        piece.leads = closed_ || done_ > 0;
        piece.trails = closed_ || end < segments_;
        piece.metres = metres_ - (piece.leads ? length(at(done_) - before(done_)) : 0.0);
        piece.points.reserve(end - done_ + 3);
        if (piece.leads) piece.points.push_back(before(done_));
        for (std::size_t i = done_; i <= end; ++i) piece.points.push_back(at(i));
        if (piece.trails) piece.points.push_back(at(end + 1));
        if (line_.stroke != Stroke::Solid)
            for (std::size_t i = done_; i < end; ++i) metres_ += length(at(i + 1) - at(i));
        done_ = end;
        return piece;
    }

  private:
    const Ecef& at(std::size_t i) const { return line_.points[i % line_.points.size()]; }
    const Ecef& before(std::size_t i) const { return at(i + line_.points.size() - 1); }

    const DrawList::Line& line_;
    bool closed_;
    std::size_t segments_;
    std::size_t longest_;
    std::size_t done_ = 0;
    double metres_ = 0.0;
};

/// Adds a line to the last part, or begins another one. \return the last part now
ChunkGeometry* add(const DrawList::Line& line, ChunkGeometry* part) {
    if (part->segments >= kSegments) {
        part->lines.shrinkToFit();
        part->next = std::make_unique<ChunkGeometry>();
        part->next->level = part->level;
        part = part->next.get();
    }
    part->segments += line.points.size();
    part->widest = std::max(part->widest, double{line.width});
    part->lines.add(line, kTolerances[part->level]);
    return part;
}

}  // namespace

std::size_t ChunkGeometry::cost(const FillCost& cost) const {
    std::size_t sum = 0;
    if (others)
        sum = others->pictures.cost(cost) + others->areas.cost(cost) + others->solids.cost(cost) +
              others->roundSolids.cost(cost) + others->areasOverBodies.cost(cost);
    for (const DrawList::Line& line : lines) sum += cost.of(line);
    return sum;
}

Work makeGeometry(std::size_t level, DrawList& list, BoundingBox box, PictureTextures& textures,
                  std::unique_ptr<ChunkGeometry>& made) {
    constexpr std::size_t pointsOfAUnit = 50;
    constexpr std::size_t verticesOfAUnit = 20;
    auto first = std::make_unique<ChunkGeometry>();
    first->level = level;
    first->bounds = box;
    if (!list.pictures.empty() || !list.meshes.empty()) {
        first->others = std::make_unique<ChunkGeometry::Others>();
        PictureBatch::Textures found(list.pictures.size());
        for (std::size_t i = 0; i < found.size(); ++i)
            co_await textures.find(list.pictures[i].file, found[i]);
        first->others->pictures.upload(list, found);
        ChunkGeometry::Others& others = *first->others;
        for (const DrawList::Mesh& mesh : list.meshes) {
            if (mesh.solid)
                (mesh.normals.empty() ? others.solids : others.roundSolids).add(mesh);
            else
                (mesh.overBodies ? others.areasOverBodies : others.areas).add(mesh);
            co_yield 1 + mesh.vertices.size() / verticesOfAUnit;
        }
        for (MeshBatch* batch :
             {&others.areas, &others.solids, &others.roundSolids, &others.areasOverBodies}) {
            batch->upload();
            co_yield 1;
        }
    }
    ChunkGeometry* part = first.get();
    for (DrawList::Line& line : list.lines) {
        if (line.points.size() <= longest(line)) {
            part = add(line, part);
            line.points = {};
            co_yield 0;
            continue;
        }
        for (LineCut cut(line); !cut.isOver();) {
            const DrawList::Line piece = cut.next();
            part = add(piece, part);
            co_yield piece.points.size() / pointsOfAUnit;
        }
    }
    part->lines.shrinkToFit();
    for (part = first->next.get(); part; part = part->next.get()) {
        for (const DrawList::Line& line : part->lines)
            for (const Ecef& p : line.points) part->bounds.add(p);
        part->bounds.grow(kTolerances[level]);
        co_yield part->segments / pointsOfAUnit;
    }
    made = std::move(first);
}

}  // namespace sandbox
