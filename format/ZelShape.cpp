#include "format/ZelShape.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <sstream>

#include "common/Notify.h"
#include "common/Strings.h"
#include "format/Annotation.h"
#include "format/KeptLines.h"
#include "format/LabelText.h"
#include "format/LengthScale.h"
#include "format/OptionalField.h"
#include "format/TextWriter.h"
#include "geo/Angles.h"

namespace halCore::ZEL {
namespace {

constexpr std::array<std::string_view, 17> kKeywords = {
    "",           "annotation",   "points",  "line",         "linesegs", "polygon",
    "arc",        "circle",       "ellipse", "ellipsoid",    "cylinder", "sphere",
    "hemisphere", "latlonaltbox", "cone",    "imageoverlay", "orbit"};

/// A comment must stay a comment, whoever made it: each of its lines gets a mark when it has none.
void serializeComment(TextWriter& writer, std::string_view comment) {
    while (true) {
        const std::size_t length = std::min(comment.find('\n'), comment.size());
        const std::string_view line = comment.substr(0, length);
        const bool marked = line.starts_with('#') || line.starts_with('/') ||
                            UTILS::equalsIgnoringCase(line.substr(0, line.find_first_of(" \t")), "comment");
        if (!marked) writer.text("# ");
        writer.text(line).endLine();
        if (length == comment.size()) return;
        comment.remove_prefix(length + 1);
    }
}

}  // namespace

const UnitsState ZelShape::kDefaultUnits;

void ZelShape::setOriginalUnits(const UnitsState& units) {
    if (units.isSurely(UnitsState::metric())) {
        units_ = &UnitsState::metric();
    } else {
        extras_().units = units;
        units_ = &rare_->units;
    }
}

std::string_view ZelShape::shapeTypeToString(ShapeType type) {
    const auto index = static_cast<std::size_t>(type);
    return index < kKeywords.size() ? kKeywords[index] : std::string_view();
}

ShapeType ZelShape::stringToShapeType(std::string_view keyword) {
    if (keyword == "poly") return ShapeType::Polygon;
    const auto found = std::find(kKeywords.begin(), kKeywords.end(), keyword);
    return found == kKeywords.end() ? ShapeType::None : static_cast<ShapeType>(found - kKeywords.begin());
}

int ZelShape::getName(std::string& out) const {
    if (hasName_) {
        out = name_;
        return 0;
    }
    out = shapeTypeToString(shapeType());
    return 1;
}

template <typename T>
int ZelShape::getExtra_(std::optional<T> Extras::*field, T& out, const T& defaultValue) const {
    return getField(rare_ ? (*rare_).*field : std::nullopt, out, defaultValue);
}

int ZelShape::getDrawn(bool& out) const {
    return getField(drawn_, out, true);
}
int ZelShape::getDepthBufferActive(bool& out) const {
    return getField(depthBuffer_, out, true);
}
int ZelShape::getAltitudeOffset(double& metres) const {
    return getExtra_(&Extras::altitudeOffset, metres, 0.0);
}
int ZelShape::getAltitudeMode(AltitudeMode& out) const {
    return getField(altitudeMode_, out, AltitudeMode::None);
}
int ZelShape::getExtrudeHeight(double& metres) const {
    return getExtra_(&Extras::extrudeHeight, metres, 0.0);
}
int ZelShape::getReferencePosition(Vec3& out) const {
    return getExtra_(&Extras::referencePosition, out, Vec3());
}
int ZelShape::getScale(Vec3& out) const {
    return getExtra_(&Extras::scale, out, Vec3(1.0, 1.0, 1.0));
}
int ZelShape::getFollowYaw(bool& out) const {
    return getField(followYaw_, out, false);
}
int ZelShape::getFollowPitch(bool& out) const {
    return getField(followPitch_, out, false);
}
int ZelShape::getFollowRoll(bool& out) const {
    return getField(followRoll_, out, false);
}
int ZelShape::getYawOffset(double& radians) const {
    return getExtra_(&Extras::yawOffset, radians, 0.0);
}
int ZelShape::getPitchOffset(double& radians) const {
    return getExtra_(&Extras::pitchOffset, radians, 0.0);
}
int ZelShape::getRollOffset(double& radians) const {
    return getExtra_(&Extras::rollOffset, radians, 0.0);
}
int ZelShape::getVerticalDatum(std::string& out) const {
    return getExtra_(&Extras::verticalDatum, out, std::string("wgs84"));
}

void ZelShape::serializeToStream(std::ostream& out) const {
    if (shapeType() == ShapeType::Annotation) {
        std::string text;
        static_cast<const Annotation&>(*this).getText(text);
        if (text.empty()) {
            // The reader would refuse the line, and the whole block with it.
            if (halNotify::isNotifyEnabled(halNotify::Error)) {
                std::string name;
                getName(name);
                halNotify::notify(halNotify::Error)
                    << "Annotation " << name << " has no text, it is not written";
            }
            return;
        }
    }
    {
        TextWriter writer(out);
        writer.text("start\n");
        for (const std::string& comment : comments_) serializeComment(writer, comment);
    }
    serializeToStream_(out);
    TextWriter writer(out);
    serializeCommonLines_(writer);
    writer.text("end\n");
}

void ZelShape::serializeCommonLines_(TextWriter& writer) const {
    const Extras none;
    const Extras& rare = rare_ ? *rare_ : none;
    serializeNameLine_(writer);
    if (drawn_ && !*drawn_) writer.text("off\n");
    if (rare.altitudeOffset) serializeAltitude_(writer, "3d offsetalt ", *rare.altitudeOffset);
    if (depthBuffer_) writer.text("depthbuffer ").trueFalse(*depthBuffer_).endLine();
    if (altitudeMode_) {
        switch (*altitudeMode_) {
            case AltitudeMode::None:
                writer.text("altitudemode none\n");
                break;
            case AltitudeMode::RelativeToGround:
                writer.text("altitudemode relativetoground\n");
                break;
            case AltitudeMode::ClampToGround:
                writer.text("altitudemode clamptoground\n");
                break;
            case AltitudeMode::Extrude:
                if (rare.extrudeHeight)
                    serializeAltitude_(writer, "extrude true ", *rare.extrudeHeight);
                else
                    writer.text("extrude true\n");
                break;
        }
    }
    if (rare.referencePosition) {
        // Geodetic even for a relative shape.
        const Vec3& position = *rare.referencePosition;
        writer.line("ref ", {position.lat() * kDegreesPerRadian, position.lon() * kDegreesPerRadian,
                             LengthScale(originalUnits().altitudeUnits()).fromMetres(position.alt())});
    }
    if (rare.scale) writer.line("scale ", *rare.scale);
    if (rare.verticalDatum) writer.text("verticaldatum ").text(nameInLine(*rare.verticalDatum)).endLine();
    if (originalUnits().hasAltitudeUnits())
        writer.text("altitudeunits ").text(originalUnits().altitudeUnits().abbreviation()).endLine();
    if (originalUnits().hasAngleUnits())
        writer.text("angleunits ").text(originalUnits().angleUnits().abbreviation()).endLine();
    if (originalUnits().hasRangeUnits())
        writer.text("rangeunits ").text(originalUnits().rangeUnits().abbreviation()).endLine();
    serializeFollow_(writer, rare);
}

void ZelShape::serializeNameLine_(TextWriter& writer) const {
    if (!serializeName_ || !hasName_) return;
    const std::string name = nameInLine(name_);
    if (name.empty()) return;
    if (shapeType() == ShapeType::Annotation) {
        // The text already gives this name, unless the name holds an underscore or is another one.
        std::string text;
        static_cast<const Annotation&>(*this).getText(text);
        if (name == nameInLine(labelFromText(textFromLabel(text)))) return;
    }
    writer.text("3d name ").text(name).endLine();
}

void ZelShape::serializeFollow_(TextWriter& writer, const Extras& rare) const {
    std::string letters;
    if (followYaw_.value_or(false)) letters += 'c';
    if (followPitch_.value_or(false)) letters += 'p';
    if (followRoll_.value_or(false)) letters += 'r';
    if (!letters.empty()) writer.text("3d follow ").text(letters).endLine();
    if (rare.yawOffset) serializeAngle_(writer, "3d offsetcourse ", *rare.yawOffset);
    if (rare.pitchOffset) serializeAngle_(writer, "3d offsetpitch ", *rare.pitchOffset);
    if (rare.rollOffset) serializeAngle_(writer, "3d offsetroll ", *rare.rollOffset);
}

void ZelShape::serializeKeyword_(TextWriter& writer) const {
    writer.text(shapeTypeToString(shapeType())).endLine();
}

void ZelShape::serializePosition_(TextWriter& writer, std::string_view keyword, const Vec3& position) const {
    serializePositions_(writer, keyword, {&position, 1});
}

void ZelShape::serializePoints_(TextWriter& writer, std::span<const Vec3> points) const {
    serializePositions_(writer, relative_ ? "xyz " : "lla ", points);
}

void ZelShape::serializePositions_(TextWriter& writer, std::string_view keyword,
                                   std::span<const Vec3> positions) const {
    const LengthScale altitude(originalUnits().altitudeUnits());
    const LengthScale range(originalUnits().rangeUnits());
    const auto inFile = [&](const Vec3& position) {
        if (relative_)
            return Vec3(range.fromMetres(position.x()), range.fromMetres(position.y()),
                        altitude.fromMetres(position.z()));
        // Latitude and longitude are degrees whatever the angle units are.
        return Vec3(position.lat() * kDegreesPerRadian, position.lon() * kDegreesPerRadian,
                    altitude.fromMetres(position.alt()));
    };
    const auto format = [&](TextWriter& to, std::span<const Vec3> some) {
        std::array<Vec3, 16> converted;
        while (!some.empty()) {
            const auto count = std::min(some.size(), converted.size());
            std::transform(some.begin(), some.begin() + static_cast<std::ptrdiff_t>(count), converted.begin(),
                           inFile);
            to.lines(keyword, std::span(converted).first(count));
            some = some.subspan(count);
        }
    };
    KeptLines* const kept = positions.size() < KeptLines::kFewest ? nullptr : KeptLines::of(writer.stream());
    if (kept == nullptr) return format(writer, positions);
    // All of two scales is in where they put 0 and 1.
    std::ostringstream form;
    form << keyword << relative_ << std::hexfloat;
    for (const LengthScale& scale : {altitude, range})
        form << ' ' << scale.fromMetres(0.0) << ' ' << scale.fromMetres(1.0);
    form << ' ' << writer.stream().precision() << ' ' << writer.stream().flags();
    kept->write(writer, form.str(), positions, format);
}

void ZelShape::serializeRange_(TextWriter& writer, std::string_view keyword, double metres) const {
    writer.text(keyword).number(Units::METERS.convertTo(originalUnits().rangeUnits(), metres)).endLine();
}

void ZelShape::serializeAltitude_(TextWriter& writer, std::string_view keyword, double metres) const {
    writer.text(keyword).number(Units::METERS.convertTo(originalUnits().altitudeUnits(), metres)).endLine();
}

void ZelShape::serializeAngle_(TextWriter& writer, std::string_view keyword, double radians) const {
    writer.text(keyword).number(Units::RADIANS.convertTo(originalUnits().angleUnits(), radians)).endLine();
}

}  // namespace halCore::ZEL
