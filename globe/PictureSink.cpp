#include "globe/PictureSink.h"

#include <QTransform>

namespace sandbox {

QImage upright(const QImage& image, PictureSink::Turn turn) {
    const QImage mirrored = image.mirrored(turn & QImageIOHandler::TransformationMirror,
                                           turn & QImageIOHandler::TransformationFlip);
    if (!(turn & QImageIOHandler::TransformationRotate90)) return mirrored;
    return mirrored.transformed(QTransform().rotate(90));
}

}  // namespace sandbox
