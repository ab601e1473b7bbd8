#include "plugin/RightClickObserver.h"

#include "pi/Guard.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

constexpr std::int32_t kMenuPosition = 400;
constexpr std::int32_t kMenuEnabled = 1;

}  // namespace

// Once it is made its destructor runs, whichever of the registrations fails.
OverlayEditorPlugin::RightClickObserver::RightClickObserver(OverlayEditorPlugin& plugin)
    : RightClickObserver(&plugin) {
    PIHALVIS::registerContextMenuCallback(this);
    PIHALVIS::registerZELObserver(this);
}

OverlayEditorPlugin::RightClickObserver::~RightClickObserver() {
    guardedEnd([this] { PIHALVIS::removeContextMenuCallback(this); });
    guardedEnd([this] { PIHALVIS::removeZELObserver(this); });
}

void OverlayEditorPlugin::RightClickObserver::menuRequested(const std::string& listName,
                                                            const PIHALVIS::ContextMenuData* data,
                                                            void* menu) {
    // The menu cannot wait. One that opens while overlays are sent to the editor offers nothing.
    if (EntryScope::isNested()) return;
    guardedEntry("menuRequested", [&] {
        if (listName != PIHALVIS::CLICKED_GUI_ZEL_LIST_NAME) return;
        const auto* const clicked = dynamic_cast<const PIHALVIS::ZelMenuData*>(data);
        if (!clicked) return;
        overlays_ = clicked->overlays;
        if (overlays_.empty()) return;
        menuCallback_ = plugin_->callbacks_.make(&OverlayEditorPlugin::onCmdLoadHalvisZels);
        PIHALVIS::addContextMenuItem(menu, "Send to Overlay Editor", menuCallback_, kMenuPosition,
                                     kMenuEnabled);
    });
}

void OverlayEditorPlugin::RightClickObserver::removedZEL(void* overlay) {
    std::erase(overlays_, overlay);
}

}  // namespace OverlayEditor
