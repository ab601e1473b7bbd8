#pragma once

#include <QRect>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "common/Slice.h"
#include "common/Work.h"
#include "globe/Camera.h"
#include "globe/DetailBudget.h"
#include "globe/DrawList.h"
#include "globe/OverlayScene.h"

namespace sandbox {

class ChunkPainter;
class DetailChoice;
class FillCost;
class OverlayPicture;
class PictureTextures;
class RasterLayer;
class ViewVolume;
struct ChunkGeometry;
struct ChunkedOverlay;

/// Draws the geometry of overlays. An entry is cut into chunks of a few thousand points. A chunk's geometry
/// is worked out in levels of detail, each when it is first needed and again when the entry changed; a frame
/// costs no work for each vertex but the card's. Chunks out of view are left out, and the level is chosen so
/// that what it lacks is smaller than a fifth of a pixel.
///
/// Where the processor plays the card, many lines are drawn by RasterLayer, but for those that a body may
/// hide. A frame that shows nothing but such lines keeps their picture: as long as the camera rests, only the
/// surroundings of what has changed are drawn anew, and what is new on top is laid over it, between frames as
/// well. Where a frame has no time for all there is, the rest comes the same way, into OverlayPicture if it
/// is not lines alone; what is on top is what people draw, and never left out.
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

    /// Drops the geometry of entries that are gone or changed. What follows, up to the next update(), expects
    /// the scene to be as it is now.
    void update(const OverlayScene& scene);
    /// There is another ground.
    void forgetGround();
    /// Expects cleared depth and stencil buffers; only solids write depth. `pixelRatio`: device pixels a
    /// widget pixel. `moving`: the camera does, so that a frame in time is worth more than a fine one.
    /// `working`: how long geometry is worked out, `drawing`: how long it is drawn; what is not ready then is
    /// left out, or drawn in another detail. `ground`: draws what lies below, when nothing stands for it.
    void draw(const Camera& camera, double pixelRatio, bool moving, Slice working, Slice drawing,
              const std::function<void()>& ground);
    /// Works out what a frame will need, and draws what it would have no time for. \param calm nothing has
    /// changed since the last call, so that it is time for a new picture
    /// \return whether nothing is left
    bool workOut(const Camera& camera, double pixelRatio, bool calm, Slice working,
                 const std::function<void()>& ground);
    /// Whether something was left for the next frame.
    bool isPartial() const { return partial_; }
    /// Whether the last draw() has made use of that.
    bool isRough() const { return rough_; }
    /// The labels of the shown entries, in drawing order; valid from draw() until the next update().
    std::vector<const DrawList::Label*> labels() const;

  private:
    struct Spot;
    struct Seen;

    void look(const OverlayScene& scene, OverlayScene::Id id);
    void remove(OverlayScene::Id id);
    std::vector<Spot>::iterator spotsOf(OverlayScene::Id id);
    void listSpots();
    void changePicture(const Spot& spot);
    ChunkGeometry* find(Spot& spot, const DetailChoice& detail, const ViewVolume& view, bool moving);
    void findAll(const Camera& camera, double pixelRatio, bool moving);
    void see(std::size_t spot, ChunkGeometry& geometry, const ViewVolume& view,
             std::vector<Seen>& seen) const;
    ChunkGeometry* prepare(Spot& spot, const DetailChoice& detail, const ViewVolume& view, bool moving);
    bool beginAhead(const Camera& camera, double pixelRatio, bool calm);
    bool lay(ChunkGeometry& geometry, const ViewVolume& view, Slice& slice);
    void forgetLaid();
    void stopLaying();
    bool drawAhead(const Camera& camera, double pixelRatio, Slice& slice,
                   const std::function<void()>& ground);
    void noteChange(const ChunkGeometry* geometry);
    static std::size_t topmost(std::span<const Seen> seen, const FillCost& cost);
    void drawTogether(const Camera& camera, double pixelRatio, bool moving);
    void drawSeen(const Camera& camera, double pixelRatio, bool moving, bool pictured);
    void drawTop(std::span<const Seen> top);
    Work drawInOrder(std::vector<Seen> seen);

    std::unique_ptr<PictureTextures> textures_;
    const OverlayScene* scene_ = nullptr;  ///< compared, never followed
    std::uint64_t changes_ = 0;            ///< of the scene, that have been looked at
    DetailBudget budget_;
    std::map<OverlayScene::Id, ChunkedOverlay> items_;
    /// All chunks in drawing order; of items that are gone they are null until many are.
    std::vector<Spot> spots_;
    std::size_t gone_ = 0;
    bool spotsStale_ = false;
    /// So many of them have all that a frame with the camera needs.
    std::size_t workedOut_ = 0;
    std::optional<Camera> workedOutFor_;
    /// So many of them are in the picture that the raster keeps, as far as they are to be seen, or will be
    /// drawn anew with what is around them; those behind are not. Of the next one so many lines are, of this
    /// part.
    std::size_t laid_ = 0;
    const ChunkGeometry* layingPart_ = nullptr;
    std::size_t laidLines_ = 0;
    /// What the frame shows, in drawing order. What follows the first so many is new, and lies above what the
    /// raster keeps.
    std::vector<Seen> seen_;
    std::size_t kept_ = 0;
    bool seesLinesOnly_ = true;
    std::size_t seenSegments_ = 0;
    double widestSeen_ = 0.0;
    bool rough_ = false;
    std::chrono::steady_clock::time_point hurriesUntil_;
    Slice working_;
    Slice drawing_;
    bool late_ = false;       ///< the time for working out geometry is over
    bool overdrawn_ = false;  ///< the last frame had no time for areas
    bool partial_ = false;
    /// Where the picture that the raster keeps is not right any more.
    std::vector<QRect> changed_;
    bool allChanged_ = true;
    std::unique_ptr<RasterLayer> raster_;  ///< null with a graphics card
    std::unique_ptr<ChunkPainter> painter_;
    std::unique_ptr<OverlayPicture> picture_;  ///< null with a graphics card, or without frame buffers
};

}  // namespace sandbox
