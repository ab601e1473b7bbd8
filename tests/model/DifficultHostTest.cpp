#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/Notify.h"
#include "model/Overlay.h"
#include "model/OverlayFile.h"
#include "model/QuietServiceTable.h"
#include "model/RandomShapes.h"
#include "model/Utils.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;

namespace {

/// Everything that the model can do, for one kind of shape. What the host calls may take any shape away
/// during any step: each one asks first.
class Work {
  public:
    explicit Work(int kind) : kind_(kind) { reference_.setReferenceLla({0.3, 0.4, 5.0}, 7); }

    void run() {
        for (int i = 0; i < 2; ++i) add();
        change();
        overlay.setAttachedPlatformId(7, &reference_, true);
        change();
        const std::string text = overlay.text();
        auto loaded = loadOverlayText(text, "text", preferences_, &reference_, overlay.attachedPlatformId());
        for (auto& shape : loaded.shapes) overlay.addShape(shape.release());
        overlay.setActive(false);
        overlay.setAttachedPlatformId(0, nullptr, false);
        overlay.setActive(true);
        overlay.setShown(false);
        overlay.setShown(true);
        Vec3 ground;
        Utils::getDefaultLla(ground);
        for (Shape* shape : overlay.shapes()) with<BaseLineShape>(shape, [](auto& line) { line.clear(); });
        while (overlay.shapes().size() > 1) {
            Shape* const shape = overlay.shapes().back();
            overlay.removeShape(shape);
            delete shape;
        }
        add();
        overlay.clearShapes(false);
        add();
    }

    void add() {
        const Vec3 about(0.3, 0.4, 0.0);
        overlay.addShape(random_.make(kind_, &about).release());
    }
    void attach() { overlay.setAttachedPlatformId(overlay.attachedPlatformId() ? 0 : 7, &reference_, true); }

    Overlay overlay;

  private:
    template <typename Kind, typename Step>
    void with(Shape* shape, const Step& step) {
        if (!overlay.contains(shape)) return;
        if (auto* const kind = dynamic_cast<Kind*>(shape)) step(*kind);
    }

    void change() {
        const std::vector<std::function<void(CylinderShape&)>> circular{
            [](auto& s) { s.setMajorRadius(20.0); },
            [](auto& s) { s.setInnerRadius(30.0); },
            [](auto& s) { s.setHeight(0.0); },
            [](auto& s) { s.setStartAngle(1.0); },
            [](auto& s) { s.setEndAngle(2.0); },
            [](auto& s) { s.updatePoints(); },
            [](auto& s) {
                s.setCenter({0.3, 0.41, 6.0});
            },
            [](auto& s) {
                s.moveCenter({0.31, 0.4, 5.0});
            }};
        const std::vector<std::function<void(OrbitShape&)>> orbits{
            [](auto& s) {
                s.setCenter2({0.3, 0.42, 6.0});
            },
            [](auto& s) { s.setMinorRadius(Vec3(0.31, 0.4, 5.0)); }};
        const std::vector<std::function<void(PointsContainer&)>> lists{
            [](auto& s) {
                s.setPointAtIndex(1, {0.3, 0.4, 1.0});
            },
            [](auto& s) {
                s.insertPointAtIndex(1, {0.3, 0.45, 1.0});
            },
            [](auto& s) { s.deletePointAtIndex(0); },
            // It cannot be written: that makes a message.
            [](auto& s) {
                s.setPointAtIndex(0, {std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0});
            },
            [](auto& s) {
                s.setPointAtIndex(0, {0.29, 0.4, 0.0});
            }};
        const std::vector<std::function<void(RectangleShape&)>> rectangles{
            [](auto& s) {
                s.setFirstCorner({0.3, 0.4, 7.0});
            },
            [](auto& s) {
                s.setLastCorner({0.32, 0.42, 8.0});
            },
            [](auto& s) {
                s.setFromCenter({0.3, 0.4, 7.0}, 100.0, 50.0);
            }};
        const std::vector<std::function<void(AnnotationShape&)>> labels{
            [](auto& s) {
                s.mouseSetPosition({0.3, 0.4, 7.0});
            },
            [](auto& s) { s.setName(""); }, [](auto& s) { s.setName("Label"); }};
        const std::vector<std::function<void(BaseFilledShape&)>> filled{
            [](auto& s) { s.setLineWidth(3); }, [](auto& s) { s.setLineColor(1, 2, 3, 4); },
            [](auto& s) { s.setFilled(!s.filled()); }, [](auto& s) { s.setFillColor(1, 2, 3, 4); },
            [](auto& s) { s.setOutlined(false); }};
        const std::vector<std::function<void(Shape&)>> all{
            [](auto& s) { s.setName("X"); },
            [](auto& s) { s.setShown(false); },
            [](auto& s) { s.setShown(true); },
            [](auto& s) { s.setActive(false); },
            [](auto& s) { s.setActive(true); },
            [](auto& s) { s.setShowPoints(!s.showPoints()); },
            [](auto& s) { s.setAnchorCenter(!s.anchorCenter()); },
            [](auto& s) {
                const std::unique_ptr<Shape> copy(s.clone());
                copy->setActive(true);
                copy->fillGui();
            }};
        for (Shape* shape : overlay.shapes()) {
            for (const auto& step : circular) with<CylinderShape>(shape, step);
            for (const auto& step : orbits) with<OrbitShape>(shape, step);
            for (const auto& step : lists) with<PointsContainer>(shape, step);
            for (const auto& step : rectangles) with<RectangleShape>(shape, step);
            for (const auto& step : labels) with<AnnotationShape>(shape, step);
            for (const auto& step : filled) with<BaseFilledShape>(shape, step);
            for (const auto& step : all) with<Shape>(shape, step);
        }
    }

    const int kind_;
    Preferences preferences_;
    PointConverter reference_;
    RandomShapes random_{preferences_};
};

class DifficultHostTest : public ::testing::Test {
  protected:
    DifficultHostTest() {
        // Messages go to the host, as the plug-in has it.
        halNotify::setNotifyHandler([this](halNotify::Severity, const std::string&) {
            if (onMessage) onMessage();
        });
    }
    ~DifficultHostTest() override { halNotify::setNotifyHandler({}); }

    static void workWithEveryKind() {
        for (int kind = 0; kind < RandomShapes::kKinds; ++kind) Work(kind).run();
    }

    std::function<void()> onMessage;
};

TEST_F(DifficultHostTest, RefusesEveryCall) {
    FakeHost host;
    host.refuseAll = true;
    workWithEveryKind();
    EXPECT_GT(host.calls[FakeHost::Id::OverlayFiles], 500);
}

TEST_F(DifficultHostTest, ReturnsNull) {
    FakeHost host;
    int results = 0;  // none, or null
    host.answer = [&](FakeHost::Id service, void* args) -> std::optional<PIServiceResult> {
        if (service != FakeHost::Id::OverlayFiles) return std::nullopt;
        auto& record = *static_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(args));
        EXPECT_EQ(record.integers[0], static_cast<std::int64_t>(PISelector::OverlayFiles::LoadStream))
            << "there is nothing to unload";
        for (int i = 0; i < results; ++i) record.pointers.push_back(nullptr);
        return 1;
    };
    for (; results < 2; ++results) workWithEveryKind();
}

TEST_F(DifficultHostTest, IsNotThereAtAll) {
    const QuietServiceTable quiet;
    workWithEveryKind();
}

TEST_F(DifficultHostTest, CallsBackDuringOneCall) {
    FakeHost host;
    Work* work = nullptr;
    const std::vector<std::function<void()>> deeds{[&] { delete work->overlay.shapes().front(); },
                                                   [&] { delete work->overlay.shapes().back(); },
                                                   [&] { work->overlay.clearShapes(false); },
                                                   [&] {
                                                       Shape* const shape = work->overlay.shapes().front();
                                                       work->overlay.removeShape(shape);
                                                       delete shape;
                                                   },
                                                   [&] { work->overlay.shapes().back()->setName("Y"); },
                                                   [&] { work->overlay.setShown(false); },
                                                   [&] { work->overlay.setActive(false); },
                                                   [&] { work->attach(); },
                                                   [&] { work->add(); }};
    const int step = std::getenv("CAMPAIGN_ROUNDS") ? 1 : 13;
    int calls = 0;
    int at = 0;
    std::size_t deed = 0;
    onMessage = [&] {
        if (work && ++calls == at && !work->overlay.shapes().empty()) deeds[deed]();
    };
    host.onCall = [&](FakeHost::Id) { onMessage(); };
    for (int kind = 0; kind < RandomShapes::kKinds; ++kind)
        for (deed = 0; deed < deeds.size() && !HasFailure(); ++deed)
            for (at = static_cast<int>(deed), calls = at; at <= calls && !HasFailure(); at += step) {
                SCOPED_TRACE(testing::Message() << "kind " << kind << ", deed " << deed << ", call " << at);
                calls = 0;
                Work working(kind);
                work = &working;
                working.run();
                EXPECT_EQ(host.overlays.size(), 1U);
                work = nullptr;
            }
}

}  // namespace
