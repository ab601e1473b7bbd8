#include "globe/DrawingRecord.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace sandbox {

namespace {

/// Of the parts that lie near the picture.
double lengthOf(const QPainterPath& path, const QTransform& transform, double most) {
    double length = 0.0;
    QPointF last;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPointF point = transform.map(QPointF(path.elementAt(i)));
        if (!path.elementAt(i).isMoveTo()) length += std::min((point - last).manhattanLength(), most);
        last = point;
    }
    return std::isfinite(length) ? length : most * path.elementCount();
}

}  // namespace

class DrawingRecord::Engine final : public QPaintEngine {
  public:
    explicit Engine(DrawingRecord& record) : QPaintEngine(AllFeatures), record_(record) {}

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState& state) override {
        look_ = {state.pen(),     state.brush(),       state.brushOrigin(),    state.transform(),
                 state.opacity(), state.renderHints(), state.compositionMode()};
        isKept_ = false;
    }
    void drawPath(const QPainterPath& path) override { add(path, {}, {}, {}); }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        if (mode != PolylineMode) path.closeSubpath();
        if (mode == WindingMode) path.setFillRule(Qt::WindingFill);
        if (mode != PolylineMode) return add(path, {}, {}, {});
        paintedWith(look_.pen, Qt::NoBrush, path);
    }
    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override {
        add({}, pixmap.toImage(), target, source);
    }
    void drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                   Qt::ImageConversionFlags) override {
        add({}, image, target, source);
    }
    void drawTextItem(const QPointF& at, const QTextItem& item) override {
        QPainterPath path;
        path.addText(at, item.font(), item.text());
        paintedWith(Qt::NoPen, look_.pen.brush(), path);
    }

  private:
    void paintedWith(const QPen& pen, const QBrush& brush, const QPainterPath& path) {
        const Look look = look_;
        look_.pen = pen;
        look_.brush = brush;
        isKept_ = false;
        add(path, {}, {}, {});
        look_ = look;
        isKept_ = false;
    }
    void add(const QPainterPath& path, const QImage& image, const QRectF& target, const QRectF& source) {
        if (!std::exchange(isKept_, true)) record_.looks_.push_back(look_);
        const QRectF all(QPointF(), record_.size_);
        const QTransform& transform = look_.transform;
        const double penWidth = look_.pen.style() == Qt::NoPen
                                    ? 0.0
                                    : look_.pen.widthF() * std::sqrt(std::abs(transform.determinant())) + 1.0;
        const QRectF area = transform.mapRect(image.isNull() ? path.controlPointRect() : target)
                                .adjusted(-penWidth, -penWidth, penWidth, penWidth) &
                            all;
        const double length = lengthOf(path, transform, 2.0 * (all.width() + all.height()));
        record_.strokes_.push_back({record_.looks_.size() - 1, path, image, target, source, area.size(),
                                    penWidth > 0.0 ? 3.0 * length : length});
    }

    DrawingRecord& record_;
    Look look_;
    bool isKept_ = false;
};

DrawingRecord::DrawingRecord(const QSize& size) : size_(size), engine_(std::make_unique<Engine>(*this)) {}

DrawingRecord::~DrawingRecord() = default;

QPaintEngine* DrawingRecord::paintEngine() const {
    return engine_.get();
}

int DrawingRecord::metric(PaintDeviceMetric metric) const {
    constexpr int kDotsPerInch = 96;
    constexpr int kDotsPerMeter = 3780;
    switch (metric) {
        case PdmWidth:
            return size_.width();
        case PdmHeight:
            return size_.height();
        case PdmWidthMM:
            return size_.width() * 1000 / kDotsPerMeter;
        case PdmHeightMM:
            return size_.height() * 1000 / kDotsPerMeter;
        case PdmNumColors:
            return 0;
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return kDotsPerInch;
    }
}

double DrawingRecord::cost(const Stroke& stroke, double scale) {
    // Qt's rasterizer looks in each row for the place of each piece among those that it has.
    constexpr double kOfAPiece = 0.015;
    constexpr double kOfAPixel = 1e-3;
    const double width = stroke.extent.width() * scale;
    const double height = stroke.extent.height() * scale;
    if (width <= 0.0 || height <= 0.0) return 1.0;
    const double inARow = stroke.length * scale / std::max(height, 1.0);
    return 1.0 + kOfAPixel * width * height + kOfAPiece * height * inARow * (1.0 + std::min(inARow, width));
}

double DrawingRecord::hardestStroke(double scale) const {
    double most = 0.0;
    for (const Stroke& stroke : strokes_) most = std::max(most, cost(stroke, scale));
    return most;
}

Work DrawingRecord::paint(QImage& image, double scale) const {
    for (const Stroke& stroke : strokes_) {
        {
            const Look& look = looks_[stroke.look];
            QPainter painter(&image);
            painter.setRenderHints(look.hints);
            painter.setTransform(look.transform * QTransform::fromScale(scale, scale));
            painter.setPen(look.pen);
            painter.setBrush(look.brush);
            painter.setBrushOrigin(look.brushOrigin);
            painter.setOpacity(look.opacity);
            painter.setCompositionMode(look.mode);
            if (stroke.image.isNull())
                painter.drawPath(stroke.path);
            else
                painter.drawImage(stroke.target, stroke.image, stroke.source);
        }
        co_yield static_cast<std::size_t>(cost(stroke, scale));
    }
}

}  // namespace sandbox
