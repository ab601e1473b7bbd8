#pragma once

#include <QOpenGLTextureBlitter>
#include <memory>
#include <optional>

#include "globe/LineRaster.h"

class QOpenGLTexture;

namespace sandbox {

/// Lines that are drawn in memory and then laid over the view in one piece. To be made, used and destroyed
/// with the context current.
class RasterLayer {
  public:
    RasterLayer();
    ~RasterLayer();

    /// Before the lines of a frame.
    void begin(const Camera& camera, double pixelRatio) {
        raster_.reset();
        camera_ = camera;
        pixelRatio_ = pixelRatio;
    }
    void draw(const DrawList::Line& line) {
        if (!raster_) raster_.emplace(camera_, pixelRatio_);
        raster_->draw(line);
    }
    /// Whether lines wait for compose().
    bool empty() const { return !raster_ || raster_->touched().isEmpty(); }
    /// Blends the lines drawn so far over the frame buffer that is bound, if there are any. Expects blending
    /// to be on and leaves setBlending().
    void compose();

  private:
    Camera camera_;
    double pixelRatio_ = 1.0;
    std::optional<LineRaster> raster_;  ///< once the frame has lines
    std::unique_ptr<QOpenGLTexture> texture_;
    QOpenGLTextureBlitter blitter_;
};

}  // namespace sandbox
