#pragma once

#include <QIODevice>
#include <QImage>
#include <QString>
#include <functional>

namespace sandbox {

/// Saves a picture in the format that the file's suffix names: the whole of it, or the old file stands.
/// \return empty, or why not
QString savePicture(const QImage& picture, const QString& file);
/// The same with one that has its format already and is written as it is drawn.
/// \param draw returns whether it could be drawn on the device; perhaps it is to do so again, on another one
QString savePicture(const std::function<bool(QIODevice& device)>& draw, const QString& file);

}  // namespace sandbox
