#include "globe/DrawingFile.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <algorithm>
#include <cmath>

#include <zlib.h>

#include "globe/DrawingRecord.h"

namespace sandbox {

namespace {

constexpr unsigned kMostBytes = 1U << 20;
constexpr double kMostShapes = 50'000;
/// Of one shape: numbers, mostly.
constexpr qsizetype kMostLetters = qsizetype{1} << 18;
/// Each is laid out.
constexpr double kMostTexts = 1000;
/// Of the pictures that stand in a drawing.
constexpr double kMostPixels = 16.0e6;
/// How often the shapes of a drawing may fill a pixel, all together.
constexpr double kMostFilled = 1.0e9;
constexpr int kMostPixelsEachWay = 2048;
/// Each way, as small as a drawing gets.
constexpr int kFewPixels = 64;

constexpr const char* kUnreadable = "cannot be read";
constexpr const char* kTooLarge = "is too large to be shown";
constexpr const char* kNotAlone = "takes in other files, and is not shown";

/// Behind the prefix: Qt asks after no namespace.
QStringView bare(QStringView name) {
    return name.sliced(name.lastIndexOf(u':') + 1);
}

/// A picture that stands in the drawing itself, where Qt finds it: its pixels, or -1 for a file, and for a
/// drawing, which might take in files again.
double pixelsWithin(QStringView reference) {
    const QString text = reference.trimmed().toString();
    const qsizetype mark = text.lastIndexOf(QLatin1String("base64,"));
    if (!text.startsWith(QLatin1String("data:")) || mark < 0) return -1.0;
    QByteArray bytes = QByteArray::fromBase64(text.sliced(mark + 7).toLatin1());
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    if (!reader.canRead() || reader.format().startsWith("svg")) return -1.0;
    const QSize size = reader.size();
    return static_cast<double>(size.width()) * size.height();
}

}  // namespace

DrawingFile::DrawingFile(const QString& path) {
    // Reads what is not packed as it is.
    const gzFile file = gzopen(QFile::encodeName(path).constData(), "rb");
    if (!file) {
        fault_ = kUnreadable;
        return;
    }
    text_.resize(kMostBytes + 1);
    const int size = gzread(file, text_.data(), kMostBytes + 1);
    gzclose(file);
    text_.resize(std::max(size, 0));
    if (text_.size() > qsizetype{kMostBytes})
        fault_ = kTooLarge;
    else
        lookThrough();
}

void DrawingFile::lookThrough() {
    QXmlStreamReader xml(text_);
    xml.setNamespaceProcessing(false);
    double elements = 0.0;
    double uses = 0.0;
    double texts = 0.0;
    double pixels = 0.0;
    while (!xml.atEnd() && fault_.empty()) {
        xml.readNext();
        if (xml.isProcessingInstruction() &&
            xml.processingInstructionTarget() == QLatin1String("xml-stylesheet"))
            fault_ = kNotAlone;
        if (!xml.isStartElement()) continue;
        ++elements;
        const QStringView name = bare(xml.name());
        if (name == QLatin1String("use")) ++uses;
        if (name.startsWith(QLatin1String("text")) || name == QLatin1String("tspan")) ++texts;
        for (const QXmlStreamAttribute& attribute : xml.attributes())
            if (name != QLatin1String("image") && attribute.value().size() > kMostLetters) fault_ = kTooLarge;
        if (name != QLatin1String("image")) continue;
        for (const QXmlStreamAttribute& attribute : xml.attributes()) {
            if (bare(attribute.qualifiedName()) != QLatin1String("href")) continue;
            const double within = pixelsWithin(attribute.value());
            if (within < 0.0) fault_ = kNotAlone;
            pixels += within;
        }
    }
    shapes_ = elements * (1.0 + uses);
    if (fault_.empty() &&
        (pixels > kMostPixels || shapes_ > kMostShapes || texts * (1.0 + uses) > kMostTexts))
        fault_ = kTooLarge;
    if (fault_.empty() && xml.hasError()) fault_ = kUnreadable;
}

Work DrawingFile::draw(QImage& image) {
    constexpr std::size_t kMoment = 30'000;
    if (!fault_.empty()) co_return;
    QSvgRenderer drawing(text_);
    co_yield kMoment;
    const QSizeF size = drawing.defaultSize();
    if (!drawing.isValid() || size.isEmpty()) co_return;
    const double filled = size.width() * size.height() * shapes_;
    double scale = std::min(
        {1.0, kMostPixelsEachWay / std::max(size.width(), size.height()), std::sqrt(kMostFilled / filled)});
    const QSize shown = (size * scale).toSize().expandedTo(QSize(1, 1));
    DrawingRecord record(shown);
    {
        QPainter painter(&record);
        drawing.render(&painter, QRectF(QPointF(), shown));
    }
    co_yield kMoment;
    scale = 1.0;
    while (scale * std::max(shown.width(), shown.height()) > kFewPixels &&
           record.hardestStroke(scale) > kMoment)
        scale *= 0.75;
    image = QImage((shown * scale).expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    co_await record.paint(image, scale);
}

}  // namespace sandbox
