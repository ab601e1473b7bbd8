#include "gdal/ReadOptions.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "common/NumberText.h"
#include "gdal/Track.h"
#include "geo/Angles.h"

namespace exchange {

std::optional<halCore::ZEL::Reference> placeOfText(std::string_view text) {
    std::array<double, 4> values{};
    std::size_t count = 0;
    for (std::string_view rest = text; count < values.size(); ++count) {
        const std::size_t end = std::min(rest.find(','), rest.size());
        const std::optional<double> value = UTILS::readNumber(rest.substr(0, end));
        if (!value) return std::nullopt;
        values[count] = *value;
        if (end == rest.size()) {
            if (count < 1 || std::abs(values[0]) > 90.0) return std::nullopt;
            constexpr double k = halCore::kRadiansPerDegree;
            return halCore::ZEL::Reference{
                {values[0] * k, values[1] * k, values[2]}, values[3] * k, 0.0, 0.0};
        }
        rest.remove_prefix(end + 1);
    }
    return std::nullopt;
}

std::string textOfPlace(const halCore::ZEL::Reference& place) {
    std::string text;
    for (const double value : {degreesOf(place.position.lat()), degreesOf(place.position.lon()),
                               place.position.alt(), degreesOf(place.heading)})
        text.append(text.empty() ? "" : ",").append(UTILS::writeNumber(value, 17));
    return text;
}

}  // namespace exchange
