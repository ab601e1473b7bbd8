#pragma once

#include <string>
#include <string_view>

namespace halCore {

/// Reads grid references of the Military Grid Reference System (MGRS) on WGS-84. A reference names the
/// south-west corner of its square: "4QFJ" a square of 100 km, "4QFJ12346789" one of 10 m.
///
/// Every function returns 0 and sets its results; otherwise it returns non-zero, leaves them alone, and
/// puts the reason into `err` when given. None throws. Latitudes and longitudes are radians, eastings and
/// northings metres.
class Mgrs {
  public:
    /// Takes what GeographicLib takes, quotes in it and blanks around it too, and puts it to the same place;
    /// only 32X, 34X, 36X and 31V from column E on are refused, as those places belong to the zones beside
    /// them.
    static int convertMgrsToGeodetic(std::string_view mgrs, double& lat, double& lon,
                                     std::string* err = nullptr);

    /// Splits a reference. `zone` is 1 to 60, or 0 in the polar areas (UPS). `gzdLetters` are three upper
    /// case letters: latitude band or polar area, column, row. `easting` and `northing` are metres within
    /// the square of 100 km, 0 when the reference has no digits; it has at most 11 of each.
    static int breakMgrsString(std::string_view mgrs, int& zone, std::string& gzdLetters, double& easting,
                               double& northing, std::string* err = nullptr);

    /// From a square and the metres within it to UTM. `northPole` tells the northern hemisphere; UTM
    /// northings of the southern one count from 10,000 km at the equator.
    static int convertMgrsToUtm(int zone, std::string_view gzdLetters, double easting, double northing,
                                bool& northPole, double& utmEasting, double& utmNorthing,
                                std::string* err = nullptr);
    /// Easting 100 km to 900 km, northing 0 to 10,000 km.
    static int convertUtmToGeodetic(int zone, bool northHemisphere, double easting, double northing,
                                    double& lat, double& lon, std::string* err = nullptr);

    /// The same through UPS; `northPole` tells which pole.
    static int convertMgrsToUps(std::string_view gzdLetters, double easting, double northing, bool& northPole,
                                double& upsEasting, double& upsNorthing, std::string* err = nullptr);
    /// Easting and northing 0 to 4,000 km; the pole is at 2,000 km.
    static int convertUpsToGeodetic(bool northPole, double easting, double northing, double& lat, double& lon,
                                    std::string* err = nullptr);
};

}  // namespace halCore
