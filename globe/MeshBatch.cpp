#include "globe/MeshBatch.h"

#include <QOpenGLShaderProgram>
#include <cmath>
#include <cstddef>

#include "geo/Ecef.h"

namespace sandbox {

using halCore::Ecef;

void MeshBatch::add(const DrawList::Mesh& mesh) {
    const std::size_t first = triangles_.size();
    const auto base = static_cast<std::uint32_t>(vertices_.size());
    const auto packed = [](double v) { return static_cast<std::int16_t>(std::lround(v * 32767.0)); };
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        const SplitPosition s = split(mesh.vertices[i]);
        const Ecef normal = mesh.normals.empty() ? Ecef() : mesh.normals[i];
        vertices_.push_back({s.high,
                             s.low,
                             {mesh.color.r, mesh.color.g, mesh.color.b, mesh.color.a},
                             {packed(normal.x), packed(normal.y), packed(normal.z), 0}});
    }
    for (const std::uint32_t index : mesh.triangles) triangles_.push_back(base + index);
    const std::size_t count = triangles_.size() - first;
    if (count == 0) return;
    const bool translucent = mesh.color.a < 255 && !mesh.solid;
    if (!translucent && !runs_.empty() && !runs_.back().translucent)
        runs_.back().count += static_cast<int>(count);
    else
        runs_.push_back({first, static_cast<int>(count), translucent});
}

void MeshBatch::upload() {
    if (runs_.empty()) return;
    vertexBuffer_.emplace(QOpenGLBuffer::VertexBuffer);
    vertexBuffer_->create();
    vertexBuffer_->bind();
    vertexBuffer_->allocate(vertices_.data(), static_cast<int>(vertices_.size() * sizeof(Vertex)));
    vertexBuffer_->release();
    indexBuffer_.emplace(QOpenGLBuffer::IndexBuffer);
    indexBuffer_->create();
    indexBuffer_->bind();
    indexBuffer_->allocate(triangles_.data(), static_cast<int>(triangles_.size() * sizeof(std::uint32_t)));
    indexBuffer_->release();
    vertices_ = {};
    triangles_ = {};
}

void MeshBatch::draw(QOpenGLShaderProgram& program, const std::function<void()>& beginArea) {
    vertexBuffer_->bind();
    indexBuffer_->bind();
    program.setAttributeBuffer(0, GL_FLOAT, offsetof(Vertex, high), 3, sizeof(Vertex));
    program.setAttributeBuffer(1, GL_FLOAT, offsetof(Vertex, low), 3, sizeof(Vertex));
    program.setAttributeBuffer(2, GL_UNSIGNED_BYTE, offsetof(Vertex, color), 4, sizeof(Vertex));
    program.setAttributeBuffer(3, GL_SHORT, offsetof(Vertex, normal), 3, sizeof(Vertex));
    for (const Run& run : runs_) {
        if (run.translucent) beginArea();
        glDrawElements(GL_TRIANGLES, run.count, GL_UNSIGNED_INT,
                       reinterpret_cast<const void*>(run.first * sizeof(std::uint32_t)));
    }
    indexBuffer_->release();
    vertexBuffer_->release();
}

}  // namespace sandbox
