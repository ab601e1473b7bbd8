#include "globe/HookLayer.h"

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <array>

#include "globe/Camera.h"

namespace sandbox {

namespace {

constexpr std::array<GLenum, 3> kMatrixModes = {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW};
constexpr std::array<GLenum, 3> kMatrixDepths = {GL_TEXTURE_STACK_DEPTH, GL_PROJECTION_STACK_DEPTH,
                                                 GL_MODELVIEW_STACK_DEPTH};

int read(GLenum what) {
    GLint value = 0;
    glGetIntegerv(what, &value);
    return value;
}

/// Everything a legacy program may change, put back at the end of the scope.
class SavedState {
  public:
    SavedState() : attributes_(read(GL_ATTRIB_STACK_DEPTH)), clients_(read(GL_CLIENT_ATTRIB_STACK_DEPTH)) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
        for (std::size_t i = 0; i < kMatrixModes.size(); ++i) {
            glMatrixMode(kMatrixModes[i]);
            depths_[i] = read(kMatrixDepths[i]);
            glPushMatrix();
        }
    }

    ~SavedState() {
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glUseProgram(0);
        gl->glBindBuffer(GL_ARRAY_BUFFER, 0);
        gl->glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        gl->glActiveTexture(GL_TEXTURE0);
        for (std::size_t i = 0; i < kMatrixModes.size(); ++i) {
            glMatrixMode(kMatrixModes[i]);
            while (read(kMatrixDepths[i]) > depths_[i]) glPopMatrix();
        }
        while (read(GL_CLIENT_ATTRIB_STACK_DEPTH) > clients_) glPopClientAttrib();
        while (read(GL_ATTRIB_STACK_DEPTH) > attributes_) glPopAttrib();
        while (glGetError() != GL_NO_ERROR) {
        }
    }

    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;

  private:
    int attributes_;
    int clients_;
    std::array<int, kMatrixModes.size()> depths_{};
};

}  // namespace

HookLayer::HookLayer() = default;

HookLayer::~HookLayer() {
    if (blitter_.isCreated()) blitter_.destroy();
}

bool HookLayer::resize(const QSize& pixels) {
    if (drawn_ && drawn_->size() == pixels) return drawn_->isValid();
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
    format.setSamples(4);
    drawn_ = std::make_unique<QOpenGLFramebufferObject>(pixels, format);
    resolved_.reset();
    if (drawn_->format().samples() > 0)
        resolved_ = std::make_unique<QOpenGLFramebufferObject>(pixels, QOpenGLFramebufferObjectFormat());
    return drawn_->isValid();
}

void HookLayer::record(const Camera& camera, const QSize& pixels, const std::function<void()>& hook) {
    const bool usable = resize(pixels);
    SavedState saved;
    QOpenGLExtraFunctions* gl = QOpenGLContext::currentContext()->extraFunctions();
    if (usable) drawn_->bind();
    glViewport(0, 0, pixels.width(), pixels.height());
    glDisable(GL_SCISSOR_TEST);
    glEnable(GL_MULTISAMPLE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glClearColor(0.0F, 0.0F, 0.0F, 0.0F);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    gl->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(camera.projection().data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(camera.modelview().data());
    hook();
    // The one state that the hook may have left behind and that a blit obeys.
    glDisable(GL_SCISSOR_TEST);
    if (resolved_) QOpenGLFramebufferObject::blitFramebuffer(resolved_.get(), drawn_.get());
}

void HookLayer::compose() {
    if (!drawn_ || !drawn_->isValid()) return;
    if (!blitter_.isCreated() && !blitter_.create()) return;
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    blitter_.bind();
    blitter_.blit((resolved_ ? resolved_ : drawn_)->texture(), QMatrix4x4(),
                  QOpenGLTextureBlitter::OriginBottomLeft);
    blitter_.release();
    glDisable(GL_BLEND);
}

}  // namespace sandbox
