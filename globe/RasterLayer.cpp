#include "globe/RasterLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLPixelTransferOptions>
#include <QOpenGLTexture>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "globe/ShaderProgram.h"

namespace sandbox {

namespace {

/// With many samples a pixel, the software renderer's scissors let a column more through.
QRect withMargin(const QRect& part) {
    return part.adjusted(-1, -1, 1, 1);
}

}  // namespace

RasterLayer::RasterLayer() = default;

RasterLayer::~RasterLayer() {
    if (blitter_.isCreated()) blitter_.destroy();
}

void RasterLayer::begin(const Camera& camera, double pixelRatio, LineRaster::Quality quality) {
    camera_ = camera;
    pixelRatio_ = pixelRatio;
    quality_ = quality;
    begun_ = false;
    kept_ = false;
}

void RasterLayer::start() {
    std::vector<std::uint32_t> memory;
    if (raster_) {
        raster_->clear();
        memory = raster_->takeMemory();
    }
    raster_.emplace(camera_, pixelRatio_, std::move(memory));
    raster_->setQuality(quality_);
    sent_ = QRect();
    begun_ = true;
}

bool RasterLayer::resume(const Camera& camera, double pixelRatio, LineRaster::Quality quality) {
    if (!keepsFor(camera, pixelRatio, quality)) return false;
    redrawn_ = QRegion();
    begun_ = true;
    return true;
}

void RasterLayer::beginKept(const Camera& camera, double pixelRatio, LineRaster::Quality quality) {
    begin(camera, pixelRatio, quality);
    start();
    kept_ = true;
}

void RasterLayer::redraw(const QRect& part) {
    raster_->clear(part);
    raster_->setClip(part);
    redrawn_ += part;
}

void RasterLayer::addMore() {
    raster_->setClip(raster_->whole());
    sent_ = QRect();
    begun_ = true;
}

bool RasterLayer::prepareTexture() {
    if (!blitter_.isCreated() && !blitter_.create()) return false;
    const QSize& size = raster_->size();
    if (texture_ && texture_->width() == size.width() && texture_->height() == size.height()) return true;
    texture_ = std::make_unique<QOpenGLTexture>(QOpenGLTexture::Target2D);
    texture_->setFormat(QOpenGLTexture::RGBA8_UNorm);
    texture_->setSize(size.width(), size.height());
    texture_->setMinMagFilters(QOpenGLTexture::Nearest, QOpenGLTexture::Nearest);
    texture_->allocateStorage(QOpenGLTexture::RGBA, QOpenGLTexture::UInt8);
    sent_ = QRect();
    return true;
}

void RasterLayer::send(const QRect& part) {
    const QRect sent = part & raster_->whole();
    if (sent.isEmpty()) return;
    const int width = raster_->size().width();
    QOpenGLPixelTransferOptions rows;
    rows.setRowLength(width);
    const std::uint32_t* first =
        raster_->pixels().data() + static_cast<std::ptrdiff_t>(sent.top()) * width + sent.left();
    texture_->setData(sent.left(), sent.top(), 0, sent.width(), sent.height(), 1, QOpenGLTexture::RGBA,
                      QOpenGLTexture::UInt8, first, &rows);
}

void RasterLayer::blend() {
    const QRect touched = raster_->touched();
    glEnable(GL_SCISSOR_TEST);
    glScissor(touched.left(), touched.top(), touched.width(), touched.height());
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    const bool tested = glIsEnabled(GL_DEPTH_TEST);
    glDisable(GL_DEPTH_TEST);
    blitter_.bind();
    blitter_.blit(texture_->textureId(), QMatrix4x4(), QOpenGLTextureBlitter::OriginBottomLeft);
    blitter_.release();
    if (tested) glEnable(GL_DEPTH_TEST);
    setBlending();
    glDisable(GL_SCISSOR_TEST);
}

void RasterLayer::compose() {
    if (empty() || !prepareTexture()) return;
    send(withMargin(raster_->touched()));
    blend();
    raster_->clear();
    sent_ = QRect();
}

void RasterLayer::composeAndKeep() {
    if (!begun_ || !prepareTexture()) return;
    const QRect touched = withMargin(raster_->touched()) & raster_->whole();
    if (sent_.contains(touched)) {
        for (const QRect& part : redrawn_) send(part);
    } else {
        send(touched);
        sent_ = touched;
    }
    if (!raster_->touched().isEmpty()) blend();
    raster_->setClip(raster_->whole());
    redrawn_ = QRegion();
    kept_ = true;
    begun_ = false;
}

}  // namespace sandbox
