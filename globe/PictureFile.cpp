#include "globe/PictureFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QtEndian>
#include <algorithm>
#include <filesystem>
#include <string_view>
#include <utility>

#include "globe/DrawingFile.h"
#include "globe/JpegPicture.h"
#include "globe/PictureSink.h"
#include "globe/PngPicture.h"

namespace sandbox {

namespace {

constexpr const char* kUnreadable = "cannot be read";
constexpr const char* kTooLarge = "is too large to be shown";
constexpr qint64 kMostBytes = qint64{256} << 20;
constexpr std::size_t kUnitsOfAFile = 50;
constexpr std::size_t kUnitsOfALook = 1000;

/// Lets nothing through that is too large, and all of its rows.
class LimitedSink final : public PictureSink {
  public:
    /// Without one, no rows are wanted.
    explicit LimitedSink(PictureSink* sink) : sink_(sink) {}

    bool begin(const QSize& size, int bits, Turn turn) override {
        constexpr qint64 kMostPixels = 64'000'000;
        const qint64 pixels = qint64{size.width()} * size.height();
        size_ = size;
        isTooLarge_ = pixels > kMostPixels || (pixels * bits / 8) >> 20 > QImageReader::allocationLimit();
        return !isTooLarge_ && sink_ && sink_->begin(size, bits, turn);
    }
    void take(const QImage& rows) override {
        rows_ += rows.height();
        sink_->take(rows);
    }

    void refuse() { isTooLarge_ = true; }
    bool isTooLarge() const { return isTooLarge_; }
    bool isReadable() const { return !size_.isEmpty(); }
    /// So many of what is missing behind what has come, if that was anything.
    QImage missingRows() const {
        if (rows_ == 0 || rows_ == size_.height()) return {};
        QImage rows(size_.width(), std::min(rowsAtATime(size_), size_.height() - rows_),
                    QImage::Format_RGBA8888_Premultiplied);
        rows.fill(Qt::transparent);
        return rows;
    }

  private:
    PictureSink* sink_;
    QSize size_;
    int rows_ = 0;
    bool isTooLarge_ = false;
};

enum class Kind { Unknown, Png, Jpeg, Drawing, Other };

Kind kindOf(const PictureFile& file) {
    if (file.modified == PictureFile::kMissing) return Kind::Unknown;
    QFile bytes(QString::fromStdString(file.path));
    if (!bytes.open(QIODevice::ReadOnly)) return Kind::Unknown;
    const QByteArray start = bytes.peek(8);
    if (start == "\x89PNG\r\n\x1a\n") return Kind::Png;
    if (start.startsWith("\xff\xd8")) return Kind::Jpeg;
    QImageReader reader(bytes.fileName());
    if (!reader.canRead()) return Kind::Unknown;
    return reader.format().startsWith("svg") ? Kind::Drawing : Kind::Other;
}

Work giveRows(QImage image, PictureSink& sink) {
    const int some = rowsAtATime(image.size());
    for (int y = 0; y < image.height(); y += some) {
        const QImage rows = image.copy(0, y, image.width(), std::min(some, image.height() - y))
                                .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        sink.take(rows);
        co_yield unitsOf(rows);
    }
}

/// So large that it takes less than 60 ms to read, which is done in one go.
bool isQuick(QFile& file, QImageReader& reader) {
    constexpr qint64 kMostPixels = 4'000'000;
    constexpr qint64 kMostPlainPixels = 4 * kMostPixels;
    constexpr qint64 kMostCodedBytes = qint64{8} << 20;
    constexpr qint64 kMostBytesOfText = qint64{2} << 20;
    const QByteArray start = file.peek(32);
    const QByteArray format = reader.format();
    const bool isPlain = (format == "bmp" && start.size() == 32 && (start[30] == 0 || start[30] == 3)) ||
                         (start.size() > 1 && start[0] == 'P' && start[1] >= '4' && start[1] <= '6');
    const qint64 bytes = format == "xpm" ? kMostBytesOfText : isPlain ? kMostBytes : kMostCodedBytes;
    if (file.size() > bytes) return false;
    const QSize size = reader.size();
    return qint64{size.width()} * size.height() <= (isPlain ? kMostPlainPixels : kMostPixels);
}

/// Whatever Qt knows, in one go.
Work readOther(QFile& file, LimitedSink& sink) {
    QImageReader reader(&file);
    if (!isQuick(file, reader)) {
        sink.refuse();
        co_return;
    }
    QSize size = reader.size();
    QImage image;
    if (!size.isValid()) size = (image = reader.read()).size();
    const QImage::Format format = reader.imageFormat();
    const int bits = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    if (size.isEmpty() || !sink.begin(size, bits, reader.transformation())) co_return;
    if (image.isNull()) image = reader.read();
    if (image.isNull()) co_return;
    if (image.size() != size) image = image.copy(QRect(QPoint(), size));
    co_await giveRows(std::move(image), sink);
}

Work readKind(Kind kind, QFile& file, LimitedSink& sink) {
    if (kind == Kind::Png) {
        co_await readPng(file, sink);
    } else if (kind == Kind::Jpeg) {
        co_await readJpeg(file, sink);
    } else if (kind == Kind::Other) {
        co_await readOther(file, sink);
    } else if (kind == Kind::Drawing) {
        DrawingFile drawing(file.fileName());
        co_yield kUnitsOfALook;
        QImage image;
        co_await drawing.draw(image);
        if (!image.isNull() && sink.begin(image.size(), 32, {})) co_await giveRows(std::move(image), sink);
    }
}

/// Whether the last chunk is missing. Each says its length.
Work lookForEndOfPng(QFile& file, bool& isCut) {
    constexpr std::size_t kUnitsOfAChunk = 2;
    isCut = true;
    file.seek(8);
    for (;;) {
        const QByteArray head = file.peek(8);
        if (head.size() < 8) co_return;
        const qint64 end = file.pos() + 12 + qint64{qFromBigEndian<quint32>(head.constData())};
        if (end > file.size()) co_return;
        if (head.endsWith("IEND")) break;
        file.seek(end);
        co_yield kUnitsOfAChunk;
    }
    isCut = false;
}

/// Whether no mark of the end stands behind the last scan. Some cameras write more behind that mark.
Work lookForEndOfJpeg(QFile& file, bool& isCut) {
    constexpr qint64 kAtATime = qint64{1} << 18;
    isCut = false;
    QByteArray bytes;
    for (qint64 at = 2; file.seek(at);) {
        bytes = file.read(kAtATime);
        if (bytes.size() < 4) break;
        qsizetype here = 0;
        while (here + 3 < bytes.size()) {
            // Between segments there may be any number of 0xff; within a scan 0xff00 and 0xffd0 to 0xffd7 are
            // data.
            const auto mark = static_cast<unsigned char>(bytes[here + 1]);
            if (bytes[here] != '\xff' || mark == 0x00 || mark == 0xff || (mark >= 0xd0 && mark <= 0xd7))
                ++here;
            else if (mark == 0xd9)
                co_return;
            else
                here += 2 + qFromBigEndian<quint16>(bytes.constData() + here + 2);
        }
        at += here;
        co_yield kUnitsOfALook;
    }
    isCut = !(file.seek(file.size() - 2) && file.read(2) == "\xff\xd9");
}

}  // namespace

PictureFile findPicture(const std::string& name, const std::string& directory) {
    std::string_view bare = name;
    if (bare.size() >= 2 && bare.front() == '"' && bare.back() == '"') bare = bare.substr(1, bare.size() - 2);
    PictureFile file{(std::filesystem::path(directory) / bare).string()};
    const QFileInfo info(QString::fromStdString(file.path));
    if (info.isFile()) file.modified = info.lastModified().toMSecsSinceEpoch();
    return file;
}

bool isUnchanged(const PictureFile& file) {
    return findPicture(file.path, {}) == file;
}

Work findFault(const PictureFile& file, std::string& fault) {
    const Kind kind = kindOf(file);
    QFile bytes(QString::fromStdString(file.path));
    fault = kUnreadable;
    if (kind == Kind::Unknown || !bytes.open(QIODevice::ReadOnly)) co_return;
    if (kind == Kind::Drawing) {
        fault = DrawingFile(bytes.fileName()).fault();
        co_return;
    }
    LimitedSink sink(nullptr);
    if (bytes.size() <= kMostBytes) co_await readKind(kind, bytes, sink);
    if (bytes.size() > kMostBytes || sink.isTooLarge()) {
        fault = kTooLarge;
        co_return;
    }
    bool isCut = false;
    if (kind == Kind::Png) co_await lookForEndOfPng(bytes, isCut);
    if (kind == Kind::Jpeg) co_await lookForEndOfJpeg(bytes, isCut);
    fault = isCut ? "is cut off" : sink.isReadable() ? "" : kUnreadable;
}

Work readPicture(const PictureFile& file, PictureSink& sink) {
    const Kind kind = kindOf(file);
    QFile bytes(QString::fromStdString(file.path));
    if (kind == Kind::Unknown || !bytes.open(QIODevice::ReadOnly) || bytes.size() > kMostBytes) co_return;
    co_yield kUnitsOfAFile;
    LimitedSink limited(&sink);
    co_await readKind(kind, bytes, limited);
    for (QImage rows = limited.missingRows(); !rows.isNull(); rows = limited.missingRows()) {
        limited.take(rows);
        co_yield unitsOf(rows);
    }
}

}  // namespace sandbox
