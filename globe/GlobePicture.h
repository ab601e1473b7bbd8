#pragma once

#include <QImage>
#include <QString>
#include <memory>

#include "globe/GlobePainter.h"

namespace sandbox {

/// Draws frames as pictures, without a window. Needs a QGuiApplication; the same frame gives the same
/// picture each time on the same renderer.
class GlobePicture {
  public:
    GlobePicture();
    ~GlobePicture();

    /// Empty when pictures can be drawn, otherwise why not.
    const QString& error() const { return error_; }

    void setEarthImage(const QImage& image);
    /// The whole frame in device pixels; null when the graphics memory does not hold it.
    QImage draw(const GlobeFrame& frame);

  private:
    struct Graphics;

    std::unique_ptr<Graphics> graphics_;
    std::unique_ptr<GlobePainter> painter_;
    QString error_;
};

}  // namespace sandbox
