#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include <ogr_feature.h>

#include "format/ShapeType.h"

namespace exchange {

/// What of a shape stands in columns. Their order is that of the layers.
enum class Column : unsigned char {
    Kind,
    Name,
    Text,
    Latitude,
    Longitude,
    Altitude,
    Radius,
    Major,
    Minor,
    Height,
    Start,
    Sweep,
    Latitude2,
    Longitude2,
    Altitude2,
    North,
    South,
    West,
    East,
    Course,
    Pitch,
    Roll,
    Follow,
    LineColor,
    LineWidth,
    LineStyle,
    Filled,
    FillColor,
    Outline,
    PointSize,
    Font,
    FontSize,
    HaloColor,
    Halo,
    Priority,
    IconFile,
    ImageFile,
    Rotation,
    Curve,
    AltitudeMode,
    Extrude,
    Raise,
    Datum,
    DepthTest,
    Drawn,
    ScaleX,
    ScaleY,
    ScaleZ,
    Relative,
    EastOffset,
    NorthOffset,
    UpOffset,
    EastOffset2,
    NorthOffset2,
    UpOffset2,
    ReferenceLatitude,
    ReferenceLongitude,
    ReferenceAltitude,
    Points,
    About,
    AltitudeUnit,
    RangeUnit,
    AngleUnit,
    Comments,
    Tolerance,
    SourceLine,
    Count
};

inline constexpr auto kColumnCount = static_cast<std::size_t>(Column::Count);

constexpr Column next(Column column, int by = 1) {
    return static_cast<Column>(static_cast<int>(column) + by);
}

/// Numbers are metres and degrees, as the name says; names have ten characters at most, as in a Shapefile.
struct ColumnInfo {
    const char* name;
    OGRFieldType type;
    OGRFieldSubType subType = OFSTNone;
};

const ColumnInfo& infoOf(Column column);

/// The position of each column among the fields of a layer, -1 where it has none.
class ColumnIndex {
  public:
    ColumnIndex() { fields_.fill(-1); }

    int operator[](Column column) const { return fields_[static_cast<std::size_t>(column)]; }
    void set(Column column, int field) { fields_[static_cast<std::size_t>(column)] = field; }
    /// Takes a field of this name, in any case; false when there is no such column, or it is taken.
    bool add(std::string_view name, int field);

  private:
    std::array<int, kColumnCount> fields_;
};

/// The columns of a kind, in their order; all for `None`.
std::vector<Column> columnsOf(halCore::ZEL::ShapeType kind);

}  // namespace exchange
