#include "globe/RasterLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLPixelTransferOptions>
#include <QOpenGLTexture>
#include <cstddef>
#include <cstdint>

#include "globe/ShaderProgram.h"

namespace sandbox {

RasterLayer::RasterLayer() = default;

RasterLayer::~RasterLayer() {
    if (blitter_.isCreated()) blitter_.destroy();
}

void RasterLayer::compose() {
    if (empty() || (!blitter_.isCreated() && !blitter_.create())) return;
    const QSize& size = raster_->size();
    if (!texture_ || texture_->width() != size.width() || texture_->height() != size.height()) {
        texture_ = std::make_unique<QOpenGLTexture>(QOpenGLTexture::Target2D);
        texture_->setFormat(QOpenGLTexture::RGBA8_UNorm);
        texture_->setSize(size.width(), size.height());
        texture_->setMinMagFilters(QOpenGLTexture::Nearest, QOpenGLTexture::Nearest);
        texture_->allocateStorage(QOpenGLTexture::RGBA, QOpenGLTexture::UInt8);
    }
    const QRect& touched = raster_->touched();
    // With many samples a pixel, the software renderer's scissors let a column more through.
    const QRect sent = touched.adjusted(-1, -1, 1, 1) & QRect(QPoint(0, 0), size);
    QOpenGLPixelTransferOptions rows;
    rows.setRowLength(size.width());
    const std::uint32_t* first =
        raster_->pixels().data() + static_cast<std::ptrdiff_t>(sent.top()) * size.width() + sent.left();
    texture_->setData(sent.left(), sent.top(), 0, sent.width(), sent.height(), 1, QOpenGLTexture::RGBA,
                      QOpenGLTexture::UInt8, first, &rows);
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
    raster_->clear();
}

}  // namespace sandbox
