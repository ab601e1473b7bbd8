#pragma once

#include <vector>

#include "plugin/OverlayEditorPlugin.h"

namespace OverlayEditor {

/// Offers "Send to Overlay Editor" in the context menu of the host's overlay list.
class OverlayEditorPlugin::RightClickObserver final : public PIHALVIS::ContextMenuCallbackV3,
                                                      public PIHALVIS::ZELEventObserver {
  public:
    /// Registers itself with the host until it is destroyed.
    explicit RightClickObserver(OverlayEditorPlugin& plugin);
    ~RightClickObserver() override;
    RightClickObserver(const RightClickObserver&) = delete;
    RightClickObserver& operator=(const RightClickObserver&) = delete;

    /// Each request makes a callback of its own, which lives until clean-up.
    void menuRequested(const std::string& listName, const PIHALVIS::ContextMenuData* data,
                       void* menu) override;
    void addedZEL(void*) override {}
    /// Noted at once: the running entry may be about to send it to the editor.
    void removedZEL(void* overlay) override;
    /// The overlays that were offered last and that the host still has.
    const std::vector<void*>& overlays() const { return overlays_; }

  private:
    explicit RightClickObserver(OverlayEditorPlugin* plugin) : plugin_(plugin) {}

    OverlayEditorPlugin* plugin_;
    std::vector<void*> overlays_;
    FunctorTwoParams__* menuCallback_ = nullptr;
};

}  // namespace OverlayEditor
