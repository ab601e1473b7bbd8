#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/Vec3.h"
#include "format/ZelShape.h"

namespace halCore::ZEL {

/// What a line of the written form says: its keyword and the words behind it. A text or a name is one word.
struct ShapeField {
    std::string keyword;
    std::vector<std::string> values;

    std::string line() const;
    friend bool operator==(const ShapeField&, const ShapeField&) = default;
};

/// The values of a shape that an editor can change, by slot, in the shape's units. A list's points are
/// not among them. \see BlockSlot
using ShapeFields = std::map<int, ShapeField>;
ShapeFields fieldsOf(ZelShape& shape);

/// A shape's list of points; null for a shape without one.
const std::vector<Vec3>* pointsOf(const ZelShape& shape);
std::vector<Vec3>* pointsOf(ZelShape& shape);

/// Where a shape without a list stands: its centre, or a label's position. Nothing where its block names
/// none.
std::optional<Vec3> anchorOf(const ZelShape& shape);
/// Whether a shape counts as absolute and has no place: written as it is, it would come back as one that
/// stands on whatever platform it is put.
bool isPlaceless(const ZelShape& shape);

/// How a point of the shape stands in its block.
ShapeField pointField(const ZelShape& shape, const Vec3& point);

}  // namespace halCore::ZEL
