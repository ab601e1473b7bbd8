#include "globe/PictureFile.h"

#include <QDateTime>
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

QImage readPicture(const PictureFile& file) {
    if (file.modified == 0) return {};
    QImageReader reader(QString::fromStdString(file.path));
    reader.setAutoTransform(true);
    return reader.read();
}

bool canReadPicture(const PictureFile& file) {
    return file.modified != 0 && QImageReader(QString::fromStdString(file.path)).canRead();
}

}  // namespace sandbox
