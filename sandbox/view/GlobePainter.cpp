#include "sandbox/view/GlobePainter.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <cmath>

#include "sandbox/view/Camera.h"
#include "sandbox/view/EarthLayer.h"
#include "sandbox/view/HookLayer.h"
#include "sandbox/view/OverlayLayer.h"
#include "sandbox/view/OverlayScene.h"
#include "sandbox/view/Sprites.h"

namespace sandbox {

struct GlobePainter::Layers {
    EarthLayer earth;
    HookLayer hook;
    OverlayLayer overlays;
    Sprites sprites;
};

namespace {

QRgb rgb(const Rgba& color) {
    return qRgba(color.r, color.g, color.b, color.a);
}

/// The direction of a platform's heading on the screen, clockwise from up.
double screenTurn(const Camera& camera, const PlatformMarker& platform) {
    const LocalFrame frame = localFrame(platform.position.lat(), platform.position.lon());
    const Ecef ahead = frame.north * std::cos(platform.heading) + frame.east * std::sin(platform.heading);
    return std::atan2(dot(ahead, camera.right()), dot(ahead, camera.up()));
}

}  // namespace

GlobePainter::GlobePainter() : layers_(std::make_unique<Layers>()) {}

GlobePainter::~GlobePainter() = default;

void GlobePainter::setEarthImage(const QImage& image) {
    layers_->earth.setImage(image);
}

void GlobePainter::recordHook(const Camera& camera, const QSize& pixels, const std::function<void()>& hook) {
    layers_->hook.record(camera, pixels, hook);
    hookRecorded_ = true;
}

void GlobePainter::draw(const GlobeFrame& frame, QPaintDevice& device) {
    const Camera& camera = frame.camera;
    const QSize pixels =
        QSizeF(camera.width() * frame.pixelRatio, camera.height() * frame.pixelRatio).toSize();
    glViewport(0, 0, pixels.width(), pixels.height());
    // The painters of the frame before leave it off.
    glEnable(GL_MULTISAMPLE);
    glDepthMask(GL_TRUE);
    const QColor& color = frame.backdrop.color;
    const float opacity = color.alphaF();
    glClearColor(color.redF() * opacity, color.greenF() * opacity, color.blueF() * opacity, opacity);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    if (frame.backdrop.earth) layers_->earth.draw(camera);
    layers_->overlays.update(frame.overlays);
    layers_->overlays.draw(frame.overlays, camera, frame.pixelRatio);
    layers_->sprites.setPixelRatio(frame.pixelRatio);
    paintLabels(frame, device);
    if (hookRecorded_) layers_->hook.compose();
    hookRecorded_ = false;
    paintScreenTexts(frame, device);
}

void GlobePainter::paintLabels(const GlobeFrame& frame, QPaintDevice& device) {
    const std::vector<const DrawList::Label*> labels = layers_->overlays.labels(frame.overlays);
    if (labels.empty() && frame.platforms.empty()) return;
    const Camera& camera = frame.camera;
    QPainter painter(&device);
    Sprites& sprites = layers_->sprites;
    const auto inView = [&](const Projected& place) {
        constexpr double kMargin = 500.0;
        return place.visible && place.x > -kMargin && place.x < camera.width() + kMargin &&
               place.y > -kMargin && place.y < camera.height() + kMargin;
    };
    for (const DrawList::Label* label : labels) {
        const Projected place = camera.project(label->position);
        if (!inView(place)) continue;
        TextLook look{fontForFile(QString::fromStdString(label->fontName), label->pixelSize),
                      rgb(label->color), rgb(label->outlineColor), label->outlineWidth};
        const QString text = QString::fromStdString(label->text);
        if (label->icon.path.empty()) {
            sprites.drawTextCentered(painter, place.x, place.y, text, look);
        } else {
            constexpr double kGap = 3.0;
            const double width = sprites.drawIcon(painter, place.x, place.y, label->icon);
            sprites.drawTextBeside(painter, place.x + width / 2.0 + kGap, place.y, text, look);
        }
    }
    const TextLook nameLook{fontForFile(QStringLiteral("arial.ttf"), 13), 0xffffffff, 0xb0000000, 1};
    for (const auto& [id, platform] : frame.platforms) {
        const Projected place = camera.project(platform.position);
        if (!inView(place)) continue;
        sprites.drawSymbol(painter, place.x, place.y, platform, screenTurn(camera, platform));
        if (!platform.name.empty())
            sprites.drawText(painter, place.x + 12.0, place.y - 8.0, QString::fromStdString(platform.name),
                             nameLook);
    }
}

void GlobePainter::paintScreenTexts(const GlobeFrame& frame, QPaintDevice& device) {
    if (frame.screenTexts.empty()) return;
    QPainter painter(&device);
    for (const auto& [id, text] : frame.screenTexts) {
        const TextLook look{fontForFile(QStringLiteral("arial.ttf"), text.pixelSize), text.argb, 0xa0000000,
                            1};
        layers_->sprites.drawText(painter, text.x, text.y, QString::fromStdString(text.text), look);
    }
}

}  // namespace sandbox
