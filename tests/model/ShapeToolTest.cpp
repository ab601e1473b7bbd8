#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "format/SerializeToZel.h"
#include "model/Overlay.h"
#include "model/PointsTool.h"
#include "model/RandomShapes.h"
#include "support/FakeHost.h"

using namespace OverlayEditor;

namespace {

std::vector<std::string> log;

/// A tool that looks at all of its shape whenever it is called, and while it dies.
class WatchingTool final : public MouseTool, public PointsTool {
  public:
    explicit WatchingTool(Shape& shape) : shape_(shape) {}
    ~WatchingTool() override { look("gone"); }

    int handleMouseEvent(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    void preDrawOnRefresh(int, int) override {}
    void activate() override {}
    void deactivate() override { look("deactivate"); }
    bool isActive() const override { return false; }
    void setShowPoints(bool shown) override { look(shown ? "show points" : "hide points"); }
    void setDrawDoneCallback(FunctorTwoParams__*) override {}
    void resetPoints_() override { look("reset points"); }
    void carryPoints_() override { look("carry points"); }
    int leftPress_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int leftRelease_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int rightPress_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int mouseWheel_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }
    int mouseMotion_(PIGUI::PIMouseEventType_t, const PIGUI::PIMouseEvent&) override { return 0; }

  private:
    void look(const std::string& what) const {
        SerializeToZel zel;
        const bool whole = shape_.serialize(zel) == 0 && !shape_.name().empty();
        log.push_back(whole && shape_.boundingBox().first.x() < 2.0 ? what
                                                                    : what + ", but the shape is not whole");
    }

    Shape& shape_;
};

class WatchingTools final : public ToolMaker {
  public:
    WatchingTools() { install(this); }
    ~WatchingTools() override { install(nullptr); }

    MouseToolPtr make(const Preferences&, CylinderShape& shape) override {
        return shape.subtype() == CylinderShape::NoSubtype ? nullptr : watch(shape);
    }
    MouseToolPtr make(const Preferences&, OrbitShape& shape) override { return watch(shape); }
    MouseToolPtr make(const Preferences&, PolygonShape& shape) override { return watch(shape); }
    MouseToolPtr make(const Preferences&, RectangleShape& shape) override { return watch(shape); }
    MouseToolPtr make(const Preferences&, FreeDrawShape& shape) override { return watch(shape); }
    MouseToolPtr make(const Preferences&, AnnotationShape& shape) override { return watch(shape); }

  private:
    static MouseToolPtr watch(Shape& shape) { return MouseToolPtr(new WatchingTool(shape)); }
};

TEST(ShapeTool, FindsItsShapeWholeUntilItIsGone) {
    FakeHost host;
    const WatchingTools tools;
    Preferences preferences;
    RandomShapes random(preferences);
    for (int kind = 0; kind < RandomShapes::kKinds; ++kind) {
        Overlay overlay;
        overlay.addShape(random.make(kind, nullptr).release());
        Shape* const shape = overlay.shapes()[0];
        SCOPED_TRACE(shape->name());
        log.clear();
        shape->setShowPoints(false);
        shape->setShowPoints(false);
        shape->setShown(false);
        shape->setShown(true);
        shape->setActive(false);
        EXPECT_EQ(log, (std::vector<std::string>{"hide points", "deactivate", "deactivate"}));
        if (auto* const points = dynamic_cast<PolygonShape*>(shape)) {
            log.clear();
            points->mouseSetPointAtIndex(0, {0.1, 0.1, 0.0});
            EXPECT_TRUE(log.empty());
            points->setPointAtIndex(0, {0.1, 0.2, 0.0});
            points->insertPointAtIndex(1, {0.1, 0.1, 0.0});
            points->deletePointAtIndex(0);
            EXPECT_EQ(log, (std::vector<std::string>(3, "reset points")));
        }

        std::unique_ptr<Shape> copy(shape->clone());
        EXPECT_NE(copy->mouseTool(), shape->mouseTool());
        log.clear();
        copy = nullptr;
        overlay.clearShapes(true);
        EXPECT_EQ(log, (std::vector<std::string>{"deactivate", "gone", "deactivate", "gone"}));
    }
}

}  // namespace
