#include "gui/NumberRow.h"

#include <utility>

#include "common/Notify.h"
#include "gui/CallChange.h"
#include "gui/Captions.h"

namespace OverlayEditor {

NumberRow::NumberRow(PIGUI::PICanvas& table, const std::string& caption, const std::string& unit, int least,
                     PanelChange change)
    : change_(std::move(change)),
      name_(captionName(caption)),
      least_(least),
      caption_(&table, caption),
      field_(&table, PIGUI::PISpinnerNormal, callbacks_.make(&NumberRow::onCmdEdit)),
      unit_(&table, unit) {}

void NumberRow::setValue(int value) {
    value_ = value;
    field_.setValue(value);
}

int NumberRow::onCmdEdit(PIObject*, void*) {
    const int typed = field_.getValueInt();
    if (typed < least_) {
        halNotify::notify(halNotify::Warning) << name_ << ": " << typed << " is less than " << least_;
        field_.setValue(value_);
        return 1;
    }
    value_ = typed;
    call(change_);
    return 1;
}

}  // namespace OverlayEditor
