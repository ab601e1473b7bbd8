#pragma once

#include <string>

#include "format/ZelShape.h"

namespace OverlayEditor {

/// How messages call a shape of a file, by keyword and name: circle "A".
inline std::string labelOf(const halCore::ZEL::ZelShape& shape) {
    std::string name;
    shape.getName(name);
    return std::string(halCore::ZEL::ZelShape::shapeTypeToString(shape.shapeType())) + " \"" + name + '"';
}

}  // namespace OverlayEditor
