#include "globe/IconReading.h"

#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

#include "globe/PictureSink.h"
#include "globe/RowReducer.h"

namespace sandbox {

namespace {

/// Makes a picture as small as an icon while it comes.
class IconSink final : public PictureSink {
  public:
    explicit IconSink(double ratio) : ratio_(ratio) {}

    bool begin(const QSize& size, int /*bits*/, Turn turn) override {
        constexpr int kLargest = 64;
        QSizeF shown = size;
        if (std::max(shown.width(), shown.height()) > kLargest)
            shown.scale(kLargest, kLargest, Qt::KeepAspectRatio);
        size_ = (shown * ratio_).toSize().expandedTo(QSize(1, 1));
        turn_ = turn;
        const QSize taken = size_.boundedTo(size);
        if (taken != size) smaller_.emplace(size, taken);
        image_ = QImage(taken, QImage::Format_RGBA8888_Premultiplied);
        return !image_.isNull();
    }
    void take(const QImage& rows) override {
        const QImage more = smaller_ ? smaller_->take(rows) : rows;
        for (int y = 0; y < more.height(); ++y)
            std::memcpy(image_.scanLine(rows_++), more.constScanLine(y),
                        static_cast<std::size_t>(more.bytesPerLine()));
    }
    /// Null when not all has come.
    QImage image() const {
        if (rows_ < image_.height()) return {};
        const QImage image = upright(image_, turn_).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        const QSize size = turn_ & QImageIOHandler::TransformationRotate90 ? size_.transposed() : size_;
        return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }

  private:
    double ratio_;
    QSize size_;
    Turn turn_{};
    std::optional<RowReducer> smaller_;
    QImage image_;
    int rows_ = 0;
};

QImage unreadable(double ratio) {
    constexpr int kFrame = 20;
    QImage image(QSize(kFrame, kFrame) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter frame(&image);
    frame.setPen(QPen(Qt::red, std::round(2.0 * ratio)));
    frame.drawRect(image.rect().adjusted(2, 2, -3, -3));
    return image;
}

}  // namespace

Work readIcon(PictureFile file, double ratio, QImage& icon) {
    // A file that somebody is writing is waited for, but not for ever.
    constexpr int kTimes = 3;
    for (int i = 0; i < kTimes; ++i) {
        IconSink sink(ratio);
        co_await readPicture(file, sink);
        // Of two states of the file there may be something in it.
        const bool unchanged = isUnchanged(file);
        if (unchanged) {
            icon = sink.image();
            break;
        }
        file = findPicture(file.path, {});
    }
    if (icon.isNull()) icon = unreadable(ratio);
    icon.setDevicePixelRatio(ratio);
}

}  // namespace sandbox
