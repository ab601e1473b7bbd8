#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "geo/Angles.h"
#include "gui/Form.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/TestEquipment.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/ShapeRegistry.h"
#include "pi/EntryScope.h"
#include "pi/PIHALVIS.h"
#include "support/ScopedVariable.h"
#include "support/TemporaryDirectory.h"

using halCore::kRadiansPerDegree;
using halCore::Vec3;
using OverlayEditor::AnnotationShape;
using OverlayEditor::CylinderShape;
using OverlayEditor::MouseManager;
using OverlayEditor::Overlay;
using OverlayEditor::OverlayEditorDialog;
using OverlayEditor::Preferences;
using OverlayEditor::ShapeRegistry;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Mouse = PIGUI::PIMouseEventType_t;

namespace {

constexpr const char* kTwoCircles =
    "version 2\n\nstart\ncircle\naltitudeunits m\nrangeunits m\ncenterlla 21.3 -158 0\nradius "
    "1852.123456789\n"
    "3d name Inner\nend\n\nstart\ncircle\naltitudeunits m\nrangeunits m\ncenterlla 21.3 -158 0\nradius 3704\n"
    "3d name Outer\nend\n";

class OverlayEditorDialogTest : public ::testing::Test {
  protected:
    OverlayEditorDialogTest() {
        halNotify::setNotifyHandler([this](halNotify::Severity severity, const std::string& text) {
            messages.push_back(text);
            if (dialog) dialog->hear(severity, text);
        });
        host.eye = Vec3(0.4, -2.7, 1e6);
        host.settings["AutoSaveZelDir"] = path("rescued");
        for (const auto subtype : {CylinderShape::Circle, CylinderShape::Sphere, CylinderShape::Cone})
            registry.addPrototype(CylinderShape(preferences, subtype));
        registry.addPrototype(AnnotationShape(preferences));
        dialog = std::make_unique<OverlayEditorDialog>(&preferences, &mouse, &overlay, registry.getShapes());
    }
    ~OverlayEditorDialogTest() override {
        dialog.reset();
        overlay.clearShapes(true);
        halNotify::setNotifyHandler({});
        freeFunctors();
    }

    void press(const std::string& caption) { host.activate(*host.find(caption)); }
    FakeHost::Widget& list() {
        for (auto& [handle, widget] : host.widgets)
            if (widget.kind == FakeHost::Id::CreateList) return widget;
        throw std::runtime_error("no list");
    }
    void select(int item) {
        list().number = item;
        host.activate(list());
    }
    /// 1 is the first kind behind "Add".
    CylinderShape& add(int option) {
        form.choose("Shape:", option);
        return static_cast<CylinderShape&>(*overlay.shapes().back());
    }
    CylinderShape& addCircle(double latDeg, double lonDeg, double radiusMeters) {
        CylinderShape& shape = add(1);
        shape.setCenter(Vec3(latDeg * kRadiansPerDegree, lonDeg * kRadiansPerDegree, 0));
        shape.setMajorRadius(radiusMeters);
        press("Stop");
        return shape;
    }
    /// What the dialog says about changes, a second later.
    std::string changes() {
        host.fireTimeouts();
        const std::string& text = form.field("Changes:").text;
        return text.empty() ? "None" : text;
    }
    /// Whether the dialog tells it.
    bool says(const std::string& text) const {
        return std::ranges::any_of(host.widgets, [&](const auto& entry) {
            return entry.second.kind == FakeHost::Id::CreateLabel &&
                   entry.second.text.find(text) != std::string::npos;
        });
    }
    std::string path(const char* name) const { return directory + "/" + name; }
    std::string contentsOf(const std::string& file) const {
        std::string contents;
        UTILS::readFile(file, contents);
        return contents;
    }
    std::vector<std::string> rescued() const {
        std::vector<std::string> files;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(path("rescued"), none))
            files.push_back(entry.path().string());
        return files;
    }
    void write(const std::string& file, const std::string& text) const { std::ofstream(file) << text; }
    void* fileOverlay(const std::string& file) const {
        for (const auto& [handle, zel] : host.overlays)
            if (zel.path == file) return handle;
        return nullptr;
    }

    FakeHost host;
    std::vector<std::string> messages;
    const TemporaryDirectory temporary;
    const std::string& directory = temporary.path();
    TestEquipment equipment;
    Preferences preferences;
    MouseManager mouse;
    ShapeRegistry registry;
    Overlay overlay;
    std::unique_ptr<OverlayEditorDialog> dialog;
    Form form{host};
};

TEST_F(OverlayEditorDialogTest, StartsHiddenAndEmpty) {
    EXPECT_FALSE(host.find("Overlay Editor")->shown);
    dialog->show();
    for (const char* caption : {"Center", "Delete", "Delete All", "Edit", "Stop", "Save"})
        EXPECT_FALSE(host.find(caption)->enabled) << caption;
    for (const char* caption : {"...", "Save As...", "Help...", "Close"})
        EXPECT_TRUE(host.find(caption)->enabled) << caption;
    EXPECT_FALSE(form.field("Name:").enabled);
    EXPECT_THAT(form.field("Shape:").items, ElementsAre("Add", "Circle", "Sphere", "Cone", "Text"));
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
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(form.field("File:").text, "");
    EXPECT_EQ(changes(), "Not saved");
    EXPECT_THAT(messages, ElementsAre(path("harbour.KML") + ": a hole"));
    press("...");
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_THAT(messages, ElementsAre(testing::_, "one", HasSubstr("bad.gpkg: no")));
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
    host.fileDialogAnswers = {path("nine.zel")};
    press("Save As...");
    EXPECT_TRUE(says("Saved, but not this: Radius: Invalid value \"9z\""));
    form.type("Radius:", "700");

    auto& answer = *host.find("Recover");
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
    dialog->hear(halNotify::Error,
                 "No file in /" + std::string(240, 'd') + "/e f/a.zel: it is full; " + "all stays");
    EXPECT_TRUE(says("No file in .../a.zel: it is full; all stays"));
}

TEST_F(OverlayEditorDialogTest, OffersWhatIsLostUntilItIsTakenOrDiscarded) {
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
        const std::string journal = rescued().at(0);
        for (const char* copy : {"rescued/.overlayeditor-journal-1-0", "rescued/.overlayeditor-journal-1-1"})
            std::filesystem::copy(journal, path(copy));
    }
    const auto offered = [&] {
        return says("Not saved when the host ended on") && !host.find("Recover")->shown &&
               host.find("Recover\tTake the shapes that were not saved into the editor")->shown;
    };
    dialog->show();
    addCircle(1, 2, 500);
    EXPECT_TRUE(offered()) << "whatever else is done";
    form.type("Radius:", "9z");
    EXPECT_FALSE(offered()) << "what a command has to say comes first";
    form.type("Radius:", "600");
    EXPECT_TRUE(offered());
    press("Recover\tTake the shapes that were not saved into the editor");
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
