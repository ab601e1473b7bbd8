#include "globe/PictureTextures.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLPixelTransferOptions>
#include <QOpenGLTexture>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <vector>

#include "common/Slice.h"
#include "globe/PictureSink.h"
#include "globe/RowReducer.h"
#include "globe/SoftwareRenderer.h"

namespace sandbox {

namespace {

/// Where rows are, which begin with such a one, in a picture of a size that is turned.
QPoint placeOf(const QImage& rows, int first, const QSize& size, PictureSink::Turn turn) {
    const bool upsideDown = turn & QImageIOHandler::TransformationFlip;
    const int top = upsideDown ? size.height() - first - rows.height() : first;
    if (!(turn & QImageIOHandler::TransformationRotate90)) return {0, top};
    return {size.height() - top - rows.height(), 0};
}

/// Of a texture for a picture of that size.
QSize largest(const QSize& size) {
    // The software renderer clears a texture in one go.
    constexpr double kMostPixels = 25.0e6;
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    QSizeF fitting = size;
    if (std::max(size.width(), size.height()) > most) fitting.scale(most, most, Qt::KeepAspectRatio);
    if (const double pixels = fitting.width() * fitting.height();
        isSoftwareRenderer() && pixels > kMostPixels)
        fitting *= std::sqrt(kMostPixels / pixels);
    return fitting.toSize().expandedTo(QSize(1, 1)).boundedTo(size);
}

}  // namespace

/// A texture, and the work that fills it.
class PictureTextures::Coming final : public PictureSink {
  public:
    explicit Coming(const PictureFile& file) : file_(file), reading_(readPicture(file_, *this)) {}

    /// Does a piece of the work. \return whether it is over
    bool step() {
        if (!reading_) return true;
        Slice once(0, std::chrono::milliseconds(0));
        if (!reading_->goOn(once)) return false;
        reading_.reset();
        steps_.clear();
        // Of two states of the file there may be something in it.
        if (!isUnchanged(file_)) texture_.reset();
        return true;
    }
    bool isUsed() const { return texture_.use_count() > 1; }
    const std::shared_ptr<QOpenGLTexture>& texture() const { return texture_; }

    bool begin(const QSize& size, int /*bits*/, Turn turn) override {
        QSize next = largest(size);
        if (next != size) shrink_.emplace(size, next);
        turn_ = turn;
        auto texture = std::make_shared<QOpenGLTexture>(QOpenGLTexture::Target2D);
        texture->setFormat(QOpenGLTexture::RGBA8_UNorm);
        const QSize upright = turn & QImageIOHandler::TransformationRotate90 ? next.transposed() : next;
        texture->setSize(upright.width(), upright.height());
        texture->setMipLevels(texture->maximumMipLevels());
        texture->setAutoMipMapGenerationEnabled(false);
        texture->setMinMagFilters(QOpenGLTexture::LinearMipMapLinear, QOpenGLTexture::Linear);
        texture->setWrapMode(QOpenGLTexture::ClampToEdge);
        texture->allocateStorage(QOpenGLTexture::RGBA, QOpenGLTexture::UInt8);
        if (!texture->isStorageAllocated()) return false;
        for (;;) {
            const QSize size = next;
            next = QSize(std::max(size.width() / 2, 1), std::max(size.height() / 2, 1));
            steps_.push_back({size, RowReducer(size, next)});
            if (size == next) break;
        }
        coming_ = std::move(texture);
        return true;
    }
    void take(const QImage& rows) override {
        QImage next = shrink_ ? shrink_->take(rows) : rows;
        for (std::size_t level = 0; level < steps_.size() && !next.isNull(); ++level) {
            Step& step = steps_[level];
            const QPoint place = placeOf(next, step.rows, step.size, turn_);
            const QImage shown = upright(next, turn_);
            step.rows += next.height();
            coming_->setData(place.x(), place.y(), 0, shown.width(), shown.height(), 1,
                             static_cast<int>(level), QOpenGLTexture::RGBA, QOpenGLTexture::UInt8,
                             shown.constBits());
            next = level + 1 < steps_.size() ? step.half.take(next) : QImage();
        }
        if (steps_.front().rows == steps_.front().size.height()) texture_ = std::move(coming_);
    }

  private:
    /// A step of the texture's pyramid.
    struct Step {
        QSize size;
        RowReducer half;
        int rows = 0;  ///< that it has
    };

    PictureFile file_;
    std::optional<Work> reading_;
    Turn turn_{};
    std::optional<RowReducer> shrink_;
    std::vector<Step> steps_;
    std::shared_ptr<QOpenGLTexture> coming_;
    std::shared_ptr<QOpenGLTexture> texture_;  ///< once it is whole
};

PictureTextures::PictureTextures() = default;
PictureTextures::~PictureTextures() = default;

Work PictureTextures::find(PictureFile file, std::shared_ptr<QOpenGLTexture>& found) {
    constexpr std::size_t kUnitsOfAStep = 1000;
    // A file that somebody is writing is waited for, but not for ever.
    constexpr int kTimes = 3;
    for (int i = 0; i < kTimes; ++i) {
        std::shared_ptr<Coming>& known = pictures_[file];
        if (!known) known = std::make_shared<Coming>(file);
        const std::shared_ptr<Coming> coming = known;
        while (!coming->step()) co_yield kUnitsOfAStep;
        found = coming->texture();
        if (found || isUnchanged(file)) break;
        pictures_.erase(file);
        file = findPicture(file.path, {});
    }
}

void PictureTextures::forgetUnused() {
    std::erase_if(pictures_,
                  [](const auto& entry) { return entry.second.use_count() == 1 && !entry.second->isUsed(); });
}

}  // namespace sandbox
