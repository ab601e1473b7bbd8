#include "gdal/convert/Formats.h"

#include <array>

#include "common/Strings.h"

namespace exchange {
namespace {

constexpr std::array kFormats = {
    Format{"zel", "ZEL"},
    Format{"geojson", "GeoJSON"},
    Format{"kml", "LIBKML"},
    Format{"kmz", "LIBKML"},
    Format{"gpx", "GPX", "GPX_USE_EXTENSIONS=YES", nullptr, Format::Layers::PointsAndLines},
    Format{"csv", "CSV", nullptr, "GEOMETRY=AS_WKT"},
    Format{"gpkg", "GPKG"},
    Format{"shp", "ESRI Shapefile", nullptr, "ENCODING=UTF-8", Format::Layers::OneEachType},
};

}  // namespace

std::optional<Format> formatNamed(std::string_view name) {
    for (const Format& format : kFormats)
        if (UTILS::equalsIgnoringCase(name, format.name)) return format;
    return std::nullopt;
}

std::optional<Format> formatOfFile(const std::string& file) {
    const std::size_t dot = file.find_last_of("./");
    return dot == std::string::npos || file[dot] == '/' ? std::nullopt : formatNamed(file.substr(dot + 1));
}

std::string formatNames() {
    std::string names;
    for (const Format& format : kFormats) names.append(names.empty() ? "" : ", ").append(format.name);
    return names;
}

}  // namespace exchange
