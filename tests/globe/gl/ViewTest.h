#pragma once

#include <QApplication>
#include <QDeadlineTimer>
#include <QMouseEvent>
#include <QThread>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "globe/GlobeView.h"
#include "globe/ShapeText.h"

namespace sandbox {

using halCore::Vec3;

inline constexpr auto isMagenta = [](QRgb c) { return qRed(c) > 200 && qGreen(c) < 60 && qBlue(c) > 200; };
inline constexpr auto isGreen = [](QRgb c) { return qRed(c) < 60 && qGreen(c) > 200 && qBlue(c) < 60; };
inline constexpr auto isWhite = [](QRgb c) { return qRed(c) > 220 && qGreen(c) > 220 && qBlue(c) > 220; };
inline const std::string kMagenta = "; linecolor hex ffff00ff";

int count(const QRect& where, const auto& wanted) {
    int found = 0;
    for (int y = where.top(); y <= where.bottom(); ++y)
        for (int x = where.left(); x <= where.right(); ++x) found += wanted(x, y) ? 1 : 0;
    return found;
}
int count(const QImage& image, const QRect& where, const auto& wanted) {
    return count(where, [&](int x, int y) { return wanted(image.pixel(x, y)); });
}
/// How many pixels differ by more than so much.
inline int differences(const QImage& a, const QImage& b, int most, const QRect& where) {
    return count(where, [&](int x, int y) {
        const QRgb c = a.pixel(x, y), d = b.pixel(x, y);
        return std::max({std::abs(qRed(c) - qRed(d)), std::abs(qGreen(c) - qGreen(d)),
                         std::abs(qBlue(c) - qBlue(d))}) > most;
    });
}
/// How many pixels have a colour that the other picture has nowhere within a pixel of them: texts and symbols
/// stand at whole device pixels, which are others on each screen.
inline int strangers(const QImage& a, const QImage& b, const QRect& where) {
    constexpr int kMost = 64;
    const auto beyond = [&](int x, int y, int (*channel)(QRgb)) {
        int least = 255, most = 0;
        for (const int v : {std::max(y - 1, 0), y, std::min(y + 1, b.height() - 1)})
            for (const int u : {std::max(x - 1, 0), x, std::min(x + 1, b.width() - 1)}) {
                least = std::min(least, channel(b.pixel(u, v)));
                most = std::max(most, channel(b.pixel(u, v)));
            }
        const int own = channel(a.pixel(x, y));
        return own < least - kMost || own > most + kMost;
    };
    return count(where, [&](int x, int y) {
        return beyond(x, y, qRed) || beyond(x, y, qGreen) || beyond(x, y, qBlue);
    });
}

class GlobeViewTest : public testing::Test {
  protected:
    void SetUp() override {
        view.resize(640, 480);
        view.setEarthImage(QString());  // the plain globe: dark blue
        view.show();
        settle();
    }

    static void settle() {
        for (int i = 0; i < 10; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    /// For what takes its time on a busy machine, such as a frame.
    static void waitUntil(const auto& condition) {
        for (const QDeadlineTimer deadline(10000); !condition() && !deadline.hasExpired(); settle())
            QThread::msleep(1);
    }

    void look(const Vec3& center, double range, double azimuth = 0.0, double elevation = 90.0) {
        view.setCenter(center);
        view.setRangeAzimuthElevation(range, azimuth * kRadiansPerDegree, elevation * kRadiansPerDegree);
    }
    /// In place of what was there.
    OverlayScene::Id show(std::string_view text, const QString& directory = {}) {
        view.overlays().clear();
        return view.overlays().add(shapesOf(text), std::nullopt, true, directory.toStdString());
    }
    QPoint pixelOf(const Vec3& place) const {
        const Projected p = view.camera().project(place);
        return {static_cast<int>(std::floor(p.x)), static_cast<int>(std::floor(p.y))};
    }
    /// With these buttons held afterwards.
    void mouse(QEvent::Type type, QPointF where, Qt::MouseButton button, Qt::MouseButtons held,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QMouseEvent event(type, where, view.mapToGlobal(where), button, held, modifiers);
        QApplication::sendEvent(&view, &event);
    }
    void wheel(int delta) {
        QWheelEvent event({320, 240}, view.mapToGlobal(QPointF(320, 240)), {}, {0, delta}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }

    const QRect all{0, 0, 640, 480};
    GlobeView view;
};

}  // namespace sandbox
