#include "globe/GlobePainter.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "globe/BaseMap.h"
#include "globe/Camera.h"
#include "globe/EarthLayer.h"
#include "globe/GraticuleLayer.h"
#include "globe/HookLayer.h"
#include "globe/OverlayLayer.h"
#include "globe/OverlayScene.h"
#include "globe/ScaleBar.h"
#include "globe/SoftwareRenderer.h"
#include "globe/Sprites.h"
#include "globe/StillGround.h"
#include "globe/TextLayout.h"

namespace sandbox {

struct GlobePainter::Layers {
    EarthLayer earth;
    HookLayer hook;
    GraticuleLayer graticule;
    BaseMap baseMap;
    /// None with a graphics card.
    std::optional<StillGround> still;
    OverlayLayer overlays;
    Sprites sprites;
};

namespace {

/// A dark strip that texts stand out on, whatever lies below.
void paintStrip(QPainter& painter, const QRectF& area) {
    painter.fillRect(area, QColor(8, 13, 20, 150));
}

QSize pixelsOf(const GlobeFrame& frame) {
    return QSizeF(frame.camera.width() * frame.pixelRatio, frame.camera.height() * frame.pixelRatio).toSize();
}

}  // namespace

GlobePainter::GlobePainter() : layers_(std::make_unique<Layers>()) {
    if (isSoftwareRenderer()) layers_->still.emplace();
}

GlobePainter::~GlobePainter() = default;

void GlobePainter::setEarthImage(const QImage& image) {
    layers_->earth.setImage(image);
    if (layers_->still) layers_->still->forget();
    layers_->overlays.forgetGround();
}

void GlobePainter::recordHook(const Camera& camera, const QSize& pixels, const std::function<void()>& hook) {
    layers_->hook.record(camera, pixels, hook);
    hookRecorded_ = true;
}

bool GlobePainter::workOut(const GlobeFrame& frame, bool calm) {
    layers_->overlays.update(frame.overlays);
    if (!layers_->overlays.workOut(frame.camera, frame.pixelRatio, calm, frame.working,
                                   [&] { drawGround(frame); }))
        return false;
    Slice slice = frame.working;
    return layers_->sprites.readIcons(slice);
}

void GlobePainter::draw(const GlobeFrame& frame, QPaintDevice& device) {
    const Camera& camera = frame.camera;
    const QSize pixels = pixelsOf(frame);
    glViewport(0, 0, pixels.width(), pixels.height());
    // The painters of the frame before leave it off.
    glEnable(GL_MULTISAMPLE);
    glDepthMask(GL_TRUE);
    glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    layers_->overlays.update(frame.overlays);
    if (drawnMap_ != frame.map) layers_->overlays.forgetGround();
    drawnMap_ = frame.map;
    layers_->overlays.draw(camera, frame.pixelRatio, frame.moving, frame.working, frame.drawing,
                           [&] { drawGround(frame); });
    layers_->sprites.beginFrame(frame.pixelRatio);
    paintTexts(frame, device);
    if (hookRecorded_) layers_->hook.compose();
    hookRecorded_ = false;
    paintScreenTexts(frame, device);
}

void GlobePainter::drawGround(const GlobeFrame& frame) {
    const QColor& color = frame.backdrop.color;
    const float opacity = color.alphaF();
    glClearColor(color.redF() * opacity, color.greenF() * opacity, color.blueF() * opacity, opacity);
    glClear(GL_COLOR_BUFFER_BIT);
    const StillGround::View view{frame.camera, frame.pixelRatio, frame.map};
    const bool kept = frame.backdrop.earth && layers_->still;
    if (kept && layers_->still->show(view)) return;
    if (frame.backdrop.earth) {
        layers_->baseMap.update(frame.camera, frame.pixelRatio, frame.map);
        layers_->earth.draw(frame.camera, frame.pixelRatio, layers_->baseMap, frame.map);
    }
    if (frame.map.graticule) layers_->graticule.draw(frame.camera, frame.pixelRatio);
    if (kept) layers_->still->noteDrawn(view, pixelsOf(frame));
}

bool GlobePainter::isPartial() const {
    return layers_->overlays.isPartial() || layers_->sprites.lacksIcons() || layers_->sprites.lacksTexts();
}

bool GlobePainter::isRough() const {
    return layers_->overlays.isRough();
}

void GlobePainter::paintTexts(const GlobeFrame& frame, QPaintDevice& device) {
    const std::vector<GraticuleLabel> graticule =
        frame.map.graticule ? layers_->graticule.labels(frame.camera) : std::vector<GraticuleLabel>();
    const TextLayout layout = layOutTexts(frame, layers_->overlays.labels(), graticule);
    Sprites& sprites = layers_->sprites;
    QPainter painter(&device);
    const auto draw = [&](const std::vector<TextLayout::Text>& texts) {
        for (const auto& [x, y, text, look] : texts) sprites.drawTextCentered(painter, x, y, text, look);
    };
    constexpr std::size_t kIconsAtLeast = 5'000;
    constexpr std::chrono::milliseconds kIcons{10};
    Slice slice = frame.working.isEndless() ? Slice() : Slice(kIconsAtLeast, kIcons);
    draw(layout.map);
    if (frame.map.scaleBar) paintScale(frame, painter);
    for (const auto& [label, x, y] : layout.labels) {
        const TextLook look = lookOf(*label);
        const QString text = QString::fromStdString(label->text);
        if (label->icon.path.empty()) {
            sprites.drawTextCentered(painter, x, y, text, look);
        } else {
            constexpr double kGap = 3.0;
            const double width = sprites.drawIcon(painter, x, y, label->icon, slice);
            sprites.drawTextBeside(painter, x + width / 2.0 + kGap, y, text, look);
        }
    }
    sprites.setSymbolScale(layout.symbolScale);
    for (const auto& [x, y, turn, isCross] : layout.platforms)
        sprites.addSymbol(painter, x, y, isCross, turn);
    sprites.drawSymbols(painter);
    constexpr std::size_t kNamesAtLeast = 10'000;
    constexpr std::chrono::milliseconds kNames{15};
    Slice names = frame.working.isEndless() ? Slice() : Slice(kNamesAtLeast, kNames);
    for (const auto& [x, y, name] : layout.names)
        sprites.drawTextOrLater(painter, x + TextLayout::Platform::kNameX, y + TextLayout::Platform::kNameY,
                                QString::fromStdString(name), platformLook(), names);
    draw(layout.counts);
}

void GlobePainter::paintScale(const GlobeFrame& frame, QPainter& painter) {
    const Camera& camera = frame.camera;
    const ScaleBar bar = scaleBar(camera, ScaleBar::kMostPixels);
    const QRectF area = areaOfScale(frame);
    paintStrip(painter, area);
    constexpr double kTick = 5.0;
    // At whole device pixels, filled: crisp and the same on every renderer.
    const auto whole = [&](double v) { return std::round(v * frame.pixelRatio) / frame.pixelRatio; };
    const double right = whole(camera.width() - ScaleBar::kMargin);
    const double left = whole(right - bar.pixels);
    const double bottom = whole(area.bottom() - 8.0);
    for (const auto& [grown, color] :
         {std::pair{1.0, QColor(0, 0, 0, 150)}, std::pair{0.0, QColor(Qt::white)}}) {
        for (const QRectF& part :
             {QRectF(left, bottom - 2.0, right - left, 2.0), QRectF(left, bottom - kTick, 2.0, kTick - 2.0),
              QRectF(right - 2.0, bottom - kTick, 2.0, kTick - 2.0)})
            painter.fillRect(part.adjusted(-grown, -grown, grown, grown), color);
    }
    layers_->sprites.drawTextCentered(
        painter, (left + right) / 2.0, bottom - 13.0, QString::fromStdString(bar.text),
        {fontForFile(QStringLiteral("arial.ttf"), 11), 0xd0ffffff, 0xa0000000, 1});
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
