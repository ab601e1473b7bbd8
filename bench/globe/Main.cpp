// bench-view [--apart] FILE.zel [SHAPES POINTS]: how long the view takes to load a file, and its frames.
// bench-view --map [IMAGE]: frames with and without the base map, over a picture of the earth.
//
// With SHAPES and POINTS the file's largest shapes are repeated, each copy shifted a little, until there are
// so many shapes with about so many points. With --apart each shape is an overlay of its own, as those that
// are edited are, and one of them changes, too. Draws off screen, on whatever renderer OpenGL gives.

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "common/Files.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "globe/Camera.h"
#include "globe/GlobePicture.h"
#include "globe/GlobeView.h"
#include "globe/OverlayScene.h"

namespace {

using halCore::kRadiansPerDegree;

namespace ZEL = halCore::ZEL;
using Clock = std::chrono::steady_clock;

/// Time since a moment, by the clock and by what the processors did for this program.
class Stopwatch {
  public:
    struct Times {
        double wall = 0.0;
        double cpu = 0.0;
    };
    /// Milliseconds.
    Times elapsed() const {
        return {std::chrono::duration<double, std::milli>(Clock::now() - start_).count(),
                1000.0 * static_cast<double>(std::clock() - cpu_) / CLOCKS_PER_SEC};
    }

  private:
    Clock::time_point start_ = Clock::now();
    std::clock_t cpu_ = std::clock();
};

void print(const std::string& what, const Stopwatch::Times& times) {
    std::printf("%s: %.1f ms, processor %.1f ms\n", what.c_str(), times.wall, times.cpu);
}

/// The text of a file with its shapes repeated.
std::string repeated(const std::string& text, std::size_t shapes, std::size_t points) {
    ZEL::Parser::Shapes read;
    ZEL::Parser().parse(std::string_view(text), read);
    std::erase_if(read, [](const auto& shape) { return !dynamic_cast<ZEL::PointBasedShape*>(shape.get()); });
    const auto pointsOf = [](const auto& shape) -> const std::vector<halCore::Vec3>& {
        return static_cast<const ZEL::PointBasedShape&>(*shape).points();
    };
    std::ranges::stable_sort(read, std::ranges::greater(), [&](const auto& s) { return pointsOf(s).size(); });
    // So many of the largest that their mean is what is asked for.
    std::size_t count = 0;
    std::size_t sum = 0;
    while (count < read.size() && (count == 0 || sum / count > points / shapes))
        sum += pointsOf(read[count++]).size();
    std::string result;
    char line[80];
    for (std::size_t i = 0; i < shapes; ++i) {
        const auto& shape = read[i % count];
        const double shift = 0.05 * static_cast<double>(i / count);
        result +=
            std::string("start\n") + (shape->shapeType() == ZEL::ShapeType::Polygon ? "polygon\n" : "line\n");
        for (const halCore::Vec3& p : pointsOf(shape)) {
            const double lat = std::clamp(p.lat() / kRadiansPerDegree + 0.3 * shift, -90.0, 90.0);
            const double lon = std::remainder(p.lon() / kRadiansPerDegree + shift, 360.0);
            result.append(
                line, static_cast<std::size_t>(std::snprintf(line, sizeof line, "ll %.6f %.6f\n", lat, lon)));
        }
        result += "linecolor hex 0xff00ff00\nend\n";
    }
    return result;
}

/// Frames at several distances over islands and a coast, the view wandering by a fifth of its height each
/// time.
int compareMaps(const char* image) {
    sandbox::GlobePicture picture;
    if (!picture.error().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(picture.error()));
        return 2;
    }
    picture.setEarthImage(
        QImage(image ? QString::fromLocal8Bit(image) : sandbox::GlobeView::defaultEarthImage()));
    const sandbox::OverlayScene scene;
    for (const double range : {2.3e7, 5.0e6, 1.0e6, 5.0e5, 1.0e5, 2.0e4, 5.0e3, 1.0e3}) {
        std::vector<Stopwatch::Times> times[2];
        constexpr int kFrames = 40;
        for (int i = 0; i < kFrames; ++i) {
            sandbox::Camera camera;
            camera.setViewport(1280, 800);
            camera.setRange(range);
            const double step = 0.2 * 0.6 * range / 6.4e6;
            camera.setCenter(
                halCore::Vec3(37.0 * kRadiansPerDegree, 25.0 * kRadiansPerDegree + step * i, 0.0));
            for (const bool map : {false, true}) {
                const Stopwatch watch;
                picture.draw({.camera = camera,
                              .backdrop = {},
                              .map = {.land = map, .coastlines = map, .borders = map, .names = map},
                              .overlays = scene,
                              .platforms = {},
                              .screenTexts = {}});
                times[map ? 1 : 0].push_back(watch.elapsed());
            }
        }
        std::printf("%6.0f km away:", range / 1000.0);
        for (auto& list : times) {
            list.erase(list.begin());  // compiles the shaders
            double sum = 0.0;
            for (const Stopwatch::Times& time : list) sum += time.cpu;
            const double mean = sum / static_cast<double>(list.size());
            std::ranges::sort(list, {}, &Stopwatch::Times::cpu);
            std::printf("  %s median %.1f ms, mean %.1f, worst %.1f", &list == times ? "without" : "with",
                        list[list.size() / 2].cpu, mean, list.back().cpu);
        }
        std::printf("\n");
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    if (argc > 1 && std::string(argv[1]) == "--map") return compareMaps(argc > 2 ? argv[2] : nullptr);
    const bool apart = argc > 1 && std::string(argv[1]) == "--apart";
    if (apart) --argc, ++argv;
    std::string text;
    if (argc < 2 || !UTILS::readFile(argv[1], text).empty()) {
        std::fprintf(stderr, "bench-view [--apart] FILE.zel [SHAPES POINTS]\n");
        return 2;
    }
    if (argc > 3)
        text = repeated(text, std::strtoull(argv[2], nullptr, 10), std::strtoull(argv[3], nullptr, 10));

    sandbox::GlobePicture picture;
    if (!picture.error().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(picture.error()));
        return 2;
    }
    sandbox::Camera camera;
    camera.setViewport(1280, 800);
    sandbox::OverlayScene scene;
    const auto frame = [&](bool moving = false) {
        const Stopwatch watch;
        picture.draw({.camera = camera,
                      .backdrop = {},
                      .map = {},
                      .overlays = scene,
                      .platforms = {},
                      .screenTexts = {},
                      .moving = moving});
        return watch.elapsed();
    };
    frame();  // compiles the shaders
    print("a frame without overlays", frame());

    const Stopwatch watch;
    sandbox::OverlayScene::Shapes shapes;
    ZEL::Parser().parse(std::string_view(text), shapes);
    std::size_t points = 0;
    for (const auto& shape : shapes)
        if (const auto* lines = dynamic_cast<const ZEL::PointBasedShape*>(shape.get()))
            points += lines->points().size();
    print(std::to_string(shapes.size()) + " shapes, " + std::to_string(points) + " points, read",
          watch.elapsed());
    sandbox::OverlayScene::Id changing = 0;
    if (apart)
        for (const auto& shape : shapes) changing = scene.add({shape});
    else
        changing = scene.add(shapes);
    frame();
    print("read and first frame", watch.elapsed());

    for (const double range : {2.3e7, 5.0e6, 1.0e6, 1.0e5}) {
        camera.setRange(range);
        constexpr int kFrames = 6;
        std::vector<Stopwatch::Times> times;
        for (int i = 0; i < kFrames; ++i) {
            const double turn = range / 2.3e7 * 60.0 * i / kFrames;
            camera.setCenter(halCore::Vec3(45.0 * kRadiansPerDegree, (10.0 + turn) * kRadiansPerDegree, 0.0));
            times.push_back(frame());
        }
        const std::string what = "turning, " + std::to_string(std::lround(range / 1000.0)) + " km away";
        print(what + ", first frame", times.front());
        std::ranges::sort(times, {}, &Stopwatch::Times::cpu);
        print(what + ", median", times[kFrames / 2]);
        print(what + ", worst", times.back());
        for (int i = 0; i < kFrames; ++i) {
            const double turn = range / 2.3e7 * 60.0 * i / kFrames;
            camera.setCenter(halCore::Vec3(45.0 * kRadiansPerDegree, (10.0 + turn) * kRadiansPerDegree, 0.0));
            times[static_cast<std::size_t>(i)] = frame(true);
        }
        std::ranges::sort(times, {}, &Stopwatch::Times::cpu);
        print(what + ", rough as while it moves, median", times[kFrames / 2]);
        if (!apart || shapes.empty()) continue;
        for (Stopwatch::Times& time : times) {
            scene.remove(changing);
            changing = scene.add({shapes.back()});
            time = frame();
        }
        std::ranges::sort(times, {}, &Stopwatch::Times::cpu);
        print(what + ", one changes, median", times[kFrames / 2]);
    }
    return 0;
}
