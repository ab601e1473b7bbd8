#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/UTMUPS.hpp>
#include <benchmark/benchmark.h>

#include "geo/Angles.h"
#include "geo/Mgrs.h"

namespace {

using namespace halCore;
using GeographicLib::MGRS;
using GeographicLib::UTMUPS;

/// References to the metre, spread evenly over the globe.
const std::vector<std::string>& references() {
    static const std::vector<std::string> result = [] {
        std::mt19937_64 random(1);
        std::uniform_real_distribution<double> unit(-1.0, 1.0);
        std::vector<std::string> values(4096);
        for (std::string& value : values) {
            const double lat = std::asin(unit(random)) * kDegreesPerRadian;
            int zone;
            bool north;
            double easting, northing;
            UTMUPS::Forward(lat, 180.0 * unit(random), zone, north, easting, northing);
            MGRS::Forward(zone, north, easting, northing, lat, 5, value);
        }
        return values;
    }();
    return result;
}

struct LatLon {
    double lat = 0.0;
    double lon = 0.0;
};

template <typename Function>
void overAll(benchmark::State& state, Function function) {
    for (auto _ : state)
        for (const std::string& mgrs : references()) benchmark::DoNotOptimize(function(mgrs));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(references().size()));
}

void theirs(benchmark::State& state) {
    overAll(state, [](const std::string& mgrs) {
        int zone, digits;
        bool north;
        double easting, northing;
        LatLon out;
        MGRS::Reverse(mgrs, zone, north, easting, northing, digits, false);
        UTMUPS::Reverse(zone, north, easting, northing, out.lat, out.lon);
        return out;
    });
}
BENCHMARK(theirs)->Name("MGRS to position/GeographicLib");

void ours(benchmark::State& state) {
    overAll(state, [](const std::string& mgrs) {
        LatLon out;
        Mgrs::convertMgrsToGeodetic(mgrs, out.lat, out.lon);
        return out;
    });
}
BENCHMARK(ours)->Name("MGRS to position/Mgrs");

}  // namespace
