#pragma once

#include <QPoint>
#include <QVariant>

#include "sandbox/script/ScriptObject.h"

namespace sandbox {

/// A script's mouse in the 3-D view, and its camera. Angles are degrees here, lengths metres, pixels those
/// of the view.
class ScriptView : public ScriptObject {
    Q_OBJECT

  public:
    using ScriptObject::ScriptObject;

    /// One mouse event. `kind` is "press", "release", "move", "doubleClick" or "wheel".
    /// \param place { lat, lon } or { x, y }
    /// \param options { button: "left", modifiers: "shift+control", notches: 1 }; "space" is held as a key
    /// \return { x, y, lat, lon }: the pixel, and what lies under its middle
    Q_INVOKABLE QVariantMap mouse(const QString& kind, const QVariantMap& place, const QVariantMap& options);
    Q_INVOKABLE void leave();

    Q_INVOKABLE QVariantMap camera();
    /// Any of lat, lon, alt, range, azimuth, elevation; the others stay.
    Q_INVOKABLE void setCamera(const QVariantMap& values);
    /// Where the mouse's last pixel meets the earth; null when it does not.
    Q_INVOKABLE QVariant cursor();
    /// { x, y, visible } of a position.
    Q_INVOKABLE QVariantMap pixel(double latitude, double longitude);
    /// { lat, lon } where a pixel, fractions included, meets the earth; null when it does not.
    Q_INVOKABLE QVariant place(double x, double y);
    Q_INVOKABLE QVariantMap size();
    Q_INVOKABLE double frameCount();
    /// The colour 0xAARRGGBB of a pixel of the next frame.
    Q_INVOKABLE double colorAt(int x, int y);

  private:
    QPoint pixelOf(const QVariantMap& place) const;
    QVariantMap ground(QPoint pixel) const;

    Qt::MouseButtons held_;
    QPoint last_;
};

}  // namespace sandbox
