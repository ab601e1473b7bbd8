#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QOpenGLWidget>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <memory_resource>
#include <optional>

#include "globe/Camera.h"
#include "globe/Flight.h"
#include "globe/GlobePainter.h"
#include "globe/OverlayScene.h"
#include "globe/ViewMouseEvent.h"

namespace sandbox {

/// The 3-D view: the earth, overlays, platforms, what a refresh hook draws, and screen texts, in this
/// order from the back to the front.
///
/// A frame is drawn only when something changed or `requestRedraw()` was called. While very many overlays or
/// platforms come or go it waits for more of them, for some moments. Where the processor draws very many
/// lines, those of a view that moves are rough, and another frame follows when it rests. Pixels in this
/// interface are widget pixels with the origin at the top left corner; the device's pixel density is dealt
/// with inside.
class GlobeView : public QOpenGLWidget {
    Q_OBJECT

  public:
    /// What the view needs of OpenGL: a compatibility context (2.1 or later), 4 samples a pixel if
    /// possible.
    static QSurfaceFormat surfaceFormat();

    explicit GlobeView(QWidget* parent = nullptr);
    ~GlobeView() override;

    /// An image of the whole earth, plate carrée, 180° West at its left edge. Without a readable image
    /// (the answer is false then) the globe is plain, with a graticule.
    bool setEarthImage(const QString& path);
    const QImage& earthImage() const { return earthImage_; }
    static QString defaultEarthImage();

    const Camera& camera() const { return camera_; }
    void setCenter(const halCore::Vec3& geodetic);
    void setRangeAzimuthElevation(double range, double azimuth, double elevation);

    /// Turns and zooms there in about a second, unless the user, or one of the setters, interferes.
    void flyTo(const Camera& target);
    /// Changes the distance, keeping what is looked at; 0.5 is twice as close.
    void zoom(double factor);
    void turnNorthUp();

    const MapOptions& mapOptions() const { return mapOptions_; }
    void setMapOptions(const MapOptions& options);

    OverlayScene& overlays() { return overlays_; }
    const OverlayScene& overlays() const { return overlays_; }

    /// Adds the platform, or replaces the one with its id.
    void setPlatform(PlatformMarker platform);
    void removePlatform(std::uint64_t id);
    const MarkerMap& platforms() const { return platforms_; }
    /// The platform whose symbol is under the pixel, the nearest one when there are several.
    std::optional<std::uint64_t> platformAt(double x, double y) const;

    /// Adds the text, or replaces the one with its id.
    void setScreenText(ScreenText text);
    void removeScreenText(std::uint64_t id);
    const std::map<std::uint64_t, ScreenText>& screenTexts() const { return screenTexts_; }

    /// Sees every mouse event first; true = consumed, the view neither turns nor zooms then. It is not told
    /// of the left button while Space is held: that turns the globe. With a modifier the wheel comes in whole
    /// notches.
    void setMouseListener(std::function<bool(const ViewMouseEvent&)> listener);

    /// Called once a frame before the scene is drawn, with the size of the view in widget pixels, the
    /// context current, and modelview and projection mapping eye-relative earth-centred metres. What it
    /// draws lands on a layer of its own (transparent, colour and depth cleared) that is laid over the
    /// overlays at the end. OpenGL's state is restored afterwards. Blending is switched on and set up
    /// with
    /// glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA),
    /// which keeps the layer's own alpha right.
    ///
    /// Overlays, platforms and screen texts may be changed inside: the frame that is being made shows
    /// the change, and no further frame is scheduled for it.
    void setRefreshHook(std::function<void(int width, int height)> hook);

    /// Schedules one frame; any number of calls before it is drawn makes one frame.
    void requestRedraw();
    /// Whether a frame of very many overlays or platforms waits for more of them.
    bool gathers() const { return gathers_; }
    /// Frames drawn so far.
    std::uint64_t frameCount() const { return frameCount_; }
    /// Draws a frame and returns it with all layers, in device pixels; never a rough one.
    QImage grabFrame();

  signals:
    /// The position under the cursor; `onEarth` is false (and the angles 0) when there is none.
    void cursorMoved(bool onEarth, double latitude, double longitude);
    void cursorLeft();
    /// The left button was pressed and released at a place, and nobody took it.
    void clicked(double x, double y);
    void cameraChanged();
    void frameDrawn();

  protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void contentChanged();
    /// Overlays or platforms: there may be very many of them.
    void somethingChanged();
    std::uint64_t changes() const { return overlays_.changes() + platformChanges_; }
    void lookAtChanges();
    void gather();
    void gatherMore();
    GlobeFrame frameOf(const Camera& camera, Slice working) const;
    /// What is left of a slice for overlays where very many platforms take their time, too.
    Slice besidePlatforms(std::size_t atLeast, std::chrono::milliseconds time) const;
    void cameraMoved();
    void reportCursor(double x, double y);
    bool listenerTakes(const ViewMouseEvent& event);
    void releaseGraphics();
    /// The left button went up where the view did not see it, in another window say: the listener, which
    /// knows of the press, gets a release at the last place.
    void releaseUnseen();
    void continueFlight();

    Camera camera_;
    MapOptions mapOptions_;
    std::optional<Flight> flight_;
    QElapsedTimer flightTime_;
    OverlayScene overlays_;
    /// Their markers lie beside each other: each frame goes through all of them.
    std::pmr::unsynchronized_pool_resource markerMemory_;
    MarkerMap platforms_{&markerMemory_};
    std::uint64_t platformChanges_ = 0;
    std::map<std::uint64_t, ScreenText> screenTexts_;
    std::function<bool(const ViewMouseEvent&)> mouseListener_;
    std::function<void(int, int)> refreshHook_;
    QImage earthImage_;
    std::unique_ptr<GlobePainter> painter_;  // lives and dies with the context
    std::optional<halCore::Vec3> grabbed_;
    QPointF lastDrag_;
    std::optional<QPointF> pressedAt_;  ///< with the left button, as long as the mouse stays there
    bool tilting_ = false;
    bool pressTold_ = false;
    bool pressOurs_ = false;
    /// A left press is the view's own then.
    bool spaceHeld_ = false;
    /// Parts of a notch that nobody has been told of, and the modifiers held meanwhile.
    int wheelRest_ = 0;
    unsigned wheelModifiers_ = 0;
    std::uint64_t frameCount_ = 0;
    /// The camera has moved since the last frame that was not rough.
    bool moving_ = false;
    /// A frame that is grabbed lacks nothing, however long it takes.
    bool grabs_ = false;
    /// After a rough frame, until the camera has rested for a moment, and for as long as that frame took.
    QTimer rest_;
    QElapsedTimer frameTime_;
    /// Until nothing more comes, when very many of them change; and since when.
    QTimer calm_;
    QElapsedTimer gatherTime_;
    bool gathers_ = false;
    bool waitsForMore_ = false;  ///< since nothing is left to work out
    bool moreComes_ = false;     ///< but what there is was to be shown
    /// Somebody looks at what has changed when the event is over.
    bool looksSoon_ = false;
    /// The scene's changes at the last look, and those that are drawn.
    std::uint64_t gathered_ = 0;
    std::uint64_t drawn_ = 0;
    std::chrono::milliseconds lastFrame_{0};  ///< until it was on the screen
    bool insideHook_ = false;
};

}  // namespace sandbox
