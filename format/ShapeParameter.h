#pragma once

#include <cstddef>

namespace halCore::ZEL {

/// Every attribute of a block. The first fifteen are the modifiers that a `ModifierState` holds.
enum class ShapeParameter : unsigned char {
    LineColor,
    LineStyle,
    LineWidth,
    FillColor,
    Filled,
    Outline,
    PointSize,
    TextOutlineColor,
    TextOutlineThickness,
    AltitudeMode,
    AltitudeUnits,
    RangeUnits,
    AngleUnits,
    VerticalDatum,
    Priority,

    Absolute,
    Draw,
    Name,
    DepthBuffer,
    AnnotationText,
    FontName,
    FontSize,
    Tessellate,
    LineProjection,
    ExtrudeHeight,
    Radius,
    AngleStart,
    AngleEnd,
    AngleSweep,
    MajorAxis,
    MinorAxis,
    Height,
    OffsetAltitude,
    OffsetCourse,
    OffsetPitch,
    OffsetRoll,
    Follow,
    BoxNorth,
    BoxSouth,
    BoxWest,
    BoxEast,
    BoxAltitude,
    BoxHeight,
    ImageFile,
    ImageNorth,
    ImageSouth,
    ImageEast,
    ImageWest,
    ImageRotation,

    CenterAbsolute,
    CenterRelative,
    Center2Absolute,
    Center2Relative,
    ReferencePoint,
    Scale
};

inline constexpr std::size_t kModifierCount = 15;
inline constexpr std::size_t kParameterCount = static_cast<std::size_t>(ShapeParameter::Scale) + 1;

}  // namespace halCore::ZEL
