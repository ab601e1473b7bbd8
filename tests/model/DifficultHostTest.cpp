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

/// Everything that the model can do, for one kind of shape.
class Work {
  public:
    explicit Work(int kind) : kind_(kind) { reference_.setReferenceLla({0.3, 0.4, 5.0}, 7); }

    void run() {
        for (int i = 0; i < 2; ++i) add();
        change();
        overlay_.setAttachedPlatformId(7, &reference_, true);
        change();
        const std::string text = overlay_.text();
        auto loaded = loadOverlayText(text, "text", preferences_, &reference_, overlay_.attachedPlatformId());
        for (auto& shape : loaded.shapes) overlay_.addShape(shape.release());
        overlay_.setActive(false);
        overlay_.setAttachedPlatformId(0, nullptr, false);
        overlay_.setActive(true);
        overlay_.setShown(false);
        overlay_.setShown(true);
        Vec3 ground;
        Utils::getDefaultLla(ground);
        for (Shape* shape : overlay_.shapes()) with<BaseLineShape>(shape, [](auto& line) { line.clear(); });
        while (overlay_.shapes().size() > 1) {
            Shape* const shape = overlay_.shapes().back();
            overlay_.removeShape(shape);
            delete shape;
        }
        add();
        overlay_.clearShapes(false);
        add();
    }

  private:
    void add() {
        const Vec3 about(0.3, 0.4, 0.0);
        overlay_.addShape(random_.make(kind_, &about).release());
    }
    template <typename Kind, typename Step>
    void with(Shape* shape, const Step& step) {
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
        for (Shape* shape : overlay_.shapes()) {
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
    Overlay overlay_;
    Preferences preferences_;
    PointConverter reference_;
    RandomShapes random_{preferences_};
};

class DifficultHostTest : public ::testing::Test {
  protected:
    DifficultHostTest() {
        halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
    }
    ~DifficultHostTest() override { halNotify::setNotifyHandler({}); }

    static void workWithEveryKind() {
        for (int kind = 0; kind < RandomShapes::kKinds; ++kind) Work(kind).run();
    }
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

}  // namespace
