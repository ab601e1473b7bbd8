#include <cmath>
#include <istream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "common/Files.h"
#include "common/NumberText.h"
#include "format/Parser.h"
#include "format/SerializeToZel.h"
#include "model/CylinderShape.h"
#include "model/Document.h"
#include "model/OverlayFile.h"
#include "model/PolygonShape.h"
#include "model/QuietServiceTable.h"
#include "model/ShapeWriter.h"
#include "pi/HostContract.h"
#include "pi/PIBase.h"

namespace {

using namespace OverlayEditor;
namespace ZEL = halCore::ZEL;

/// A host that reads every overlay text that it is given, as a real one does.
class ReadingHost final : public PIServiceTable {
  public:
    ReadingHost() { g_FunctionMap = this; }
    ~ReadingHost() { g_FunctionMap = nullptr; }
    std::int32_t hostBuildNumber() override { return PIBase::buildNumber; }
    PIServiceResult handle(void*, PIServerFunctions_t service, void* args) override {
        if (service != PIServerFunctions_t::OverlayFiles) return 0;
        auto& record = *static_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        if (record.integers[0] != static_cast<std::int64_t>(PISelector::OverlayFiles::LoadStream)) return 1;
        shapes_.clear();
        ZEL::Parser().parse(*static_cast<std::istream*>(record.pointers[0]), shapes_);
        record.pointers.push_back(this);
        return 1;
    }
    std::size_t shapes() const { return shapes_.size(); }

  private:
    std::vector<ZEL::ZelShapePtr> shapes_;
};

/// One change of a line that is shown: written as text, handed over, read by the host. The goal is 16 ms for
/// 100,000 points.
void lineChanges(benchmark::State& state) {
    ReadingHost host;
    Preferences preferences;
    Overlay overlay;
    auto* const line = new PolygonShape(preferences, PolygonShape::Line);
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const double t = 1e-5 * static_cast<double>(i);
        line->addPoint({0.7 * std::sin(13.7 * t), 3.0 * std::cos(7.3 * t), 1000.0 * t});
    }
    overlay.addShape(line);
    int width = 1;
    for (auto _ : state) line->setLineWidth(width++ % 10);
    if (host.shapes() != 1) state.SkipWithError("the host has no line");
}
BENCHMARK(lineChanges)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// \return the first of them
CylinderShape* addCircles(Overlay& overlay, const Preferences& preferences, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        auto* const circle = new CylinderShape(preferences, CylinderShape::Circle);
        circle->setCenter({0.1, 0.2, 0.0});
        circle->setMajorRadius(1000.0);
        overlay.addShape(circle);
    }
    return static_cast<CylinderShape*>(overlay.shapes()[0]);
}

/// A change costs its own shape only, whatever else the overlay holds.
void oneOfManyChanges(benchmark::State& state) {
    ReadingHost host;
    Preferences preferences;
    Overlay overlay;
    CylinderShape* const circle = addCircles(overlay, preferences, state.range(0));
    for (auto _ : state) circle->setMajorRadius(2000.0);
}
BENCHMARK(oneOfManyChanges)->Arg(1)->Arg(10000)->Unit(benchmark::kMicrosecond);

/// What "Changes:" costs after a change of one shape, which is written anew; of the others only a number is
/// looked at.
void changesOfOneAmongMany(benchmark::State& state) {
    const QuietServiceTable quiet;
    Preferences preferences;
    Overlay overlay;
    Document document(preferences, overlay);
    CylinderShape* const circle = addCircles(overlay, preferences, state.range(0));
    document.isSaved();
    double radius = 2000.0;
    for (auto _ : state) {
        circle->setMajorRadius(++radius);
        benchmark::DoNotOptimize(document.changes());
    }
}
BENCHMARK(changesOfOneAmongMany)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// Adding, naming, finding and removing; the time for each shape must not grow with their number.
void shapesComeAndGo(benchmark::State& state) {
    const QuietServiceTable quiet;
    Preferences preferences;
    for (auto _ : state) {
        Overlay overlay;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            auto* const shape = new PolygonShape(preferences, PolygonShape::Line);
            overlay.addShape(shape);
            shape->setName("Line " + std::to_string(i));
        }
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            Shape* const shape = overlay.findShape("Line " + std::to_string(i));
            overlay.removeShape(shape);
            delete shape;
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(shapesComeAndGo)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// The countries fifteen times: 4,290 shapes, much as in a file of them at a larger scale.
const std::string& countries() {
    static const std::string text = [] {
        std::string once;
        std::string all;
        UTILS::readFile(OE_SOURCE_DIR "/samples/countries-110m.zel", once);
        for (int i = 0; i < 15; ++i) all += once;
        return all;
    }();
    return text;
}

void countriesThroughTheLibrary(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<ZEL::ZelShapePtr> shapes;
        ZEL::Parser().parse(std::string_view(countries()), shapes);
        std::ostringstream out;
        out.precision(UTILS::kSignificantDigits);
        for (const auto& shape : shapes) shape->serializeToStream(out);
        benchmark::DoNotOptimize(out.str().size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(countries().size()));
}
BENCHMARK(countriesThroughTheLibrary)->Name("countries/library")->Unit(benchmark::kMillisecond);

/// The goal is 1.3 times the time of the library alone.
void countriesThroughTheEditor(benchmark::State& state) {
    const QuietServiceTable quiet;
    const Preferences preferences;
    for (auto _ : state) {
        const auto loaded = loadOverlayText(countries(), "countries", preferences, nullptr, 0);
        for (const auto& shape : loaded.shapes) shape->setShown(true);
        benchmark::DoNotOptimize(shapesText(loaded.shapes).size());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(countries().size()));
}
BENCHMARK(countriesThroughTheEditor)->Name("countries/editor")->Unit(benchmark::kMillisecond);

/// A host with a platform that is elsewhere whenever somebody asks.
class SailingHost final : public PIServiceTable {
  public:
    SailingHost() { g_FunctionMap = this; }
    ~SailingHost() { g_FunctionMap = nullptr; }
    std::int32_t hostBuildNumber() override { return PIBase::buildNumber; }
    PIServiceResult handle(void*, PIServerFunctions_t service, void* args) override {
        if (service != PIServerFunctions_t::GetDataPoint) return 0;
        auto& record = *static_cast<PI_DATA_STRUCT*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        auto& point = static_cast<PIData::DataPointRequest*>(record.pointer)->point;
        point.latRad = latitude_ += 1e-6;
        return 1;
    }

  private:
    double latitude_ = 0.1;
};

/// What the dialog does once a second while the platform moves: 20,000 shapes, or a million points in one
/// line. The goal is 5 ms, and 50 ms with every place of the line looked at, as its tool does.
void platformMoves(benchmark::State& state) {
    const SailingHost host;
    Preferences preferences;
    Overlay overlay;
    Document document(preferences, overlay);
    addCircles(overlay, preferences, state.range(0));
    auto* const line = new PolygonShape(preferences, PolygonShape::Line);
    for (std::int64_t i = 0; i < state.range(1); ++i)
        line->addPoint({0.1 + 1e-7 * static_cast<double>(i), 0.2 - 1e-7 * static_cast<double>(i), 5.0});
    overlay.addShape(line);
    if (!document.attach(7, false)) state.SkipWithError("not attached");
    document.isSaved();
    for (auto _ : state) {
        document.followPlatform();
        benchmark::DoNotOptimize(document.changes());
        if (state.range(2)) benchmark::DoNotOptimize(line->points().data());
    }
}
BENCHMARK(platformMoves)
    ->ArgNames({"shapes", "points", "selected"})
    ->Args({20000, 2, 0})
    ->Args({1, 1000000, 0})
    ->Args({1, 1000000, 1})
    ->Unit(benchmark::kMillisecond);

}  // namespace
