#pragma once

#include <memory>

#include "model/MouseTool.h"
#include "tools/HintSource.h"
#include "tools/PlatformMouseListener.h"

namespace OverlayEditor {

/// Picks a platform in the view: press and release over the same one. Own it through MouseToolPtr when it
/// can be the manager's current tool.
class PlatformMouseTool final : public MouseTool, public HintSource {
  public:
    PlatformMouseTool() = default;
    /// The listener is not told.
    ~PlatformMouseTool() override;
    PlatformMouseTool(const PlatformMouseTool&) = delete;
    PlatformMouseTool& operator=(const PlatformMouseTool&) = delete;

    /// The platform picked last, 0 for none.
    unsigned long selectedPlatform() const { return selectedPlatform_; }
    void clearSelected() { selectedPlatform_ = 0; }
    /// Replaces the listener; null for none.
    void setListener(std::shared_ptr<PlatformMouseListener> listener) { listener_ = std::move(listener); }

    int handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    void preDrawOnRefresh(int, int) override {}
    void activate() override;
    void deactivate() override;
    bool isActive() const override { return active_; }
    void setShowPoints(bool) override {}
    void setDrawDoneCallback(FunctorTwoParams__*) override {}
    int leftPress_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int leftRelease_(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    int rightPress_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int mouseWheel_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int mouseMotion_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    std::string hint() const override { return active_ ? "Click the platform to pick" : ""; }

  private:
    bool active_ = false;
    unsigned long pressedPlatform_ = 0;
    unsigned long selectedPlatform_ = 0;
    std::shared_ptr<PlatformMouseListener> listener_;
};

}  // namespace OverlayEditor
