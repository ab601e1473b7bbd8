#include "globe/SvgDevice.h"

#include <QBuffer>
#include <QPaintEngine>
#include <QPainterPath>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "common/NumberText.h"

namespace sandbox {
namespace {

constexpr int kPixelsPerInch = 96;
constexpr double kMillimetersPerInch = 25.4;

/// Text of XML, where some characters stand for something else and others must not be at all.
std::string escaped(const QString& text) {
    QString result;
    for (const QChar c : text) {
        const char16_t code = c.unicode();
        if (code == '<')
            result += QLatin1String("&lt;");
        else if (code == '>')
            result += QLatin1String("&gt;");
        else if (code == '&')
            result += QLatin1String("&amp;");
        else if (code == '"')
            result += QLatin1String("&quot;");
        else if ((code < 0x20 && code != '\t' && code != '\n') || code == 0xfffe || code == 0xffff)
            result += QChar(QChar::ReplacementCharacter);
        else
            result += c;
    }
    return result.toStdString();
}

}  // namespace

/// Groups what comes one after the other with the same pen, brush and transformation.
class SvgDevice::Engine final : public QPaintEngine {
  public:
    Engine(QIODevice& output, QSize size, const QString& title)
        : QPaintEngine(kFeatures), output_(output), size_(size), title_(title) {}

    bool begin(QPaintDevice*) override {
        isWhole_ = true;
        add("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n<svg width=\"");
        addMillimeters(size_.width());
        add("\" height=\"");
        addMillimeters(size_.height());
        add("\"\n viewBox=\"0 0 ");
        add(size_.width(), ' ');
        add(size_.height(), '"');
        add("\n xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
            "version=\"1.2\""
            " baseProfile=\"tiny\">\n<title>");
        add(escaped(title_));
        add("</title>\n");
        return true;
    }
    bool end() override {
        endGroup();
        add("</svg>\n");
        flush();
        return isWhole_;
    }
    Type type() const override { return QPaintEngine::SVG; }

    void updateState(const QPaintEngineState& state) override {
        const auto flags = state.state();
        if (flags.testFlag(DirtyPen)) take(pen_, state.pen());
        if (flags.testFlag(DirtyBrush)) take(brush_, state.brush());
        if (flags.testFlag(DirtyTransform)) take(transform_, state.transform());
        if (flags.testFlag(DirtyHints))
            isSmooth_ = state.renderHints().testFlag(QPainter::SmoothPixmapTransform);
    }

    void drawPath(const QPainterPath& path) override {
        beginGroup();
        add("<path");
        if (brush_.style() != Qt::NoBrush && path.fillRule() == Qt::OddEvenFill)
            add(" fill-rule=\"evenodd\"");
        add(" d=\"");
        // Points of a curve come as three in a row.
        char before = 0;
        for (int i = 0; i < path.elementCount(); ++i) {
            const QPainterPath::Element at = path.elementAt(i);
            if (at.isMoveTo())
                before = 'M';
            else if (at.isLineTo())
                before = 'L';
            else
                before = at.type == QPainterPath::CurveToElement ? 'C' : ' ';
            if (i > 0) add(" ");
            if (before != ' ') add(std::string_view(&before, 1));
            add(at.x, ',');
            add(at.y);
        }
        add("\"/>\n");
    }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        if (mode != PolylineMode) path.closeSubpath();
        path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
        if (mode != PolylineMode) return drawPath(path);
        const QBrush brush = std::exchange(brush_, Qt::NoBrush);
        endGroup();
        drawPath(path);
        endGroup();
        brush_ = brush;
    }
    void drawEllipse(const QRectF& box) override {
        beginGroup();
        add("<ellipse cx=\"");
        add(box.center().x(), '"');
        add(" cy=\"");
        add(box.center().y(), '"');
        add(" rx=\"");
        add(box.width() / 2.0, '"');
        add(" ry=\"");
        add(box.height() / 2.0, '"');
        add("/>\n");
    }
    void drawTextItem(const QPointF& place, const QTextItem& item) override {
        if (pen_.style() == Qt::NoPen) return;
        beginGroup();
        const QFont font = item.font();
        add("<text");
        addColor("fill", pen_.color(), true);
        add(" stroke=\"none\" xml:space=\"preserve\" x=\"");
        add(place.x(), '"');
        add(" y=\"");
        add(place.y(), '"');
        add(" font-family=\"");
        add(escaped(font.family()));
        add("\" font-size=\"");
        add(font.pixelSize() >= 0 ? font.pixelSize() : font.pointSizeF() * kPixelsPerInch / 72.0, '"');
        add(" font-weight=\"");
        add(static_cast<int>(font.weight()), '"');
        add(font.italic() ? " font-style=\"italic\">" : ">");
        add(escaped(item.text()));
        add("</text>\n");
    }
    void drawPixmap(const QRectF& box, const QPixmap& picture, const QRectF& part) override {
        drawImage(box, picture.toImage(), part, Qt::AutoColor);
    }
    void drawImage(const QRectF& box, const QImage& picture, const QRectF& part,
                   Qt::ImageConversionFlags) override {
        beginGroup();
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        const bool isAll = part == QRectF(picture.rect());
        isWhole_ = (isAll ? picture : picture.copy(part.toAlignedRect())).save(&buffer, "PNG") && isWhole_;
        add("<image x=\"");
        add(box.x(), '"');
        add(" y=\"");
        add(box.y(), '"');
        add(" width=\"");
        add(box.width(), '"');
        add(" height=\"");
        add(box.height(), '"');
        add(" preserveAspectRatio=\"none\" image-rendering=\"");
        add(isSmooth_ ? "optimizeQuality" : "optimizeSpeed");
        add("\" xlink:href=\"data:image/png;base64,");
        const QByteArray code = bytes.toBase64();
        add({code.constData(), static_cast<std::size_t>(code.size())});
        add("\"/>\n");
    }

  private:
    static constexpr PaintEngineFeatures kFeatures{
        AllFeatures & ~unsigned{PatternBrush | PerspectiveTransform | ConicalGradientFill | PorterDuff}};
    static constexpr std::size_t kBlock = std::size_t(1) << 16U;

    template <typename Value>
    void take(Value& known, const Value& value) {
        if (known == value) return;
        endGroup();
        known = value;
    }
    void beginGroup() {
        if (std::exchange(isOpen_, true)) return;
        add("<g");
        if (brush_.style() == Qt::NoBrush)
            add(" fill=\"none\"");
        else
            addColor("fill", brush_.color());
        addPen();
        if (!transform_.isIdentity()) {
            const std::array matrix = {transform_.m11(), transform_.m12(), transform_.m21(),
                                       transform_.m22(), transform_.dx(),  transform_.dy()};
            add(" transform=\"matrix(");
            for (std::size_t i = 0; i < matrix.size(); ++i) {
                if (i > 0) add(",");
                add(matrix[i]);
            }
            add(")\"");
        }
        add(">\n");
    }
    void endGroup() {
        if (std::exchange(isOpen_, false)) add("</g>\n");
    }
    void addPen() {
        if (pen_.style() == Qt::NoPen) {
            add(" stroke=\"none\"");
            return;
        }
        const double width = pen_.widthF() > 0.0 ? pen_.widthF() : 1.0;
        addColor("stroke", pen_.color());
        add(" stroke-width=\"");
        add(width, '"');
        if (pen_.style() != Qt::SolidLine) {
            add(" stroke-dasharray=\"");
            const QList<qreal> dashes = pen_.dashPattern();
            for (qsizetype i = 0; i < dashes.size(); ++i) {
                if (i > 0) add(",");
                add(dashes[i] * width);
            }
            add("\"");
        }
        if (pen_.capStyle() != Qt::FlatCap)
            add(pen_.capStyle() == Qt::RoundCap ? " stroke-linecap=\"round\"" : " stroke-linecap=\"square\"");
        if (pen_.joinStyle() == Qt::RoundJoin)
            add(" stroke-linejoin=\"round\"");
        else if (pen_.joinStyle() == Qt::BevelJoin)
            add(" stroke-linejoin=\"bevel\"");
    }
    /// \param isWithin whether a group about it may have another one
    void addColor(std::string_view what, const QColor& color, bool isWithin = false) {
        add(" ");
        add(what);
        add("=\"");
        add(color.name().toStdString());
        add("\"");
        if (color.alpha() == 255 && !isWithin) return;
        add(" ");
        add(what);
        add("-opacity=\"");
        add(color.alphaF(), '"');
    }
    void addMillimeters(int pixels) {
        add(pixels * kMillimetersPerInch / kPixelsPerInch);
        add("mm");
    }
    void add(double number) {
        constexpr int digits = 6;
        std::array<char, UTILS::kMaxNumberLength> text;
        char* const end = UTILS::writeNumber(text.data(), number, digits);
        add({text.data(), static_cast<std::size_t>(end - text.data())});
    }
    void add(double number, char behind) {
        add(number);
        add(std::string_view(&behind, 1));
    }
    void add(std::string_view text) {
        block_.append(text);
        if (block_.size() >= kBlock) flush();
    }
    void flush() {
        const auto size = static_cast<qint64>(block_.size());
        isWhole_ = output_.write(block_.data(), size) == size && isWhole_;
        block_.clear();
    }

    QIODevice& output_;
    const QSize size_;
    const QString title_;
    /// On their way to the output.
    std::string block_;
    bool isWhole_ = true;
    QPen pen_;
    QBrush brush_;
    QTransform transform_;
    bool isSmooth_ = false;
    /// Whether a group is.
    bool isOpen_ = false;
};

SvgDevice::SvgDevice(QIODevice& output, QSize size, const QString& title)
    : size_(size), engine_(std::make_unique<Engine>(output, size, title)) {}

SvgDevice::~SvgDevice() = default;

QPaintEngine* SvgDevice::paintEngine() const {
    return engine_.get();
}

int SvgDevice::metric(PaintDeviceMetric metric) const {
    switch (metric) {
        case PdmWidth:
            return size_.width();
        case PdmHeight:
            return size_.height();
        case PdmWidthMM:
            return static_cast<int>(std::lround(size_.width() * kMillimetersPerInch / kPixelsPerInch));
        case PdmHeightMM:
            return static_cast<int>(std::lround(size_.height() * kMillimetersPerInch / kPixelsPerInch));
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return kPixelsPerInch;
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return QPaintDevice::metric(metric);
    }
}

}  // namespace sandbox
