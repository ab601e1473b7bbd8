#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <string>

#include <gtest/gtest.h>

#include "globe/PictureFile.h"
#include "globe/TakenPicture.h"

namespace sandbox {
namespace {

class PictureFiles : public ::testing::Test {
  protected:
    QByteArray imageAs(const char* format) {
        QImage image(40, 40, QImage::Format_RGB32);
        for (unsigned i = 0; i < 1600; ++i)
            image.setPixel(static_cast<int>(i % 40), static_cast<int>(i / 40), i * i * 7919);
        EXPECT_TRUE(image.save(folder_.filePath("image"), format));
        QFile file(folder_.filePath("image"));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    PictureFile holding(const QByteArray& bytes) {
        QFile file(folder_.filePath("picture"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        return findPicture("picture", folder_.path().toStdString());
    }
    PictureFile drawing(const QByteArray& inside, const QByteArray& size = "8") {
        return holding("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 8 8' width='" + size +
                       "' height='" + size + "'>" + inside + "</svg>");
    }

  private:
    QTemporaryDir folder_;
};

std::string whyNotShown(const PictureFile& file) {
    std::string fault;
    findFault(file, fault).finish();
    return fault;
}

/// Any file, a pipe or itself: what a drawing takes in is not even opened.
TEST_F(PictureFiles, ADrawingOpensNoOtherFile) {
    const auto image = [](const QByteArray& reference, const QByteArray& name = "xlink:href") {
        return "<g><image width='8' height='8' " + name + "='" + reference + "'/></g>";
    };
    const QByteArray inner = "<svg>" + image("/dev/zero") + "</svg>";
    for (const QByteArray& inside :
         {image("/dev/zero"), image("/dev/zero", "href"), image("picture"), image("data/../picture"),
          image("data:base64,AAAA"), image("data:image/svg+xml;base64," + inner.toBase64()),
          QByteArray("<?xml-stylesheet type='text/css' href='/dev/zero'?>")}) {
        EXPECT_EQ(whyNotShown(drawing(inside)), "takes in other files, and is not shown")
            << inside.toStdString();
        EXPECT_TRUE(taken(drawing(inside)).isNull());
    }
    const PictureFile own = drawing(image("data:image/png;base64," + imageAs("png").toBase64()));
    EXPECT_EQ(whyNotShown(own), "");
    EXPECT_EQ(taken(own).size(), QSize(8, 8));
}

/// Few bytes, much work: shapes used again and again are refused, those that fill many pixels drawn small.
TEST_F(PictureFiles, ADrawingIsNoEndlessWork) {
    const QByteArray shape = "<circle id=\"a\" cx=\"4\" cy=\"4\" r=\"4\" fill=\"red\"/>";
    EXPECT_EQ(
        whyNotShown(drawing(shape.repeated(1000) + QByteArray("<use xlink:href=\"#a\"/>").repeated(100))),
        "is too large to be shown");
    for (const QByteArray& inside : {QByteArray(1 << 20, ' '), QByteArray("<text>a</text>").repeated(1001),
                                     "<path d='" + QByteArray("1 1 ").repeated(70000) + "'/>"})
        EXPECT_EQ(whyNotShown(drawing(inside)), "is too large to be shown");
    const QImage wide = taken(drawing(shape, "100000"));
    EXPECT_EQ(wide.size(), QSize(2048, 2048));
    EXPECT_EQ(wide.pixelColor(1024, 1024), QColor(Qt::red));
    const int many = taken(drawing(shape.repeated(2000), "2000")).width();
    EXPECT_TRUE(many > 650 && many < 760) << many;
}

/// Also of 1970; and what is missing at its end, a reader may show as if it were there.
TEST_F(PictureFiles, AreNamedWhenTheyAreCut) {
    for (const char* const format : {"png", "jpeg"}) {
        const QByteArray bytes = imageAs(format);
        for (const qsizetype left : {bytes.size() - 1, bytes.size() - 20, bytes.size() / 2})
            EXPECT_EQ(whyNotShown(holding(bytes.first(left))), "is cut off") << format << left;
        PictureFile whole = holding(bytes + "behind it");
        QFile file(QString::fromStdString(whole.path));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(QDateTime::fromMSecsSinceEpoch(0), QFileDevice::FileModificationTime));
        whole = findPicture(whole.path, "");
        EXPECT_EQ(whyNotShown(whole), "") << format;
        EXPECT_EQ(taken(whole).size(), QSize(40, 40)) << format;
    }
    EXPECT_EQ(whyNotShown(PictureFile{"/none"}), "cannot be read");
    // What is not read row by row.
    EXPECT_EQ(whyNotShown(holding("P3 3000 3000 255 ")), "is too large to be shown");
}

}  // namespace
}  // namespace sandbox
