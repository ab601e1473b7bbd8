#include "sandbox/PictureOutput.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>

#include "common/SaveFile.h"

namespace sandbox {

QString savePicture(const QImage& picture, const QString& file) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, QFileInfo(file).suffix().toLatin1());
    return writer.write(picture) ? savePicture(bytes, file) : writer.errorString();
}

QString savePicture(const QByteArray& picture, const QString& file) {
    return QString::fromStdString(UTILS::saveFile(
        file.toLocal8Bit().toStdString(), {picture.constData(), static_cast<std::size_t>(picture.size())}));
}

}  // namespace sandbox
