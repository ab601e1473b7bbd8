#pragma once

#include <QImage>
#include <chrono>
#include <cstring>

#include "globe/PictureFile.h"
#include "globe/PictureSink.h"

namespace sandbox {

/// A picture as its rows make it.
class TakenPicture final : public PictureSink {
  public:
    bool begin(const QSize& size, int /*bits*/, Turn turn) override {
        image_ = QImage(size, QImage::Format_RGBA8888_Premultiplied);
        turn_ = turn;
        return true;
    }
    void take(const QImage& rows) override {
        for (int y = 0; y < rows.height(); ++y)
            std::memcpy(image_.scanLine(rows_++), rows.constScanLine(y),
                        static_cast<std::size_t>(rows.bytesPerLine()));
    }
    /// Upright; null when no rows, or not all, have come.
    QImage image() const { return rows_ == image_.height() ? upright(image_, turn_) : QImage(); }

  private:
    QImage image_;
    Turn turn_{};
    int rows_ = 0;
};

/// In one go, or as slowly as can be.
inline QImage taken(const PictureFile& file, bool slowly = false) {
    TakenPicture picture;
    Work work = readPicture(file, picture);
    for (bool done = false; !done;) {
        Slice slice = slowly ? Slice(0, std::chrono::milliseconds(0)) : Slice();
        done = work.goOn(slice);
    }
    return picture.image();
}

}  // namespace sandbox
