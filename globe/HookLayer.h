#pragma once

#include <QOpenGLTextureBlitter>
#include <QSize>
#include <functional>
#include <memory>

class QOpenGLFramebufferObject;

namespace sandbox {

class Camera;

/// The layer that the refresh hook draws on: recorded before the scene, laid over it at the end.
/// To be made, used and destroyed with the context current.
class HookLayer {
  public:
    HookLayer();
    ~HookLayer();

    /// Runs `hook` with the cleared layer as its target, in device pixels, and puts OpenGL's state back,
    /// also where the hook left stacks unbalanced. The frame buffer binding is left to the caller.
    void record(const Camera& camera, const QSize& pixels, const std::function<void()>& hook);
    /// Blends what was recorded last over the frame buffer that is bound.
    void compose();

  private:
    bool resize(const QSize& pixels);

    std::unique_ptr<QOpenGLFramebufferObject> drawn_;     ///< multisampled where possible
    std::unique_ptr<QOpenGLFramebufferObject> resolved_;  ///< null when `drawn_` has one sample
    QOpenGLTextureBlitter blitter_;
};

}  // namespace sandbox
