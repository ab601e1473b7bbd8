#include "format/ParsedShape.h"

#include <algorithm>

#include "common/Strings.h"
#include "format/FileNumber.h"
#include "geo/Angles.h"

namespace halCore::ZEL {
namespace {

/// What a record may keep for the next block; a larger one gives its memory back.
constexpr std::size_t kKeptPoints = 1 << 16;

constexpr std::size_t indexOf(ShapeParameter parameter) {
    return static_cast<std::size_t>(parameter);
}

template <typename Container>
void clear(Container& container, std::size_t kept) {
    if (container.capacity() > kept)
        container = Container();
    else
        container.clear();
}

}  // namespace

void ParsedShape::reset() {
    lineNumber_ = 0;
    shape_ = ShapeType::None;
    pointType_ = PointType::None;
    texts_.clear();
    positionsPresent_ = 0;
    clear(points_, kKeptPoints);
    clear(unread_, 0);
    comments_.clear();
}

void ParsedShape::set(ShapeParameter parameter, const PositionStrings& value) {
    const std::size_t index = indexOf(parameter);
    if (index < kFirstPosition) return;
    positionValues_[index - kFirstPosition] = value;
    positionsPresent_ |= 1ULL << index;
}

bool ParsedShape::append(PointType type, const PositionStrings& position) {
    return append(type, position.x(), position.y(), position.z());
}

bool ParsedShape::append(PointType type, std::string_view x, std::string_view y, std::string_view z) {
    if (!accepts(type)) return false;
    pointType_ = type;
    const bool absolute = type == PointType::Absolute;
    const auto first = absolute ? readFileDegrees(x, AngleKind::Latitude) : readFileNumber(x);
    const auto second = absolute ? readFileDegrees(y, AngleKind::Longitude) : readFileNumber(y);
    if (first && second)
        points_.emplace_back(*first, *second, readFileNumber(z).value_or(0.0));
    else
        unread_.emplace_back(pointsGiven(), PositionStrings(x, y, z));
    return true;
}

void ParsedShape::grow_(std::size_t points, std::size_t more) {
    // What follows may be other blocks: only a list that is long already is taken to go on.
    constexpr std::size_t isLong = 1024;
    constexpr std::size_t most = 16;
    const std::size_t size = points_.size();
    if (size < isLong) return;
    points_.reserve(std::max(2 * size, std::min(size + points + more, most * size)));
}

std::vector<Vec3> ParsedShape::takePoints() {
    // A few are copied: their list keeps its memory for the next block. So are those of a list that has taken
    // far more memory than it needed.
    const bool isFull = points_.size() > points_.capacity() / 2;
    return points_.capacity() > kKeptPoints && isFull ? std::exchange(points_, {}) : points_;
}

std::string ParsedShape::stringValue(ShapeParameter parameter, std::string_view defaultValue) const {
    return std::string(hasValue(parameter) ? text(parameter) : defaultValue);
}

double ParsedShape::doubleValue(ShapeParameter parameter, double defaultValue) const {
    return readFileNumber(text(parameter)).value_or(defaultValue);
}

bool ParsedShape::boolValue(ShapeParameter parameter, bool defaultValue) const {
    return hasValue(parameter) ? UTILS::stringIsTrueToken(text(parameter)) : defaultValue;
}

PositionStrings ParsedShape::positionValue(ShapeParameter parameter) const {
    const std::size_t index = indexOf(parameter);
    if (index < kFirstPosition || !hasValue(parameter)) return {};
    return positionValues_[index - kFirstPosition];
}

std::vector<PositionStrings> ParsedShape::positions() const {
    const double scale = pointType_ == PointType::Absolute ? kDegreesPerRadian : 1.0;
    std::vector<PositionStrings> result;
    result.reserve(pointsGiven());
    auto unread = unread_.begin();
    for (const Vec3& point : points_) {
        for (; unread != unread_.end() && unread->first == result.size(); ++unread)
            result.push_back(unread->second);
        result.emplace_back(exactNumberText(point.x() * scale), exactNumberText(point.y() * scale),
                            exactNumberText(point.z()));
    }
    for (; unread != unread_.end(); ++unread) result.push_back(unread->second);
    return result;
}

}  // namespace halCore::ZEL
