#include "plugin/RightClickObserver.h"

#include "pi/Guard.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

constexpr std::int32_t kMenuPosition = 400;
constexpr std::int32_t kMenuEnabled = 1;

}  // namespace

void OverlayEditorPlugin::RightClickObserver::menuRequested(const std::string& listName,
                                                            const PIHALVIS::ContextMenuData* data,
                                                            void* menu) {
    guarded("menuRequested", 0, [&] {
        if (listName != PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME) return 0;
        const auto* const clicked = dynamic_cast<const PIHALVIS::ZelMenuData*>(data);
        if (!clicked) return 0;
        overlays_ = clicked->overlays;
        if (overlays_.empty()) return 0;
        menuCallback_ = plugin_.callbacks_.make(&OverlayEditorPlugin::onCmdLoadHalvisZels);
        PIHALVIS::addContextMenuItem(menu, "Send to Overlay Editor", menuCallback_, kMenuPosition,
                                     kMenuEnabled);
        return 1;
    });
}

}  // namespace OverlayEditor
