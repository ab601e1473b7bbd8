#include "gdal/Columns.h"

#include <bitset>

#include "common/Strings.h"
#include "gdal/Describe.h"
#include "gdal/NewShape.h"

namespace exchange {
namespace {

namespace ZEL = halCore::ZEL;

constexpr std::array<ColumnInfo, kColumnCount> kColumns = {{
    {"kind", OFTString},
    {"name", OFTString},
    {"text", OFTString},
    {"lat_deg", OFTReal},
    {"lon_deg", OFTReal},
    {"alt_m", OFTReal},
    {"radius_m", OFTReal},
    {"major_m", OFTReal},
    {"minor_m", OFTReal},
    {"height_m", OFTReal},
    {"start_deg", OFTReal},
    {"sweep_deg", OFTReal},
    {"lat2_deg", OFTReal},
    {"lon2_deg", OFTReal},
    {"alt2_m", OFTReal},
    {"north_deg", OFTReal},
    {"south_deg", OFTReal},
    {"west_deg", OFTReal},
    {"east_deg", OFTReal},
    {"course_deg", OFTReal},
    {"pitch_deg", OFTReal},
    {"roll_deg", OFTReal},
    {"follow", OFTString},
    {"line_color", OFTString},
    {"line_width", OFTInteger},
    {"line_style", OFTString},
    {"filled", OFTInteger, OFSTBoolean},
    {"fill_color", OFTString},
    {"outline", OFTInteger, OFSTBoolean},
    {"point_size", OFTInteger},
    {"font", OFTString},
    {"font_size", OFTInteger},
    {"halo_color", OFTString},
    {"halo", OFTString},
    {"priority", OFTReal},
    {"icon_file", OFTString},
    {"image_file", OFTString},
    {"rotate_deg", OFTReal},
    {"curve", OFTString},
    {"alt_mode", OFTString},
    {"extrude_m", OFTReal},
    {"raise_m", OFTReal},
    {"datum", OFTString},
    {"depth_test", OFTInteger, OFSTBoolean},
    {"drawn", OFTInteger, OFSTBoolean},
    {"stretch_x", OFTReal},
    {"stretch_y", OFTReal},
    {"stretch_z", OFTReal},
    {"relative", OFTInteger, OFSTBoolean},
    {"east_m", OFTReal},
    {"north_m", OFTReal},
    {"up_m", OFTReal},
    {"east2_m", OFTReal},
    {"north2_m", OFTReal},
    {"up2_m", OFTReal},
    {"reflat_deg", OFTReal},
    {"reflon_deg", OFTReal},
    {"refalt_m", OFTReal},
    {"points", OFTString},
    {"about", OFTString},
    {"alt_unit", OFTString},
    {"range_unit", OFTString},
    {"angle_unit", OFTString},
    {"comments", OFTString},
    {"tol_m", OFTReal},
    {"src_line", OFTInteger},
}};

/// Notes the columns that a kind of shape has.
class Collector {
  public:
    std::bitset<kColumnCount> columns;

    template <typename... Accessors>
    void real(Column column, const Accessors&...) {
        note(column);
    }
    template <typename... Accessors>
    void whole(Column column, const Accessors&...) {
        note(column);
    }
    template <typename... Accessors>
    void truth(Column column, const Accessors&...) {
        note(column);
    }
    template <typename... Accessors>
    void text(Column column, const Accessors&...) {
        note(column);
    }
    template <typename... Accessors>
    void color(Column column, const Accessors&...) {
        note(column);
    }
    template <typename... Accessors>
    void word(Column column, const Accessors&...) {
        note(column);
    }
    template <typename... Accessors>
    void vector(Column column, const Accessors&...) {
        for (int i = 0; i < 3; ++i) note(next(column, i));
    }

    void note(Column column) { columns.set(static_cast<std::size_t>(column)); }
};

}  // namespace

const ColumnInfo& infoOf(Column column) {
    return kColumns[static_cast<std::size_t>(column)];
}

bool ColumnIndex::add(std::string_view name, int field) {
    // What a GPX file holds beside its own.
    if (name.starts_with("ogr_")) name.remove_prefix(4);
    for (std::size_t i = 0; i < kColumnCount; ++i) {
        if (!UTILS::equalsIgnoringCase(name, kColumns[i].name)) continue;
        if (fields_[i] >= 0) return false;
        fields_[i] = field;
        return true;
    }
    return false;
}

std::vector<Column> columnsOf(ZEL::ShapeType kind) {
    Collector collector;
    const auto collect = [&collector](ZEL::ShapeType type) {
        for (const bool relative : {false, true}) {
            const ZEL::ZelShapePtr shape = newShape(type, relative);
            describe(std::as_const(*shape), collector);
        }
        if (type == ZEL::ShapeType::Points || type == ZEL::ShapeType::Line ||
            type == ZEL::ShapeType::LineSegs || type == ZEL::ShapeType::Polygon)
            collector.note(Column::Points);
        else if (type != ZEL::ShapeType::Annotation)
            collector.note(Column::Tolerance);
        for (const Column column : {Column::Kind, Column::Relative, Column::About, Column::SourceLine})
            collector.note(column);
    };
    if (kind == ZEL::ShapeType::None) {
        for (int type = 1; type <= static_cast<int>(ZEL::ShapeType::Orbit); ++type)
            collect(static_cast<ZEL::ShapeType>(type));
    } else {
        collect(kind);
    }
    std::vector<Column> columns;
    for (std::size_t i = 0; i < kColumnCount; ++i)
        if (collector.columns.test(i)) columns.push_back(static_cast<Column>(i));
    return columns;
}

}  // namespace exchange
