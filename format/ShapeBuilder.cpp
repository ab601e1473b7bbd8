#include "format/ShapeBuilder.h"

#include <cmath>

#include "common/Strings.h"
#include "format/FileNumber.h"
#include "format/LengthScale.h"
#include "geo/Angles.h"
#include "geo/UnitsRegistry.h"

namespace halCore::ZEL {
namespace {

/// Angles that differ by less are the same.
constexpr double kNearlyZero = 1e-10;

/// Radians in [0, 2 pi) of an angle in file units. Whole turns are taken off in these, where 370 degrees
/// are exactly 10. What is nearly a whole turn is none, so that it is still 0 after it was written and read.
double normalizedAngle(double angle, const Units& units) {
    constexpr double nearlyWhole = 1e-12;
    const double turn = Units::RADIANS.convertTo(units, kTwoPi);
    const bool outside = angle >= turn || angle < 0.0;
    double radians = units.convertTo(Units::RADIANS, outside ? std::fmod(angle, turn) : angle);
    if (outside && std::abs(radians) < kNearlyZero) radians = 0.0;
    if (radians < 0.0) radians += kTwoPi;
    return kTwoPi - radians < nearlyWhole ? 0.0 : radians;
}

/// The datum's one name, empty for an unknown one.
std::string_view verticalDatum(std::string_view text) {
    if (text == "wgs84") return "wgs84";
    if (text == "egm1984" || text == "egm84") return "egm1984";
    if (text == "egm1996" || text == "egm96") return "egm1996";
    if (text == "egm2008" || text == "egm08") return "egm2008";
    return {};
}

std::string joined(const PositionStrings& position) {
    std::string text = position.x() + ' ' + position.y();
    if (!position.z().empty()) text += ' ' + position.z();
    return text;
}

}  // namespace

ShapeBuilder::ShapeBuilder(ParsedShape& record, const UnitsRegistry& registry, const MessageSink& messages)
    : record_(record), messages_(messages), relative_(!record.hasValue(P::Absolute)) {
    if (record.hasAny(P::AltitudeUnits, P::AngleUnits))
        units_ = UnitsState::parse(record, registry, [this](const std::string& text) {
            error_({text, " for ", label_()});
        });
}

std::shared_ptr<ZelShape> ShapeBuilder::build() {
    std::shared_ptr<ZelShape> shape = buildType_();
    if (shape) setCommon_(*shape);
    return shape;
}

std::shared_ptr<ZelShape> ShapeBuilder::buildType_() {
    switch (record_.shape()) {
        case ShapeType::None:
            return nullptr;
        case ShapeType::Annotation:
            return buildAnnotation_();
        case ShapeType::Points:
            return buildPoints_();
        case ShapeType::Line:
            return buildPointBased_<Line>(2);
        case ShapeType::LineSegs:
            return buildPointBased_<LineSegs>(2);
        case ShapeType::Polygon:
            return buildPointBased_<Polygon>(3);
        case ShapeType::Arc:
            return buildElliptical_<Arc>();
        case ShapeType::Circle:
            return buildCircular_<Circle>();
        case ShapeType::Ellipse:
            return buildElliptical_<Ellipse>();
        case ShapeType::Ellipsoid:
            return buildWithHeight_<Ellipsoid>();
        case ShapeType::Cylinder:
            return buildElliptical_<Cylinder>();
        case ShapeType::Sphere:
            return buildCircular_<Sphere>();
        case ShapeType::Hemisphere:
            return buildCircular_<Hemisphere>();
        case ShapeType::LatLonAltBox:
            return buildBox_();
        case ShapeType::Cone:
            return buildWithHeight_<Cone>();
        case ShapeType::ImageOverlay:
            return buildImageOverlay_();
        case ShapeType::Orbit:
            return buildOrbit_();
    }
    return nullptr;
}

std::shared_ptr<ZelShape> ShapeBuilder::buildPoints_() {
    if (record_.pointsGiven() == 0) {
        error_({"point ", name_(), " has no points, cannot create shape"});
        return nullptr;
    }
    std::vector<Vec3> points = points_();
    if (points.empty()) {
        error_({"point ", name_(), " has no valid points, cannot create shape"});
        return nullptr;
    }
    auto shape = std::make_shared<Points>(relative_);
    shape->setPoints(std::move(points));
    if (const auto size = integer_(P::PointSize, "pointsize")) shape->setPointSize(*size);
    if (const auto color = getColor_(P::LineColor, "linecolor")) shape->setColor(*color);
    if (record_.hasValue(P::Outline)) shape->setOutlined(record_.boolValue(P::Outline));
    return shape;
}

template <typename Shape>
std::shared_ptr<ZelShape> ShapeBuilder::buildPointBased_(std::size_t fewest) {
    std::string_view failure;
    if (record_.pointsGiven() == 0)
        failure = " has no points, cannot create shape";
    else if (record_.pointsGiven() < fewest)
        failure = " has less than the required number of points, cannot create shape";
    if (!failure.empty()) {
        error_({label_(), failure});
        return nullptr;
    }
    std::vector<Vec3> points = points_();
    if (points.empty())
        failure = " has no valid points, cannot create shape";
    else if (points.size() < fewest)
        failure = " has less than the required number of valid points, cannot create shape";
    if (!failure.empty()) {
        error_({label_(), failure});
        return nullptr;
    }
    auto shape = std::make_shared<Shape>(relative_);
    shape->setPoints(std::move(points));
    if (record_.hasValue(P::Tessellate)) {
        auto style = TessellationStyle::None;
        if (record_.boolValue(P::Tessellate))
            style = record_.text(P::LineProjection) == "greatcircle" ? TessellationStyle::GreatCircle
                                                                     : TessellationStyle::RhumbLine;
        shape->setTessellation(style);
    }
    setFillable_(*shape);
    return shape;
}

template <typename Shape>
std::shared_ptr<ZelShape> ShapeBuilder::buildCircular_() {
    auto shape = std::make_shared<Shape>(relative_);
    setCircular_(*shape);
    setFillable_(*shape);
    return shape;
}

template <typename Shape>
std::shared_ptr<ZelShape> ShapeBuilder::buildElliptical_() {
    auto shape = std::make_shared<Shape>(relative_);
    setCircular_(*shape);
    setElliptical_(*shape);
    if constexpr (std::is_same_v<Shape, Cylinder>) setHeight_(*shape);
    setFillable_(*shape);
    return shape;
}

template <typename Shape>
std::shared_ptr<ZelShape> ShapeBuilder::buildWithHeight_() {
    auto shape = std::make_shared<Shape>(relative_);
    setCircular_(*shape);
    setHeight_(*shape);
    if constexpr (std::is_same_v<Shape, Ellipsoid>) setAxes_(*shape);
    setFillable_(*shape);
    return shape;
}

std::shared_ptr<ZelShape> ShapeBuilder::buildOrbit_() {
    const std::optional<Vec3> center = centerPosition_(P::CenterAbsolute, P::CenterRelative);
    const std::optional<Vec3> second = centerPosition_(P::Center2Absolute, P::Center2Relative);
    if (!center || !second) {
        error_({"orbit ", name_(), " missing or invalid center points, cannot create shape"});
        return nullptr;
    }
    auto shape = std::make_shared<Orbit>(relative_);
    setCircular_(*shape);
    shape->setCenterPosition2(*second);
    setFillable_(*shape);
    return shape;
}

std::shared_ptr<ZelShape> ShapeBuilder::buildAnnotation_() {
    if (record_.text(P::AnnotationText).empty()) {
        error_({"Annotation ", name_(), " missing text, cannot create shape"});
        return nullptr;
    }
    auto shape = std::make_shared<Annotation>(relative_);
    shape->setText(record_.text(P::AnnotationText));
    if (const auto point = firstPoint_())
        shape->setPosition(*point);
    else if (const auto center = centerPosition_(P::CenterAbsolute, P::CenterRelative))
        shape->setPosition(*center);
    if (record_.hasValue(P::FontName)) shape->setFontName(record_.text(P::FontName));
    if (const auto size = integer_(P::FontSize, "fontsize")) shape->setTextSize(*size);
    if (const auto color = getColor_(P::LineColor, "linecolor")) shape->setTextColor(*color);
    if (record_.hasValue(P::TextOutlineThickness)) {
        const std::string_view text = record_.text(P::TextOutlineThickness);
        if (text == "thick")
            shape->setOutlineThickness(OutlineThickness::Thick);
        else if (text == "thin")
            shape->setOutlineThickness(OutlineThickness::Thin);
        else if (text == "none")
            shape->setOutlineThickness(OutlineThickness::None);
        else
            error_({"Invalid textoutlinethickness: ", text});
    }
    if (const auto color = getColor_(P::TextOutlineColor, "textoutlinecolor")) shape->setOutlineColor(*color);
    if (record_.hasValue(P::ImageFile)) shape->setIconFile(record_.text(P::ImageFile));
    if (const auto priority = validateDouble_(P::Priority, "priority")) shape->setPriority(*priority);
    return shape;
}

std::shared_ptr<ZelShape> ShapeBuilder::buildBox_() {
    const auto north = degrees_(P::BoxNorth, AngleKind::Latitude);
    const auto south = degrees_(P::BoxSouth, AngleKind::Latitude);
    const auto west = degrees_(P::BoxWest, AngleKind::Longitude);
    const auto east = degrees_(P::BoxEast, AngleKind::Longitude);
    const auto altitude = readFileNumber(record_.text(P::BoxAltitude));
    if (!north || !south || !west || !east || !altitude) {
        error_({"latlonaltbox ", name_(), " had invalid values, cannot create shape"});
        return nullptr;
    }
    auto shape = std::make_shared<LatLonAltBox>(relative_);
    shape->setNorth(*north);
    shape->setSouth(*south);
    shape->setWest(*west);
    shape->setEast(*east);
    shape->setAltitude(units_.altitudeUnits().convertTo(Units::METERS, *altitude));
    if (const auto height = altitude_(P::BoxHeight, "height")) shape->setHeight(*height);
    setFillable_(*shape);
    return shape;
}

std::shared_ptr<ZelShape> ShapeBuilder::buildImageOverlay_() {
    const auto north = degrees_(P::ImageNorth, AngleKind::Latitude);
    const auto south = degrees_(P::ImageSouth, AngleKind::Latitude);
    const auto east = degrees_(P::ImageEast, AngleKind::Longitude);
    const auto west = degrees_(P::ImageWest, AngleKind::Longitude);
    if (!north || !south || !east || !west || record_.text(P::ImageFile).empty()) {
        error_({"kml_groundoverlay ", name_(), " had invalid values, cannot create shape"});
        return nullptr;
    }
    auto shape = std::make_shared<ImageOverlay>(relative_);
    shape->setNorth(*north);
    shape->setSouth(*south);
    shape->setEast(*east);
    shape->setWest(*west);
    shape->setImageFile(record_.text(P::ImageFile));
    if (const auto rotation = angle_(P::ImageRotation, "rotation")) shape->setRotation(*rotation);
    return shape;
}

void ShapeBuilder::setFillable_(FillableShape& shape) const {
    if (record_.hasValue(P::Outline)) shape.setOutlined(record_.boolValue(P::Outline));
    if (const auto color = getColor_(P::LineColor, "linecolor")) shape.setLineColor(*color);
    if (record_.hasValue(P::LineStyle)) {
        const std::string_view text = record_.text(P::LineStyle);
        if (text == "dashed" || text == "dash")
            shape.setLineStyle(LineStyle::Dashed);
        else if (text == "dotted" || text == "dot")
            shape.setLineStyle(LineStyle::Dotted);
        else if (text == "solid")
            shape.setLineStyle(LineStyle::Solid);
        else
            error_({"Invalid linestyle: ", text});
    }
    if (const auto width = integer_(P::LineWidth, "linewidth")) shape.setLineWidth(*width);
    if (record_.hasValue(P::Filled)) shape.setFilled(record_.boolValue(P::Filled));
    // The message has always quoted the line colour; readers of logs know it so.
    if (const auto color = getColor_(P::FillColor, "fillcolor", P::LineColor)) shape.setFillColor(*color);
}

void ShapeBuilder::setCircular_(CircularShape& shape) const {
    if (const auto center = centerPosition_(P::CenterAbsolute, P::CenterRelative))
        shape.setCenterPosition(*center);
    else if (record_.hasValue(relative_ ? P::CenterRelative : P::CenterAbsolute))
        error_({label_(), " invalid center point"});
    if (const auto radius = range_(P::Radius, "radius")) shape.setRadius(*radius);
}

void ShapeBuilder::setElliptical_(EllipticalShape& shape) const {
    double start = 0.0;
    if (const auto angle = validateDouble_(P::AngleStart, "anglestart")) {
        start = normalizedAngle(*angle, units_.angleUnits());
        shape.setAngleStart(start);
    }
    if (record_.hasValue(P::AngleSweep)) {
        const auto sweep = angle_(P::AngleSweep, "angledeg");
        if (sweep && *sweep == 0.0)
            error_({label_(), " angledeg cannot be 0"});
        else if (sweep)
            shape.setAngleSweep(*sweep);
    } else if (const auto angle = validateDouble_(P::AngleEnd, "angleend")) {
        const double end = normalizedAngle(*angle, units_.angleUnits());
        if (std::abs(std::remainder(end - start, kTwoPi)) < kNearlyZero)
            error_({label_(), " angleend cannot be the same as anglestart"});
        else
            shape.setAngleSweep(end > start ? end - start : end - start + kTwoPi);
    }
    setAxes_(shape);
}

void ShapeBuilder::setAxes_(auto& shape) const {
    if (const auto axis = range_(P::MajorAxis, "majoraxis")) shape.setMajorAxis(*axis);
    if (const auto axis = range_(P::MinorAxis, "minoraxis")) shape.setMinorAxis(*axis);
}

void ShapeBuilder::setHeight_(auto& shape) const {
    if (const auto height = altitude_(P::Height, "height")) shape.setHeight(*height);
}

void ShapeBuilder::setCommon_(ZelShape& shape) {
    if (record_.hasValue(P::Name)) shape.setName(record_.text(P::Name));
    if (record_.hasAnyOf(P::Draw, P::DepthBuffer, P::OffsetAltitude, P::AltitudeMode, P::ExtrudeHeight,
                         P::ReferencePoint, P::Scale, P::VerticalDatum))
        setPlacement_(shape);
    if (record_.hasAny(P::OffsetCourse, P::Follow)) setOrientation_(shape);
    if (!record_.comments().empty()) shape.setComments(record_.takeComments());
    if (record_.hasAny(P::AltitudeUnits, P::AngleUnits)) shape.setOriginalUnits(units_);
}

void ShapeBuilder::setPlacement_(ZelShape& shape) const {
    if (record_.hasValue(P::Draw)) shape.setDrawn(record_.boolValue(P::Draw));
    if (record_.hasValue(P::DepthBuffer)) shape.setDepthBufferActive(record_.boolValue(P::DepthBuffer));
    if (const auto offset = altitude_(P::OffsetAltitude, "offsetalt")) shape.setAltitudeOffset(*offset);
    if (record_.hasValue(P::AltitudeMode)) {
        const std::string_view mode = record_.text(P::AltitudeMode);
        if (mode == "none")
            shape.setAltitudeMode(AltitudeMode::None);
        else if (mode == "relativetoground")
            shape.setAltitudeMode(AltitudeMode::RelativeToGround);
        else if (mode == "clamptoground")
            shape.setAltitudeMode(AltitudeMode::ClampToGround);
        else if (mode == "extrude")
            shape.setAltitudeMode(AltitudeMode::Extrude);
    }
    if (const auto height = altitude_(P::ExtrudeHeight, "extrude height")) shape.setExtrudeHeight(*height);
    if (record_.hasValue(P::ReferencePoint)) {
        const PositionStrings text = record_.positionValue(P::ReferencePoint);
        if (const auto position = getPosition_(text, false))
            shape.setReferencePosition(*position);
        else
            error_({"Invalid referencepoint: ", joined(text)});
    }
    if (record_.hasValue(P::Scale)) {
        const PositionStrings text = record_.positionValue(P::Scale);
        const auto x = validateDouble_(text.x(), "scale x");
        const auto y = validateDouble_(text.y(), "scale y");
        const auto z = validateDouble_(text.z(), "scale z");
        if (x && y && z) shape.setScale(Vec3(*x, *y, *z));
    }
    if (record_.hasValue(P::VerticalDatum)) {
        const std::string_view datum = verticalDatum(record_.text(P::VerticalDatum));
        if (!datum.empty()) shape.setVerticalDatum(datum);
    }
}

void ShapeBuilder::setOrientation_(ZelShape& shape) const {
    const std::string_view follow = record_.text(P::Follow);
    if (follow.find('c') != std::string_view::npos) shape.setFollowYaw(true);
    if (follow.find('p') != std::string_view::npos) shape.setFollowPitch(true);
    if (follow.find('r') != std::string_view::npos) shape.setFollowRoll(true);
    if (const auto offset = angle_(P::OffsetCourse, "offsetcourse")) shape.setYawOffset(*offset);
    if (const auto offset = angle_(P::OffsetPitch, "offsetpitch")) shape.setPitchOffset(*offset);
    if (const auto offset = angle_(P::OffsetRoll, "offsetroll")) shape.setRollOffset(*offset);
}

std::optional<Vec3> ShapeBuilder::firstPoint_() const {
    if (!offsetsAreDegrees_())
        return record_.firstPointRead() ? std::optional(points_().front()) : std::nullopt;
    return getPosition_(record_.positions().front(), false);
}

bool ShapeBuilder::offsetsAreDegrees_() const {
    return !relative_ && record_.pointType() == ParsedShape::PointType::Relative;
}

std::vector<Vec3> ShapeBuilder::points_() const {
    std::vector<Vec3> points;
    if (offsetsAreDegrees_()) {
        for (const PositionStrings& text : record_.positions())
            if (const auto position = getPosition_(text, false)) points.push_back(*position);
        return points;
    }
    points = record_.takePoints();
    const LengthScale altitude(units_.altitudeUnits());
    if (relative_) {
        const LengthScale range(units_.rangeUnits());
        for (Vec3& point : points)
            point.set(range.toMetres(point.x()), range.toMetres(point.y()), altitude.toMetres(point.z()));
    } else {
        for (Vec3& point : points) point.setAlt(altitude.toMetres(point.alt()));
    }
    return points;
}

std::optional<Vec3> ShapeBuilder::getPosition_(const PositionStrings& text, bool relative) const {
    const double z = units_.altitudeUnits().convertTo(Units::METERS, readFileNumber(text.z()).value_or(0.0));
    if (!relative) {
        const auto lat = readFileDegrees(text.x(), AngleKind::Latitude);
        const auto lon = readFileDegrees(text.y(), AngleKind::Longitude);
        if (!lat || !lon) return std::nullopt;
        return Vec3(*lat, *lon, z);
    }
    const auto x = readFileNumber(text.x());
    const auto y = readFileNumber(text.y());
    if (!x || !y) return std::nullopt;
    const Units& range = units_.rangeUnits();
    return Vec3(range.convertTo(Units::METERS, *x), range.convertTo(Units::METERS, *y), z);
}

std::optional<Vec3> ShapeBuilder::centerPosition_(P absolute, P relative) const {
    const P parameter = relative_ ? relative : absolute;
    if (!record_.hasValue(parameter)) return std::nullopt;
    return getPosition_(record_.positionValue(parameter), relative_);
}

std::optional<double> ShapeBuilder::degrees_(P parameter, AngleKind kind) const {
    return readFileDegrees(record_.text(parameter), kind);
}

std::optional<Color> ShapeBuilder::getColor_(P parameter, std::string_view field, P reported) const {
    if (!record_.hasValue(parameter)) return std::nullopt;
    const std::optional<Color> color = Color::parse(record_.text(parameter));
    if (!color) error_({"Invalid ", field, ": ", record_.text(reported)});
    return color;
}

std::optional<int> ShapeBuilder::integer_(P parameter, std::string_view field) const {
    if (!record_.hasValue(parameter)) return std::nullopt;
    const std::optional<int> value = readFileInteger(record_.text(parameter));
    if (!value) error_({"Invalid ", field, ": ", record_.text(parameter)});
    return value;
}

std::optional<double> ShapeBuilder::validateDouble_(P parameter, std::string_view field) const {
    if (!record_.hasValue(parameter)) return std::nullopt;
    return validateDouble_(record_.text(parameter), field);
}

std::optional<double> ShapeBuilder::validateDouble_(std::string_view text, std::string_view field) const {
    const std::optional<double> value = readFileNumber(text);
    if (!value) error_({"Invalid ", field, ": ", text, " for ", label_()});
    return value;
}

std::optional<double> ShapeBuilder::range_(P parameter, std::string_view field) const {
    const auto value = validateDouble_(parameter, field);
    return value ? std::optional(units_.rangeUnits().convertTo(Units::METERS, *value)) : std::nullopt;
}

std::optional<double> ShapeBuilder::altitude_(P parameter, std::string_view field) const {
    const auto value = validateDouble_(parameter, field);
    return value ? std::optional(units_.altitudeUnits().convertTo(Units::METERS, *value)) : std::nullopt;
}

std::optional<double> ShapeBuilder::angle_(P parameter, std::string_view field) const {
    const auto value = validateDouble_(parameter, field);
    return value ? std::optional(units_.angleUnits().convertTo(Units::RADIANS, *value)) : std::nullopt;
}

std::string_view ShapeBuilder::name_() const {
    return record_.hasValue(P::Name) ? record_.text(P::Name) : ZelShape::shapeTypeToString(record_.shape());
}

std::string ShapeBuilder::label_() const {
    return std::string(ZelShape::shapeTypeToString(record_.shape())).append(" ").append(name_());
}

void ShapeBuilder::error_(std::initializer_list<std::string_view> parts) const {
    messages_.error(record_.lineNumber(), parts);
}

}  // namespace halCore::ZEL
