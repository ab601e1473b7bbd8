#include "gdal/ShapeTexts.h"

#include <algorithm>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "format/Annotation.h"
#include "format/ImageOverlay.h"
#include "gdal/Track.h"
#include "geo/UnitsRegistry.h"

namespace exchange {

namespace ZEL = halCore::ZEL;
using halCore::Units;

namespace {

Units unitsNamed(std::string_view name) {
    halCore::UnitsRegistry registry;
    registry.registerDefaultUnits();
    return ZEL::UnitsState::resolve(name, registry);
}

int nameOf(bool has, const Units& units, std::string& out) {
    if (has) out = units.abbreviation();
    return has ? 0 : 1;
}

bool isComment(std::string_view line, std::string_view word) {
    const std::size_t blank = line.find_first_of(" \t");
    if (blank == std::string_view::npos) return false;
    const std::string_view rest = UTILS::trimmed(line.substr(blank));
    return UTILS::equalsIgnoringCase(rest.substr(0, rest.find_first_of(" \t")), word);
}

}  // namespace

int followLetters(const ZEL::ZelShape& shape, std::string& out) {
    bool follows = false;
    out.clear();
    if (shape.getFollowYaw(follows) == 0 && follows) out += 'c';
    if (shape.getFollowPitch(follows) == 0 && follows) out += 'p';
    if (shape.getFollowRoll(follows) == 0 && follows) out += 'r';
    return out.empty() ? 1 : 0;
}

void setFollowLetters(ZEL::ZelShape& shape, std::string_view letters) {
    shape.setFollowYaw(letters.find('c') != std::string_view::npos);
    shape.setFollowPitch(letters.find('p') != std::string_view::npos);
    shape.setFollowRoll(letters.find('r') != std::string_view::npos);
}

int getAltitudeUnit(const ZEL::ZelShape& shape, std::string& out) {
    const ZEL::UnitsState& units = shape.originalUnits();
    return nameOf(units.hasAltitudeUnits(), units.altitudeUnits(), out);
}
int getRangeUnit(const ZEL::ZelShape& shape, std::string& out) {
    const ZEL::UnitsState& units = shape.originalUnits();
    return nameOf(units.hasRangeUnits(), units.rangeUnits(), out);
}
int getAngleUnit(const ZEL::ZelShape& shape, std::string& out) {
    const ZEL::UnitsState& units = shape.originalUnits();
    return nameOf(units.hasAngleUnits(), units.angleUnits(), out);
}

void setAltitudeUnit(ZEL::ZelShape& shape, std::string_view name) {
    ZEL::UnitsState state = shape.originalUnits();
    const Units units = unitsNamed(name);
    if (!units.canConvert(Units::METERS)) return;
    state.setAltitudeUnits(units);
    shape.setOriginalUnits(state);
}
void setRangeUnit(ZEL::ZelShape& shape, std::string_view name) {
    ZEL::UnitsState state = shape.originalUnits();
    const Units units = unitsNamed(name);
    if (!units.canConvert(Units::METERS)) return;
    state.setRangeUnits(units);
    shape.setOriginalUnits(state);
}
void setAngleUnit(ZEL::ZelShape& shape, std::string_view name) {
    ZEL::UnitsState state = shape.originalUnits();
    const Units units = unitsNamed(name);
    if (!units.canConvert(Units::DEGREES)) return;
    state.setAngleUnits(units);
    shape.setOriginalUnits(state);
}

int commentLines(const ZEL::ZelShape& shape, std::string& out) {
    out.clear();
    for (const std::string& line : shape.comments()) out.append(out.empty() ? "" : "\n").append(line);
    return out.empty() ? 1 : 0;
}

void setCommentLines(ZEL::ZelShape& shape, std::string_view lines) {
    std::vector<std::string> split;
    while (!lines.empty()) {
        const std::size_t length = std::min(lines.find('\n'), lines.size());
        split.emplace_back(UTILS::trimmed(lines.substr(0, length)));
        lines.remove_prefix(std::min(length + 1, lines.size()));
    }
    shape.setComments(std::move(split));
}

void completeComments(ZEL::ZelShape& shape) {
    std::vector<std::string> needed;
    if (shape.shapeType() == ZEL::ShapeType::Annotation) {
        std::string file;
        if (static_cast<const ZEL::Annotation&>(shape).getIconFile(file) != 0 || file.empty()) return;
        needed = {"# kml_icon " + file};
    } else if (shape.shapeType() == ZEL::ShapeType::ImageOverlay) {
        const auto& picture = static_cast<const ZEL::ImageOverlay&>(shape);
        double rotation = 0.0;
        picture.getRotation(rotation);
        std::string sides = "# kml_latlonbox";
        for (const double side : {picture.north(), picture.south(), picture.east(), picture.west()})
            sides.append(" ").append(UTILS::writeNumber(degreesOf(side)));
        // Sides are degrees whatever the angle units are; the rotation is not.
        double turn = degreesOf(rotation);
        const Units& unit = shape.originalUnits().angleUnits();
        if (!(unit == Units::DEGREES)) turn = Units::DEGREES.convertTo(unit, turn);
        sides.append(" ").append(UTILS::writeNumber(turn));
        needed = {"# kml_groundoverlay", "# kml_icon " + picture.imageFile(), sides};
    } else if (std::ranges::none_of(shape.comments(), [](const std::string& line) {
                   return isComment(line, "kml_groundoverlay");
               })) {
        return;
    }
    // The lines of another picture or icon, also where the shape is no longer one, would be read again.
    for (const std::string& line : shape.comments())
        if (!isComment(line, "kml_icon") && !isComment(line, "kml_groundoverlay") &&
            !isComment(line, "kml_latlonbox"))
            needed.push_back(line);
    shape.setComments(std::move(needed));
}

}  // namespace exchange
