#include "geo/Mgrs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "geo/Angles.h"
#include "geo/GridProjections.h"

// The lettering of bands, columns and rows: DMA Technical Manual 8358.1, "Datums, Ellipsoids, Grids, and
// Grid Reference Systems", chapter 3 and appendix B.

namespace halCore {
namespace {

constexpr double kSquare = 100000.0;
constexpr double kFalseEasting = 500000.0;
constexpr double kSouthFalseNorthing = 10000000.0;
constexpr double kPoleOffset = 2000000.0;
constexpr double kUpsLimit = 4000000.0;
constexpr int kMaxDigits = 11;
constexpr int kMaxZone = 60;
constexpr int kSquaresToEquator = 100;

constexpr int kBands = 20;
constexpr int kFirstBand = 2;
constexpr int kColumns = 8;
constexpr int kRows = 20;

int fail(std::string* err, std::string_view reason) {
    if (err) *err = reason;
    return 1;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
char toUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Position in the alphabet of the grid, which is without I and O: A is 0, Z is 23; -1 for all else. A table,
/// for nobody can foresee the letters.
constexpr auto kLetterIndices = [] {
    std::array<std::int8_t, 256> result{};
    result.fill(-1);
    std::int8_t index = 0;
    for (const char letter : std::string_view("ABCDEFGHJKLMNPQRSTUVWXYZ")) {
        result[static_cast<unsigned char>(letter)] = index;
        result[static_cast<unsigned char>(letter - 'A' + 'a')] = index++;
    }
    return result;
}();
constexpr int letterIndex(char letter) {
    return kLetterIndices[static_cast<unsigned char>(letter)];
}

/// A reference split into its parts.
struct Parts {
    int zone = 0;
    std::array<char, 3> letters{};
    double easting = 0.0;
    double northing = 0.0;

    std::string_view gzdLetters() const { return {letters.data(), letters.size()}; }
};

bool isQuote(char c) {
    return c == '"' || c == '\'';
}

/// The text without quotes and outer blanks. \param store holds it when quotes stand within
std::string_view withoutQuotes(std::string_view text, std::string& store) {
    const auto isOutside = [](char c) { return UTILS::isBlank(c) || isQuote(c); };
    while (!text.empty() && isOutside(text.front())) text.remove_prefix(1);
    while (!text.empty() && isOutside(text.back())) text.remove_suffix(1);
    if (std::none_of(text.begin(), text.end(), isQuote)) return text;
    store = text;
    std::erase_if(store, isQuote);
    return store;
}

/// The metres that up to 11 digits of an easting or northing stand for.
bool readMeters(std::string_view digits, double& meters) {
    static constexpr std::array<double, kMaxDigits + 1> scales = {0.0, 1e4, 1e3, 1e2, 1e1, 1e0,
                                                                  1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
    if (digits.size() > kMaxDigits) return false;
    std::int64_t value = 0;
    for (const char c : digits) {
        if (!isDigit(c)) return false;
        value = 10 * value + (c - '0');
    }
    const double scale = scales[digits.size()];
    // Divided, not multiplied by an inexact fraction.
    meters = digits.size() > 5 ? static_cast<double>(value) / scale : static_cast<double>(value) * scale;
    return true;
}

int split(std::string_view text, Parts& parts, std::string* err) {
    std::string store;
    text = withoutQuotes(text, store);
    const std::size_t zoneSize =
        static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
    for (std::size_t i = 0; i < zoneSize && parts.zone <= kMaxZone; ++i)
        parts.zone = 10 * parts.zone + (text[i] - '0');
    if (parts.zone > kMaxZone || zoneSize > 2)
        return fail(err, "Invalid MGRS string: zone number out of range (0-60).");
    text.remove_prefix(zoneSize);
    if (text.empty()) return fail(err, "Invalid MGRS string: Missing grid zone designator.");

    const std::size_t letterCount =
        static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isLetter) - text.begin());
    if (letterCount > parts.letters.size())
        return fail(err, "Invalid MGRS string: GZD or Grid Sqare ID is too large.");
    if (letterCount < parts.letters.size()) {
        const bool isEndOrDigit = letterCount == text.size() || isDigit(text[letterCount]);
        return fail(err, isEndOrDigit ? "Invalid MGRS string: GZD or Grid Sqare ID missing."
                                      : "Invalid MGRS string: Invalid character found.");
    }
    for (std::size_t i = 0; i < parts.letters.size(); ++i) parts.letters[i] = toUpper(text[i]);
    // Only the polar areas have no zone; a zone written as 0 is none.
    const bool isPolar = parts.letters[0] <= 'B' || parts.letters[0] >= 'Y';
    if (parts.zone == 0 && (!isPolar || zoneSize > 0))
        return fail(err, "Invalid MGRS string: expected zone number.");
    text.remove_prefix(parts.letters.size());

    if (text.size() % 2 != 0)
        return fail(err, "Invalid MGRS string: Numeric easting and northing location are different length.");
    const std::size_t half = text.size() / 2;
    if (!readMeters(text.substr(0, half), parts.easting))
        return fail(err, "Invalid MGRS string: Numeric easting location is not a valid number.");
    if (!readMeters(text.substr(half), parts.northing))
        return fail(err, "Invalid MGRS string: Numeric northing location is not a valid number.");
    return 0;
}

/// The rows of 100 km squares, counted from the equator northward, that a latitude band reaches into in a
/// column; `band` and `column` count from 0.
struct RowRange {
    int first;
    int last;
};

constexpr RowRange bandRows(int band, int fromEdge) {
    // Counted away from the equator: band edges lie every 8 degrees, which is 8.89 squares. Far from the
    // equator a parallel rises towards the edges of a zone, so that three edges fall into other rows there
    // than in the middle.
    const bool isNorth = band >= 10;
    const int distance = isNorth ? band - 10 : 9 - band;
    constexpr std::array<RowRange, 10> rows = {
        {{0, 8}, {8, 17}, {17, 26}, {26, 35}, {35, 44}, {44, 53}, {53, 62}, {62, 71}, {71, 80}, {80, 89}}};
    RowRange range = rows[static_cast<std::size_t>(distance)];
    if (distance == 7 && fromEdge == 3) range.last = 70;
    if (distance == 8 && fromEdge >= 2) range = {70, 79};
    if (distance == 9 && fromEdge >= 1) range.first = 79;
    // Band X is 12 degrees high.
    if (distance == 9 && isNorth) range.last = 94;
    return isNorth ? range : RowRange{-1 - range.last, -1 - range.first};
}

RowRange getLatitudeBandRows_(int band, int column) {
    static constexpr auto table = [] {
        std::array<std::array<RowRange, kColumns>, kBands> result{};
        for (int b = 0; b < kBands; ++b)
            for (int c = 0; c < kColumns; ++c)
                result[static_cast<std::size_t>(b)][static_cast<std::size_t>(c)] =
                    bandRows(b, std::min(c, kColumns - 1 - c));
        return result;
    }();
    return table[static_cast<std::size_t>(band)][static_cast<std::size_t>(column)];
}

/// The lettering of a zone: the letter of its first column, at easting 100 km, and of the row at the
/// equator. There are three sets of columns and two of rows, in turn.
struct GridValues {
    int firstColumn;
    int firstRow;
};

GridValues getGridValues_(int zone) {
    return {(zone - 1) % 3 * kColumns, zone % 2 == 0 ? letterIndex('F') : letterIndex('A')};
}

int utmSquare(int zone, std::string_view letters, double easting, double northing, bool& northPole,
              double& utmEasting, double& utmNorthing, std::string* err) {
    if (zone < 1 || zone > kMaxZone) return fail(err, "Invalid MGRS coordinate: Zone is not in range 1-60");
    const auto letterAt = [letters](std::size_t i) {
        return letterIndex(i < letters.size() ? letters[i] : '\0');
    };
    const int band = letterAt(0) - kFirstBand;
    if (band < 0 || band >= kBands)
        return fail(err, "Invalid MGRS coordinate: Latitude band letter is invalid.");
    if (letterAt(0) == letterIndex('X') && (zone == 32 || zone == 34 || zone == 36))
        return fail(err, "Invalid MGRS coordinate: Zones 32X, 34X, and 36X do not exist.");

    // Zone 32V is widened to the west at the cost of 31V.
    if (zone == 31 && letterAt(0) == letterIndex('V') && letterAt(1) > letterIndex('D'))
        return fail(err, "Invalid MGRS coordinate: Zone 31V must have grid column letter D or lower.");
    const GridValues grid = getGridValues_(zone);
    const int column = letterAt(1) - grid.firstColumn;
    if (column < 0 || column >= kColumns)
        return fail(err, "Invalid MGRS coordinate: Grid column letter is out of range.");
    const int row = letterAt(2);
    if (row < 0 || row >= kRows || letters.size() != 3)
        return fail(err, "Invalid MGRS coordinate: Grid row letter is out of range.");
    if (!(easting >= 0.0 && easting < kSquare))
        return fail(err, "Invalid MGRS coordinate: Easting is out of range.");

    // Row letters repeat every 20 squares; the band tells which of them is meant.
    const auto [firstRow, lastRow] = getLatitudeBandRows_(band, column);
    const int squareRow = firstRow + (row - grid.firstRow - firstRow + 100 * kRows) % kRows;
    if (!(northing >= 0.0 && northing < kSquare) || squareRow > lastRow)
        return fail(err, "Invalid MGRS coordinate: Northing is out of range.");

    northPole = squareRow >= 0;
    utmEasting = (column + 1) * kSquare + easting;
    utmNorthing = (northPole ? squareRow : squareRow + kSquaresToEquator) * kSquare + northing;
    return 0;
}

int upsSquare(std::string_view letters, double easting, double northing, bool& northPole, double& upsEasting,
              double& upsNorthing, std::string* err) {
    if (letters.size() != 3) return fail(err, "Invalid UPS coordinate: GZD string must be 3 characters.");
    struct Area {
        char letter;
        std::string_view columns;
        int firstColumn;
        int rowCount;
        int firstRow;
    };
    static constexpr std::array<Area, 4> areas = {{{'A', "JKLPQRSTUXYZ", 8, 24, 8},
                                                   {'B', "ABCFGHJKLPQR", 20, 24, 8},
                                                   {'Y', "RSTUXYZ", 13, 14, 13},
                                                   {'Z', "ABCFGHJ", 20, 14, 13}}};
    const auto area =
        std::find_if(areas.begin(), areas.end(),
                     [letter = toUpper(letters[0])](const Area& entry) { return entry.letter == letter; });
    if (area == areas.end())
        return fail(err, "Invalid UPS coordinate: First letter of GZD must be A, B, Y, or Z.");
    const std::size_t found = area->columns.find(toUpper(letters[1]));
    const int column = found == std::string_view::npos ? -1 : static_cast<int>(found);
    if (column < 0) return fail(err, "Grid column letter is not valid for provided GZD.");
    const int row = letterIndex(letters[2]);
    if (row < 0 || row >= area->rowCount)
        return fail(err, "Grid row letter is outside of the range of possible values.");
    if (!(easting >= 0.0 && easting < kSquare))
        return fail(err, "Invalid MGRS coordinate: Easting is out of range.");
    if (!(northing >= 0.0 && northing < kSquare))
        return fail(err, "Invalid MGRS coordinate: Northing is out of range.");

    northPole = area->letter > 'B';
    upsEasting = (area->firstColumn + column) * kSquare + easting;
    upsNorthing = (area->firstRow + row) * kSquare + northing;
    return 0;
}

}  // namespace

int Mgrs::convertMgrsToGeodetic(std::string_view mgrs, double& lat, double& lon, std::string* err) {
    Parts parts;
    if (const int code = split(mgrs, parts, err)) return code;
    bool north = false;
    double easting = 0.0;
    double northing = 0.0;
    if (parts.zone == 0) {
        const int code =
            upsSquare(parts.gzdLetters(), parts.easting, parts.northing, north, easting, northing, err);
        return code ? code : convertUpsToGeodetic(north, easting, northing, lat, lon, err);
    }
    const int code = utmSquare(parts.zone, parts.gzdLetters(), parts.easting, parts.northing, north, easting,
                               northing, err);
    return code ? code : convertUtmToGeodetic(parts.zone, north, easting, northing, lat, lon, err);
}

int Mgrs::breakMgrsString(std::string_view mgrs, int& zone, std::string& gzdLetters, double& easting,
                          double& northing, std::string* err) {
    Parts parts;
    if (const int code = split(mgrs, parts, err)) return code;
    zone = parts.zone;
    gzdLetters = parts.gzdLetters();
    easting = parts.easting;
    northing = parts.northing;
    return 0;
}

int Mgrs::convertMgrsToUtm(int zone, std::string_view gzdLetters, double easting, double northing,
                           bool& northPole, double& utmEasting, double& utmNorthing, std::string* err) {
    return utmSquare(zone, gzdLetters, easting, northing, northPole, utmEasting, utmNorthing, err);
}

int Mgrs::convertUtmToGeodetic(int zone, bool northHemisphere, double easting, double northing, double& lat,
                               double& lon, std::string* err) {
    if (zone < 1 || zone > kMaxZone) return fail(err, "Invalid UTM coordinate: Zone is not in range 1-60.");
    if (!(easting >= kSquare && easting <= 9.0 * kSquare))
        return fail(err, "Invalid UTM coordinate: Easting is not within expected range.");
    if (!(northing >= 0.0 && northing <= kSouthFalseNorthing))
        return fail(err, "Invalid UTM coordinate: Northing is not within expected range.");
    const GridPosition position = inverseTransverseMercator(
        easting - kFalseEasting, northHemisphere ? northing : northing - kSouthFalseNorthing);
    if (!position.isNearSide || !(std::abs(position.lat) <= kHalfPi))
        return fail(err, "UTM to geodetic conversion resulted in position outside valid range.");
    lat = position.lat;
    lon = wrapToPi((6.0 * zone - 183.0) * kRadiansPerDegree + position.lon);
    return 0;
}

int Mgrs::convertMgrsToUps(std::string_view gzdLetters, double easting, double northing, bool& northPole,
                           double& upsEasting, double& upsNorthing, std::string* err) {
    return upsSquare(gzdLetters, easting, northing, northPole, upsEasting, upsNorthing, err);
}

int Mgrs::convertUpsToGeodetic(bool northPole, double easting, double northing, double& lat, double& lon,
                               std::string* err) {
    const auto isInside = [](double value) { return value >= 0.0 && value <= kUpsLimit; };
    const auto refuse = [err](const char* name, double value) {
        if (err) *err = name + UTILS::writeNumber(value) + ") is not within the range of UPS: [4000000, 0].";
        return 1;
    };
    if (!isInside(easting)) return refuse("Easting (", easting);
    if (!isInside(northing)) return refuse("Northing (", northing);
    const GridPosition position =
        inversePolarStereographic(northPole, easting - kPoleOffset, northing - kPoleOffset);
    lat = position.lat;
    lon = position.lon;
    return 0;
}

}  // namespace halCore
