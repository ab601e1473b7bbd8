#include <QBuffer>
#include <QByteArray>
#include <QColorSpace>
#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>

#include "globe/IconReading.h"
#include "globe/RowReducer.h"
#include "globe/TakenPicture.h"

namespace sandbox {
namespace {

/// Whatever colours a file says that it means, it is shown by its numbers.
QImage pixelsOf(QImage image) {
    image.setColorSpace({});
    return image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
}

/// Random pictures in what their formats can do. Each is read in the smallest slices, and is what
/// QImageReader makes of it.
class PictureReading : public ::testing::Test {
  protected:
    int upTo(int most) { return std::uniform_int_distribution(0, most)(random_); }
    QSize someSize() { return {1 + upTo(400), 1 + upTo(300)}; }

    /// Of smooth and of noisy parts.
    QImage someImage(QImage::Format format) {
        const QSize size = someSize();
        QImage image(size, QImage::Format_RGBA64);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x) {
                const auto at = [&](int i) {
                    return static_cast<quint16>((x / 40 + y / 30) % 2 ? upTo(65535) : x * 150 * i + y * 200);
                };
                reinterpret_cast<QRgba64*>(image.scanLine(y))[x] = qRgba64(at(1), at(2), at(3), at(4));
            }
        return image.convertToFormat(format);
    }
    QByteArray written(const QImage& image, const char* format) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QImageWriter writer(&buffer, format);
        writer.setQuality(QByteArray(format) == "png" ? 90 : upTo(100));
        writer.setProgressiveScanWrite(upTo(1) == 1);
        if (QByteArray(format) == "jpeg") writer.setTransformation(QImageIOHandler::Transformation(upTo(7)));
        EXPECT_TRUE(writer.write(image)) << format << image.format();
        return bytes;
    }
    /// `type`: as PNG has it; with all that may stand in it.
    QByteArray png(int type, int depth, bool interlaced) {
        QByteArray bytes;
        png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        png_set_write_fn(
            png, &bytes,
            [](png_structp self, png_bytep from, std::size_t count) {
                static_cast<QByteArray*>(png_get_io_ptr(self))
                    ->append(reinterpret_cast<char*>(from), static_cast<qsizetype>(count));
            },
            nullptr);
        const QSize size = someSize();
        png_set_IHDR(png, info, static_cast<unsigned>(size.width()), static_cast<unsigned>(size.height()),
                     depth, type, interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        const int count = 1 + upTo((1 << std::min(depth, 8)) - 1);
        if (type == PNG_COLOR_TYPE_PALETTE) {
            std::vector<png_color> colors(static_cast<std::size_t>(count));
            for (png_color& color : colors) color = {byte(), byte(), byte()};
            png_set_PLTE(png, info, colors.data(), count);
        }
        // Of deep colours of which one is clear QImageReader makes noise.
        if (upTo(1) == 1 && !(type & PNG_COLOR_MASK_ALPHA) && !(type == PNG_COLOR_TYPE_RGB && depth == 16)) {
            std::vector<png_byte> alphas(static_cast<std::size_t>(count));
            for (png_byte& alpha : alphas) alpha = byte();
            const auto some = [&] { return static_cast<png_uint_16>(upTo((1 << depth) - 1)); };
            const png_color_16 clear{0, some(), some(), some(), some()};
            png_set_tRNS(png, info, alphas.data(), 1 + upTo(count - 1), &clear);
        }
        if (upTo(1) == 1) png_set_gAMA(png, info, 1.0);
        png_set_check_for_invalid_index(png, -1);
        png_write_info(png, info);
        const int passes = png_set_interlace_handling(png);
        std::vector<std::vector<png_byte>> rows(static_cast<std::size_t>(size.height()),
                                                std::vector<png_byte>(png_get_rowbytes(png, info)));
        for (auto& row : rows)
            for (png_byte& value : row) value = byte();
        for (int pass = 0; pass < passes; ++pass)
            for (auto& row : rows) png_write_row(png, row.data());
        png_write_end(png, info);
        png_destroy_write_struct(&png, &info);
        return bytes;
    }
    /// Of four colours, or in scans of one colour each.
    QByteArray jpeg(int components, bool inScans) {
        jpeg_compress_struct info{};
        jpeg_error_mgr errors{};
        info.err = jpeg_std_error(&errors);
        jpeg_create_compress(&info);
        unsigned char* bytes = nullptr;
        unsigned long count = 0;
        jpeg_mem_dest(&info, &bytes, &count);
        const QSize size = someSize();
        info.image_width = static_cast<JDIMENSION>(size.width());
        info.image_height = static_cast<JDIMENSION>(size.height());
        info.input_components = components;
        info.in_color_space = components == 4 ? JCS_CMYK : components == 3 ? JCS_RGB : JCS_GRAYSCALE;
        jpeg_set_defaults(&info);
        if (components == 4 && upTo(1) == 1) jpeg_set_colorspace(&info, JCS_YCCK);
        info.restart_in_rows = upTo(3);
        info.arith_code = upTo(3) == 0;
        std::vector<jpeg_scan_info> scans(static_cast<std::size_t>(components),
                                          jpeg_scan_info{1, {0}, 0, 63, 0, 0});
        for (int i = 0; i < components; ++i) scans[static_cast<std::size_t>(i)].component_index[0] = i;
        if (inScans) {
            info.scan_info = scans.data();
            info.num_scans = components;
        }
        jpeg_start_compress(&info, TRUE);
        std::vector<JSAMPLE> row(static_cast<std::size_t>(size.width() * components));
        for (int y = 0; y < size.height(); ++y) {
            for (JSAMPLE& value : row) value = byte();
            JSAMPROW rows = row.data();
            jpeg_write_scanlines(&info, &rows, 1);
        }
        jpeg_finish_compress(&info);
        const QByteArray result(reinterpret_cast<char*>(bytes), static_cast<qsizetype>(count));
        jpeg_destroy_compress(&info);
        std::free(bytes);
        return result;
    }
    QByteArray some() {
        constexpr std::array kFormats{QImage::Format_Mono,       QImage::Format_Indexed8,
                                      QImage::Format_Grayscale8, QImage::Format_Grayscale16,
                                      QImage::Format_RGB32,      QImage::Format_ARGB32,
                                      QImage::Format_RGBX64,     QImage::Format_RGBA64};
        constexpr std::array<std::pair<int, int>, 15> kTypes{{{0, 1},
                                                              {0, 2},
                                                              {0, 4},
                                                              {0, 8},
                                                              {0, 16},
                                                              {2, 8},
                                                              {2, 16},
                                                              {3, 1},
                                                              {3, 2},
                                                              {3, 4},
                                                              {3, 8},
                                                              {4, 8},
                                                              {4, 16},
                                                              {6, 8},
                                                              {6, 16}}};
        switch (upTo(3)) {
            case 1:
                return written(someImage(kFormats[static_cast<std::size_t>(upTo(7))]),
                               std::array{"jpeg", "png", "bmp", "ppm"}[static_cast<std::size_t>(upTo(3))]);
            case 2:
                return jpeg(std::array{1, 3, 4}[static_cast<std::size_t>(upTo(2))], upTo(1) == 1);
            default: {
                const auto [type, depth] = kTypes[static_cast<std::size_t>(upTo(14))];
                return png(type, depth, upTo(1) == 1);
            }
        }
    }
    png_byte byte() { return static_cast<png_byte>(upTo(255)); }

    PictureFile holding(const QByteArray& bytes) {
        QFile file(folder_.filePath("picture"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        return findPicture("picture", folder_.path().toStdString());
    }

    std::mt19937 random_{27};

  private:
    QTemporaryDir folder_;
};

int rounds() {
    const char* const said = std::getenv("ROUNDS");
    return said ? std::atoi(said) : 60;
}

TEST_F(PictureReading, IsWhatItIsInOneGo) {
    for (int i = 0; i < rounds(); ++i) {
        const PictureFile file = holding(some());
        QImageReader reader(QString::fromStdString(file.path));
        reader.setAutoTransform(true);
        ASSERT_EQ(taken(file, true), pixelsOf(reader.read())) << i << reader.format().toStdString();
    }
}

/// Whatever is damaged or cut: where QImageReader finds no fault it is the same.
TEST_F(PictureReading, EndsWhateverIsDamaged) {
    constexpr qint64 kMostPixels = 4'000'000;
    constexpr int kHead = 200;
    for (int i = 0; i < rounds(); ++i) {
        QByteArray bytes = some();
        const int last = static_cast<int>(bytes.size()) - 1;
        for (int faults = upTo(3); faults >= 0; --faults)
            bytes[upTo(upTo(1) ? std::min(kHead, last) : last)] = static_cast<char>(byte());
        if (upTo(3) == 0) bytes.truncate(upTo(last));
        const PictureFile file = holding(bytes);
        QImageReader reader(QString::fromStdString(file.path));
        reader.setAutoTransform(true);
        if (qint64{reader.size().width()} * reader.size().height() > kMostPixels) continue;
        QImage expected;
        const bool whole = reader.read(&expected);
        const QImage image = taken(file, true);
        if (whole && (reader.format() == "png" || reader.format() == "jpeg")) {
            ASSERT_EQ(image, pixelsOf(expected)) << i;
        }
    }
}

/// Stroke by stroke, with all that a painter does.
TEST_F(PictureReading, IsADrawingAsQtDrawsIt) {
    const PictureFile file = holding(
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 200 200' width='300' height='300'>"
        "<linearGradient id='g'><stop offset='0' stop-color='red'/><stop offset='1'/></linearGradient>"
        "<rect x='10' y='10' width='80' height='50' rx='10' fill='url(#g)' stroke='black'/>"
        "<g opacity='0.5' transform='rotate(20 100 100)'><circle cx='60' cy='140' r='30' fill='orange'/>"
        "<ellipse cx='140' cy='60' rx='40' ry='20' stroke-width='3' stroke-dasharray='4 2' "
        "stroke='#333'/></g>"
        "<polyline points='10,190 50,120 90,190' fill='none' stroke='purple' stroke-width='4'/>"
        "<polygon points='150,150 190,150 170,190 160,140' fill='teal' fill-rule='evenodd'/>"
        "<line x1='0' y1='0' x2='200' y2='200' stroke='red'/>"
        "<path d='M100 20 C 120 0 160 60 190 20 Q 150 90 110 60 Z' fill='none' stroke='brown'/></svg>");
    QImageReader reader(QString::fromStdString(file.path));
    EXPECT_EQ(taken(file, true), pixelsOf(reader.read()));
}

/// However the rows come: each pixel is the mean of what it covers.
TEST_F(PictureReading, MadeSmallerIsTheMean) {
    for (int i = 0; i < 20; ++i) {
        const QImage image = pixelsOf(someImage(QImage::Format_RGBA64));
        const QSize size(1 + upTo(image.width() - 1), 1 + upTo(image.height() - 1));
        RowReducer reducer(image.size(), size);
        int y = 0;
        for (int at = 0, rows = 0; at < image.height(); at += rows) {
            rows = std::min(1 + upTo(20), image.height() - at);
            const QImage more = reducer.take(image.copy(0, at, image.width(), rows));
            for (int row = 0; row < more.height(); ++row, ++y) {
                const int x = upTo(size.width() - 1);
                const double across = static_cast<double>(image.width()) / size.width();
                const double down = static_cast<double>(image.height()) / size.height();
                double sum = 0.0;
                for (int v = 0; v < image.height(); ++v)
                    for (int u = 0; u < image.width(); ++u) {
                        const double share =
                            std::max(0.0,
                                     std::min(u + 1.0, (x + 1) * across) - std::max<double>(u, x * across)) *
                            std::max(0.0, std::min(v + 1.0, (y + 1) * down) - std::max<double>(v, y * down));
                        sum += share * image.constScanLine(v)[4 * u + 1];
                    }
                ASSERT_NEAR(more.constScanLine(row)[4 * x + 1], sum / (across * down), 1.0) << i << "," << y;
            }
        }
        EXPECT_EQ(y, size.height());
    }
}

/// One that is written anew meanwhile is what it is then.
TEST_F(PictureReading, IsOfOneStateOfTheFile) {
    QImage before(600, 600, QImage::Format_RGB32);
    before.fill(Qt::red);
    QImage after(600, 300, QImage::Format_RGB32);
    after.fill(Qt::blue);
    const PictureFile file = holding(written(before, "bmp"));
    QImage icon;
    Work work = readIcon(file, 1.0, icon);
    bool done = false;
    for (int i = 0; !done; ++i) {
        Slice once(0, std::chrono::milliseconds(0));
        done = work.goOn(once);
        if (i == 3) {
            ASSERT_FALSE(done);
            const PictureFile changed = holding(written(after, "bmp"));
            QFile again(QString::fromStdString(changed.path));
            ASSERT_TRUE(again.open(QIODevice::ReadWrite) &&
                        again.setFileTime(QDateTime::currentDateTime().addSecs(9),
                                          QFileDevice::FileModificationTime));
        }
    }
    EXPECT_EQ(icon.size(), QSize(64, 32));
    EXPECT_EQ(icon.pixelColor(32, 16), QColor(Qt::blue));
}

}  // namespace
}  // namespace sandbox
