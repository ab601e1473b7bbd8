// bench-view FILE.zel [SHAPES POINTS]: how long the view takes to load a file, and its frames.
//
// With SHAPES and POINTS the file's largest shapes are repeated, each copy shifted a little, until there are
// so many shapes with about so many points. Draws off screen, on whatever renderer OpenGL gives.

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "common/Files.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"
#include "sandbox/view/Camera.h"
#include "sandbox/view/GlobePicture.h"
#include "sandbox/view/OverlayScene.h"

namespace {

namespace ZEL = halCore::ZEL;
using Clock = std::chrono::steady_clock;

constexpr double kDegree = std::numbers::pi / 180.0;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
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
            const double lat = std::clamp(p.lat() / kDegree + 0.3 * shift, -90.0, 90.0);
            const double lon = std::remainder(p.lon() / kDegree + shift, 360.0);
            result.append(
                line, static_cast<std::size_t>(std::snprintf(line, sizeof line, "ll %.6f %.6f\n", lat, lon)));
        }
        result += "linecolor hex 0xff00ff00\nend\n";
    }
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    std::string text;
    if (argc < 2 || !UTILS::readFile(argv[1], text).empty()) {
        std::fprintf(stderr, "bench-view FILE.zel [SHAPES POINTS]\n");
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
    const auto frame = [&] {
        const auto start = Clock::now();
        picture.draw({.camera = camera,
                      .backdrop = {},
                      .map = {},
                      .overlays = scene,
                      .platforms = {},
                      .screenTexts = {}});
        return millisecondsSince(start);
    };
    frame();  // compiles the shaders
    std::printf("a frame without overlays: %.1f ms\n", frame());

    const auto start = Clock::now();
    sandbox::OverlayScene::Shapes shapes;
    ZEL::Parser().parse(std::string_view(text), shapes);
    std::size_t points = 0;
    for (const auto& shape : shapes)
        if (const auto* lines = dynamic_cast<const ZEL::PointBasedShape*>(shape.get()))
            points += lines->points().size();
    std::printf("%zu shapes, %zu points, read in %.0f ms\n", shapes.size(), points, millisecondsSince(start));
    scene.add(std::move(shapes));
    frame();
    std::printf("read and first frame: %.0f ms\n", millisecondsSince(start));

    for (const double range : {2.3e7, 5.0e6, 1.0e6, 1.0e5}) {
        camera.setRange(range);
        std::vector<double> times;
        constexpr int kFrames = 40;
        for (int i = 0; i < kFrames; ++i) {
            const double turn = range / 2.3e7 * 90.0 * i / kFrames;
            camera.setCenter(halCore::Vec3(45.0 * kDegree, (10.0 + turn) * kDegree, 0.0));
            times.push_back(frame());
        }
        std::ranges::sort(times);
        std::printf("turning, %.0f km away: median %.1f ms, worst %.1f ms\n", range / 1000.0,
                    times[kFrames / 2], times.back());
    }
    return 0;
}
