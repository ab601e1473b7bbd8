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
#include "pi/PIHALVIS.h"
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
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
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
    EXPECT_THAT(host.timeouts, IsEmpty());

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
    form.type("Name:", "  ");
    EXPECT_EQ(form.field("Name:").text, "Circle 6");
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
    EXPECT_EQ(form.field("Prec:").number, 12);
    EXPECT_EQ(host.lastText, text) << "looking at a shape in other units changes nothing";
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
    void* const zel = overlay.zelId();
    ASSERT_TRUE(zel);
    EXPECT_FALSE(host.overlays[zel].shown);
    EXPECT_EQ(host.overlays.size(), 2u) << "the file and the editor's circle";

    host.find("Overlay Editor")->closeObserver->onClose(nullptr);
    EXPECT_TRUE(host.overlays[zel].shown);
    EXPECT_EQ(host.overlays.size(), 1u);
    dialog->show();
    EXPECT_FALSE(host.overlays[zel].shown);
    EXPECT_EQ(host.overlays.size(), 2u);
    press("Close");
    EXPECT_FALSE(host.find("Overlay Editor")->shown);
    EXPECT_TRUE(host.overlays[zel].shown);
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

TEST_F(OverlayEditorDialogTest, SavesReloadsAndLoadsTheSameBytes) {
    const std::string file = path("circles.zel");
    write(file, kTwoCircles);
    dialog->show();
    host.fileDialogAnswers = {file};
    press("...");
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(form.field("File:").text, file);
    EXPECT_TRUE(host.find("Save")->enabled);
    EXPECT_TRUE(host.find("Delete All")->enabled);
    EXPECT_FALSE(host.find("Delete")->enabled) << "nothing is selected yet";

    press("Save");
    const std::string first = contentsOf(file);
    EXPECT_THAT(first, HasSubstr("radius 1852.123456789\n"));
    void* const zel = overlay.zelId();
    EXPECT_EQ(zel, fileOverlay(file));
    press("Save");
    EXPECT_EQ(contentsOf(file), first);
    EXPECT_EQ(host.overlays.count(zel), 0u) << "what was loaded from the file before is gone";

    // What the host has loaded from the file is edited in its place.
    press("Delete All");
    EXPECT_TRUE(host.overlays[fileOverlay(file)].shown);
    host.fileDialogAnswers = {file};
    press("...");
    EXPECT_EQ(overlay.zelId(), fileOverlay(file));
    EXPECT_FALSE(host.overlays[fileOverlay(file)].shown);
    press("Save");
    EXPECT_EQ(contentsOf(file), first);

    // Under another name: the first file is displayed by the host again, the new one is edited.
    host.fileDialogAnswers = {path("copy.zel")};
    press("Save As...");
    EXPECT_EQ(contentsOf(path("copy.zel")), first);
    EXPECT_TRUE(host.overlays[fileOverlay(file)].shown);
    EXPECT_FALSE(host.overlays[fileOverlay(path("copy.zel"))].shown);
    EXPECT_EQ(form.field("File:").text, path("copy.zel"));
}

TEST_F(OverlayEditorDialogTest, SavingNothingLeavesTheFileAlone) {
    const std::string file = path("precious.zel");
    write(file, kTwoCircles);
    dialog->show();
    add(1);  // never drawn
    host.fileDialogAnswers = {file};
    press("Save As...");
    EXPECT_EQ(contentsOf(file), kTwoCircles);
    EXPECT_THAT(messages, ElementsAre(HasSubstr("Could not save " + file)));
    EXPECT_FALSE(host.find("Save")->enabled);

    messages.clear();
    addCircle(1, 2, 3);
    host.fileDialogAnswers = {path("no-such-directory/x.zel")};
    press("Save As...");
    EXPECT_THAT(messages, ElementsAre(HasSubstr("No such file or directory")));
    EXPECT_EQ(overlay.shapes().size(), 2u);

    messages.clear();
    host.fileDialogAnswers = {file};
    press("Save As...");
    EXPECT_THAT(messages, ElementsAre(HasSubstr("Circle 1"))) << "what is not complete is named";
    EXPECT_THAT(contentsOf(file), HasSubstr("3d name Circle 2"));
}

TEST_F(OverlayEditorDialogTest, AFileThatCannotBeLoadedCostsNothing) {
    dialog->show();
    addCircle(1, 2, 500);
    write(path("empty.zel"), "# nothing\n");
    write(path("box.zel"), "start\nlatlonaltbox 1 2 3 4 5\nend\n");
    for (const char* name : {"missing.zel", "empty.zel", "box.zel"}) {
        host.fileDialogAnswers = {path(name)};
        press("...");
        EXPECT_EQ(overlay.shapes().size(), 1u) << name;
        EXPECT_EQ(form.field("Name:").text, "Circle 1") << name;
        EXPECT_EQ(form.field("File:").text, "") << name;
    }
    EXPECT_EQ(messages.size() + host.notifications.size(), 3u);
    press("...");  // cancelled
    EXPECT_EQ(overlay.shapes().size(), 1u);
}

TEST_F(OverlayEditorDialogTest, NamesWhatItCannotKeepOfAFile) {
    dialog->show();
    write(path("mixed.zel"),
          std::string(kTwoCircles) + "start\nlatlonaltbox 4 3 1 2 0\n3d name Fence\nend\n");
    host.fileDialogAnswers = {path("mixed.zel")};
    press("...");
    EXPECT_EQ(overlay.shapes().size(), 2u);
    EXPECT_THAT(messages, ElementsAre(HasSubstr("latlonaltbox \"Fence\"")));
}

TEST_F(OverlayEditorDialogTest, CopiesWhatItCannotKeepBeforeTheFirstSave) {
    dialog->show();
    const std::string file = path("mixed.zel");
    const std::string old = std::string(kTwoCircles) + "start\nlatlonaltbox 4 3 1 2 0\n3d name Fence\nend\n";
    write(file, old);
    host.fileDialogAnswers = {file};
    press("...");

    // An older copy stays.
    write(file + "~", "older");
    messages.clear();
    press("Save");
    EXPECT_EQ(contentsOf(file + "~"), "older");
    EXPECT_EQ(contentsOf(file + "~2"), old);
    EXPECT_THAT(contentsOf(file), ::testing::Not(HasSubstr("Fence")));
    EXPECT_THAT(messages, ElementsAre(HasSubstr("is kept as " + file + "~2"), HasSubstr("Fence")));

    // The second save replaces only what the editor wrote.
    form.type("Name:", "x");
    press("Save");
    EXPECT_FALSE(UTILS::fileIsFile(file + "~3"));

    // What is kept already needs no second copy.
    write(file, old);
    press("...");
    std::filesystem::rename(file + "~2", file + "~");
    press("Save");
    EXPECT_FALSE(UTILS::fileIsFile(file + "~2"));
}

TEST_F(OverlayEditorDialogTest, WithoutACopyTheOldFileIsNotReplaced) {
    dialog->show();
    addCircle(1, 2, 500);
    const std::string file = path(std::string(255, 'n').c_str());
    write(file, "precious, but no overlay\n");
    host.fileDialogAnswers = {file};
    press("Save As...");
    EXPECT_EQ(contentsOf(file), "precious, but no overlay\n");
    EXPECT_THAT(messages, ::testing::Contains(HasSubstr("could not be written: File name too long")));
    EXPECT_FALSE(host.find("Save")->enabled);
}

/// Two editors, or somebody with a text editor.
TEST_F(OverlayEditorDialogTest, KeepsWhatOthersWroteIntoTheFileMeanwhile) {
    const std::string file = path("shared.zel");
    const std::string theirs =
        "version 2\n\nstart\ncircle\ncenterlla 1 2 0\nradius 5\n3d name Theirs\nend\n\n";
    write(file, kTwoCircles);
    dialog->show();
    host.fileDialogAnswers = {file};
    press("...");
    form.type("Name:", "x");
    write(file, theirs);
    messages.clear();
    press("Save");
    EXPECT_THAT(contentsOf(file), HasSubstr("Inner"));
    EXPECT_EQ(contentsOf(file + "~"), theirs);
    EXPECT_THAT(messages, ElementsAre(HasSubstr("kept as " + file + "~: somebody else has written it")));

    // After a save, too; and for a file that was taken from the host.
    press("Save");
    write(file, theirs + "# 2\n");
    press("Save");
    EXPECT_EQ(contentsOf(file + "~2"), theirs + "# 2\n");
    dialog->loadZels({fileOverlay(file)});
    press("Save");
    EXPECT_FALSE(UTILS::fileIsFile(file + "~3"));
    write(file, theirs + "# 3\n");
    press("Save");
    EXPECT_EQ(contentsOf(file + "~3"), theirs + "# 3\n");

    // A file that was deleted is written anew.
    std::filesystem::remove(file);
    messages.clear();
    press("Save");
    EXPECT_THAT(contentsOf(file), HasSubstr("Inner"));
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(OverlayEditorDialogTest, ClearsAwayWhatADeadProcessLeft) {
    dialog->show();
    addCircle(1, 2, 500);
    std::filesystem::create_directory(path("plans"));
    host.fileDialogAnswers = {path("plans/a.zel")};
    press("Save As...");
    write(path("plans/.overlayeditor-save-1-1"), "half");
    dialog = std::make_unique<OverlayEditorDialog>(&preferences, &mouse, &overlay, registry.getShapes());
    EXPECT_FALSE(UTILS::fileIsFile(path("plans/.overlayeditor-save-1-1")));
    EXPECT_TRUE(UTILS::fileIsFile(path("plans/a.zel")));
}

constexpr const char* kOffsets =
    "start\nline\naltitudeunits m\nrangeunits m\nxyz 1000.5 2000 0\nxyz 3000 -400.25 10\n"
    "3d name Leg\nend\n";

std::string withReference(std::string text, const std::string& reference) {
    return text.insert(text.find("xyz"), "ref " + reference + "\n");
}

TEST_F(OverlayEditorDialogTest, AFileWithOffsetsStaysOne) {
    struct Case {
        const char* name;
        std::string text;
        Vec3 reference;
        bool written, warned;
    };
    const double degree = kRadiansPerDegree;
    const std::vector<Case> table = {
        {"own.zel",
         withReference(kOffsets, "21.25 -158 300"),
         {21.25 * degree, -158 * degree, 300},
         true,
         false},
        {"none.zel", kOffsets, {0.4, -2.7, 0}, false, true},  // below the eye
        // Absolute positions beside offsets hold only with a reference.
        {"mixed.zel", kOffsets + std::string(kTwoCircles), {0.4, -2.7, 0}, true, true}};
    dialog->show();
    for (const auto& [name, text, reference, written, warned] : table) {
        messages.clear();
        const std::string file = path(name);
        write(file, text);
        host.fileDialogAnswers = {file};
        press("...");
        const std::uint64_t platform = overlay.attachedPlatformId();
        ASSERT_EQ(host.platforms.size(), 1u) << "the one before is gone";
        ASSERT_EQ(host.platforms.count(platform), 1u);
        EXPECT_EQ(host.platforms[platform].header.name, "ZEL Reference Point");
        EXPECT_EQ(host.platforms[platform].header.icon, "x2");
        const auto& point = host.platforms[platform].point;
        EXPECT_NEAR(point.latRad, reference.lat(), 1e-15);
        EXPECT_NEAR(point.lonRad, reference.lon(), 1e-15);
        EXPECT_EQ(point.altMeters, reference.alt());
        EXPECT_EQ(form.field("Attach:").text.substr(0, 19), "ZEL Reference Point");
        if (warned) {
            EXPECT_THAT(messages, ElementsAre(HasSubstr("no reference of its own")));
        } else {
            EXPECT_THAT(messages, IsEmpty());
            // 2000 m along the meridian, whose radius of curvature at the reference is 6344105.44 m.
            EXPECT_NEAR(overlay.shapes().front()->boundingBox().second.lat() / degree, 21.26806268199, 1e-9);
        }

        press("Save");
        const std::string saved = contentsOf(file);
        EXPECT_THAT(saved, HasSubstr("xyz 1000.5 2000 0\nxyz 3000 -400.25 10\n"));
        EXPECT_EQ(saved.find("ref ") != std::string::npos, written) << saved;
        EXPECT_EQ(host.overlays[overlay.zelId()].platform, platform);
        EXPECT_FALSE(UTILS::fileIsFile(file + "~")) << "nothing is lost";

        // The host has it on the reference platform now.
        host.fileDialogAnswers = {file};
        press("...");
        EXPECT_EQ(host.platforms.size(), 1u);
        press("Save");
        EXPECT_EQ(contentsOf(file), saved);
    }
    press("Delete All");
    EXPECT_THAT(host.platforms, IsEmpty());
}

TEST_F(OverlayEditorDialogTest, TheReferencePlatformGoesWhenNothingStandsAboutIt) {
    write(path("offsets.zel"), withReference(kOffsets, "21.25 -158"));
    host.platforms[40].point.latRad = 0.37;
    unsigned long other = 40;
    dialog->show();
    const auto load = [&] {
        host.fileDialogAnswers = {path("offsets.zel")};
        press("...");
        return overlay.attachedPlatformId();
    };
    const auto standing = [&] { return host.platforms.size() == 2; };
    load();
    EXPECT_TRUE(standing());
    dialog->onCmdAttach(nullptr, &other);
    EXPECT_FALSE(standing());
    host.fileDialogAnswers = {path("other.zel")};
    press("Save As...");
    EXPECT_THAT(contentsOf(path("other.zel")), ::testing::Not(HasSubstr("ref ")));

    unsigned long same = load();
    dialog->onCmdAttach(nullptr, &same);
    EXPECT_TRUE(standing());
    EXPECT_EQ(overlay.attachedPlatformId(), same);
    dialog->onCmdAttach(nullptr, nullptr);
    EXPECT_FALSE(standing());
    press("Save As...");

    // Removed by others: it is not removed a second time.
    host.platforms.erase(load());
    const int removals = host.calls[FakeHost::Id::RemoveEntity];
    dialog->scenarioEntityRemoved(overlay.attachedPlatformId());
    EXPECT_EQ(host.calls[FakeHost::Id::RemoveEntity], removals);
    EXPECT_EQ(overlay.attachedPlatformId(), 0u);

    load();
    dialog.reset();
    EXPECT_FALSE(standing());
}

TEST_F(OverlayEditorDialogTest, TakesOverlaysFromTheHostWithTheirPlatform) {
    host.platforms[7].point.latRad = 0.3;
    host.overlays[&host] = {kTwoCircles, "/host/rings.zel", 7, true};
    dialog->show();
    dialog->loadZels({&messages, &host});
    EXPECT_THAT(messages, ElementsAre(HasSubstr("the host gave no text"), HasSubstr("absolute positions")));
    EXPECT_THAT(list().items, ElementsAre("Inner", "Outer"));
    EXPECT_EQ(overlay.attachedPlatformId(), 7u);
    EXPECT_FALSE(host.overlays[&host].shown);

    dialog->scenarioEntityRemoved(7);
    EXPECT_EQ(overlay.attachedPlatformId(), 0u);
    EXPECT_EQ(overlay.shapes().size(), 2u);
}

/// The host tells observers from inside the calls that unload and load a file.
TEST_F(OverlayEditorDialogTest, AHostThatCallsBackWhileItServesIsSurvived) {
    dialog->show();
    addCircle(1, 2, 500);
    host.fileDialogAnswers = {path("a.zel"), path("a.zel"), path("b.zel")};
    host.onCall = [&](FakeHost::Id) {
        host.fireTimeouts();
        dialog->scenarioZELsChanged();
        dialog->scenarioPlatformAdded();
        dialog->scenarioEntityRemoved(3);
        mouse.handleMouseEvent(Mouse::Motion, {});
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

TEST_F(OverlayEditorDialogTest, RescuesWhatIsNotSavedBeforeItIsGivenUp) {
    const std::string file = path("two.zel");
    write(file, kTwoCircles);
    dialog->show();
    host.fileDialogAnswers = {file, file, file};
    press("...");
    press("...");
    EXPECT_THAT(rescued(), IsEmpty()) << "nothing changed";

    addCircle(1, 2, 500);
    press("...");
    ASSERT_EQ(rescued().size(), 1u);
    EXPECT_THAT(messages.back(), HasSubstr(rescued().front()));
    EXPECT_THAT(contentsOf(rescued().front()), HasSubstr("3d name Circle 1\n"));
    EXPECT_EQ(overlay.shapes().size(), 2u);

    unsigned long platform = 17;
    host.platforms[platform].point.latRad = 0.3;
    dialog->onCmdAttach(nullptr, &platform);
    addCircle(3, 4, 600);
    press("Delete All");
    EXPECT_EQ(rescued().size(), 2u) << "a second one within the second gets a name of its own";
    press("Delete All");

    addCircle(5, 6, 700);
    host.fileDialogAnswers = {path("saved.zel")};
    press("Save As...");
    dialog->loadZels({fileOverlay(file)});
    EXPECT_EQ(rescued().size(), 2u) << "it is saved";
    addCircle(7, 8, 800);
    dialog.reset();
    EXPECT_EQ(rescued().size(), 3u);
}

TEST_F(OverlayEditorDialogTest, SaysWhetherThereIsSomethingToSave) {
    write(path("two.zel"), kTwoCircles);
    host.platforms[7].point.latRad = 0.3;
    unsigned long platform = 7;
    dialog->show();
    EXPECT_EQ(changes(), "None");
    host.fileDialogAnswers = {path("two.zel"), path("no-such-directory/a.zel"), path("b.zel"),
                              path("two.zel")};
    press("...");
    EXPECT_EQ(changes(), "None");
    select(0);
    EXPECT_EQ(changes(), "None") << "looking is no change";

    struct Step {
        const char* what;
        std::function<void()> act;
        const char* said;
    };
    const std::vector<Step> steps = {
        {"a typed radius", [&] { form.type("Radius:", "5 nm"); }, "Not saved"},
        {"a save that fails", [&] { press("Save As..."); }, "Not saved"},
        {"saved", [&] { press("Save As..."); }, "None"},
        {"a name", [&] { form.type("Name:", "x"); }, "Not saved"},
        {"the old name again", [&] { form.type("Name:", "Inner"); }, "None"},
        {"attached", [&] { dialog->onCmdAttach(nullptr, &platform); }, "Not saved"},
        {"saved", [&] { press("Save"); }, "None"},
        {"the platform moves", [&] { host.platforms[7].point.latRad = 0.31; }, "None"},
        {"another unit", [&] { form.choose("Rng:", 3); }, "None"},
        {"deleted", [&] { press("Delete"); }, "Not saved"},
        {"loaded", [&] { press("..."); }, "None"},
        {"a kind", [&] { form.choose("Shape:", 1); }, "None"},
        {"begun",
         [&] {
             static_cast<CylinderShape&>(*overlay.shapes().back()).setCenter({0.1, 0.2, 0});
         },
         "Not saved"},
        {"saved without it", [&] { press("Save"); }, "Not saved"},
        {"all deleted", [&] { press("Delete All"); }, "None"}};
    for (const auto& [what, act, said] : steps) {
        messages.clear();
        act();
        EXPECT_EQ(changes(), said) << what;
    }
    EXPECT_THAT(messages, ElementsAre(HasSubstr("given up: Circle 1")));
}

TEST_F(OverlayEditorDialogTest, SaysThatAbsolutePositionsWouldBecomeOffsets) {
    host.platforms[7].point.latRad = 0.3;
    host.overlays[&host] = {kTwoCircles, path("rings.zel"), 7, true};
    dialog->show();
    dialog->loadZels({&host});
    EXPECT_THAT(messages, ElementsAre(HasSubstr("has absolute positions")));
    EXPECT_EQ(changes(), "Not saved");
    dialog->loadZels({&host});
    EXPECT_THAT(rescued(), IsEmpty()) << "nobody changed a shape";
    press("Save");
    EXPECT_EQ(changes(), "None");
    messages.clear();
    dialog->loadZels({overlay.zelId()});
    EXPECT_THAT(messages, IsEmpty());
    EXPECT_EQ(changes(), "None");
}

TEST_F(OverlayEditorDialogTest, NamesTheShapeThatIsGivenUp) {
    dialog->show();
    for (const char* never : {"Circle", "Text"}) {
        form.choose("Shape:", std::string(never) == "Text" ? 4 : 1);
        form.type("Name:", "Twin");
        EXPECT_EQ(changes(), "None") << never << " was only added";
        press("Center");
        EXPECT_FALSE(host.cameraCenter);
    }
    add(1).setCenter({0.1, 0.2, 0});
    form.type("Name:", "Twin");
    EXPECT_EQ(changes(), "Not saved");
    messages.clear();
    press("Delete All");
    EXPECT_THAT(messages, ElementsAre("Not complete, and given up: Twin"));
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

TEST_F(OverlayEditorDialogTest, SaysWhenTheHostUnloadsTheEditedOverlay) {
    dialog->show();
    addCircle(1, 2, 500);
    host.fileDialogAnswers = {path("a.zel")};
    press("Save As...");
    EXPECT_THAT(messages, IsEmpty());
    PIHALVIS::unloadZELFile(overlay.zelId());
    EXPECT_THAT(messages, ElementsAre(HasSubstr("has unloaded the edited overlay")));
    EXPECT_FALSE(overlay.zelId());
    press("Save");
    EXPECT_TRUE(overlay.zelId());

    // Its file goes, too, and nothing else holds the shapes.
    EXPECT_EQ(changes(), "None");
    PIHALVIS::unloadZELFile(overlay.zelId());
    std::filesystem::remove(path("a.zel"));
    EXPECT_EQ(changes(), "Not saved");
    press("Delete All");
    EXPECT_EQ(rescued().size(), 1u);
    EXPECT_EQ(changes(), "None");
}

TEST_F(OverlayEditorDialogTest, AFileThatTheHostCannotLoadIsSavedAllTheSame) {
    dialog->show();
    addCircle(1, 2, 500);
    host.fileDialogAnswers = {path("a.zel")};
    press("Save As...");
    form.type("Radius:", "600");
    host.onCall = [&](FakeHost::Id) { host.refuseAll = !fileOverlay(path("a.zel")); };
    press("Save");
    host.onCall = {};
    host.refuseAll = false;
    EXPECT_THAT(messages, ElementsAre(HasSubstr("the host could not load it")));
    EXPECT_FALSE(overlay.zelId()) << "the old one is unloaded";
    EXPECT_THAT(contentsOf(path("a.zel")), HasSubstr("radius 600\n"));
    press("Save");
    EXPECT_EQ(overlay.zelId(), fileOverlay(path("a.zel")));
    EXPECT_TRUE(overlay.zelId());
}

TEST_F(OverlayEditorDialogTest, KeepsTheShapesThatCannotBeRescued) {
    write(path("rescued"), "a file where the directory should be");
    write(path("two.zel"), kTwoCircles);
    host.fileDialogAnswers = {path("two.zel")};
    dialog->show();
    const CylinderShape& mine = addCircle(1, 2, 500);
    for (const char* caption : {"Delete All", "..."}) {
        messages.clear();
        press(caption);
        EXPECT_THAT(overlay.shapes(), ElementsAre(&mine)) << caption;
        EXPECT_THAT(messages, ElementsAre(HasSubstr("could not be written to " + path("rescued"))));
        EXPECT_THAT(messages.front(), HasSubstr("they stay in the editor"));
        EXPECT_EQ(changes(), "Not saved");
    }
    // At the end of the host any place is better than none.
    std::filesystem::create_directory(path("temporary"));
    const char* const before = std::getenv("TMPDIR");
    const std::string old = before ? before : "";
    ::setenv("TMPDIR", path("temporary").c_str(), 1);
    dialog.reset();
    before ? ::setenv("TMPDIR", old.c_str(), 1) : ::unsetenv("TMPDIR");
    EXPECT_THAT(messages.back(), HasSubstr("are kept in " + path("temporary/Unsaved ")));
    std::size_t kept = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path("temporary"))) {
        EXPECT_THAT(contentsOf(entry.path()), HasSubstr("Circle 1"));
        ++kept;
    }
    EXPECT_EQ(kept, 1u);
}

TEST_F(OverlayEditorDialogTest, HelpSaysWhatIsMissing) {
    ::unsetenv("HALVIS_DIR");
    press("Help...");
    ::setenv("HALVIS_DIR", directory.c_str(), 1);
    press("Help...");
    EXPECT_THAT(messages, ElementsAre("Could not find Overlay Editor Documentation.\n",
                                      "Could not find Overlay Editor Documentation.\n"));

    messages.clear();
    std::filesystem::create_directories(directory + "/doc/HALVIS");
    const std::string manual = directory + "/doc/HALVIS/Overlay_Editor_Plugin.pdf";
    write(manual, "%PDF");
    const std::string before = ::getenv("PATH");
    ::setenv("PATH", directory.c_str(), 1);
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
    ::setenv("PATH", before.c_str(), 1);
    EXPECT_THAT(messages, IsEmpty());
    for (int i = 0; i < 500 && !UTILS::fileIsFile(path("opened")); ++i) ::usleep(10000);
    EXPECT_EQ(contentsOf(path("opened")), "file://" + manual + "\n");
    ::unsetenv("HALVIS_DIR");
}

}  // namespace
