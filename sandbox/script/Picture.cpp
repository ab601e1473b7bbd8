#include "sandbox/script/Picture.h"

#include <QApplication>
#include <QGroupBox>
#include <QPainter>
#include <QPainterPath>

#include "globe/GlobeView.h"
#include "sandbox/Host.h"

namespace sandbox {

namespace {

constexpr int kTitleHeight = 26;
constexpr int kCorner = 6;

/// A window's contents below a title bar; a decoration that is drawn here, since there may be no window
/// manager.
QImage framed(QWidget& window) {
    const QImage contents = window.grab().toImage();
    const double ratio = contents.devicePixelRatio();
    const QSize size = window.size() + QSize(2, kTitleHeight + 2);
    QImage picture(size * ratio, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);

    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(0.5, 0.5, size.width() - 1, size.height() + kCorner), kCorner, kCorner);
    painter.setPen(QColor(60, 66, 74));
    painter.setBrush(QColor(78, 86, 96));
    painter.drawPath(outline);
    painter.setPen(Qt::white);
    QFont font = window.font();
    font.setBold(true);
    painter.setFont(font);
    const QRect bar(0, 0, size.width(), kTitleHeight);
    painter.drawText(bar, Qt::AlignCenter, window.windowTitle());
    const QPointF cross(size.width() - kTitleHeight / 2.0 - 2, kTitleHeight / 2.0 + 1);
    painter.setPen(QPen(Qt::white, 1.6));
    painter.drawLine(cross + QPointF(-4, -4), cross + QPointF(4, 4));
    painter.drawLine(cross + QPointF(-4, 4), cross + QPointF(4, -4));
    if (!window.windowIcon().isNull()) window.windowIcon().paint(&painter, 8, 5, 16, 16);
    painter.drawImage(1, kTitleHeight, contents);
    painter.setPen(QColor(60, 66, 74));
    painter.drawLine(0, size.height() - 1, size.width(), size.height() - 1);
    return picture;
}

QImage partOf(QWidget& dialog, const QString& group) {
    if (group.isEmpty()) return dialog.grab().toImage();
    for (QGroupBox* box : dialog.findChildren<QGroupBox*>())
        if (box->isVisible() && box->title() == group) return box->grab().toImage();
    return {};
}

}  // namespace

QImage takePicture(Host& host, const QString& what, const QString& group) {
    if (what == "view") return host.view().grabFrame();
    MainWindow& window = host.window();
    QList<QWidget*> dialogs;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget != &window && widget->isVisible() && widget->windowType() == Qt::Dialog) dialogs << widget;
    if (what != "window") {
        for (QWidget* dialog : dialogs)
            if (dialog->windowTitle() == what) return partOf(*dialog, group);
        return {};
    }
    QImage picture = window.grab().toImage();
    QPainter painter(&picture);
    // A grabbed window shows the view's last frame; this is the one that is due.
    painter.drawImage(host.view().mapTo(&window, QPoint()), host.view().grabFrame());
    for (QWidget* dialog : dialogs) {
        const QPoint place = dialog->pos() - window.pos();
        painter.setPen(Qt::NoPen);
        // A soft shadow sets the dialog off against the globe.
        for (int i = 6; i > 0; --i) {
            painter.setBrush(QColor(0, 0, 0, 14));
            painter.drawRoundedRect(QRect(place - QPoint(i, kTitleHeight + i - 3),
                                          dialog->size() + QSize(2 * i, kTitleHeight + 2 * i)),
                                    kCorner + i, kCorner + i);
        }
        painter.drawImage(place - QPoint(1, kTitleHeight), framed(*dialog));
    }
    return picture;
}

}  // namespace sandbox
