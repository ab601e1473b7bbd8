// The wrappers: what each service call carries, and what a wrapper makes of the host's answer.
#include <gmock/gmock.h>

#include "pi/PICommon.h"
#include "pi/PIData.h"
#include "pi/PIHALVIS.h"
#include "pi/PIWidgets.h"
#include "support/FakeHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Id = PIServerFunctions_t;

class WrapperTest : public testing::Test {
  protected:
    WrapperTest() {
        host.onCall = [this](Id service) { calls.push_back(static_cast<int>(service)); };
    }
    FakeHost host;
    std::vector<int> calls;
};

TEST(RecordTest, TheHeaderIsNineFixedWords) {
    const PI_DATA_POINTER_AND_INT record(nullptr, 4);
    EXPECT_THAT(std::vector<std::uint32_t>(record.header(), record.header() + 9),
                ElementsAre(0u, 0u, 2u, 2u, 2u, 2u, 2u, 2u, 0u));
}

TEST_F(WrapperTest, AHostThatRefusesLeavesNeutralWrappers) {
    host.refuseAll = true;
    PIGUI::PIList list(nullptr, PIGUI::PIListSingle);
    PIGUI::PIOptionMenu menu(nullptr, "", nullptr);
    PIGUI::PITextField field(nullptr, PIGUI::PITextFieldNormal, nullptr);
    EXPECT_EQ(calls.size(), 3u);
    field.setValue("text");
    EXPECT_EQ(list.appendItem("item"), -1);
    EXPECT_EQ(list.getSelectedItem(), -1);
    EXPECT_EQ(list.getNumItems(), 0);
    EXPECT_EQ(list.getItemData(0), nullptr);
    EXPECT_EQ(menu.getOptionText(0) + field.getValueText(), "");
    EXPECT_EQ(field.getValueDouble(), 0.0);
    EXPECT_EQ(calls.size(), 3u) << "nothing is called on a null handle";

    double latitude = 5.0;
    EXPECT_NE(
        PIHALVIS::getMouseCursorLLA(1, 2, &latitude, nullptr, nullptr, PIData::PIVerticalDatum_t::WGS84), 0);
    EXPECT_EQ(latitude, 5.0);
    PIData::PIPlatformHeader header{3, "kept", ""};
    EXPECT_NE(PIData::getHeader(3, header), 0);
    EXPECT_EQ(header.name, "kept");
    EXPECT_EQ(PIData::createPlatform(header, {}, PIData::CoordReferenceFrame::Geodetic), 0u);
}

TEST_F(WrapperTest, AHostThatSaysYesButGivesNothingIsNotBelieved) {
    host.answer = [](Id, void*) { return std::optional<PIServiceResult>(1); };
    double latitude = 5.0;
    EXPECT_NE(PIHALVIS::getEyePosition(&latitude, nullptr, nullptr), 0);
    EXPECT_EQ(latitude, 5.0);
    EXPECT_EQ(PIHALVIS::loadZELFile("/a.zel", 0), nullptr);
    EXPECT_EQ(PIGUI::PIRegistry::getValue("Key"), "");
}

TEST_F(WrapperTest, AWidgetIsCreatedBoundAndDestroyed) {
    {
        PIGUI::PICanvas canvas(nullptr);
        PIGUI::PIButton button(&canvas, "Save\tSave it", nullptr);
        button.setEnabled(false);
        button.setCheck(true);
        const FakeHost::Widget& widget = host.widgets.at(button.handle());
        EXPECT_EQ(widget.parent, canvas.handle());
        EXPECT_EQ(widget.caption, "Save\tSave it");
        EXPECT_EQ(widget.wrapper, static_cast<PIObject*>(&button));
        EXPECT_FALSE(widget.enabled);
        EXPECT_TRUE(widget.checked);
        button.setEnabled(true);
        EXPECT_TRUE(widget.enabled);
        host.answer = [this, handle = button.handle()](Id, void*) -> std::optional<PIServiceResult> {
            EXPECT_EQ(host.widgets.size(), host.widgets.count(handle) + 1) << "the child goes first";
            return std::nullopt;
        };
    }
    EXPECT_THAT(host.widgets, IsEmpty());
    EXPECT_THAT(calls, ElementsAre(901, 100, 118, 100, 144, 145, 144, 100, 100));
}

TEST_F(WrapperTest, OnlyWhatDiffersFromWhatIsKnownIsSent) {
    const auto sends = [&](const auto& act) {
        const auto sent = [&] {
            return host.calls[Id::WindowSetString] + host.calls[Id::WindowCheck] +
                   host.calls[Id::WindowEnable];
        };
        const int before = sent();
        act();
        return sent() - before;
    };
    PIGUI::PITextField field(nullptr, PIGUI::PITextFieldNormal, nullptr);
    std::string& shown = host.widgets.at(field.handle()).text;
    const auto set = [&](const char* text) { return sends([&] { field.setValue(std::string(text)); }); };
    EXPECT_EQ(set(""), 1) << "what a new field shows is not known";
    EXPECT_EQ(set("5"), 1);
    EXPECT_EQ(set("5"), 0);
    shown = "7 w";
    EXPECT_EQ(set("5"), 0) << "somebody is typing";
    field.getValueText();
    EXPECT_EQ(set("5"), 1) << "what was typed was handed over, and refused";
    shown = "7 w";
    field.updateValue("5");
    EXPECT_EQ(shown, "5");
    host.refuseAll = true;
    EXPECT_EQ(set("6"), 1);
    field.getValueText();
    host.refuseAll = false;
    EXPECT_EQ(set("6"), 1);

    // The first uncheck makes it a toggle button; a click may change it although nobody reads it.
    PIGUI::PIButton toggle(nullptr, "Caption", nullptr);
    EXPECT_EQ(sends([&] { toggle.uncheck(); }), 1);
    EXPECT_EQ(sends([&] { toggle.uncheck(); }), 0);
    host.widgets.at(toggle.handle()).checked = true;
    EXPECT_EQ(sends([&] { toggle.uncheck(); }), 1);
    EXPECT_EQ(sends([&] { toggle.setValue(std::string("Caption")); }), 0);
    EXPECT_EQ(sends([&] { toggle.enable(); }), 0) << "a new widget is enabled";
    EXPECT_EQ(sends([&] { toggle.disable(); }), 1);
    EXPECT_EQ(sends([&] { toggle.disable(); }), 0);
}

TEST_F(WrapperTest, ArgumentsAndResultsStandInTheirOrder) {
    host.pixelToLla = [](int x, int y) { return halCore::Vec3(0.01 * x, 0.01 * y, 0.3); };
    double latitude = 0, longitude = 0, altitude = 0;
    EXPECT_EQ(PIHALVIS::getMouseCursorLLA(10, 20, &latitude, &longitude, &altitude,
                                          PIData::PIVerticalDatum_t::WGS84),
              0);
    EXPECT_EQ((std::vector{latitude, longitude, altitude}), (std::vector{0.1, 0.2, 0.3}));
    void* const overlay = PIHALVIS::loadZELFile("/a.zel", 77);
    ASSERT_NE(overlay, nullptr);
    EXPECT_EQ(host.overlays[overlay].path, "/a.zel");
    EXPECT_EQ(host.overlays[overlay].platform, 77u);
    host.platforms[5] = host.platforms[0xFFFFFFFFFFFFFFFFu] = {};
    EXPECT_THAT(PIData::getPlatformList(), ElementsAre(5u, 0xFFFFFFFFFFFFFFFFu));
    host.settings["Precision"] = "5";
    EXPECT_EQ(PIGUI::PIRegistry::getValue("Precision"), "5");
    EXPECT_EQ(PIGUI::PIRegistry::getValue("Other"), "");
}

TEST_F(WrapperTest, ATimeoutIsOneAtATime) {
    {
        PICommon::Timeout timeout;
        PICommon::createTimeout(timeout, 1000, nullptr);
        const void* const first = host.timeouts.begin()->first;
        PICommon::createTimeout(timeout, 1000, nullptr);
        ASSERT_EQ(host.timeouts.size(), 1u);
        EXPECT_NE(host.timeouts.begin()->first, first);
        host.timeouts.clear();
        timeout.fired();
        PICommon::createTimeout(timeout, 1000, nullptr);
        EXPECT_EQ(host.calls[Id::Timeout], 4) << "what has fired is not cancelled";
    }
    EXPECT_THAT(host.timeouts, IsEmpty());
}

TEST_F(WrapperTest, ADialogKnowsThatItIsShownAlsoWhenUsedAsAWindow) {
    PIGUI::PIDialogBox box(nullptr, "Title");
    PIGUI::PIWindow& window = box;
    EXPECT_FALSE(window.shown());
    window.show();
    EXPECT_EQ(host.calls[Id::DialogShow], 1);
    EXPECT_TRUE(box.shown());
    window.hide();
    EXPECT_FALSE(box.shown());
}

}  // namespace
