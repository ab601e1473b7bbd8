#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/Vec3.h"
#include "format/PositionStrings.h"
#include "format/ShapeParameter.h"
#include "format/ShapeType.h"
#include "format/TextFields.h"

namespace halCore::ZEL {

/// One block as read, before its units are known: attributes as text, in one buffer; points as numbers in
/// file units, in one vector. Meant to be used again for block after block.
class ParsedShape {
  public:
    enum class PointType { None = 0, Absolute = 1, Relative = 2 };

    /// Forgets everything, but keeps its memory for the next block.
    void reset();

    /// The line of the block's "start", from 1.
    void setLineNumber(std::size_t line) { lineNumber_ = line; }
    std::size_t lineNumber() const { return lineNumber_; }

    void setShape(ShapeType type) { shape_ = type; }
    ShapeType shape() const { return shape_; }

    void set(ShapeParameter parameter, std::string_view value) {
        const auto index = static_cast<std::size_t>(parameter);
        if (index < kFirstPosition) texts_.set(index, value);
    }
    /// The same for a text that stays where it is until `copyViewed`, or until the record is forgotten.
    void view(ShapeParameter parameter, std::string_view value) {
        const auto index = static_cast<std::size_t>(parameter);
        if (index < kFirstPosition) texts_.view(index, value);
    }
    void copyViewed() { texts_.copyViewed(); }
    void set(ShapeParameter parameter, const PositionStrings& value);

    /// Adds a point. The first one decides the record's kind; false, and nothing added, for the kind None
    /// or one other than the record's. A point whose texts are no numbers counts as given, not as read.
    bool append(PointType type, const PositionStrings& position);
    bool append(PointType type, std::string_view x, std::string_view y, std::string_view z);
    /// Adds a point already read: latitude and longitude in radians, or x and y in range units; altitude
    /// or z in altitude units.
    bool append(PointType type, const Vec3& point) {
        if (!accepts(type)) return false;
        pointType_ = type;
        points_.push_back(point);
        return true;
    }

    /// Adds points already read, of a kind that is accepted.
    /// \param more how many may follow at most, so that a long list grows once rather than step by step
    void append(PointType type, std::span<const Vec3> points, std::size_t more) {
        pointType_ = type;
        if (points.size() > points_.capacity() - points_.size()) grow_(points.size(), more);
        points_.insert(points_.end(), points.begin(), points.end());
    }
    /// Whether points of this kind are added.
    bool accepts(PointType type) const {
        return type != PointType::None && (pointType_ == type || pointType_ == PointType::None);
    }

    void addComment(std::string_view line) { comments_.emplace_back(line); }

    bool hasValue(ShapeParameter parameter) const {
        return (present_() >> static_cast<std::size_t>(parameter) & 1) != 0;
    }
    /// Whether any of some attributes is set.
    template <std::same_as<ShapeParameter>... Parameters>
    bool hasAnyOf(Parameters... parameters) const {
        return (present_() & (... | (1ULL << static_cast<std::size_t>(parameters)))) != 0;
    }
    /// Whether any attribute from `first` to `last` of the enumeration is set.
    bool hasAny(ShapeParameter first, ShapeParameter last) const {
        return (present_() >> static_cast<std::size_t>(first) &
                ((2ULL << (static_cast<std::size_t>(last) - static_cast<std::size_t>(first))) - 1)) != 0;
    }
    std::string stringValue(ShapeParameter parameter, std::string_view defaultValue = {}) const;
    /// The default for a text that is no number.
    double doubleValue(ShapeParameter parameter, double defaultValue = 0.0) const;
    bool boolValue(ShapeParameter parameter, bool defaultValue = false) const;
    PositionStrings positionValue(ShapeParameter parameter) const;

    /// The text of an attribute, empty when it is not set; valid until the record changes.
    std::string_view text(ShapeParameter parameter) const {
        const auto index = static_cast<std::size_t>(parameter);
        return index < kFirstPosition ? texts_.get(index) : std::string_view();
    }

    /// All points given, as text (degrees for absolute ones), in file order.
    std::vector<PositionStrings> positions() const;
    PointType pointType() const { return pointType_; }
    std::size_t pointsGiven() const { return points_.size() + unread_.size(); }
    /// The points that could be read, as in `append(PointType, Vec3)`.
    const std::vector<Vec3>& points() const { return points_; }
    /// The same, taken out: many are moved rather than copied.
    std::vector<Vec3> takePoints();
    /// Whether the first point given could be read.
    bool firstPointRead() const {
        return !points_.empty() && (unread_.empty() || unread_.front().first != 0);
    }

    const std::vector<std::string>& comments() const { return comments_; }
    std::vector<std::string> takeComments() { return std::exchange(comments_, {}); }

  private:
    static_assert(kParameterCount <= 64);
    static constexpr auto kFirstPosition = static_cast<std::size_t>(ShapeParameter::CenterAbsolute);

    void grow_(std::size_t points, std::size_t more);
    std::uint64_t present_() const { return texts_.present() | positionsPresent_; }

    std::size_t lineNumber_ = 0;
    ShapeType shape_ = ShapeType::None;
    PointType pointType_ = PointType::None;
    TextFields<kFirstPosition> texts_;
    /// A bit for each position that is set, where the enumeration has it.
    std::uint64_t positionsPresent_ = 0;
    std::array<PositionStrings, kParameterCount - kFirstPosition> positionValues_;
    std::vector<Vec3> points_;
    /// Points that could not be read, each with its number among all points given.
    std::vector<std::pair<std::size_t, PositionStrings>> unread_;
    std::vector<std::string> comments_;
};

}  // namespace halCore::ZEL
