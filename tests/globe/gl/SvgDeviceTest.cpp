#include <QBuffer>
#include <QPainter>
#include <QPainterPath>
#include <QSvgGenerator>
#include <QSvgRenderer>
#include <algorithm>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include "globe/SvgDevice.h"

namespace sandbox {
namespace {

constexpr QSize kSize(160, 120);

/// Anything that is painted for print, the same for the same seed.
void paint(QPainter& painter, unsigned seed) {
    std::mt19937 random(seed);
    const auto any = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    const auto place = [&] { return QPointF(any(-200, 1800), any(-200, 1400)) / 10.0; };
    const auto color = [&] {
        return QColor(any(0, 255), any(0, 255), any(0, 255), any(0, 2) > 0 ? 255 : any(20, 254));
    };
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = any(1, 12); i > 0; --i) {
        painter.save();
        if (any(0, 3) == 0) {
            painter.translate(place());
            painter.rotate(any(0, 359));
        }
        QPen pen(color(), any(5, 60) / 5.0, Qt::SolidLine, any(0, 1) > 0 ? Qt::RoundCap : Qt::FlatCap,
                 any(0, 1) > 0 ? Qt::RoundJoin : Qt::BevelJoin);
        if (any(0, 2) == 0) pen.setDashPattern({any(1, 40) / 10.0, any(5, 40) / 10.0});
        painter.setPen(any(0, 3) > 0 ? pen : QPen(Qt::NoPen));
        if (any(0, 1) > 0) painter.setBrush(color());
        QPainterPath path(place());
        path.setFillRule(any(0, 1) > 0 ? Qt::WindingFill : Qt::OddEvenFill);
        for (int k = any(1, 6); k > 0; --k) {
            path.lineTo(place());
            if (any(0, 3) == 0) path.cubicTo(place(), place(), place());
            if (any(0, 3) == 0) path.moveTo(place());
        }
        QImage picture(5, 4, QImage::Format_ARGB32);
        picture.fill(color());
        switch (any(0, 6)) {
            case 0:
                painter.drawEllipse(place(), any(1, 50), any(1, 50));
                break;
            case 1:
                painter.drawPolyline(QPolygonF({place(), place(), place()}));
                break;
            case 2:
                painter.fillRect(QRectF(place(), place()).normalized(), color());
                break;
            case 3:
                painter.drawImage(QRectF(place(), QSizeF(any(5, 50), any(5, 50))), picture);
                break;
            case 4:
                painter.setFont(QFont("Liberation Sans", any(6, 20),
                                      any(0, 1) > 0 ? QFont::Bold : QFont::Normal, any(0, 1) > 0));
                painter.drawText(place(), QString("A<b> & \"c\" %1").arg(any(0, 9)));
                break;
            default:
                painter.drawPath(path);
        }
        painter.restore();
    }
}

QImage drawn(const QByteArray& svg) {
    QImage image(kSize * 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QSvgRenderer renderer(svg);
    EXPECT_TRUE(renderer.isValid());
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

/// Whatever is painted, a renderer makes the same picture of it as of what Qt's own generator writes.
TEST(SvgDevice, DrawsWhatQtsGeneratorDraws) {
    const unsigned rounds = std::getenv("CAMPAIGN_ROUNDS") ? 5000 : 150;
    for (unsigned seed = 0; seed < rounds && !testing::Test::HasFailure(); ++seed) {
        QBuffer known;
        QSvgGenerator generator;
        generator.setOutputDevice(&known);
        generator.setSize(kSize);
        generator.setViewBox(QRect(QPoint(), kSize));
        generator.setResolution(96);
        QPainter painter(&generator);
        paint(painter, seed);
        painter.end();
        QBuffer own;
        own.open(QIODevice::WriteOnly);
        SvgDevice device(own, kSize, "<Title> & more");
        painter.begin(&device);
        paint(painter, seed);
        EXPECT_TRUE(painter.end());
        EXPECT_LE(own.data().size(), known.data().size());

        const QImage wanted = drawn(known.data());
        const QImage got = drawn(own.data());
        int worst = 0;
        for (int i = 0; i < static_cast<int>(wanted.sizeInBytes()); ++i)
            worst = std::max(worst, std::abs(wanted.constBits()[i] - got.constBits()[i]));
        // Ellipses are no curves through points here.
        EXPECT_LE(worst, 16) << "seed " << seed << "\n" << own.data().toStdString();
    }
}

TEST(SvgDevice, TellsAndEscapes) {
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    SvgDevice device(output, kSize, "\x01");
    QPainter painter(&device);
    painter.drawText(QPointF(5, 20), QString("a\x01\x1bz"));
    EXPECT_TRUE(painter.end());
    EXPECT_TRUE(QSvgRenderer(output.data()).isValid()) << "no control characters in XML";
    output.close();
    output.open(QIODevice::ReadOnly);
    EXPECT_FALSE(painter.begin(&device) && painter.end()) << "nothing could be written";
}

}  // namespace
}  // namespace sandbox
