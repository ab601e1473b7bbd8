#include "globe/StillGround.h"

#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>

namespace sandbox {

StillGround::StillGround() = default;

StillGround::~StillGround() {
    if (blitter_.isCreated()) blitter_.destroy();
}

bool StillGround::show(const View& view) {
    if (!kept_ || view_ != view || (!blitter_.isCreated() && !blitter_.create())) return false;
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    blitter_.bind();
    blitter_.blit(picture_->texture(), QMatrix4x4(), QOpenGLTextureBlitter::OriginBottomLeft);
    blitter_.release();
    return true;
}

void StillGround::noteDrawn(const View& view, const QSize& pixels) {
    kept_ = view_ == view;
    view_ = view;
    if (!kept_) return;
    QOpenGLExtraFunctions& gl = *QOpenGLContext::currentContext()->extraFunctions();
    GLint target = 0;
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING, &target);
    // To make one binds another one.
    if (!picture_ || picture_->size() != pixels)
        picture_ = std::make_unique<QOpenGLFramebufferObject>(pixels, QOpenGLFramebufferObjectFormat());
    // All samples of a pixel are the same here.
    gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, static_cast<GLuint>(target));
    gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, picture_->handle());
    gl.glBlitFramebuffer(0, 0, pixels.width(), pixels.height(), 0, 0, pixels.width(), pixels.height(),
                         GL_COLOR_BUFFER_BIT, GL_NEAREST);
    gl.glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(target));
    kept_ = picture_->isValid();
}

}  // namespace sandbox
