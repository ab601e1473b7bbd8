#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "common/Work.h"
#include "globe/Camera.h"
#include "globe/ChunkGeometry.h"
#include "globe/FillCost.h"

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

    using Batches = std::vector<ChunkGeometry*>;
    /// Before what is drawn into a frame buffer, or when that goes on. Expects a cleared stencil buffer, and
    /// nothing waiting in the raster. \param bodies that it shows already; what is drawn adds its own
    void begin(const Camera& camera, double pixelRatio, Batches& bodies);
    /// What belongs to one entry, or to several that are nothing but lines: it is what precedes and follows
    /// the drawing that costs. Between end() and begin() it may be laid aside.
    Work draw(std::span<ChunkGeometry* const> geometry);
    /// Leaves nothing waiting in the raster; no depth test, no blending.
    void end();

  private:
    /// What OpenGL is set up for.
    enum class Task { None, Pictures, PlainAreas, Areas, Solids, RoundSolids, AreasOverBodies, Lines };

    void turnTo(Task task);
    void leave();
    Work drawPictures(PictureBatch& batch);
    Work drawMeshes(Task task, MeshBatch& batch);
    void beginMesh(bool translucent);
    Work drawLines(std::span<ChunkGeometry* const> geometry);
    Work drawOnCard(ChunkGeometry& part);
    bool mayBeHidden(const ChunkGeometry& lines) const;
    std::size_t settle(std::size_t units);

    RasterLayer* raster_;
    std::unique_ptr<QOpenGLShaderProgram> lineProgram_;
    std::unique_ptr<QOpenGLShaderProgram> meshProgram_;
    std::unique_ptr<QOpenGLShaderProgram> plainProgram_;
    std::unique_ptr<QOpenGLShaderProgram> pictureProgram_;
    Camera camera_;
    double pixelRatio_ = 1.0;
    Batches* bodies_ = nullptr;
    Task task_ = Task::None;
    int areaMark_ = 0;
    std::optional<FillCost> cost_;  ///< since begin()
    std::chrono::steady_clock::time_point settled_;
    std::size_t unsettled_ = 0;
};

}  // namespace sandbox
