#include "format/Peers.h"

#include <charconv>
#include <cstring>
#include <sstream>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

#include "common/NumberText.h"

namespace bench {

using halCore::ZEL::Parser;

std::vector<Position> readByFromChars(const std::string& zel) {
    std::vector<Position> points;
    const char* p = zel.data();
    const char* const end = p + zel.size();
    while (p != end) {
        const auto* const stop =
            static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
        if (*p == 'l' && p[1] == 'l') {
            Position point{};
            const char* at = std::from_chars(p + 4, stop, point.lat).ptr;
            at = std::from_chars(at + 1, stop, point.lon).ptr;
            std::from_chars(at + 1, stop, point.alt);
            points.push_back(point);
        }
        p = stop + 1;
    }
    return points;
}

Parser::Shapes readZel(const std::string& zel) {
    Parser::Shapes shapes;
    Parser().parse(zel, shapes);
    return shapes;
}

namespace {

Position positionOf(simdjson::ondemand::array coordinates) {
    Position position{};
    double* const values[] = {&position.lon, &position.lat, &position.alt};
    std::size_t i = 0;
    for (auto value : coordinates) *values[i++] = value.get_double();
    return position;
}

}  // namespace

Features readBySimdjson(const std::string& geoJson) {
    static simdjson::ondemand::parser parser;
    const simdjson::padded_string padded(geoJson);
    auto document = parser.iterate(padded);
    Features features;
    for (auto item : document["features"]) {
        Feature& feature = features.emplace_back();
        auto properties = item["properties"];
        feature.name = std::string_view(properties["name"]);
        feature.lineWidth = properties["linewidth"].get_int64();
        feature.lineColor = std::string_view(properties["linecolor"]);
        feature.fillColor = std::string_view(properties["fillcolor"]);
        auto geometry = item["geometry"];
        const bool isLine = std::string_view(geometry["type"]) == "LineString";
        auto coordinates = geometry["coordinates"];
        if (isLine) {
            for (auto position : coordinates) feature.points.push_back(positionOf(position));
        } else {
            for (auto ring : coordinates)
                for (auto position : ring) feature.points.push_back(positionOf(position));
        }
    }
    return features;
}

Features readByRapidJson(const std::string& geoJson) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseFullPrecisionFlag>(geoJson.data(), geoJson.size());
    Features features;
    for (const auto& item : document["features"].GetArray()) {
        Feature& feature = features.emplace_back();
        const auto& properties = item["properties"];
        feature.name = properties["name"].GetString();
        feature.lineWidth = properties["linewidth"].GetInt();
        feature.lineColor = properties["linecolor"].GetString();
        feature.fillColor = properties["fillcolor"].GetString();
        const auto& geometry = item["geometry"];
        const auto& coordinates = geometry["coordinates"];
        const bool isLine = std::strcmp(geometry["type"].GetString(), "LineString") == 0;
        const auto& positions = isLine ? coordinates : coordinates[0];
        feature.points.reserve(positions.Size());
        for (const auto& position : positions.GetArray())
            feature.points.push_back(
                {position[0].GetDouble(), position[1].GetDouble(), position[2].GetDouble()});
    }
    return features;
}

std::string writeByToChars(const Data& data) {
    std::string out;
    char buffer[128];
    const bool isLine = data.shapes.size() == 1;
    for (std::size_t i = 0; i < data.shapes.size(); ++i) {
        out += isLine ? "start\nline\n" : "start\npolygon\n";
        for (const Position& point : data.shapes[i]) {
            std::memcpy(buffer, "lla ", 4);
            char* p = std::to_chars(buffer + 4, std::end(buffer), point.lat).ptr;
            *p++ = ' ';
            p = std::to_chars(p, std::end(buffer), point.lon).ptr;
            *p++ = ' ';
            p = std::to_chars(p, std::end(buffer), point.alt).ptr;
            *p++ = '\n';
            out.append(buffer, p);
        }
        out += "linewidth 1\nlinecolor hex 0xff00ff00\nfillcolor hex 0x4000ff00\n3d name ";
        out += shapeName(i);
        out += "\nend\n";
    }
    return out;
}

std::string writeZel(const Parser::Shapes& shapes) {
    std::ostringstream out;
    out.precision(UTILS::kSignificantDigits);
    for (const auto& shape : shapes) shape->serializeToStream(out);
    return std::move(out).str();
}

std::string writeByRapidJson(const Data& data) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    const bool isLine = data.shapes.size() == 1;
    writer.StartArray();
    for (std::size_t i = 0; i < data.shapes.size(); ++i) {
        const std::string name = shapeName(i);
        writer.StartObject();
        writer.Key("name");
        writer.String(name.data(), static_cast<rapidjson::SizeType>(name.size()));
        writer.Key("linewidth");
        writer.Int(1);
        writer.Key("linecolor");
        writer.String("0xff00ff00");
        writer.Key("fillcolor");
        writer.String("0x4000ff00");
        writer.Key("type");
        writer.String(isLine ? "LineString" : "Polygon");
        writer.Key("coordinates");
        writer.StartArray();
        for (const Position& point : data.shapes[i]) {
            writer.StartArray();
            writer.Double(point.lon);
            writer.Double(point.lat);
            writer.Double(point.alt);
            writer.EndArray();
        }
        writer.EndArray();
        writer.EndObject();
    }
    writer.EndArray();
    return std::string(buffer.GetString(), buffer.GetSize());
}

}  // namespace bench
