#include "format/Data.h"

#include <cmath>
#include <random>

#include "common/NumberText.h"

namespace bench {
namespace {

Data makeData(std::size_t shapeCount, std::size_t pointsEach, bool isLine, int decimals) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const auto rounded = [decimals](double value) {
        const std::string text =
            decimals > 0 ? UTILS::writeFixed(value, decimals) : UTILS::writeNumber(value);
        return UTILS::readNumber(text).value_or(0.0);
    };
    Data data;
    data.points = shapeCount * pointsEach;
    data.geoJson = "{\"type\":\"FeatureCollection\",\"features\":[";
    for (std::size_t i = 0; i < shapeCount; ++i) {
        std::vector<Position>& positions = data.shapes.emplace_back();
        for (std::size_t k = 0; k < pointsEach; ++k)
            positions.push_back({rounded(180.0 * unit(random)), rounded(90.0 * unit(random)),
                                 std::floor(500.0 + 500.0 * unit(random))});
        const std::string name = shapeName(i);
        data.zel.append(isLine ? "start\nline\n" : "start\npolygon\n");
        data.geoJson.append(i == 0 ? "" : ",");
        data.geoJson.append("{\"type\":\"Feature\",\"properties\":{\"name\":\"").append(name);
        data.geoJson.append("\",\"linewidth\":1,\"linecolor\":\"0xff00ff00\",\"fillcolor\":\"0x4000ff00\"},");
        data.geoJson.append(isLine ? "\"geometry\":{\"type\":\"LineString\",\"coordinates\":["
                                   : "\"geometry\":{\"type\":\"Polygon\",\"coordinates\":[[");
        for (const Position& p : positions) {
            const std::string lon = UTILS::writeNumber(p.lon);
            const std::string lat = UTILS::writeNumber(p.lat);
            const std::string alt = UTILS::writeNumber(p.alt);
            data.zel.append("lla ").append(lat).append(" ").append(lon).append(" ").append(alt).append("\n");
            data.geoJson.append(&p == &positions.front() ? "[" : ",[");
            data.geoJson.append(lon).append(",").append(lat).append(",").append(alt).append("]");
        }
        data.zel.append("linewidth 1\nlinecolor hex 0xff00ff00\nfillcolor hex 0x4000ff00\n3d name ");
        data.zel.append(name).append("\nend\n\n");
        data.geoJson.append(isLine ? "]}}" : "]]}}");
    }
    data.geoJson.append("]}");
    return data;
}

}  // namespace

std::string shapeName(std::size_t index) {
    return "Shape " + std::to_string(index);
}

const Data& line() {
    static const Data data = makeData(1, 1'000'000, true, 6);
    return data;
}

const Data& longNumbers() {
    static const Data data = makeData(1, 1'000'000, true, 0);
    return data;
}

const Data& smallShapes() {
    static const Data data = makeData(100'000, 10, false, 6);
    return data;
}

}  // namespace bench
