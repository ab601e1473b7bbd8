#include <QApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "geo/Ecef.h"
#include "geo/Sodano.h"
#include "globe/GlobePicture.h"
#include "globe/gl/ViewTest.h"

namespace sandbox {
namespace {

using halCore::Ecef;

/// Lines are where geodesics end, to half a pixel, at every distance; what is behind the earth is not drawn.
TEST_F(GlobeViewTest, CirclesAreDrawnWhereTheyAre) {
    const double scenes[][6] = {{15, -150, 4.0e6, 2.3e7, 0, 90},     // the whole earth
                                {15, -150, 9.5e6, 2.3e7, 0, 90},     // over the limb
                                {21.3, -158, 5.0e4, 2.0e5, 30, 50},  // slanted
                                {21.3, -158, 10.0, 50.0, 0, 90},     // near the ground
                                {-33.9, 151.2, 10.0, 60.0, 200, 25}, {90, 0, 5.0e5, 3.0e6, 0, 90},
                                {89, 100, 4.0e5, 3.0e6, 0, 70},      {-17, 180, 1.0e5, 6.0e5, 0, 90}};
    for (const auto& [centerLat, centerLon, radius, range, azimuth, elevation] : scenes) {
        SCOPED_TRACE(testing::Message() << centerLat << ' ' << radius);
        show("circle; linewidth 3; centerll " + std::to_string(centerLat) + " " + std::to_string(centerLon) +
             "; radius " + std::to_string(radius) + kMagenta);
        const Vec3 center = at(centerLat, centerLon);
        look(center, range, azimuth, elevation);
        const QImage frame = view.grabFrame();
        int checked = 0;
        for (int degrees = 0; degrees < 360; degrees += 3) {
            const Vec3 place = halCore::Sodano::direct(center, (degrees + 0.5) * kRadiansPerDegree, radius);
            const QPoint pixel = pixelOf(place);
            if (!all.adjusted(2, 2, -2, -2).contains(pixel)) continue;
            ++checked;
            // The line is seen edge-on at the limb, and a point just there may go either way.
            const int onEarth = count({pixel - QPoint(3, 3), QSize(7, 7)},
                                      [&](int x, int y) { return view.camera().pick(x, y).has_value(); });
            if (onEarth < 49) continue;
            EXPECT_EQ(isMagenta(frame.pixel(pixel)), view.camera().project(place).visible) << degrees;
        }
        EXPECT_GT(checked, 60);
    }
}

TEST_F(GlobeViewTest, TheEarthImageLiesWhereItBelongs) {
    // Red grows with longitude, green with latitude, in the middle of wide bands.
    QImage map(1024, 512, QImage::Format_RGB32);
    for (int y = 0; y < map.height(); ++y)
        for (int x = 0; x < map.width(); ++x) map.setPixel(x, y, qRgb(x / 4, 255 - y / 2, 0));
    QTemporaryDir folder;
    ASSERT_TRUE(map.save(folder.filePath("map.png")));
    ASSERT_TRUE(view.setEarthImage(folder.filePath("map.png")));
    for (const double range : {2.3e7, 3.0e6, 1.0e4}) {
        for (const auto& [lat, lon] : {std::pair{0, 0}, {45, 90}, {-30, -120}, {60, 170}, {10, -179}}) {
            look(at(lat, lon), range);
            const QRgb c = view.grabFrame().pixel(320, 240);
            // The picture is lightened a little.
            EXPECT_NEAR(qRed(c), (lon + 180.0) / 360.0 * 255.0, 6) << range;
            EXPECT_NEAR(qGreen(c), (lat + 90.0) / 180.0 * 255.0, 10) << range;
        }
    }
    for (int i = 0; i < 2; ++i) view.grabFrame();
    EXPECT_FALSE(view.setEarthImage(folder.filePath("missing.png")));
    EXPECT_LT(qRed(view.grabFrame().pixel(320, 240)), 100) << "also while the view rests";
}

TEST_F(GlobeViewTest, TranslucentAreasAndLinesBlendOnce) {
    look(at(0, 0), 7.3e5);
    show("circle; centerll 0 0; radius 500000; filled; outline false; fillcolor hex 80ffffff");
    const QImage area = view.grabFrame();
    EXPECT_EQ(count(area, {40, 240, 560, 1}, [](QRgb c) { return qRed(c) < 110 || qRed(c) > 215; }), 0);
    // A wide zigzag: no pixel is covered twice where its segments meet.
    std::string zigzag = "line; linewidth 9; linecolor hex 80ffffff";
    for (int i = 0; i < 12; ++i) zigzag += (i % 2 ? "; ll 1 " : "; ll -1 ") + std::to_string(-2.2 + 0.4 * i);
    show(zigzag);
    EXPECT_GT(count(view.grabFrame(), all, [](QRgb c) { return qRed(c) > 110; }), 5000);
    EXPECT_LT(count(view.grabFrame(), all, [](QRgb c) { return qRed(c) >= 200; }), 6);
    // Each lies over what was shown before it.
    show("line; ll 0 -2; ll 0 2; linewidth 9" + kMagenta);
    for (const char* text :
         {"circle; centerll 0 0; radius 100000; filled; fillcolor hex ff00ff00; outline false",
          "line; ll -2 0; ll 2 0; linewidth 9; linecolor hex ffffffff"})
        view.overlays().add(shapesOf(text));
    const QImage piled = view.grabFrame();
    EXPECT_TRUE(isWhite(piled.pixel(pixelOf(at(0, 0)))));
    EXPECT_TRUE(isGreen(piled.pixel(pixelOf(at(0, 0.5)))));
    EXPECT_TRUE(isMagenta(piled.pixel(pixelOf(at(0, 1.5)))));
}

/// What was shown before does not count against an area that is costly to fill.
TEST_F(GlobeViewTest, TangledAreasLookTheSameEachTime) {
    std::string star = "polygon; filled";
    for (int i = 0; i < 41; ++i) {
        const double turn = halCore::kTwoPi * (i * 20 % 41) / 41;
        star += "; ll " + std::to_string(20 * std::cos(turn)) + " " + std::to_string(20 * std::sin(turn));
    }
    look(at(0, 0), 1.0e7);
    show(star);
    const QImage first = view.grabFrame();
    for (int i = 0; i < 40; ++i) {
        show(star);
        view.grabFrame();
    }
    EXPECT_EQ(view.grabFrame(), first);
}

/// A picture's four corners, turned counter-clockwise with it and across 180°; its transparent parts let the
/// ground through.
TEST_F(GlobeViewTest, PicturesLieWhereTheirShapesSay) {
    QTemporaryDir folder;
    QImage colors(64, 64, QImage::Format_ARGB32);
    const QRgb quarters[] = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(255, 255, 0), qRgba(255, 255, 255, 0)};
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) colors.setPixel(x, y, quarters[y / 32 * 2 + x / 32]);
    ASSERT_TRUE(colors.save(folder.filePath("colors.png")));
    look(at(60, 180), 1.0e6);
    const QImage bare = view.grabFrame();
    const auto picture = [&](const std::string& fileAndBox) {
        show("# kml_groundoverlay; # kml_icon " + fileAndBox, folder.path());
        return view.grabFrame();
    };
    // Half a degree north and one degree west of the middle are equally far: the first quarter's middle.
    const Vec3 places[] = {at(60.5, 179), at(60.5, -179), at(59.5, 179), at(59.5, -179)};
    const int expected[2][4] = {{0, 1, 2, 3}, {1, 3, 0, 2}};
    for (const bool turned : {false, true}) {
        const QImage frame =
            picture(std::string("colors.png; # kml_latlonbox 61 59 -178 178 ") + (turned ? "90" : "0"));
        for (int i = 0; i < 4; ++i) {
            const QPoint pixel = pixelOf(places[i]);
            const int quarter = expected[turned][i];
            EXPECT_EQ(frame.pixel(pixel), quarter < 3 ? quarters[quarter] : bare.pixel(pixel)) << turned << i;
        }
    }
    // A file that is not there: its border.
    const QImage border = picture("missing.png; # kml_latlonbox 61 59 -178 178 0");
    for (const double lon : {178.0, -178.0}) EXPECT_GT(qRed(border.pixel(pixelOf(at(60.3, lon)))), 200);
}

/// An icon stands on its place, the text beside it; a picture that is written anew is read anew.
TEST_F(GlobeViewTest, IconsStandOnTheirPlaces) {
    QTemporaryDir folder;
    QImage icon(20, 20, QImage::Format_RGB32);
    look(at(0, 0), 1.0e6);
    for (const QRgb color : {qRgb(255, 0, 255), qRgb(0, 255, 0)}) {
        icon.fill(color);
        QFile file(folder.filePath("my icon.png"));
        ASSERT_TRUE(icon.save(file.fileName()) && file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::fromSecsSinceEpoch(qRed(color) + 1000),
                         QFileDevice::FileModificationTime);
        file.close();
        show("annotation Harbour; ll 0 0; linecolor white; # kml_icon \"my icon.png\"", folder.path());
        const QImage frame = view.grabFrame();
        for (const QPoint& p : {QPoint(312, 232), QPoint(327, 247)}) EXPECT_EQ(frame.pixel(p), color);
        EXPECT_GT(count(frame, {334, 240, 56, 1}, isWhite), 5);
    }
}

/// A line behind a body is hidden, unless it asks for no depth test; so are areas.
TEST_F(GlobeViewTest, BodiesHideWhatIsBehindThem) {
    look(at(0, 0), 1.0e6, 0, 30);
    for (const std::string tested : {"true", "false"}) {
        show("line; ll 0.8 -3; ll 0.8 3; linewidth 5; depthbuffer " + tested + kMagenta +
             " | circle; centerll 2 0; radius 50000; filled; depthbuffer " + tested + kMagenta +
             " | cylinder; centerll 0 0; radius 50000; height 200000; filled; outline no; linecolor green");
        const QImage frame = view.grabFrame();
        EXPECT_EQ(isMagenta(frame.pixel(pixelOf(at(0.8, 0)))), tested == "false");
        EXPECT_EQ(isMagenta(frame.pixel(pixelOf(at(2, 0)))), tested == "false");
        EXPECT_TRUE(isMagenta(frame.pixel(pixelOf(at(0.8, 2.5))))) << "beside the body";
    }
}

/// The line about a ball is whole in front and hidden behind, up to its rim.
TEST_F(GlobeViewTest, TheEquatorOfABallIsWhole) {
    show("sphere; centerlla 0 0 100000; radius 100000; filled; fillcolor hex ff005a00; linewidth 2" +
         kMagenta);
    look(at(0, 0), 7.0e5, 0, 60);
    const QImage frame = view.grabFrame();
    for (int degrees = 0; degrees < 360; ++degrees) {
        const double angle = degrees * kRadiansPerDegree;
        const Projected p = view.camera().project(toEcef(at(0, 0, 1.0e5)) +
                                                  Ecef{0.0, std::cos(angle), std::sin(angle)} * 1.0e5);
        const QRect spot(static_cast<int>(p.x) - 1, static_cast<int>(p.y) - 1, 3, 3);
        if (std::abs(degrees - 90) > 65 && std::abs(degrees - 270) > 80) continue;
        EXPECT_EQ(count(frame, spot, [](QRgb c) { return qRed(c) > 110; }) > 0, degrees > 180) << degrees;
    }
}

/// Labels that overlap: of different priorities the higher one, of equal ones the later, if they lie on each
/// other; and how many there are besides.
TEST_F(GlobeViewTest, LabelsGiveWayToEachOther) {
    look(at(0, 0), 7.3e5);
    struct Case {
        const char* other;
        bool important, green, counted;
    };
    for (const auto& [other, important, green, counted] :
         {Case{"annotation Not_so_much; ll 0 0.1; priority 1", true, false, true},
          {"annotation Far_away; ll 0 2; priority 1", true, true, false},
          {"annotation Less_but_below; ll -0.2 0; priority 1", true, false, true},
          {"annotation As_important_and_below; ll -0.2 0; priority 2", true, true, false},
          {"annotation As_important; ll 0 0.3; priority 2", false, true, true}}) {
        show("annotation Important; ll 0 0; priority 2" + kMagenta + " | linecolor green; " + other);
        const QImage frame = view.grabFrame();
        EXPECT_EQ(count(frame, all, isMagenta) > 20, important) << other;
        EXPECT_EQ(count(frame, all, isGreen) > 50, green) << other;
        EXPECT_EQ(count(frame, all, isWhite) > 10, counted) << other;
    }
}

/// Graticule, base map and scale bar come and go; the graticule's lines are where they say.
TEST_F(GlobeViewTest, TheMapShowsWhatIsAskedFor) {
    look(at(0, 0), 1.0e7);
    const QImage bare = view.grabFrame();
    const auto with = [&](const MapOptions& options) {
        view.setMapOptions(options);
        return view.grabFrame();
    };
    EXPECT_GT(differences(with({.scaleBar = true}), bare, 0, {440, 440, 199, 39}), 200);
    EXPECT_EQ(differences(view.grabFrame(), bare, 0, {0, 0, 640, 400}), 0);
    const QPoint crossing = pixelOf(at(0, 5));
    EXPECT_NE(with({.graticule = true}).pixel(crossing), bare.pixel(crossing));
    const int coast = differences(with({.coastlines = true}), bare, 0, all);
    EXPECT_GT(coast, 1000);
    EXPECT_GT(differences(with({.coastlines = true, .borders = true}), bare, 0, all), coast + 1000);
    const QImage both = with({.graticule = true, .coastlines = true});
    for (int i = 0; i < 3; ++i) EXPECT_EQ(view.grabFrame(), both) << "at rest";
    EXPECT_EQ(with({}), bare);
}

/// With twice the pixels everything is as large as before, only finer.
TEST_F(GlobeViewTest, DenseScreensShowTheSame) {
    QTemporaryDir folder;
    QImage icon(20, 20, QImage::Format_RGB32);
    icon.fill(Qt::yellow);
    ASSERT_TRUE(icon.save(folder.filePath("icon.png")));
    std::string text =
        "line; ll -4 -8; ll -3.5 -3; linewidth 7; linestyle dashed | line; ll -3 -8; ll -2.5 -3; linewidth 7"
        "; linestyle dotted | points; ll 4 -7; ll 4 -5; pointsize 21 | polygon; ll 1 -7; ll 3 -7; ll 2 -3"
        "; filled | annotation Here; ll 0 0; fontsize 40; # kml_icon icon.png";
    const MarkerMap platforms{{1, {1, "Ship", at(3, 2), 0.5, "ship"}}};
    const std::map<std::uint64_t, ScreenText> texts{{1, {1, "Text", 20.0, 20.0, 0xffffffff, 40}}};
    GlobePicture picture;
    for (const auto& [range, inMemory] : {std::pair{1.75e6, false}, {4.0e6, true}}) {
        OverlayScene scene;
        std::string all = text;
        for (int i = 0; inMemory && i < 40; ++i)  // as many lines are
            all += " | circle; centerll 1 5; radius 90000; linecolor hex 0";
        scene.add(shapesOf(all), std::nullopt, true, folder.path().toStdString());
        const Camera camera = looking(at(0, 0), range);
        const MapOptions map{.graticule = true, .scaleBar = true};
        GlobeFrame frame{camera, 2.0, {}, map, scene, eachOf(platforms), texts};
        const QImage dense = picture.draw(frame);
        ASSERT_EQ(dense.size(), QSize(2000, 1200)) << picture.error().toStdString();
        frame.pixelRatio = 1.0;
        const QImage plain = picture.draw(frame);
        EXPECT_GT(count(plain, {20, 20, 90, 50}, isWhite), 300) << "the text";
        const QImage shrunk = dense.scaled(1000, 600, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        for (int y = 0; y < 600; y += 50)
            for (int x = 0; x < 1000; x += 50) {
                const QRect part(x, y, 50, 50);
                EXPECT_LT(strangers(plain, shrunk, part) + strangers(shrunk, plain, part), 16)
                    << range << ": " << x << ' ' << y;
            }
    }
}

/// A flight ends where it should, or at a touch; then nothing is drawn until somebody asks for it.
/// They are drawn some at a time.
TEST_F(GlobeViewTest, VeryManyPlatformsAreAllThere) {
    GlobePicture picture;
    const OverlayScene scene;
    const Camera camera = looking(at(0, 0), 2.0e6);
    constexpr int kPlaces = 6;
    const auto placeOf = [](int number) { return at(number - 3, number - 3); };
    const auto each = [&](const auto& take) {
        for (int i = 0; i < 60000; ++i)
            take({static_cast<std::uint64_t>(i) + 1, "", placeOf(i * kPlaces / 60000), 0.0, ""});
    };
    const QImage image = picture.draw({camera, 1.0, {}, {}, scene, each, {}});
    for (int place = 0; place < kPlaces; ++place) {
        const Projected p = camera.project(placeOf(place));
        const QPoint middle(static_cast<int>(p.x), static_cast<int>(p.y));
        const auto isYellow = [](QRgb c) { return qRed(c) > 200 && qGreen(c) > 160 && qBlue(c) < 120; };
        EXPECT_GT(count(image, {middle - QPoint(3, 3), middle + QPoint(3, 3)}, isYellow), 0) << place;
    }
}

TEST_F(GlobeViewTest, FliesArrivesAndRests) {
    look(at(0, 0), 1.0e6, 40);
    Camera target = view.camera();
    target.setCenter(at(5, 5));
    target.setRangeAzimuthElevation(2.0e5, 0, 1.0);
    view.flyTo(target);
    waitUntil([&] { return view.camera() == target; });
    settle();
    EXPECT_EQ(view.camera(), target);
    const auto frames = view.frameCount();
    settle();
    EXPECT_EQ(view.frameCount(), frames);
    view.requestRedraw();
    view.requestRedraw();
    waitUntil([&] { return view.frameCount() > frames; });
    settle();
    EXPECT_EQ(view.frameCount(), frames + 1);
    view.flyTo(target);
    wheel(120);
    const Camera touched = view.camera();
    settle();
    EXPECT_EQ(view.camera(), touched);
}

/// What the hook draws is eye-relative, lies over opaque overlays, and leaves OpenGL as it was. Overlays that
/// it changes are in that frame and ask for no other.
TEST_F(GlobeViewTest, TheHooksLayerLiesOnTop) {
    look(at(21.3, -158), 100.0, 40, 50);
    const Vec3 place = at(21.30001, -158.00002);
    view.setRefreshHook([&](int width, int height) {
        EXPECT_EQ(QSize(width, height), all.size());
        show("circle; centerll 21.3 -158; radius 500; filled" + kMagenta);
        const Ecef v = toEcef(place) - view.camera().eye();
        glColor4f(0.0F, 1.0F, 0.0F, 1.0F);
        glPointSize(7.0F);
        glBegin(GL_POINTS);
        glVertex3d(v.x, v.y, v.z);
        glEnd();
        glMatrixMode(GL_PROJECTION);
        for (int i = 0; i < 3; ++i) glPushMatrix();
        glLoadIdentity();
        glEnable(GL_SCISSOR_TEST);
        glScissor(0, 0, 1, 1);
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        glPushAttrib(GL_ALL_ATTRIB_BITS);
    });
    settle();
    const auto frames = view.frameCount();
    settle();
    EXPECT_EQ(view.frameCount(), frames) << "it must not redraw for ever";
    for (int i = 0; i < 20; ++i) view.grabFrame();  // stacks left unbalanced would overflow
    const QImage frame = view.grabFrame();
    EXPECT_TRUE(isGreen(frame.pixel(pixelOf(place))));
    EXPECT_TRUE(isMagenta(frame.pixel(100, 400)));
}

/// The nearest within reach, and none behind the earth.
TEST_F(GlobeViewTest, KnowsThePlatformUnderTheMouse) {
    look(at(0, 0), 1.0e6);
    for (const auto& [id, lon] : {std::pair{1, 0.0}, {2, 0.05}, {3, 180.0}})
        view.setPlatform({static_cast<std::uint64_t>(id), "Ship", at(0, lon), 0.0, "x2"});
    EXPECT_EQ(view.platformAt(320, 240), 1U);
    EXPECT_EQ(view.platformAt(320, 300), std::nullopt);
}

TEST_F(GlobeViewTest, TheListenerComesFirst) {
    using enum QEvent::Type;
    using enum Qt::MouseButton;
    look(at(0, 0), 1.0e7);
    using Seen = std::tuple<ViewMouseEvent::Kind, int, int, unsigned, unsigned, int>;
    std::vector<Seen> seen;
    bool consume = true;
    view.setMouseListener([&](const ViewMouseEvent& event) {
        seen.emplace_back(event.kind, event.x, event.y, event.modifiers, event.buttons, event.wheelDelta);
        return consume;
    });
    const Camera before = view.camera();
    mouse(MouseButtonPress, {320, 240}, LeftButton, LeftButton, Qt::ShiftModifier);
    mouse(MouseMove, {400, 240}, NoButton, LeftButton, Qt::ControlModifier | Qt::AltModifier);
    mouse(MouseButtonRelease, {400, 240}, LeftButton, NoButton);
    mouse(MouseButtonPress, {7, 9}, RightButton, RightButton);
    mouse(MouseButtonDblClick, {7, 9}, LeftButton, LeftButton);
    mouse(MouseButtonRelease, {7, 9}, LeftButton, NoButton);
    wheel(120);
    using Kind = ViewMouseEvent::Kind;
    EXPECT_EQ(seen, (std::vector<Seen>{{Kind::LeftPress, 320, 240, 1, 1, 0},
                                       {Kind::Motion, 400, 240, 6, 1, 0},
                                       {Kind::LeftRelease, 400, 240, 0, 0, 0},
                                       {Kind::RightPress, 7, 9, 0, 4, 0},
                                       {Kind::DoubleClick, 7, 9, 0, 1, 0},
                                       {Kind::LeftRelease, 7, 9, 0, 0, 0},
                                       {Kind::Wheel, 320, 240, 0, 0, 120}}));
    EXPECT_EQ(view.camera(), before) << "consumed: the view stays";

    // The button goes up in another window: the listener hears of it when the mouse comes back.
    seen.clear();
    mouse(MouseButtonPress, {320, 240}, LeftButton, LeftButton);
    mouse(MouseMove, {330, 250}, NoButton, LeftButton);
    for (int i = 0; i < 2; ++i) mouse(MouseMove, {50, 60}, NoButton, NoButton);
    EXPECT_EQ(seen, (std::vector<Seen>{{Kind::LeftPress, 320, 240, 0, 1, 0},
                                       {Kind::Motion, 330, 250, 0, 1, 0},
                                       {Kind::LeftRelease, 330, 250, 0, 0, 0},
                                       {Kind::Motion, 50, 60, 0, 0, 0},
                                       {Kind::Motion, 50, 60, 0, 0, 0}}));
    consume = false;
    const Vec3 grabbed = *view.camera().pick(320, 240);
    mouse(MouseButtonPress, {320, 240}, LeftButton, LeftButton);
    mouse(MouseMove, {400, 200}, NoButton, LeftButton);
    EXPECT_NEAR(view.camera().project(grabbed).x, 400, 0.01);
    EXPECT_NEAR(view.camera().project(grabbed).y, 200, 0.01);
    mouse(MouseButtonRelease, {400, 200}, LeftButton, NoButton);
    wheel(120);
    EXPECT_LT(view.camera().range(), 0.9e7);
    mouse(MouseButtonPress, {320, 240}, MiddleButton, MiddleButton);
    mouse(MouseMove, {370, 290}, NoButton, MiddleButton);
    mouse(MouseButtonRelease, {370, 290}, MiddleButton, NoButton);
    mouse(MouseMove, {100, 100}, NoButton, NoButton);
    EXPECT_NEAR(view.camera().azimuth(), 0.3, 1e-9) << "turned to the right";
    EXPECT_NEAR(view.camera().elevation(), halCore::kHalfPi - 0.3, 1e-9) << "and tilted";
}

}  // namespace
}  // namespace sandbox

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
