#pragma once

#include <QOpenGLTextureBlitter>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "common/Work.h"
#include "globe/Camera.h"

class QOpenGLFramebufferObject;

namespace sandbox {

class ChunkPainter;
struct ChunkGeometry;

/// A picture of the ground with the lower overlays on it that is drawn between frames, bit by bit, and then
/// stands for both as long as nothing of it changes: where the processor plays the graphics card, to draw
/// very many areas takes longer than a frame may. To be made, used and destroyed with the context current.
class OverlayPicture {
  public:
    OverlayPicture();
    ~OverlayPicture();

    /// Whether it is one for this view, finished or not.
    bool isFor(const Camera& camera, double pixelRatio) const {
        return camera_ == camera && pixelRatio_ == pixelRatio;
    }
    /// So many chunks, the lowest ones, have been added. Their geometry must not go before forget() is
    /// called.
    std::size_t held() const { return held_; }
    /// Whether those are drawn.
    bool isComplete() const { return !drawing_; }
    /// It is wrong from now on.
    void forget();

    /// Begins another one, for the view whose frame buffer is bound, and has the ground drawn into it.
    /// \return false where there can be none
    bool begin(const Camera& camera, double pixelRatio, const std::function<void()>& ground);
    /// Has it hold so many chunks. \param drawing by a ChunkPainter, of those that it has not held so far
    void add(std::size_t chunks, Work drawing);
    /// Draws some of what has been added. \return whether that was all
    bool goOn(ChunkPainter& painter, Slice& slice);

    /// Puts what there is of it into the frame buffer that is bound, with the depth of the bodies on it.
    void show();
    /// That are on it.
    const std::vector<ChunkGeometry*>& bodies() const { return bodies_; }

  private:
    void open();
    void close();

    std::optional<Camera> camera_;
    double pixelRatio_ = 1.0;
    std::size_t held_ = 0;
    std::optional<Work> drawing_;
    std::vector<ChunkGeometry*> bodies_;
    std::unique_ptr<QOpenGLFramebufferObject> drawn_;
    std::unique_ptr<QOpenGLFramebufferObject> plain_;  ///< the same, one sample a pixel
    bool isPlain_ = false;                             ///< that is up to date
    unsigned view_ = 0;                                ///< the frame buffer that was bound
    QOpenGLTextureBlitter blitter_;
};

}  // namespace sandbox
