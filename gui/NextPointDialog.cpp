#include "gui/NextPointDialog.h"

#include <utility>

namespace OverlayEditor {

NextPointDialog::NextPointDialog(NextTarget target)
    : box_(nullptr, "Next Point"), table_(&box_, 2), row_(&table_, std::move(target)) {
    constexpr std::int32_t letters = 60;
    table_.setRoom(letters, 2);
}

void NextPointDialog::show() {
    row_.forget();
    box_.show();
}

void NextPointDialog::hide() {
    row_.forget();
    box_.hide();
}

}  // namespace OverlayEditor
