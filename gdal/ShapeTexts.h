#pragma once

#include <string>
#include <string_view>

#include "format/ZelShape.h"

namespace exchange {

// Attributes of shapes as one text each. Getters return 0 when there is one.

/// Which angles of a platform the shape follows: "c", "p" and "r".
int followLetters(const halCore::ZEL::ZelShape& shape, std::string& out);
void setFollowLetters(halCore::ZEL::ZelShape& shape, std::string_view letters);

/// The units of the block, by their abbreviations. One that is unknown, or measures something else, is not
/// set.
int getAltitudeUnit(const halCore::ZEL::ZelShape& shape, std::string& out);
int getRangeUnit(const halCore::ZEL::ZelShape& shape, std::string& out);
int getAngleUnit(const halCore::ZEL::ZelShape& shape, std::string& out);
void setAltitudeUnit(halCore::ZEL::ZelShape& shape, std::string_view name);
void setRangeUnit(halCore::ZEL::ZelShape& shape, std::string_view name);
void setAngleUnit(halCore::ZEL::ZelShape& shape, std::string_view name);

/// The comment lines of the block.
int commentLines(const halCore::ZEL::ZelShape& shape, std::string& out);
void setCommentLines(halCore::ZEL::ZelShape& shape, std::string_view lines);
/// Gives a picture, or a label with an icon, the comments that hold them in a file, in place of those it has.
void completeComments(halCore::ZEL::ZelShape& shape);

}  // namespace exchange
