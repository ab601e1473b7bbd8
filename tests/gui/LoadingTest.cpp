#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gui/TestDialog.h"
#include "pi/PIHALVIS.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

namespace OverlayEditor {
namespace {

/// A host in which loading many shapes takes longer than anybody waits.
class LoadingDialogTest : public OverlayEditorDialogTest {
  protected:
    static constexpr int kMany = 3000;
    static constexpr const char* kCancel = "Cancel\tEnd what is under way; what is edited stays as it is";

    LoadingDialogTest() {
        write(path("two.zel"), kTwoCircles);
        std::string text = "version 2\n\n";
        for (int i = 1; i <= kMany; ++i)
            text += "start\ncircle\nrangeunits m\ncenterll 21.3 7\nradius " + std::to_string(i) +
                    "\n3d name C" + std::to_string(i) + "\nend\n\n";
        write(path("many.zel"), text);
        dialog->show();
        open("two.zel");
        EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
        host.onCall = [this](FakeHost::Id id) {
            constexpr int late = kMany / 2;
            if (id == FakeHost::Id::OverlayFiles && host.loads == late && !slept_) {
                slept_ = true;
                std::this_thread::sleep_for(std::chrono::milliseconds(1100));
            }
        };
    }
    void open(const char* file) {
        host.fileDialogAnswers = {path(file)};
        press("...");
    }
    void untilItIsLate() {
        for (int i = 0; i < 10'000 && !slept_; ++i) host.fireTimeouts();
    }
    void untilNothingIsLeft() {
        for (int i = 0; i < 10'000 && (list().items.size() < kMany || host.overlays.size() > kMany + 1); ++i)
            host.fireTimeouts();
    }

  private:
    bool slept_ = false;
};

TEST_F(LoadingDialogTest, WhatTakesLongIsToldAndComesAsAWhole) {
    open("many.zel");
    untilItIsLate();
    EXPECT_TRUE(says("many.zel: ") && says(" %"));
    EXPECT_TRUE(host.find(kCancel)->shown);
    EXPECT_EQ(form.field("File:").text, path("two.zel"));
    // What is edited meanwhile is a step by itself.
    select(0);
    form.type("Radius:", "70 m");
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));

    untilNothingIsLeft();
    EXPECT_THAT(overlay.shapes(), SizeIs(kMany));
    EXPECT_THAT(list().items, SizeIs(kMany));
    EXPECT_EQ(list().items.back(), "C" + std::to_string(kMany));
    EXPECT_EQ(form.field("File:").text, path("many.zel"));
    EXPECT_EQ(host.settings["LastOverlayEditorLoadFile"], path("many.zel"));
    EXPECT_EQ(changes(), "None");
    EXPECT_FALSE(host.find(kCancel)->shown);
    EXPECT_THAT(rescued(), SizeIs(1)) << "what was edited meanwhile";
    press("Undo");
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(static_cast<CylinderShape&>(*overlay.shapes()[0]).majorAxis(), 70.0);
}

TEST_F(LoadingDialogTest, OneThatIsEndedLeavesWhatIsEdited) {
    select(0);
    form.type("Radius:", "70 m");
    for (int i = 0; i < 9; ++i) host.fireTimeouts();
    ASSERT_THAT(rescued(), SizeIs(1));
    std::filesystem::copy(rescued()[0], path("rescued/.overlayeditor-journal-1-0"));
    press("Undo");
    dialog->offerLost();
    EXPECT_TRUE(host.find("Recover")->shown) << "as if a host had died";
    const std::size_t displayed = host.overlays.size();
    open("many.zel");
    untilItIsLate();
    EXPECT_GT(host.overlays.size(), displayed);
    EXPECT_FALSE(host.find("Recover")->shown || host.find("Discard")->shown)
        << "what they are for is not told";
    press(kCancel);
    EXPECT_THAT(messages, Contains(HasSubstr("many.zel: it was canceled. What is edited stays")));
    for (int i = 0; i < 10'000 && host.overlays.size() > displayed; ++i) host.fireTimeouts();
    EXPECT_EQ(host.overlays.size(), displayed);
    EXPECT_FALSE(host.find(kCancel)->shown);
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(changes(), "None");
}

TEST_F(LoadingDialogTest, AnotherLoadEndsIt) {
    const std::size_t displayed = host.overlays.size();
    open("many.zel");
    open("two.zel");
    EXPECT_THAT(messages, Contains(HasSubstr("many.zel: something else is loaded")));
    for (int i = 0; i < 10'000 && host.overlays.size() > displayed; ++i) host.fireTimeouts();
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(host.overlays.size(), displayed);
}

TEST_F(LoadingDialogTest, SavingOverItsFileEndsIt) {
    open("many.zel");
    host.fileDialogAnswers = {path("many.zel")};
    press("Save As...");
    EXPECT_THAT(messages, Contains(HasSubstr("many.zel: what is edited was saved in it")));
    for (int i = 0; i < 10'000 && !host.timeouts.empty(); ++i) host.fireTimeouts();
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(form.field("File:").text, path("many.zel"));
    EXPECT_EQ(changes(), "None");
}

TEST_F(LoadingDialogTest, TheEndOfItsReferencePointEndsIt) {
    const std::size_t displayed = host.overlays.size();
    std::string text;
    for (int i = 0; i < kMany; ++i)
        text += "start\ncircle\naltitudeunits m\nrangeunits m\ncenterxyz 1 2 0\nradius 9\nend\n";
    write(path("offsets.zel"), text);
    open("offsets.zel");
    for (int i = 0; i < 10'000 && host.platforms.empty(); ++i) host.fireTimeouts();
    ASSERT_THAT(host.platforms, SizeIs(1));
    const auto point = host.platforms.begin()->first;
    host.platforms.clear();
    dialog->scenarioEntityRemoved(point);
    EXPECT_THAT(messages, Contains(HasSubstr("offsets.zel: the platform on which it is shown is gone")));
    for (int i = 0; i < 10'000 && !host.timeouts.empty(); ++i) host.fireTimeouts();
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(host.overlays.size(), displayed);
}

TEST_F(LoadingDialogTest, TheEndOfTheEditorEndsIt) {
    open("many.zel");
    dialog.reset();
    overlay.clearShapes(true);
    EXPECT_TRUE(host.overlays.empty() && host.timeouts.empty());
}

}  // namespace
}  // namespace OverlayEditor
