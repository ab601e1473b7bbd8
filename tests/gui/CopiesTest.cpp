#include <memory>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "geo/Sodano.h"
#include "gui/TestDialog.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace OverlayEditor {
namespace {

/// The texts that the host shows, without the names.
std::multiset<std::string> shownTexts(const FakeHost& host) {
    std::multiset<std::string> texts;
    for (const auto& [handle, zel] : host.overlays) {
        const std::size_t name = zel.text.find("3d name ");
        const std::size_t end = zel.text.find('\n', name);
        texts.insert(zel.text.substr(0, name) + zel.text.substr(end));
    }
    return texts;
}

TEST_F(OverlayEditorDialogTest, ACopyStandsByTheGivenNumbersAndIsOneStep) {
    // It says more than the editor has fields for.
    write(path("a.zel"),
          "start\ncircle\ncenterxyz 100.1 0.1 0\nradius 3.3\nrangeunits nm\nmode 2d\n3d name Bay 7\nend\n");
    host.fileDialogAnswers = {path("a.zel")};
    host.platforms[7] = {{7, "Ship", ""}, {.latRad = 1.1, .lonRad = 3.1415}};
    dialog->show();
    press("...");
    for (const bool attached : {false, true}) {
        select(0);
        unsigned long platform = 7;
        if (attached) dialog->onCmdAttach(nullptr, &platform);
        press("Duplicate");
        EXPECT_EQ(form.field("Name:").text, attached ? "Bay 2" : "Bay 1");
        ASSERT_EQ(host.overlays.size(), attached ? 3u : 2u);
        EXPECT_EQ(shownTexts(host).count(*shownTexts(host).begin()), host.overlays.size());
        EXPECT_EQ(overlay.shapes().back()->placed().given(), overlay.shapes()[0]->placed().given());
    }
    press("Undo");
    EXPECT_THAT(list().items, ElementsAre("Bay 7", "Bay 1"));
    press("Redo");
    form.type("Radius:", "5 nm");
    EXPECT_EQ(shownTexts(host).count(*shownTexts(host).begin()), 2u) << "a shape of its own";
    form.check("Draw:", false);
    press("Duplicate");
    EXPECT_EQ(host.overlays.size(), 2u) << "hidden as it is";
}

TEST_F(OverlayEditorDialogTest, RingsCountInTheUsersUnitFromWhatTheyLieAbout) {
    host.platforms[7] = {{7, "Ship", ""},
                         {.latRad = 64 * kRadiansPerDegree, .lonRad = 179.95 * kRadiansPerDegree}};
    dialog->show();
    unsigned long platform = 7;
    dialog->onCmdAttach(nullptr, &platform);
    press("Rings...");
    EXPECT_EQ(form.text("X:"), "0.00 m") << "on the ship";
    form.type("First:", "185.2");
    form.type("Step:", "0.1 nm");
    form.choose("Count:", 10);
    press("OK\tMake the rings");
    const auto shapes = overlay.shapes();
    ASSERT_EQ(shapes.size(), 20u);
    EXPECT_EQ(list().items[4], "Ring 0.3 nm");
    EXPECT_EQ(list().items[5], "0.3 nm");
    const Vec3 ship(64 * kRadiansPerDegree, 179.95 * kRadiansPerDegree, 0);
    for (std::size_t i = 0; i < 20; i += 2) {
        const auto& ring = static_cast<CylinderShape&>(*shapes[i]);
        const double radius = 185.2 * static_cast<double>(i / 2 + 1);
        EXPECT_NEAR(ring.majorAxis(), radius, 1e-9);
        EXPECT_EQ(ring.placed().given(), std::vector{Vec3()});
        const Vec3 label = static_cast<AnnotationShape&>(*shapes[i + 1]).position();
        EXPECT_NEAR(halCore::Sodano::inverse(ship, label).distance, radius, 1e-3);
    }
    EXPECT_EQ(form.field("Name:").text, "Ring 1 nm");
    form.choose("Rng:", 6);
    press("Rings...");
    form.choose("Count:", 101);
    form.type("Step:", "10000");
    press("OK\tMake the rings");
    EXPECT_THAT(messages.back(), HasSubstr("No rings are made: Count: "));
    form.choose("Count:", 3);
    press("OK\tMake the rings");
    EXPECT_THAT(messages.back(), HasSubstr("20000.1 nm: this reaches round more than half"));
    press("Undo");
    EXPECT_TRUE(overlay.shapes().empty());
}

TEST_F(OverlayEditorDialogTest, AStyleGoesToItsKindOrToAllInOneStep) {
    dialog->show();
    addCircle(1, 2, 500);
    add(4);
    form.type("Lat:", "1");
    add(2);
    auto& model = addCircle(3, 4, 500);
    form.choose("Line Width: ", 7);
    form.check("Filled:", true);
    form.choose("Line Color:", static_cast<double>(0x102030FF));
    FakeHost::Widget* style = nullptr;
    for (auto& [handle, widget] : host.widgets)
        if (widget.caption.starts_with("Same style for all")) style = &widget;
    const auto at = [this](std::size_t i) { return static_cast<CylinderShape*>(overlay.shapes()[i]); };
    for (const double choice : {1.0, 2.0}) {
        style->number = choice;
        host.activate(*style);
        EXPECT_EQ(style->number, 0.0);
        EXPECT_EQ(at(0)->lineColor(), 0x102030FFu);
        EXPECT_EQ(at(0)->lineWidth(), 7);
        EXPECT_TRUE(at(0)->filled());
        EXPECT_EQ(at(2)->lineColor() == 0x102030FFu, choice == 2.0) << "a sphere";
        EXPECT_EQ(static_cast<AnnotationShape*>(overlay.shapes()[1])->color() == 0x102030FFu, choice == 2.0);
        EXPECT_EQ(at(0)->majorAxis(), model.majorAxis());
        press("Undo");
        EXPECT_EQ(at(0)->lineWidth(), 2);
        EXPECT_FALSE(at(0)->filled());
    }
}

}  // namespace
}  // namespace OverlayEditor
