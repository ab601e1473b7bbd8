// The wrappers: what each service call carries, and what a wrapper makes of the host's answer.
#include <functional>
#include <sstream>

#include <gmock/gmock.h>

#include "pi/PIBase.h"
#include "pi/PICommon.h"
#include "pi/PIData.h"
#include "pi/PIDataRecords.h"
#include "pi/PIHALVIS.h"
#include "pi/PIWidgets.h"

namespace {

using testing::ElementsAre;
using Id = PIServerFunctions_t;

/// Answers each call with a function that the test sets, and keeps what was called.
class ScriptedHost final : public PIServiceTable {
  public:
    std::int32_t hostBuildNumber() override { return 13000; }
    PIServiceResult handle(void*, Id service, void* args) override {
        if (service == Id::IdentityOverride) return 1;
        calls.push_back(static_cast<int>(service));
        return answer ? answer(service, args) : 0;
    }
    std::vector<int> calls;
    std::function<PIServiceResult(Id, void*)> answer;
};

class WrapperTest : public testing::Test {
  protected:
    WrapperTest() { g_FunctionMap = &host; }
    ~WrapperTest() override { g_FunctionMap = nullptr; }

    /// The host creates every widget, with handles 1, 2, 3 ...
    void createWidgets() {
        host.answer = [this](Id service, void*) -> PIServiceResult {
            const int number = static_cast<int>(service);
            const bool creates = (number >= 105 && number <= 126 && service != Id::DialogShow) ||
                                 (number >= 901 && number <= 907);
            return creates ? ++handles : 1;
        };
    }

    ScriptedHost host;
    PIServiceResult handles = 0;
};

TEST(RecordTest, TheHeaderIsNineFixedWords) {
    const PI_DATA_POINTER_AND_INT record(nullptr, 4);
    EXPECT_THAT(std::vector<std::uint32_t>(record.header(), record.header() + 9),
                ElementsAre(0u, 0u, 2u, 2u, 2u, 2u, 2u, 2u, 0u));
}

TEST_F(WrapperTest, AHostThatRefusesLeavesNeutralWrappers) {
    PIGUI::PIDialogBox box(nullptr, "Title");
    PIGUI::PIList list(&box, PIGUI::PIListSingle);
    PIGUI::PIOptionMenu menu(&box, "", nullptr);
    PIGUI::PITextField field(&box, PIGUI::PITextFieldNormal, nullptr);
    PIGUI::PICheckButton button(&box, "Check", nullptr);
    EXPECT_EQ(host.calls.size(), 5u);  // the five creations
    box.show();
    list.clearItems();
    menu.appendOption(0, "x");
    field.setValue("text");
    field.check();
    EXPECT_FALSE(box.shown());
    EXPECT_EQ(list.appendItem("item"), -1);
    EXPECT_EQ(list.getSelectedItem(), -1);
    EXPECT_EQ(list.getNumItems(), 0);
    EXPECT_EQ(list.getItemData(0), nullptr);
    EXPECT_EQ(menu.getOptionText(0), "");
    EXPECT_EQ(field.getValueText(), "");
    EXPECT_EQ(field.getValueDouble(), 0.0);
    EXPECT_EQ(field.getValueInt(), 0);
    EXPECT_FALSE(button.isChecked());
    EXPECT_EQ(host.calls.size(), 5u);  // nothing is called on a null handle

    double latitude = 5.0;
    EXPECT_NE(PIHALVIS::getEyePosition(&latitude, nullptr, nullptr), 0);
    EXPECT_NE(
        PIHALVIS::getMouseCursorLLA(1, 2, &latitude, nullptr, nullptr, PIData::PIVerticalDatum_t::WGS84), 0);
    EXPECT_EQ(latitude, 5.0);
    std::istringstream text("start");
    EXPECT_EQ(PIHALVIS::loadZELStream(text, 0), nullptr);
    EXPECT_EQ(PIHALVIS::getZELFiles().size(), 0u);
    EXPECT_EQ(PIData::getPlatformList().size(), 0u);
    PIData::PIPlatformHeader header{3, "kept", ""};
    EXPECT_NE(PIData::getHeader(3, header), 0);
    EXPECT_EQ(header.name, "kept");
    EXPECT_EQ(PIData::createPlatform(header, {}, PIData::CoordReferenceFrame::Geodetic), 0u);
    EXPECT_EQ(PIGUI::PIRegistry::getValue("Key"), "");
    EXPECT_EQ(PICommon::showFileLoadDialog({}), "");
}

TEST_F(WrapperTest, AWidgetIsCreatedBoundAndDestroyed) {
    createWidgets();
    std::vector<std::pair<void*, void*>> bindings;
    const auto creating = host.answer;
    std::string title;
    host.answer = [&](Id service, void* args) -> PIServiceResult {
        if (service == Id::BindWidget) {
            const auto& record = *static_cast<PI_DATA_POINTER_AND_POINTER*>(args);
            bindings.emplace_back(record.pointer, record.second);
        }
        if (service == Id::CreateButton) {
            const auto& record = *static_cast<PI_DATA_POINTER_STRING_AND_FUNCTION*>(args);
            EXPECT_EQ(record.pointer, reinterpret_cast<void*>(1));
            title = record.text;
        }
        return creating(service, args);
    };
    {
        PIGUI::PICanvas canvas(nullptr);
        PIGUI::PIButton button(&canvas, "Save\tSave it", nullptr);
        EXPECT_EQ(title, "Save\tSave it");
        ASSERT_EQ(bindings.size(), 2u);
        EXPECT_EQ(bindings[1].first, button.handle());
        EXPECT_EQ(bindings[1].second, static_cast<PIObject*>(&button));
        button.setEnabled(false);
        button.setCheck(true);
    }
    ASSERT_EQ(bindings.size(), 4u);  // the child goes before its parent
    EXPECT_EQ(bindings[2], std::make_pair(reinterpret_cast<void*>(2), static_cast<void*>(nullptr)));
    EXPECT_EQ(bindings[3], std::make_pair(reinterpret_cast<void*>(1), static_cast<void*>(nullptr)));
    EXPECT_THAT(host.calls, ElementsAre(901, 100, 118, 100, 144, 145, 100, 100));
}

TEST_F(WrapperTest, OnlyWhatDiffersFromWhatIsKnownIsSent) {
    std::string shown;
    bool checked = false, refuses = false;
    int sent = 0;
    host.answer = [&](Id service, void* args) -> PIServiceResult {
        sent += service == Id::WindowSetString || service == Id::WindowCheck || service == Id::WindowEnable;
        if (refuses) return 0;
        if (service == Id::WindowSetString) shown = static_cast<PI_DATA_POINTER_AND_STRING*>(args)->text;
        if (service == Id::WindowCheck) checked = static_cast<PI_DATA_POINTER_AND_BOOL*>(args)->flag;
        if (service == Id::WidgetValue) {
            auto& record = *static_cast<PI_DATA_CATCHALL*>(args);
            record.strings.push_back(shown);
            record.integers.push_back(checked);
        }
        return 1;
    };
    PIGUI::PITextField field(nullptr, PIGUI::PITextFieldNormal, nullptr);
    const auto sends = [&](const auto& act) {
        const int before = sent;
        act();
        return sent - before;
    };
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
    refuses = true;
    EXPECT_EQ(set("6"), 1);
    field.getValueText();
    refuses = false;
    EXPECT_EQ(set("6"), 1);

    // The first uncheck makes it a toggle button; a click may change it although nobody reads it.
    PIGUI::PIButton toggle(nullptr, "Caption", nullptr);
    EXPECT_EQ(sends([&] { toggle.uncheck(); }), 1);
    EXPECT_EQ(sends([&] { toggle.uncheck(); }), 0);
    checked = true;
    EXPECT_EQ(sends([&] { toggle.uncheck(); }), 1);
    EXPECT_EQ(sends([&] { toggle.setValue(std::string("Caption")); }), 0);
    EXPECT_EQ(sends([&] { toggle.enable(); }), 0) << "a new widget is enabled";
    EXPECT_EQ(sends([&] { toggle.disable(); }), 1);
    EXPECT_EQ(sends([&] { toggle.disable(); }), 0);
}

TEST_F(WrapperTest, ResultsStandBehindTheArguments) {
    host.answer = [](Id service, void* args) -> PIServiceResult {
        auto& record = *static_cast<PI_DATA_CATCHALL*>(args);
        if (service == Id::Cursor) {
            EXPECT_THAT(record.integers, ElementsAre(0, 10, 20, 1));
            record.doubles = {0.1, 0.2, 0.3};
        } else if (service == Id::OverlayFiles) {
            EXPECT_THAT(record.integers, ElementsAre(0, 77, 1));
            EXPECT_THAT(record.strings, ElementsAre("/a.zel"));
            record.pointers.push_back(args);
        } else if (service == Id::GetPlatformList) {
            record.integers = {5, -1};
        }
        return 1;
    };
    double latitude = 0, longitude = 0;
    EXPECT_EQ(
        PIHALVIS::getMouseCursorLLA(10, 20, &latitude, &longitude, nullptr, PIData::PIVerticalDatum_t::WGS84),
        0);
    EXPECT_EQ(latitude, 0.1);
    EXPECT_EQ(longitude, 0.2);
    EXPECT_NE(PIHALVIS::loadZELFile("/a.zel", 77), nullptr);
    EXPECT_THAT(PIData::getPlatformList(), ElementsAre(5u, 0xFFFFFFFFFFFFFFFFu));
}

TEST_F(WrapperTest, AHostThatSaysYesButGivesNothingIsNotBelieved) {
    host.answer = [](Id, void*) -> PIServiceResult { return 1; };
    double latitude = 5.0;
    EXPECT_NE(PIHALVIS::getEyePosition(&latitude, nullptr, nullptr), 0);
    EXPECT_EQ(latitude, 5.0);
    EXPECT_EQ(PIHALVIS::loadZELFile("/a.zel", 0), nullptr);
}

TEST_F(WrapperTest, ATimeoutIsOneAtATime) {
    PIServiceResult created = 0;
    std::vector<void*> cancelled;
    host.answer = [&](Id, void* args) -> PIServiceResult {
        auto& record = *static_cast<PI_DATA_CATCHALL*>(args);
        if (record.integers.at(0) == 0)
            record.pointers.push_back(reinterpret_cast<void*>(++created));
        else
            cancelled.push_back(record.pointers.at(0));
        return 1;
    };
    {
        PICommon::Timeout timeout;
        PICommon::createTimeout(timeout, 1000, nullptr);
        PICommon::createTimeout(timeout, 1000, nullptr);
        EXPECT_THAT(cancelled, ElementsAre(reinterpret_cast<void*>(1)));
        timeout.fired();
        PICommon::createTimeout(timeout, 1000, nullptr);
    }
    EXPECT_THAT(cancelled, ElementsAre(reinterpret_cast<void*>(1), reinterpret_cast<void*>(3)));
}

TEST_F(WrapperTest, ADialogKnowsThatItIsShownAlsoWhenUsedAsAWindow) {
    createWidgets();
    PIGUI::PIDialogBox box(nullptr, "Title");
    PIGUI::PIWindow& window = box;
    EXPECT_FALSE(window.shown());
    window.show();
    EXPECT_EQ(host.calls.back(), 115);
    EXPECT_TRUE(box.shown());
    window.hide();
    EXPECT_FALSE(box.shown());
}

TEST_F(WrapperTest, AServiceIsPublishedOnceAndTakenBack) {
    std::vector<std::int64_t> selectors;
    host.answer = [&](Id, void* args) -> PIServiceResult {
        selectors.push_back(static_cast<PI_DATA_CATCHALL*>(args)->integers.at(0));
        return 1;
    };
    {
        PICommon::BasicService service("org.example/Service", this);
        EXPECT_TRUE(service.registerSelf());
        EXPECT_TRUE(service.registerSelf());
    }
    EXPECT_THAT(selectors, ElementsAre(0, 1));
}

TEST_F(WrapperTest, SettingsComeBackInTheKeysPlace) {
    host.answer = [](Id service, void* args) -> PIServiceResult {
        if (service == Id::RegistryGetValue) {
            auto& record = *static_cast<PI_DATA_POINTER_AND_STRING*>(args);
            if (record.text != "Ignored") record.text = record.text == "Precision" ? "5" : "";
        }
        return 1;
    };
    EXPECT_EQ(PIGUI::PIRegistry::getValue("Precision"), "5");
    EXPECT_EQ(PIGUI::PIRegistry::getValue("Other"), "");
    EXPECT_EQ(PIGUI::PIRegistry::getValue("Ignored"), "") << "it says yes and gives nothing";
}

}  // namespace
