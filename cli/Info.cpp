#include <algorithm>
#include <iostream>
#include <map>
#include <memory>

#include <nlohmann/json.hpp>

#include "cli/Bounds.h"
#include "cli/Columns.h"
#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "cli/Pieces.h"
#include "common/NumberText.h"
#include "common/Printable.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"

namespace cli {
namespace {

using namespace halCore::ZEL;
using Json = nlohmann::ordered_json;

struct ShapeInfo {
    std::string kind;
    std::string name;
    std::size_t points = 0;
    bool relative = false;
    Bounds bounds;
    std::string units;
};

struct FileInfo {
    std::string file;
    ParseReport report;
    std::vector<ShapeInfo> shapes;
    std::map<std::string, std::size_t> kinds;
    std::size_t points = 0;
    Bounds absolute;
    Bounds relative;
};

std::string unitsText(const UnitsState& units) {
    std::string text;
    text.append(units.altitudeUnits().abbreviation()).append(" ");
    text.append(units.rangeUnits().abbreviation()).append(" ").append(units.angleUnits().abbreviation());
    return text;
}

bool isBox(const ZelShape& shape) {
    return shape.shapeType() == ShapeType::LatLonAltBox || shape.shapeType() == ShapeType::ImageOverlay;
}

ShapeInfo describe(const ZelShape& shape) {
    ShapeInfo info;
    info.kind = ZelShape::shapeTypeToString(shape.shapeType());
    shape.getName(info.name);
    const Extent extent = extentOf(shape);
    info.points = extent.points;
    info.bounds = extent.bounds;
    // The sides of a box are always geodetic.
    info.relative = shape.isRelative() && !isBox(shape);
    info.units = unitsText(shape.originalUnits());
    return info;
}

FileInfo describe(const std::string& file, std::istream& stream) {
    FileInfo info;
    info.file = file;
    readInPieces(stream, [&info](std::istream& piece, std::size_t linesBefore) -> FinishPiece {
        struct Part {
            ParseReport report;
            std::vector<ShapeInfo> shapes;
        };
        const auto part = std::make_shared<Part>();
        part->report.linesBefore = linesBefore;
        Parser::Shapes shapes;
        Parser().parse(piece, shapes, part->report);
        for (const auto& shape : shapes) part->shapes.push_back(describe(*shape));
        return [&info, part] {
            info.report.append(std::move(part->report));
            for (ShapeInfo& one : part->shapes) {
                ++info.kinds[one.kind];
                info.points += one.points;
                (one.relative ? info.relative : info.absolute).add(one.bounds);
                info.shapes.push_back(std::move(one));
            }
        };
    });
    info.report.addUnterminatedBlock();
    return info;
}

std::string number(double value) {
    return UTILS::writeNumber(value, 9);
}

std::string boundsText(const Bounds& bounds, bool relative) {
    if (bounds.empty()) return "-";
    const halCore::Vec3& low = bounds.low();
    const halCore::Vec3& high = bounds.high();
    std::string text = relative ? "east " : "lat ";
    text.append(number(low.x())).append(" to ").append(number(high.x()));
    text.append(relative ? " m, north " : ", lon ");
    text.append(number(low.y())).append(" to ").append(number(high.y())).append(relative ? " m" : "");
    if (low.z() != 0.0 || high.z() != 0.0)
        text.append(relative ? ", up " : ", alt ")
            .append(number(low.z()))
            .append(" to ")
            .append(number(high.z()))
            .append(" m");
    return text;
}

void printTable(const FileInfo& info) {
    const std::vector<std::string> titles = {"kind", "name", "points", "units", "bounds"};
    std::vector<std::vector<std::string>> rows = {titles};
    for (const ShapeInfo& shape : info.shapes)
        rows.push_back({shape.kind, UTILS::printable(shape.name), std::to_string(shape.points), shape.units,
                        boundsText(shape.bounds, shape.relative)});
    std::vector<std::size_t> widths(titles.size());
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], columns(row[i]));
    for (const auto& row : rows)
        std::cout << "  " << padded(row[0], widths[0]) << "  " << padded(row[1], widths[1]) << "  "
                  << paddedLeft(row[2], widths[2]) << "  " << padded(row[3], widths[3]) << "  " << row[4]
                  << '\n';
}

void print(const FileInfo& info, bool summary) {
    std::cout << UTILS::printable(info.file) << '\n';
    std::cout << "  " << counted(info.report.blocks, "block") << ", " << counted(info.shapes.size(), "shape")
              << ", " << counted(info.points, "point") << ", "
              << counted(info.report.messageCount(), "message") << '\n';
    std::cout << "  kinds:";
    for (const auto& [kind, count] : info.kinds) std::cout << ' ' << kind << ' ' << count;
    std::cout << '\n';
    if (!info.absolute.empty()) std::cout << "  bounds: " << boundsText(info.absolute, false) << '\n';
    if (!info.relative.empty()) std::cout << "  relative: " << boundsText(info.relative, true) << '\n';
    if (!summary && !info.shapes.empty()) printTable(info);
}

/// Without the noise of the conversion to radians and back.
halCore::Vec3 rounded(const halCore::Vec3& position) {
    const auto round = [](double value) {
        return UTILS::readNumber(UTILS::writeNumber(value)).value_or(value);
    };
    return halCore::Vec3(round(position.x()), round(position.y()), round(position.z()));
}

Json toJson(const Bounds& bounds, bool relative) {
    if (bounds.empty()) return nullptr;
    const halCore::Vec3 low = rounded(bounds.low());
    const halCore::Vec3 high = rounded(bounds.high());
    if (relative)
        return {{"eastMin", low.x()},   {"eastMax", high.x()}, {"northMin", low.y()},
                {"northMax", high.y()}, {"upMin", low.z()},    {"upMax", high.z()}};
    return {{"south", low.x()}, {"north", high.x()},      {"west", low.y()},
            {"east", high.y()}, {"altitudeMin", low.z()}, {"altitudeMax", high.z()}};
}

Json toJson(const FileInfo& info, bool summary) {
    Json json = {{"file", info.file},
                 {"blocks", info.report.blocks},
                 {"shapes", info.shapes.size()},
                 {"points", info.points},
                 {"messages", info.report.messageCount()},
                 {"kinds", info.kinds},
                 {"bounds", toJson(info.absolute, false)},
                 {"relativeBounds", toJson(info.relative, true)}};
    if (summary) return json;
    Json list = Json::array();
    for (const ShapeInfo& shape : info.shapes)
        list.push_back({{"kind", shape.kind},
                        {"name", shape.name},
                        {"points", shape.points},
                        {"relative", shape.relative},
                        {"units", shape.units},
                        {"bounds", toJson(shape.bounds, shape.relative)}});
    json["list"] = std::move(list);
    return json;
}

}  // namespace

int info(const InfoOptions& options) {
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    Json all = Json::array();
    bool hasMessages = false;
    for (const std::string& file : files) {
        Input input(file, progress);
        const FileInfo described = describe(file, input.stream());
        progress.hide();
        if (const std::string error = input.error(); !error.empty()) {
            failures.report(file, error);
            continue;
        }
        hasMessages = hasMessages || !described.report.messages.empty();
        if (options.json)
            all.push_back(toJson(described, options.summary));
        else
            print(described, options.summary);
    }
    // Names that are not UTF-8 must not end the whole list: JSON gets a replacement character.
    if (options.json) std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    if (failures.any()) return kUnreadable;
    return hasMessages ? kMessages : kClean;
}

}  // namespace cli
