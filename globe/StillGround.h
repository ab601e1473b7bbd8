#pragma once

#include <QOpenGLTextureBlitter>
#include <QSize>
#include <memory>
#include <optional>

#include "globe/Camera.h"
#include "globe/MapOptions.h"

class QOpenGLFramebufferObject;

namespace sandbox {

/// What lies below the overlays, kept while the camera rests: where the processor plays the graphics card,
/// working it out anew is most of a frame in which a shape is edited. To be made, used and destroyed with the
/// context current.
class StillGround {
  public:
    /// All that it depends on, beside the picture of the earth.
    struct View {
        Camera camera;
        double pixelRatio = 1.0;
        MapOptions map;

        friend bool operator==(const View&, const View&) = default;
    };

    StillGround();
    ~StillGround();

    /// Puts it into the frame buffer that is bound. \return false when it is not there, and has to be drawn
    bool show(const View& view);
    /// It has been drawn into the frame buffer that is bound, and nothing else has been. It is kept from the
    /// second time on: a view that moves is to cost no copies.
    void noteDrawn(const View& view, const QSize& pixels);
    /// There is another picture of the earth.
    void forget() { view_.reset(); }

  private:
    std::optional<View> view_;  ///< that was drawn last
    bool kept_ = false;
    std::unique_ptr<QOpenGLFramebufferObject> picture_;
    QOpenGLTextureBlitter blitter_;
};

}  // namespace sandbox
