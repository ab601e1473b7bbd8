#include "tools/PUDrawPoints.h"

namespace PluginUtils {

void PUDrawPoints::setPositions(std::span<const halCore::Vec3> positions) {
    if (points_.size() != positions.size()) gridView_.reset();
    if (points_.size() > positions.size()) points_.resize(positions.size());
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (!(points_[i]->getPosition() == positions[i])) setPosition(i, positions[i]);
    for (std::size_t i = points_.size(); i < positions.size(); ++i) {
        points_.push_back(std::make_unique<PUDrawPoint>(positions[i], color_));
        if (shown_) points_.back()->show();
    }
}

void PUDrawPoints::setPosition(std::size_t index, const halCore::Vec3& position) {
    PUDrawPoint& point = *points_[index];
    point.setPosition(position);
    if (gridView_ &&
        !grid_.movePoint(*gridView_, point.ecef(), static_cast<OverlayEditor::SnapGrid::Id>(index)))
        gridView_.reset();
}

std::optional<std::size_t> PUDrawPoints::grabbedBy(const GrabbingCursor& cursor) const {
    constexpr std::size_t many = 64;
    if (points_.size() > many && cursor.view().isValid()) {
        if (gridView_ != cursor.view()) {
            gridView_ = cursor.view();
            grid_.begin(*gridView_, kGrabRadius * gridView_->pixelScale());
            for (std::size_t i = 0; i < points_.size(); ++i)
                grid_.addPoint(points_[i]->ecef(), static_cast<OverlayEditor::SnapGrid::Id>(i));
            grid_.finish();
        }
        return cursor.pixel() ? grid_.firstPoint(*cursor.pixel()) : std::nullopt;
    }
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (points_[i]->canGrab(cursor)) return i;
    return std::nullopt;
}

std::optional<std::size_t> PUDrawPoints::under(const GrabbingCursor& cursor) const {
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (points_[i]->isOn(cursor)) return i;
    return std::nullopt;
}

std::optional<std::size_t> PUDrawPoints::indexOf(const PUDrawPoint* searched) const {
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (points_[i].get() == searched) return i;
    return std::nullopt;
}

void PUDrawPoints::show() {
    shown_ = true;
    for (const auto& point : points_) point->show();
}

void PUDrawPoints::hide() {
    shown_ = false;
    for (const auto& point : points_) point->hide();
}

}  // namespace PluginUtils
