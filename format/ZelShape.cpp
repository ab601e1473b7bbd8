#include "format/ZelShape.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "common/Notify.h"
#include "common/Strings.h"
#include "format/Annotation.h"
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
    if (name_) {
        out = *name_;
        return 0;
    }
    out = shapeTypeToString(shapeType());
    return 1;
}

int ZelShape::getDrawn(bool& out) const {
    return getField(drawn_, out, true);
}
int ZelShape::getDepthBufferActive(bool& out) const {
    return getField(depthBuffer_, out, false);
}
int ZelShape::getAltitudeOffset(double& metres) const {
    return getField(altitudeOffset_, metres, 0.0);
}
int ZelShape::getAltitudeMode(AltitudeMode& out) const {
    return getField(altitudeMode_, out, AltitudeMode::None);
}
int ZelShape::getExtrudeHeight(double& metres) const {
    return getField(extrudeHeight_, metres, 0.0);
}
int ZelShape::getReferencePosition(Vec3& out) const {
    return getField(referencePosition_, out, Vec3());
}
int ZelShape::getScale(Vec3& out) const {
    return getField(scale_, out, Vec3(1.0, 1.0, 1.0));
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
    return getField(yawOffset_, radians, 0.0);
}
int ZelShape::getPitchOffset(double& radians) const {
    return getField(pitchOffset_, radians, 0.0);
}
int ZelShape::getRollOffset(double& radians) const {
    return getField(rollOffset_, radians, 0.0);
}
int ZelShape::getVerticalDatum(std::string& out) const {
    return getField(verticalDatum_, out, "wgs84");
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
    serializeNameLine_(writer);
    if (drawn_ && !*drawn_) writer.text("off\n");
    if (altitudeOffset_) serializeAltitude_(writer, "3d offsetalt ", *altitudeOffset_);
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
                if (extrudeHeight_)
                    serializeAltitude_(writer, "extrude true ", *extrudeHeight_);
                else
                    writer.text("extrude true\n");
                break;
        }
    }
    if (referencePosition_) {
        // Geodetic even for a relative shape.
        writer.line("ref ", referencePosition_->lat() * kDegreesPerRadian,
                    referencePosition_->lon() * kDegreesPerRadian,
                    LengthScale(units_.altitudeUnits()).fromMetres(referencePosition_->alt()));
    }
    if (scale_) writer.line("scale ", scale_->x(), scale_->y(), scale_->z());
    if (verticalDatum_) writer.text("verticaldatum ").text(nameInLine(*verticalDatum_)).endLine();
    if (units_.hasAltitudeUnits())
        writer.text("altitudeunits ").text(units_.altitudeUnits().abbreviation()).endLine();
    if (units_.hasAngleUnits()) writer.text("angleunits ").text(units_.angleUnits().abbreviation()).endLine();
    if (units_.hasRangeUnits()) writer.text("rangeunits ").text(units_.rangeUnits().abbreviation()).endLine();
    serializeFollow_(writer);
}

void ZelShape::serializeNameLine_(TextWriter& writer) const {
    if (!serializeName_ || !name_) return;
    const std::string name = nameInLine(*name_);
    if (name.empty()) return;
    if (shapeType() == ShapeType::Annotation) {
        // The text already gives this name, unless the name holds an underscore or is another one.
        std::string text;
        static_cast<const Annotation&>(*this).getText(text);
        if (name == nameInLine(labelFromText(textFromLabel(text)))) return;
    }
    writer.text("3d name ").text(name).endLine();
}

void ZelShape::serializeFollow_(TextWriter& writer) const {
    std::string letters;
    if (followYaw_.value_or(false)) letters += 'c';
    if (followPitch_.value_or(false)) letters += 'p';
    if (followRoll_.value_or(false)) letters += 'r';
    if (!letters.empty()) writer.text("3d follow ").text(letters).endLine();
    if (yawOffset_) serializeAngle_(writer, "3d offsetcourse ", *yawOffset_);
    if (pitchOffset_) serializeAngle_(writer, "3d offsetpitch ", *pitchOffset_);
    if (rollOffset_) serializeAngle_(writer, "3d offsetroll ", *rollOffset_);
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
    const LengthScale altitude(units_.altitudeUnits());
    if (relative_) {
        const LengthScale range(units_.rangeUnits());
        for (const Vec3& position : positions)
            writer.line(keyword, range.fromMetres(position.x()), range.fromMetres(position.y()),
                        altitude.fromMetres(position.z()));
    } else {
        // Latitude and longitude are degrees whatever the angle units are.
        for (const Vec3& position : positions)
            writer.line(keyword, position.lat() * kDegreesPerRadian, position.lon() * kDegreesPerRadian,
                        altitude.fromMetres(position.alt()));
    }
}

void ZelShape::serializeRange_(TextWriter& writer, std::string_view keyword, double metres) const {
    writer.text(keyword).number(Units::METERS.convertTo(units_.rangeUnits(), metres)).endLine();
}

void ZelShape::serializeAltitude_(TextWriter& writer, std::string_view keyword, double metres) const {
    writer.text(keyword).number(Units::METERS.convertTo(units_.altitudeUnits(), metres)).endLine();
}

void ZelShape::serializeAngle_(TextWriter& writer, std::string_view keyword, double radians) const {
    writer.text(keyword).number(Units::RADIANS.convertTo(units_.angleUnits(), radians)).endLine();
}

}  // namespace halCore::ZEL
