#include "sandbox/PositionText.h"

#include <QLocale>
#include <cmath>

#include "geo/Angles.h"

namespace sandbox {

using halCore::kPi;

namespace {

QString angleText(double radians, int degreeDigits, char positive, char negative) {
    // Thousandths of a minute, as a whole number: 59.9996' must not become 60.000'.
    const auto total = std::llround(std::abs(radians) * 180.0 / kPi * 60000.0);
    const QChar hemisphere = QChar(radians < 0.0 && total != 0 ? negative : positive);
    return QString("%1° %2.%3' %4")
        .arg(total / 60000, degreeDigits, 10, QChar('0'))
        .arg(total % 60000 / 1000, 2, 10, QChar('0'))
        .arg(total % 1000, 3, 10, QChar('0'))
        .arg(hemisphere);
}

}  // namespace

QString positionText(double latitude, double longitude) {
    return angleText(latitude, 2, 'N', 'S') + "   " + angleText(longitude, 3, 'E', 'W');
}

QString lengthText(double metres) {
    const QLocale locale = QLocale::c();
    if (metres < 1000.0) return locale.toString(metres, 'f', 0) + " m";
    if (metres < 100000.0) return locale.toString(metres / 1000.0, 'f', 2) + " km";
    return locale.toString(metres / 1000.0, 'f', 0) + " km";
}

}  // namespace sandbox
