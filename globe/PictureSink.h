#pragma once

#include <QImage>
#include <QImageIOHandler>
#include <QSize>
#include <algorithm>

namespace sandbox {

/// Takes a picture while it is read, from its top down.
class PictureSink {
  public:
    using Turn = QImageIOHandler::Transformations;

    virtual ~PictureSink() = default;
    /// Comes first. `size`: of all the rows that will come; `bits`: what a pixel of the file takes when it is
    /// read; `turn`: what is to be done with the whole to have it upright. \return whether the rows are
    /// wanted
    virtual bool begin(const QSize& size, int bits, Turn turn) = 0;
    /// The next rows, as wide as the picture, RGBA8888_Premultiplied.
    virtual void take(const QImage& rows) = 0;
};

/// A picture as it is to be seen.
QImage upright(const QImage& image, PictureSink::Turn turn);

/// How many rows are read at a time: a millisecond or two of work.
inline int rowsAtATime(const QSize& size) {
    constexpr int kPixels = 1 << 15;
    return std::clamp(kPixels / std::max(size.width(), 1), 1, std::max(size.height(), 1));
}

/// Units of work (\see Slice) to read and show the rows.
inline std::size_t unitsOf(const QImage& rows) {
    constexpr qsizetype kBytesOfAUnit = 120;
    return static_cast<std::size_t>(1 + rows.sizeInBytes() / kBytesOfAUnit);
}

}  // namespace sandbox
