#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "common/Vec3.h"
#include "model/PlacedPoints.h"
#include "model/RectangleGeometry.h"
#include "model/ShapeKinds.h"
#include "model/ShapeSource.h"
#include "model/Shared.h"
#include "model/Slots.h"

namespace OverlayEditor {

/// What a circular shape or an orbit has besides its positions; by the roles of its edit points.
struct RoundState {
    /// A number as it was set, and where the points were that it was set for.
    struct SetNumber {
        double value = 0.0;
        halCore::Vec3 center;
        halCore::Vec3 point;
        bool operator==(const SetNumber&) const = default;
    };
    /// How an edit point lies about its centre, and its number, while the centre moves.
    struct Mark {
        double azimuth = 0.0;
        double distance = 0.0;
        double above = 0.0;
        double number = 0.0;
        /// Which of the shape's positions that centre is.
        std::size_t anchor = 0;
        bool operator==(const Mark&) const = default;
    };

    static constexpr std::size_t kEditPoints = 6;
    Slots<halCore::Vec3, kEditPoints> places;
    Slots<SetNumber, kEditPoints> numbers;
    Slots<Mark, kEditPoints> marks;
    bool requiresAllPoints = true;
    bool heightGiven = false;
    bool operator==(const RoundState&) const = default;
    std::size_t bytes() const {
        return sizeof(RoundState) + places.bytes() + numbers.bytes() + marks.bytes();
    }
};

struct RectangleState {
    /// A size, and whether it was set about the centre.
    struct SetSize {
        RectangleGeometry::Size size;
        bool aboutCenter = false;
        bool operator==(const SetSize&) const = default;
    };
    /// As it was set; nothing when it follows from the corners.
    std::optional<SetSize> size;
    bool operator==(const RectangleState&) const = default;
};

/// Lines drawn by hand: the points of all, and how many each has.
struct FreeDrawState {
    SharedPoints points;
    std::vector<std::size_t> lines;
    int pixelPrecision = 0;
    bool operator==(const FreeDrawState&) const = default;
};

struct LabelState {
    std::uint32_t color = 0;
    std::int32_t fontSize = 0;
    std::string fontName;
    bool operator==(const LabelState&) const = default;
};

/// All that makes a shape the one that it is, and nothing that is derived of it or that others own: a shape
/// of the same kind that takes it over is the same, to the digit. It never changes.
struct ShapeState {
    ShapeKind::Id kind = ShapeKind::FreeDraw;
    std::string name;
    bool shown = false;
    bool showPoints = true;
    bool anchorCenter = true;
    bool keepsPlaces = false;
    /// To whatever the overlay is attached to.
    bool attached = false;
    PlacedPoints::State positions;
    ShapeSource source;
    std::uint32_t lineColor = 0;
    std::int32_t lineWidth = 0;
    std::uint32_t fillColor = 0;
    bool filled = false;
    /// What shapes hold as well, and what is large, is shared.
    std::variant<std::monostate, Shared<RoundState>, RectangleState, Shared<FreeDrawState>, LabelState> own;
    bool operator==(const ShapeState&) const = default;

    /// How much memory it takes that another one does not hold as well.
    std::size_t bytesBeyond(const ShapeState* other) const;
};

using ShapeStatePtr = std::shared_ptr<const ShapeState>;

}  // namespace OverlayEditor
