#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "globe/DrawList.h"
#include "globe/OverlayScene.h"

class QOpenGLShaderProgram;

namespace sandbox {

class Camera;
class MeshBatch;
class PictureTextures;
class RasterLayer;

/// Draws the geometry of overlays. An entry is cut into chunks of a few thousand points. A chunk's geometry
/// is worked out in levels of detail, each when it is first needed and again when the entry changed; a frame
/// costs no work for each vertex but the card's. Chunks out of view are left out, and the level is chosen so
/// that what it lacks is smaller than a fifth of a pixel.
///
/// Where the processor plays the card, many lines are drawn by RasterLayer, but for those that a body may
/// hide.
///
/// Vertices are held as pairs of floats (a round value and the rest), and so is the eye: their
/// difference is good to a fraction of a millimetre anywhere. Lines are widened to capsules on screen and
/// antialiased by their distance; neighbouring segments meet exactly at their bisector, so that
/// translucent lines have no darker joints.
///
/// To be made, used and destroyed with the context current.
class OverlayLayer {
  public:
    OverlayLayer();
    ~OverlayLayer();

    /// Drops the geometry of entries that are gone or changed, and prepares that of shown entries. What
    /// follows, up to the next update(), expects the scene to be as it is now.
    void update(const OverlayScene& scene);
    /// Expects cleared depth and stencil buffers; only solids write depth. `pixelRatio`: device pixels a
    /// widget pixel.
    void draw(const Camera& camera, double pixelRatio);
    /// The labels of the shown entries, in drawing order; valid until the next update().
    std::vector<const DrawList::Label*> labels() const;

  private:
    struct Level;
    struct Chunk;
    struct Item;

    void drawLevels(const std::vector<Level*>& levels, const Camera& camera, double pixelRatio);
    void drawAreas(const std::vector<Level*>& levels, MeshBatch Level::*batch);
    void drawSolids(const std::vector<Level*>& levels);
    void drawPictures(const std::vector<Level*>& levels);
    void drawLines(const std::vector<Level*>& levels, const Camera& camera, double pixelRatio);

    std::unique_ptr<QOpenGLShaderProgram> lineProgram_;
    std::unique_ptr<QOpenGLShaderProgram> meshProgram_;
    std::unique_ptr<QOpenGLShaderProgram> pictureProgram_;
    std::unique_ptr<PictureTextures> textures_;
    std::map<OverlayScene::Id, std::unique_ptr<Item>> items_;
    std::unique_ptr<RasterLayer> raster_;  ///< null with a graphics card
    std::vector<const Level*> bodies_;     ///< that were drawn in this frame
    int areaMark_ = 0;
};

}  // namespace sandbox
