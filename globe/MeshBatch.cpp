#include "globe/MeshBatch.h"

#include <QOpenGLShaderProgram>
#include <cmath>
#include <cstddef>

#include "geo/Ecef.h"

namespace sandbox {

using halCore::Ecef;

void MeshBatch::add(const DrawList::Mesh& mesh) {
    if (mesh.triangles.empty()) return;
    if (!contents_) contents_ = std::make_unique<Contents>();
    auto& [vertexBuffer, indexBuffer, runs, vertices, triangles, indices] = *contents_;
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
    const std::size_t count = triangles.size() - first;
    const bool translucent = mesh.color.a < 255 && !mesh.solid;
    if (!translucent && !runs.empty() && !runs.back().translucent)
        runs.back().count += static_cast<int>(count);
    else
        runs.push_back({first, static_cast<int>(count), translucent});
}

void MeshBatch::upload() {
    if (!contents_) return;
    auto& [vertexBuffer, indexBuffer, runs, vertices, triangles, indices] = *contents_;
    vertexBuffer.create();
    vertexBuffer.bind();
    vertexBuffer.allocate(vertices.data(), static_cast<int>(vertices.size() * sizeof(Vertex)));
    vertexBuffer.release();
    indexBuffer.create();
    indexBuffer.bind();
    indexBuffer.allocate(triangles.data(), static_cast<int>(triangles.size() * sizeof(std::uint32_t)));
    indexBuffer.release();
    indices = triangles.size();
    vertices = {};
    triangles = {};
}

void MeshBatch::draw(QOpenGLShaderProgram& program, const std::function<void()>& beginArea) {
    contents_->vertexBuffer.bind();
    contents_->indexBuffer.bind();
    program.setAttributeBuffer(0, GL_FLOAT, offsetof(Vertex, high), 3, sizeof(Vertex));
    program.setAttributeBuffer(1, GL_FLOAT, offsetof(Vertex, low), 3, sizeof(Vertex));
    program.setAttributeBuffer(2, GL_UNSIGNED_BYTE, offsetof(Vertex, color), 4, sizeof(Vertex));
    program.setAttributeBuffer(3, GL_SHORT, offsetof(Vertex, normal), 3, sizeof(Vertex));
    for (const Run& run : contents_->runs) {
        if (run.translucent) beginArea();
        glDrawElements(GL_TRIANGLES, run.count, GL_UNSIGNED_INT,
                       reinterpret_cast<const void*>(run.first * sizeof(std::uint32_t)));
    }
    contents_->indexBuffer.release();
    contents_->vertexBuffer.release();
}

}  // namespace sandbox
