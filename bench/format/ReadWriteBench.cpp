#include <benchmark/benchmark.h>
#include <malloc.h>

#include "format/Peers.h"

// The first of every group is the honest limit of text: std::from_chars and std::to_chars. Items are points
// for the lines, shapes for the small shapes.

namespace {

using namespace bench;

/// Memory that was freed is kept: whose turn it is to ask the kernel for pages would decide otherwise.
[[maybe_unused]] const bool kHeapIsWarm =
    mallopt(M_TRIM_THRESHOLD, 1 << 30) != 0 && mallopt(M_MMAP_THRESHOLD, 1 << 30) != 0;

using Source = const Data& (*)();

std::int64_t items(const Data& data) {
    return static_cast<std::int64_t>(data.shapes.size() == 1 ? data.points : data.shapes.size());
}

template <typename Function>
void repeat(benchmark::State& state, const Data& data, Function function) {
    for (auto _ : state) benchmark::DoNotOptimize(function());
    state.SetItemsProcessed(state.iterations() * items(data));
}

template <Source source>
void readLimit(benchmark::State& state) {
    repeat(state, source(), [] { return readByFromChars(source().zel); });
}
template <Source source>
void readOurs(benchmark::State& state) {
    repeat(state, source(), [] { return readZel(source().zel); });
}
template <Source source>
void readOurStream(benchmark::State& state) {
    std::istringstream in(source().zel);
    repeat(state, source(), [&in] {
        in.clear();
        in.seekg(0);
        halCore::ZEL::Parser::Shapes shapes;
        halCore::ZEL::Parser().parse(in, shapes);
        return shapes;
    });
}
template <Source source>
void readSimdjson(benchmark::State& state) {
    repeat(state, source(), [] { return readBySimdjson(source().geoJson); });
}
template <Source source>
void readRapidJson(benchmark::State& state) {
    repeat(state, source(), [] { return readByRapidJson(source().geoJson); });
}
template <Source source>
void writeLimit(benchmark::State& state) {
    repeat(state, source(), [] { return writeByToChars(source()); });
}
template <Source source>
void writeOurs(benchmark::State& state) {
    const auto shapes = readZel(source().zel);
    repeat(state, source(), [&shapes] { return writeZel(shapes); });
}
template <Source source>
void writeRapidJson(benchmark::State& state) {
    repeat(state, source(), [] { return writeByRapidJson(source()); });
}

#ifdef OE_BENCH_GDAL
template <Source source>
void readGdalGeoJson(benchmark::State& state) {
    provideToGdal("/vsimem/data.geojson", source().geoJson);
    repeat(state, source(), [] { return readByGdal("/vsimem/data.geojson"); });
}
template <Source source>
void readGdalZel(benchmark::State& state) {
    provideToGdal("/vsimem/data.zel", source().zel);
    repeat(state, source(), [] { return readByGdal("/vsimem/data.zel"); });
}
template <Source source>
void readGdalKml(benchmark::State& state) {
    writeByGdal(source(), "LIBKML", "/vsimem/data.kml");
    repeat(state, source(), [] { return readByGdal("/vsimem/data.kml"); });
}
template <Source source>
void writeGdalGeoJson(benchmark::State& state) {
    repeat(state, source(), [] { return writeByGdal(source(), "GeoJSON", "/vsimem/out.geojson"); });
}
template <Source source>
void writeGdalKml(benchmark::State& state) {
    repeat(state, source(), [] { return writeByGdal(source(), "LIBKML", "/vsimem/out.kml"); });
}
#define GDAL_BENCHMARKS(name, source)                                         \
    BENCHMARK(readGdalZel<source>)->Name("read " name "/GDAL ZEL");           \
    BENCHMARK(readGdalGeoJson<source>)->Name("read " name "/GDAL GeoJSON");   \
    BENCHMARK(readGdalKml<source>)->Name("read " name "/GDAL LIBKML");        \
    BENCHMARK(writeGdalGeoJson<source>)->Name("write " name "/GDAL GeoJSON"); \
    BENCHMARK(writeGdalKml<source>)->Name("write " name "/GDAL LIBKML")
#else
#define GDAL_BENCHMARKS(name, source) static_assert(true)
#endif

#define BENCHMARKS(name, source)                                          \
    BENCHMARK(readLimit<source>)->Name("read " name "/from_chars");       \
    BENCHMARK(readOurs<source>)->Name("read " name "/ours");              \
    BENCHMARK(readOurStream<source>)->Name("read " name "/ours, stream"); \
    BENCHMARK(readSimdjson<source>)->Name("read " name "/simdjson");      \
    BENCHMARK(readRapidJson<source>)->Name("read " name "/RapidJSON");    \
    BENCHMARK(writeLimit<source>)->Name("write " name "/to_chars");       \
    BENCHMARK(writeOurs<source>)->Name("write " name "/ours");            \
    BENCHMARK(writeRapidJson<source>)->Name("write " name "/RapidJSON")

BENCHMARKS("line", line);
BENCHMARKS("line of long numbers", longNumbers);
BENCHMARKS("small shapes", smallShapes);
GDAL_BENCHMARKS("line", line);
GDAL_BENCHMARKS("small shapes", smallShapes);

}  // namespace
