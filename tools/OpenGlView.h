#pragma once

#include <memory>

#include "tools/LabelFont.h"
#include "tools/ToolView.h"

namespace OverlayEditor {

/// The host's view through OpenGL: its matrices and viewport, and the eye that the host tells.
///
/// Mouse events may come in pixels that are larger than the device's. When the hook's width is that of
/// the viewport, the ratio is learned from where the host says that the cursor is: it shows where a pixel of
/// a mouse event lies on the device. Until then it is 1.
class OpenGlView final : public ToolView {
  public:
    OpenGlView();
    ~OpenGlView() override;

    ViewProjection capture(int width, int height) override;
    void paint(const ViewProjection& view, const ToolPicture& picture) override;
    void sawCursor(const ViewProjection& view, int x, int y, const halCore::Vec3& ground) override;

    /// Needs a current context.
    void releaseGraphics();

  private:
    std::unique_ptr<LabelFont> font_;
    double learnedScale_ = 1.0;
};

/// Device pixels per pixel of the mouse events, a multiple of a quarter, from one place in both; 0 when
/// they do not tell.
double pixelScaleFrom(const Pixel& device, int x, int y);

}  // namespace OverlayEditor
