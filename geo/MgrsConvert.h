#pragma once

#include <string>
#include <string_view>

namespace UTILS {

/// The editor's two-way MGRS converter, on top of GeographicLib, and the text handling of its MGRS
/// fields. Takes what people type: blanks between the parts, lower case, quotes, and 0 to 11 digits each
/// of easting and northing.
///
/// The functions return 0 and set their results; otherwise they return non-zero, leave them alone, and
/// put the reason into `err` when given. None throws. Latitudes and longitudes are radians.
class MgrsConvert {
  public:
    /// Digits of easting and northing that the editor shows: metres.
    static constexpr int kDigits = 5;
    static constexpr int kMaxDigits = 11;

    /// The square of 10^(5 - digits) metres that holds the position, without blanks ("4QFJ1234567890"). A
    /// position within 100 nm of the next square's line counts as on it, so that references round-trip.
    /// `digits` is clamped to 0 to kMaxDigits.
    static int geodeticToMgrs(double lat, double lon, std::string& mgrs, std::string* err = nullptr);
    static int geodeticToMgrs(double lat, double lon, int digits, std::string& mgrs,
                              std::string* err = nullptr);

    /// The south-west corner of the square, as halCore::Mgrs reads it.
    static int mgrsToGeodetic(std::string_view mgrs, double& lat, double& lon, std::string* err = nullptr);

    /// Splits a reference into the four texts of the editor's field, in upper case and without blanks:
    /// "4q fj 12345 67890" into "4Q", "FJ", "12345", "67890"; a polar one into "Z", "AH", ...
    static int divideMgrs(std::string_view mgrs, std::string& gzd, std::string& squareId,
                          std::string& easting, std::string& northing, std::string* err = nullptr);
    /// Joins the four texts to a reference, which has the right form but may denote no place.
    static int combineMgrs(std::string_view gzd, std::string_view squareId, std::string_view easting,
                           std::string_view northing, std::string& mgrs, std::string* err = nullptr);

    /// Whether a reference, or the one that the parts make, denotes a place.
    static bool isValidMgrs(std::string_view mgrs, std::string* err = nullptr);
    static bool isValidMgrs(std::string_view gzd, std::string_view squareId, std::string_view easting,
                            std::string_view northing, std::string* err = nullptr);
};

}  // namespace UTILS
