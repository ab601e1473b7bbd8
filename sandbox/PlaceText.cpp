#include "sandbox/PlaceText.h"

#include "geo/TypedPosition.h"

namespace sandbox {

std::optional<halCore::Vec3> readPlace(const QString& text, QString& reason) {
    const UTILS::TypedPositions typed = UTILS::readTypedPositions(text.toStdString());
    if (typed.positions.size() == 1)
        return halCore::Vec3(typed.positions.front().lat, typed.positions.front().lon, 0.0);
    reason = QString("\"%1\" is no place").arg(text.simplified());
    if (typed.positions.size() > 1)
        reason += ": these are several";
    else if (!typed.reason.empty())
        reason += ": " + QString::fromStdString(typed.reason);
    else
        reason += ". Understood are 21.3 -158, 21 18 30 N 158 W, 21:18:30N, 158:00W and 4Q FJ 12345 67890";
    return std::nullopt;
}

}  // namespace sandbox
