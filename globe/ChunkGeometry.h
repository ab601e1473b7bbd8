#pragma once

#include <cstddef>
#include <memory>

#include "common/Work.h"
#include "globe/BoundingBox.h"
#include "globe/DrawList.h"
#include "globe/LineBatch.h"
#include "globe/MeshBatch.h"
#include "globe/PackedLines.h"
#include "globe/PictureLayer.h"

namespace sandbox {

class PictureTextures;

/// What is drawn of a chunk of shapes in one level of detail. Meshes and pictures are in the memory of the
/// graphics card, lines wait until they are drawn there. Very many lines are in several parts, each with the
/// next one, of which each can be drawn in a few milliseconds. To be made and destroyed with the context
/// current.
struct ChunkGeometry {
    /// What is not a line.
    struct Others {
        PictureBatch pictures;
        MeshBatch areas;
        MeshBatch solids;
        MeshBatch roundSolids;
        MeshBatch areasOverBodies;
    };
    std::size_t level = 0;           ///< in kTolerances
    std::unique_ptr<Others> others;  ///< of the first part only
    PackedLines lines;
    std::unique_ptr<LineBatch> lineBatch;  ///< the same on the card, once they are drawn there
    std::size_t segments = 0;
    double widest = 0.0;  ///< of the lines, in widget pixels
    BoundingBox bounds;
    std::unique_ptr<ChunkGeometry> next;

    bool hasLinesOnly() const { return !others; }
    bool has(auto Others::*batch) const { return others && !((*others).*batch).empty(); }
    bool hasBodies() const { return has(&Others::solids) || has(&Others::roundSolids); }
    /// Of this part.
    std::size_t cost(const FillCost& cost) const;
    /// Of all parts.
    std::size_t allSegments() const {
        std::size_t sum = 0;
        for (const ChunkGeometry* part = this; part; part = part->next.get()) sum += part->segments;
        return sum;
    }
};

/// Takes the list's meshes, pictures and lines, whose bounds are `box`; what is given by reference is to
/// outlive the work.
Work makeGeometry(std::size_t level, DrawList& list, BoundingBox box, PictureTextures& textures,
                  std::unique_ptr<ChunkGeometry>& made);

}  // namespace sandbox
