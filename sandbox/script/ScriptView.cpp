#include "sandbox/script/ScriptView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "geo/Angles.h"
#include "globe/GlobeView.h"
#include "sandbox/Host.h"
#include "sandbox/script/ScriptRun.h"

namespace sandbox {

using halCore::kRadiansPerDegree;

namespace {

Qt::MouseButton buttonOf(const QVariantMap& options) {
    const QString name = options.value("button", "left").toString();
    if (name == "left") return Qt::LeftButton;
    if (name == "middle") return Qt::MiddleButton;
    if (name == "right") return Qt::RightButton;
    throw ScriptError{QString("unknown mouse button \"%1\"").arg(name)};
}

Qt::KeyboardModifiers modifiersOf(const QVariantMap& options) {
    Qt::KeyboardModifiers modifiers;
    for (const QString& name : options.value("modifiers").toString().split('+', Qt::SkipEmptyParts)) {
        if (name == "shift")
            modifiers |= Qt::ShiftModifier;
        else if (name == "control")
            modifiers |= Qt::ControlModifier;
        else if (name == "alt")
            modifiers |= Qt::AltModifier;
        else if (name != "space")
            throw ScriptError{QString("unknown modifier \"%1\"").arg(name)};
    }
    return modifiers;
}

QVariantMap position(const halCore::Vec3& place) {
    return {{"lat", place.lat() / kRadiansPerDegree},
            {"lon", place.lon() / kRadiansPerDegree},
            {"alt", place.alt()}};
}

}  // namespace

QPoint ScriptView::pixelOf(const QVariantMap& place) const {
    if (place.contains("x") && place.contains("y")) return {place["x"].toInt(), place["y"].toInt()};
    if (!place.contains("lat") || !place.contains("lon"))
        throw ScriptError{"a place is { lat, lon } or { x, y }"};
    const double latitude = place["lat"].toDouble();
    const double longitude = place["lon"].toDouble();
    const Projected seen = host().view().camera().project(
        halCore::Vec3(latitude * kRadiansPerDegree, longitude * kRadiansPerDegree, 0.0));
    if (!seen.visible)
        throw ScriptError{QString("%1, %2 cannot be seen from here").arg(latitude).arg(longitude)};
    return {qRound(seen.x), qRound(seen.y)};
}

QVariantMap ScriptView::ground(QPoint pixel) const {
    QVariantMap result{{"x", pixel.x()}, {"y", pixel.y()}};
    if (const auto place = host().view().camera().pick(pixel.x(), pixel.y())) result.insert(position(*place));
    return result;
}

QVariantMap ScriptView::mouse(const QString& kind, const QVariantMap& place, const QVariantMap& options) {
    return step([&] {
        GlobeView& view = host().view();
        const QPoint pixel = place.isEmpty() ? last_ : pixelOf(place);
        const QVariantMap result = ground(pixel);
        last_ = pixel;
        const QPointF global = view.mapToGlobal(QPointF(pixel));
        const Qt::KeyboardModifiers modifiers = modifiersOf(options);
        if (kind == "wheel") {
            const int angle = qRound(options.value("notches", 1.0).toDouble() * 120.0);
            QWheelEvent event(pixel, global, QPoint(), QPoint(0, angle), held_, modifiers, Qt::NoScrollPhase,
                              false);
            QCoreApplication::sendEvent(&view, &event);
            return result;
        }
        const Qt::MouseButton button = kind == "move" ? Qt::NoButton : buttonOf(options);
        QEvent::Type type = QEvent::MouseMove;
        if (kind == "press" || kind == "doubleClick") {
            type = kind == "press" ? QEvent::MouseButtonPress : QEvent::MouseButtonDblClick;
            held_ |= button;
            // Clicking into the view takes the focus from a field, as it does for a person.
            if (view.focusPolicy() & Qt::ClickFocus) {
                view.window()->activateWindow();
                if (QWidget* field = QApplication::focusWidget()) field->clearFocus();
                view.setFocus(Qt::MouseFocusReason);
            }
        } else if (kind == "release") {
            type = QEvent::MouseButtonRelease;
            held_ &= ~Qt::MouseButtons(button);
        }
        const auto space = [&](QEvent::Type keyType) {
            if (!options.value("modifiers").toString().split('+').contains("space")) return;
            QKeyEvent key(keyType, Qt::Key_Space, Qt::NoModifier);
            QCoreApplication::sendEvent(&view, &key);
        };
        space(QEvent::KeyPress);
        QMouseEvent event(type, pixel, global, button, held_, modifiers);
        QCoreApplication::sendEvent(&view, &event);
        space(QEvent::KeyRelease);
        return result;
    });
}

void ScriptView::leave() {
    step([&] {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&host().view(), &event);
    });
}

QVariantMap ScriptView::camera() {
    return step([&] {
        const Camera& camera = host().view().camera();
        QVariantMap result = position(camera.center());
        result["range"] = camera.range();
        result["azimuth"] = camera.azimuth() / kRadiansPerDegree;
        result["elevation"] = camera.elevation() / kRadiansPerDegree;
        result["eye"] = position(camera.eyePosition());
        return result;
    });
}

void ScriptView::setCamera(const QVariantMap& values) {
    step([&] {
        GlobeView& view = host().view();
        const Camera before = view.camera();
        const auto angle = [&values](const char* name, double otherwise) {
            return values.contains(name) ? values[name].toDouble() * kRadiansPerDegree : otherwise;
        };
        view.setCenter({angle("lat", before.center().lat()), angle("lon", before.center().lon()),
                        values.value("alt", before.center().alt()).toDouble()});
        view.setRangeAzimuthElevation(values.value("range", before.range()).toDouble(),
                                      angle("azimuth", before.azimuth()),
                                      angle("elevation", before.elevation()));
    });
}

QVariant ScriptView::cursor() {
    return step([&]() -> QVariant {
        const auto pixel = host().cursor();
        if (!pixel || !host().view().camera().pick(pixel->x(), pixel->y()))
            return QVariant::fromValue(nullptr);
        return ground(*pixel);
    });
}

QVariantMap ScriptView::pixel(double latitude, double longitude) {
    return step([&] {
        const Projected seen = host().view().camera().project(
            halCore::Vec3(latitude * kRadiansPerDegree, longitude * kRadiansPerDegree, 0.0));
        return QVariantMap{{"x", seen.x}, {"y", seen.y}, {"visible", seen.visible}};
    });
}

QVariant ScriptView::place(double x, double y) {
    return step([&]() -> QVariant {
        const auto ground = host().view().camera().pick(x, y);
        return ground ? QVariant(position(*ground)) : QVariant::fromValue(nullptr);
    });
}

QVariantMap ScriptView::size() {
    return {{"width", host().view().width()}, {"height", host().view().height()}};
}

double ScriptView::frameCount() {
    return static_cast<double>(host().view().frameCount());
}

double ScriptView::colorAt(int x, int y) {
    return step([&] {
        const QImage frame = host().view().grabFrame();
        const double ratio = frame.devicePixelRatio();
        const QPoint place = (QPointF(x, y) * ratio).toPoint();
        if (!frame.rect().contains(place)) throw ScriptError{"the pixel is outside of the view"};
        return static_cast<double>(frame.pixel(place));
    });
}

}  // namespace sandbox
