#include "sandbox/ShapeIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "format/ZelShapes.h"

namespace sandbox {

namespace ZEL = halCore::ZEL;

namespace {

constexpr int kSize = 16;

QColor colorOf(const ZEL::ZelShape& shape) {
    ZEL::Color color;
    if (const auto* lines = dynamic_cast<const ZEL::FillableShape*>(&shape))
        lines->getLineColor(color);
    else if (const auto* points = dynamic_cast<const ZEL::Points*>(&shape))
        points->getColor(color);
    else if (const auto* label = dynamic_cast<const ZEL::Annotation*>(&shape))
        label->getTextColor(color);
    return {color.red(), color.green(), color.blue()};
}

/// In a square of 16.
QPainterPath outlineOf(ZEL::ShapeType type) {
    QPainterPath path;
    const auto lines = [&path](std::initializer_list<QPointF> points, bool closed) {
        path.addPolygon(QPolygonF(QList<QPointF>(points)));
        if (closed) path.closeSubpath();
    };
    using enum ZEL::ShapeType;
    switch (type) {
        case Annotation:
            lines({{3, 4}, {3, 2.5}, {13, 2.5}, {13, 4}}, false);
            lines({{8, 2.5}, {8, 13.5}}, false);
            lines({{6, 13.5}, {10, 13.5}}, false);
            break;
        case Points:
            for (const QPointF at : {QPointF(4, 5), QPointF(11, 4), QPointF(8, 11)})
                path.addEllipse(at, 1.2, 1.2);
            break;
        case Line:
            lines({{2, 12}, {6, 5}, {10, 10}, {14, 3}}, false);
            break;
        case LineSegs:
            lines({{2, 12}, {5, 5}}, false);
            lines({{9, 12}, {14, 4}}, false);
            break;
        case Polygon:
            lines({{3, 12}, {2, 6}, {8, 2}, {14, 6}, {11, 13}}, true);
            break;
        case Arc:
            path.moveTo(8, 12);
            path.arcTo(QRectF(-2, 2, 20, 20), 45, 90);
            path.closeSubpath();
            break;
        case Circle:
            path.addEllipse(QPointF(8, 8), 5.5, 5.5);
            break;
        case Ellipse:
            path.addEllipse(QPointF(8, 8), 6.5, 3.8);
            break;
        case Ellipsoid:
            path.addEllipse(QPointF(8, 8), 6.5, 4.5);
            path.addEllipse(QPointF(8, 8), 6.5, 1.5);
            break;
        case Sphere:
            path.addEllipse(QPointF(8, 8), 5.8, 5.8);
            path.addEllipse(QPointF(8, 8), 5.8, 1.9);
            break;
        case Hemisphere:
            path.moveTo(2, 11);
            path.arcTo(QRectF(2, 4, 12, 14), 180, -180);
            path.addEllipse(QPointF(8, 11), 6, 1.7);
            break;
        case Cylinder:
            path.addEllipse(QPointF(8, 4), 5, 1.8);
            lines({{3, 4}, {3, 12}}, false);
            lines({{13, 4}, {13, 12}}, false);
            path.moveTo(3, 12);
            path.arcTo(QRectF(3, 10.2, 10, 3.6), 180, 180);
            break;
        case LatLonAltBox:
            lines({{2, 6}, {10, 6}, {10, 14}, {2, 14}}, true);
            lines({{2, 6}, {6, 2}, {14, 2}, {10, 6}}, false);
            lines({{14, 2}, {14, 10}, {10, 14}}, false);
            break;
        case Cone:
            lines({{3, 12}, {8, 2}, {13, 12}}, false);
            path.addEllipse(QPointF(8, 12), 5, 1.8);
            break;
        case ImageOverlay:
            path.addRect(2, 3, 12, 10);
            lines({{2, 12}, {6, 7}, {9, 10}, {11, 8}, {14, 11}}, false);
            break;
        case Orbit:
            path.addRoundedRect(QRectF(2, 5, 12, 6), 3, 3);
            break;
        case None:
            break;
    }
    return path;
}

}  // namespace

QIcon shapeIcon(const ZEL::ZelShape& shape) {
    constexpr int kDensity = 3;
    QPixmap picture(kSize * kDensity, kSize * kDensity);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(kDensity, kDensity);
    const QPainterPath path = outlineOf(shape.shapeType());
    // A pale colour on a pale list, a dark one on a dark list: both have a grey rim.
    painter.strokePath(path, QPen(QColor(110, 110, 110), 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.strokePath(path, QPen(colorOf(shape), 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    return picture;
}

QString shapeTitle(const ZEL::ZelShape& shape) {
    std::string name;
    if (shape.getName(name) == 0 && !name.empty()) return QString::fromStdString(name);
    const std::string_view keyword = ZEL::ZelShape::shapeTypeToString(shape.shapeType());
    QString title = QString::fromUtf8(keyword.data(), static_cast<qsizetype>(keyword.size()));
    if (!title.isEmpty()) title[0] = title[0].toUpper();
    return title;
}

}  // namespace sandbox
