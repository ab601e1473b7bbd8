#include "sandbox/PlaceText.h"

#include <QStringList>

#include "geo/AngleText.h"
#include "geo/MgrsConvert.h"

namespace sandbox {

namespace {

bool readAngles(const QString& first, const QString& second, halCore::Vec3& place) {
    double lat = 0.0;
    double lon = 0.0;
    using halCore::AngleKind;
    if (halCore::readAngle(first.trimmed().toStdString(), lat,
                           {.kind = AngleKind::Latitude, .checkRange = true}) != 0 ||
        halCore::readAngle(second.trimmed().toStdString(), lon,
                           {.kind = AngleKind::Longitude, .checkRange = true}) != 0)
        return false;
    place = halCore::Vec3(lat, lon, 0.0);
    return true;
}

}  // namespace

std::optional<halCore::Vec3> readPlace(const QString& text, QString& reason) {
    halCore::Vec3 place;
    const QStringList parts = text.split(',');
    if (parts.size() == 2) {
        if (readAngles(parts[0], parts[1], place)) return place;
    } else if (parts.size() == 1) {
        // The halves are mostly equally long.
        const QStringList words = text.simplified().split(' ');
        const auto count = words.size();
        for (qsizetype off = 0; off < count; ++off)
            for (const qsizetype half : {(count - off) / 2, (count + off + 1) / 2})
                if (half > 0 && half < count &&
                    readAngles(words.mid(0, half).join(' '), words.mid(half).join(' '), place))
                    return place;
        double lat = 0.0;
        double lon = 0.0;
        if (UTILS::MgrsConvert::mgrsToGeodetic(QString(text).remove(' ').toStdString(), lat, lon) == 0)
            return halCore::Vec3(lat, lon, 0.0);
    }
    reason =
        QString(
            "\"%1\" is no place. Understood are 21.3 -158, 21 18 30 N 158 W, 21:18:30N, 158:00W and 4Q FJ "
            "12345 67890.")
            .arg(text.simplified());
    return std::nullopt;
}

}  // namespace sandbox
