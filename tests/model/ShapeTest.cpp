#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/CylinderShape.h"
#include "model/PointsContainer.h"
#include "support/FakeHost.h"

using namespace OverlayEditor;
using ::testing::HasSubstr;

namespace {

class ShapeTest : public ::testing::Test {
  protected:
    ShapeTest() {
        shape->setCenter({0.1, 0.2, 0.0});
        shape->setMajorRadius(1000.0);
    }

    FakeHost host;
    Preferences preferences;
    std::unique_ptr<CylinderShape> shape =
        std::make_unique<CylinderShape>(preferences, CylinderShape::Circle);
};

TEST_F(ShapeTest, IsInTheHostExactlyWhenShownAndActive) {
    shape->setShown(true);
    EXPECT_EQ(host.loads, 0);
    shape->setActive(true);
    EXPECT_EQ(host.overlays.size(), 1U);
    shape->setLineColor(1, 2, 3, 4);
    EXPECT_EQ(host.overlays.size(), 1U);
    EXPECT_THAT(host.lastText, HasSubstr("linecolor hex 0x04030201\n"));
    shape->setActive(false);
    EXPECT_TRUE(host.overlays.empty());
    EXPECT_TRUE(shape->shown());
    shape->setActive(true);
    EXPECT_EQ(host.overlays.size(), 1U);

    std::unique_ptr<Shape> copy(shape->clone());
    EXPECT_EQ(host.overlays.size(), 1U);
    copy->setShown(true);
    EXPECT_EQ(host.overlays.size(), 2U);
    copy = nullptr;
    EXPECT_EQ(host.overlays.size(), 1U);

    const int calls = host.loads + host.unloads;
    shape->setAnchorCenter(false);
    shape->setShowPoints(true);
    shape->setName("Other");
    EXPECT_EQ(host.loads + host.unloads, calls);

    PointConverter platform;
    platform.setReferenceLla({0.1, 0.2, 0.0}, 42);
    shape->setAttachedPlatformId(42, &platform, false);
    EXPECT_EQ(host.overlays.begin()->second.platform, 42U);
    EXPECT_THAT(host.lastText, HasSubstr("centerxyz 0 0 0\n"));
    shape->setAttachedPlatformId(0, &platform, false);
    EXPECT_EQ(host.overlays.begin()->second.platform, 0U);
    EXPECT_THAT(host.lastText, HasSubstr("centerlla "));
}

TEST_F(ShapeTest, LineWidthIsTruncated) {
    for (const auto& [set, expected] :
         {std::pair{2.9, 2}, {-1.5, -1}, {1e30, 2147483647}, {-1e30, -2147483648}}) {
        shape->setLineWidth(set);
        EXPECT_EQ(shape->lineWidth(), expected);
    }
}

TEST_F(ShapeTest, AShapeThatTheHostRefusedIsLoadedAtItsNextRefresh) {
    shape->setActive(true);
    shape->setShown(true);
    host.refuseAll = true;
    shape->setLineWidth(5);
    host.refuseAll = false;
    const int before = host.calls[PIServerFunctions_t::OverlayFiles];
    shape->setLineWidth(6);
    EXPECT_THAT(host.lastText, HasSubstr("linewidth 6"));
    EXPECT_EQ(host.calls[PIServerFunctions_t::OverlayFiles], before + 1) << "there is nothing to unload";
}

#ifdef __GXX_ABI_VERSION
/// The places of virtual functions among those of their class, as this ABI keeps them in member pointers. The
/// destructor has the places 0 and 1.
template <typename... Functions>
std::vector<std::size_t> slotsOf(Functions... functions) {
    const auto slot = [](auto function) {
        std::size_t value = 0;
        std::memcpy(&value, &function, sizeof value);
        return (value - 1) / sizeof(void*);
    };
    return {slot(functions)...};
}

std::vector<std::size_t> from2(std::size_t count) {
    std::vector<std::size_t> slots;
    for (std::size_t i = 0; i < count; ++i) slots.push_back(i + 2);
    return slots;
}

struct Filled : BaseFilledShape {
    static std::vector<std::size_t> slots() {
        using F = Filled;
        return slotsOf(&Shape::clone, &Shape::serialize, &Shape::mouseTool, &Shape::createGui,
                       &Shape::notifyPrefsUpdate, &Shape::fillGui, &Shape::deleteGui, &Shape::canAttach,
                       &Shape::name, &Shape::shown, &Shape::setAttachedPlatformId, &Shape::setName,
                       &Shape::setShown, &Shape::setActive, &Shape::boundingBox, &F::dirty_, &F::hide_,
                       &F::setLineWidth, &F::lineWidth, &F::setLineColor, &F::lineColor, &F::setLineFromGui,
                       &F::clear, &F::setFilled, &F::filled, &F::setFillColor, &F::fillColor, &F::setOutlined,
                       &F::setFillFromGui);
    }
};

TEST(Slots, StandInTheOrderThatOthersCallThemBy) {
    EXPECT_EQ(Filled::slots(), from2(29));
    using S = Serializer;
    EXPECT_EQ(slotsOf(&S::beginShape, &S::endShape, &S::setItemName, &S::addPoint, &S::addCorner,
                      &S::setCenterPoint2, &S::setMajorRadius, &S::setMinorRadius, &S::setHeight,
                      &S::setStartEndAngles, &S::setLineColor, &S::setFillColor, &S::setFilled,
                      &S::setVisible, &S::setLineWidth, &S::setPointSize, &S::setPointConverter,
                      &S::setLineStyle, &S::setFontName, &S::setTextSize),
              from2(20));
    using C = PointsContainer;
    EXPECT_EQ(slotsOf(&C::getNumPoints, &C::pointAtIndex, &C::setPointAtIndex, &C::insertPointAtIndex,
                      &C::deletePointAtIndex),
              from2(5));
}
#endif

}  // namespace
