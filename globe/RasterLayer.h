#pragma once

#include <QOpenGLTextureBlitter>
#include <QRegion>
#include <cstddef>
#include <memory>
#include <optional>

#include "globe/LineRaster.h"

class QOpenGLTexture;

namespace sandbox {

/// Lines that are drawn in memory and then laid over the view in one piece. To be made, used and destroyed
/// with the context current.
class RasterLayer {
  public:
    /// So many segments or more are drawn in memory: to lay them over the view takes as long as a few
    /// thousand.
    static constexpr std::size_t kManySegments = 4000;

    RasterLayer();
    ~RasterLayer();

    /// Before the lines of a frame: nothing is drawn yet.
    void begin(const Camera& camera, double pixelRatio, LineRaster::Quality quality);
    /// In place of begin(): the lines are those of the frame before, as composeAndKeep() has left them, but
    /// for what redraw() names. \return false when there is no such picture
    bool resume(const Camera& camera, double pixelRatio, LineRaster::Quality quality);
    /// Makes an empty picture, as if a frame of no lines had been composed and kept.
    void beginKept(const Camera& camera, double pixelRatio, LineRaster::Quality quality);
    /// Empties this part of the picture; what is drawn until the next call leaves the rest as it is.
    void redraw(const QRect& part);
    /// What is drawn from now on is laid over all of the picture: after redraw(), or before the next frame.
    void addMore();

    /// \see LineRaster::draw
    std::size_t draw(const DrawList::Line& line) {
        if (!begun_) start();
        return raster_->draw(line);
    }
    /// Whether lines wait for compose().
    bool empty() const { return !begun_ || raster_->touched().isEmpty(); }
    /// Blends the lines drawn so far over the frame buffer that is bound, if there are any, and begins anew.
    /// Expects blending to be on and leaves setBlending().
    void compose();
    /// The same with all lines of a frame, which remain; none waits for compose() then.
    void composeAndKeep();
    /// Whether there is a picture that resume() might find.
    bool keeps() const { return kept_; }
    bool keepsFor(const Camera& camera, double pixelRatio) const {
        return kept_ && raster_->sees(camera, pixelRatio);
    }
    /// The same with lines that are drawn so well.
    bool keepsFor(const Camera& camera, double pixelRatio, LineRaster::Quality quality) const {
        return keepsFor(camera, pixelRatio) && raster_->quality() == quality;
    }
    /// What of the picture that is kept has been drawn on.
    QRect touched() const { return raster_->touched(); }
    /// Where in the picture that is kept a line may be.
    QRect extentOf(const DrawList::Line& line) const { return raster_->extentOf(line); }

  private:
    void start();
    bool prepareTexture();
    void send(const QRect& part);
    void blend();

    Camera camera_;
    double pixelRatio_ = 1.0;
    LineRaster::Quality quality_ = LineRaster::Quality::Smooth;
    std::optional<LineRaster> raster_;  ///< once a frame had lines
    bool begun_ = false;                ///< it is of this frame
    bool kept_ = false;
    QRegion redrawn_;
    QRect sent_;  ///< where the texture is as the picture
    std::unique_ptr<QOpenGLTexture> texture_;
    QOpenGLTextureBlitter blitter_;
};

}  // namespace sandbox
