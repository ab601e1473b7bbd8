#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "geo/Sodano.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/ShapeCopies.h"
#include "model/ShapeKinds.h"
#include "model/ShapePlace.h"
#include "model/Utils.h"

namespace OverlayEditor {

int OverlayEditorDialog::onCmdDuplicate(PIObject*, void*) {
    const Shape* const shape = selectedShape_();
    if (!shape) return 1;
    // What the mouse holds of it is let go first.
    mouseManager_->clearMouseTool();
    const bool shown = shape->shown();
    Shape* const copy = add_(copyOf(*shape, getUniqueName_(nameWithoutNumber(shape->name()))));
    if (!shown) copy->setShown(false);
    choose_(copy);
    return 1;
}

int OverlayEditorDialog::onCmdSameStyle(PIObject*, void*) {
    enum Choice { None, OfItsKind, All };
    const std::int32_t choice = widgets_->style.getValueInt();
    widgets_->style.setValue(None);
    const Shape* const model = current_();
    if (!model || (choice != OfItsKind && choice != All)) return 1;
    const auto from = model->state();
    for (const Shape* shape : overlay_->shapes()) {
        ShapeState state = *shape->state();
        const ShapeState before = state;
        if (choice == OfItsKind && state.kind != from->kind) continue;
        takeStyle(state, *from);
        if (!(state == before)) document_.history().restore(overlay_->numberOf(shape), state);
    }
    updateSavedMark_();
    return 1;
}

int OverlayEditorDialog::onCmdRings(PIObject*, void*) {
    if (!rings_)
        rings_ = std::make_unique<RingsDialog>(*preferences_,
                                               callbacks_.make(&OverlayEditorDialog::onCmdMakeRings));
    followPlatform_();
    const PointConverter* const reference = overlay_->pointConverter();
    rings_->show(ringCenter_(reference), reference);
    return 1;
}

PlacedPoint OverlayEditorDialog::ringCenter_(const PointConverter* reference) {
    PlacedPoint center{halCore::Vec3()};
    const Shape* const shape = current_();
    const bool isRound =
        dynamic_cast<const CylinderShape*>(shape) || dynamic_cast<const AnnotationShape*>(shape);
    if (isRound && shape->placed().has(0) && shape->placed().frame() == reference) {
        return shape->placed().at(0);
    } else if (shape && hasPlace(*shape)) {
        center.place = shape->centerPoint();
    } else if (reference) {
        center.offset = halCore::Vec3();
        reference->getReferenceLla(center.place);
    } else {
        Utils::getDefaultLla(center.place);
    }
    halCore::Vec3 offset;
    if (reference && !center.offset && reference->convertLlaToXyz(center.place, offset) == 0)
        center.offset = offset;
    return center;
}

int OverlayEditorDialog::onCmdMakeRings(PIObject*, void*) {
    const std::vector<RingsDialog::Ring> rings = rings_->rings();
    if (rings.empty()) return 1;
    PlacedPoint center = rings_->center();
    // It may have been attached, or detached, since the dialog was opened.
    if (!overlay_->pointConverter()) center.offset.reset();
    const auto* const like = dynamic_cast<const BaseLineShape*>(current_());
    CylinderShape prototype(*preferences_, CylinderShape::Circle);
    if (like) {
        const std::uint32_t color = like->lineColor();
        const auto byte = [color](int shift) { return static_cast<unsigned char>(color >> shift & 0xFFU); };
        prototype.setLineColor(byte(24), byte(16), byte(8), byte(0));
        prototype.setLineWidth(like->lineWidth());
    }
    for (const RingsDialog::Ring& ring : rings) {
        const std::string name = "Ring " + ring.radius;
        auto& circle = static_cast<CylinderShape&>(
            *add_(copyOf(prototype, overlay_->findShape(name) ? getUniqueName_(name) : name)));
        circle.setCenter(center);
        circle.setMajorRadius(ring.meters);
        if (rings_->labels()) {
            auto label = std::make_unique<AnnotationShape>(*preferences_);
            label->setName(ring.radius);
            static_cast<AnnotationShape&>(*add_(std::move(label)))
                .showPosition(PlacedPoint(halCore::Sodano::direct(center.place, 0.0, ring.meters)));
        }
        if (ring.radius == rings.back().radius) choose_(&circle);
    }
    rings_->hide();
    return 1;
}

}  // namespace OverlayEditor
