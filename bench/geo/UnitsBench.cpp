#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include <GeographicLib/DMS.hpp>
#include <benchmark/benchmark.h>

#include "common/NumberText.h"
#include "geo/AngleText.h"
#include "geo/Units.h"
#include "geo/UnitsRegistry.h"

namespace {

using namespace halCore;

std::vector<double> lengths() {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> meters(-1e6, 1e6);
    std::vector<double> values(4096);
    std::generate(values.begin(), values.end(), [&] { return meters(random); });
    return values;
}

template <typename Values, typename Function>
void overAll(benchmark::State& state, const Values& values, Function function) {
    for (auto _ : state)
        for (const auto& value : values) benchmark::DoNotOptimize(function(value));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}

void bareArithmetic(benchmark::State& state) {
    const std::vector<double> scales{Units::METERS.toBaseScalar(), Units::FEET.toBaseScalar()};
    overAll(state, lengths(), [&](double value) { return value * scales[0] / scales[1]; });
}
BENCHMARK(bareArithmetic)->Name("convert a length/bare arithmetic");

void convertTo(benchmark::State& state) {
    const Units from = Units::METERS;
    const Units to = Units::FEET;
    overAll(state, lengths(), [&](double value) { return from.convertTo(to, value); });
}
BENCHMARK(convertTo)->Name("convert a length/Units");

constexpr std::array<std::string_view, 8> kAbbreviations = {"ft", "yd", "deg", "nm", "m", "km", "rad", "kyd"};

void walk(benchmark::State& state) {
    UnitsRegistry registry;
    registry.registerDefaultUnits();
    std::vector<Units> all;
    for (const std::string& family : registry.families())
        for (const Units& unit : registry.units(family)) all.push_back(unit);
    overAll(state, kAbbreviations, [&](std::string_view text) {
        return *std::find_if(all.begin(), all.end(),
                             [text](const Units& u) { return u.abbreviation() == text; });
    });
}
BENCHMARK(walk)->Name("find a unit/walk through all");

void lookUp(benchmark::State& state) {
    overAll(state, kAbbreviations, [](std::string_view text) {
        // A registry is made anew for each shape that brings none.
        UnitsRegistry registry;
        registry.registerDefaultUnits();
        return registry.unitsByAbbreviation(text);
    });
}
BENCHMARK(lookUp)->Name("find a unit/new registry");

/// Latitudes in every form that the writer knows.
const std::vector<std::string>& angles(bool isDecimal) {
    static const auto make = [](bool decimal) {
        std::mt19937_64 random(1);
        std::uniform_real_distribution<double> radians(-1.57, 1.57);
        std::vector<std::string> values(4096);
        for (std::string& value : values)
            value = decimal ? UTILS::writeNumber(radians(random) * 57.29577951308232)
                            : writeAngle(radians(random), AngleFormat::DegreesMinutesSeconds, 3,
                                         AngleKind::Latitude);
        return values;
    };
    static const std::vector<std::string> decimals = make(true);
    static const std::vector<std::string> sexagesimals = make(false);
    return isDecimal ? decimals : sexagesimals;
}

double theirAngle(const std::string& text) {
    GeographicLib::DMS::flag flag;
    return GeographicLib::DMS::Decode(text, flag);
}

double ourAngle(const std::string& text) {
    double radians = 0.0;
    readAngle(text, radians);
    return radians;
}

void theirDecimals(benchmark::State& state) {
    overAll(state, angles(true), theirAngle);
}
BENCHMARK(theirDecimals)->Name("read decimal degrees/GeographicLib");
void ourDecimals(benchmark::State& state) {
    overAll(state, angles(true), ourAngle);
}
BENCHMARK(ourDecimals)->Name("read decimal degrees/readAngle");

void theirSexagesimals(benchmark::State& state) {
    overAll(state, angles(false), theirAngle);
}
BENCHMARK(theirSexagesimals)->Name("read degrees, minutes, seconds/GeographicLib");
void ourSexagesimals(benchmark::State& state) {
    overAll(state, angles(false), ourAngle);
}
BENCHMARK(ourSexagesimals)->Name("read degrees, minutes, seconds/readAngle");

}  // namespace
