#include "globe/ChunkGeometry.h"

#include <algorithm>
#include <utility>

namespace sandbox {

ChunkGeometry::ChunkGeometry(std::size_t number, DrawList& list, const BoundingBox& box,
                             PictureTextures& textures)
    : level(number), bounds(box) {
    if (!list.pictures.empty() || !list.meshes.empty()) {
        others = std::make_unique<Others>();
        others->pictures.upload(list, textures);
    }
    for (const DrawList::Mesh& mesh : list.meshes) {
        if (mesh.solid)
            (mesh.normals.empty() ? others->solids : others->roundSolids).add(mesh);
        else
            (mesh.overBodies ? others->areasOverBodies : others->areas).add(mesh);
    }
    if (others)
        for (MeshBatch* batch :
             {&others->areas, &others->solids, &others->roundSolids, &others->areasOverBodies})
            batch->upload();
    lines = std::move(list.lines);
    lines.shrink_to_fit();
    for (const DrawList::Line& line : lines) {
        segments += line.points.size();
        widest = std::max(widest, double{line.width});
    }
}

}  // namespace sandbox
