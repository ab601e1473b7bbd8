#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "common/Slice.h"
#include "globe/MapOptions.h"
#include "globe/PlatformMarker.h"
#include "globe/ScreenText.h"

class QPaintDevice;
class QPainter;

namespace sandbox {

class Camera;
class OverlayScene;

/// What lies behind the overlays.
struct Backdrop {
    bool earth = true;  ///< space and the globe; otherwise nothing but the colour
    QColor color = Qt::black;
};

/// What one frame shows.
struct GlobeFrame {
    const Camera& camera;
    double pixelRatio = 1.0;  ///< device pixels a widget pixel
    Backdrop backdrop;
    MapOptions map;
    const OverlayScene& overlays;
    EachPlatform platforms;
    const std::map<std::uint64_t, ScreenText>& screenTexts;
    /// How long geometry is worked out before the frame is drawn with what is ready; whole at first.
    Slice working{};
    /// How long overlays are drawn before the frame is shown with what is there.
    Slice drawing{};
    bool moving = false;  ///< the camera: a frame in time is worth more than a fine one
};

/// Draws the globe and everything on it, in a window or off screen. To be made, used and destroyed with the
/// context current.
class GlobePainter {
  public:
    GlobePainter();
    ~GlobePainter();

    /// A null image gives the plain globe.
    void setEarthImage(const QImage& image);
    /// Runs a refresh hook and keeps what it draws for the next draw(), which lays it over the overlays.
    /// Leaves another frame buffer bound.
    void recordHook(const Camera& camera, const QSize& pixels, const std::function<void()>& hook);
    /// Works out what such a frame will need of the overlays. \see OverlayLayer::workOut
    bool workOut(const GlobeFrame& frame, bool calm);
    /// Draws on the frame buffer that is bound, which is the one that `device` stands for.
    void draw(const GlobeFrame& frame, QPaintDevice& device);
    /// Whether the last frame would be finer if the camera were not moving.
    bool isRough() const;
    /// Whether the last frame lacks something that was not ready.
    bool isPartial() const;

  private:
    struct Layers;

    void drawGround(const GlobeFrame& frame);
    void paintTexts(const GlobeFrame& frame, QPaintDevice& device);
    void paintScale(const GlobeFrame& frame, QPainter& painter);
    void paintScreenTexts(const GlobeFrame& frame, QPaintDevice& device);

    std::unique_ptr<Layers> layers_;
    bool hookRecorded_ = false;
    MapOptions drawnMap_;
};

}  // namespace sandbox
