#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <GeographicLib/Geodesic.hpp>
#include <benchmark/benchmark.h>

#include "geo/Angles.h"
#include "geo/Sodano.h"

namespace {

using namespace halCore;
using Four = std::array<double, 4>;

/// Positions spread evenly over the globe in pairs: radians.
const std::vector<Four>& pairs() {
    static const std::vector<Four> result = [] {
        std::mt19937_64 random(1);
        std::uniform_real_distribution<double> unit(-1.0, 1.0);
        std::vector<Four> values(4096);
        for (Four& v : values)
            v = {std::asin(unit(random)), kPi * unit(random), std::asin(unit(random)), kPi * unit(random)};
        return values;
    }();
    return result;
}

/// Start, azimuth and distance: radians and metres.
const std::vector<Four>& courses() {
    static const std::vector<Four> result = [] {
        std::vector<Four> values = pairs();
        for (Four& v : values) v = {v[0], v[1], 2.0 * v[2], 1e7 * std::abs(v[3]) / kPi};
        return values;
    }();
    return result;
}

std::vector<Four> scaled(const std::vector<Four>& values, const Four& factors) {
    std::vector<Four> result = values;
    for (Four& v : result)
        for (std::size_t i = 0; i < v.size(); ++i) v[i] *= factors[i];
    return result;
}

constexpr double kDegrees = kDegreesPerRadian;

template <typename Function>
void overAll(benchmark::State& state, const std::vector<Four>& values, Function function) {
    for (auto _ : state)
        for (const Four& v : values) benchmark::DoNotOptimize(function(v));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}

void exactInverse(benchmark::State& state) {
    const auto& geodesic = GeographicLib::Geodesic::WGS84();
    overAll(state, scaled(pairs(), {kDegrees, kDegrees, kDegrees, kDegrees}), [&](const Four& v) {
        std::array<double, 3> out;
        geodesic.Inverse(v[0], v[1], v[2], v[3], out[0], out[1], out[2]);
        return out;
    });
}
BENCHMARK(exactInverse)->Name("inverse/GeographicLib");

void ourInverse(benchmark::State& state) {
    overAll(state, pairs(), [](const Four& v) { return Sodano::inverse(v[0], v[1], v[2], v[3]); });
}
BENCHMARK(ourInverse)->Name("inverse/Sodano");

void exactDirect(benchmark::State& state) {
    const auto& geodesic = GeographicLib::Geodesic::WGS84();
    overAll(state, scaled(courses(), {kDegrees, kDegrees, kDegrees, 1.0}), [&](const Four& v) {
        std::array<double, 3> out;
        geodesic.Direct(v[0], v[1], v[2], v[3], out[0], out[1], out[2]);
        return out;
    });
}
BENCHMARK(exactDirect)->Name("direct/GeographicLib");

void ourDirect(benchmark::State& state) {
    overAll(state, courses(), [](const Four& v) { return Sodano::direct(v[0], v[1], v[2], v[3]); });
}
BENCHMARK(ourDirect)->Name("direct/Sodano");

}  // namespace
