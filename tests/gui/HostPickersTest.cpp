#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gui/TestDialog.h"
#include "model/FreeDrawShape.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Mouse = PIGUI::PIMouseEventType_t;

namespace OverlayEditor {
namespace {

constexpr const char* kCircle =
    "start\ncircle\naltitudeunits m\nrangeunits m\ncenterlla 21.3 -158 0\nradius 500\n3d name Ring\nend\n";
constexpr const char* kPlatformOk = "OK\tAttach the current ZEL to the selected platform";
constexpr const char* kZelOk = "OK\tLoad the selected existing ZEL";

class HostPickersTest : public OverlayEditorDialogTest {
  protected:
    HostPickersTest() {
        registry.addPrototype(FreeDrawShape(preferences));
        dialog.reset();
        dialog = std::make_unique<OverlayEditorDialog>(&preferences, &mouse, &overlay, registry.getShapes());
        addPlatform(7, "Zulu", 0.3, -2.7);
        addPlatform(8, "Alpha", 0.4, -2.8);
        addPlatform(9, "Mike", 0.5, -2.6);
        addPlatform(5, "Mike", 0.5, -2.5);
        dialog->show();
    }

    void addPlatform(std::uint64_t id, const std::string& name, double lat, double lon) {
        host.platforms[id].header.name = name;
        host.platforms[id].point.latRad = lat;
        host.platforms[id].point.lonRad = lon;
    }
    FakeHost::Widget& list(const std::string& headers) {
        for (auto& [handle, widget] : host.widgets)
            if (widget.kind == FakeHost::Id::CreateList && widget.caption == headers) return widget;
        throw std::runtime_error("no list " + headers);
    }
    FakeHost::Widget& platforms() { return list("Name"); }
    FakeHost::Widget& zels() { return list("ZEL File Name\tPlatform"); }
    void attachBox(bool checked) { form.check("Attach:", checked); }
    /// To an item of the list.
    void attachTo(double item) {
        attachBox(true);
        platforms().number = item;
        press(kPlatformOk);
    }
    void pickInView(std::uint64_t pressed, std::uint64_t released) {
        host.cursorPlatform = pressed;
        mouse.handleMouseEvent(Mouse::LeftPress, {});
        host.cursorPlatform = released;
        mouse.handleMouseEvent(Mouse::LeftRelease, {});
    }
    CylinderShape& addCircle(const Vec3& center) {
        CylinderShape& shape = OverlayEditorDialogTest::addCircle(0, 0, 500);
        shape.setCenter(center);
        return shape;
    }
};

TEST_F(HostPickersTest, ListsOverlaysUnderTheirPlatformOnce) {
    int handles[4];
    host.overlays[&handles[0]] = {kCircle, "/a.zel", 0, true};
    host.overlays[&handles[1]] = {kCircle, "/b.zel", 7, true};
    host.overlays[&handles[2]] = {kCircle, "/c.zel", 8, true};
    host.overlays[&handles[3]] = {kCircle, "", 0, true};
    press("Load HALVIS...");
    // In the host's order of platforms; what was loaded from a stream is in no list.
    EXPECT_THAT(zels().items, ElementsAre("/b.zel\tZulu", "/c.zel\tAlpha", "/a.zel\tAbsolute"));

    press(kZelOk);
    EXPECT_THAT(messages, ElementsAre("Not loaded: no overlay is selected"));
    // Refreshed with the same overlays the list stays as it is.
    zels().items.back() = "as it was";
    press("Refresh\tUpdate the ZEL list");
    EXPECT_EQ(zels().items.back(), "as it was");
    zels().number = 1;
    host.platforms.erase(7);
    for (auto* observer : host.observers) observer->removedZEL(&handles[1]);
    EXPECT_THAT(zels().items, ElementsAre("/c.zel\tAlpha", "/a.zel\tAbsolute"));
    EXPECT_EQ(zels().number, 0) << "the selected overlay stays selected";

    press(kZelOk);
    EXPECT_FALSE(host.find("Select Existing ZEL")->shown);
    EXPECT_EQ(form.field("File:").text, "/c.zel");
    EXPECT_EQ(overlay.attachedPlatformId(), 8u);
    EXPECT_EQ(form.field("Attach:").text.substr(0, 5), "Alpha");
    EXPECT_TRUE(form.field("Attach:").checked);
    EXPECT_FALSE(host.overlays[&handles[2]].shown);
}

TEST_F(HostPickersTest, ARowThatIsAloneIsSelectedAndKeepsToItsColumns) {
    host.platforms = {{7, {{7, "Zu\tlu\n", ""}, {.latRad = 0.3, .lonRad = -2.7}}}};
    int handle = 0;
    host.overlays[&handle] = {kCircle, "/a\tb.zel", 7, true};
    press("Load HALVIS...");
    EXPECT_THAT(zels().items, ElementsAre("/a b.zel\tZu lu "));
    EXPECT_TRUE(zels().number == 0 && host.find(kZelOk)->enabled);
    press("Cancel\tLoad nothing");
    EXPECT_FALSE(host.find("Select Existing ZEL")->shown);

    addCircle(Vec3(0.31, -2.7, 0));
    const auto selected = [this] { return platforms().number == 0 && host.find(kPlatformOk)->enabled; };
    attachBox(true);
    EXPECT_TRUE(selected());
    EXPECT_THAT(platforms().items, ElementsAre("Zu lu "));
    host.find("Center On Host")->checked = true;
    press(kPlatformOk);
    attachBox(false);
    addPlatform(8, "Alpha", 0.4, -2.8);
    platforms().number = -1;
    attachBox(true);
    EXPECT_FALSE(host.find("Center On Host")->checked) << "asked for anew each time";
    EXPECT_FALSE(host.find(kPlatformOk)->enabled);
    platforms().number = 0;
    host.activate(platforms());
    EXPECT_TRUE(selected());
}

TEST_F(HostPickersTest, SortsPlatformsAndKeepsTheHostsOrderOfEqualNames) {
    addCircle(Vec3(0.31, -2.7, 0));
    attachBox(true);
    EXPECT_THAT(platforms().items, ElementsAre("Alpha", "Mike", "Mike", "Zulu"));
    EXPECT_THAT(platforms().itemData, ElementsAre(reinterpret_cast<void*>(8), reinterpret_cast<void*>(5),
                                                  reinterpret_cast<void*>(9), reinterpret_cast<void*>(7)));
    press(kPlatformOk);
    EXPECT_THAT(messages, ElementsAre("Not attached: no platform is selected"));
    EXPECT_TRUE(host.find("Select Platform")->shown);

    // Gone while the dialog is open.
    messages.clear();
    platforms().number = 3;
    host.platforms.erase(7);
    press(kPlatformOk);
    EXPECT_THAT(messages, ElementsAre(HasSubstr("the selected platform is gone")));
    EXPECT_THAT(platforms().items, ElementsAre("Alpha", "Mike", "Mike"));
    EXPECT_EQ(overlay.attachedPlatformId(), 0u);
}

TEST_F(HostPickersTest, PicksInTheView) {
    addCircle(Vec3(0.31, -2.7, 0));
    attachBox(true);
    EXPECT_TRUE(host.find("Pick")->checked);
    EXPECT_EQ(host.grabs, 1);
    pickInView(8, 7);
    EXPECT_EQ(platforms().number, -1) << "pressed on one, released over another";
    pickInView(7, 7);
    EXPECT_EQ(platforms().items.at(static_cast<std::size_t>(platforms().number)), "Zulu");
    addPlatform(12, "Newcomer", 0, 0);
    pickInView(12, 12);
    EXPECT_EQ(platforms().items.at(static_cast<std::size_t>(platforms().number)), "Newcomer");

    press("Edit");
    EXPECT_FALSE(host.find("Pick")->checked) << "another tool took the mouse";
    host.find("Pick")->checked = true;
    press("Pick");
    EXPECT_EQ(host.grabs, 1);
}

TEST_F(HostPickersTest, AttachesInPlaceOrCentered) {
    const Vec3 center(0.31, -2.7, 0);
    CylinderShape& circle = addCircle(center);
    attachTo(3);
    EXPECT_FALSE(host.find("Select Platform")->shown);
    EXPECT_EQ(host.grabs, 0);
    EXPECT_EQ(form.field("Attach:").text.substr(0, 4), "Zulu");
    EXPECT_EQ(*circle.centerPt(), center);
    EXPECT_THAT(host.lastText, HasSubstr("centerxyz"));
    attachBox(false);
    EXPECT_EQ(form.field("Attach:").text.substr(0, 4), "None");
    EXPECT_THAT(host.lastText, Not(HasSubstr("centerxyz")));
    EXPECT_EQ(*circle.centerPt(), center);
    attachBox(true);
    host.find("Center On Host")->checked = true;
    platforms().number = 0;
    press(kPlatformOk);
    EXPECT_THAT(host.lastText, HasSubstr("centerxyz 0 0 0\n"));
    attachBox(false);
    attachBox(true);
    EXPECT_FALSE(host.find("Center On Host")->checked) << "asked for anew each time";
}

TEST_F(HostPickersTest, ShapesFollowAPlatformThatMoves) {
    CylinderShape& circle = addCircle(Vec3(0.31, -2.7, 0));
    attachTo(3);
    const std::string y = form.text("Y:");
    const int loads = host.loads;
    host.fireTimeouts();
    EXPECT_EQ(*circle.centerPt(), Vec3(0.31, -2.7, 0)) << "not by one bit while it stands";

    // Along its meridian a shape keeps its longitude.
    host.platforms[7].point.latRad = 0.32;
    host.platforms[7].point.altMeters = 250;
    host.fireTimeouts();
    const Vec3 center = *circle.centerPt();
    EXPECT_NEAR(center.lat(), 0.33, 1e-4);
    EXPECT_NEAR(center.lon(), -2.7, 1e-12);
    EXPECT_NEAR(center.alt(), 250, 1e-6);
    EXPECT_EQ(form.text("Y:"), y);
    EXPECT_EQ(host.loads, loads) << "the host moves what it shows by itself";
    EXPECT_EQ(host.timeouts.size(), 1u);

    // Detached, it stays where it was last seen, not where it was when the clock last ticked.
    host.platforms[7].point.latRad = 0.35;
    attachBox(false);
    EXPECT_NEAR(circle.centerPt()->lat(), 0.36, 1e-4);
    // On a pole nothing can stand about the platform. The panel says so, and shows the offset.
    attachTo(3);
    const std::string offset = form.text("Y:");
    host.platforms[7].point.latRad = halCore::kHalfPi;
    host.fireTimeouts();
    EXPECT_FALSE(circle.centerPt());
    EXPECT_EQ(form.text("Y:"), offset);
    EXPECT_TRUE(form.has("No place now"));
    host.platforms[7].point.latRad = 0.35;
    host.fireTimeouts();
    EXPECT_NEAR(circle.centerPt()->lat(), 0.36, 1e-4);
    EXPECT_FALSE(form.has("No place now"));
}

TEST_F(HostPickersTest, AnAttachedOverlayCanBeDetachedWhateverItHolds) {
    CylinderShape& circle = addCircle(Vec3(0.31, -2.7, 0));
    attachTo(3);
    form.choose("Shape:", 6);
    ASSERT_FALSE(overlay.shapes().back()->canAttach());
    overlay.removeShape(&circle);
    delete &circle;
    EXPECT_TRUE(form.field("Attach:").enabled);
    attachBox(false);
    EXPECT_EQ(overlay.attachedPlatformId(), 0u);
    EXPECT_FALSE(form.field("Attach:").enabled) << "there is nothing to attach";
}

TEST_F(HostPickersTest, WhateverEndsChoosingAttachesNothing) {
    write(path("ring.zel"), kCircle);
    host.fileDialogAnswers = {path("ring.zel")};
    const std::vector<std::pair<const char*, std::function<void()>>> ends = {
        {"closed by the window manager",
         [&] { host.find("Select Platform")->closeObserver->onClose(nullptr); }},
        {"the editor closed", [&] { press("Close"); }},
        {"deleted", [&] { press("Delete"); }},
        {"a free drawing", [&] { form.choose("Shape:", 6); }},
        {"loaded",
         [&] {
             messages.clear();
             press("...");
             EXPECT_THAT(messages, ElementsAre(HasSubstr("kept in"))) << "what was not saved";
         }},
        {"nothing left", [&] { press("Delete All"); }}};
    for (const auto& [what, act] : ends) {
        SCOPED_TRACE(what);
        dialog->hide();
        dialog->show();
        EXPECT_EQ(host.grabs, 0) << "shown again, it does not draw at once";
        addCircle(Vec3(0.31, -2.7, 0));
        attachBox(true);
        act();
        EXPECT_FALSE(host.find("Select Platform")->shown);
        EXPECT_FALSE(form.field("Attach:").checked || host.find("Pick")->checked);
        EXPECT_EQ(overlay.attachedPlatformId(), 0u);
    }
}

TEST_F(HostPickersTest, APlatformThatGoesDetachesTheOverlay) {
    const Vec3 center(0.31, -2.7, 0);
    CylinderShape& circle = addCircle(center);
    attachTo(3);
    attachBox(true);
    host.platforms.erase(7);
    dialog->scenarioEntityRemoved(7);
    EXPECT_THAT(messages, ElementsAre(HasSubstr("is gone")));
    EXPECT_THAT(platforms().items, ElementsAre("Alpha", "Mike", "Mike"));
    EXPECT_EQ(circle.attachedPlatformId(), 0u);
    EXPECT_EQ(*circle.centerPt(), center);
    EXPECT_EQ(form.field("Attach:").text.substr(0, 4), "None");
}

}  // namespace
}  // namespace OverlayEditor
