#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

namespace sandbox {

/// Saves a picture in the format that the file's suffix names: the whole of it, or the old file stands.
/// \return empty, or why not
QString savePicture(const QImage& picture, const QString& file);
/// The same for one that has its format already.
QString savePicture(const QByteArray& picture, const QString& file);

}  // namespace sandbox
