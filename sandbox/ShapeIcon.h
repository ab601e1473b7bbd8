#pragma once

#include <QIcon>

#include "format/ZelShape.h"

namespace sandbox {

/// A small drawing of a shape's kind, in its colour.
QIcon shapeIcon(const halCore::ZEL::ZelShape& shape);

/// What a list calls a shape: its own name, its text, or its kind ("Circle").
QString shapeTitle(const halCore::ZEL::ZelShape& shape);

}  // namespace sandbox
