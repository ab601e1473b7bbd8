#include "globe/JpegPicture.h"

#include <QBuffer>
#include <QByteArray>
#include <QIODevice>
#include <QImageReader>
#include <algorithm>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <vector>

#include <jpeglib.h>

#include "globe/PictureSink.h"

namespace sandbox {

namespace {

/// libjpeg, whose errors leave it by a longjmp: no function that calls it holds what would have to be
/// destroyed. It is given some of the file at a time, and stops where it needs more.
class JpegDecoder {
  public:
    enum class Answer { Done, NeedsMore, Failed };

    explicit JpegDecoder(QIODevice& file) : file_(file), bytes_(kBytes) {
        info_.err = jpeg_std_error(&errors_);
        errors_.error_exit = [](j_common_ptr info) { std::longjmp(self(info).jump_, 1); };
        errors_.output_message = [](j_common_ptr) {};
        info_.client_data = this;
        source_.init_source = [](j_decompress_ptr) {};
        source_.term_source = [](j_decompress_ptr) {};
        source_.fill_input_buffer = [](j_decompress_ptr info) -> boolean {
            // Arithmetic decoding cannot stop here.
            if (!info->arith_code) return FALSE;
            info->src->bytes_in_buffer = 0;  // whatever it says
            return self(reinterpret_cast<j_common_ptr>(info)).refill();
        };
        source_.skip_input_data = [](j_decompress_ptr info, long count) {
            if (count > 0) self(reinterpret_cast<j_common_ptr>(info)).skip(static_cast<std::size_t>(count));
        };
        source_.resync_to_restart = jpeg_resync_to_restart;
    }
    ~JpegDecoder() { jpeg_destroy_decompress(&info_); }
    JpegDecoder(const JpegDecoder&) = delete;
    JpegDecoder& operator=(const JpegDecoder&) = delete;

    /// Comes first.
    bool begin() {
        if (setjmp(jump_)) return false;
        jpeg_create_decompress(&info_);
        info_.src = &source_;
        return true;
    }
    Answer readHead() {
        if (setjmp(jump_)) return Answer::Failed;
        if (jpeg_read_header(&info_, TRUE) == JPEG_SUSPENDED) return Answer::NeedsMore;
        if (info_.out_color_space == JCS_RGB) info_.out_color_space = JCS_EXT_RGBX;
        // Whole before its rows come, or they would have to be made of it in one go.
        info_.buffered_image = jpeg_has_multiple_scans(&info_);
        return Answer::Done;
    }
    Answer start() {
        if (setjmp(jump_)) return Answer::Failed;
        return jpeg_start_decompress(&info_) ? Answer::Done : Answer::NeedsMore;
    }
    /// Of a picture in several scans: takes a part of one. \return Done when it has them all
    Answer takeScans(bool& progressed) {
        progressed = false;
        if (setjmp(jump_)) return Answer::Failed;
        const int answer = jpeg_consume_input(&info_);
        progressed = answer != JPEG_SUSPENDED;
        if (answer != JPEG_REACHED_EOI) return Answer::NeedsMore;
        return jpeg_start_output(&info_, info_.input_scan_number) ? Answer::Done : Answer::Failed;
    }
    Answer readRow(unsigned char* row) {
        if (setjmp(jump_)) return Answer::Failed;
        return jpeg_read_scanlines(&info_, &row, 1) == 1 ? Answer::Done : Answer::NeedsMore;
    }

    /// Reads on in the file. \return false when that does not help
    bool refill() {
        const std::size_t left = source_.bytes_in_buffer;
        if (left == bytes_.size()) return false;
        if (left > 0) std::memmove(bytes_.data(), source_.next_input_byte, left);
        if (skipped_ > 0 && !file_.seek(file_.pos() + static_cast<qint64>(skipped_))) return false;
        skipped_ = 0;
        qint64 more = file_.read(reinterpret_cast<char*>(bytes_.data() + left),
                                 static_cast<qint64>(std::min(bytes_.size() - left, kBytesAtATime)));
        if (more <= 0) {
            // The mark of the end, for what is cut.
            if (left + 2 > bytes_.size()) return false;
            bytes_[left] = 0xff;
            bytes_[left + 1] = JPEG_EOI;
            more = 2;
        }
        source_.next_input_byte = bytes_.data();
        source_.bytes_in_buffer = left + static_cast<std::size_t>(more);
        return true;
    }

    QSize size() const { return {static_cast<int>(info_.image_width), static_cast<int>(info_.image_height)}; }
    int bits() const { return info_.out_color_space == JCS_GRAYSCALE ? 8 : 32; }
    bool isInScans() const { return info_.buffered_image; }
    bool isCmyk() const { return info_.out_color_space == JCS_CMYK; }
    /// Of what readRow() gives; CMYK has four bytes a pixel, too.
    QImage::Format format() const {
        switch (info_.out_color_space) {
            case JCS_GRAYSCALE:
                return QImage::Format_Grayscale8;
            case JCS_EXT_RGBX:
            case JCS_CMYK:
                return QImage::Format_RGBX8888;
            default:
                return QImage::Format_Invalid;
        }
    }

  private:
    /// Twice the longest marker, of which libjpeg wants some in one piece.
    static constexpr std::size_t kBytes = std::size_t{1} << 17;
    static constexpr std::size_t kBytesAtATime = std::size_t{1} << 14;

    static JpegDecoder& self(j_common_ptr info) { return *static_cast<JpegDecoder*>(info->client_data); }
    void skip(std::size_t count) {
        const std::size_t here = std::min(count, source_.bytes_in_buffer);
        source_.next_input_byte += here;
        source_.bytes_in_buffer -= here;
        skipped_ += count - here;
    }

    QIODevice& file_;
    std::vector<JOCTET> bytes_;
    std::size_t skipped_ = 0;  ///< of the file, behind the bytes
    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    jpeg_source_mgr source_{};
    std::jmp_buf jump_{};
};

/// As the picture's camera says.
PictureSink::Turn turnOf(QIODevice& file) {
    constexpr qint64 kEnough = qint64{1} << 20;
    QByteArray start = file.peek(kEnough);
    QBuffer buffer(&start);
    return QImageReader(&buffer, "jpeg").transformation();
}

void turnIntoRgb(QImage& cmyk) {
    for (int y = 0; y < cmyk.height(); ++y) {
        unsigned char* pixel = cmyk.scanLine(y);
        for (int x = 0; x < cmyk.width(); ++x, pixel += 4) {
            const int black = pixel[3];
            for (int i = 0; i < 3; ++i) pixel[i] = static_cast<unsigned char>(black * pixel[i] / 255);
            pixel[3] = 255;
        }
    }
}

}  // namespace

Work readJpeg(QIODevice& file, PictureSink& sink) {
    using Answer = JpegDecoder::Answer;
    constexpr std::size_t kUnitsOfAFill = 30;
    const PictureSink::Turn turn = turnOf(file);
    JpegDecoder jpeg(file);
    if (!jpeg.begin()) co_return;
    Answer answer = Answer::Done;
    while ((answer = jpeg.readHead()) == Answer::NeedsMore) {
        if (!jpeg.refill()) co_return;
        co_yield kUnitsOfAFill;
    }
    if (answer == Answer::Failed || jpeg.format() == QImage::Format_Invalid) co_return;
    const QSize size = jpeg.size();
    if (!sink.begin(size, jpeg.bits(), turn)) co_return;
    while ((answer = jpeg.start()) == Answer::NeedsMore) {
        if (!jpeg.refill()) co_return;
        co_yield kUnitsOfAFill;
    }
    if (jpeg.isInScans() && answer == Answer::Done) {
        constexpr std::size_t kRows = 16;
        constexpr std::size_t kPixelsOfAUnit = 100;
        const std::size_t units = 1 + kRows * static_cast<std::size_t>(size.width()) / kPixelsOfAUnit;
        bool progressed = false;
        while ((answer = jpeg.takeScans(progressed)) == Answer::NeedsMore) {
            if (!progressed && !jpeg.refill()) co_return;
            co_yield progressed ? units : kUnitsOfAFill;
        }
    }
    if (answer == Answer::Failed) co_return;
    const int some = rowsAtATime(size);
    for (int y = 0; y < size.height() && answer == Answer::Done; y += some) {
        QImage rows(size.width(), std::min(some, size.height() - y), jpeg.format());
        if (rows.isNull()) co_return;
        int done = 0;
        while (done < rows.height()) {
            answer = jpeg.readRow(rows.scanLine(done));
            if (answer == Answer::Done) ++done;
            if (answer == Answer::NeedsMore && !jpeg.refill()) answer = Answer::Failed;
            if (answer == Answer::Failed) break;
        }
        if (done < rows.height()) rows = rows.copy(0, 0, rows.width(), done);
        if (jpeg.isCmyk()) turnIntoRgb(rows);
        if (done > 0) sink.take(rows.convertToFormat(QImage::Format_RGBA8888_Premultiplied));
        co_yield unitsOf(rows);
    }
}

}  // namespace sandbox
