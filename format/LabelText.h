#pragma once

#include <string>
#include <string_view>

/// How labels and names become part of a line, and come back from it.
namespace halCore::ZEL {

/// What stands after "annotation" for a label: a line break as "\n" (two characters), other white space
/// as a blank, every leading, trailing or repeated blank as "_". Applied to such a text it changes nothing.
std::string textFromLabel(std::string_view label);

/// What such a text means: "_" is a blank and "\n" (two characters) a line break.
std::string labelFromText(std::string_view text);

/// A name as part of a line, as a reader will have it: a line break as "\n" (two characters), other white
/// space as a blank, none at the ends and, outside of quotes, no two in a row.
std::string nameInLine(std::string_view name);

/// The label of an annotation whose "3d name" is `name`: the name, underscores included, when it means
/// the same as the text, otherwise what the text means. A reader joins the name's words with single
/// blanks, so blanks that only the text still has are put back.
std::string labelFromTextAndName(std::string_view text, std::string_view name);

}  // namespace halCore::ZEL
