#pragma once

#include <string>

#include "format/ZelShape.h"

namespace exchange {

/// OGR's style string of a shape: pen, brush, symbol or label.
std::string styleOf(const halCore::ZEL::ZelShape& shape);

/// Sets what of colours, widths and fonts a shape has not got from a style string, e.g. one that a KML driver
/// made of its styles. A text that is none sets nothing.
void applyStyle(const char* style, halCore::ZEL::ZelShape& shape);

/// The text of the label in a style string; empty without one.
std::string labelOfStyle(const char* style);

}  // namespace exchange
