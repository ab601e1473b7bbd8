#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "model/Overlay.h"
#include "tools/PUDrawLine.h"
#include "tools/PUDrawPoint.h"
#include "tools/ShapeOutline.h"

namespace OverlayEditor {

/// What is drawn of an edited overlay beside its tool: the points that half drawn shapes have, which the host
/// cannot show yet, a white edge along the outline of the selected shape while no tool edits it, and a ring
/// about the point that the panel of a selected line or polygon shows.
class OverlayMarks {
  public:
    /// \param overlay must outlive the object
    explicit OverlayMarks(const Overlay& overlay) : overlay_(overlay) {}

    /// In the refresh hook, once the tool has drawn.
    /// \param selected null for none
    void draw(const Shape* selected, int widthPixels, int heightPixels);

  private:
    void markHalfDrawn_(const Shape& shape);
    void mark_(const halCore::Vec3& place, std::uint32_t rgba);
    void ring_(const halCore::Vec3& place);

    const Overlay& overlay_;
    /// Those that the host shows nothing of, when the overlay had that revision.
    std::vector<const Shape*> undisplayed_;
    std::optional<std::uint64_t> revision_;
    std::vector<PluginUtils::PUDrawPoint> points_;
    std::vector<PluginUtils::PUDrawLine> lines_;
    ShapeOutline outline_;
};

}  // namespace OverlayEditor
