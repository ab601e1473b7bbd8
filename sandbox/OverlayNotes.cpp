#include "sandbox/OverlayNotes.h"

#include <map>
#include <set>
#include <string_view>

#include "format/ZelShapes.h"
#include "globe/PictureFile.h"

namespace sandbox {

namespace {

namespace ZEL = halCore::ZEL;

/// The file that a shape is or bears, or "".
std::string pictureOf(const ZEL::ZelShape& shape) {
    std::string picture;
    if (const auto* overlay = dynamic_cast<const ZEL::ImageOverlay*>(&shape))
        picture = overlay->imageFile();
    else if (const auto* annotation = dynamic_cast<const ZEL::Annotation*>(&shape))
        annotation->getIconFile(picture);
    return picture;
}

template <typename Value, typename Object>
bool isSet(const Object& object, int (Object::*getter)(Value&) const) {
    Value value{};
    return (object.*getter)(value) == 0;
}

template <typename Shape>
bool hasAxis(const Shape& shape) {
    return isSet(shape, &Shape::getMajorAxis) || isSet(shape, &Shape::getMinorAxis);
}

bool hasSize(const ZEL::CircularShape& shape) {
    if (isSet(shape, &ZEL::CircularShape::getRadius)) return true;
    if (const auto* elliptical = dynamic_cast<const ZEL::EllipticalShape*>(&shape))
        return hasAxis(*elliptical);
    const auto* ellipsoid = dynamic_cast<const ZEL::Ellipsoid*>(&shape);
    return ellipsoid && hasAxis(*ellipsoid);
}

/// What a shape lacks to be drawn, or "". A relative one without a centre stands on its platform.
std::string_view lackOf(const ZEL::ZelShape& shape, bool attached) {
    bool drawn = true;
    shape.getDrawn(drawn);
    if (!drawn) return {};
    const bool byBounds = shape.shapeType() == ZEL::ShapeType::LatLonAltBox ||
                          shape.shapeType() == ZEL::ShapeType::ImageOverlay;
    if (shape.isRelative() && !byBounds && !attached && !isSet(shape, &ZEL::ZelShape::getReferencePosition))
        return "\"ref\", or a platform that it is attached to";
    if (const auto* circular = dynamic_cast<const ZEL::CircularShape*>(&shape)) {
        if (!shape.isRelative() && !isSet(*circular, &ZEL::CircularShape::getCenterPosition)) return "center";
        return hasSize(*circular) ? "" : "radius";
    }
    const auto* annotation = dynamic_cast<const ZEL::Annotation*>(&shape);
    const bool nowhere =
        annotation && !shape.isRelative() && !isSet(*annotation, &ZEL::Annotation::getPosition);
    return nowhere ? "position" : "";
}

}  // namespace

Work takeNotes(const OverlayScene::Shapes& shapes, std::string directory, bool attached,
               std::vector<OverlayNote>& notes) {
    constexpr std::size_t kInAUnit = 10;
    constexpr std::size_t kUnitsOfAFile = 10;
    std::size_t looks = 0;
    struct Lack {
        std::size_t note = 0;
        std::size_t shapes = 0;
    };
    std::map<std::string_view, Lack> lacks;
    std::set<std::string> datums;
    std::set<std::string> pictures;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (++looks % kInAUnit == 0) co_yield 1;
        if (!shapes[i]) continue;
        if (const std::string_view lack = lackOf(*shapes[i], attached); !lack.empty()) {
            Lack& known = lacks.try_emplace(lack, Lack{notes.size(), 0}).first->second;
            if (++known.shapes == 1) notes.push_back({i, true, {}});
        }
        std::string datum;
        if (shapes[i]->getVerticalDatum(datum) == 0 && datum != "wgs84" && datums.insert(datum).second)
            notes.push_back({i, false, "heights above " + datum + " are shown above wgs84"});
        const std::string picture = pictureOf(*shapes[i]);
        if (picture.empty() || !pictures.insert(picture).second) continue;
        const PictureFile file = findPicture(picture, directory);
        std::string fault;
        co_await findFault(file, fault);
        if (!fault.empty()) notes.push_back({i, true, "picture " + picture + " " + fault});
        co_yield kUnitsOfAFile;
    }
    for (const auto& [what, lack] : lacks) {
        std::string& text = notes[lack.note].text;
        text = "is not drawn: it has no " + std::string(what);
        if (lack.shapes > 1) text += " (" + std::to_string(lack.shapes) + " shapes in all)";
    }
}

}  // namespace sandbox
