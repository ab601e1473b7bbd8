#pragma once

#include <string>
#include <vector>

#include "tools/LabelFont.h"
#include "tools/ToolView.h"
#include "tools/ViewProjection.h"

namespace OverlayEditor {

/// Where a label's backing stands, device pixels from the top left of the view.
struct LabelBox {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
};

/// Places a label to the right of its point, above or below it as asked; on the other side where it would
/// not fit into the view, and never outside of the view's edges if it fits at all.
LabelBox placeLabel(const Pixel& point, double width, double height, bool above, double gap, int viewWidth,
                    int viewHeight);

/// Draws a tool's picture with OpenGL, in device pixels over the whole view: points of the same size at
/// every zoom, larger and ringed when highlighted, or mere rings when they are hollow, their altimeter lines
/// down to the ground, and their labels on a dark backing. What the earth hides is left out. Needs a current,
/// legacy-compatible context; leaves its state as it was.
class PointPainter {
  public:
    /// Sizes are in pixels of the mouse events.
    static constexpr double kPointSize = 9.0;
    static constexpr double kHighlightedSize = 13.0;
    /// How much larger a hollow point is.
    static constexpr double kHollowExtra = 6.0;
    static constexpr double kFontSize = 13.0;

    PointPainter(const ViewProjection& view, LabelFont& font) : view_(view), font_(font) {}

    void paint(const ToolPicture& picture);

  private:
    struct Dot {
        Pixel pixel;
        const PluginUtils::PUDrawPoint* point;
    };

    void drawLine_(const PluginUtils::PUDrawLine& line) const;
    void drawPath_(const PluginUtils::PUDrawPath& path) const;
    void drawAltimeter_(const ToolPicture::Point& point) const;
    void drawDots_(const std::vector<Dot>& dots, bool highlighted) const;
    void drawRings_(const std::vector<Dot>& dots, bool highlighted) const;
    void drawLabel_(const Dot& dot) const;
    void drawSegment_(const halCore::Ecef& from, const halCore::Ecef& to) const;

    const ViewProjection& view_;
    LabelFont& font_;
};

}  // namespace OverlayEditor
