#include "globe/ChunkPainter.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <algorithm>
#include <iterator>
#include <string>

#include "globe/OverlayShaders.h"
#include "globe/RasterLayer.h"
#include "globe/ShaderProgram.h"

namespace sandbox {

ChunkPainter::ChunkPainter(RasterLayer* raster)
    : raster_(raster),
      lineProgram_(LineBatch::compile()),
      meshProgram_(compileProgram(std::string(kRelativeShader) + kMeshVertexShader,
                                  std::string(kSightShader) + kMeshFragmentShader,
                                  {"high", "low", "color", "normal"})),
      pictureProgram_(PictureBatch::compile()) {}

ChunkPainter::~ChunkPainter() = default;

bool ChunkPainter::isReady() const {
    return lineProgram_->isLinked() && meshProgram_->isLinked() && pictureProgram_->isLinked();
}

void ChunkPainter::begin(const Camera& camera, double pixelRatio) {
    camera_ = camera;
    pixelRatio_ = pixelRatio;
    areaMark_ = 0;
    bodies_.clear();
    meshProgram_->bind();
    setCamera(*meshProgram_, camera);
    pictureProgram_->bind();
    setCamera(*pictureProgram_, camera);
    pictureProgram_->setUniformValue("picture", 0);
    pictureProgram_->release();
}

void ChunkPainter::end() {
    if (raster_) raster_->compose();
}

void ChunkPainter::draw(const Batches& geometry) {
    using Others = ChunkGeometry::Others;
    const auto any = [&](auto batch) {
        return std::ranges::any_of(geometry, [&](const ChunkGeometry* part) { return part->has(batch); });
    };
    const bool pictures = any(&Others::pictures);
    const bool meshes = any(&Others::areas) || any(&Others::solids) || any(&Others::roundSolids) ||
                        any(&Others::areasOverBodies);
    if (raster_ && (pictures || meshes)) raster_->compose();
    std::ranges::copy_if(geometry, std::back_inserter(bodies_), &ChunkGeometry::hasBodies);
    if (pictures) drawPictures(geometry);
    if (meshes) {
        meshProgram_->bind();
        for (int i = 0; i < MeshBatch::kAttributes; ++i) meshProgram_->enableAttributeArray(i);
        drawAreas(geometry, &Others::areas);
        drawSolids(geometry);
        glDisable(GL_DEPTH_TEST);
        drawAreas(geometry, &Others::areasOverBodies);
        glEnable(GL_DEPTH_TEST);
        for (int i = 0; i < MeshBatch::kAttributes; ++i) meshProgram_->disableAttributeArray(i);
        meshProgram_->release();
    }
    glDepthMask(GL_FALSE);
    drawLines(geometry);
}

void ChunkPainter::drawPictures(const Batches& geometry) {
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    pictureProgram_->bind();
    for (int i = 0; i < 3; ++i) pictureProgram_->enableAttributeArray(i);
    for (ChunkGeometry* part : geometry)
        if (part->has(&ChunkGeometry::Others::pictures)) part->others->pictures.draw(*pictureProgram_);
    for (int i = 0; i < 3; ++i) pictureProgram_->disableAttributeArray(i);
    pictureProgram_->release();
    setBlending();
}

template <typename Batch>
void ChunkPainter::drawAreas(const Batches& geometry, Batch batch) {
    glDepthMask(GL_FALSE);
    meshProgram_->setUniformValue("solid", false);
    // Triangles under a curved surface may lie before each other at a flat angle: the stencil lets each
    // area colour a pixel once only.
    glEnable(GL_STENCIL_TEST);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    const auto beginArea = [this] {
        if (++areaMark_ > 255) {
            glClear(GL_STENCIL_BUFFER_BIT);
            areaMark_ = 1;
        }
        glStencilFunc(GL_NOTEQUAL, areaMark_, 0xff);
    };
    for (ChunkGeometry* part : geometry)
        if (part->has(batch)) {
            glStencilFunc(GL_ALWAYS, 0, 0xff);
            ((*part->others).*batch).draw(*meshProgram_, beginArea);
        }
    glDisable(GL_STENCIL_TEST);
}

void ChunkPainter::drawSolids(const Batches& geometry) {
    using Others = ChunkGeometry::Others;
    glDepthMask(GL_TRUE);
    glEnable(GL_CULL_FACE);
    glEnable(GL_POLYGON_OFFSET_FILL);
    meshProgram_->setUniformValue("solid", true);
    glPolygonOffset(1.0F, 1.0F);
    for (ChunkGeometry* part : geometry)
        if (part->has(&Others::solids)) part->others->solids.draw(*meshProgram_, [] {});
    // Towards their rim the faces of round bodies are ever steeper. Put back by their slope, each would let
    // through the line on the far side.
    glPolygonOffset(0.0F, 1.0F);
    for (ChunkGeometry* part : geometry)
        if (part->has(&Others::roundSolids)) part->others->roundSolids.draw(*meshProgram_, [] {});
    glDisable(GL_CULL_FACE);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

bool ChunkPainter::mayBeHidden(const ChunkGeometry& lines) const {
    const double pixels = 0.5 * lines.widest + 2.0;
    const double margin = pixels * 2.0 * camera_.tanHalfHeight() / camera_.height();
    return std::ranges::any_of(bodies_, [&](const ChunkGeometry* body) {
        return body->bounds.meets(lines.bounds, camera_.eye(), margin);
    });
}

void ChunkPainter::drawLines(const Batches& geometry) {
    std::size_t freeSegments = 0;
    std::vector<const ChunkGeometry*> free;
    if (raster_)
        for (const ChunkGeometry* part : geometry)
            if (part->segments > 0 && !mayBeHidden(*part)) {
                freeSegments += part->segments;
                free.push_back(part);
            }
    const bool inMemory = raster_ && (freeSegments >= RasterLayer::kManySegments || !raster_->empty());
    bool onCard = false;
    auto nextFree = free.begin();
    for (ChunkGeometry* part : geometry) {
        if (part->segments == 0) continue;
        const bool isNextFree = nextFree != free.end() && *nextFree == part;
        nextFree += isNextFree ? 1 : 0;
        if (inMemory && isNextFree) {
            if (onCard) LineBatch::endDrawing(*lineProgram_);
            onCard = false;
            for (const DrawList::Line& line : part->lines) raster_->draw(line);
            continue;
        }
        if (!onCard) {
            if (raster_) raster_->compose();
            LineBatch::beginDrawing(*lineProgram_, camera_, pixelRatio_);
            onCard = true;
        }
        if (!part->lineBatch) {
            part->lineBatch = std::make_unique<LineBatch>();
            part->lineBatch->upload(part->lines);
            if (!raster_) part->lines = {};
        }
        part->lineBatch->draw();
    }
    if (onCard) LineBatch::endDrawing(*lineProgram_);
}

}  // namespace sandbox
