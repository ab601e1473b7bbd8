#pragma once

#include <string>
#include <string_view>

/// What is said of places that are read as the format has it, but perhaps not as they were meant. Words are
/// as the reader sees them, in small letters unless they are quoted. Each is empty when there is nothing to
/// say.
namespace halCore::ZEL {

class ZelShape;

/// Of a latitude that ended in a capital S, which would be south.
std::string adviceOnCapitalS(std::string_view latitude);

/// Of a grid reference, and the words behind it: these look like its digits.
std::string adviceOnReference(std::string_view reference, std::string_view second, std::string_view third);

/// Of a latitude and a longitude: they lie beyond the globe, or seem to be changed over or to
/// be degrees, minutes and seconds in a row of digits.
std::string adviceOnPlace(std::string_view latitude, std::string_view longitude);

/// Of the sides of a box: one lies beyond the globe, or the north side south of the south side.
std::string adviceOnBox(std::string_view north, std::string_view south, std::string_view west,
                        std::string_view east);

/// Of a shape that names no place, neither its own nor one that it counts from.
std::string adviceOnMissingPlace(const ZelShape& shape);

}  // namespace halCore::ZEL
