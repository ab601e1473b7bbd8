#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gui/TestDialog.h"
#include "pi/PIHALVIS.h"
#include "support/ScopedVariable.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Mouse = PIGUI::PIMouseEventType_t;

namespace OverlayEditor {
namespace {

TEST_F(OverlayEditorDialogTest, StartsHiddenAndEmpty) {
    EXPECT_FALSE(host.find("Overlay Editor")->shown);
    dialog->show();
    for (const char* caption : {"Center", "Delete", "Delete All", "Edit", "Stop", "Save"})
        EXPECT_FALSE(host.find(caption)->enabled) << caption;
    for (const char* caption : {"...", "Save As...", "Help...", "Close"})
        EXPECT_TRUE(host.find(caption)->enabled) << caption;
    for (const auto& [handle, widget] : host.widgets)
        EXPECT_TRUE(widget.kind != FakeHost::Id::CreateButton || !(widget.shown && widget.enabled) ||
                    widget.caption.find("\t") != std::string::npos)
            << "no tooltip: " << widget.caption;
    EXPECT_FALSE(form.field("Name:").enabled);
    EXPECT_THAT(form.field("Shape:").items, ElementsAre("Add", "Circle", "Sphere", "Cone", "Text", "Line"));
    EXPECT_EQ(form.field("LLA:").items.at(static_cast<std::size_t>(form.field("LLA:").number)),
              UTILS::unitsGetAbbreviation(preferences.geodeticUnits()));
    EXPECT_EQ(form.field("Prec:").number, 2);

    form.choose("Shape:", 0);
    EXPECT_THAT(overlay.shapes(), IsEmpty());
}

TEST_F(OverlayEditorDialogTest, NamesAreNumberedAcrossKindsAndNeverReused) {
    dialog->show();
    EXPECT_EQ(add(1).name(), "Circle 1");
    EXPECT_EQ(add(2).name(), "Sphere 2");
    EXPECT_EQ(add(1).name(), "Circle 3");
    press("Delete");
    form.choose("Shape:", 1);
    EXPECT_THAT(list().items, ElementsAre("Circle 1", "Sphere 2", "Circle 4"));
    EXPECT_EQ(form.field("Shape:").number, 0) << "back at Add";

    form.type("Name:", "Circle 5");
    EXPECT_THAT(list().items, ElementsAre("Circle 1", "Sphere 2", "Circle 5"));
    EXPECT_EQ(add(1).name(), "Circle 6");
    for (const char* shown : {"  ", "Circle 6"}) {
        form.type("Name:", "  ");
        EXPECT_EQ(form.field("Name:").text, shown) << "refused, and left a second time";
    }
    EXPECT_EQ(messages.size(), 1u);
}

TEST_F(OverlayEditorDialogTest, SelectingShowsTheShapeAndItsPanel) {
    dialog->show();
    addCircle(1, 2, 500);
    add(3);
    EXPECT_TRUE(form.has("Height:"));
    EXPECT_TRUE(mouse.isActive());
    select(0);
    EXPECT_FALSE(mouse.isActive());
    EXPECT_FALSE(form.has("Height:"));
    EXPECT_EQ(form.field("Name:").text, "Circle 1");
    EXPECT_EQ(form.text("Radius:"), "500.00 m");

    form.type("Radius:", "5 nm");
    EXPECT_EQ(static_cast<CylinderShape&>(*overlay.shapes()[0]).majorAxis(), 9260.0);
    EXPECT_THAT(host.lastText, HasSubstr("radius 9260\n"));

    const std::string text = host.lastText;
    form.choose("Rng:", 6);
    EXPECT_EQ(form.field("Rng:").items.at(6), "nm");
    EXPECT_EQ(form.text("Radius:"), "5.00 nm");
    form.choose("Prec:", 40);
    EXPECT_EQ(form.text("Radius:"), "5.00 nm");
    EXPECT_THAT(messages.back(), HasSubstr("from 0 to 12"));
    EXPECT_EQ(host.lastText, text) << "looking at a shape in other units changes nothing";
}

TEST_F(OverlayEditorDialogTest, EachUnitsMenuSetsItsOwnUnits) {
    const auto units = [this] {
        return std::vector{preferences.geodeticUnits(), preferences.altitudeUnits(), preferences.angleUnits(),
                           preferences.rangeUnits()};
    };
    std::size_t changed = 0;
    for (const char* menu : {"LLA:", "Alt:", "Ang:", "Rng:"}) {
        auto expected = units();
        const auto& options = form.field(menu).items;
        const std::size_t option = (static_cast<std::size_t>(form.field(menu).number) + 1) % options.size();
        expected[changed++] = UTILS::unitsGetTypeFromString(options[option]);
        form.choose(menu, static_cast<double>(option));
        EXPECT_EQ(units(), expected) << menu;
    }
}

TEST_F(OverlayEditorDialogTest, CenterClampsTheCamera) {
    dialog->show();
    press("Center");
    EXPECT_FALSE(host.cameraCenter);
    add(1);
    press("Center");
    EXPECT_FALSE(host.cameraCenter) << "a shape without a position has no centre";
    const std::vector<std::pair<double, double>> table = {{10.0, 5000.0}, {6e6, 7e6}};
    for (const auto& [radius, range] : table) {
        addCircle(21.3, -158, radius);
        press("Center");
        ASSERT_TRUE(host.cameraRae);
        EXPECT_EQ(*host.cameraRae, Vec3(range, 0, halCore::kHalfPi));
    }
    addCircle(21.3, -158, 50e3);
    press("Center");
    EXPECT_NEAR(host.cameraCenter->lat(), 21.3 * kRadiansPerDegree, 1e-3);
    EXPECT_EQ(host.cameraCenter->alt(), 0.0);
    EXPECT_NEAR(host.cameraRae->x(), 100e3 * std::sqrt(2.0), 500) << "corner to corner";
    // Half a degree of 55.85 km from the pole, it reaches 144.15 km beyond.
    for (const double side : {1.0, -1.0}) {
        addCircle(89.5 * side, 10, 200e3);
        press("Center");
        EXPECT_EQ(host.cameraCenter->lat(), side * halCore::kHalfPi);
        EXPECT_NEAR(host.cameraRae->x(), 2 * 255.85e3, 100);
    }
}

TEST_F(OverlayEditorDialogTest, ButtonsFollowTheToolInOneChainOfTimeouts) {
    dialog->show();
    add(1);
    EXPECT_TRUE(host.find("Edit")->checked);
    for (int i = 0; i < 3; ++i) {
        press("Edit");
        host.fireTimeouts();
        EXPECT_EQ(host.timeouts.size(), 1u);
    }
    EXPECT_EQ(host.timeouts.begin()->second.milliseconds, 1000);
    mouse.handleMouseEvent(Mouse::RightPress, {});
    host.fireTimeouts();
    EXPECT_FALSE(host.find("Edit")->checked);
    EXPECT_TRUE(host.find("Stop")->checked);
    EXPECT_TRUE(mouse.isValid()) << "the current shape's tool stays current";

    dialog->hide();
    EXPECT_THAT(host.timeouts, IsEmpty());
    EXPECT_FALSE(mouse.isValid());
}

TEST_F(OverlayEditorDialogTest, HidingEndsEditingAndShowingResumesIt) {
    dialog->show();
    addCircle(1, 2, 500);
    host.fileDialogAnswers = {path("a.zel")};
    press("Save As...");
    const auto& zel = host.overlays[overlay.zelId()];
    EXPECT_EQ(host.overlays.size(), 2u) << "the file and the editor's circle";
    host.find("Overlay Editor")->closeObserver->onClose(nullptr);
    EXPECT_TRUE(zel.shown);
    EXPECT_EQ(host.overlays.size(), 1u);
    dialog->show();
    EXPECT_FALSE(zel.shown);
    EXPECT_EQ(host.overlays.size(), 2u);
    press("Close");
    EXPECT_FALSE(host.find("Overlay Editor")->shown);
    EXPECT_TRUE(zel.shown);
}

TEST_F(OverlayEditorDialogTest, LoadsWhatTheZelCommandMakesOfOtherFormats) {
    const ScopedVariable only("PATH", directory);
    host.fileDialogAnswers = {path("harbour.KML"), path("harbour.KML"), path("bad.gpkg")};
    dialog->show();
    press("...");
    EXPECT_THAT(
        messages,
        ElementsAre(HasSubstr("harbour.KML: the zel command, which reads such files, is not installed")));
    messages.clear();
    // It says something, writes what it is told to, and fails on one file.
    write(path("zel"),
          "#!/bin/sh\n[ \"$1 ${2##*/}\" = 'convert harbour.KML' ] || { echo one >&2; echo 'zel: no' >&2; "
          "exit 2; }\n"
          "echo \"$3: a hole\" >&2\nprintf '" +
              std::string(kTwoCircles) + "' >\"$3\"\n");
    std::filesystem::permissions(path("zel"), std::filesystem::perms::owner_all);
    press("...");
    while (list().items.empty()) host.fireTimeouts();
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(form.field("File:").text, "");
    EXPECT_EQ(changes(), "Not saved");
    EXPECT_THAT(messages, ElementsAre(path("harbour.KML") + ": a hole"));
    press("...");
    while (messages.size() < 3) host.fireTimeouts();
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_THAT(messages, ElementsAre(testing::_, "one", HasSubstr("bad.gpkg: no")));
    // One that never ends.
    write(path("zel"), "#!/bin/sh\nexec /bin/sleep 1000\n");
    host.fileDialogAnswers = {path("harbour.KML")};
    messages.clear();
    press("...");
    host.fireTimeouts();
    press("New");
    EXPECT_THAT(messages, testing::Contains(HasSubstr("harbour.KML: an empty overlay is begun")));
    EXPECT_THAT(list().items, IsEmpty());
}

TEST_F(OverlayEditorDialogTest, ShowsTheDocumentInListFileAndAttachRow) {
    write(path("two.zel"), kTwoCircles);
    write(path("offset.zel"), "start\nline\nref 21 -158\nxyz 1 2\nxyz 3 4\n3d name Leg\nend\n");
    host.fileDialogAnswers = {path("missing.zel"), path("two.zel"), path("no-such-directory/a.zel"),
                              path("b.zel"), path("offset.zel")};
    dialog->show();
    press("...");
    EXPECT_EQ(messages.size(), 1u);
    EXPECT_THAT(list().items, IsEmpty());
    press("...");
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(form.field("File:").text, path("two.zel"));
    EXPECT_TRUE(host.find("Save")->enabled);
    EXPECT_TRUE(host.find("Delete All")->enabled);
    EXPECT_FALSE(host.find("Delete")->enabled) << "nothing is selected yet";
    select(0);
    EXPECT_EQ(changes(), "None") << "looking is no change";
    form.type("Radius:", "5 nm");
    EXPECT_EQ(changes(), "Not saved");
    press("Save As...");
    EXPECT_EQ(changes(), "Not saved");
    EXPECT_EQ(form.field("File:").text, path("two.zel"));
    press("Save As...");
    EXPECT_EQ(changes(), "None");
    EXPECT_EQ(form.field("File:").text, path("b.zel"));
    EXPECT_EQ(form.field("Name:").text, "Inner") << "the shape stays selected";
    form.type("Name:", "x");
    press("Save");
    EXPECT_THAT(contentsOf(path("b.zel")), HasSubstr("3d name x"));

    host.platforms[7] = {{7, "Ship", ""}, {.latRad = 0.3}};
    unsigned long platform = 7;
    dialog->onCmdAttach(nullptr, &platform);
    EXPECT_EQ(changes(), "Not saved; positions become offsets from Ship");
    dialog->scenarioEntityRemoved(7);
    const auto attached = [&] {
        const auto& row = form.field("Attach:");
        const std::string text = row.text.empty() ? row.caption : row.text;
        return text.substr(0, text.find('\t'));
    };
    EXPECT_EQ(attached(), "None");
    EXPECT_EQ(changes(), "None");
    press("...");
    EXPECT_THAT(list().items, ElementsAre("Leg"));
    EXPECT_EQ(form.field("Name:").text, "");
    EXPECT_EQ(attached(), "ZEL Reference Point");
    host.overlays[&host] = {kTwoCircles, path("rings.zel"), 0, true};
    dialog->loadZels({&host});
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(attached(), "None");
    messages.clear();
    PIHALVIS::unloadZELFile(overlay.zelId());
    EXPECT_THAT(messages, ElementsAre(HasSubstr("has unloaded the edited overlay")));

    // What cannot be rescued stays listed.
    addCircle(1, 2, 500);
    std::filesystem::remove_all(path("rescued"));
    write(path("rescued"), "a file where the directory should be");
    press("Delete All");
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer", "Circle 1"));
    std::filesystem::remove(path("rescued"));
    press("Delete All");
    EXPECT_THAT(list().items, IsEmpty());
    EXPECT_EQ(form.field("File:").text, "");
    EXPECT_FALSE(host.find("Save")->enabled);
    press("...");  // cancelled
    EXPECT_THAT(overlay.shapes(), IsEmpty());
    addCircle(1, 2, 500);
    dialog.reset();
    EXPECT_EQ(rescued().size(), 2u) << "at the end, too";
}

TEST_F(OverlayEditorDialogTest, DeleteWhileDrawingEndsTheTool) {
    dialog->show();
    host.cursor = Vec3(0.1, 0.2, 0);
    add(1);
    mouse.handleMouseEvent(Mouse::LeftPress, {});
    press("Delete");
    EXPECT_FALSE(mouse.isValid());
    EXPECT_EQ(host.grabs, 0);
    EXPECT_THAT(list().items, IsEmpty());
    EXPECT_FALSE(form.has("Radius:"));
    EXPECT_FALSE(host.find("Delete All")->enabled);

    add(1);
    add(2);
    press("Delete All");
    EXPECT_THAT(overlay.shapes(), IsEmpty());
    EXPECT_THAT(host.overlays, IsEmpty());
    EXPECT_EQ(host.grabs, 0);
}

/// What was drawn for the first time goes as if it had never been begun, and can be had again.
TEST_F(OverlayEditorDialogTest, ACancelledDrawingIsAsIfItWereUndone) {
    dialog->show();
    int clicks = 0;
    const auto mouseDoes = [&](std::vector<PIGUI::PIMouseEventType_t> events) {
        const EntryScope entry;
        host.cursor = Vec3(0.1 * ++clicks, 0.2, 0);
        for (const auto event : events) mouse.handleMouseEvent(event, {});
    };
    form.choose("Shape:", 5);
    for (int i = 0; i < 3; ++i) mouseDoes({Mouse::LeftPress, Mouse::LeftRelease});
    press("Undo");
    EXPECT_TRUE(says("2 of 2"));
    for (const char* button : {"Stop", "Undo", "Undo"}) press(button);
    host.redraws = 0;
    press("Undo");
    EXPECT_GT(host.redraws, 0) << "only its points were in view";
    for (int i = 0; i < 4; ++i) press("Redo");
    EXPECT_TRUE(says("3 of 3"));
    for (const char* button : {"Stop", "<-", "Delete", "Undo"}) press(button);
    EXPECT_TRUE(says("2 of 3")) << "the point that was shown";
    addCircle(1, 2, 500);
    select(0);
    const std::string before = host.find("Undo")->text;
    form.choose("Shape:", 5);
    for (int i = 0; i < 2; ++i) mouseDoes({Mouse::LeftPress, Mouse::LeftRelease});
    mouseDoes({Mouse::LeftPress});
    dialog->onCmdCancelDrawing(nullptr, nullptr);
    EXPECT_EQ(host.find("Undo")->text, before);
    EXPECT_THAT(list().items, ElementsAre("Line 1", "Circle 2"));
    EXPECT_EQ(list().number, 0) << "what was selected";
    EXPECT_EQ(host.grabs, 0);
    for (int i = 0; i < 3; ++i) press("Redo");
    EXPECT_TRUE(says(" of 2"));
}

TEST_F(OverlayEditorDialogTest, NamesWithoutASuffixGetOne) {
    dialog->show();
    addCircle(1, 2, 500);
    write(path("here.1"), "the host has asked whether it is replaced");
    for (const auto& [chosen, saved] : {std::pair("a", "a.zel"),
                                        {"v1.2", "v1.2.zel"},
                                        {"b.", "b.zel"},
                                        {"c.z~", "c.z~"},
                                        {"here.1", "here.1"}}) {
        host.fileDialogAnswers = {path(chosen)};
        press("Save As...");
        EXPECT_EQ(form.field("File:").text, path(saved));
    }
}

/// Timeouts are due, and observers told, from inside any call.
TEST_F(OverlayEditorDialogTest, AHostThatCallsBackWhileItServesIsSurvived) {
    dialog->show();
    addCircle(1, 2, 500);
    host.fileDialogAnswers = {path("a.zel"), path("a.zel"), path("b.zel")};
    host.onCall = [&](FakeHost::Id) {
        host.fireTimeouts();
        for (auto* const observer : std::vector(host.observers)) observer->addedZEL(nullptr);
    };
    press("Save As...");
    press("Edit");
    press("...");
    select(0);
    press("Save As...");
    press("Delete");
    press("Delete All");
    dialog->hide();
    host.onCall = nullptr;
    EXPECT_THAT(overlay.shapes(), IsEmpty());
    EXPECT_THAT(host.timeouts, IsEmpty());
}

TEST_F(OverlayEditorDialogTest, AnItemWhoseShapeIsGoneGoesWithAMessage) {
    dialog->show();
    for (const char* caption : {"Delete", "Center"}) {
        delete &addCircle(1, 2, 500);
        host.fireTimeouts();
        form.type("Name:", "x");
        press("Edit");
        messages.clear();
        press(caption);
        EXPECT_THAT(messages, ElementsAre(HasSubstr("is gone"))) << caption;
        EXPECT_THAT(list().items, IsEmpty());
        EXPECT_FALSE(host.find("Delete All")->enabled);
    }
    EXPECT_FALSE(host.cameraCenter);
}

TEST_F(OverlayEditorDialogTest, HelpSaysWhatIsMissing) {
    ::unsetenv("HALVIS_DIR");
    press("Help...");
    const ScopedVariable here("HALVIS_DIR", directory);
    press("Help...");
    EXPECT_THAT(messages, ElementsAre("Could not find Overlay Editor Documentation.\n",
                                      "Could not find Overlay Editor Documentation.\n"));

    messages.clear();
    std::filesystem::create_directories(directory + "/doc/HALVIS");
    const std::string manual = directory + "/doc/HALVIS/Overlay_Editor_Plugin.pdf";
    write(manual, "%PDF");
    const ScopedVariable only("PATH", directory);
    press("Help...");
    EXPECT_THAT(messages, ElementsAre("Error Loading Overlay Editor Documentation at file://" + manual +
                                      " : xdg-open: command not found"));

    // The viewer gets the address whole, and nobody waits for it.
    messages.clear();
    const std::string opener = directory + "/xdg-open";
    write(opener, "#!/bin/sh\necho \"$1\" > '" + directory + "/opened.tmp'\n/bin/mv '" + directory +
                      "/opened.tmp' '" + directory + "/opened'\n");
    std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
    press("Help...");
    EXPECT_THAT(messages, IsEmpty());
    for (int i = 0; i < 500 && !UTILS::fileIsFile(path("opened")); ++i) ::usleep(10000);
    EXPECT_EQ(contentsOf(path("opened")), "file://" + manual + "\n");
}

}  // namespace
}  // namespace OverlayEditor
