#pragma once

#include <functional>
#include <optional>
#include <string>

#include <ogr_feature.h>

#include "format/ZelShape.h"
#include "gdal/Columns.h"

namespace exchange {

/// Puts a shape's attributes into a feature's fields; what is not set stays unset. Columns without a field
/// are left out.
void putColumns(const halCore::ZEL::ZelShape& shape, const ColumnIndex& index, OGRFeature& feature);

/// Told what was not taken over as it stands.
using Note = std::function<void(const std::string& text)>;

/// Sets a shape's attributes from a feature's fields. `note` is told of those that cannot be read.
void takeColumns(const OGRFeature& feature, const ColumnIndex& index, halCore::ZEL::ZelShape& shape,
                 const Note& note);

/// A field as text or as a number, whatever its type; nothing for a field that is not there, not set or
/// empty, or is no number.
std::optional<std::string> textIn(const OGRFeature& feature, const ColumnIndex& index, Column column);
std::optional<double> numberIn(const OGRFeature& feature, const ColumnIndex& index, Column column);
std::optional<bool> truthIn(const OGRFeature& feature, const ColumnIndex& index, Column column);

/// Points in one text: "(1 2 3,4 5 6)"; without a bracket some drivers take it for a number.
std::string textOfPoints(const std::vector<halCore::Vec3>& points, bool geodetic);
/// Empty when the text is none.
std::vector<halCore::Vec3> pointsOfText(std::string_view text, bool geodetic);

/// A text that GDAL can hold: UTF-8, and without a zero byte.
std::string utf8(const std::string& text);

}  // namespace exchange
