#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <GeographicLib/Geodesic.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/NumberText.h"
#include "geo/Angles.h"
#include "geo/Sodano.h"
#include "geo/TypedStep.h"

namespace UTILS {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

struct TypedStepTest : ::testing::Test {
    TspiUnitsProviderAdapter units;
    std::string reason;

    /// "way 9260 270", as degrees and metres; the reason for nothing.
    std::string read(const std::string& text, bool offsets = false) {
        const TypedStep step = readTypedStep(text, units, offsets, reason);
        const auto number = [](double value) { return " " + writeNumber(value, 10); };
        const auto angle = [&](double radians) { return number(radians / halCore::kRadiansPerDegree); };
        if (const auto* const places = std::get_if<TypedPlaces>(&step)) {
            std::string all = "places";
            for (const auto& place : places->places)
                all += angle(place.lat) + angle(place.lon) + (place.alt ? number(*place.alt) : "");
            return all;
        }
        if (const auto* const offset = std::get_if<TypedOffset>(&step))
            return "offset" + number(offset->x) + number(offset->y) + (offset->z ? number(*offset->z) : "");
        if (const auto* const way = std::get_if<TypedWay>(&step))
            return "way" + number(way->meters) + angle(way->azimuthRad);
        if (const auto* const shift = std::get_if<TypedShift>(&step))
            return "shift" + number(shift->eastMeters) + number(shift->northMeters);
        if (const auto* const length = std::get_if<TypedLength>(&step))
            return "length" + number(length->metersAsRange) + number(length->metersAsAltitude);
        if (const auto* const sector = std::get_if<TypedSector>(&step))
            return "sector" + number(sector->meters) + angle(sector->startRad) + angle(sector->endRad);
        return reason;
    }
};

TEST_F(TypedStepTest, TellsItsFormsApart) {
    struct Row {
        const char* text;
        const char* meaning;
    };
    for (const auto& [text, meaning] :
         std::vector<Row>{{"5 nm 270", "way 9260 270"},
                          {"270 5 nm", "way 9260 270"},
                          {"270/5nm", "way 9260 270"},
                          {"045\xC2\xB0T, 500 m", "way 500 45"},
                          {"500 M 45 true", "way 500 45"},
                          {"1,5 nm 45", "\"1,5 nm\": use a point for decimals: \"1.5 nm\""},
                          {"270\xC2\xB0"
                           "30' 5 nm",
                           "way 9260 270.5"},
                          {"5 nm -90", "way 9260 270"},
                          {"5 nm 360", "way 9260 0"},
                          {"6 kyd 27", "way 5486.3"},
                          {"6KYD27", "places "},
                          {"+3 km E 1 km N", "shift 3000 1000"},
                          {"2 nm south", "shift 0 -3704"},
                          {"3E 1N", "places 1 3"},
                          {"5", "length 5 1.52"},
                          {"5 nm", "length 9260 9260"},
                          {"12 nm, 270, 330", "sector 22224 270 330"},
                          {"12 nm 270 330", "sector 22224 270 330"},
                          {"21 18.5N 158 02.0W", "places 21.30833333 -158.0333333"},
                          {"158W 21.3N", "places 21.3 -158"},
                          {"21.3, -158, 300 m", "places 21.3 -158 300"},
                          {"4QFJ1234567890", "places 21."},
                          {"1 2N 3 4E\xE2\x80\xA8"
                           "5 6S 7 8W",
                           "places 1.033333333 3.066666667 -5.1 -7.133333333"}}) {
        units.setAltitudeUnits(UnitType_t::Feet);
        EXPECT_THAT(read(text), StartsWith(meaning)) << text;
    }
    EXPECT_EQ(read("100, -200", true), "offset 100 -200");
    EXPECT_EQ(read("1 km, 2 km, 30", true), "offset 1000 2000 30");
    EXPECT_EQ(read("21.3N 158W", true), "places 21.3 -158");
    for (const auto& [text, why] :
         std::vector<Row>{{"5 nm 270M", "\"270M\" is magnetic"},
                          {"270 m 5 nm", "is magnetic"},
                          {"5 nm 400", "more than one turn"},
                          {"0 nm 90", "greater than 0"},
                          {"30000 km 90", "more than half of the earth"},
                          {"12 270", "type \"12 m 270\""},
                          {"91 0", "this is no position, and a distance needs its unit"},
                          {"+3 E 1 N", "type \"+3 m E 1 m N\""},
                          {"+3 km E 1 N", "type \"+3 km E 1 m N\""},
                          {"45,5 12,3", "a comma may be a point"},
                          {"+1 km E 2 km W", "understood are"},
                          {"5 nm 1 2 3", "understood are"},
                          {"+0 km E", "leads nowhere"},
                          {"harbour", "understood are"}})
        EXPECT_THAT(read(text), HasSubstr(why)) << text;
    EXPECT_EQ(read("  "), "");
}

/// Whatever is typed for a way leads where GeographicLib says, poles and the date line among the rest.
TEST_F(TypedStepTest, WaysLeadWhereTheGeodesicDoes) {
    std::mt19937 random(7);
    const auto any = [&](double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    };
    const std::vector<UnitType_t> all(lengthUnitTypes().begin(), lengthUnitTypes().end());
    for (int i = 0; i < 4000; ++i) {
        const double lat = i % 7 == 0 ? (i % 2 ? 90.0 : -90.0) : any(-90, 90);
        const double lon = i % 5 == 0 ? (i % 2 ? 180.0 : -179.9999) : any(-180, 180);
        const UnitType_t unit = all[static_cast<std::size_t>(i) % all.size()];
        const double meters = std::pow(10.0, any(0, 6));
        const std::string length =
            writeNumber(meters / unitsGetUnits(unit).convertTo(halCore::Units::METERS, 1.0), 15) + " " +
            std::string(unitsGetAbbreviation(unit));
        const std::string bearing = writeNumber(any(0, 360), 12);
        double east = 0.0;
        std::string text;
        if (i % 3 == 0) {
            text = length + " " + bearing;
        } else if (i % 3 == 1) {
            text = bearing + " " + length;
        } else {
            east = std::floor(any(-5e5, 5e5));
            text = "+" + length + " N " + writeNumber(east, 15) + " m E";
        }
        if (text.find('e') != std::string::npos) continue;  // an exponent
        const TypedStep step = readTypedStep(text, units, false, reason);
        const auto* const shift = std::get_if<TypedShift>(&step);
        const TypedWay way = shift ? shift->way() : std::get<TypedWay>(step);
        const double wanted = shift ? std::hypot(meters, east) : meters;
        const double azimuth =
            shift ? std::atan2(east, meters) / halCore::kRadiansPerDegree : readNumber(bearing).value();
        const halCore::Vec3 reached = halCore::Sodano::direct(
            halCore::Vec3(lat * halCore::kRadiansPerDegree, lon * halCore::kRadiansPerDegree, 0),
            way.azimuthRad, way.meters);
        const auto& earth = GeographicLib::Geodesic::WGS84();
        double lat2 = 0.0, lon2 = 0.0, apart = 0.0;
        earth.Direct(lat, lon, azimuth, wanted, lat2, lon2);
        earth.Inverse(lat2, lon2, reached.lat() / halCore::kRadiansPerDegree,
                      reached.lon() / halCore::kRadiansPerDegree, apart);
        ASSERT_LT(apart, 1e-3) << lat << ' ' << lon << ": " << text;
    }
}

}  // namespace
}  // namespace UTILS
