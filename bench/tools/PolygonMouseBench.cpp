#include <array>
#include <cmath>
#include <istream>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "format/Parser.h"
#include "geo/Wgs84.h"
#include "model/History.h"
#include "model/Overlay.h"
#include "model/PolygonShape.h"
#include "pi/HostContract.h"
#include "pi/PIBase.h"
#include "tools/MouseManager.h"
#include "tools/OverlaySnap.h"
#include "tools/PolygonMouseTool.h"
#include "tools/ToolView.h"

namespace {

using namespace OverlayEditor;
namespace ZEL = halCore::ZEL;

constexpr int kWidth = 800;
constexpr int kHeight = 600;
constexpr double kRange = 2e5;
constexpr double kFocal = 3.0;
constexpr double kRadiansPerPixel = kRange / (0.5 * kFocal * kHeight) / halCore::wgs84::a;

/// A view straight down onto latitude 0, longitude 0, which paints nothing.
class DownwardView final : public ToolView {
  public:
    DownwardView() { install(this); }
    ~DownwardView() override { install(nullptr); }

    ViewProjection capture(int, int) override {
        // To the right is east, +y; up is north, +z; towards the eye is +x. Column by column.
        const std::array<double, 16> modelview{0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1};
        const std::array<double, 16> projection{
            kFocal * kHeight / kWidth, 0, 0, 0, 0, kFocal, 0, 0, 0, 0, -1, -1, 0, 0, -2, 0};
        return {{halCore::wgs84::a + kRange, 0.0, 0.0}, modelview, projection, kWidth, kHeight, 1.0};
    }
    void paint(const ViewProjection&, const ToolPicture& picture) override {
        benchmark::DoNotOptimize(picture.isEmpty());
    }
    void sawCursor(const ViewProjection&, int, int, const halCore::Vec3&) override {}
};

/// A host that knows where the cursor is. It takes overlay texts, and reads them when it is told to.
class CursorHost final : public PIServiceTable {
  public:
    explicit CursorHost(bool reads) : reads_(reads) { g_FunctionMap = this; }
    ~CursorHost() { g_FunctionMap = nullptr; }
    std::int32_t hostBuildNumber() override { return PIBase::buildNumber; }
    PIServiceResult handle(void*, PIServerFunctions_t service, void* args) override {
        if (service != PIServerFunctions_t::Cursor && service != PIServerFunctions_t::OverlayFiles) return 1;
        auto& record = *static_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        if (service == PIServerFunctions_t::Cursor) {
            const auto pixel = [&](std::size_t i) { return static_cast<double>(record.integers[i]); };
            record.doubles.insert(record.doubles.end(), {(kHeight / 2 - pixel(2)) * kRadiansPerPixel,
                                                         (pixel(1) - kWidth / 2) * kRadiansPerPixel, 0.0});
            return 1;
        }
        if (record.integers[0] != static_cast<std::int64_t>(PISelector::OverlayFiles::LoadStream)) return 1;
        if (reads_) {
            shapes_.clear();
            ZEL::Parser().parse(*static_cast<std::istream*>(record.pointers[0]), shapes_);
        }
        ++loads;
        record.pointers.push_back(this);
        return 1;
    }

    int loads = 0;

  private:
    bool reads_;
    std::vector<ZEL::ZelShapePtr> shapes_;
};

/// A polygon round the middle of the view, 200 pixels in radius, that is being edited.
struct Editing {
    Editing(std::int64_t points, bool hostReads) : host(hostReads) {
        for (std::int64_t i = 0; i < points; ++i) {
            const double angle = 6.283185307179586 * static_cast<double>(i) / static_cast<double>(points);
            shape->addPoint({200.0 * kRadiansPerPixel * std::cos(angle),
                             200.0 * kRadiansPerPixel * std::sin(angle), 0.0});
        }
        overlay.addShape(shape);
        shape->setShown(true);
        SnapSource::install(&snap);
        tool = std::make_unique<PolygonMouseTool>(preferences, *shape);
        manager.setCurrentMouseTool(tool.get(), true);
        frame();
    }
    ~Editing() {
        manager.clearMouseTool();
        SnapSource::install(nullptr);
    }
    void send(PIGUI::PIMouseEventType_t type, int x, int y) {
        manager.handleMouseEvent(type, PIGUI::PIMouseEvent{x, y, 0, 0});
    }
    void frame() { manager.preDrawOnRefresh(kWidth, kHeight); }

    CursorHost host;
    DownwardView view;
    Preferences preferences;
    Overlay overlay;
    OverlaySnap snap{preferences, overlay};
    Attachment attachment{overlay};
    /// As the editor has one: it looks at the shape when the button is let go.
    History history{preferences, overlay, attachment};
    PolygonShape* shape = new PolygonShape(preferences, PolygonShape::Polygon);
    std::unique_ptr<PolygonMouseTool> tool;
    MouseManager manager;
};

/// The mouse moves over the view with no point near it, not even the middle, which is the longest search;
/// then a frame.
void mouseMoves(benchmark::State& state) {
    Editing editing(state.range(0), false);
    int x = 0;
    const auto move = [&] {
        editing.send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2 + 20 + ++x % 100, kHeight / 2);
        editing.frame();
    };
    move();
    for (auto _ : state) move();
    if (editing.tool->state() != BaseMouseTool::Placing) state.SkipWithError("a point was grabbed");
}
BENCHMARK(mouseMoves)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// A line is drawn beside the polygon, and over its sides and points: they are what it snaps to.
void mouseMovesOverOthers(benchmark::State& state) {
    Editing editing(state.range(0), false);
    auto* const line = new PolygonShape(editing.preferences, PolygonShape::Line);
    editing.overlay.addShape(line);
    PolygonMouseTool tool(editing.preferences, *line);
    editing.manager.setCurrentMouseTool(&tool, true);
    editing.frame();
    int x = 0;
    const auto move = [&] {
        editing.send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2 + ++x % 100, kHeight / 2 - 200);
        editing.frame();
    };
    move();
    for (auto _ : state) move();
    // The last places are beside the polygon.
    editing.send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2, kHeight / 2 - 200);
    editing.frame();
    if (tool.hint().find("point") == std::string::npos) state.SkipWithError("nothing was found");
    editing.manager.clearMouseTool();
}
BENCHMARK(mouseMovesOverOthers)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// What the first move costs after the view or a shape has changed.
void firstMoveOverOthers(benchmark::State& state) {
    Editing editing(state.range(0), false);
    for (auto _ : state) {
        editing.shape->setLineWidth(editing.shape->lineWidth() == 2 ? 3 : 2);
        editing.send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2, kHeight / 2);
        editing.frame();
    }
}
BENCHMARK(firstMoveOverOthers)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// A point is dragged, a pixel at a time; then a frame. The goal is 16 ms for 10,000 points, all in all.
void pointIsDragged(benchmark::State& state, bool hostReads) {
    Editing editing(state.range(0), hostReads);
    editing.send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2, kHeight / 2 - 200);
    editing.send(PIGUI::PIMouseEventType_t::LeftPress, kWidth / 2, kHeight / 2 - 200);
    editing.history.commit();
    editing.history.begin(History::Gesture::Press);
    int x = 0;
    const auto move = [&] {
        editing.send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2 + ++x % 100, kHeight / 2 - 210);
        editing.frame();
    };
    // The first move makes the grid of what it may be put onto.
    move();
    const int before = editing.host.loads;
    for (auto _ : state) move();
    if (editing.host.loads == before) state.SkipWithError("nothing was dragged");
}
BENCHMARK_CAPTURE(pointIsDragged, plugin, false)
    ->Name("pointIsDragged/plug-in")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(pointIsDragged, both, true)
    ->Name("pointIsDragged/plug-in and host's reading")
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMicrosecond);

/// All of it is dragged by its middle, a pixel at a time, or turned; then a frame.
void wholeIsDragged(benchmark::State& state, bool turns) {
    Editing editing(state.range(0), false);
    const auto send = [&](PIGUI::PIMouseEventType_t type, int x, int y) {
        const unsigned modifiers = turns ? static_cast<unsigned>(PIGUI::PIModifierControl) : 0U;
        editing.manager.handleMouseEvent(type, {.x = x, .y = y, .modifiers = modifiers});
    };
    send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2, kHeight / 2);
    send(PIGUI::PIMouseEventType_t::LeftPress, kWidth / 2, kHeight / 2);
    int x = 0;
    const auto move = [&] {
        send(PIGUI::PIMouseEventType_t::Motion, kWidth / 2 + 50, kHeight / 2 + ++x % 100);
        editing.frame();
    };
    // The direction to begin with, and the grid of what it may be put onto.
    move();
    const int before = editing.host.loads;
    for (auto _ : state) move();
    if (editing.host.loads < before + x - 2) state.SkipWithError("nothing was dragged");
}
BENCHMARK_CAPTURE(wholeIsDragged, moved, false)
    ->Arg(1000)
    ->Arg(100000)
    ->Iterations(20)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(wholeIsDragged, turned, true)
    ->Arg(1000)
    ->Arg(100000)
    ->Iterations(20)
    ->Unit(benchmark::kMicrosecond);

/// What a frame costs that shows which shape is selected, before it is painted: the outline of a line all of
/// which is in the view.
void outlineIsSeen(benchmark::State& state) {
    Editing editing(state.range(0), false);
    std::vector<halCore::Ecef> path;
    for (const halCore::Vec3& place : editing.shape->points()) path.push_back(halCore::toEcef(place));
    const ViewProjection view = editing.view.capture(kWidth, kHeight);
    std::size_t segments = 0;
    for (auto _ : state) benchmark::DoNotOptimize(segments = view.seen(path).size());
    state.counters["segments"] = static_cast<double>(segments);
}
BENCHMARK(outlineIsSeen)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// What a finished drag adds: the step.
void dragBecomesAStep(benchmark::State& state) {
    Editing editing(state.range(0), false);
    editing.history.commit();
    double north = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        editing.history.begin(History::Gesture::Press);
        editing.shape->mouseSetPointAtIndex(editing.shape->getNumPoints() / 2, {north += 1e-9, 0.0, 0.0});
        state.ResumeTiming();
        editing.history.commit();
    }
    if (editing.history.done() == 0) state.SkipWithError("there was no step");
}
BENCHMARK(dragBecomesAStep)->Arg(1000)->Arg(100000)->Iterations(200)->Unit(benchmark::kMicrosecond);

}  // namespace
