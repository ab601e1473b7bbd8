#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "globe/BoundingBox.h"
#include "globe/DrawList.h"
#include "globe/LineBatch.h"
#include "globe/MeshBatch.h"
#include "globe/PictureLayer.h"

namespace sandbox {

/// What is drawn of a chunk of shapes in one level of detail. Meshes and pictures are in the memory of the
/// graphics card, lines wait until they are drawn there. To be made and destroyed with the context current.
struct ChunkGeometry {
    /// What is not a line.
    struct Others {
        PictureBatch pictures;
        MeshBatch areas;
        MeshBatch solids;
        MeshBatch roundSolids;
        MeshBatch areasOverBodies;
    };
    std::size_t level;  ///< in kTolerances
    std::unique_ptr<Others> others;
    std::vector<DrawList::Line> lines;
    std::unique_ptr<LineBatch> lineBatch;  ///< the same on the card, once they are drawn there
    std::size_t segments = 0;
    double widest = 0.0;  ///< of the lines, in widget pixels
    BoundingBox bounds;

    /// Takes the list's meshes, pictures and lines. Their bounds are `box`.
    ChunkGeometry(std::size_t level, DrawList& list, const BoundingBox& box, PictureTextures& textures);

    bool hasLinesOnly() const { return !others; }
    bool has(auto Others::*batch) const { return others && !((*others).*batch).empty(); }
    bool hasBodies() const { return has(&Others::solids) || has(&Others::roundSolids); }
};

}  // namespace sandbox
