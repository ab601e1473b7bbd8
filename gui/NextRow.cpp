#include "gui/NextRow.h"

#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "gui/Captions.h"
#include "tools/BaseMouseTool.h"

namespace OverlayEditor {

namespace {

constexpr const char* kTooltip =
    "What the next click would do, at exactly that place: a position, \"5 nm 270\", \"+3 km E 1 km N\", \"5 "
    "nm\", "
    "\"12 nm 270 330\". Enter takes it; Enter in the empty line finishes";

/// Metres, of points that the mouse would place.
double workingAltitude(const Shape& shape) {
    const auto* const tool = dynamic_cast<const BaseMouseTool*>(shape.mouseTool());
    return tool ? tool->getCurrentAltitude_() : 0.0;
}

}  // namespace

NextRow::NextRow(PIGUI::PICanvas* table, NextTarget target)
    : target_(std::move(target)),
      caption_(table, std::string("Next:\t") + kTooltip),
      field_(table, PIGUI::PITextFieldNormal, callbacks_.make(&NextRow::onCmdEntered)),
      filler_(table, ""),
      understood_(table, ""),
      isLine_(field_.setLine(callbacks_.make(&NextRow::onCmdTyping))) {
    understood_.setRoom(0, 2);
}

UTILS::TypedStep NextRow::read_(const Shape& shape, const std::string& text, std::string& reason) const {
    return UTILS::readTypedStep(text, *shape.preferences().unitsProvider(), takesOffsets(shape), reason);
}

void NextRow::refresh() {
    preview_.hide();
    const std::string text = field_.getValueText();
    const Shape* const shape = target_.shape();
    std::string told;
    if (shape && !UTILS::trimmed(text).empty()) {
        const UTILS::TypedStep step = read_(*shape, text, told);
        if (told.empty()) {
            const StepTaken taken = preview_.show(*shape, step, workingAltitude(*shape));
            told = taken.reason.empty() ? taken.done : taken.reason;
        }
    }
    understood_.setValue(told + "\t" + (told.empty() ? " " : told));
}

void NextRow::forget() {
    refused_.forget();
    field_.setValue(std::string());
    refresh();
}

int NextRow::onCmdTyping(PIObject*, void*) {
    refused_.forget();
    refresh();
    return 1;
}

int NextRow::onCmdEntered(PIObject*, void*) {
    const std::string text = field_.getValueText();
    preview_.hide();
    if (UTILS::trimmed(text).empty()) {
        if (isLine_) target_.finish();
        return 1;
    }
    Shape* const shape = target_.shape();
    std::string reason = "no shape is drawn";
    StepTaken taken;
    if (shape) {
        const UTILS::TypedStep step = read_(*shape, text, reason);
        if (reason.empty()) {
            target_.begin();
            taken = takeStep(*shape, step, workingAltitude(*shape));
            reason = taken.reason;
            shape->fillGui();
        }
        if (const auto* const places = std::get_if<UTILS::TypedPlaces>(&step);
            reason.empty() && places && places->wrappedLon)
            halNotify::notify(halNotify::Warning)
                << "\"" << UTILS::excerpt(text) << "\": its longitude is beyond 180 degrees, and taken as "
                << shape->preferences().unitsProvider()->formatLongitude(*places->wrappedLon);
    }
    if (!reason.empty()) {
        const bool again = refused_.is(text);
        if (!again && refused_.refuse(text, "Next: \"" + UTILS::excerpt(text) + "\": " + reason)) return 1;
        if (again && isLine_) return 1;
    }
    refused_.forget();
    field_.setValue(std::string());
    understood_.setValue("\t ");
    if (reason.empty()) target_.taken();
    return 1;
}

}  // namespace OverlayEditor
