#include "globe/map/MapData.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <span>

#include "geo/Angles.h"

/// Resources of a static library are not found by themselves. (The macro does not work in a namespace.)
static void initializeBaseMap() {
    Q_INIT_RESOURCE(base_map);
}

namespace sandbox {

using halCore::kRadiansPerDegree;

namespace {

constexpr std::size_t kHeader = 8 + 4 * sizeof(double);

QByteArray file() {
    initializeBaseMap();
    QFile file(QStringLiteral(":/map/world.map"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QByteArray bytes = file.readAll();
    return bytes.startsWith("OEMAP1") && bytes.size() > static_cast<int>(kHeader) ? bytes : QByteArray();
}

std::uint32_t word(const QByteArray& bytes, qsizetype at) {
    std::uint32_t value = 0;
    for (qsizetype i = 4; i-- > 0;) value = value << 8 | static_cast<std::uint8_t>(bytes[at + i]);
    return value;
}

/// A section's text, empty when there is none.
QByteArray section(const QByteArray& bytes, std::size_t index) {
    auto at = static_cast<qsizetype>(kHeader);
    for (;; --index) {
        if (at + 8 > bytes.size()) return {};
        const std::uint32_t size = word(bytes, at);
        const auto packed = static_cast<qsizetype>(word(bytes, at + 4));
        if (at + 8 + packed > bytes.size()) return {};
        if (index > 0) {
            at += 8 + packed;
            continue;
        }
        // Qt wants the size in front, the high byte first.
        QByteArray data(4, '\0');
        for (int i = 0; i < 4; ++i) data[i] = static_cast<char>(size >> (24 - 8 * i) & 0xff);
        return qUncompress(data + bytes.mid(at + 8, packed));
    }
}

/// Reads the numbers of a level.
class Numbers {
  public:
    explicit Numbers(const QByteArray& bytes) : at_(bytes.begin()), end_(bytes.end()) {}
    bool atEnd() const { return at_ == end_; }
    std::uint32_t next() {
        std::uint32_t value = 0;
        for (int shift = 0; at_ != end_ && shift < 32; shift += 7) {
            const auto byte = static_cast<unsigned char>(*at_++);
            value |= static_cast<std::uint32_t>(byte & 127U) << shift;
            if (byte < 128) break;
        }
        return value;
    }
    int nextSigned() {
        const std::uint32_t value = next();
        return value & 1U ? -static_cast<int>(value / 2) - 1 : static_cast<int>(value / 2);
    }

  private:
    QByteArray::const_iterator at_;
    QByteArray::const_iterator end_;
};

MapLevel readLevel(std::size_t index) {
    MapLevel level;
    const QByteArray bytes = file();
    const QByteArray data = section(bytes, index);
    if (data.isEmpty()) return level;
    std::array<double, 4> grid{};  // degrees a step, degrees at step 0; longitude first
    std::memcpy(grid.data(), bytes.constData() + 8, sizeof grid);
    Numbers numbers(data);
    const auto step = static_cast<double>(numbers.next());
    int x = 0;
    int y = 0;
    while (!numbers.atEnd()) {
        MapPath path;
        path.first = level.points.size();
        path.count = numbers.next();
        path.kind = static_cast<MapPath::Kind>(numbers.next());
        for (std::size_t i = 0; i < path.count && !numbers.atEnd(); ++i) {
            x += numbers.nextSigned();
            y += numbers.nextSigned();
            level.points.push_back({static_cast<float>((y * step * grid[1] + grid[3]) * kRadiansPerDegree),
                                    static_cast<float>((x * step * grid[0] + grid[2]) * kRadiansPerDegree)});
        }
        path.count = level.points.size() - path.first;
        level.paths.push_back(path);
        const std::span<const MapPoint> points(level.points.data() + path.first, path.count);
        for (std::size_t from = 0; from < points.size(); from += MapLevel::kPart) {
            const auto part = points.subspan(from, std::min(MapLevel::kPart, points.size() - from));
            const auto [south, north] = std::ranges::minmax(part, {}, &MapPoint::lat);
            const auto [west, east] = std::ranges::minmax(part, {}, &MapPoint::lon);
            level.boxes.push_back({south.lat, north.lat, west.lon, east.lon});
        }
    }
    return level;
}

}  // namespace

const MapLevel& MapData::level(std::size_t index) {
    static std::array<std::optional<MapLevel>, kLevels> levels;
    if (!levels[index]) levels[index] = readLevel(index);
    return *levels[index];
}

const MapLevel& MapData::levelFor(double meters) {
    std::size_t index = 0;
    while (index + 1 < kLevels && kTolerances[index] > meters) ++index;
    return level(index);
}

const std::vector<MapName>& MapData::names() {
    static const std::vector<MapName> names = [] {
        std::vector<MapName> read;
        for (const QByteArray& line : section(file(), kLevels).split('\n')) {
            const QList<QByteArray> parts = line.split('\t');
            if (parts.size() == 4)
                read.push_back({parts[0].toStdString(), parts[1].toDouble() * kRadiansPerDegree,
                                parts[2].toDouble() * kRadiansPerDegree, parts[3].toDouble() * 1000.0});
        }
        return read;
    }();
    return names;
}

}  // namespace sandbox
