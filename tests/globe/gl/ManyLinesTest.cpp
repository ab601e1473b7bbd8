#include <QOpenGLFramebufferObject>
#include <QOpenGLPaintDevice>
#include <QTimer>
#include <array>
#include <chrono>
#include <functional>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "globe/GlobePainter.h"
#include "globe/GlobePicture.h"
#include "globe/gl/ViewTest.h"

namespace sandbox {
namespace {

/// Software rendering draws many lines in memory, unless a body may hide some. Nobody can tell.
TEST_F(GlobeViewTest, LinesLookTheSameHoweverTheyAreDrawn) {
    OverlayScene::Shapes shapes = halCore::ZEL::parsed(halCore::ZEL::sample("countries-110m.zel")).shapes;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        auto& line = dynamic_cast<halCore::ZEL::Polygon&>(*shapes[i]);
        line.setLineColor(halCore::ZEL::Color(200, static_cast<std::uint8_t>(i), 60, i % 2 ? 120 : 255));
        line.setLineWidth(std::array{1, 2, 5, 12}[i % 4]);
        line.setLineStyle(static_cast<halCore::ZEL::LineStyle>(i / 4 % 3));
        line.setAltitudeOffset(i % 5 ? 0.0 : 3.0e5);
    }
    // Wire about the ground: its lower half is below it.
    shapes.push_back(shapesOf("sphere; centerll 20 22; radius 150000").front());
    view.overlays().clear();
    const auto lines = view.overlays().add(shapes);
    // A wall as thin as a hair, and so long that it may hide anything.
    const auto body =
        view.overlays().add(shapesOf("latlonaltbox 70 -40 20 20.0000001 0 0.01; filled; outline false"));
    // The whole earth; towards the horizon; among lines high above the ground.
    const double views[][3] = {{2.3e7, 0, 90}, {2.0e6, 40, 12}, {5.0e5, 70, 25}};
    for (const auto& [range, azimuth, elevation] : views) {
        look(at(20, 20), range, azimuth, elevation);
        view.overlays().setShown(body, true);
        const QImage onCard = view.grabFrame();
        view.overlays().setShown(body, false);
        const QImage inMemory = view.grabFrame();
        view.overlays().setShown(lines, false);
        const int drawn = differences(onCard, view.grabFrame(), 0, all);
        std::vector<OverlayScene::Id> single;
        for (const auto& shape : shapes) single.push_back(view.overlays().add({shape}));
        const QImage together = view.grabFrame();
        view.overlays().setShown(body, true);
        EXPECT_LT(differences(view.grabFrame(), together, 8, all), drawn / 500) << range;
        view.overlays().setShown(body, false);
        view.grabFrame();
        view.overlays().setShown(single[3], false);
        view.overlays().replace(single[5], {shapes[7]});
        view.overlays().remove(single[9]);
        single.push_back(view.overlays().add({shapes[9]}));
        const QImage mended = view.grabFrame();
        look(at(20, 20), 1.1 * range, azimuth, elevation);
        view.grabFrame();
        look(at(20, 20), range, azimuth, elevation);
        EXPECT_EQ(differences(mended, view.grabFrame(), 0, all), 0) << range << ": as drawn anew";
        for (const auto id : single) view.overlays().remove(id);
        view.overlays().setShown(lines, true);
        EXPECT_LT(differences(inMemory, together, 8, all), drawn / 50)
            << range << ": parts of a fifth of a pixel";
        EXPECT_GT(drawn, 3000) << range;
        EXPECT_LT(differences(onCard, inMemory, 8, all), drawn / 500) << range;
    }
}

/// A view of very many lines is rough while it moves: the same lines at the same places. It rests with a fine
/// frame, and few lines are fine always.
TEST_F(GlobeViewTest, ViewsAreRoughOnlyWhileTheyMove) {
    const OverlayScene::Shapes shapes =
        halCore::ZEL::parsed(halCore::ZEL::sample("countries-110m.zel")).shapes;
    OverlayScene scene;
    GlobePicture picture;
    const Camera camera = looking(at(20, 20), 2.0e7);
    GlobeFrame frame{camera, 1.0, {}, {}, scene, {}, {}};
    const QImage bare = picture.draw(frame);
    for (const auto& [copies, rough] : {std::pair{1, false}, {25, true}}) {
        while (scene.entries().size() < static_cast<std::size_t>(copies)) scene.add(shapes);
        const QImage fine = picture.draw(frame);
        frame.moving = true;
        const QImage moving = picture.draw(frame);
        const QRect inside(1, 1, fine.width() - 2, fine.height() - 2);
        EXPECT_EQ(differences(fine, moving, 8, inside) > 1000, rough);
        const auto strays = [&](const QImage& a, const QImage& b) {
            return count(inside, [&](int x, int y) {
                return differences(a, bare, 150, {x, y, 1, 1}) > 0 &&
                       differences(b, bare, 30, {x - 1, y - 1, 3, 3}) == 0;
            });
        };
        EXPECT_EQ(strays(moving, fine), 0);
        EXPECT_LT(strays(fine, moving), 10) << "corners within a pixel";
        frame.moving = false;
        EXPECT_EQ(differences(fine, picture.draw(frame), 0, inside), 0);

        view.overlays().clear();
        for (int i = 0; i < copies; ++i) view.overlays().add(shapes);
        view.grabFrame();
        settle();
        const auto frames = view.frameCount();
        look(at(20, 20), rough ? 2.0e7 : 1.9e7);
        const auto expected = frames + (rough ? 2 : 1);
        waitUntil([&] { return view.frameCount() >= expected; });
        QThread::msleep(200);
        settle();
        EXPECT_EQ(view.frameCount(), expected);
    }
}

/// A frame that may not wait for all shapes, nor for all of one, lacks some, and the next ones have them,
/// however often the camera goes to and fro between two levels of detail.
TEST_F(GlobeViewTest, FramesWaitNoLongerThanTheyMay) {
    OverlayScene scene;
    scene.add(halCore::ZEL::parsed(halCore::ZEL::sample("countries-110m.zel")).shapes);
    std::string scrawl = "polygon; filled";
    for (int i = 0; i < 1000; ++i)
        scrawl += "; ll " + std::to_string(i * 37 % 100 - 50) + " " + std::to_string(i * 59 % 101 - 30);
    scene.add(shapesOf(scrawl));
    Camera camera = looking(at(20, 20), 2.0e7);
    GlobeFrame frame{camera, 1.0, {}, {}, scene, {}, {}};
    GlobePicture atOnce;
    const QImage whole = atOnce.draw(frame);
    GlobePicture picture;
    int frames = 0;
    int lacking = 0;
    do {
        constexpr std::size_t some = 300;
        frame.working = Slice(some, {});
        camera = looking(at(20, 20), frames % 2 == 0 ? 2.0e7 : 1.0e7);
        const QImage drawn = picture.draw(frame);
        lacking = frames % 2 == 0 ? differences(whole, drawn, 0, whole.rect()) : 1;
    } while (lacking > 0 && ++frames < 300);
    EXPECT_GT(frames, 20);
    EXPECT_EQ(lacking, 0);

    // What changes before it is ready, as it does under a hand or on a platform, is waited for.
    const auto carried = scene.add(shapesOf(scrawl + kMagenta));
    const auto shown = [&] {
        frame.working = Slice(0, {});
        return count(picture.draw(frame), whole.rect(), isMagenta);
    };
    EXPECT_EQ(shown(), 0);
    scene.replace(carried, shapesOf(scrawl + kMagenta));
    EXPECT_GT(shown(), 100);
}

/// All that come together are drawn, however many turns they take; and those that never end are seen, too.
TEST_F(GlobeViewTest, AFrameOfVeryManyOverlaysWaitsForMore) {
    const auto shapes = shapesOf("circle; centerll 0 0; radius 300000" + kMagenta);
    std::function<void()> add;
    int lots = 0;
    add = [&] {
        for (int i = 0; i < 2000; ++i) view.overlays().add(shapes);
        if (--lots > 0) QMetaObject::invokeMethod(&view, add, Qt::QueuedConnection);
    };
    look(at(0, 0), 2.0e6);
    settle();
    auto frames = view.frameCount();
    lots = 5;
    add();
    waitUntil([&] { return lots == 0 && view.frameCount() > frames; });
    settle();
    const QImage shown = view.grabFrame();
    look(at(0, 0), 1.0e6);
    settle();
    look(at(0, 0), 2.0e6);
    EXPECT_EQ(differences(shown, view.grabFrame(), 0, all), 0);
    EXPECT_GT(count(shown, all, isMagenta), 500);

    frames = view.frameCount();
    QTimer endless;
    QObject::connect(&endless, &QTimer::timeout, &view, [&] {
        view.overlays().clear();
        add();
    });
    endless.start(0);
    waitUntil([&] { return view.frameCount() > frames + 1; });
    EXPECT_GT(view.frameCount(), frames + 1);
}

/// What is drawn between frames.
class DrawnAheadTest : public GlobeViewTest {
  protected:
    void SetUp() override {
        GlobeViewTest::SetUp();
        view.makeCurrent();
        QOpenGLFramebufferObjectFormat format;
        format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
        format.setSamples(4);
        target_ = std::make_unique<QOpenGLFramebufferObject>(all.size(), format);
        painter = std::make_unique<GlobePainter>();
    }
    void TearDown() override {
        view.makeCurrent();
        painter.reset();
        target_.reset();
        view.doneCurrent();
    }
    GlobeFrame frame(Slice working, Slice drawing) const {
        return {camera, 1.0, {}, {}, scene, eachOf(view.platforms()), view.screenTexts(), working, drawing};
    }
    bool workOut(Slice slice, bool calm) {
        target_->bind();
        // As the painter of a text may leave it.
        glDisable(GL_MULTISAMPLE);
        return painter->workOut(frame(slice, {}), calm);
    }
    QImage draw(Slice working, Slice drawing) { return draw(*painter, working, drawing); }
    QImage drawnAnew() {
        GlobePainter anew;
        return draw(anew, {}, {});
    }
    /// How many pixels differ from those of a new painter once it has come to rest; -1 if it never does.
    int rest() {
        const Slice some(1500, {});
        for (int frames = 0; frames < 200; ++frames) {
            const QImage drawn = draw(Slice(500, {}), Slice(5000, {}));
            if (!painter->isPartial()) return differences(drawn, drawnAnew(), 24, all);
            for (int calls = 0; calls < 20 && !workOut(some, true);) ++calls;
        }
        return -1;
    }

    OverlayScene scene;
    Camera camera = looking(at(0, 0), 2.0e6);
    std::unique_ptr<GlobePainter> painter;

  private:
    QImage draw(GlobePainter& by, Slice working, Slice drawing) {
        target_->bind();
        QOpenGLPaintDevice device(all.size());
        by.draw(frame(working, drawing), device);
        return target_->toImage();
    }

    std::unique_ptr<QOpenGLFramebufferObject> target_;
};

/// It comes to rest, and lacks nothing then that takes many turns to work out: what was hidden when the
/// camera came, what was laid aside for another view, lines that are more since an area has gone.
TEST_F(DrawnAheadTest, RestsWithAllThereIs) {
    const auto scrawl = [](std::string text, int points) {
        for (int i = 0; i < points; ++i)
            text += "; ll " + std::to_string(i * 37 % 1000 * 0.01 - 5) + " " +
                    std::to_string(i * 59 % 1010 * 0.01 - 5);
        return shapesOf(text);
    };
    const auto area = shapesOf("circle; filled; fillcolor hex 60ffff00; centerll 0 0; radius 400000");
    const auto lines = [&] {
        for (int i = 0; i < 50; ++i) scene.add(scrawl("linesegs; linecolor hex 80ffffff", 600 + i));
    };
    const auto ring = [](int radius) {
        return shapesOf("circle; linewidth 4; centerll 0 0; radius " + std::to_string(radius) + kMagenta);
    };
    const Camera near = camera;
    const Camera far = looking(at(0, 0), 3.0e7);
    for (int i = 0; i < 50; ++i) scene.add(area);
    const auto late = scene.add(scrawl("polygon; filled; fillcolor hex ff00ff00", 3000));
    for (int i = 0; i < 20; ++i) scene.add(area);
    scene.add(ring(600000));
    EXPECT_GT(count(draw(Slice(500, {}), {}), all, isMagenta), 1000) << "what is on top comes first";
    EXPECT_TRUE(painter->isPartial());
    camera = far;
    EXPECT_EQ(rest(), 0);
    scene.setShown(late, false);
    camera = near;
    EXPECT_EQ(rest(), 0);
    scene.setShown(late, true);
    EXPECT_EQ(rest(), 0) << "hidden meanwhile";
    camera = far;
    for (int i = 0; i < 3; ++i) draw(Slice(20000, {}), Slice(5000, {}));
    camera = near;
    EXPECT_EQ(rest(), 0) << "for another view meanwhile";

    scene.clear();
    lines();
    const auto edited = scene.add(ring(600000));
    EXPECT_EQ(rest(), 0);
    for (int i = 0; i < 5; ++i) {
        scene.replace(edited, ring(610000 + 10000 * i));
        const QImage drawn = draw({}, Slice(500, {}));
        EXPECT_TRUE(painter->isPartial());
        EXPECT_GT(count(drawn, all, isMagenta), 1000) << "what is under the hand";
    }
    EXPECT_EQ(rest(), 0);
    const auto above = scene.add(area);
    EXPECT_EQ(rest(), 0);
    scene.remove(above);
    lines();
    EXPECT_EQ(rest(), 0) << "without the area";
}

/// A few shapes that fill the view are as much work as thousands of small ones, and left off between any two.
TEST_F(DrawnAheadTest, FewLargeShapesAreMuch) {
    // Those that are far away make it one chunk.
    const auto areas = [](int radius) {
        std::string text;
        for (int i = 0; i < 520; ++i)
            text += (i > 0 ? "| circle; centerll 0 " : "circle; centerll 0 ") +
                    std::string(i < 512 || i % 4 == 2 ? "100" : "0") + "; linecolor hex ff00ffff; radius " +
                    std::to_string(i < 512 ? 1000 : radius + radius / 10 * (i - 511)) +
                    "; filled; fillcolor hex " + (i % 4 == 0 ? "40ff0000" : "ff00ffff");
        return shapesOf(text);
    };
    std::string lines = "line; linewidth 200; linecolor hex 10ffffff";
    for (int i = 0; i < 60; ++i)
        lines += "; ll " + std::to_string(-8 + 0.27 * i) + (i % 2 > 0 ? " -8" : " 8");
    const std::string body = "sphere; centerll 0 0; filled; fillcolor hex ff00ffff; radius 1000";
    for (const auto& shapes : {areas(500000), shapesOf(lines), shapesOf(body + "|" + lines)}) {
        scene.clear();
        scene.add(shapes);
        const QImage begun = draw({}, Slice(6000, {}));
        EXPECT_TRUE(painter->isPartial());
        EXPECT_EQ(rest(), 0);
        EXPECT_GT(differences(begun, draw({}, {}), 24, all), 3000);
    }
    // Each is where it belongs: the last one on top, up to its rim.
    scene.clear();
    scene.add(areas(50000));
    const QImage drawn = draw({}, {});
    // The view is higher than the picture.
    const int above = camera.height() - drawn.height();
    for (const double lon : {0.0, -0.4, -0.78}) {
        const Projected place = camera.project(at(0, lon));
        EXPECT_EQ(drawn.pixel(static_cast<int>(place.x), static_cast<int>(place.y) - above),
                  qRgb(255, 255, 0))
            << lon;
    }
}

/// As long as overlays come and go, it is what one frame of all of them has: lines alone, and lines with
/// areas and bodies.
class DrawnAheadKindsTest : public DrawnAheadTest, public testing::WithParamInterface<bool> {};

TEST_P(DrawnAheadKindsTest, LiesWhereItBelongs) {
    const bool linesOnly = GetParam();
    std::mt19937 random(11);
    const auto upTo = [&](double most) { return most * static_cast<double>(random() % 1000) / 1000.0; };
    const auto some = [&] {
        constexpr std::array looks{"linecolor hex ff00ff00", "linecolor hex 80ff0000; linewidth 5",
                                   "linecolor blue; linestyle dashed", "linecolor white; linewidth 2",
                                   "linecolor hex 30ffff00; linewidth 40"};
        const double lat = upTo(16) - 8;
        const double lon = upTo(16) - 8;
        const std::string place = "; centerll " + std::to_string(lat) + " " + std::to_string(lon);
        const double most = random() % 40 ? 3e4 : 6e5;
        const std::string radius = "; radius " + std::to_string(2000 + upTo(most)) + "; ";
        const std::string look = looks[random() % looks.size()];
        if (random() % 4 == 0) {
            std::string many = "linesegs; " + look;
            for (int i = 0; i < 60; ++i)
                many += "; ll " + std::to_string(lat + upTo(0.4)) + " " + std::to_string(lon + upTo(0.4));
            return shapesOf(many);
        }
        if (linesOnly || random() % 2 > 0) return shapesOf("circle" + place + radius + look);
        if (random() % 3 == 0)
            return shapesOf("sphere" + place + "; radius 150000; " + "filled true; " + look);
        return shapesOf("circle" + place + radius + "filled true; fillcolor hex 60ff00ff; " + look);
    };
    std::vector<OverlayScene::Id> ids;
    const auto change = [&](std::size_t count) {
        const auto kind = ids.empty() ? 0 : random() % 6;
        for (std::size_t i = 0; i < count; ++i) {
            const auto any = ids.empty() ? 0 : ids[random() % ids.size()];
            if (kind < 2)
                ids.push_back(scene.add(some()));
            else if (kind == 2)
                scene.remove(any);
            else if (kind == 3)
                scene.replace(any, some());
            else
                scene.setShown(any, kind == 4);
        }
    };
    change(linesOnly ? 600 : 300);
    for (int round = 0; round < 60; ++round) {
        for (auto turns = random() % 12; turns > 0; --turns) {
            const Slice slice(random() % (linesOnly ? 1200 : 4000), std::chrono::milliseconds(0));
            const auto what = random() % 20;
            if (what < 7)
                change(std::array{1U, 1U, 4U, linesOnly ? 100U : 30U}[random() % 4]);
            else if (what < 8)
                camera = looking(at(upTo(1), 0), random() % 4 ? 2.0e6 : 4.0e6);
            else if (what < 16)
                for (auto calls = random() % (linesOnly ? 4 : 40); calls > 0; --calls)
                    workOut(slice, random() % 4 > 0);
            else
                draw(slice, slice);
        }
        // What lies on the picture of all below has smooth edges of its own.
        ASSERT_LE(differences(draw({}, {}), drawnAnew(), linesOnly ? 0 : 24, all), linesOnly ? 0 : 10)
            << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, DrawnAheadKindsTest, testing::Bool());

}  // namespace
}  // namespace sandbox
