#include "tools/PointPainter.h"

#define GL_GLEXT_PROTOTYPES
#include <algorithm>
#include <cmath>
#include <cstdint>

#include <GL/gl.h>
#include <GL/glext.h>

#include "geo/Angles.h"
#include "geo/Sodano.h"

namespace OverlayEditor {

using halCore::Ecef;
using halCore::Vec3;
using PluginUtils::PUDrawLine;
using PluginUtils::PUDrawPoint;

namespace {

constexpr std::uint32_t kEdgeColor = 0x000000C0;
constexpr std::uint32_t kRingColor = 0xFFFFFFFF;
constexpr std::uint32_t kTextColor = 0xFFFFFFFF;
constexpr std::uint32_t kBackingColor = 0x101418D8;
constexpr double kEdge = 3.0;
constexpr double kAltimeterWidth = 1.5;
constexpr double kPadding = 4.0;
constexpr double kPathEdge = 2.0;
/// Ground lines are drawn in pieces of at most this length.
constexpr double kPieceMeters = 50e3;
constexpr int kMostPieces = 400;

void setColor(std::uint32_t rgba) {
    glColor4ub(static_cast<GLubyte>(rgba >> 24), static_cast<GLubyte>(rgba >> 16),
               static_cast<GLubyte>(rgba >> 8), static_cast<GLubyte>(rgba));
}

Vec3 atAltitude(const Vec3& lla, double altitude) {
    return {lla.lat(), lla.lon(), altitude};
}

/// Everything this file changes in OpenGL, put back at the end.
class PixelOverlay {
  public:
    explicit PixelOverlay(const ViewProjection& view) {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
        glMatrixMode(GL_TEXTURE);
        glPushMatrix();
        glLoadIdentity();
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadIdentity();
        glOrtho(0.0, view.width(), 0.0, view.height(), -1.0, 1.0);
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadIdentity();
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_LIGHTING);
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_CULL_FACE);
        glDisable(GL_FOG);
        glDisable(GL_ALPHA_TEST);
        glDisable(GL_STENCIL_TEST);
        glDisable(GL_SCISSOR_TEST);
        glDepthMask(GL_FALSE);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        glEnable(GL_BLEND);
        // The second pair keeps the alpha of a layer right.
        glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        // Points are round and lines smooth by themselves; drivers differ in what multisampling makes of
        // them.
        glDisable(GL_MULTISAMPLE);
        glEnable(GL_POINT_SMOOTH);
        glEnable(GL_LINE_SMOOTH);
    }
    ~PixelOverlay() {
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glMatrixMode(GL_TEXTURE);
        glPopMatrix();
        glPopClientAttrib();
        glPopAttrib();
    }
    PixelOverlay(const PixelOverlay&) = delete;
    PixelOverlay& operator=(const PixelOverlay&) = delete;
};

}  // namespace

LabelBox placeLabel(const Pixel& point, double width, double height, bool above, double gap, int viewWidth,
                    int viewHeight) {
    const bool fitsAbove = point.y - gap - height >= 0.0;
    const bool fitsBelow = point.y + gap + height <= viewHeight;
    if (above ? !fitsAbove && fitsBelow : !fitsBelow && fitsAbove) above = !above;
    LabelBox box{point.x + gap, above ? point.y - gap - height : point.y + gap, width, height};
    box.left = std::max(0.0, std::min(box.left, viewWidth - width));
    box.top = std::max(0.0, std::min(box.top, viewHeight - height));
    return box;
}

void PointPainter::paint(const ToolPicture& picture) {
    if (!view_.isValid() || picture.isEmpty()) return;
    const PixelOverlay overlay(view_);
    for (const PluginUtils::PUDrawPath* const path : picture.paths()) drawPath_(*path);
    for (const PUDrawLine* const line : picture.lines()) drawLine_(*line);

    std::vector<Dot> dots;
    picture.eachPoint([&](const ToolPicture::Point& entry) {
        const auto pixel = view_.visiblePixel(entry.ecef);
        if (!pixel) return;
        drawAltimeter_(entry);
        dots.push_back({*pixel, entry.point});
    });
    for (const bool highlighted : {false, true}) {
        drawDots_(dots, highlighted);
        drawRings_(dots, highlighted);
    }

    font_.setSize(static_cast<int>(std::lround(kFontSize * view_.pixelScale())));
    for (const Dot& dot : dots) drawLabel_(dot);
}

void PointPainter::drawSegment_(const Ecef& from, const Ecef& to) const {
    const auto pixels = view_.segment(from, to);
    if (!pixels) return;
    glVertex2d(pixels->first.x, view_.height() - pixels->first.y);
    glVertex2d(pixels->second.x, view_.height() - pixels->second.y);
}

void PointPainter::drawLine_(const PUDrawLine& line) const {
    const auto whole = halCore::Sodano::inverse(line.from(), line.to());
    const int pieces = std::clamp(static_cast<int>(whole.distance / kPieceMeters) + 1, 1, kMostPieces);
    const auto place = [&](int i) {
        if (i == 0) return line.from();
        if (i == pieces) return line.to();
        const double share = static_cast<double>(i) / pieces;
        const Vec3 lla = halCore::Sodano::direct(line.from(), whole.azimuth1, whole.distance * share);
        return atAltitude(lla, std::lerp(line.from().alt(), line.to().alt(), share));
    };
    setColor(line.getColor());
    glLineWidth(static_cast<GLfloat>(line.getWidth() * view_.pixelScale()));
    glBegin(GL_LINES);
    Ecef from = halCore::toEcef(place(0));
    bool fromHidden = view_.isHiddenByEarth(halCore::toEcef(atAltitude(line.from(), 0.0)));
    for (int i = 1; i <= pieces; ++i) {
        const Vec3 lla = place(i);
        const Ecef to = halCore::toEcef(lla);
        const bool toHidden =
            view_.isHiddenByEarth(halCore::toEcef(atAltitude(lla, std::max(0.0, lla.alt()))));
        if (!fromHidden && !toHidden) drawSegment_(from, to);
        from = to;
        fromHidden = toHidden;
    }
    glEnd();
}

void PointPainter::drawPath_(const PluginUtils::PUDrawPath& path) const {
    const auto seen = view_.seen(path.places());
    const auto draw = [&](std::uint32_t color, double width) {
        setColor(color);
        glLineWidth(static_cast<GLfloat>(width * view_.pixelScale()));
        glBegin(GL_LINES);
        for (const auto& [from, to] : seen) {
            glVertex2d(from.x, view_.height() - from.y);
            glVertex2d(to.x, view_.height() - to.y);
        }
        glEnd();
    };
    draw(kRingColor, path.getWidth() + 2.0 * kPathEdge);
    draw(path.getColor(), path.getWidth());
}

void PointPainter::drawAltimeter_(const ToolPicture::Point& entry) const {
    const Vec3 top = entry.point->getPosition();
    if (!entry.point->drawsAltimeter() || top.alt() == 0.0) return;
    // The lower end may be beyond the horizon: what can be seen reaches from the top down to some altitude.
    double seen = top.alt();
    double wanted = 0.0;
    if (top.alt() > 0.0 && view_.isHiddenByEarth(halCore::toEcef(atAltitude(top, 0.0)))) {
        for (int i = 0; i < 40; ++i) {
            const double middle = 0.5 * (seen + wanted);
            const bool hidden = view_.isHiddenByEarth(halCore::toEcef(atAltitude(top, middle)));
            (hidden ? wanted : seen) = middle;
        }
        wanted = seen;
    }
    setColor(entry.point->getColor());
    glLineWidth(static_cast<GLfloat>(kAltimeterWidth * view_.pixelScale()));
    glBegin(GL_LINES);
    drawSegment_(entry.ecef, halCore::toEcef(atAltitude(top, wanted)));
    glEnd();
}

void PointPainter::drawDots_(const std::vector<Dot>& dots, bool highlighted) const {
    const auto draw = [&](double size, auto&& color) {
        glPointSize(static_cast<GLfloat>(size * view_.pixelScale()));
        glBegin(GL_POINTS);
        for (const Dot& dot : dots) {
            if (dot.point->isHollow() || dot.point->isHighlighted() != highlighted) continue;
            setColor(color(dot));
            glVertex2d(dot.pixel.x, view_.height() - dot.pixel.y);
        }
        glEnd();
    };
    const double size = highlighted ? kHighlightedSize : kPointSize;
    draw(size + kEdge, [](const Dot&) { return kEdgeColor; });
    if (highlighted) draw(size, [](const Dot&) { return kRingColor; });
    draw(highlighted ? size - kEdge : size, [](const Dot& dot) { return dot.point->getColor(); });
}

void PointPainter::drawRings_(const std::vector<Dot>& dots, bool highlighted) const {
    constexpr int sides = 32;
    // Thin, for a long text goes through it.
    constexpr double line = 1.5;
    constexpr double edge = 1.5;
    const double radius = 0.5 * ((highlighted ? kHighlightedSize : kPointSize) + kHollowExtra);
    const auto draw = [&](const Dot& dot, double width, std::uint32_t color) {
        setColor(color);
        glLineWidth(static_cast<GLfloat>(width * view_.pixelScale()));
        glBegin(GL_LINE_LOOP);
        for (int i = 0; i < sides; ++i) {
            const double angle = 2.0 * halCore::kPi * i / sides;
            glVertex2d(dot.pixel.x + radius * view_.pixelScale() * std::cos(angle),
                       view_.height() - dot.pixel.y + radius * view_.pixelScale() * std::sin(angle));
        }
        glEnd();
    };
    for (const Dot& dot : dots) {
        if (!dot.point->isHollow() || dot.point->isHighlighted() != highlighted) continue;
        draw(dot, line + (highlighted ? 2.0 : 1.0) * edge, kEdgeColor);
        if (highlighted) draw(dot, line + edge, kRingColor);
        draw(dot, line, dot.point->getColor());
    }
}

void PointPainter::drawLabel_(const Dot& dot) const {
    const std::string& text = dot.point->getDescription();
    if (text.empty() || !font_.isUsable()) return;
    const double padding = std::round(kPadding * view_.pixelScale());
    const double ascent = std::ceil(font_.ascent());
    const double lineHeight = ascent + std::ceil(font_.descent());
    const std::vector<std::string> lines = font_.lines(text, view_.width() - 2.0 * padding);
    double width = 0.0;
    for (const std::string& line : lines) width = std::max(width, std::ceil(font_.width(line)));
    width += 2.0 * padding;
    const double height = lineHeight * static_cast<double>(lines.size()) + 2.0 * padding;
    const double gap = kHighlightedSize * view_.pixelScale();
    const LabelBox box =
        placeLabel(dot.pixel, width, height, dot.point->drawsTextAbove(), gap, view_.width(), view_.height());
    // On whole pixels, so that the glyphs are sharp.
    const double left = std::round(box.left);
    const double top = view_.height() - std::round(box.top);

    setColor(kBackingColor);
    glRectd(left, top - height, left + width, top);
    setColor(kTextColor);
    // The text blends in a way that would thin the backing's alpha.
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE);
    double baseline = top - padding - ascent;
    for (const std::string& line : lines) {
        font_.draw(line, left + padding, baseline);
        baseline -= lineHeight;
    }
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

}  // namespace OverlayEditor
