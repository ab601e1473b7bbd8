#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/Vec3.h"
#include "format/ShapeType.h"
#include "format/UnitsState.h"

namespace halCore::ZEL {

class TextWriter;

enum class AltitudeMode : unsigned char { None, RelativeToGround, ClampToGround, Extrude };

/// One shape of an overlay file.
///
/// Lengths are metres, angles radians. A position is (latitude, longitude, altitude) for an absolute
/// shape and (east, north, up) for a relative one; which of the two is fixed at construction.
///
/// Almost every attribute is optional. `getX(out)` fills `out` and returns 0 when the attribute is set;
/// otherwise it puts the default into `out` and returns 1. Only set attributes are written.
class ZelShape {
  public:
    ZelShape(const ZelShape&) = delete;
    ZelShape& operator=(const ZelShape&) = delete;
    virtual ~ZelShape() = default;
    virtual ShapeType shapeType() const = 0;

    /// The keyword of a type, "" for `ShapeType::None`.
    static std::string_view shapeTypeToString(ShapeType type);
    /// The type of a keyword ("poly" is a polygon too), `ShapeType::None` for any other text.
    static ShapeType stringToShapeType(std::string_view keyword);

    /// Writes the shape as one block, "start" to "end". Numbers follow the stream's precision and
    /// flags; the stream's locale has no influence. An annotation without text writes nothing, with a
    /// message to the log.
    void serializeToStream(std::ostream& out) const;

    bool isRelative() const { return relative_; }
    /// Whether shapes of this class can be extruded down to the ground.
    bool canExtrude() const { return canExtrude_; }
    /// Whether shapes of this class, or the offsets that place them, can follow the host platform's angles.
    bool canFollow() const { return canFollow_; }

    /// The default name is the type's keyword.
    int getName(std::string& out) const;
    void setName(std::string_view name) {
        name_ = name;
        hasName_ = true;
    }

    /// Whether the name is written; true unless switched off.
    bool serializeName() const { return serializeName_; }
    void setSerializeName(bool serialize) { serializeName_ = serialize; }

    int getDrawn(bool& out) const;
    void setDrawn(bool drawn) { drawn_ = drawn; }

    int getDepthBufferActive(bool& out) const;
    void setDepthBufferActive(bool active) { depthBuffer_ = active; }

    int getAltitudeOffset(double& metres) const;
    void setAltitudeOffset(double metres) { extras_().altitudeOffset = metres; }

    int getAltitudeMode(AltitudeMode& out) const;
    void setAltitudeMode(AltitudeMode mode) { altitudeMode_ = mode; }

    int getExtrudeHeight(double& metres) const;
    void setExtrudeHeight(double metres) { extras_().extrudeHeight = metres; }

    /// Geodetic; the point about which relative positions are placed.
    int getReferencePosition(Vec3& out) const;
    void setReferencePosition(const Vec3& position) { extras_().referencePosition = position; }

    int getScale(Vec3& out) const;
    void setScale(const Vec3& scale) { extras_().scale = scale; }

    int getFollowYaw(bool& out) const;
    int getFollowPitch(bool& out) const;
    int getFollowRoll(bool& out) const;
    void setFollowYaw(bool follow) { followYaw_ = follow; }
    void setFollowPitch(bool follow) { followPitch_ = follow; }
    void setFollowRoll(bool follow) { followRoll_ = follow; }

    int getYawOffset(double& radians) const;
    int getPitchOffset(double& radians) const;
    int getRollOffset(double& radians) const;
    void setYawOffset(double radians) { extras_().yawOffset = radians; }
    void setPitchOffset(double radians) { extras_().pitchOffset = radians; }
    void setRollOffset(double radians) { extras_().rollOffset = radians; }

    /// Default "wgs84".
    int getVerticalDatum(std::string& out) const;
    void setVerticalDatum(std::string_view datum) { extras_().verticalDatum = std::string(datum); }

    /// Whole comment lines, comment mark included.
    const std::vector<std::string>& comments() const { return comments_; }
    void addComment(std::string_view line) { comments_.emplace_back(line); }
    void setComments(std::vector<std::string> lines) { comments_ = std::move(lines); }
    std::vector<std::string> takeComments() { return std::exchange(comments_, {}); }

    /// Whether any of those attributes may be set that few shapes have: offsets of altitude and angles, how
    /// far it is extruded, a reference, a scale, a vertical datum.
    bool hasRareAttributes() const { return rare_ != nullptr; }

    /// The units the shape was read with; the writer uses them again.
    const UnitsState& originalUnits() const { return *units_; }
    void setOriginalUnits(const UnitsState& units);

  protected:
    ZelShape(bool relative, bool canExtrude, bool canFollow)
        : relative_(relative), canExtrude_(canExtrude), canFollow_(canFollow) {}

    /// Writes the lines that only this type of shape has, its keyword first.
    virtual void serializeToStream_(std::ostream& out) const = 0;

    void serializeKeyword_(TextWriter& writer) const;
    /// One line: the keyword and a position in file units.
    void serializePosition_(TextWriter& writer, std::string_view keyword, const Vec3& position) const;
    /// One line a point, "xyz" or "lla".
    void serializePoints_(TextWriter& writer, std::span<const Vec3> points) const;
    void serializeRange_(TextWriter& writer, std::string_view keyword, double metres) const;
    void serializeAltitude_(TextWriter& writer, std::string_view keyword, double metres) const;
    void serializeAngle_(TextWriter& writer, std::string_view keyword, double radians) const;

  private:
    /// What few shapes set; apart from the others, so that many small shapes stay small.
    struct Extras {
        std::optional<double> altitudeOffset;
        std::optional<double> extrudeHeight;
        std::optional<Vec3> referencePosition;
        std::optional<Vec3> scale;
        std::optional<double> yawOffset;
        std::optional<double> pitchOffset;
        std::optional<double> rollOffset;
        std::optional<std::string> verticalDatum;
        UnitsState units;
    };

    static const UnitsState kDefaultUnits;

    Extras& extras_() {
        if (!rare_) rare_ = std::make_unique<Extras>();
        return *rare_;
    }
    template <typename T>
    int getExtra_(std::optional<T> Extras::*field, T& out, const T& defaultValue) const;
    void serializeCommonLines_(TextWriter& writer) const;
    void serializePositions_(TextWriter& writer, std::string_view keyword,
                             std::span<const Vec3> positions) const;
    void serializeNameLine_(TextWriter& writer) const;
    void serializeFollow_(TextWriter& writer, const Extras& rare) const;

    bool relative_;
    bool canExtrude_;
    bool canFollow_;
    bool serializeName_ = true;
    bool hasName_ = false;
    std::optional<bool> drawn_;
    std::optional<bool> depthBuffer_;
    std::optional<bool> followYaw_;
    std::optional<bool> followPitch_;
    std::optional<bool> followRoll_;
    std::optional<AltitudeMode> altitudeMode_;
    std::string name_;
    std::vector<std::string> comments_;
    std::unique_ptr<Extras> rare_;
    /// Its own, or some that many shapes have.
    const UnitsState* units_ = &kDefaultUnits;
};

using ZelShapePtr = std::shared_ptr<ZelShape>;

}  // namespace halCore::ZEL
