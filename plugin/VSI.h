#pragma once

#include <string>

/// Who made this library, and which build of it this is.
namespace VSI {

std::string makerName();
std::string webAddress();
std::string contact();

/// The project's version and the day of the build, SOURCE_DATE_EPOCH respected: "0.1.0 (2026-11-21)".
std::string version();

}  // namespace VSI
