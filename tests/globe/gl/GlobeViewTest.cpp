#include <QApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QThread>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include <GeographicLib/Geodesic.hpp>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/GlobeView.h"

namespace sandbox {
namespace {

namespace ZEL = halCore::ZEL;
using halCore::Ecef;
using halCore::kRadiansPerDegree;
using halCore::localFrame;
using halCore::LocalFrame;
using halCore::Vec3;

Vec3 at(double lat, double lon) {
    return {lat * kRadiansPerDegree, lon * kRadiansPerDegree, 0.0};
}

std::shared_ptr<ZEL::Circle> circle(const Vec3& center, double radius, const ZEL::Color& color) {
    auto shape = std::make_shared<ZEL::Circle>(false);
    shape->setCenterPosition(center);
    shape->setRadius(radius);
    shape->setLineColor(color);
    shape->setLineWidth(3);
    return shape;
}

const ZEL::Color kMagenta(255, 0, 255, 255);

bool isMagenta(QRgb c) {
    return qRed(c) > 200 && qGreen(c) < 60 && qBlue(c) > 200;
}

class GlobeViewTest : public testing::Test {
  protected:
    void SetUp() override {
        view.resize(640, 480);
        view.setEarthImage(QString());  // the plain globe: dark blue
        view.show();
        settle();
    }

    /// For what takes its time on a busy machine, such as a frame.
    template <typename Condition>
    static void waitUntil(Condition condition) {
        const QDeadlineTimer deadline(10000);
        while (!condition() && !deadline.hasExpired()) {
            settle();
            QThread::msleep(1);
        }
    }

    static void settle() {
        for (int i = 0; i < 10; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    void look(const Vec3& center, double range, double azimuth = 0.0, double elevation = 90.0) {
        view.setCenter(center);
        view.setRangeAzimuthElevation(range, azimuth * kRadiansPerDegree, elevation * kRadiansPerDegree);
    }

    void mouse(QEvent::Type type, QPointF where, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QMouseEvent event(type, where, view.mapToGlobal(where), button, buttons, modifiers);
        QApplication::sendEvent(&view, &event);
    }

    void wheel(QPointF where, int delta) {
        QWheelEvent event(where, view.mapToGlobal(where), QPoint(), QPoint(0, delta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }

    GlobeView view;
};

struct Scene {
    const char* what;
    Vec3 center;
    double radius;
    double range, azimuth, elevation;
};

/// The line is where GeographicLib puts the circle, to half a pixel, at every distance; what is behind the
/// earth is not drawn.
TEST_F(GlobeViewTest, CirclesAreDrawnWhereTheyAre) {
    const Scene scenes[] = {{"whole earth", at(15, -150), 4.0e6, 2.3e7, 0, 90},
                            {"over the limb", at(15, -150), 9.5e6, 2.3e7, 0, 90},
                            {"100 km", at(21.3, -158), 5.0e4, 2.0e5, 30, 50},
                            {"50 m", at(21.3, -158), 10.0, 50.0, 0, 90},
                            {"50 m, slanted", at(-33.9, 151.2), 10.0, 60.0, 200, 25},
                            {"the pole", at(90, 0), 5.0e5, 3.0e6, 0, 90},
                            {"near the pole", at(89, 100), 4.0e5, 3.0e6, 0, 70},
                            {"180°", at(-17, 180), 1.0e5, 6.0e5, 0, 90}};
    for (const Scene& scene : scenes) {
        const auto id = view.overlays().add({circle(scene.center, scene.radius, kMagenta)});
        look(scene.center, scene.range, scene.azimuth, scene.elevation);
        const QImage frame = view.grabFrame();
        int checked = 0;
        for (int degrees = 0; degrees < 360; degrees += 3) {
            double lat = 0.0, lon = 0.0;
            GeographicLib::Geodesic::WGS84().Direct(scene.center.lat() / kRadiansPerDegree,
                                                    scene.center.lon() / kRadiansPerDegree, degrees + 0.5,
                                                    scene.radius, lat, lon);
            const Projected place = view.camera().project(at(lat, lon));
            const QPoint pixel(static_cast<int>(std::floor(place.x)), static_cast<int>(std::floor(place.y)));
            if (!frame.rect().adjusted(2, 2, -2, -2).contains(pixel)) continue;
            ++checked;
            // The line is seen edge-on at the limb, and a point just there may go either way.
            bool nearLimb = false;
            for (const QPoint& step : {QPoint(-3, 0), QPoint(3, 0), QPoint(0, -3), QPoint(0, 3)})
                nearLimb |= !view.camera().pick(pixel.x() + step.x(), pixel.y() + step.y());
            if (nearLimb) continue;
            EXPECT_EQ(isMagenta(frame.pixel(pixel)), place.visible) << scene.what << " at " << degrees;
        }
        EXPECT_GT(checked, 60) << scene.what;
        view.overlays().remove(id);
    }
}

TEST_F(GlobeViewTest, TheEarthImageLiesWhereItBelongs) {
    // Red grows with longitude, green with latitude, in the middle of wide bands.
    QImage map(1024, 512, QImage::Format_RGB32);
    for (int y = 0; y < map.height(); ++y)
        for (int x = 0; x < map.width(); ++x) map.setPixel(x, y, qRgb(x / 4, 255 - y / 2, 0));
    QTemporaryDir folder;
    const QString file = folder.filePath("map.png");
    ASSERT_TRUE(map.save(file));
    ASSERT_TRUE(view.setEarthImage(file));
    for (const double range : {2.3e7, 3.0e6, 1.0e4}) {
        for (const Vec3& place : {at(0, 0), at(45, 90), at(-30, -120), at(60, 170), at(10, -179)}) {
            look(place, range);
            const QRgb c = view.grabFrame().pixel(320, 240);
            // The picture is lightened a little.
            EXPECT_NEAR(qRed(c), (place.lon() / kRadiansPerDegree + 180.0) / 360.0 * 255.0, 6) << range;
            EXPECT_NEAR(qGreen(c), (place.lat() / kRadiansPerDegree + 90.0) / 180.0 * 255.0, 10) << range;
        }
    }
    EXPECT_FALSE(view.setEarthImage(folder.filePath("missing.png")));
}

TEST_F(GlobeViewTest, TranslucentAreasAndLinesBlendOnce) {
    look(at(0, 0), 1.0e6);
    auto area = circle(at(0, 0), 5.0e5, kMagenta);
    area->setOutlined(false);
    area->setFilled(true);
    area->setFillColor(ZEL::Color(255, 255, 255, 128));
    view.overlays().add({area});
    const QImage before = view.grabFrame();
    for (int x = 40; x < 600; x += 7) {
        const auto spot = view.camera().pick(x + 0.5, 240.5);
        ASSERT_TRUE(spot);
        EXPECT_LT(qRed(before.pixel(x, 240)), 215) << x;
        EXPECT_GT(qRed(before.pixel(x, 240)), 110) << x;
    }
    // A wide translucent zigzag: no pixel is covered twice where its segments meet.
    auto zigzag = std::make_shared<ZEL::Line>(false);
    for (int i = 0; i < 12; ++i) zigzag->addPoint(at(i % 2 ? 1.0 : -1.0, -2.2 + 0.4 * i));
    zigzag->setLineWidth(9);
    zigzag->setLineColor(ZEL::Color(255, 255, 255, 128));
    view.overlays().clear();
    view.overlays().add({zigzag});
    const QImage lines = view.grabFrame();
    int brightest = 0;
    for (int y = 0; y < lines.height(); ++y)
        for (int x = 0; x < lines.width(); ++x) brightest = std::max(brightest, qRed(lines.pixel(x, y)));
    EXPECT_LT(brightest, 200);
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
    auto picture = std::make_shared<ZEL::ImageOverlay>(false);
    picture->setNorth(61.0 * kRadiansPerDegree);
    picture->setSouth(59.0 * kRadiansPerDegree);
    picture->setWest(178.0 * kRadiansPerDegree);
    picture->setEast(-178.0 * kRadiansPerDegree);
    picture->setImageFile("colors.png");
    look(at(60, 180), 1.0e6);
    const auto spot = [&](const QImage& frame, double lat, double lon) {
        const Projected p = view.camera().project(at(lat, lon));
        return frame.pixel(static_cast<int>(p.x), static_cast<int>(p.y));
    };
    // Half a degree north and one degree west of the middle are equally far: the first quarter's middle.
    for (const double turn : {0.0, 90.0}) {
        picture->setRotation(turn * kRadiansPerDegree);
        view.overlays().clear();
        const QImage bare = view.grabFrame();
        view.overlays().add({picture}, std::nullopt, true, folder.path().toStdString());
        const QImage frame = view.grabFrame();
        const double places[][2] = {{60.5, 179}, {60.5, -179}, {59.5, 179}, {59.5, -179}};
        const int expected[2][4] = {{0, 1, 2, 3}, {1, 3, 0, 2}};
        for (int i = 0; i < 4; ++i) {
            const int quarter = expected[turn > 0.0][i];
            const QRgb wanted = quarter < 3 ? quarters[quarter] : spot(bare, places[i][0], places[i][1]);
            EXPECT_EQ(spot(frame, places[i][0], places[i][1]), wanted) << turn << ' ' << i;
        }
    }
    // A file that is not there: its border.
    picture->setImageFile("missing.png");
    picture->setRotation(0.0);
    view.overlays().clear();
    view.overlays().add({picture}, std::nullopt, true, folder.path().toStdString());
    const QImage frame = view.grabFrame();
    for (const double lon : {178.0, -178.0}) EXPECT_GT(qRed(spot(frame, 60.3, lon)), 200);
    EXPECT_LT(qRed(spot(frame, 60.5, 179)), 200);
}

/// An icon stands on its place, the text beside it; a picture that is written anew is read anew.
TEST_F(GlobeViewTest, IconsStandOnTheirPlaces) {
    QTemporaryDir folder;
    const QString file = folder.filePath("my icon.png");
    QImage icon(20, 20, QImage::Format_RGB32);
    auto label = std::make_shared<ZEL::Annotation>(false);
    label->setLabel("Harbour");
    label->setPosition(at(0, 0));
    label->setTextColor(ZEL::Color(255, 255, 255, 255));
    label->setIconFile("\"my icon.png\"");
    look(at(0, 0), 1.0e6);
    for (const QRgb color : {qRgb(255, 0, 255), qRgb(0, 255, 0)}) {
        icon.fill(color);
        ASSERT_TRUE(icon.save(file));
        QFile stamp(file);
        ASSERT_TRUE(stamp.open(QIODevice::ReadWrite));
        stamp.setFileTime(QDateTime::fromSecsSinceEpoch(qRed(color) + 1000),
                          QFileDevice::FileModificationTime);
        stamp.close();
        view.overlays().clear();
        view.overlays().add({label}, std::nullopt, true, folder.path().toStdString());
        const QImage frame = view.grabFrame();
        for (const QPoint& p : {QPoint(312, 232), QPoint(327, 247)}) EXPECT_EQ(frame.pixel(p), color);
        int white = 0;
        for (int x = 334; x < 390; ++x)
            white += qGreen(frame.pixel(x, 240)) > 220 && qRed(frame.pixel(x, 240)) > 220;
        EXPECT_GT(white, 5);
    }
}

/// Countries filled: across 180°, around the pole, from near and far; the sea stays free.
TEST_F(GlobeViewTest, CountriesAreFilledAndTheSeaIsNot) {
    std::string text;
    ASSERT_EQ(UTILS::readFile(OE_SOURCE_DIR "/samples/countries-110m.zel", text), "");
    OverlayScene::Shapes shapes;
    ZEL::Parser().parse(std::string_view(text), shapes);
    for (const auto& shape : shapes) {
        auto& area = dynamic_cast<ZEL::Polygon&>(*shape);
        area.setFilled(true);
        area.setFillColor(kMagenta);
        area.setOutlined(false);
    }
    view.overlays().add(shapes);
    const struct {
        double lat, lon;
        bool land;
    } places[] = {{67.5, 179.5, true}, {67, -179, true},  {-16.6, 179.3, true}, {-89, 100, true},
                  {-80, 20, true},     {-85, -179, true}, {70, 100, true},      {24, 10, true},
                  {62, 180, false},    {45, 180, false},  {80, 180, false},     {-17.5, 179.9, false},
                  {-65, 0, false},     {-60, 180, false}, {0, -30, false},      {42, 50.5, false}};
    for (const auto& place : places) {
        for (const double range : {2.3e7, 3.0e6, 2.0e5}) {
            // Fiji is about a pixel from there.
            if (place.lat == -16.6 && range > 1.0e7) continue;
            look(at(place.lat, place.lon), range);
            const QImage frame = view.grabFrame();
            EXPECT_EQ(isMagenta(frame.pixel(320, 240)), place.land)
                << place.lat << ' ' << place.lon << ' ' << range;
        }
    }
    // From where both sides of 180° are seen, nothing runs across the sea between them.
    look(at(40, 180), 8.0e6);
    const QImage frame = view.grabFrame();
    for (int x = 0; x < 640; ++x) {
        const auto where = view.camera().pick(x + 0.5, 240.5);
        if (!where || std::abs(where->lon()) / kRadiansPerDegree < 150) continue;
        EXPECT_FALSE(isMagenta(frame.pixel(x, 240))) << x;
    }
    EXPECT_EQ(frame, view.grabFrame());
}

/// A line behind a body is hidden, unless it asks for no depth test; so are areas.
TEST_F(GlobeViewTest, BodiesHideWhatIsBehindThem) {
    look(at(0, 0), 1.0e6, 0, 30);
    auto body = std::make_shared<ZEL::Cylinder>(false);
    body->setCenterPosition(at(0, 0));
    body->setMajorAxis(1.0e5);
    body->setMinorAxis(1.0e5);
    body->setHeight(2.0e5);
    body->setFilled(true);
    body->setOutlined(false);
    body->setFillColor(ZEL::Color(0, 255, 0, 255));
    auto line = std::make_shared<ZEL::Line>(false);
    line->addPoint(at(0.8, -3));
    line->addPoint(at(0.8, 3));
    line->setLineColor(kMagenta);
    line->setLineWidth(5);
    auto area = circle(at(2, 0), 0.5e5, kMagenta);
    area->setFilled(true);
    area->setFillColor(kMagenta);
    const auto pixel = [&](const QImage& frame, double lat, double lon) {
        const Projected p = view.camera().project(at(lat, lon));
        return frame.pixel(static_cast<int>(p.x), static_cast<int>(p.y));
    };
    for (const bool tested : {true, false}) {
        line->setDepthBufferActive(tested);
        area->setDepthBufferActive(tested);
        view.overlays().clear();
        view.overlays().add({line, area, body});
        const QImage frame = view.grabFrame();
        EXPECT_EQ(isMagenta(pixel(frame, 0.8, 0)), !tested);
        EXPECT_EQ(isMagenta(pixel(frame, 2.0, 0)), !tested);
        EXPECT_TRUE(isMagenta(pixel(frame, 0.8, 2.5))) << "beside the body";
    }
}

/// The line about a ball is whole in front and hidden behind, up to its rim.
TEST_F(GlobeViewTest, TheEquatorOfABallIsWhole) {
    auto ball = std::make_shared<ZEL::Sphere>(false);
    ball->setCenterPosition(Vec3(0, 0, 1.0e5));
    ball->setRadius(1.0e5);
    ball->setFilled(true);
    ball->setFillColor(ZEL::Color(0, 90, 0, 255));
    ball->setLineColor(kMagenta);
    ball->setLineWidth(2);
    view.overlays().add({ball});
    look(at(0, 0), 7.0e5, 0, 60);
    const QImage frame = view.grabFrame();
    const Ecef middle = toEcef(Vec3(0, 0, 1.0e5));
    const LocalFrame axes = localFrame(0, 0);
    const auto lit = [&](double radians) {
        const Projected p = view.camera().project(middle + axes.east * (1.0e5 * std::cos(radians)) +
                                                  axes.north * (1.0e5 * std::sin(radians)));
        int most = 0;
        for (int dx = -1; dx <= 1; ++dx)
            for (int dy = -1; dy <= 1; ++dy)
                most =
                    std::max(most, qRed(frame.pixel(static_cast<int>(p.x) + dx, static_cast<int>(p.y) + dy)));
        return most > 110;
    };
    for (int degrees = 190; degrees <= 350; ++degrees)
        EXPECT_TRUE(lit(degrees * kRadiansPerDegree)) << degrees;
    for (int degrees = 25; degrees <= 155; ++degrees)
        EXPECT_FALSE(lit(degrees * kRadiansPerDegree)) << degrees;
}

/// Labels that overlap: of different priorities the higher one, of equal ones both.
TEST_F(GlobeViewTest, TheHigherPriorityIsShown) {
    look(at(0, 0), 1.0e6);
    const auto label = [](const char* text, double lon, double priority, const ZEL::Color& color) {
        auto result = std::make_shared<ZEL::Annotation>(false);
        result->setLabel(text);
        result->setPosition(at(0, lon));
        result->setTextColor(color);
        result->setPriority(priority);
        return result;
    };
    const ZEL::Color green(0, 255, 0, 255);
    const auto count = [&](auto&& wanted) {
        const QImage frame = view.grabFrame();
        int found = 0;
        for (int y = 0; y < frame.height(); ++y)
            for (int x = 0; x < frame.width(); ++x) found += wanted(frame.pixel(x, y)) ? 1 : 0;
        return found;
    };
    const auto isGreen = [](QRgb c) { return qGreen(c) > 200 && qRed(c) < 60 && qBlue(c) < 60; };
    view.overlays().add({label("Important", 0, 2, kMagenta), label("Not so much", 0.1, 1, green)});
    EXPECT_GT(count(isMagenta), 50);
    EXPECT_EQ(count(isGreen), 0);
    view.overlays().clear();
    view.overlays().add({label("Important", 0, 2, kMagenta), label("Far away", 2, 1, green)});
    EXPECT_GT(count(isGreen), 50);
    view.overlays().clear();
    view.overlays().add({label("Important", 0, 1, kMagenta), label("As important", 0.3, 1, green)});
    EXPECT_GT(count(isMagenta), 20);
    EXPECT_GT(count(isGreen), 50);
}

/// Graticule, base map and scale bar come and go; the graticule's lines are where they say.
TEST_F(GlobeViewTest, TheMapShowsWhatIsAskedFor) {
    look(at(0, 0), 1.0e7);
    const QImage bare = view.grabFrame();
    const auto changed = [&](const QImage& frame, const QRect& where) {
        int found = 0;
        for (int y = where.top(); y <= where.bottom(); ++y)
            for (int x = where.left(); x <= where.right(); ++x)
                found += frame.pixel(x, y) != bare.pixel(x, y) ? 1 : 0;
        return found;
    };
    view.setMapOptions({.scaleBar = true});
    EXPECT_GT(changed(view.grabFrame(), {440, 440, 199, 39}), 200);
    EXPECT_EQ(changed(view.grabFrame(), {0, 0, 640, 400}), 0);
    view.setMapOptions({.graticule = true});
    const QImage graticule = view.grabFrame();
    const Projected crossing = view.camera().project(at(0, 5));
    EXPECT_NE(graticule.pixel(static_cast<int>(crossing.x), static_cast<int>(crossing.y)),
              bare.pixel(static_cast<int>(crossing.x), static_cast<int>(crossing.y)));
    view.setMapOptions({.coastlines = true});
    const int coast = changed(view.grabFrame(), bare.rect());
    view.setMapOptions({.coastlines = true, .borders = true});
    EXPECT_GT(coast, 1000);
    EXPECT_GT(changed(view.grabFrame(), bare.rect()), coast + 1000);
    view.setMapOptions({});
    EXPECT_EQ(view.grabFrame(), bare);
}

/// A flight ends where it should, then nothing is drawn any more; a touch of the view ends it.
TEST_F(GlobeViewTest, FliesAndArrives) {
    look(at(0, 0), 1.0e6, 40);
    Camera target = view.camera();
    target.setCenter(at(5, 5));
    target.setRangeAzimuthElevation(2.0e5, 0, 1.0);
    view.flyTo(target);
    waitUntil([&] { return view.camera() == target; });
    EXPECT_EQ(view.camera(), target);
    settle();
    const auto frames = view.frameCount();
    settle();
    EXPECT_EQ(view.frameCount(), frames);
    view.turnNorthUp();
    view.flyTo(target);
    wheel({320, 240}, 120);
    const Camera touched = view.camera();
    settle();
    EXPECT_EQ(view.camera(), touched);
}

TEST_F(GlobeViewTest, AnIdleViewDrawsNothing) {
    view.overlays().add({circle(at(0, 0), 1.0e5, kMagenta)});
    const auto waitBeyond = [&](auto count) {
        waitUntil([&] { return view.frameCount() > count; });
        settle();
    };
    waitBeyond(decltype(view.frameCount()){0});
    const auto frames = view.frameCount();
    settle();
    EXPECT_EQ(view.frameCount(), frames);
    view.requestRedraw();
    view.requestRedraw();
    waitBeyond(frames);
    EXPECT_EQ(view.frameCount(), frames + 1);
}

TEST_F(GlobeViewTest, OverlaysChangedInTheHookAreInThatFrameAndAskForNoOther) {
    look(at(0, 0), 1.0e6);
    OverlayScene::Id rubberBand = 0;
    view.setRefreshHook([&](int width, int height) {
        EXPECT_EQ(width, 640);
        EXPECT_EQ(height, 480);
        if (rubberBand) view.overlays().remove(rubberBand);
        auto area = circle(at(0, 0), 2.0e5, kMagenta);
        area->setFilled(true);
        area->setFillColor(kMagenta);
        rubberBand = view.overlays().add({area});
    });
    settle();
    const auto frames = view.frameCount();
    settle();
    EXPECT_EQ(view.frameCount(), frames) << "it must not redraw for ever";
    EXPECT_TRUE(isMagenta(view.grabFrame().pixel(320, 240)));
    EXPECT_EQ(view.overlays().entries().size(), 1U);
}

/// What the hook draws is eye-relative, lies over opaque overlays, and leaves OpenGL as it was.
TEST_F(GlobeViewTest, TheHooksLayerLiesOnTop) {
    look(at(21.3, -158), 100.0, 40, 50);
    auto area = circle(at(21.3, -158), 500.0, kMagenta);
    area->setFilled(true);
    area->setFillColor(kMagenta);
    view.overlays().add({area});
    const Vec3 place = at(21.30001, -158.00002);
    view.setRefreshHook([&](int, int) {
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
    for (int i = 0; i < 40; ++i) view.grabFrame();  // stacks left unbalanced would overflow
    const QImage frame = view.grabFrame();
    const Projected pixel = view.camera().project(place);
    const QRgb dot = frame.pixel(static_cast<int>(pixel.x), static_cast<int>(pixel.y));
    EXPECT_GT(qGreen(dot), 200);
    EXPECT_LT(qRed(dot), 60);
    EXPECT_TRUE(isMagenta(frame.pixel(100, 400)));
}

/// Software rendering draws many lines in memory, unless a body is in view that may hide some. Nobody can
/// tell.
TEST_F(GlobeViewTest, LinesLookTheSameHoweverTheyAreDrawn) {
    OverlayScene::Shapes lines;
    std::mt19937 random(3);
    const auto number = [&random](double from, double to) {
        return from + (to - from) * static_cast<double>(random() % 10000) / 10000.0;
    };
    for (int i = 0; i < 300; ++i) {
        std::shared_ptr<ZEL::PointBasedShape> line;
        if (i % 3 == 0)
            line = std::make_shared<ZEL::Polygon>(false);
        else
            line = std::make_shared<ZEL::Line>(false);
        Vec3 p(number(-1.4, 1.4), number(-3.1, 3.1), i % 5 == 0 ? 3.0e5 : 0.0);
        for (int k = 0; k < 20; ++k) {
            p = Vec3(std::clamp(p.lat() + number(-0.05, 0.05), -1.5, 1.5), p.lon() + number(-0.08, 0.08),
                     p.alt());
            line->addPoint(p);
        }
        line->setLineColor(ZEL::Color(200, static_cast<std::uint8_t>(i), 60, i % 2 == 0 ? 255 : 120));
        line->setLineWidth(std::array{1, 2, 5, 12}[static_cast<std::size_t>(i) % 4]);
        line->setLineStyle(std::array{ZEL::LineStyle::Solid, ZEL::LineStyle::Dashed,
                                      ZEL::LineStyle::Dotted}[static_cast<std::size_t>(i / 4) % 3]);
        lines.push_back(std::move(line));
    }
    // Wire about the ground: its lower half is below it.
    for (int i = 0; i < 4; ++i) {
        auto wire = std::make_shared<ZEL::Sphere>(false);
        wire->setCenterPosition(at(20.0 + 2.0 * i, 22));
        wire->setRadius(1.5e5);
        wire->setFilled(false);
        lines.push_back(std::move(wire));
    }
    // A wall as thin as a hair, and so long that it may hide anything.
    auto body = std::make_shared<ZEL::LatLonAltBox>(false);
    body->setSouth(-40 * kRadiansPerDegree);
    body->setNorth(70 * kRadiansPerDegree);
    body->setWest(20 * kRadiansPerDegree);
    body->setEast(20.0000001 * kRadiansPerDegree);
    body->setHeight(0.01);
    body->setFilled(true);
    body->setOutlined(false);
    const auto bodyId = view.overlays().add({body});
    const auto linesId = view.overlays().add(std::move(lines));
    struct View {
        const char* what;
        double range, azimuth, elevation;
    };
    for (const View& v : {View{"whole earth", 2.3e7, 0, 90}, View{"towards the horizon", 2.0e6, 40, 12},
                          View{"among lines high above the ground", 5.0e5, 70, 25}}) {
        look(at(20, 20), v.range, v.azimuth, v.elevation);
        view.overlays().setShown(bodyId, true);
        const QImage onCard = view.grabFrame();
        view.overlays().setShown(bodyId, false);
        const QImage inMemory = view.grabFrame();
        view.overlays().setShown(linesId, false);
        const QImage without = view.grabFrame();
        view.overlays().setShown(linesId, true);
        int drawn = 0, different = 0;
        for (int y = 0; y < onCard.height(); ++y) {
            for (int x = 0; x < onCard.width(); ++x) {
                const QRgb a = onCard.pixel(x, y), b = inMemory.pixel(x, y);
                drawn += a != without.pixel(x, y) ? 1 : 0;
                const int most = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                           std::abs(qBlue(a) - qBlue(b))});
                different += most > 8 ? 1 : 0;
            }
        }
        EXPECT_GT(drawn, 3000) << v.what;
        EXPECT_LT(different, drawn / 500) << v.what;
    }
}

TEST_F(GlobeViewTest, TheListenerComesFirst) {
    look(at(0, 0), 1.0e7);
    std::vector<ViewMouseEvent> seen;
    bool consume = true;
    view.setMouseListener([&](const ViewMouseEvent& event) {
        seen.push_back(event);
        return consume;
    });
    const Camera before = view.camera();
    mouse(QEvent::MouseButtonPress, {320, 240}, Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    mouse(QEvent::MouseMove, {400, 240}, Qt::NoButton, Qt::LeftButton, Qt::ControlModifier | Qt::AltModifier);
    mouse(QEvent::MouseButtonRelease, {400, 240}, Qt::LeftButton, Qt::NoButton);
    mouse(QEvent::MouseButtonPress, {7, 9}, Qt::RightButton, Qt::RightButton);
    mouse(QEvent::MouseButtonDblClick, {7, 9}, Qt::LeftButton, Qt::LeftButton);
    wheel({320, 240}, 120);
    EXPECT_EQ(view.camera(), before) << "consumed: the view stays";
    using Kind = ViewMouseEvent::Kind;
    const Kind kinds[] = {Kind::LeftPress,  Kind::Motion,      Kind::LeftRelease,
                          Kind::RightPress, Kind::DoubleClick, Kind::Wheel};
    ASSERT_EQ(seen.size(), std::size(kinds));
    for (std::size_t i = 0; i < seen.size(); ++i) EXPECT_EQ(seen[i].kind, kinds[i]) << i;
    EXPECT_EQ(seen[0].modifiers, 1U);
    EXPECT_EQ(seen[1].modifiers, 6U);
    EXPECT_EQ(seen[1].x, 400);
    EXPECT_EQ(seen[1].buttons, 1U);
    EXPECT_EQ(seen[3].y, 9);
    EXPECT_EQ(seen[5].wheelDelta, 120);

    // The button goes up in another window: the listener hears of it when the mouse comes back.
    seen.clear();
    mouse(QEvent::MouseButtonPress, {320, 240}, Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, {330, 250}, Qt::NoButton, Qt::LeftButton);
    for (int i = 0; i < 10; ++i) mouse(QEvent::MouseMove, {50, 60}, Qt::NoButton, Qt::NoButton);
    ASSERT_EQ(seen.size(), 13U);
    EXPECT_EQ(seen[2].kind, Kind::LeftRelease);
    EXPECT_EQ(seen[2].x, 330) << "where it was seen last";
    EXPECT_EQ(seen[3].kind, Kind::Motion);

    consume = false;
    const Vec3 grabbed = *view.camera().pick(320, 240);
    mouse(QEvent::MouseButtonPress, {320, 240}, Qt::LeftButton, Qt::LeftButton);
    mouse(QEvent::MouseMove, {400, 200}, Qt::NoButton, Qt::LeftButton);
    EXPECT_NEAR(view.camera().project(grabbed).x, 400, 0.01);
    EXPECT_NEAR(view.camera().project(grabbed).y, 200, 0.01);
    mouse(QEvent::MouseButtonRelease, {400, 200}, Qt::LeftButton, Qt::NoButton);
    const Camera turned = view.camera();
    mouse(QEvent::MouseMove, {100, 100}, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(view.camera(), turned) << "released";
    wheel({320, 240}, 120);
    EXPECT_LT(view.camera().range(), turned.range());
}

TEST_F(GlobeViewTest, ReportsThePositionUnderTheCursor) {
    look(at(10, 20), 1.0e5);
    bool onEarth = false;
    double lat = 0.0, lon = 0.0;
    QObject::connect(&view, &GlobeView::cursorMoved, [&](bool on, double la, double lo) {
        onEarth = on;
        lat = la;
        lon = lo;
    });
    mouse(QEvent::MouseMove, {320, 240}, Qt::NoButton, Qt::NoButton);
    EXPECT_TRUE(onEarth);
    EXPECT_NEAR(lat, 10 * kRadiansPerDegree, 1e-9);
    EXPECT_NEAR(lon, 20 * kRadiansPerDegree, 1e-9);
    look(at(10, 20), 1.0e8);
    mouse(QEvent::MouseMove, {1, 1}, Qt::NoButton, Qt::NoButton);
    EXPECT_FALSE(onEarth);
}

TEST_F(GlobeViewTest, FindsPlatformsUnderThePixel) {
    look(at(0, 0), 1.0e6);
    view.setPlatform({7, "Ship", at(0, 0), 0.0, "ship"});
    view.setPlatform({9, "Other", at(1, 0), 0.0, "x2"});
    view.setPlatform({11, "Antipode", at(0, 180), 0.0, ""});
    EXPECT_EQ(view.platformAt(323, 238), 7U);
    const Projected other = view.camera().project(at(1, 0));
    EXPECT_EQ(view.platformAt(other.x, other.y), 9U);
    EXPECT_FALSE(view.platformAt(320, 400));
    view.setPlatform({7, "Ship", at(2, 0), 0.0, "ship"});
    EXPECT_FALSE(view.platformAt(320, 240));
    view.removePlatform(9);
    EXPECT_FALSE(view.platformAt(other.x, other.y));
}

TEST_F(GlobeViewTest, DrawsScreenTextsAndLabelsTheSameEachTime) {
    look(at(0, 0), 1.0e6);
    auto label = std::make_shared<ZEL::Annotation>(false);
    label->setLabel("Label\nof two lines");
    label->setPosition(at(0, 0));
    label->setTextColor(kMagenta);
    view.overlays().add({label});
    view.setScreenText({1, "Screen text", 20.0, 20.0, 0xffffffff, 16});
    const QImage first = view.grabFrame();
    const auto count = [](const QImage& image, const QRect& where, auto&& wanted) {
        int found = 0;
        for (int y = where.top(); y <= where.bottom(); ++y)
            for (int x = where.left(); x <= where.right(); ++x) found += wanted(image.pixel(x, y)) ? 1 : 0;
        return found;
    };
    EXPECT_GT(count(first, {260, 210, 120, 60}, isMagenta), 50);
    const auto isWhite = [](QRgb c) { return qRed(c) > 230 && qGreen(c) > 230 && qBlue(c) > 230; };
    EXPECT_GT(count(first, {20, 20, 120, 24}, isWhite), 50);
    EXPECT_EQ(first, view.grabFrame());
    view.removeScreenText(1);
    EXPECT_EQ(count(view.grabFrame(), {20, 20, 120, 24}, isWhite), 0);
}

}  // namespace
}  // namespace sandbox

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
