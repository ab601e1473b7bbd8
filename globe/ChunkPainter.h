#pragma once

#include <memory>
#include <vector>

#include "globe/Camera.h"
#include "globe/ChunkGeometry.h"

class QOpenGLShaderProgram;

namespace sandbox {

class RasterLayer;

/// Draws geometry in the order in which it comes: of what comes together pictures first, then areas, bodies,
/// and lines. To be made, used and destroyed with the context current.
class ChunkPainter {
  public:
    /// `raster`: for lines that are quicker drawn in memory; null with a graphics card.
    explicit ChunkPainter(RasterLayer* raster);
    ~ChunkPainter();

    /// False when this OpenGL cannot do it.
    bool isReady() const;
    /// Before what a frame shows. Expects a depth test, blending, and nothing waiting in the raster.
    void begin(const Camera& camera, double pixelRatio);
    /// What belongs to one entry, or to several that are nothing but lines: it is what precedes and follows
    /// the drawing that costs.
    void draw(const std::vector<ChunkGeometry*>& geometry);
    /// Leaves nothing waiting in the raster.
    void end();

  private:
    using Batches = std::vector<ChunkGeometry*>;
    template <typename Batch>
    void drawAreas(const Batches& geometry, Batch batch);
    void drawSolids(const Batches& geometry);
    void drawPictures(const Batches& geometry);
    void drawLines(const Batches& geometry);
    bool mayBeHidden(const ChunkGeometry& lines) const;

    RasterLayer* raster_;
    std::unique_ptr<QOpenGLShaderProgram> lineProgram_;
    std::unique_ptr<QOpenGLShaderProgram> meshProgram_;
    std::unique_ptr<QOpenGLShaderProgram> pictureProgram_;
    Camera camera_;
    double pixelRatio_ = 1.0;
    Batches bodies_;  ///< that were drawn in this frame
    int areaMark_ = 0;
};

}  // namespace sandbox
