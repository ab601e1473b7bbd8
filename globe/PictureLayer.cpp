#include "globe/PictureLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <cstddef>
#include <utility>

#include "globe/BoundingBox.h"
#include "globe/FillCost.h"
#include "globe/OverlayShaders.h"
#include "globe/ShaderProgram.h"
#include "globe/SplitPosition.h"

namespace sandbox {

namespace {

struct PictureVertex {
    FloatTriple high;
    FloatTriple low;
    std::array<float, 2> place;
};
static_assert(sizeof(PictureVertex) == 32);

}  // namespace

std::unique_ptr<QOpenGLShaderProgram> PictureBatch::compile() {
    return compileProgram(std::string(kRelativeShader) + kPictureVertexShader,
                          std::string(kSightShader) + kPictureFragmentShader, {"high", "low", "place"});
}

void PictureBatch::upload(DrawList& list, const Textures& textures) {
    std::vector<PictureVertex> vertices;
    std::vector<std::uint32_t> triangles;
    for (std::size_t p = 0; p < list.pictures.size(); ++p) {
        DrawList::Picture& picture = list.pictures[p];
        if (!textures[p]) {
            list.lines.push_back(std::move(picture.border));
            continue;
        }
        const auto base = static_cast<std::uint32_t>(vertices.size());
        BoundingBox box;
        for (std::size_t i = 0; i < picture.vertices.size(); ++i) {
            const SplitPosition s = split(picture.vertices[i]);
            vertices.push_back({s.high, s.low, picture.places[i]});
            box.add(picture.vertices[i]);
        }
        runs_.push_back(
            {textures[p], box.ball(), triangles.size(), static_cast<int>(picture.triangles.size())});
        for (const std::uint32_t index : picture.triangles) triangles.push_back(base + index);
    }
    if (runs_.empty()) return;
    vertexBuffer_.emplace(QOpenGLBuffer::VertexBuffer);
    vertexBuffer_->create();
    vertexBuffer_->bind();
    vertexBuffer_->allocate(vertices.data(), static_cast<int>(vertices.size() * sizeof(PictureVertex)));
    vertexBuffer_->release();
    indexBuffer_.emplace(QOpenGLBuffer::IndexBuffer);
    indexBuffer_->create();
    indexBuffer_->bind();
    indexBuffer_->allocate(triangles.data(), static_cast<int>(triangles.size() * sizeof(std::uint32_t)));
    indexBuffer_->release();
}

std::size_t PictureBatch::cost(const FillCost& cost) const {
    std::size_t sum = 0;
    for (const Run& run : runs_) sum += cost.of(run.ball);
    return sum;
}

std::size_t PictureBatch::draw(QOpenGLShaderProgram& program, const FillCost& cost, std::size_t piece) {
    const Run& run = runs_[piece];
    const std::size_t units = cost.of(run.ball);
    if (units == 0) return 0;
    vertexBuffer_->bind();
    indexBuffer_->bind();
    program.setAttributeBuffer(0, GL_FLOAT, offsetof(PictureVertex, high), 3, sizeof(PictureVertex));
    program.setAttributeBuffer(1, GL_FLOAT, offsetof(PictureVertex, low), 3, sizeof(PictureVertex));
    program.setAttributeBuffer(2, GL_FLOAT, offsetof(PictureVertex, place), 2, sizeof(PictureVertex));
    run.texture->bind(0);
    glDrawElements(GL_TRIANGLES, run.count, GL_UNSIGNED_INT,
                   reinterpret_cast<const void*>(run.first * sizeof(std::uint32_t)));
    run.texture->release(0);
    indexBuffer_->release();
    vertexBuffer_->release();
    return units;
}

}  // namespace sandbox
