#include "globe/OverlayPicture.h"

#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <utility>

#include "globe/ChunkPainter.h"

namespace sandbox {

namespace {

QOpenGLExtraFunctions& gl() {
    return *QOpenGLContext::currentContext()->extraFunctions();
}

unsigned bound() {
    GLint target = 0;
    gl().glGetIntegerv(GL_FRAMEBUFFER_BINDING, &target);
    return static_cast<unsigned>(target);
}

void copy(unsigned from, unsigned to, const QSize& size, GLbitfield what) {
    gl().glBindFramebuffer(GL_READ_FRAMEBUFFER, from);
    gl().glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to);
    gl().glBlitFramebuffer(0, 0, size.width(), size.height(), 0, 0, size.width(), size.height(), what,
                           GL_NEAREST);
}

}  // namespace

OverlayPicture::OverlayPicture() = default;

OverlayPicture::~OverlayPicture() {
    if (blitter_.isCreated()) blitter_.destroy();
}

void OverlayPicture::forget() {
    camera_.reset();
    held_ = 0;
    drawing_.reset();
    bodies_.clear();
}

void OverlayPicture::open() {
    view_ = bound();
    gl().glBindFramebuffer(GL_FRAMEBUFFER, drawn_->handle());
    glViewport(0, 0, drawn_->width(), drawn_->height());
    // The painters of texts leave it off.
    glEnable(GL_MULTISAMPLE);
    isPlain_ = false;
}

/// Where the processor plays the card, what was drawn is only done when it is asked for.
void OverlayPicture::close() {
    glFinish();
    gl().glBindFramebuffer(GL_FRAMEBUFFER, view_);
}

bool OverlayPicture::begin(const Camera& camera, double pixelRatio, const std::function<void()>& ground) {
    forget();
    const QSize size = QSizeF(camera.width() * pixelRatio, camera.height() * pixelRatio).toSize();
    if (!drawn_ || drawn_->size() != size) {
        const unsigned view = bound();
        QOpenGLFramebufferObjectFormat format;
        format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
        GLint samples = 0;
        gl().glGetIntegerv(GL_SAMPLES, &samples);
        format.setSamples(samples);
        drawn_ = std::make_unique<QOpenGLFramebufferObject>(size, format);
        plain_ = std::make_unique<QOpenGLFramebufferObject>(size);
        // To make one binds it.
        gl().glBindFramebuffer(GL_FRAMEBUFFER, view);
    }
    if (!drawn_->isValid() || !plain_->isValid() || (!blitter_.isCreated() && !blitter_.create()))
        return false;
    camera_ = camera;
    pixelRatio_ = pixelRatio;
    open();
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT);
    ground();
    close();
    return true;
}

void OverlayPicture::add(std::size_t chunks, Work drawing) {
    held_ = chunks;
    drawing_.emplace(std::move(drawing));
}

bool OverlayPicture::goOn(ChunkPainter& painter, Slice& slice) {
    if (!drawing_) return true;
    open();
    glClear(GL_STENCIL_BUFFER_BIT);
    painter.begin(*camera_, pixelRatio_, bodies_);
    try {
        if (drawing_->goOn(slice)) drawing_.reset();
    } catch (...) {
        // Short of memory: what there is of it is not all.
        forget();
        painter.end();
        close();
        throw;
    }
    painter.end();
    close();
    return isComplete();
}

void OverlayPicture::show() {
    const unsigned target = bound();
    if (!isPlain_) copy(drawn_->handle(), plain_->handle(), drawn_->size(), GL_COLOR_BUFFER_BIT);
    isPlain_ = true;
    if (!bodies_.empty()) copy(drawn_->handle(), target, drawn_->size(), GL_DEPTH_BUFFER_BIT);
    gl().glBindFramebuffer(GL_FRAMEBUFFER, target);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    blitter_.bind();
    blitter_.blit(plain_->texture(), QMatrix4x4(), QOpenGLTextureBlitter::OriginBottomLeft);
    blitter_.release();
}

}  // namespace sandbox
