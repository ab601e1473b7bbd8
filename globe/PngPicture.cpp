#include "globe/PngPicture.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>
#include <csetjmp>
#include <cstring>
#include <utility>

#include <png.h>

#include "globe/PictureSink.h"

namespace sandbox {

namespace {

/// Takes the chunks that tell how the pixels are meant, and leaves the file where these begin. Empty when
/// they do not.
Work takeHead(QIODevice& file, QByteArray& head) {
    constexpr qsizetype kMostBytes = 4096;
    constexpr std::size_t kUnitsOfAChunk = 2;
    head = file.read(8);
    for (;;) {
        const QByteArray start = file.peek(8);
        const QByteArray name = start.sliced(std::min<qsizetype>(start.size(), 4));
        if (name == "IDAT") co_return;
        const qint64 size = start.size() < 8 ? 0 : 12 + qint64{qFromBigEndian<quint32>(start.constData())};
        const bool counts = name == "IHDR" || name == "PLTE" || name == "tRNS";
        const bool mayBeLeftOut = name.size() == 4 && (name[0] & 0x20) != 0;
        if (counts && head.size() + size <= kMostBytes) {
            head += file.read(size);
        } else if (counts || !mayBeLeftOut || !file.seek(file.pos() + size)) {
            head.clear();
            co_return;
        }
        co_yield kUnitsOfAChunk;
    }
}

/// libpng, whose errors leave it by a longjmp: no function that calls it holds what would have to be
/// destroyed.
class PngDecoder {
  public:
    PngDecoder(QIODevice& file, const QByteArray& head) : file_(file), head_(head) {}
    ~PngDecoder() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngDecoder(const PngDecoder&) = delete;
    PngDecoder& operator=(const PngDecoder&) = delete;

    /// Comes first. \return whether the picture can be read
    bool begin() {
        png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
        if (!png_ || setjmp(png_jmpbuf(png_))) return false;
        // Shows what some programs write, for a little memory.
        png_set_option(png_, PNG_MAXIMUM_INFLATE_WINDOW, PNG_OPTION_ON);
        info_ = png_create_info_struct(png_);
        png_set_read_fn(png_, this, read);
        png_read_info(png_, info_);
        setUp();
        passes_ = png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        return true;
    }
    /// Of one row and pass. \return false when it is damaged
    bool readRow(unsigned char* row) {
        if (setjmp(png_jmpbuf(png_))) return false;
        taken_ = 0;
        png_read_row(png_, row, nullptr);
        return true;
    }

    QSize size() const {
        return {static_cast<int>(png_get_image_width(png_, info_)),
                static_cast<int>(png_get_image_height(png_, info_))};
    }
    int bits() const { return bits_; }
    int passes() const { return passes_; }
    /// Of what readRow() gives.
    QImage::Format format() const { return format_; }
    /// For a format with colours that have numbers.
    QList<QRgb> colors() const {
        png_colorp colors = nullptr;
        png_bytep alphas = nullptr;
        int count = 0;
        int alphaCount = 0;
        png_get_PLTE(png_, info_, &colors, &count);
        if (png_get_tRNS(png_, info_, &alphas, &alphaCount, nullptr) == 0 || !alphas) alphaCount = 0;
        QList<QRgb> table;
        for (int i = 0; i < count; ++i)
            table.append(
                qRgba(colors[i].red, colors[i].green, colors[i].blue, i < alphaCount ? alphas[i] : 255));
        // What has no colour has that of the first, but with two numbers it is white, as QImageReader has it.
        if (bits_ == 1 && count == 1) table.append(qRgb(255, 255, 255));
        return table;
    }

  private:
    [[noreturn]] static void fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }
    static void ignore(png_structp, png_const_charp) {}
    static void read(png_structp png, png_bytep bytes, std::size_t count) {
        PngDecoder& self = *static_cast<PngDecoder*>(png_get_io_ptr(png));
        if (!self.readBytes(bytes, count)) png_error(png, "");
    }

    bool readBytes(png_bytep bytes, std::size_t count) {
        // Empty chunks, or those that hold no row, there may be for ever.
        constexpr std::size_t kMostOfARow = std::size_t{16} << 20;
        taken_ += count;
        if (taken_ > kMostOfARow) return false;
        const std::size_t first = std::min(count, static_cast<std::size_t>(head_.size() - done_));
        std::memcpy(bytes, head_.constData() + done_, first);
        done_ += static_cast<qsizetype>(first);
        const auto rest = static_cast<qint64>(count - first);
        return rest == 0 || file_.read(reinterpret_cast<char*>(bytes) + first, rest) == rest;
    }

    /// Rows come in the formats in which QImageReader has them, or in one that is converted to the same.
    void setUp() {
        const int depth = png_get_bit_depth(png_, info_);
        const bool deep = depth == 16;
        const bool someAreClear = png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
        const int type = png_get_color_type(png_, info_);
        if (type == PNG_COLOR_TYPE_PALETTE) {
            png_set_packing(png_);
            format_ = QImage::Format_Indexed8;
            bits_ = depth == 1 ? 1 : 8;
        } else if (type == PNG_COLOR_TYPE_GRAY && !someAreClear) {
            png_set_expand_gray_1_2_4_to_8(png_);
            format_ = deep ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8;
            bits_ = depth == 1 || deep ? depth : 8;
        } else {
            png_set_expand(png_);
            png_set_gray_to_rgb(png_);
            const bool opaque = type == PNG_COLOR_TYPE_RGB && !someAreClear;
            if (opaque) png_set_filler(png_, 0xffff, PNG_FILLER_AFTER);
            format_ = deep     ? (opaque ? QImage::Format_RGBX64 : QImage::Format_RGBA64)
                      : opaque ? QImage::Format_RGBX8888
                               : QImage::Format_RGBA8888;
            bits_ = deep ? 64 : type == PNG_COLOR_TYPE_GRAY ? 8 : 32;
        }
        if (deep && Q_BYTE_ORDER == Q_LITTLE_ENDIAN) png_set_swap(png_);
    }

    QIODevice& file_;
    const QByteArray& head_;
    qsizetype done_ = 0;
    std::size_t taken_ = 0;  ///< since the last row
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    QImage::Format format_ = QImage::Format_Invalid;
    int bits_ = 0;
    int passes_ = 1;
};

}  // namespace

Work readPng(QIODevice& file, PictureSink& sink) {
    QByteArray head;
    co_await takeHead(file, head);
    PngDecoder png(file, head);
    if (head.isEmpty() || !png.begin() || !sink.begin(png.size(), png.bits(), {})) co_return;
    const QSize size = png.size();
    const QList<QRgb> colors = png.format() == QImage::Format_Indexed8 ? png.colors() : QList<QRgb>();
    const auto rowsFor = [&](int height) {
        QImage rows(size.width(), height, png.format());
        rows.fill(0);
        rows.setColorTable(colors);
        return rows;
    };
    const auto give = [&](QImage& rows) {
        if (!colors.isEmpty())
            for (int y = 0; y < rows.height(); ++y) {
                unsigned char* const row = rows.scanLine(y);
                for (int x = 0; x < rows.width(); ++x)
                    if (row[x] >= colors.size()) row[x] = 0;
            }
        sink.take(rows.convertToFormat(QImage::Format_RGBA8888_Premultiplied));
    };
    const int some = rowsAtATime(size);
    bool whole = true;
    if (png.passes() == 1) {
        for (int y = 0; y < size.height() && whole; y += some) {
            QImage rows = rowsFor(std::min(some, size.height() - y));
            int done = 0;
            while (done < rows.height() && png.readRow(rows.scanLine(done))) ++done;
            whole = done == rows.height();
            if (!whole) rows = rows.copy(0, 0, rows.width(), done);
            if (done > 0) give(rows);
            co_yield unitsOf(rows);
        }
        co_return;
    }
    QImage all = rowsFor(size.height());
    if (all.isNull()) co_return;
    for (int pass = 0; pass < png.passes() && whole; ++pass)
        for (int y = 0; y < size.height() && whole; ++y) {
            whole = png.readRow(all.scanLine(y));
            co_yield 1 + static_cast<std::size_t>(size.width()) / 100;
        }
    for (int y = 0; y < size.height(); y += some) {
        QImage rows = all.copy(0, y, size.width(), std::min(some, size.height() - y));
        give(rows);
        co_yield unitsOf(rows);
    }
}

}  // namespace sandbox
