#include "sandbox/ViewPicture.h"

#include <QDateTime>
#include <QPainter>
#include <QPrinter>
#include <algorithm>

#include "globe/Camera.h"
#include "globe/GlobePicture.h"
#include "globe/GlobeView.h"
#include "globe/PrintPicture.h"
#include "globe/ScaleBar.h"
#include "sandbox/PictureOutput.h"
#include "sandbox/PositionText.h"

namespace sandbox {

namespace {

const std::map<std::uint64_t, ScreenText> kNoTexts;

/// The view's frame for another size of the view.
struct ViewFrame {
    Camera camera;
    GlobeFrame frame;

    ViewFrame(const GlobeView& view, QSize size, double ratio, const Backdrop& backdrop = {})
        : camera(sized(view.camera(), size)),
          frame{.camera = camera,
                .pixelRatio = ratio,
                .backdrop = backdrop,
                .map = view.mapOptions(),
                .overlays = view.overlays(),
                .platforms = eachOf(view.platforms()),
                .screenTexts = kNoTexts} {}
    ViewFrame(const ViewFrame&) = delete;
    ViewFrame& operator=(const ViewFrame&) = delete;

  private:
    static Camera sized(Camera camera, QSize size) {
        camera.setViewport(size.width(), size.height());
        return camera;
    }
};

}  // namespace

QString saveFrame(const GlobeFrame& frame, GlobePicture& picture, const QString& file) {
    if (!file.endsWith(".svg", Qt::CaseInsensitive)) {
        const QImage image = picture.draw(frame);
        return image.isNull() ? QString("it could not be drawn") : savePicture(image, file);
    }
    const OverlayScene pictures = picturesOf(frame.overlays);
    QImage ground;
    if (frame.backdrop.earth || !pictures.entries().empty())
        ground = picture.draw({.camera = frame.camera,
                               .pixelRatio = frame.pixelRatio,
                               .backdrop = {.earth = frame.backdrop.earth, .color = QColor(0, 0, 0, 0)},
                               .map = {.land = frame.map.land},
                               .overlays = pictures,
                               .platforms = frame.platforms,
                               .screenTexts = frame.screenTexts});
    return savePicture([&](QIODevice& device) { return printPicture(frame, ground, device); }, file);
}

QString saveView(const GlobeView& view, const PictureLook& look, const QString& file) {
    using Background = PictureLook::Background;
    GlobePicture picture;
    if (!picture.error().isEmpty()) return picture.error();
    picture.setEarthImage(look.background == Background::Earth ? view.earthImage() : QImage());
    const Backdrop backdrop{
        .earth = look.background != Background::White && look.background != Background::None,
        .color = look.background == Background::White ? QColor(Qt::white) : QColor(0, 0, 0, 0)};
    const ViewFrame frame(view, look.size.isEmpty() ? view.size() : look.size, look.density, backdrop);
    return saveFrame(frame.frame, picture, file);
}

QString printView(const GlobeView& view, const QString& title, QPrinter& printer) {
    GlobePicture picture;
    if (!picture.error().isEmpty()) return picture.error();
    picture.setEarthImage(view.earthImage());
    QPainter painter;
    if (!painter.begin(&printer)) return QString("the printer cannot be used");
    const QRectF page(QPointF(), printer.pageLayout().paintRectPixels(printer.resolution()).size());
    QFont font("Liberation Sans");
    font.setPointSizeF(16.0);
    painter.setFont(font);
    const double titleHeight = title.isEmpty() ? 0.0 : painter.fontMetrics().height() * 1.4;
    painter.drawText(QRectF(page.left(), page.top(), page.width(), titleHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, title);
    font.setPointSizeF(9.0);
    painter.setFont(font);
    const double noteHeight = painter.fontMetrics().height() * 1.6;
    const QRectF area = page.adjusted(0.0, titleHeight, 0.0, -noteHeight);

    // As many texts and lines as on the screen, drawn as finely as 200 pixels an inch.
    const double scale = std::sqrt(view.width() * view.height() / (area.width() * area.height()));
    const QSize size = (area.size() * scale).toSize();
    const double ratio = std::clamp(area.width() * 200.0 / printer.resolution() / size.width(), 1.0, 4.0);
    const ViewFrame frame(view, size, ratio);
    const QImage image = picture.draw(frame.frame);
    if (image.isNull()) return QString("it could not be drawn");
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(area, image);

    const ScaleBar bar = scaleBar(frame.camera, ScaleBar::kMostPixels);
    const double inches = bar.pixels / size.width() * area.width() / printer.resolution();
    const halCore::Vec3& center = frame.camera.center();
    const QString note = QString("1 : %L1 in the middle, %2")
                             .arg(bar.meters / (inches * 0.0254), 0, 'f', 0)
                             .arg(positionText(center.lat(), center.lon()));
    const QRectF line(page.left(), area.bottom(), page.width(), noteHeight);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, note);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter,
                     QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm"));
    return painter.end() ? QString() : QString("the printer gave up");
}

}  // namespace sandbox
