#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <string>

#include "common/Work.h"

namespace sandbox {

/// A drawing (SVG, packed or not), which is text that can do more than show itself: it may take in any other
/// file, a pipe or itself, and make much of little. So it is unpacked and looked through before Qt gets it.
class DrawingFile {
  public:
    /// Reads a mebibyte at most, packed or unpacked.
    explicit DrawingFile(const QString& path);
    /// Empty, or what is to be said behind its name; then there is no image.
    const std::string& fault() const { return fault_; }
    /// Draws it at its own size, or smaller where that would take more than a second or so, or more than a
    /// moment for one of its shapes. `image` is to outlive the work, and this is, too.
    Work draw(QImage& image);

  private:
    void lookThrough();

    QByteArray text_;
    std::string fault_;
    double shapes_ = 0.0;
};

}  // namespace sandbox
