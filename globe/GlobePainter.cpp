#include "globe/GlobePainter.h"

#include <QFontMetricsF>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "geo/Ecef.h"
#include "globe/BaseMap.h"
#include "globe/Camera.h"
#include "globe/EarthLayer.h"
#include "globe/GraticuleLayer.h"
#include "globe/HookLayer.h"
#include "globe/LabelLayout.h"
#include "globe/OverlayLayer.h"
#include "globe/OverlayScene.h"
#include "globe/ScaleBar.h"
#include "globe/Sprites.h"

namespace sandbox {

using halCore::Ecef;
using halCore::LocalFrame;
using halCore::localFrame;

struct GlobePainter::Layers {
    EarthLayer earth;
    HookLayer hook;
    GraticuleLayer graticule;
    BaseMap baseMap;
    OverlayLayer overlays;
    Sprites sprites;
};

namespace {

/// A dark strip that texts stand out on, whatever lies below.
void paintStrip(QPainter& painter, const QRectF& area) {
    painter.fillRect(area, QColor(8, 13, 20, 150));
}

/// What a screen text and its strip cover.
QRectF areaOf(const ScreenText& text) {
    const QFontMetricsF metrics(fontForFile(QString::fromStdString(text.fontFile), text.pixelSize));
    const QStringList lines = QString::fromStdString(text.text).split(QLatin1Char('\n'));
    double width = 0.0;
    for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
    if (width == 0.0) return {};
    return QRectF(text.x, text.y, width, metrics.lineSpacing() * static_cast<double>(lines.size()))
        .adjusted(-8.0, -4.0, 8.0, 5.0);
}

/// What the scale and its strip cover.
QRectF areaOf(const ScaleBar& bar, const Camera& camera) {
    const double width = std::max(bar.pixels, 60.0);
    return {camera.width() - ScaleBar::kMargin - bar.pixels / 2.0 - width / 2.0 - 8.0,
            camera.height() - ScaleBar::kMargin - 24.0, width + 16.0, 32.0};
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
    if (frame.backdrop.earth) {
        layers_->baseMap.update(camera, frame.pixelRatio, frame.map);
        layers_->earth.draw(camera, frame.pixelRatio, layers_->baseMap, frame.map);
    }
    if (frame.map.graticule) layers_->graticule.draw(camera, frame.pixelRatio);
    layers_->overlays.update(frame.overlays);
    layers_->overlays.draw(frame.overlays, camera, frame.pixelRatio);
    layers_->sprites.setPixelRatio(frame.pixelRatio);
    paintMapTexts(frame, device);
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
    for (const PlacedLabel& placed : placeLabels(labels, camera)) {
        const TextLook look = lookOf(*placed.label);
        const QString text = QString::fromStdString(placed.label->text);
        if (placed.label->icon.path.empty()) {
            sprites.drawTextCentered(painter, placed.x, placed.y, text, look);
        } else {
            constexpr double kGap = 3.0;
            const double width = sprites.drawIcon(painter, placed.x, placed.y, placed.label->icon);
            sprites.drawTextBeside(painter, placed.x + width / 2.0 + kGap, placed.y, text, look);
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

void GlobePainter::paintMapTexts(const GlobeFrame& frame, QPaintDevice& device) {
    if (!frame.map.graticule && !frame.map.scaleBar && !frame.map.names) return;
    const Camera& camera = frame.camera;
    QPainter painter(&device);
    const ScaleBar bar = scaleBar(camera, ScaleBar::kMostPixels);
    // Others keep clear of the scale and of the hints.
    std::vector<QRectF> taken;
    if (frame.map.scaleBar) taken.push_back(areaOf(bar, camera));
    for (const auto& [id, text] : frame.screenTexts) taken.push_back(areaOf(text));
    const auto draw = [&](double x, double y, const QString& text, const TextLook& look) {
        const QSizeF size(QFontMetricsF(look.font).horizontalAdvance(text),
                          QFontMetricsF(look.font).height());
        const QRectF area(QPointF(x - size.width() / 2.0, y - size.height() / 2.0), size);
        if (std::ranges::any_of(taken, [&](const QRectF& other) { return other.intersects(area); })) return;
        taken.push_back(area);
        layers_->sprites.drawTextCentered(painter, x, y, text, look);
    };
    const TextLook look{fontForFile(QStringLiteral("arial.ttf"), 11), 0xd0ffffff, 0xa0000000, 1};
    if (frame.map.graticule)
        for (const GraticuleLabel& label : layers_->graticule.labels(camera))
            draw(label.x, label.y, QString::fromStdString(label.text), look);
    if (frame.map.names)
        for (const DrawList::Label& name : BaseMap::names(camera)) {
            const Projected place = camera.project(name.position);
            draw(place.x, place.y, QString::fromStdString(name.text), lookOf(name));
        }
    if (!frame.map.scaleBar) return;
    paintStrip(painter, areaOf(bar, camera));
    constexpr double kTick = 5.0;
    // At whole device pixels, filled: crisp and the same on every renderer.
    const auto whole = [&](double v) { return std::round(v * frame.pixelRatio) / frame.pixelRatio; };
    const double right = whole(camera.width() - ScaleBar::kMargin);
    const double left = whole(right - bar.pixels);
    const double bottom = whole(camera.height() - ScaleBar::kMargin);
    for (const auto& [grown, color] :
         {std::pair{1.0, QColor(0, 0, 0, 150)}, std::pair{0.0, QColor(Qt::white)}}) {
        for (const QRectF& part :
             {QRectF(left, bottom - 2.0, right - left, 2.0), QRectF(left, bottom - kTick, 2.0, kTick - 2.0),
              QRectF(right - 2.0, bottom - kTick, 2.0, kTick - 2.0)})
            painter.fillRect(part.adjusted(-grown, -grown, grown, grown), color);
    }
    layers_->sprites.drawTextCentered(painter, (left + right) / 2.0, bottom - 13.0,
                                      QString::fromStdString(bar.text), look);
}

void GlobePainter::paintScreenTexts(const GlobeFrame& frame, QPaintDevice& device) {
    if (frame.screenTexts.empty()) return;
    QPainter painter(&device);
    for (const auto& [id, text] : frame.screenTexts) {
        const TextLook look{fontForFile(QString::fromStdString(text.fontFile), text.pixelSize), text.argb,
                            0xa0000000, 1};
        if (const QRectF area = areaOf(text); !area.isEmpty()) paintStrip(painter, area);
        layers_->sprites.drawText(painter, text.x, text.y, QString::fromStdString(text.text), look);
    }
}

}  // namespace sandbox
