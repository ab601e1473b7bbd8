#include "globe/DetailBudget.h"

#include <algorithm>

#include "format/ShapeCast.h"
#include "format/ZelShapes.h"

namespace sandbox {

DetailCount detailOf(const halCore::ZEL::ZelShape& shape, std::span<const DrawList::Mesh> meshes,
                     std::span<const DrawList::Line> lines) {
    DetailCount count;
    for (const DrawList::Mesh& mesh : meshes)
        if (mesh.tangled) count.triangles += mesh.triangles.size() / 3;
    // No other shape can do with fewer.
    const auto* path = halCore::ZEL::shapeAs<halCore::ZEL::PointBasedShape>(shape);
    if (!path) return count;
    for (const DrawList::Line& line : lines) count.pieces += line.points.size();
    count.pieces -= std::min(count.pieces, path->points().size());
    return count;
}

}  // namespace sandbox
