#include "globe/PictureFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <filesystem>
#include <string_view>

namespace sandbox {

PictureFile findPicture(const std::string& name, const std::string& directory) {
    std::string_view bare = name;
    if (bare.size() >= 2 && bare.front() == '"' && bare.back() == '"') bare = bare.substr(1, bare.size() - 2);
    PictureFile file{(std::filesystem::path(directory) / bare).string()};
    const QFileInfo info(QString::fromStdString(file.path));
    if (info.isFile()) file.modified = info.lastModified().toMSecsSinceEpoch();
    return file;
}

bool isTooLarge(const PictureFile& file) {
    constexpr qint64 kMostPixels = 64'000'000;
    constexpr qint64 kMostDrawing = 1 << 20;
    constexpr qint64 kMostPackedDrawing = 100 << 10;
    QImageReader reader(QString::fromStdString(file.path));
    const QByteArray format = reader.format();
    const qint64 bytes = QFileInfo(QString::fromStdString(file.path)).size();
    // How long a drawing takes, nobody knows before.
    if (format == "svgz" || format == "svg") {
        QFile packed(QString::fromStdString(file.path));
        const bool isPacked = packed.open(QIODevice::ReadOnly) && packed.peek(2) == "\x1f\x8b";
        if (bytes > (isPacked ? kMostPackedDrawing : kMostDrawing)) return true;
    }
    const QSize size = reader.size();
    return qint64{size.width()} * size.height() > kMostPixels;
}

QImage readPicture(const PictureFile& file) {
    if (file.modified == 0 || isTooLarge(file)) return {};
    QImageReader reader(QString::fromStdString(file.path));
    reader.setAutoTransform(true);
    return reader.read();
}

bool canReadPicture(const PictureFile& file) {
    return file.modified != 0 && QImageReader(QString::fromStdString(file.path)).canRead();
}

}  // namespace sandbox
