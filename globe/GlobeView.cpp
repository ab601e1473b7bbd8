#include "globe/GlobeView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace sandbox {

namespace {

/// A frame waits so long for geometry; the rest comes with the next ones.
constexpr std::chrono::milliseconds kWorkedOut{20};
constexpr std::size_t kWorkedOutAtLeast = 20'000;
/// So long a frame is drawn, and so much at least; longer while the view moves, since the rest does not come
/// then.
constexpr std::chrono::milliseconds kDrawn{20};
constexpr std::chrono::milliseconds kDrawnMoving{30};
constexpr std::size_t kDrawnAtLeast = 25'000;

/// Fewer changes are drawn at once. A frame of more takes long, however many they are.
constexpr std::uint64_t kManyChanges = 1000;
/// When no more come for so long they are all there.
constexpr std::chrono::milliseconds kCalm{5};
/// Their geometry is worked out for so long at a time.
constexpr std::chrono::milliseconds kWorkedOutBetween{15};
constexpr std::chrono::milliseconds kWorkedOutYet{2};
/// Otherwise what has come is shown after so long, or after twice the time that a frame takes.
constexpr std::chrono::milliseconds kGatheredAtLeast{100};
constexpr std::chrono::milliseconds kGatheredAtMost{500};

unsigned modifiersOf(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? unsigned{ViewMouseEvent::Shift} : 0U) |
           (modifiers & Qt::ControlModifier ? unsigned{ViewMouseEvent::Control} : 0U) |
           (modifiers & Qt::AltModifier ? unsigned{ViewMouseEvent::Alt} : 0U);
}

unsigned buttonsOf(Qt::MouseButtons buttons) {
    return (buttons & Qt::LeftButton ? unsigned{ViewMouseEvent::Left} : 0U) |
           (buttons & Qt::MiddleButton ? unsigned{ViewMouseEvent::Middle} : 0U) |
           (buttons & Qt::RightButton ? unsigned{ViewMouseEvent::Right} : 0U);
}

ViewMouseEvent describe(const QSinglePointEvent& event, ViewMouseEvent::Kind kind) {
    ViewMouseEvent result;
    result.kind = kind;
    result.x = qRound(event.position().x());
    result.y = qRound(event.position().y());
    result.modifiers = modifiersOf(event.modifiers());
    result.buttons = buttonsOf(event.buttons());
    return result;
}

std::optional<ViewMouseEvent::Kind> kindOf(Qt::MouseButton button, bool press) {
    using Kind = ViewMouseEvent::Kind;
    switch (button) {
        case Qt::LeftButton:
            return press ? Kind::LeftPress : Kind::LeftRelease;
        case Qt::MiddleButton:
            return press ? Kind::MiddlePress : Kind::MiddleRelease;
        case Qt::RightButton:
            return press ? Kind::RightPress : Kind::RightRelease;
        default:
            return std::nullopt;
    }
}

}  // namespace

QSurfaceFormat GlobeView::surfaceFormat() {
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(2, 1);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    format.setSamples(4);
    return format;
}

GlobeView::GlobeView(QWidget* parent) : QOpenGLWidget(parent), earthImage_(defaultEarthImage()) {
    setFormat(surfaceFormat());
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    overlays_.setChangeCallback([this] { somethingChanged(); });
    calm_.setSingleShot(true);
    connect(&calm_, &QTimer::timeout, this, &GlobeView::gatherMore);
    rest_.setSingleShot(true);
    // Not before what was drawn is on the screen: that may take as long as to draw it.
    connect(this, &QOpenGLWidget::frameSwapped, this, [this] {
        constexpr qint64 kLeast = 150;
        constexpr qint64 kMost = 1000;
        lastFrame_ = std::chrono::milliseconds(frameTime_.elapsed());
        if (painter_ && painter_->isRough() && moving_)
            rest_.start(static_cast<int>(std::clamp(frameTime_.elapsed(), kLeast, kMost)));
    });
    connect(&rest_, &QTimer::timeout, this, [this] {
        moving_ = false;
        gather();
    });
}

GlobeView::~GlobeView() {
    overlays_.setChangeCallback(nullptr);
    releaseGraphics();
    // The base class destroys the context, when this is no GlobeView any more.
    if (context()) disconnect(context(), nullptr, this, nullptr);
}

QString GlobeView::defaultEarthImage() {
    return QStringLiteral("/usr/share/xplanet/images/earth.jpg");
}

bool GlobeView::setEarthImage(const QString& path) {
    earthImage_ = path.isEmpty() ? QImage() : QImage(path);
    if (painter_) {
        makeCurrent();
        painter_->setEarthImage(earthImage_);
        doneCurrent();
    }
    requestRedraw();
    return !earthImage_.isNull();
}

void GlobeView::flyTo(const Camera& target) {
    flight_.emplace(camera_, target);
    flightTime_.start();
    requestRedraw();
}

void GlobeView::continueFlight() {
    if (!flight_) return;
    constexpr double kMilliseconds = 1100.0;
    const double share = static_cast<double>(flightTime_.elapsed()) / kMilliseconds;
    Camera next = flight_->at(share);
    next.setViewport(camera_.width(), camera_.height());
    camera_ = next;
    if (share >= 1.0) flight_.reset();
    // Each frame asks for the next one, so that a slow renderer drops frames and not time.
    cameraMoved();
}

void GlobeView::zoom(double factor) {
    setRangeAzimuthElevation(camera_.range() * factor, camera_.azimuth(), camera_.elevation());
}

void GlobeView::turnNorthUp() {
    Camera target = camera_;
    target.setRangeAzimuthElevation(camera_.range(), 0.0, camera_.elevation());
    flyTo(target);
}

void GlobeView::setMapOptions(const MapOptions& options) {
    if (mapOptions_ == options) return;
    mapOptions_ = options;
    contentChanged();
}

void GlobeView::setCenter(const halCore::Vec3& geodetic) {
    flight_.reset();
    const Camera before = camera_;
    camera_.setCenter(geodetic);
    if (!(camera_ == before)) cameraMoved();
}

void GlobeView::setRangeAzimuthElevation(double range, double azimuth, double elevation) {
    flight_.reset();
    const Camera before = camera_;
    camera_.setRangeAzimuthElevation(range, azimuth, elevation);
    if (!(camera_ == before)) cameraMoved();
}

void GlobeView::cameraMoved() {
    moving_ = true;
    rest_.stop();
    // Not contentChanged(): a camera that the hook moves needs the next frame, this one's view is set.
    requestRedraw();
    emit cameraChanged();
}

void GlobeView::setPlatform(PlatformMarker platform) {
    const std::uint64_t id = platform.id;
    platforms_.insert_or_assign(id, std::move(platform));
    ++platformChanges_;
    somethingChanged();
}

void GlobeView::removePlatform(std::uint64_t id) {
    if (platforms_.erase(id) == 0) return;
    ++platformChanges_;
    somethingChanged();
}

void GlobeView::setScreenText(ScreenText text) {
    const std::uint64_t id = text.id;
    screenTexts_.insert_or_assign(id, std::move(text));
    contentChanged();
}

void GlobeView::removeScreenText(std::uint64_t id) {
    if (screenTexts_.erase(id) > 0) contentChanged();
}

std::optional<std::uint64_t> GlobeView::platformAt(double x, double y) const {
    constexpr double kReach = 12.0;
    std::optional<std::uint64_t> nearest;
    double best = kReach;
    for (const auto& [id, platform] : platforms_) {
        const Projected place = camera_.project(platform.position);
        const double distance = std::hypot(place.x - x, place.y - y);
        if (!place.visible || distance > best) continue;
        best = distance;
        nearest = id;
    }
    return nearest;
}

void GlobeView::setMouseListener(std::function<bool(const ViewMouseEvent&)> listener) {
    mouseListener_ = std::move(listener);
}

void GlobeView::setRefreshHook(std::function<void(int, int)> hook) {
    refreshHook_ = std::move(hook);
    requestRedraw();
}

void GlobeView::requestRedraw() {
    update();
}

void GlobeView::contentChanged() {
    if (!insideHook_) requestRedraw();
}

void GlobeView::somethingChanged() {
    if (insideHook_ || gathers_ || looksSoon_) return;
    looksSoon_ = true;
    QMetaObject::invokeMethod(this, &GlobeView::lookAtChanges, Qt::QueuedConnection);
}

void GlobeView::lookAtChanges() {
    looksSoon_ = false;
    if (changes() == drawn_) return;
    if (changes() - drawn_ >= kManyChanges)
        gather();
    else
        contentChanged();
}

void GlobeView::gather() {
    gathers_ = true;
    gatherTime_.start();
    gathered_ = changes();
    waitsForMore_ = true;
    calm_.start(kCalm);
}

void GlobeView::gatherMore() {
    const std::uint64_t before = std::exchange(gathered_, changes());
    const bool calm = waitsForMore_ && before == gathered_;
    waitsForMore_ = true;
    if (painter_) {
        makeCurrent();
        waitsForMore_ = painter_->workOut(frameOf(camera_, Slice(0, kWorkedOutBetween)), calm);
        doneCurrent();
    }
    const auto most = std::clamp(2 * lastFrame_, kGatheredAtLeast, kGatheredAtMost);
    const bool isAll = calm && waitsForMore_;
    if (isAll || gatherTime_.hasExpired(most.count())) {
        gathers_ = false;
        moreComes_ = !isAll;
        requestRedraw();
    } else {
        calm_.start(waitsForMore_ ? kCalm : std::chrono::milliseconds(0));
    }
}

QImage GlobeView::grabFrame() {
    moving_ = false;
    grabs_ = true;
    QImage frame = grabFramebuffer();
    grabs_ = false;
    return frame;
}

void GlobeView::initializeGL() {
    painter_ = std::make_unique<GlobePainter>();
    painter_->setEarthImage(earthImage_);
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &GlobeView::releaseGraphics,
            Qt::UniqueConnection);
}

void GlobeView::releaseGraphics() {
    if (!painter_) return;
    makeCurrent();
    painter_.reset();
    doneCurrent();
}

void GlobeView::resizeGL(int width, int height) {
    camera_.setViewport(width, height);
    emit cameraChanged();
}

GlobeFrame GlobeView::frameOf(const Camera& camera, Slice working) const {
    return {.camera = camera,
            .pixelRatio = devicePixelRatio(),
            .backdrop = {},
            .map = mapOptions_,
            .overlays = overlays_,
            .platforms = eachOf(platforms_),
            .screenTexts = screenTexts_,
            .working = working,
            .moving = moving_};
}

Slice GlobeView::besidePlatforms(std::size_t atLeast, std::chrono::milliseconds time) const {
    constexpr std::size_t kPlatformsInAUnit = 4;
    const std::size_t taken = std::min(platforms_.size() / kPlatformsInAUnit, atLeast * 3 / 4);
    return {atLeast - taken, time * (atLeast - taken) / atLeast};
}

void GlobeView::paintGL() {
    ++frameCount_;
    frameTime_.start();
    continueFlight();
    // The hook may move the camera: that is for the next frame, this one keeps its view.
    const Camera camera = camera_;
    const double ratio = devicePixelRatio();
    const QSize pixels = QSizeF(width() * ratio, height() * ratio).toSize();
    if (refreshHook_) {
        insideHook_ = true;
        painter_->recordHook(camera, pixels, [&] { refreshHook_(width(), height()); });
        insideHook_ = false;
        context()->functions()->glBindFramebuffer(GL_FRAMEBUFFER, defaultFramebufferObject());
    }
    gathers_ = false;
    calm_.stop();
    drawn_ = changes();
    // While more comes it is worked out between the frames.
    const Slice working = std::exchange(moreComes_, false) ? Slice(0, kWorkedOutYet)
                                                           : besidePlatforms(kWorkedOutAtLeast, kWorkedOut);
    GlobeFrame frame = frameOf(camera, grabs_ ? Slice() : working);
    if (!grabs_) frame.drawing = besidePlatforms(kDrawnAtLeast, moving_ ? kDrawnMoving : kDrawn);
    painter_->draw(frame, *this);
    if (painter_->isPartial()) gather();
    if (!painter_->isRough()) moving_ = false;
    emit frameDrawn();
}

bool GlobeView::listenerTakes(const ViewMouseEvent& event) {
    return mouseListener_ && mouseListener_(event);
}

void GlobeView::reportCursor(double x, double y) {
    const std::optional<halCore::Vec3> place = camera_.pick(x, y);
    emit cursorMoved(place.has_value(), place ? place->lat() : 0.0, place ? place->lon() : 0.0);
}

void GlobeView::mousePressEvent(QMouseEvent* event) {
    const std::optional<ViewMouseEvent::Kind> kind = kindOf(event->button(), true);
    lastDrag_ = event->position();
    const bool ours = spaceHeld_ && event->button() == Qt::LeftButton;
    if (event->button() == Qt::LeftButton) {
        pressTold_ = !ours;
        pressOurs_ = ours;
    }
    pressedAt_.reset();
    if (!kind || (!ours && listenerTakes(describe(*event, *kind)))) return;
    flight_.reset();
    if (event->button() == Qt::LeftButton && !ours) pressedAt_ = event->position();
    if (event->button() == Qt::LeftButton)
        grabbed_ = camera_.pick(event->position().x(), event->position().y());
    tilting_ = event->button() == Qt::MiddleButton;
}

void GlobeView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        grabbed_.reset();
        pressTold_ = false;
        if (std::exchange(pressOurs_, false)) return;
    }
    if (event->button() == Qt::MiddleButton) tilting_ = false;
    const std::optional<ViewMouseEvent::Kind> kind = kindOf(event->button(), false);
    const bool taken = kind && listenerTakes(describe(*event, *kind));
    if (const auto at = std::exchange(pressedAt_, std::nullopt); at && !taken) emit clicked(at->x(), at->y());
}

void GlobeView::releaseUnseen() {
    pressTold_ = false;
    pressedAt_.reset();
    grabbed_.reset();
    ViewMouseEvent release;
    release.kind = ViewMouseEvent::Kind::LeftRelease;
    release.x = qRound(lastDrag_.x());
    release.y = qRound(lastDrag_.y());
    listenerTakes(release);
}

void GlobeView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    if (pressTold_ && !(event->buttons() & Qt::LeftButton)) releaseUnseen();
    constexpr double kStill = 3.0;
    if (pressedAt_ && (at - *pressedAt_).manhattanLength() > kStill) pressedAt_.reset();
    // A drag whose press nobody took is the view's, whatever is said to its motion.
    listenerTakes(describe(*event, ViewMouseEvent::Kind::Motion));
    if (grabbed_ && (event->buttons() & Qt::LeftButton)) {
        if (camera_.bring(*grabbed_, at.x(), at.y())) cameraMoved();
    } else if (tilting_ && (event->buttons() & Qt::MiddleButton)) {
        constexpr double kRadiansPerPixel = 0.006;
        const QPointF moved = at - lastDrag_;
        setRangeAzimuthElevation(camera_.range(), camera_.azimuth() + moved.x() * kRadiansPerPixel,
                                 camera_.elevation() - moved.y() * kRadiansPerPixel);
    }
    lastDrag_ = at;
    reportCursor(at.x(), at.y());
}

void GlobeView::mouseDoubleClickEvent(QMouseEvent* event) {
    // Who does not care for double clicks gets the second press as a press, the view itself included.
    if (event->button() == Qt::LeftButton && !spaceHeld_ &&
        listenerTakes(describe(*event, ViewMouseEvent::Kind::DoubleClick)))
        return;
    mousePressEvent(event);
}

void GlobeView::wheelEvent(QWheelEvent* event) {
    ViewMouseEvent described = describe(*event, ViewMouseEvent::Kind::Wheel);
    described.wheelDelta = event->angleDelta().y();
    event->accept();
    // Touchpads send parts of a notch. The view zooms by them; with a modifier somebody may count notches.
    if (described.modifiers == 0 || described.modifiers != wheelModifiers_ ||
        (wheelRest_ < 0) != (described.wheelDelta < 0))
        wheelRest_ = 0;
    wheelModifiers_ = described.modifiers;
    if (described.modifiers != 0) {
        constexpr int kNotch = 120;
        wheelRest_ += described.wheelDelta;
        described.wheelDelta = wheelRest_ / kNotch * kNotch;
        wheelRest_ -= described.wheelDelta;
        if (described.wheelDelta == 0) return;
    }
    if (listenerTakes(described) || described.wheelDelta == 0) return;
    flight_.reset();
    const Camera before = camera_;
    camera_.zoom(std::pow(2.0, -described.wheelDelta / 360.0), event->position().x(), event->position().y());
    if (!(camera_ == before)) cameraMoved();
    reportCursor(event->position().x(), event->position().y());
}

void GlobeView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space)
        spaceHeld_ = true;
    else
        QOpenGLWidget::keyPressEvent(event);
}

void GlobeView::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space)
        QOpenGLWidget::keyReleaseEvent(event);
    else if (!event->isAutoRepeat())
        spaceHeld_ = false;
}

void GlobeView::focusOutEvent(QFocusEvent* event) {
    spaceHeld_ = false;
    QOpenGLWidget::focusOutEvent(event);
}

void GlobeView::leaveEvent(QEvent*) {
    emit cursorLeft();
}

}  // namespace sandbox
