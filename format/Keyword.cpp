#include "format/Keyword.h"

#include <array>
#include <cstdint>

namespace halCore::ZEL {
namespace {

using Action = KeywordAction;
using P = ShapeParameter;

constexpr Keyword shape(std::string_view text, ShapeType type) {
    return {text, Action::Shape, P::Absolute, type};
}

constexpr Keyword kKeywords[] = {
    {"start", Action::Start},
    {"end", Action::End},

    {"annotation", Action::AnnotationText, P::AnnotationText, ShapeType::Annotation},
    shape("circle", ShapeType::Circle),
    shape("ellipse", ShapeType::Ellipse),
    shape("arc", ShapeType::Arc),
    shape("cylinder", ShapeType::Cylinder),
    shape("hemisphere", ShapeType::Hemisphere),
    shape("sphere", ShapeType::Sphere),
    shape("ellipsoid", ShapeType::Ellipsoid),
    shape("points", ShapeType::Points),
    shape("line", ShapeType::Line),
    shape("poly", ShapeType::Polygon),
    shape("polygon", ShapeType::Polygon),
    shape("linesegs", ShapeType::LineSegs),
    shape("cone", ShapeType::Cone),
    shape("orbit", ShapeType::Orbit),
    {"latlonaltbox", Action::Box, P::BoxNorth, ShapeType::LatLonAltBox},

    {"ll", Action::AbsolutePoint, P::Absolute, {}, "ll/lla/latlon"},
    {"lla", Action::AbsolutePoint, P::Absolute, {}, "ll/lla/latlon"},
    {"latlon", Action::AbsolutePoint, P::Absolute, {}, "ll/lla/latlon"},
    {"xy", Action::RelativePoint, P::Absolute, {}, "xy/xyz"},
    {"xyz", Action::RelativePoint, P::Absolute, {}, "xy/xyz"},
    {"mgrs", Action::GridPoint, P::Absolute, {}, "mgrs"},
    {"centerll", Action::AbsolutePosition, P::CenterAbsolute, {}, "centerll/centerlla/centerlatlon"},
    {"centerlla", Action::AbsolutePosition, P::CenterAbsolute, {}, "centerll/centerlla/centerlatlon"},
    {"centerlatlon", Action::AbsolutePosition, P::CenterAbsolute, {}, "centerll/centerlla/centerlatlon"},
    {"centerll2", Action::AbsolutePosition, P::Center2Absolute, {}, "centerll2"},
    {"centerlatlon2", Action::AbsolutePosition, P::Center2Absolute, {}, "centerll2"},
    {"centerxy", Action::RelativePosition, P::CenterRelative, {}, "centerxy/centerxyz"},
    {"centerxyz", Action::RelativePosition, P::CenterRelative, {}, "centerxy/centerxyz"},
    {"centerxy2", Action::RelativePosition, P::Center2Relative, {}, "centerxy2"},
    {"ref", Action::ReferencePoint, P::ReferencePoint, {}, "ref/referencepoint"},
    {"referencepoint", Action::ReferencePoint, P::ReferencePoint, {}, "ref/referencepoint"},

    {"linecolor", Action::Color, P::LineColor},
    {"fillcolor", Action::Color, P::FillColor},
    {"textoutlinecolor", Action::Color, P::TextOutlineColor},
    {"linewidth", Action::Value, P::LineWidth},
    {"pointsize", Action::Value, P::PointSize},
    {"linestyle", Action::QuietValue, P::LineStyle},
    {"filled", Action::Flag, P::Filled},
    {"outline", Action::Value, P::Outline},
    {"off", Action::Flag, P::Draw},
    {"altitudemode", Action::Value, P::AltitudeMode},
    {"extrude", Action::Extrude, P::ExtrudeHeight},
    {"altitudeunits", Action::RestOfLine, P::AltitudeUnits},
    {"rangeunits", Action::RestOfLine, P::RangeUnits},
    {"angleunits", Action::RestOfLine, P::AngleUnits},
    {"verticaldatum", Action::Value, P::VerticalDatum},
    {"priority", Action::Value, P::Priority},
    {"textoutlinethickness", Action::Value, P::TextOutlineThickness},
    {"fontname", Action::QuietValue, P::FontName},
    {"fontsize", Action::QuietValue, P::FontSize},
    {"depthbuffer", Action::QuietValue, P::DepthBuffer},
    {"tessellate", Action::QuietValue, P::Tessellate},
    {"lineprojection", Action::QuietValue, P::LineProjection},
    {"radius", Action::Value, P::Radius},
    {"diameter", Action::Half, P::Radius},
    {"anglestart", Action::Value, P::AngleStart},
    {"angleend", Action::Value, P::AngleEnd},
    {"angledeg", Action::Value, P::AngleSweep},
    {"majoraxis", Action::Value, P::MajorAxis},
    {"minoraxis", Action::Value, P::MinorAxis},
    {"semimajoraxis", Action::Double, P::MajorAxis},
    {"semiminoraxis", Action::Double, P::MinorAxis},
    {"height", Action::Value, P::Height},
    {"scale", Action::Scale, P::Scale},
    {"orient", Action::Orient, P::OffsetCourse},
    {"rotate", Action::Orient, P::OffsetCourse},
    {"3d", Action::ThreeD, P::Name},

    {"innerradius", Action::Ignore},
    {"version", Action::Ignore},
    {"timeunits", Action::Ignore},
};

constexpr Keyword kUnknown;

constexpr std::size_t kSlots = 256;
static_assert(std::size(kKeywords) < kSlots / 2);

constexpr std::size_t slotOf(std::string_view word) {
    std::uint32_t hash = static_cast<std::uint32_t>(word.size());
    // The first eight letters, the length and the last letter tell nearly all keywords apart.
    for (const char c : word.substr(0, 8)) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    hash = (hash ^ static_cast<unsigned char>(word.back())) * 16777619U;
    return hash >> 24;
}

/// Open addressing: a keyword stands in its slot or in one of those behind it; 0 is an empty slot.
constexpr auto makeSlots() {
    std::array<std::uint8_t, kSlots> slots{};
    for (std::size_t i = 0; i < std::size(kKeywords); ++i) {
        std::size_t slot = slotOf(kKeywords[i].text);
        while (slots[slot] != 0) slot = (slot + 1) % kSlots;
        slots[slot] = static_cast<std::uint8_t>(i + 1);
    }
    return slots;
}

constexpr auto kSlotTable = makeSlots();

}  // namespace

const Keyword& findKeyword(std::string_view word) {
    if (word.empty()) return kUnknown;
    for (std::size_t slot = slotOf(word); kSlotTable[slot] != 0; slot = (slot + 1) % kSlots) {
        const Keyword& keyword = kKeywords[kSlotTable[slot] - 1U];
        if (keyword.text == word) return keyword;
    }
    return kUnknown;
}

std::span<const Keyword> allKeywords() {
    return kKeywords;
}

}  // namespace halCore::ZEL
