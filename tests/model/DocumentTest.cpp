#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/TestDocument.h"

using Rescue = OverlayEditor::Document::Rescue;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace OverlayEditor {
namespace {

TEST_F(DocumentTest, SavedAndLoadedItIsTheSameAndShownOnce) {
    const std::string file = write("circles.zel", kTwoCircles);
    ASSERT_TRUE(load(file));
    EXPECT_EQ(host.loads, 2) << "each circle once";
    EXPECT_EQ(document->fileName(), file);
    EXPECT_FALSE(overlay.zelId()) << "the host shows nothing of it";
    ASSERT_TRUE(document->save(file));
    const std::string saved = contentsOf(file);
    EXPECT_THAT(saved, HasSubstr("radius 1852.123456789\n"));
    void* const zel = overlay.zelId();
    EXPECT_EQ(zel, shownOf(file));
    EXPECT_FALSE(host.overlays[zel].shown) << "the shapes are drawn in its place";
    ASSERT_TRUE(document->save(file));
    EXPECT_EQ(contentsOf(file), saved);
    EXPECT_EQ(host.overlays.count(zel), 0u) << "what was loaded from the file before is gone";

    // What the host shows of a file is edited in its place, and shown again when it is given up.
    ASSERT_TRUE(clear());
    EXPECT_TRUE(host.overlays[shownOf(file)].shown);
    ASSERT_TRUE(load(file));
    EXPECT_EQ(overlay.zelId(), shownOf(file));
    EXPECT_FALSE(host.overlays[shownOf(file)].shown);
    const std::uint64_t revision = overlay.revision();
    document->setEditing(false);
    EXPECT_TRUE(host.overlays[shownOf(file)].shown);
    document->setEditing(true);
    EXPECT_EQ(overlay.revision(), revision) << "what is only displayed need not be looked at";
    std::filesystem::create_symlink(file, path("link.zel"));
    ASSERT_TRUE(load(path("link.zel")));
    EXPECT_EQ(overlay.zelId(), shownOf(file)) << "by another name, too";
    ASSERT_TRUE(load(file));

    ASSERT_TRUE(document->save(path("copy.zel")));
    EXPECT_EQ(contentsOf(path("copy.zel")), saved);
    EXPECT_TRUE(host.overlays[shownOf(file)].shown);
    EXPECT_FALSE(host.overlays[shownOf(path("copy.zel"))].shown);
    document.reset();
    EXPECT_TRUE(host.overlays[shownOf(path("copy.zel"))].shown);

    // Saving may have been cut short when the host ended last.
    write(".overlayeditor-save-1-1", "half");
    document = std::make_unique<Document>(preferences, overlay);
    EXPECT_FALSE(UTILS::fileIsFile(path(".overlayeditor-save-1-1")));
    EXPECT_TRUE(UTILS::fileIsFile(file));
}

TEST_F(DocumentTest, WhatFailsCostsNothing) {
    const std::string precious = write("precious.zel", kTwoCircles);
    add("Never drawn");
    EXPECT_FALSE(document->save(precious));
    EXPECT_EQ(contentsOf(precious), kTwoCircles);
    addCircle("Mine");
    EXPECT_FALSE(document->save(path("no-such-directory/x.zel")));
    const std::string longName = write(std::string(255, 'n'), "# precious, but no overlay\n");
    EXPECT_FALSE(document->save(longName)) << "there can be no copy";
    EXPECT_EQ(contentsOf(longName), "# precious, but no overlay\n");
    EXPECT_EQ(document->fileName(), "");
    EXPECT_FALSE(load(path("missing.zel")));
    EXPECT_FALSE(load(write("open.zel", "start\n")));
    EXPECT_FALSE(take(document->readOverlay(&host)));
    EXPECT_EQ(overlay.shapes().size(), 2u);
    const std::string newFile = path("no-such-directory/x.zel");
    EXPECT_THAT(messages,
                ElementsAre("Not saved: no shape is complete. " + precious + " is as it was",
                            AllOf(HasSubstr("it does not exist"), HasSubstr(newFile)),
                            HasSubstr("the name is too long"), HasSubstr("it does not exist"),
                            HasSubstr("no valid shapes found"), HasSubstr("the host gave no text")));
    EXPECT_THAT(host.notifications.back(), HasSubstr("open.zel, no valid shapes found"));

    // As large as no file that is read: it could not be kept.
    const std::string huge = write("huge.zel", "#");
    std::filesystem::resize_file(huge, UTILS::kMaxFileSize + 1);
    EXPECT_FALSE(document->save(huge));
    EXPECT_EQ(std::filesystem::file_size(huge), UTILS::kMaxFileSize + 1);
    EXPECT_THAT(messages.back(),
                HasSubstr("cannot be read, so that no copy of it can be kept: It is larger than 1 GiB"));

    messages.clear();
    EXPECT_TRUE(document->save(precious));
    EXPECT_THAT(messages,
                ElementsAre(HasSubstr("is kept as " + precious + "~: it is not the file that is edited"),
                            "Saved in " + precious + ", but for what is not complete: Never drawn"));
    EXPECT_EQ(contentsOf(precious + "~"), kTwoCircles);
    EXPECT_THAT(contentsOf(precious), HasSubstr("3d name Mine"));

    // Saved all the same, and the old one is unloaded.
    first().setName("x");
    host.onCall = [&](FakeHost::Id) { host.refuseAll = !shownOf(precious); };
    EXPECT_TRUE(document->save(precious));
    host.onCall = {};
    host.refuseAll = false;
    EXPECT_THAT(messages.back(), HasSubstr("the host could not load it"));
    EXPECT_FALSE(overlay.zelId());
}

TEST_F(DocumentTest, CopiesWhatItCannotKeepAndWhatOthersWrote) {
    const std::string mixed = kTwoCircles + kBox;
    const std::string file = write("mixed.zel", mixed);
    ASSERT_TRUE(load(file));
    EXPECT_THAT(messages, ElementsAre(file + ": 1 latlonaltbox is kept as it is"));
    write("mixed.zel~", "an older copy");
    messages.clear();
    document->save(file);
    EXPECT_EQ(contentsOf(file), mixed);
    EXPECT_THAT(messages, IsEmpty());
    write("mixed.zel~", mixed);

    // Somebody with a text editor; also of a file that was taken from the host.
    const std::string theirs = block("circle\ncenterlla 1 2 0\nradius 5\n", "Theirs");
    messages.clear();
    write("mixed.zel", theirs);
    document->save(file);
    EXPECT_THAT(contentsOf(file), HasSubstr("Inner"));
    EXPECT_EQ(contentsOf(file + "~2"), theirs);
    EXPECT_THAT(messages, ElementsAre(HasSubstr("kept as " + file + "~2: somebody else has written it")));
    host.overlays[shownOf(file)].text = contentsOf(file);
    ASSERT_TRUE(take(document->readOverlay(shownOf(file))));
    document->save(file);
    EXPECT_FALSE(UTILS::fileIsFile(file + "~3"));
    write("mixed.zel", theirs + "# 2\n");
    document->save(file);
    EXPECT_EQ(contentsOf(file + "~3"), theirs + "# 2\n");

    // What the host shows is older than the file.
    host.overlays[shownOf(file)].text = kTwoCircles;
    write("mixed.zel", theirs);
    messages.clear();
    ASSERT_TRUE(take(document->readOverlay(shownOf(file))));
    EXPECT_THAT(messages.front(), HasSubstr("holds something else than the host shows"));
    EXPECT_FALSE(document->isSaved());
    document->save(file);
    EXPECT_EQ(contentsOf(file + "~4"), theirs);

    std::filesystem::remove(file);
    messages.clear();
    document->save(file);
    EXPECT_THAT(contentsOf(file), HasSubstr("Inner"));
    EXPECT_THAT(messages, IsEmpty());
}

TEST_F(DocumentTest, SaysWhetherThereIsSomethingToSave) {
    const std::string file = write("two.zel", kTwoCircles);
    host.platforms[7].point.latRad = 0.3;
    struct Step {
        const char* what;
        std::function<void()> act;
        bool saved;
    };
    const std::vector<Step> steps = {
        {"nothing", [] {}, true},
        {"loaded", [&] { load(file); }, true},
        {"a radius", [&] { first().setMajorRadius(9260); }, false},
        {"a save that fails", [&] { document->save(path("no/a.zel")); }, false},
        {"saved", [&] { document->save(path("b.zel")); }, true},
        {"a name", [&] { first().setName("x"); }, false},
        {"the old name again", [&] { first().setName("Inner"); }, true},
        {"attached", [&] { document->attach(7, false); }, false},
        {"saved", [&] { document->save(path("b.zel")); }, true},
        {"the platform moves",
         [&] {
             host.platforms[7].point.latRad = 0.31;
             document->followPlatform();
         },
         true},
        {"another order",
         [&] {
             Shape* const shape = &first();
             overlay.removeShape(shape);
             overlay.addShape(shape);
         },
         true},
        {"deleted", [&] { delete &first(); }, false},
        {"loaded", [&] { load(file); }, true},
        {"a kind", [&] { add("New"); }, true},
        {"begun",
         [&] {
             static_cast<CylinderShape&>(*overlay.shapes().back()).setCenter({0.1, 0.2, 0});
         },
         false},
        {"saved without it", [&] { document->save(file); }, false},
        {"all deleted", [&] { clear(); }, true},
        {"one of many", [&] { addCircle("Last"); }, false},
        {"saved", [&] { document->save(path("last.zel")); }, true},
        {"unloaded", [&] { document->overlayRemoved(overlay.zelId()); }, true}};
    for (const auto& [what, act, saved] : steps) {
        act();
        EXPECT_EQ(document->isSaved(), saved) << what;
    }
    EXPECT_THAT(messages, ::testing::Contains("Not complete, and given up: New"));
    EXPECT_THAT(messages.back(), HasSubstr("has unloaded the edited overlay"));
    EXPECT_THAT(rescued(), ::testing::SizeIs(1))
        << "the deleted shape's neighbour; what was begun is no shape";
}

/// What stands in no file is not saved, though nobody changed it.
TEST_F(DocumentTest, TheOnlyCopyIsRescued) {
    host.overlays[&host] = {kTwoCircles, path("deleted.zel"), 0, true};
    ASSERT_TRUE(take(document->readOverlay(&host)));
    EXPECT_FALSE(document->isSaved());
    PIHALVIS::unloadZELFile(&host);
    document->overlayRemoved(&host);
    clear();
    EXPECT_EQ(rescued().size(), 1u);
    const std::string file = write("two.zel", kTwoCircles);
    load(file);
    EXPECT_TRUE(document->isSaved());
    write("two.zel", kTwoCircles + "# theirs\n");
    EXPECT_FALSE(document->isSaved()) << "somebody has written the file";
    write("two.zel", kTwoCircles);
    EXPECT_TRUE(document->isSaved());
    std::filesystem::remove(file);
    EXPECT_FALSE(document->isSaved());
    clear();
    EXPECT_EQ(rescued().size(), 1u) << "the same text is not written twice";
    for (int i = 10; i < 40; ++i)
        write("rescued/Unsaved 2026-01-01 00-00-" + std::to_string(i) + ".zel", "old");
    write("rescued/Unsaved by hand.zel", "mine");
    write("two.zel", offsets("ref 1 2 3\n"));
    load(file);
    std::filesystem::remove(file);
    clear();
    EXPECT_EQ(rescued().size(), 21u) << "the twenty newest, and what is none";
    EXPECT_THAT(contentsOf(document->rescueFile()), HasSubstr("Leg"));
}

/// Open somebody's file, change one number, save: the diff is one line.
TEST_F(DocumentTest, KeepsWhatItCannotEdit) {
    const std::string picture =
        "start\n# kml_groundoverlay\n# kml_icon a.png\n# kml_latlonbox 4 3 2 1 0\nend\n";
    const std::string ring =
        "# Of the ring\nstart\n  Circle  # no entry\n  centerll 21:18:36N 157:51:30W\n  radius\t2 # about\n"
        "rangeunits nm\nlinestyle dashed\nextrude true 50\nfoo bar\nend\n";
    const std::string singles = "\nstart\npoints\nll 1 2\nll 3 4\noff\nend";
    const std::string text =
        "// Harbour office\n\n" + ring + kBox + "\n" + picture + "start\nfoo\nend\n" + singles;
    const std::string file = write("harbour.zel", text);
    host.platforms[7].point.latRad = 0.3;
    ASSERT_TRUE(load(file));
    EXPECT_EQ(messages.back(),
              file + ": 1 latlonaltbox, 1 imageoverlay and 1 block with errors are kept as they are");
    // The host draws them while it does not show the file.
    const auto shown = [&](const std::string& what) -> const FakeHost::Overlay* {
        for (const auto& [handle, zel] : host.overlays)
            if (zel.path.empty() && zel.text.find(what) != std::string::npos) return &zel;
        return nullptr;
    };
    ASSERT_TRUE(shown("latlonaltbox"));
    EXPECT_TRUE(shown("kml_icon a.png"));
    EXPECT_EQ(shown("latlonaltbox")->platform, 0u);
    document->setEditing(false);
    EXPECT_FALSE(shown("latlonaltbox"));
    document->setEditing(true);
    document->attach(7, false);
    EXPECT_EQ(shown("latlonaltbox")->platform, 7u);
    document->attach(0, false);
    EXPECT_FALSE(overlay.shapes().back()->shown());

    first().setMajorRadius(2.5 * 1852);
    EXPECT_THAT(shown("circle\n")->text, AllOf(HasSubstr("linestyle dashed"), HasSubstr("extrude true")));
    EXPECT_FALSE(document->isSaved());
    messages.clear();
    EXPECT_TRUE(document->save(file));
    std::string wanted = text;
    wanted.replace(wanted.find("\t2 #"), 4, "\t2.5 #");
    EXPECT_EQ(contentsOf(file), wanted);
    EXPECT_THAT(messages, IsEmpty()) << "nothing is lost, and nothing copied";
    // What is undone is no change, also of what was saved meanwhile.
    first().setMajorRadius(2.0 * 1852);
    EXPECT_FALSE(document->isSaved());
    document->save(file);
    EXPECT_EQ(contentsOf(file), text);

    // Single points are lines as soon as one of them is another one; hidden or shown they stay points.
    overlay.shapes().back()->setShown(true);
    EXPECT_FALSE(document->isSaved());
    EXPECT_EQ(document->text(), text.substr(0, text.size() - 7) + "end");
    EXPECT_THAT(messages, IsEmpty());
    overlay.shapes().back()->setName("Singles");
    EXPECT_FALSE(document->isSaved());
    EXPECT_THAT(messages, ElementsAre("\"Singles\" is changed: it becomes a line through all of its points"));
    document->save(file);
    EXPECT_THAT(contentsOf(file), HasSubstr("\nstart\nline\nll 1 2\nll 3 4\n3d name Singles\nend"));
    EXPECT_EQ(contentsOf(file + "~"), text);

    // A new shape follows, a deleted one takes its comment along.
    add("New").setCenter({0.1, 0.2, 0});
    static_cast<CylinderShape&>(*overlay.shapes().back()).setMajorRadius(5);
    delete &first();
    document->save(file);
    EXPECT_TRUE(contentsOf(file).starts_with(
        "// Harbour office\n\nstart\naltitudeunits m\nrangeunits m\nlatlonaltbox"));
    EXPECT_THAT(contentsOf(file), HasSubstr("end\n\nstart\ncircle\nlinewidth"));
    clear();
    EXPECT_FALSE(shown("latlonaltbox"));
}

/// Deleting the last shape of a file is an edit like others, and the only way to an empty file.
TEST_F(DocumentTest, TheLastShapeOfAFileCanBeDeleted) {
    const std::string bare = kTwoCircles.substr(kTwoCircles.find("start"));
    int number = 0;
    for (const std::string& text : {kTwoCircles, bare, "# note\n" + bare}) {
        const std::string file = write(std::to_string(++number) + ".zel", text);
        for (int i = 0; i < 2; ++i) host.overlays[&host + i] = {text, file, 0, true};
        EXPECT_FALSE(document->save(file)) << "nothing was loaded from it";
        ASSERT_TRUE(take(document->readOverlay(&host)));
        overlay.clearShapes(false);
        EXPECT_FALSE(document->isSaved());
        messages.clear();
        EXPECT_TRUE(document->save(file));
        EXPECT_TRUE(document->save(file)) << "no copy of nothing";
        EXPECT_THAT(messages, ElementsAre(HasSubstr("is kept as " + file + "~: its last shape is deleted")));
        EXPECT_EQ(contentsOf(file), number < 3 ? "version 2\n\n" : "# note\n\n") << "of the whole file";
        EXPECT_EQ(contentsOf(file + "~"), text);
        EXPECT_THAT(host.overlays, IsEmpty());
        EXPECT_TRUE(document->isSaved());
        EXPECT_FALSE(document->save(path("other.zel")));
        clear();
        EXPECT_TRUE(load(file));
        EXPECT_EQ(document->fileName(), file);
        clear();
    }
}

/// Two editors and a text editor: what came in between looking at a file and replacing it is kept.
TEST_F(DocumentTest, WhatOthersWriteWhileItIsSavedIsKept) {
    const std::string file = write("two.zel", kTwoCircles);
    ASSERT_TRUE(load(file));
    first().setName("x");
    // The host is called after the file was looked at.
    host.onCall = [&](FakeHost::Id id) {
        if (id == FakeHost::Id::RegistrySetValue) write("two.zel", "theirs");
    };
    EXPECT_TRUE(document->save(file));
    EXPECT_EQ(contentsOf(file + "~"), "theirs");
    EXPECT_THAT(messages.back(), HasSubstr("kept as " + file + "~: somebody else has written it"));
    first().setName("y");
    host.onCall = [&](FakeHost::Id id) {
        if (id == FakeHost::Id::RegistrySetValue) std::filesystem::remove(file);
    };
    EXPECT_TRUE(document->save(file));
    host.onCall = {};
    EXPECT_THAT(contentsOf(file), HasSubstr("3d name y"));
}

/// What reads like nothing but its errors says so five times, not three hundred.
TEST_F(DocumentTest, AFileThatIsNoOverlayIsToldInAFewWords) {
    std::string points;
    for (int i = 0; i < 300; ++i) points += "21.3 -158 0\n";
    EXPECT_FALSE(load(write("coast.ll", points)));
    EXPECT_THAT(messages, ::testing::SizeIs(7));
    EXPECT_THAT(messages[5], HasSubstr("295 more lines"));
    EXPECT_THAT(messages[6], HasSubstr("is no ZEL file, and the editor edits no others"));
}

TEST_F(DocumentTest, SaysInWordsWhatSavingWouldDo) {
    const std::string file = write("two.zel", kTwoCircles);
    host.platforms[7].header.name = "Ship";
    load(file);
    EXPECT_EQ(document->changes(), "None");
    first().setShown(false);
    EXPECT_EQ(document->changes(), "Not saved; hidden: Inner");
    first().setShown(true);
    CylinderShape& fresh = add("New");
    EXPECT_EQ(document->changes(), "None; not complete: New");
    std::filesystem::remove(file);
    EXPECT_EQ(document->changes(), "Not saved; the file is gone; not complete: New");
    std::filesystem::create_symlink(file, file);
    EXPECT_THAT(document->changes(), HasSubstr("; the file cannot be read: the links lead in a circle"));
    std::filesystem::remove(file);
    write("two.zel", "theirs");
    EXPECT_EQ(document->changes(), "Not saved; somebody else has written the file; not complete: New");
    std::filesystem::resize_file(file, UTILS::kMaxFileSize + 1);
    EXPECT_THAT(document->changes(), HasSubstr("; the file cannot be read: It is larger than"));
    fresh.setCenter({0.1, 0.2, 0});
    write("two.zel", "theirs");
    document->attach(7, false);
    EXPECT_EQ(document->changes(),
              "Not saved; somebody else has written the file; positions become offsets "
              "from Ship; not complete: New");
    std::filesystem::remove(file);
    document->save(file);
    document->attach(0, false);
    EXPECT_EQ(document->changes(), "Not saved; offsets become positions; not complete: New");
    // Places stay places where the host shows them about a platform.
    host.overlays[&host] = {kTwoCircles, write("three.zel", kTwoCircles), 7, true};
    take(document->readOverlay(&host));
    document->attach(0, false);
    EXPECT_EQ(document->changes(), "Not saved; shown on no platform");
}

/// Back at an overlay in whose file another one was saved meanwhile.
TEST_F(DocumentTest, WhatTheUserSavedIsNobodyElses) {
    clear();
    document->history().commit();
    EXPECT_FALSE(document->history().canUndo()) << "there was nothing to be given up";
    const std::string file = write("two.zel", kTwoCircles);
    std::filesystem::create_symlink(file, path("link.zel"));
    load(file);
    load(write("other.zel", kBox + block("circle\ncenterlla 1 2 0\nradius 5\n", "Other")));
    document->save(path("link.zel"));
    document->undo();
    EXPECT_EQ(document->changes(), "Not saved; you have saved something else in the file");
    first().setName("x");
    const std::string other = contentsOf(file);
    document->save(file);
    EXPECT_THAT(messages.back(), HasSubstr(file + "~: you have saved something else in it meanwhile"));
    EXPECT_EQ(contentsOf(file + "~"), other);
    write("two.zel", other);
    EXPECT_EQ(document->changes(), "Not saved; somebody else has written the file");
}

TEST_F(DocumentTest, RescuesWhatIsNotSavedBeforeItIsGivenUp) {
    const std::string file = write("two.zel", kTwoCircles);
    load(file);
    load(file);
    EXPECT_THAT(rescued(), IsEmpty()) << "nothing changed";
    addCircle("Mine");
    load(file);
    ASSERT_EQ(rescued().size(), 1u);
    EXPECT_THAT(messages.back(), HasSubstr(rescued().front()));
    EXPECT_THAT(contentsOf(rescued().front()), HasSubstr("3d name Mine\n"));
    addCircle("Another");
    clear();
    EXPECT_EQ(rescued().size(), 2u) << "a second one within the second gets a name of its own";

    // Where it cannot be written the shapes stay.
    host.settings["AutoSaveZelDir"] = write("occupied", "a file where the directory should be");
    CylinderShape& mine = addCircle("Mine");
    messages.clear();
    EXPECT_FALSE(clear());
    EXPECT_FALSE(load(file));
    EXPECT_THAT(overlay.shapes(), ElementsAre(&mine));
    EXPECT_THAT(messages,
                ElementsAre(HasSubstr("they stay in the editor"), HasSubstr("they stay in the editor")));
    EXPECT_TRUE(document->rescue(Rescue::OrGiveUp));
    EXPECT_THAT(messages, ::testing::SizeIs(3)) << "one message: nothing that is not true any more";
    EXPECT_THAT(messages.back(), HasSubstr("they are given up without a rescue file, and Undo brings"));
    // At the end of the host any place is better than none.
    std::filesystem::create_directory(path("temporary"));
    const ScopedVariable elsewhere("TMPDIR", path("temporary"));
    EXPECT_TRUE(document->rescue(Rescue::AtEnd));
    EXPECT_THAT(messages.back(), HasSubstr("are kept in " + path("temporary/Unsaved ")));
    ASSERT_EQ(filesIn("temporary").size(), 1u);
    EXPECT_THAT(contentsOf(filesIn("temporary").front()), HasSubstr("Mine"));
}

}  // namespace
}  // namespace OverlayEditor
