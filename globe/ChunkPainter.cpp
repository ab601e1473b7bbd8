#include "globe/ChunkPainter.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <algorithm>
#include <string>
#include <utility>

#include "globe/OverlayShaders.h"
#include "globe/PlainSight.h"
#include "globe/RasterLayer.h"
#include "globe/ShaderProgram.h"

namespace sandbox {

ChunkPainter::ChunkPainter(RasterLayer* raster)
    : raster_(raster),
      lineProgram_(LineBatch::compile()),
      meshProgram_(compileProgram(std::string(kRelativeShader) + kMeshVertexShader,
                                  std::string(kSightShader) + kMeshFragmentShader,
                                  {"high", "low", "color", "normal"})),
      plainProgram_(compileProgram(std::string(kRelativeShader) + kMeshVertexShader, kPlainMeshFragmentShader,
                                   {"high", "low", "color", "normal"})),
      pictureProgram_(PictureBatch::compile()) {}

ChunkPainter::~ChunkPainter() = default;

bool ChunkPainter::isReady() const {
    return lineProgram_->isLinked() && meshProgram_->isLinked() && plainProgram_->isLinked() &&
           pictureProgram_->isLinked();
}

void ChunkPainter::begin(const Camera& camera, double pixelRatio, Batches& bodies) {
    camera_ = camera;
    pixelRatio_ = pixelRatio;
    bodies_ = &bodies;
    areaMark_ = 0;
    glEnable(GL_BLEND);
    setBlending();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_FALSE);
    meshProgram_->bind();
    setCamera(*meshProgram_, camera);
    plainProgram_->bind();
    setCamera(*plainProgram_, camera);
    pictureProgram_->bind();
    setCamera(*pictureProgram_, camera);
    pictureProgram_->setUniformValue("picture", 0);
    pictureProgram_->release();
    cost_.emplace(camera, pixelRatio);
    settled_ = std::chrono::steady_clock::now();
    unsettled_ = 0;
}

void ChunkPainter::end() {
    turnTo(Task::None);
    if (raster_) raster_->compose();
    glDepthMask(GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
}

void ChunkPainter::leave() {
    switch (task_) {
        case Task::None:
            break;
        case Task::Pictures:
            for (int i = 0; i < 3; ++i) pictureProgram_->disableAttributeArray(i);
            pictureProgram_->release();
            setBlending();
            break;
        case Task::PlainAreas:
            glEnable(GL_DEPTH_TEST);
            glEnable(GL_BLEND);
            for (int i = 0; i < MeshBatch::kAttributes; ++i) plainProgram_->disableAttributeArray(i);
            plainProgram_->release();
            break;
        case Task::Areas:
        case Task::AreasOverBodies:
        case Task::Solids:
        case Task::RoundSolids:
            glDisable(GL_STENCIL_TEST);
            glDisable(GL_CULL_FACE);
            glDisable(GL_POLYGON_OFFSET_FILL);
            glDepthMask(GL_FALSE);
            glEnable(GL_DEPTH_TEST);
            for (int i = 0; i < MeshBatch::kAttributes; ++i) meshProgram_->disableAttributeArray(i);
            meshProgram_->release();
            break;
        case Task::Lines:
            LineBatch::endDrawing(*lineProgram_);
            break;
    }
}

void ChunkPainter::turnTo(Task task) {
    if (task == task_) return;
    leave();
    task_ = task;
    if (task == Task::None) return;
    // What is drawn in memory lies below what follows.
    if (raster_) raster_->compose();
    if (task == Task::Lines) {
        LineBatch::beginDrawing(*lineProgram_, camera_, pixelRatio_);
        return;
    }
    if (task == Task::Pictures) {
        glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        pictureProgram_->bind();
        for (int i = 0; i < 3; ++i) pictureProgram_->enableAttributeArray(i);
        return;
    }
    if (task == Task::PlainAreas) {
        plainProgram_->bind();
        for (int i = 0; i < MeshBatch::kAttributes; ++i) plainProgram_->enableAttributeArray(i);
        glDisable(GL_BLEND);
        if (bodies_->empty()) glDisable(GL_DEPTH_TEST);
        return;
    }
    meshProgram_->bind();
    for (int i = 0; i < MeshBatch::kAttributes; ++i) meshProgram_->enableAttributeArray(i);
    const bool solid = task == Task::Solids || task == Task::RoundSolids;
    meshProgram_->setUniformValue("solid", solid);
    if (solid) {
        glDepthMask(GL_TRUE);
        glEnable(GL_CULL_FACE);
        glEnable(GL_POLYGON_OFFSET_FILL);
        // Towards their rim the faces of round bodies are ever steeper. Put back by their slope, each would
        // let through the line on the far side.
        glPolygonOffset(task == Task::Solids ? 1.0F : 0.0F, 1.0F);
        return;
    }
    if (task == Task::AreasOverBodies) glDisable(GL_DEPTH_TEST);
    // Triangles under a curved surface may lie before each other at a flat angle: the stencil lets each
    // area colour a pixel once only.
    glEnable(GL_STENCIL_TEST);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
}

/// Where the processor plays the card, what was drawn of late waits for its turn. \return the units
std::size_t ChunkPainter::settle(std::size_t units) {
    constexpr std::chrono::milliseconds kMost{4};
    constexpr std::size_t kMostUnits = 4000;
    unsettled_ += units;
    if (raster_ && (unsettled_ > kMostUnits || std::chrono::steady_clock::now() - settled_ > kMost)) {
        glFinish();
        settled_ = std::chrono::steady_clock::now();
        unsettled_ = 0;
    }
    return units;
}

Work ChunkPainter::draw(std::span<ChunkGeometry* const> geometry) {
    using Others = ChunkGeometry::Others;
    for (ChunkGeometry* part : geometry)
        if (part->has(&Others::pictures)) co_await drawPictures(part->others->pictures);
    static constexpr std::pair<Task, MeshBatch Others::*> kMeshes[] = {
        {Task::Areas, &Others::areas},
        {Task::Solids, &Others::solids},
        {Task::RoundSolids, &Others::roundSolids},
        {Task::AreasOverBodies, &Others::areasOverBodies}};
    for (const auto& [task, batch] : kMeshes)
        for (ChunkGeometry* part : geometry)
            if (part->has(batch)) {
                const bool plain = task == Task::Areas && part->others->areas.isOpaque() &&
                                   isInPlainSight(part->bounds, camera_, pixelRatio_);
                if (task == Task::Solids || (task == Task::RoundSolids && !part->has(&Others::solids)))
                    bodies_->push_back(part);
                co_await drawMeshes(plain ? Task::PlainAreas : task, (*part->others).*batch);
            }
    co_await drawLines(geometry);
}

/// So long it takes to have something drawn, however small.
constexpr std::size_t kUnitsOfABatch = 5;

Work ChunkPainter::drawPictures(PictureBatch& batch) {
    for (std::size_t i = 0; i < batch.pieces(); ++i) {
        turnTo(Task::Pictures);
        co_yield settle(kUnitsOfABatch + batch.draw(*pictureProgram_, *cost_, i));
    }
}

Work ChunkPainter::drawMeshes(Task task, MeshBatch& batch) {
    QOpenGLShaderProgram& program = task == Task::PlainAreas ? *plainProgram_ : *meshProgram_;
    for (std::size_t next = 0; next < batch.pieces();) {
        turnTo(task);
        const std::size_t units =
            batch.draw(program, *cost_, next, [this](bool translucent) { beginMesh(translucent); });
        co_yield settle(kUnitsOfABatch + units);
    }
}

void ChunkPainter::beginMesh(bool translucent) {
    if (!translucent) {
        glStencilFunc(GL_ALWAYS, 0, 0xff);
        return;
    }
    if (++areaMark_ > 255) {
        glClear(GL_STENCIL_BUFFER_BIT);
        areaMark_ = 1;
    }
    glStencilFunc(GL_NOTEQUAL, areaMark_, 0xff);
}

bool ChunkPainter::mayBeHidden(const ChunkGeometry& lines) const {
    const double pixels = 0.5 * lines.widest + 2.0;
    const double margin = pixels * 2.0 * camera_.tanHalfHeight() / camera_.height();
    return std::ranges::any_of(*bodies_, [&](const ChunkGeometry* body) {
        return body->bounds.meets(lines.bounds, camera_.eye(), margin);
    });
}

Work ChunkPainter::drawLines(std::span<ChunkGeometry* const> geometry) {
    std::vector<bool> free(geometry.size(), false);
    std::size_t freeSegments = 0;
    if (raster_)
        for (std::size_t i = 0; i < geometry.size(); ++i)
            if (geometry[i]->segments > 0 && !mayBeHidden(*geometry[i])) {
                freeSegments += geometry[i]->segments;
                free[i] = true;
            }
    const bool many = freeSegments >= RasterLayer::kManySegments;
    for (std::size_t i = 0; i < geometry.size(); ++i) {
        ChunkGeometry& part = *geometry[i];
        if (part.segments == 0) continue;
        if (free[i] && (many || !raster_->empty())) {
            turnTo(Task::None);
            for (const DrawList::Line& line : part.lines) co_yield raster_->draw(line);
            continue;
        }
        co_await drawOnCard(part);
    }
}

Work ChunkPainter::drawOnCard(ChunkGeometry& part) {
    if (!part.lineBatch) {
        part.lineBatch = std::make_unique<LineBatch>();
        part.lineBatch->upload(std::vector(part.lines.begin(), part.lines.end()));
        if (!raster_) part.lines = {};
    }
    if (!raster_) {
        turnTo(Task::Lines);
        part.lineBatch->draw();
        co_return;
    }
    PackedLines::Iterator line = part.lines.begin();
    for (std::size_t first = 0, last = 0; first < part.lines.size(); first = last) {
        std::size_t units = kUnitsOfABatch;
        for (; last < part.lines.size() && units < FillCost::kAtOnce; ++last, ++line)
            units += cost_->of(*line);
        turnTo(Task::Lines);
        part.lineBatch->draw(first, last);
        co_yield settle(units);
    }
}

}  // namespace sandbox
