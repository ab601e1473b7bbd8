#include "format/Keyword.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "format/EightBytes.h"

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
    {"comment", Action::Comment},

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
static_assert(std::ranges::all_of(kKeywords, [](const Keyword& k) { return k.text.size() <= 24; }));

/// The first eight letters (fewer are filled up with zeros) as one number.
constexpr std::uint64_t beginning(std::string_view word) {
    std::uint64_t value = 0;
    for (std::size_t i = std::min<std::size_t>(word.size(), 8); i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(word[i]);
    return value;
}

/// The same from two loads that may overlap.
std::uint64_t quickBeginning(std::string_view word) {
    const std::size_t size = word.size();
    const char* const text = word.data();
    if (size >= 8) return loadEight(text);
    if (size >= 4) {
        std::uint32_t first, last;
        std::memcpy(&first, text, 4);
        std::memcpy(&last, text + size - 4, 4);
        return first | static_cast<std::uint64_t>(last) << 8 * (size - 4);
    }
    return beginning(word);
}

/// The first eight letters, the last one and the length tell the keywords apart.
constexpr std::size_t slotOf(std::string_view word, std::uint64_t beginning) {
    const std::uint64_t rest = word.size() << 8 | static_cast<unsigned char>(word.back());
    return ((beginning ^ rest << 40) * 0x9e3779b97f4a7c15ULL) >> 56;
}

/// Open addressing: a keyword stands in its slot or in one of those behind it.
struct Slot {
    std::uint64_t beginning = 0;
    const Keyword* keyword = nullptr;
};

constexpr auto makeSlots() {
    std::array<Slot, kSlots> slots{};
    for (const Keyword& keyword : kKeywords) {
        const std::uint64_t letters = beginning(keyword.text);
        std::size_t slot = slotOf(keyword.text, letters);
        while (slots[slot].keyword != nullptr) slot = (slot + 1) % kSlots;
        slots[slot] = {letters, &keyword};
    }
    return slots;
}

constexpr auto kSlotTable = makeSlots();

/// For two words of the same length, 24 letters at most, with the same beginning.
bool sameBehindBeginning(std::string_view a, std::string_view b) {
    const std::size_t size = a.size();
    if (size <= 8) return true;
    if (loadEight(a.data() + size - 8) != loadEight(b.data() + size - 8)) return false;
    return size <= 16 || loadEight(a.data() + 8) == loadEight(b.data() + 8);
}

}  // namespace

const Keyword& findKeyword(std::string_view word) {
    if (word.empty()) return kUnknown;
    const std::uint64_t letters = quickBeginning(word);
    for (std::size_t slot = slotOf(word, letters); kSlotTable[slot].keyword != nullptr;
         slot = (slot + 1) % kSlots) {
        const std::string_view text = kSlotTable[slot].keyword->text;
        if (kSlotTable[slot].beginning != letters || text.size() != word.size()) continue;
        if (sameBehindBeginning(text, word)) return *kSlotTable[slot].keyword;
    }
    return kUnknown;
}

std::span<const Keyword> allKeywords() {
    return kKeywords;
}

}  // namespace halCore::ZEL
