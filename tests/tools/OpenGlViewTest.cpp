#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <gtest/gtest.h>

#include "TestView.h"
#include "common/Notify.h"
#include "support/FakeHost.h"
#include "tools/LabelFont.h"
#include "tools/OpenGlView.h"
#include "tools/PointPainter.h"

namespace {

using halCore::Vec3;
using OverlayEditor::LabelFont;
using OverlayEditor::OpenGlView;
using OverlayEditor::Pixel;
using OverlayEditor::PointPainter;
using OverlayEditor::ToolPicture;
using OverlayEditor::ViewProjection;
using PluginUtils::PUDrawPoint;

constexpr int kWidth = TestView::kWidth;
constexpr int kHeight = TestView::kHeight;

/// Makes a legacy-compatible context without a screen current, the same for all tests and never taken down:
/// the driver does not free everything. \return false where there is no OpenGL
bool makeContextCurrent() {
    static EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
    static EGLSurface surface{};
    static EGLContext context{};
    if (!context) {
        const EGLint wanted[] = {EGL_SURFACE_TYPE,    EGL_PBUFFER_BIT, EGL_RED_SIZE, 8, EGL_ALPHA_SIZE, 8,
                                 EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,  EGL_NONE};
        const EGLint size[] = {EGL_WIDTH, kWidth, EGL_HEIGHT, kHeight, EGL_NONE};
        EGLConfig config{};
        EGLint count = 0;
        if (!eglInitialize(display, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API) ||
            !eglChooseConfig(display, wanted, &config, 1, &count) || count == 0)
            return false;
        surface = eglCreatePbufferSurface(display, config, size);
        context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    }
    return eglMakeCurrent(display, surface, surface, context) == EGL_TRUE;
}

struct Painting : testing::Test {
    void SetUp() override {
        if (!makeContextCurrent()) GTEST_SKIP() << "no OpenGL here";
        glViewport(0, 0, kWidth, kHeight);
        font = std::make_unique<LabelFont>(LabelFont::defaultPath());
    }
    void TearDown() override {
        font.reset();
        eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    /// Red, green, blue, alpha of a pixel counted from the top left.
    static std::array<std::uint8_t, 4> at(const std::vector<std::uint8_t>& image, int x, int y) {
        std::array<std::uint8_t, 4> rgba{};
        const auto start = static_cast<std::size_t>(((kHeight - 1 - y) * kWidth + x) * 4);
        std::copy_n(image.begin() + static_cast<std::ptrdiff_t>(start), 4, rgba.begin());
        return rgba;
    }
    struct Blob {
        int pixels = 0;
        Pixel center;
    };
    /// What is drawn in pure red, green or blue (channel 0, 1, 2).
    static Blob blob(const std::vector<std::uint8_t>& bytes, std::size_t channel) {
        Blob found;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                const auto rgba = at(bytes, x, y);
                if (rgba[channel] < 200 || rgba[(channel + 1) % 3] > 40 || rgba[(channel + 2) % 3] > 40)
                    continue;
                ++found.pixels;
                found.center.x += x + 0.5;
                found.center.y += y + 0.5;
            }
        if (found.pixels > 0) {
            found.center.x /= found.pixels;
            found.center.y /= found.pixels;
        }
        return found;
    }
    std::vector<std::uint8_t> paint(const ViewProjection& projection, std::vector<PUDrawPoint*> points,
                                    const PluginUtils::PUDrawLine* line = nullptr) {
        ToolPicture picture;
        for (auto* const point : points) {
            point->show();
            picture.add(*point);
        }
        if (line) picture.add(*line);
        glClearColor(0.0F, 0.0F, 0.0F, 0.0F);
        glClear(GL_COLOR_BUFFER_BIT);
        PointPainter(projection, *font).paint(picture);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(kWidth) * kHeight * 4);
        glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
        return bytes;
    }

    FakeHost host;
    std::unique_ptr<LabelFont> font;
};

TEST_F(Painting, PointsAreAsLargeAtEveryRangeAndWhereTheyBelong) {
    for (const double range : {100.0, 1e4, 1e6, 2e7})
        for (const auto& center : {degrees(21.0, -158.0), degrees(-3.0, 180.0), degrees(90.0, 0.0)}) {
            SCOPED_TRACE(range);
            TestView view(Vec3(center.lat(), center.lon(), range), 0.3, 0.05);
            const Vec3 ground = *view.pick(250.25, 400.75);
            PUDrawPoint point(ground, 0xFF0000FF);
            const auto normal = blob(paint(view.projection(), {&point}), 0);
            EXPECT_NEAR(normal.center.x, 250.25, 0.5);
            EXPECT_NEAR(normal.center.y, 400.75, 0.5);
            EXPECT_NEAR(normal.pixels, 64, 20) << "a disc of nine pixels";
            point.setHighlighted(true);
            const auto image = paint(view.projection(), {&point});
            EXPECT_GT(blob(image, 0).pixels, normal.pixels);
            EXPECT_GT(at(image, 250 + 6, 400)[1], 150) << "inside its ring";
            const auto dense = blob(paint(view.projection(2.0), {&point}), 0);
            EXPECT_NEAR(dense.pixels, 4.0 * blob(image, 0).pixels, 60);
        }
}

TEST_F(Painting, WhatTheEarthHidesIsLeftOut) {
    TestView view(degrees(0.0, 0.0, 2e7));
    PUDrawPoint farSide(degrees(0.0, 120.0), 0xFF0000FF);
    farSide.setDescription("hidden");
    const auto nothing = paint(view.projection(), {&farSide});
    EXPECT_TRUE(std::ranges::all_of(nothing, [](std::uint8_t byte) { return byte == 0; }));

    // A line around half of the globe ends at its rim, 76 degrees from the middle.
    PluginUtils::PUDrawLine line(degrees(0.0, 0.0), degrees(0.0, 150.0), 0x00FF00FF);
    line.show();
    const auto projection = view.projection();
    const auto rim = *projection.pixel(halCore::toEcef(degrees(0.0, 76.0)));
    const auto image = paint(projection, {}, &line);
    EXPECT_GT(at(image, static_cast<int>(rim.x) - 8, kHeight / 2)[1], 100);
    for (int x = static_cast<int>(rim.x) + 3; x < kWidth; ++x) EXPECT_EQ(at(image, x, kHeight / 2)[1], 0);
}

TEST_F(Painting, AltimeterLinesReachDownToTheGround) {
    TestView view(degrees(20.0, 30.0, 3e5), 0.0, 0.6);
    const Vec3 foot = *view.pick(400, 380);
    PUDrawPoint point(Vec3(foot.lat(), foot.lon(), 4e4), 0x0000FFFF);
    const auto projection = view.projection();
    const auto top = *projection.visiblePixel(point.ecef());
    ASSERT_LT(top.y, 350.0);
    const auto blue = [&](const std::vector<std::uint8_t>& image, double y) {
        int sum = 0;
        for (int x = -3; x <= 3; ++x)
            sum += at(image, static_cast<int>(std::lerp(400.0, top.x, (380 - y) / (380 - top.y))) + x,
                      static_cast<int>(y))[2];
        return sum;
    };
    const auto image = paint(projection, {&point});
    EXPECT_GT(blue(image, 376), 150);
    EXPECT_GT(blue(image, 0.5 * (380 + top.y)), 150);
    EXPECT_EQ(blue(image, 385), 0);
    point.setDrawAltimeter(false);
    EXPECT_EQ(blue(paint(projection, {&point}), 376), 0);
}

TEST_F(Painting, LabelsAreLightOnADarkBacking) {
    TestView view(degrees(21.0, -158.0, 1e5));
    PUDrawPoint point(*view.pick(200, 300), 0xFF0000FF);
    const auto count = [&](const std::string& label) {
        point.setDescription(label);
        const auto bytes = paint(view.projection(), {&point});
        std::pair<int, int> lightAndDark{};
        for (int y = 310; y < 345; ++y)
            for (int x = 210; x < 790; ++x) {
                const auto rgba = at(bytes, x, y);
                if (rgba[0] > 180 && rgba[1] > 180) ++lightAndDark.first;
                if (rgba[0] < 60 && rgba[3] > 200) ++lightAndDark.second;
            }
        return lightAndDark;
    };
    const auto [light, dark] = count("LLA: 21\u00B030'00.00\"N 158\u00B000'00.00\"W 0.00 m");
    EXPECT_GT(light, 300);
    EXPECT_GT(dark, 2000);
    EXPECT_EQ(count(""), std::pair(0, 0));
    EXPECT_GT(count("LLA: 21").second, 300);
    EXPECT_LT(count("LLA: 21").second, dark / 2) << "a shorter text has a smaller backing";
}

TEST_F(Painting, AMissingFontCostsTheLabelsAndOneMessage) {
    std::vector<std::string> messages;
    halNotify::setNotifyHandler(
        [&](halNotify::Severity, const std::string& text) { messages.push_back(text); });
    font = std::make_unique<LabelFont>("/nonexistent/font.ttf");
    TestView view(degrees(21.0, -158.0, 1e5));
    PUDrawPoint point(*view.pick(200, 300), 0xFF0000FF);
    point.setDescription("label");
    EXPECT_GT(blob(paint(view.projection(), {&point}), 0).pixels, 30);
    halNotify::setNotifyHandler({});
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_NE(messages[0].find("/nonexistent/font.ttf"), std::string::npos);
}

TEST_F(Painting, TheHostsViewIsReadFromItsMatrices) {
    TestView view(degrees(40.0, 179.9, 5e4), 2.0, 0.3);
    host.eye = degrees(40.0, 179.9, 5e4);
    const auto [modelview, perspective] = view.matrices();
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(perspective.data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(modelview.data());

    OpenGlView hosts;
    const Vec3 ground = *view.pick(123, 456);
    const auto captured = hosts.capture(kWidth, kHeight);
    const auto pixel = captured.visiblePixel(halCore::toEcef(ground));
    ASSERT_TRUE(pixel);
    EXPECT_NEAR(pixel->x, 123.0, 0.02);
    EXPECT_NEAR(pixel->y, 456.0, 0.02);
    EXPECT_EQ(captured.pixelScale(), 1.0);
    EXPECT_EQ(hosts.capture(kWidth / 2, kHeight / 2).pixelScale(), 2.0)
        << "a hook that speaks in larger pixels";

    // The host says that the mouse's pixel 100, 228 is there: its pixels are twice the device's.
    hosts.sawCursor(captured, 100, 228, *view.pick(200, 456));
    EXPECT_EQ(hosts.capture(kWidth, kHeight).pixelScale(), 2.0);
    hosts.sawCursor(captured, 100, 228, ground);
    EXPECT_EQ(hosts.capture(kWidth, kHeight).pixelScale(), 2.0) << "contradictions teach nothing";

    host.eye.reset();
    EXPECT_FALSE(hosts.capture(kWidth, kHeight).isValid());
}

TEST_F(Painting, LeavesTheStateOfTheHostAlone) {
    TestView view(degrees(40.0, 10.0, 5e4));
    glMatrixMode(GL_PROJECTION);
    glDisable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);
    glPointSize(3.0F);
    PUDrawPoint point(degrees(40.0, 10.0), 0xFF0000FF);
    point.setDescription("text");
    paint(view.projection(), {&point});
    GLint mode = 0;
    GLfloat size = 0.0F;
    GLint depth = -1;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    glGetFloatv(GL_POINT_SIZE, &size);
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &depth);
    EXPECT_EQ(mode, GL_PROJECTION);
    EXPECT_EQ(size, 3.0F);
    EXPECT_EQ(depth, 1);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
}

TEST(HostView, WithoutAContextNothingIsDrawn) {
    FakeHost host;
    host.eye = degrees(1.0, 2.0, 3e5);
    OpenGlView view;
    EXPECT_FALSE(view.capture(800, 600).isValid());
    OverlayEditor::releaseGraphics();
    OverlayEditor::releaseGraphics();
}

}  // namespace
