#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace exchange {

/// What another format takes.
struct Format {
    const char* name;
    const char* driver;
    /// One option of the dataset and of the layer each; null for none.
    const char* datasetOption = nullptr;
    const char* layerOption = nullptr;
    /// How geometries are divided among layers: all in one; points and lines, as GPX has them; or one file
    /// for each type.
    enum class Layers { One, PointsAndLines, OneEachType } layers = Layers::One;
};

/// The format of a name ("geojson") or a file's suffix, in any case; nothing for others.
std::optional<Format> formatNamed(std::string_view name);
std::optional<Format> formatOfFile(const std::string& file);

/// "zel, geojson, ..."
std::string formatNames();

}  // namespace exchange
