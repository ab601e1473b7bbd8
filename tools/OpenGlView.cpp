#include "tools/OpenGlView.h"

#include <array>
#include <cmath>

#include <GL/gl.h>

#include "pi/PIHALVIS.h"
#include "tools/PointPainter.h"

namespace OverlayEditor {

using halCore::Vec3;

namespace {

/// Nearer to the view's corner a pixel tells too little.
constexpr int kTellingPixels = 64;
constexpr double kScaleStep = 0.25;
constexpr double kMostScale = 4.0;
constexpr double kAgreement = 0.04;

bool hasContext() {
    return glGetString(GL_VERSION) != nullptr;
}

}  // namespace

double pixelScaleFrom(const Pixel& device, int x, int y) {
    if (x < kTellingPixels || y < kTellingPixels) return 0.0;
    const double scaleX = device.x / x;
    const double scaleY = device.y / y;
    const double scale = std::round(scaleX / kScaleStep) * kScaleStep;
    if (scale < 1.0 || scale > kMostScale) return 0.0;
    return std::abs(scaleX - scale) < kAgreement && std::abs(scaleY - scale) < kAgreement ? scale : 0.0;
}

OpenGlView::OpenGlView() = default;

OpenGlView::~OpenGlView() {
    // Without a context nothing of it can be freed any more.
    static_cast<void>(font_.release());
}

ViewProjection OpenGlView::capture(int width, int height) {
    double lat = 0.0;
    double lon = 0.0;
    double alt = 0.0;
    if (!hasContext() || PIHALVIS::getEyePosition(&lat, &lon, &alt) != 0) return {};
    std::array<GLint, 4> viewport{};
    std::array<double, 16> modelview{};
    std::array<double, 16> projection{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview.data());
    glGetDoublev(GL_PROJECTION_MATRIX, projection.data());
    const bool devicePixels = width <= 0 || height <= 0 || viewport[2] == width;
    const double scale = devicePixels ? learnedScale_ : static_cast<double>(viewport[2]) / width;
    return {halCore::toEcef(Vec3(lat, lon, alt)), modelview, projection, viewport[2], viewport[3], scale};
}

void OpenGlView::paint(const ViewProjection& view, const ToolPicture& picture) {
    if (!view.isValid() || picture.isEmpty()) return;
    if (!font_) font_ = std::make_unique<LabelFont>(LabelFont::defaultPath());
    PointPainter(view, *font_).paint(picture);
}

void OpenGlView::sawCursor(const ViewProjection& view, int x, int y, const Vec3& ground) {
    const auto device = view.pixel(halCore::toEcef(ground));
    if (!device) return;
    if (const double scale = pixelScaleFrom(*device, x, y); scale > 0.0) learnedScale_ = scale;
}

void OpenGlView::releaseGraphics() {
    if (hasContext())
        font_.reset();
    else
        static_cast<void>(font_.release());
}

}  // namespace OverlayEditor
