#include "globe/PictureFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QtEndian>
#include <filesystem>
#include <string_view>

#include "globe/DrawingFile.h"

namespace sandbox {

namespace {

bool isTooLarge(const QImageReader& reader) {
    constexpr qint64 kMostPixels = 64'000'000;
    constexpr qint64 kMostBytes = qint64{256} << 20;
    if (reader.device()->size() > kMostBytes) return true;
    const QSize size = reader.size();
    const QImage::Format format = reader.imageFormat();
    const int bits = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    const qint64 pixels = qint64{size.width()} * size.height();
    return pixels > kMostPixels || (pixels * bits / 8) >> 20 > QImageReader::allocationLimit();
}

/// Whether the last chunk is missing. Each says its length.
bool isCutPng(QFile& file) {
    for (qint64 at = 8;;) {
        file.seek(at);
        const QByteArray head = file.read(8);
        if (head.size() < 8) return true;
        at += 12 + qint64{qFromBigEndian<quint32>(head.constData())};
        if (at > file.size()) return true;
        if (head.endsWith("IEND")) return false;
    }
}

/// Whether no mark of the end stands behind the last scan. Some cameras write more behind that mark.
bool isCutJpeg(QFile& file) {
    const QByteArray bytes = file.readAll();
    for (qsizetype at = 2; at + 3 < bytes.size();) {
        // Between segments there may be any number of 0xff; within a scan 0xff00 and 0xffd0 to 0xffd7 are
        // data.
        const auto mark = static_cast<unsigned char>(bytes[at + 1]);
        if (bytes[at] != '\xff' || mark == 0x00 || mark == 0xff || (mark >= 0xd0 && mark <= 0xd7))
            ++at;
        else if (mark == 0xd9)
            return false;
        else
            at += 2 + qFromBigEndian<quint16>(bytes.constData() + at + 2);
    }
    return !bytes.endsWith("\xff\xd9");
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

std::string whyNotShown(const PictureFile& file) {
    const QString path = QString::fromStdString(file.path);
    QImageReader reader(path);
    if (file.modified == PictureFile::kMissing || !reader.canRead()) return "cannot be read";
    const QByteArray format = reader.format();
    if (format.startsWith("svg")) return DrawingFile(path).fault();
    if (isTooLarge(reader)) return "is too large to be shown";
    QFile bytes(path);
    const bool isCut = bytes.open(QIODevice::ReadOnly) &&
                       ((format == "png" && isCutPng(bytes)) || (format == "jpeg" && isCutJpeg(bytes)));
    return isCut ? "is cut off" : "";
}

QImage readPicture(const PictureFile& file) {
    const QString path = QString::fromStdString(file.path);
    QImageReader reader(path);
    if (file.modified == PictureFile::kMissing || !reader.canRead()) return {};
    if (reader.format().startsWith("svg")) return DrawingFile(path).image();
    if (isTooLarge(reader)) return {};
    reader.setAutoTransform(true);
    return reader.read();
}

}  // namespace sandbox
