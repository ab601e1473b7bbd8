#include "globe/MeshBatch.h"

#include <QOpenGLShaderProgram>
#include <cmath>
#include <cstddef>

#include "geo/Ecef.h"
#include "globe/BoundingBox.h"
#include "globe/FillCost.h"

namespace sandbox {

using halCore::Ecef;

void MeshBatch::add(const DrawList::Mesh& mesh) {
    if (mesh.triangles.empty()) return;
    if (!contents_) contents_ = std::make_unique<Contents>();
    auto& [vertexBuffer, indexBuffer, runs, vertices, triangles] = *contents_;
    const std::size_t first = triangles.size();
    const auto base = static_cast<std::uint32_t>(vertices.size());
    const auto packed = [](double v) { return static_cast<std::int16_t>(std::lround(v * 32767.0)); };
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        const SplitPosition s = split(mesh.vertices[i]);
        const Ecef normal = mesh.normals.empty() ? Ecef() : mesh.normals[i];
        vertices.push_back({s.high,
                            s.low,
                            {mesh.color.r, mesh.color.g, mesh.color.b, mesh.color.a},
                            {packed(normal.x), packed(normal.y), packed(normal.z), 0}});
    }
    for (const std::uint32_t index : mesh.triangles) triangles.push_back(base + index);
    BoundingBox box;
    for (const Ecef& p : mesh.vertices) box.add(p);
    runs.push_back({box.ball(), first, static_cast<int>(mesh.triangles.size()),
                    mesh.color.a < 255 && !mesh.solid, mesh.solid});
}

void MeshBatch::upload() {
    if (!contents_) return;
    auto& [vertexBuffer, indexBuffer, runs, vertices, triangles] = *contents_;
    vertexBuffer.create();
    vertexBuffer.bind();
    vertexBuffer.allocate(vertices.data(), static_cast<int>(vertices.size() * sizeof(Vertex)));
    vertexBuffer.release();
    indexBuffer.create();
    indexBuffer.bind();
    indexBuffer.allocate(triangles.data(), static_cast<int>(triangles.size() * sizeof(std::uint32_t)));
    indexBuffer.release();
    vertices = {};
    triangles = {};
}

std::size_t MeshBatch::Run::cost(const FillCost& view) const {
    const std::size_t filled = view.of(ball);
    // Of a body half the faces show their back.
    const std::size_t unitsOfATriangle = solid ? 1 : 5;
    return filled > 0 ? filled + unitsOfATriangle * static_cast<std::size_t>(count) / 3 : 0;
}

std::size_t MeshBatch::cost(const FillCost& cost) const {
    std::size_t sum = 0;
    if (contents_)
        for (const Run& run : contents_->runs) sum += run.cost(cost);
    return sum;
}

std::size_t MeshBatch::draw(QOpenGLShaderProgram& program, const FillCost& cost, std::size_t& piece,
                            const std::function<void(bool)>& begin) {
    contents_->vertexBuffer.bind();
    contents_->indexBuffer.bind();
    program.setAttributeBuffer(0, GL_FLOAT, offsetof(Vertex, high), 3, sizeof(Vertex));
    program.setAttributeBuffer(1, GL_FLOAT, offsetof(Vertex, low), 3, sizeof(Vertex));
    program.setAttributeBuffer(2, GL_UNSIGNED_BYTE, offsetof(Vertex, color), 4, sizeof(Vertex));
    program.setAttributeBuffer(3, GL_SHORT, offsetof(Vertex, normal), 3, sizeof(Vertex));
    std::size_t units = 0;
    const std::vector<Run>& runs = contents_->runs;
    while (piece < runs.size() && units < FillCost::kAtOnce) {
        const Run& run = runs[piece++];
        std::size_t more = run.cost(cost);
        if (more == 0) continue;
        units += more;
        int count = run.count;
        for (; !run.translucent && piece < runs.size() && units < FillCost::kAtOnce; ++piece) {
            more = runs[piece].translucent ? 0 : runs[piece].cost(cost);
            if (more == 0) break;
            units += more;
            count += runs[piece].count;
        }
        begin(run.translucent);
        glDrawElements(GL_TRIANGLES, count, GL_UNSIGNED_INT,
                       reinterpret_cast<const void*>(run.first * sizeof(std::uint32_t)));
    }
    contents_->indexBuffer.release();
    contents_->vertexBuffer.release();
    return units;
}

}  // namespace sandbox
