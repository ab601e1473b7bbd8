#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gui/TestDialog.h"
#include "pi/EntryScope.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace OverlayEditor {
namespace {

TEST_F(OverlayEditorDialogTest, TellsWhatIsSaidUntilTheNextCommandAndOffersAnAnswer) {
    dialog->show();
    addCircle(1, 2, 500);
    form.type("Radius:", "45,5");
    EXPECT_TRUE(
        says("Radius: Invalid value \"45,5\": use a point for decimals: \"45.5\"; understood are \"2.5\""));
    for (int i = 0; i < 3; ++i) host.fireTimeouts();
    EXPECT_TRUE(says("45,5")) << "nobody has done anything since";
    select(0);
    EXPECT_TRUE(says("45,5")) << "the click that left the field";
    press("Center");
    EXPECT_FALSE(says("45,5"));
    form.type("Radius:", "9z");
    form.type("Radius:", "600");
    EXPECT_FALSE(says("9z")) << "it is corrected";
    form.type("Radius:", "9z");
    press("Undo");
    EXPECT_FALSE(says("9z")) << "it is taken back";
    form.type("Radius:", "9z");
    host.fileDialogAnswers = {path("nine.zel")};
    press("Save As...");
    EXPECT_TRUE(says("Saved, but not this: Radius: Invalid value \"9z\""));
    form.type("Radius:", "700");

    auto& answer = *host.find("Load Rescued");
    press("Delete All");
    EXPECT_TRUE(says("are kept in " + path("rescued")));
    ASSERT_TRUE(answer.shown);
    host.activate(answer);
    EXPECT_THAT(list().items, ElementsAre("Circle 1"));
    EXPECT_FALSE(answer.shown || says("are kept in"));

    // The worst of what a command says, and how much more there is.
    select(0);
    form.type("Name:", "Mine");
    std::filesystem::remove_all(path("rescued"));
    write(path("rescued"), "a file where the directory should be");
    write(path("box.zel"), std::string(kTwoCircles) + "latlonaltbox 4 3 1 2 0\n");
    host.fileDialogAnswers = {path("box.zel")};
    press("...");
    EXPECT_TRUE(says("could not be written to"));
    EXPECT_TRUE(says(" more)\t"));
    ASSERT_TRUE(answer.shown);
    EXPECT_THAT(answer.text, ::testing::StartsWith("Discard\t"));
    EXPECT_THAT(list().items, ElementsAre("Mine"));
    host.activate(answer);
    EXPECT_THAT(list().items, IsEmpty());
    EXPECT_TRUE(says("are given up without a rescue file, and Undo brings them back"));
    dialog->hear(halNotify::Error,
                 "No file in /" + std::string(240, 'd') + "/e f/a.zel: it is full; " + "all stays");
    EXPECT_TRUE(says("No file in .../a.zel: it is full; all stays"));
}

TEST_F(OverlayEditorDialogTest, OffersWhatIsLostUntilItIsTakenOrDiscarded) {
    std::string journal;
    {
        Overlay other;
        OverlayEditor::Document dying(preferences, other);
        {
            const EntryScope entry;
            for (const char* name : {"First", "Second"}) {
                auto* const circle = new CylinderShape(preferences, CylinderShape::Circle);
                circle->setCenter(Vec3(0.1, 0.2, 0));
                circle->setMajorRadius(500);
                circle->setName(name);
                other.addShape(circle);
            }
        }
        for (int i = 0; i < 9; ++i) host.fireTimeouts();
        journal = rescued().at(0);
        for (const char* copy : {"-0", "-1", "-2"})
            std::filesystem::copy(journal, path("rescued/.overlayeditor-journal-1") + copy);
        const std::string unreadable = path("rescued/.overlayeditor-journal-1-2");
        std::filesystem::resize_file(unreadable, 10);
        std::filesystem::last_write_time(
            unreadable, std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
    }
    // Left by one that neither saved nor rescued.
    EXPECT_TRUE(std::filesystem::remove(journal));
    const auto offered = [&] {
        return says("Not saved when the host ended on") && host.find("Recover")->shown &&
               !host.find("Load Rescued")->shown;
    };
    dialog->show();
    EXPECT_TRUE(offered() && says(" (and 1 more)\t")) << "one that cannot be read hides none";
    addCircle(1, 2, 500);
    EXPECT_TRUE(offered()) << "whatever else is done";
    form.type("Radius:", "9z");
    EXPECT_FALSE(offered()) << "what a command has to say comes first";
    form.type("Radius:", "600");
    EXPECT_TRUE(offered());
    press("Recover");
    EXPECT_THAT(list().items, ElementsAre("First", "Second"));
    EXPECT_TRUE(says("are kept in " + path("rescued"))) << "the circle";
    press("Center");
    EXPECT_TRUE(offered()) << "the next one";
    host.activate(*host.find("Discard"));
    dialog->hide();
    dialog->show();
    EXPECT_FALSE(offered());
    EXPECT_THAT(list().items, ElementsAre("First", "Second"));
    int texts = 0;
    for (const std::string& file : rescued()) texts += contentsOf(file).find("Second") != std::string::npos;
    select(1);
    press("Delete All");
    press("Undo");
    EXPECT_EQ(form.field("Name:").text, "Second") << "selected as it was";
    EXPECT_EQ(texts, 2) << "what was discarded, and the journal of what was recovered: " << rescued().size();
}

TEST_F(OverlayEditorDialogTest, LeavesNothingWithoutAWayOut) {
    dialog->show();
    EXPECT_FALSE(host.find("New")->enabled);
    addCircle(1, 2, 500);
    host.fileDialogAnswers = {path("harbour")};
    press("Save As...");
    EXPECT_EQ(form.field("File:").text, path("harbour.zel"));
    EXPECT_THAT(host.find("File:")->text, ::testing::EndsWith(path("harbour.zel")))
        << "the whole path as tooltip";
    press("Delete");
    EXPECT_EQ(changes(), "Not saved");
    press("Save");
    EXPECT_EQ(changes(), "None");
    EXPECT_THAT(contentsOf(path("harbour.zel~")), HasSubstr("Circle 1"));
    press("New");
    EXPECT_EQ(form.field("File:").text, "");
    EXPECT_FALSE(host.find("Save")->enabled || host.find("New")->enabled);

    // Asked for once more while it is open, it comes to the front and ends no drawing.
    add(1);
    dialog->show();
    EXPECT_TRUE(mouse.isActive());
    std::vector<void*> sent;
    for (const char* name : {"one.zel", "two.zel", "three.zel"}) {
        sent.push_back(&host + sent.size());
        host.overlays[sent.back()] = {kTwoCircles, path(name), 0, true};
    }
    dialog->loadZels(sent);
    EXPECT_TRUE(
        says("One overlay is edited at a time: " + path("three.zel") + ", and not " + path("one.zel")));
    // Sent once more while it is edited, it keeps what was typed.
    select(0);
    form.type("Radius:", "4321");
    dialog->loadZels({sent.back()});
    EXPECT_TRUE(says("is edited already"));
    EXPECT_EQ(form.field("Radius:").text, "4321.00");
    host.overlays[&host + 5] = {kTwoCircles, path("three.zel"), 7, true};
    const std::size_t before = rescued().size();
    dialog->loadZels({&host + 5});
    EXPECT_EQ(rescued().size(), before + 1) << "the same file, but another overlay";
}

}  // namespace
}  // namespace OverlayEditor
