#pragma once

#include "model/MouseTool.h"

namespace OverlayEditor {

/// Ignores everything and consumes nothing.
class NullMouseTool final : public MouseTool {
  public:
    int handleMouseEvent(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    void preDrawOnRefresh(int, int) override {}
    void activate() override {}
    void deactivate() override {}
    bool isActive() const override { return false; }
    void setShowPoints(bool) override {}
    void setDrawDoneCallback(FunctorTwoParams__*) override {}
    int leftPress_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int leftRelease_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int rightPress_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int mouseWheel_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int mouseMotion_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
};

}  // namespace OverlayEditor
