#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/Bounds.h"
#include "cli/Columns.h"
#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Messages.h"
#include "cli/Pieces.h"
#include "cli/TextView.h"
#include "common/NumberText.h"
#include "common/Printable.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"

namespace cli {
namespace {

using namespace halCore::ZEL;
using Json = nlohmann::ordered_json;

struct ShapeInfo {
    std::string_view kind;
    std::string name;
    std::size_t points = 0;
    bool relative = false;
    Bounds bounds;
    std::string units;
};

/// The columns of the list.
constexpr std::array<std::string_view, 5> kTitles = {"kind", "name", "points", "units", "bounds"};
using Row = std::array<std::string, kTitles.size()>;
using Widths = std::array<std::size_t, kTitles.size()>;

/// What is in a file, or in a part of one. Of very many shapes there is no room for a list: it is made anew
/// when it is printed.
struct FileInfo {
    ParseReport report;
    std::map<std::string_view, std::size_t> kinds;
    std::size_t points = 0;
    Bounds absolute;
    Bounds relative;
    Widths widths{};
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

Row rowOf(const ShapeInfo& shape) {
    return {std::string(shape.kind), UTILS::printable(shape.name), std::to_string(shape.points), shape.units,
            boundsText(shape.bounds, shape.relative)};
}

std::string tableLine(const Row& row, const Widths& widths) {
    std::string line;
    line.append("  ").append(padded(row[0], widths[0])).append("  ").append(padded(row[1], widths[1]));
    line.append("  ").append(paddedLeft(row[2], widths[2])).append("  ").append(padded(row[3], widths[3]));
    return line.append("  ").append(row[4]).append("\n");
}

/// Reads a text on all cores, and has what is made of each piece taken in order.
/// \param Made what is made of a piece, as it is at first \param add is told of one of its shapes
/// \param take gets it, with what is to be told of the piece
template <typename Made, typename Add, typename Take>
void readShapes(std::istream& text, const Add& add, const Take& take) {
    // What is made of the text that waits may be ten times as large.
    constexpr PieceLimits limits{.waiting = std::size_t(4) << 20U};
    readInPieces(
        text,
        [&](std::istream& piece, std::size_t linesBefore) -> FinishPiece {
            const auto part = std::make_shared<std::pair<ParseReport, Made>>();
            part->first.linesBefore = linesBefore;
            Parser::Shapes shapes;
            Parser().parse(piece, shapes, part->first);
            for (const auto& shape : shapes) add(describe(*shape), part->second);
            return [&take, part] { take(std::move(part->first), std::move(part->second)); };
        },
        limits);
}

/// \param forTable whether the list's widths are asked for
FileInfo describe(std::istream& stream, bool forTable) {
    FileInfo info;
    std::ranges::transform(kTitles, info.widths.begin(), columns);
    readShapes<FileInfo>(
        stream,
        [&](const ShapeInfo& shape, FileInfo& part) {
            ++part.kinds[shape.kind];
            part.points += shape.points;
            (shape.relative ? part.relative : part.absolute).add(shape.bounds);
            if (!forTable) return;
            const Row row = rowOf(shape);
            for (std::size_t i = 0; i < row.size(); ++i)
                part.widths[i] = std::max(part.widths[i], columns(row[i]));
        },
        [&](ParseReport report, const FileInfo& part) {
            info.report.append(std::move(report));
            for (const auto& [kind, count] : part.kinds) info.kinds[kind] += count;
            info.points += part.points;
            info.absolute.add(part.absolute);
            info.relative.add(part.relative);
            for (std::size_t i = 0; i < kTitles.size(); ++i)
                info.widths[i] = std::max(info.widths[i], part.widths[i]);
        });
    info.report.addUnterminatedBlock();
    return info;
}

void print(const std::string& file, const FileInfo& info) {
    std::cout << UTILS::printable(file) << '\n';
    std::cout << "  " << counted(info.report.blocks, "block") << ", " << counted(info.report.shapes, "shape")
              << ", " << counted(info.points, "point") << ", "
              << counted(info.report.messageCount(), "message") << '\n';
    std::cout << "  kinds:";
    for (const auto& [kind, count] : info.kinds) std::cout << ' ' << kind << ' ' << count;
    std::cout << '\n';
    if (!info.absolute.empty()) std::cout << "  bounds: " << boundsText(info.absolute, false) << '\n';
    if (!info.relative.empty()) std::cout << "  relative: " << boundsText(info.relative, true) << '\n';
}

void printTable(const FileInfo& info, std::string_view text) {
    if (info.report.shapes == 0) return;
    Row titles;
    std::ranges::copy(kTitles, titles.begin());
    std::cout << tableLine(titles, info.widths);
    TextView view(text);
    std::istream stream(&view);
    readShapes<std::string>(
        stream,
        [&](const ShapeInfo& shape, std::string& lines) { lines += tableLine(rowOf(shape), info.widths); },
        [](const ParseReport&, std::string_view lines) { std::cout << lines; });
}

struct NamedNumber {
    const char* name;
    double value;
};

std::array<NamedNumber, 6> named(const Bounds& bounds, bool relative) {
    const halCore::Vec3& low = bounds.low();
    const halCore::Vec3& high = bounds.high();
    if (relative)
        return {{{"eastMin", low.x()},
                 {"eastMax", high.x()},
                 {"northMin", low.y()},
                 {"northMax", high.y()},
                 {"upMin", low.z()},
                 {"upMax", high.z()}}};
    return {{{"south", low.x()},
             {"north", high.x()},
             {"west", low.y()},
             {"east", high.y()},
             {"altitudeMin", low.z()},
             {"altitudeMax", high.z()}}};
}

Json toJson(const Bounds& bounds, bool relative) {
    if (bounds.empty()) return nullptr;
    Json json;
    for (const auto& [name, value] : named(bounds, relative))
        // Without the noise of the conversion to radians and back.
        json[name] = UTILS::readNumber(UTILS::writeNumber(value)).value_or(value);
    return json;
}

Json toJson(const std::string& file, const FileInfo& info) {
    return {{"file", file},
            {"blocks", info.report.blocks},
            {"shapes", info.report.shapes},
            {"points", info.points},
            {"messages", info.report.messageCount()},
            {"kinds", info.kinds},
            {"bounds", toJson(info.absolute, false)},
            {"relativeBounds", toJson(info.relative, true)}};
}

std::string dumped(const Json& json) {
    // Names that are not UTF-8 must not end the whole list: they get a replacement character.
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

/// A number as the summary has it: with a fraction.
void appendNumber(std::string& text, double value) {
    std::array<char, UTILS::kMaxNumberLength> buffer;
    const std::string_view number(buffer.data(), UTILS::writeNumber(buffer.data(), value));
    text.append(std::isfinite(value) ? number : "null");
    if (std::isfinite(value) && number.find_first_of(".e") == number.npos) text.append(".0");
}

/// One of the list, behind a comma. A tree of each of very many would take most of the time.
void appendJson(std::string& text, const ShapeInfo& shape) {
    constexpr std::string_view line = "\n        ";
    text.append(",\n      {").append(line).append("\"kind\": \"").append(shape.kind);
    text.append("\",").append(line).append("\"name\": ").append(dumped(shape.name));
    text.append(",").append(line).append("\"points\": ").append(std::to_string(shape.points));
    text.append(",").append(line).append("\"relative\": ").append(shape.relative ? "true" : "false");
    text.append(",").append(line).append("\"units\": \"").append(shape.units);
    text.append("\",").append(line).append("\"bounds\": ");
    if (shape.bounds.empty()) {
        text.append("null\n      }");
        return;
    }
    std::string_view between = "{";
    for (const auto& [name, value] : named(shape.bounds, shape.relative)) {
        text.append(std::exchange(between, ",")).append(line).append("  \"").append(name).append("\": ");
        appendNumber(text, value);
    }
    text.append(line).append("}\n      }");
}

/// One of a list of files.
/// \param text null when the shapes are not listed
void printJson(const std::string& file, const FileInfo& info, const std::string* text) {
    std::string summary = "  ";
    for (const char c : dumped(toJson(file, info))) summary.append(1, c).append(c == '\n' ? 2 : 0, ' ');
    if (!text) {
        std::cout << summary;
        return;
    }
    constexpr std::string_view end = "\n  }";
    std::cout << std::string_view(summary).substr(0, summary.size() - end.size()) << ",\n    \"list\": [";
    // Each behind a comma, but for the first.
    bool isFirst = true;
    TextView view(*text);
    std::istream stream(&view);
    readShapes<std::string>(
        stream, [](const ShapeInfo& shape, std::string& lines) { appendJson(lines, shape); },
        [&isFirst](const ParseReport&, std::string_view lines) {
            if (!lines.empty()) std::cout << lines.substr(std::exchange(isFirst, false) ? 1 : 0);
        });
    std::cout << (info.report.shapes > 0 ? "\n    ]" : "]") << end;
}

}  // namespace

int info(const InfoOptions& options) {
    Failures failures;
    const std::vector<std::string> files = inputFiles(options.files, options.recursive, failures);
    Progress progress(totalSize(files));
    bool hasMessages = false;
    bool isFirst = true;
    if (options.json) std::cout << '[';
    for (const std::string& file : files) {
        Input input(file, progress);
        // What is listed is read twice.
        const std::string text = options.summary ? std::string() : input.readAll();
        TextView view(text);
        std::istream again(&view);
        const FileInfo described =
            describe(options.summary ? input.stream() : again, !options.summary && !options.json);
        progress.hide();
        if (const std::string error = input.error(); !error.empty()) {
            failures.report(file, error);
            continue;
        }
        hasMessages = hasMessages || !described.report.messages.empty();
        if (options.json) {
            std::cout << (std::exchange(isFirst, false) ? "\n" : ",\n");
            printJson(file, described, options.summary ? nullptr : &text);
            continue;
        }
        print(file, described);
        if (!options.summary) printTable(described, text);
    }
    if (options.json) std::cout << (isFirst ? "]\n" : "\n]\n");
    if (failures.any()) return kUnreadable;
    return hasMessages ? kMessages : kClean;
}

}  // namespace cli
