#include "globe/GlobePicture.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLPaintDevice>

#include "globe/Camera.h"
#include "globe/GlobeView.h"

namespace sandbox {

struct GlobePicture::Graphics {
    QOffscreenSurface surface;
    QOpenGLContext context;

    bool start() {
        const QSurfaceFormat format = GlobeView::surfaceFormat();
        surface.setFormat(format);
        surface.create();
        context.setFormat(format);
        return context.create() && context.makeCurrent(&surface);
    }
};

GlobePicture::GlobePicture() : graphics_(std::make_unique<Graphics>()) {
    if (graphics_->start())
        painter_ = std::make_unique<GlobePainter>();
    else
        error_ = QStringLiteral("OpenGL cannot be used here");
}

GlobePicture::~GlobePicture() {
    if (painter_) graphics_->context.makeCurrent(&graphics_->surface);
    painter_.reset();
}

void GlobePicture::setEarthImage(const QImage& image) {
    if (!painter_) return;
    graphics_->context.makeCurrent(&graphics_->surface);
    painter_->setEarthImage(image);
}

QImage GlobePicture::draw(const GlobeFrame& frame) {
    if (!painter_) return {};
    graphics_->context.makeCurrent(&graphics_->surface);
    const QSize pixels =
        QSizeF(frame.camera.width() * frame.pixelRatio, frame.camera.height() * frame.pixelRatio).toSize();
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
    format.setSamples(GlobeView::surfaceFormat().samples());
    QOpenGLFramebufferObject target(pixels, format);
    if (!target.isValid() || !target.bind()) return {};
    QOpenGLPaintDevice device(pixels);
    device.setDevicePixelRatio(frame.pixelRatio);
    painter_->draw(frame, device);
    // Painters may have bound another one.
    target.bind();
    QImage image = target.toImage();
    target.release();
    return image;
}

}  // namespace sandbox
