#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "model/Document.h"
#include "model/LostWatch.h"
#include "model/RandomShapes.h"
#include "model/ShapeCopies.h"
#include "pi/EntryScope.h"
#include "support/Child.h"
#include "support/FakeHost.h"
#include "support/TemporaryDirectory.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace OverlayEditor {
namespace {

using halCore::Vec3;

/// An editor in a host of its own, which may end without a word.
struct Session {
    explicit Session(const std::string& directory) {
        host.eye = Vec3(0.4, -2.7, 1e6);
        host.settings["AutoSaveZelDir"] = directory;
        host.platforms[7].header.name = "Ship";
        host.platforms[7].point.latRad = 0.3;
        document = std::make_unique<Document>(preferences, overlay);
        document->setEditing(true);
    }
    template <typename Action>
    void act(Action action) {
        const EntryScope entry;
        document->history().begin(History::Gesture::Command);
        action();
    }
    void addCircle() {
        RandomShapes random(preferences);
        const Vec3 near(0.3, 0.0, 0.0);
        overlay.addShape(random.make(0, &near).release());
    }
    /// A second goes by.
    void wait() {
        for (int i = 0; i < 1000 && !host.timeouts.empty(); ++i) host.fireTimeouts();
    }
    std::vector<ShapeState> states() const {
        std::vector<ShapeState> states;
        for (const Shape* shape : overlay.shapes()) states.push_back(*shape->state());
        return states;
    }

    FakeHost host;
    Preferences preferences;
    Overlay overlay;
    std::unique_ptr<Document> document;
};

class JournalTest : public ::testing::Test {
  protected:
    std::vector<std::string> journals() const {
        std::vector<std::string> paths;
        for (const auto& entry : std::filesystem::directory_iterator(directory.path()))
            if (entry.path().filename().string().starts_with(".overlayeditor-"))
                paths.push_back(entry.path());
        return paths;
    }
    /// What another process leaves that dies in the midst of a session.
    template <typename Life>
    void die(Life life) {
        const pid_t child = ::fork();
        if (child == 0) {
            Session session(directory.path());
            life(session);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_EQ(status, 0);
    }

    /// A life in which circles are added.
    static auto circles(int count) {
        return [count](Session& session) {
            session.act([&] { session.document->attach(7, false); });
            for (int i = 0; i < count; ++i) {
                session.act([&] { session.addCircle(); });
                session.wait();
            }
        };
    }
    std::string path(const char* name) const { return directory.path() + "/" + name; }
    template <typename Action>
    static std::vector<std::string> saidBy(Action action) {
        std::vector<std::string> said;
        halNotify::setNotifyLevel(halNotify::Warning);
        halNotify::setNotifyHandler(
            [&](halNotify::Severity, const std::string& text) { said.push_back(text); });
        action();
        halNotify::setNotifyHandler(halNotify::Handler());
        return said;
    }

    halNotify::Silence silence;
    TemporaryDirectory directory;
};

TEST_F(JournalTest, WhatADeadHostHadIsRecoveredToTheDigit) {
    const auto draw = [&](Session& session) {
        session.act([&] { session.document->attach(7, false); });
        RandomShapes random(session.preferences);
        const Vec3 near(0.3, 0.0, 0.0);
        for (int kind = 0; kind < RandomShapes::kKinds; ++kind)
            session.act([&] { session.overlay.addShape(random.make(kind, &near).release()); });
        session.act(
            [&] { session.overlay.addShape(new CylinderShape(session.preferences, CylinderShape::Arc)); });
        session.act([&] {
            auto* const line = new PolygonShape(session.preferences, PolygonShape::Line);
            for (int i = 0; i < 20000; ++i) line->addPoint(Vec3(0.3, 1e-6 * i, 0.0));
            session.overlay.addShape(line);
        });
        session.wait();
        // Of a long line only what has changed is written.
        const auto size = std::filesystem::file_size(journals().at(0));
        auto* const line = dynamic_cast<PolygonShape*>(session.overlay.shapes().back());
        session.act([&] { line->setPointAtIndex(10000, Vec3(0.31, 0.0, 5.0)); });
        session.act([&] { line->deletePointAtIndex(10100); });
        session.act([&] { session.overlay.shapes().front()->setName("Renamed"); });
        session.act([&] { delete session.overlay.shapes()[3]; });
        session.wait();
        if (std::filesystem::file_size(journals().at(0)) > size + 5000) ::_exit(2);
        struct stat info {};
        if (::stat(journals().at(0).c_str(), &info) != 0 || (info.st_mode & 0777) != 0600) ::_exit(3);
        // While its process lives nobody takes it.
        if (!abandonedJournals().empty()) ::_exit(4);
    };
    die(draw);
    ASSERT_EQ(journals().size(), 1U);
    Session next(directory.path());
    auto lost = next.document->findLost();
    ASSERT_TRUE(lost);
    EXPECT_FALSE(lost->contents.damaged);
    EXPECT_EQ(lost->contents.shapes.size(), 17U);
    EXPECT_EQ(lost->contents.shapes.begin()->second->name, "Renamed");
    std::vector<ShapeState> expected;
    for (const auto& [number, state] : lost->contents.shapes) expected.push_back(*state);
    next.act([&] { next.document->recover(std::move(*lost)); });
    EXPECT_EQ(next.overlay.attachedPlatformId(), 7U);
    EXPECT_TRUE(next.states() == expected);
    EXPECT_EQ(dynamic_cast<PolygonShape*>(next.overlay.shapes().back())->getNumPoints(), 19999U);
    EXPECT_FALSE(next.document->isSaved());

    // Until it is written again the old one stays; saving ends both.
    EXPECT_EQ(journals().size(), 1U);
    next.wait();
    EXPECT_EQ(journals().size(), 1U);
    EXPECT_TRUE(abandonedJournals().empty());
    next.act([&] { next.overlay.shapes().back()->setName("Long"); });
    next.act([&] { next.document->save(directory.path() + "/saved.zel"); });
    EXPECT_THAT(journals(), ::testing::IsEmpty());
    next.act([&] { next.document->undo(); });
    next.wait();
    EXPECT_EQ(journals().size(), 1U) << "undone, the file does not hold it";
    next.act([&] { next.document->redo(); });
    EXPECT_EQ(journals().size(), 0U);
}

/// Of a file that nobody touched meanwhile all is written as it would have been, also what waits for a place;
/// and so is what copies and turned shapes have of their blocks, when the file is another one.
TEST_F(JournalTest, WhatIsRecoveredIsWrittenAsItWouldHaveBeen) {
    const std::string file = path("file.zel");
    std::string text = "start\nannotation A # b\nend\nstart\ncircle\nend\n";
    for (const char* const kind : {"line\nll 1 2\nll 3 4\nll 3 5\nll 3 6\ntessellate rl",
                                   "polygon\nxy 1 2\nxy 3 4\nxy 5 1\nlinestyle dashed",
                                   "ellipse\ncenterll 1 2\nmajoraxis 700\nminoraxis 300",
                                   "cylinder\ncenterll 1 2\nradius 7\nheight 9\noutline true",
                                   "orbit\ncenterll 1 2\ncenterll2 1 3\nradius 70",
                                   "annotation A_B\nll 1 2\npriority 3\ntextoutlinethickness thick"})
        text.append("start\n# of it\n")
            .append(kind)
            .append(
                "\naltitudeunits ft\nrangeunits nm\naltitudemode relativetoground\ndepthbuffer false\n"
                "3d offsetalt 100.7\n3d follow cp\n3d offsetpitch 12.3\nscale 1 2 3.3\nend\n");
    for (const bool meanwhile : {false, true}) {
        std::ofstream(file) << text;
        die([&](Session& session) {
            session.act([&] { session.document->take(session.document->readFile(file)); });
            const auto shapes = session.overlay.shapes();
            for (const Shape* shape : shapes)
                session.act(
                    [&] { session.overlay.addShape(copyOf(*shape, "Copy of " + shape->name()).release()); });
            for (Shape* shape : session.overlay.shapes())
                if (dynamic_cast<CylinderShape*>(shape)) session.act([&] { shape->setHeading(0.7); });
            session.act([&] { shapes.back()->setName("B"); });
            session.wait();
            if (meanwhile)
                for (Shape* shape : shapes) delete shape;
            std::ofstream(path("expected")) << session.document->text();
        });
        if (meanwhile) std::ofstream(file) << "start\ncircle\nend\n";
        Session next(directory.path());
        next.act([&] { next.document->recover(*next.document->findLost()); });
        if (meanwhile)
            for (std::size_t held = next.overlay.shapes().size() / 2; held-- > 0;)
                delete next.overlay.shapes().front();
        std::string expected;
        ASSERT_EQ(UTILS::readFile(path("expected"), expected), "");
        const std::string recovered = next.document->text();
        EXPECT_EQ(recovered.substr(recovered.find("start")), expected);
        EXPECT_THAT(next.document->changes(), StartsWith("Not saved"));
        for (const std::string& left : journals()) std::filesystem::remove(left);
    }
}

TEST_F(JournalTest, DamagedOnesGiveWhatCanBeReadAndSeveralComeNewestFirst) {
    die(circles(3));
    const std::string first = journals().at(0);
    std::filesystem::last_write_time(first,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    die(circles(5));
    Session next(directory.path());
    auto newest = next.document->findLost();
    ASSERT_TRUE(newest);
    EXPECT_EQ(newest->contents.shapes.size(), 5U);
    auto oldest = next.document->findLost();
    ASSERT_TRUE(oldest);
    EXPECT_EQ(oldest->contents.shapes.size(), 3U) << "the other one is held";
    EXPECT_FALSE(next.document->findLost());

    // Whatever byte is broken, and wherever it ends, the rest is read.
    std::ifstream file(newest->file->path(), std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(file)), {});
    RandomShapes random(next.preferences);
    for (int i = 0; i < 2000; ++i) {
        std::string text = whole;
        const auto at = static_cast<std::size_t>(random.integer(0, static_cast<int>(whole.size()) - 1));
        if (random.maybe())
            text.resize(at);
        else
            text[at] = static_cast<char>(text[at] ^ (1 << random.integer(0, 7)));
        const JournalContents read = readJournal(text);
        EXPECT_GE(read.shapes.size() + 1, text.size() == whole.size() ? 5U : 0U);
        EXPECT_LE(read.shapes.size(), 5U);
        for (const auto& [number, state] : read.shapes)
            EXPECT_TRUE(*state == *newest->contents.shapes.at(number));
    }

    // What cannot be read at all is kept, twenty of it, and not offered for ever.
    for (int i = 0; i < 25; ++i)
        std::ofstream(path((".overlayeditor-journal-1-" + std::to_string(i)).c_str()))
            << "of another version";
    EXPECT_FALSE(next.document->findLost());
    EXPECT_TRUE(abandonedJournals().empty());
    EXPECT_EQ(std::ranges::distance(std::filesystem::directory_iterator(directory.path())), 22);
}

/// Whatever has a journal's name; what the user has no right to is still the user's.
TEST_F(JournalTest, OddOnesStopNobody) {
    die(circles(1));
    const std::string journal = journals().at(0);
    std::filesystem::create_directory(path(".overlayeditor-journal-1-0"));
    std::filesystem::create_symlink(journal, path(".overlayeditor-journal-1-1"));
    std::ofstream(path(".overlayeditor-journal-1-2")) << "huge";
    std::filesystem::resize_file(path(".overlayeditor-journal-1-2"), UTILS::kMaxFileSize + 1);
    // It is the newest, also where the clock stands still for some milliseconds.
    std::filesystem::last_write_time(path(".overlayeditor-journal-1-2"),
                                     std::filesystem::file_time_type::clock::now() + std::chrono::seconds(1));
    std::ofstream(path(".overlayeditor-journal-1-3"));
    for (const auto& each : {directory.path(), journal, path(".overlayeditor-journal-1-2")})
        EXPECT_EQ(::geteuid() == 0 ? ::chown(each.c_str(), kNobody, kNobody) : 0, 0);
    ASSERT_EQ(::chmod(journal.c_str(), 0), 0);
    EXPECT_THAT(
        inChild([&]() -> std::string {
            if (!becomeNobody()) return "still root";
            Session next(directory.path());
            std::string told;
            const auto said = saidBy([&] {
                if (const auto lost = next.document->findLost()) told = lost->names();
            });
            for (const std::string& text : said) told += "; " + text;
            return told + (journalsAreHeld() ? "; held" : "");
        }),
        ::testing::MatchesRegex("Shape_[^;]*; A journal of unsaved shapes cannot be read: It is larger "
                                "than 1 GiB, the most that is read\\. It is kept as "
                                ".*/overlayeditor-journal-1-2-[0-9]*"));
}

/// Hosts number platforms anew, and may have none yet: offsets stay, and go to the platform when it is there.
TEST_F(JournalTest, WithoutItsPlatformItCountsFromWhereThatWas) {
    die(circles(2));
    Session like(path("like"));
    circles(2)(like);
    const auto expected = like.states();
    die([&](Session& session) {
        session.host.platforms.clear();
        const auto said =
            saidBy([&] { session.act([&] { session.document->recover(*session.document->findLost()); }); });
        if (said.size() != 1 || !said[0].starts_with("Ship is not there:")) ::_exit(2);
        if (!(session.states() == expected)) ::_exit(3);
        session.wait();
    });
    Session next(directory.path());
    next.host.platforms[9] = next.host.platforms.extract(7).mapped();
    next.act([&] { next.document->recover(*next.document->findLost()); });
    EXPECT_EQ(next.overlay.attachedPlatformId(), 9U);
    EXPECT_TRUE(next.states() == expected);

    // Saved meanwhile, the file has them where they are seen; of one that went with the platform there is a
    // copy. Attached to it, they go with it as ever.
    const std::string file = path("ship.zel");
    die([&](Session& session) {
        circles(2)(session);
        session.act([&] { session.document->save(file); });
        session.act([&] { session.addCircle(); });
        session.wait();
    });
    std::string loose;
    UTILS::readFile(file, loose);
    Session third(directory.path());
    auto ship = third.host.platforms.extract(7);
    const std::vector<std::string> said = saidBy([&] {
        third.act([&] { third.document->recover(*third.document->findLost()); });
        EXPECT_EQ(third.document->changes(), "Not saved; offsets count from where Ship was");
        third.act([&] { EXPECT_TRUE(third.document->save(file) && third.document->save(file)); });
        EXPECT_EQ(third.document->changes(), "None; offsets count from where Ship was");
    });
    EXPECT_THAT(said,
                ElementsAre(StartsWith("Ship is not there"),
                            "The old " + file + " is kept as " + file + "~: its offsets count from Ship",
                            HasSubstr("count from where Ship was: attach"), HasSubstr("where Ship was")));
    std::string kept;
    UTILS::readFile(file + "~", kept);
    EXPECT_EQ(kept, loose);
    UTILS::readFile(file, kept);
    PointConverter nowhere;
    const LoadResult saved = loadOverlayText(kept, file, third.preferences, &nowhere, 0);
    EXPECT_TRUE(saved.shapes.size() == 3 && !saved.fromNowhere && saved.reference);
    EXPECT_NEAR(saved.reference.value_or(Vec3()).lat(), 0.3, 1e-14);
    third.host.platforms.insert(std::move(ship));
    third.act([&] { third.document->attach(7, false); });
    EXPECT_EQ(third.document->changes(), "Not saved; offsets count from Ship");
    EXPECT_TRUE(third.document->text().starts_with(loose));
}

TEST_F(JournalTest, WhoeverStillDiesIsWaitedForButNotForEver) {
    die(circles(1));
    Session next(directory.path());
    int found = 0;
    for (const bool dies : {true, false}) {
        const UTILS::Descriptor other(::open(journals().at(0).c_str(), O_RDONLY));
        ::flock(other.get(), LOCK_EX);
        const LostWatch watch([&] { ++found; });
        for (int i = 0; i < 5; ++i) next.host.fireTimeouts();
        EXPECT_EQ(found, dies ? 0 : 1);
        if (dies) ::flock(other.get(), LOCK_UN);
        for (int i = 0; i < 30; ++i) next.host.fireTimeouts();
        EXPECT_EQ(found, 1);
        EXPECT_THAT(next.host.timeouts, ::testing::IsEmpty());
    }
}

TEST_F(JournalTest, WhatIsDiscardedOrTakenBackIsInARescueFile) {
    die(circles(3));
    std::filesystem::copy(journals().at(0), path(".overlayeditor-journal-1-0"));
    Session next(directory.path());
    auto lost = next.document->findLost();
    ASSERT_TRUE(next.document->discard(*lost));
    const std::string discarded = next.document->rescueFile();
    EXPECT_TRUE(next.overlay.shapes().empty() && next.host.overlays.empty()) << "nothing is shown of it";
    next.act([&] { next.document->recover(std::move(*next.document->findLost())); });
    next.wait();
    next.act([&] { next.document->undo(); });
    EXPECT_EQ(next.document->rescueFile(), discarded) << "the same text";
    EXPECT_NE(discarded, "");
    EXPECT_THAT(journals(), ::testing::IsEmpty());
    next.act([&] { next.document->redo(); });
    next.wait();
    EXPECT_EQ(next.overlay.shapes().size(), 3U);
    EXPECT_EQ(journals().size(), 1U);
    while (!next.overlay.shapes().empty()) next.act([&] { delete next.overlay.shapes().front(); });
    EXPECT_THAT(journals(), ::testing::IsEmpty()) << "there is nothing to recover";
}

TEST_F(JournalTest, IsWrittenWhileAFileIsChosenAndFoundWhereverItIs) {
    die([this](Session& session) {
        session.host.onCall = [&](FakeHost::Id service) {
            if (service == FakeHost::Id::FileDialog) session.wait();
        };
        session.act([&] { session.addCircle(); });
        session.act([&] {
            PICommon::showFileLoadDialog({});
            if (journals().size() != 1) ::_exit(2);
        });
        std::ofstream(path("settings")) << session.host.settings["OverlayEditorJournalDirectory"];
    });
    Session next(directory.path() + "/another");
    std::getline(std::ifstream(path("settings")), next.host.settings["OverlayEditorJournalDirectory"]);
    EXPECT_TRUE(next.document->findLost());
}

}  // namespace
}  // namespace OverlayEditor
