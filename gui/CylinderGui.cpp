#include "gui/CylinderGui.h"

#include <utility>

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
    : PanelOf(preferences, canvas, std::move(change)),
      xRadius_(
          *this,
          hasTwoRadii(subtype) ? "X Radius:\tX radius for this shape" : "Radius:\tRadius for this circle",
          Quantity::Radius),
      yRadius_(entry_(hasTwoRadii(subtype), "Y Radius:\tY radius for this shape", Quantity::Radius)),
      height_(entry_(hasHeight(subtype), "Height:\tHeight for this shape in specified units",
                     Quantity::Altitude)),
      startAngle_(entry_(hasSector(subtype), "Start Angle:\tStart angle for this shape in specified units",
                         Quantity::Angle)),
      endAngle_(entry_(hasSector(subtype), "End Angle:\tEnd angle for this shape in specified units",
                       Quantity::Angle)) {}

CylinderGui::Entry CylinderGui::entry_(bool wanted, const char* caption, Quantity quantity) {
    return wanted ? std::make_unique<ValueUnitEntry>(*this, caption, quantity) : nullptr;
}

}  // namespace OverlayEditor
