#include "gui/CylinderGui.h"

#include <utility>

#include "gui/CallChange.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

namespace {

using Quantity = ValueUnitEntry::Quantity;
using Subtype = CylinderShape::Subtype;

bool hasTwoRadii(Subtype subtype) {
    return CylinderShape::kindOf(subtype).radii == ShapeKind::Radii::Two;
}
bool hasHeight(Subtype subtype) {
    return CylinderShape::kindOf(subtype).height == ShapeKind::Height::Own;
}
bool hasSector(Subtype subtype) {
    return CylinderShape::kindOf(subtype).sector == ShapeKind::Sector::Drawn;
}

}  // namespace

CylinderGui::CylinderGui(Subtype subtype, const Preferences& preferences, PIGUI::PICanvas& canvas,
                         PanelChange change)
    : change_(std::move(change)),
      table_(&canvas, 3),
      draw_(table_, [this] { onCmdChange(); }),
      center_(table_, preferences, [this] { onCmdChange(); }),
      xRadius_(
          table_,
          hasTwoRadii(subtype) ? "X Radius:\tX radius for this shape" : "Radius:\tRadius for this circle",
          Quantity::Radius, preferences, [this] { onCmdChange(); }),
      yRadius_(
          entry_(hasTwoRadii(subtype), "Y Radius:\tY radius for this shape", Quantity::Radius, preferences)),
      height_(entry_(hasHeight(subtype), "Height:\tHeight for this shape in specified units",
                     Quantity::Altitude, preferences)),
      startAngle_(entry_(hasSector(subtype), "Start Angle:\tStart angle for this shape in specified units",
                         Quantity::Angle, preferences)),
      endAngle_(entry_(hasSector(subtype), "End Angle:\tEnd angle for this shape in specified units",
                       Quantity::Angle, preferences)),
      lineStyle_(table_, [this] { onCmdChange(); }),
      fillStyle_(table_, [this] { onCmdChange(); }) {}

std::unique_ptr<ValueUnitEntry> CylinderGui::entry_(bool wanted, const std::string& caption,
                                                    Quantity quantity, const Preferences& preferences) {
    if (!wanted) return nullptr;
    return std::make_unique<ValueUnitEntry>(table_, caption, quantity, preferences,
                                            [this] { onCmdChange(); });
}

void CylinderGui::setXradius(double meters) {
    xRadius_.setValue(meters);
}
void CylinderGui::setYradius(double meters) {
    if (yRadius_) yRadius_->setValue(meters);
}
void CylinderGui::setHeight(double meters) {
    if (height_) height_->setValue(meters);
}
void CylinderGui::setStartEndAngles(double startRad, double endRad) {
    if (startAngle_) startAngle_->setValue(startRad);
    if (endAngle_) endAngle_->setValue(endRad);
}

std::optional<double> CylinderGui::yRadius() const {
    return yRadius_ ? yRadius_->edited() : std::nullopt;
}
std::optional<double> CylinderGui::height() const {
    return height_ ? height_->edited() : std::nullopt;
}
std::optional<double> CylinderGui::startAngle() const {
    return startAngle_ ? startAngle_->edited() : std::nullopt;
}
std::optional<double> CylinderGui::endAngle() const {
    return endAngle_ ? endAngle_->edited() : std::nullopt;
}

void CylinderGui::notifyPrefsUpdate() {
    center_.notifyPrefsUpdate();
    for (ValueUnitEntry* entry :
         {&xRadius_, yRadius_.get(), height_.get(), startAngle_.get(), endAngle_.get()})
        if (entry) entry->notifyPrefsUpdate();
}

void CylinderGui::onCmdChange() {
    call(change_);
}

}  // namespace OverlayEditor
