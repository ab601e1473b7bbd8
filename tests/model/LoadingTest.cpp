#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Notify.h"
#include "model/Document.h"
#include "model/RandomFiles.h"
#include "model/RandomShapes.h"
#include "pi/EntryScope.h"
#include "support/FakeHost.h"
#include "support/TemporaryDirectory.h"

namespace OverlayEditor {
namespace {

using halCore::Vec3;

/// An editor in a host of its own, and all that can be seen of it.
struct Session {
    explicit Session(const std::string& directory) {
        host.eye = Vec3(0.4, -2.7, 1e6);
        host.settings["AutoSaveZelDir"] = directory;
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
        document = std::make_unique<Document>(preferences, overlay);
        document->setEditing(true);
    }
    ~Session() {
        document.reset();
        halNotify::setNotifyHandler({});
    }
    template <typename Action>
    void act(Action action, int turns = 1000) {
        {
            const EntryScope entry;
            document->history().begin(History::Gesture::Command);
            action();
        }
        for (int i = 0; i < turns && !host.timeouts.empty(); ++i) host.fireTimeouts();
    }
    void load(const std::string& text) {
        act([&] { document->take(document->read(text, "one.zel")); });
    }

    struct Seen {
        std::string text;
        std::string changes;
        std::string fileName;
        std::vector<std::string> names;
        std::multiset<std::string> displayed;
        std::vector<Vec3> references;
        std::size_t steps = 0;
        std::string undoName;
        std::size_t widgets = 0, observers = 0, timeouts = 0;
        bool operator==(const Seen&) const = default;
    };
    Seen seen() {
        Seen seen{.text = document->text(),
                  .changes = document->changes(),
                  .fileName = document->fileName(),
                  .names = {},
                  .displayed = {},
                  .references = {},
                  .steps = document->history().done(),
                  .undoName = document->history().undoName(),
                  .widgets = host.widgets.size(),
                  .observers = host.observers.size(),
                  .timeouts = host.timeouts.size()};
        for (const Shape* shape : overlay.shapes()) seen.names.push_back(shape->name());
        for (const auto& [handle, zel] : host.overlays) seen.displayed.insert(zel.text);
        for (const auto& [id, platform] : host.platforms)
            seen.references.emplace_back(platform.point.latRad, platform.point.lonRad,
                                         platform.point.altMeters);
        return seen;
    }

    FakeHost host;
    std::vector<std::string> messages;
    Preferences preferences;
    Overlay overlay;
    std::unique_ptr<Document> document;
};

/// What the tests below do in a session: a file, a change of it, and another file's text on its way.
class LoadingTest : public ::testing::Test {
  protected:
    struct Story {
        std::string first;
        std::string second;
    };
    Story story() { return {files.make(), files.make() + files.make() + files.make()}; }
    static void begin(Session& session, const Story& story) {
        session.load(story.first);
        session.act([&] {
            for (Shape* shape : session.overlay.shapes()) shape->setName(shape->name() + " 2");
        });
        // What is said of the change belongs to it.
        session.seen();
        session.messages.clear();
    }
    int rounds() const {
        const char* const campaign = std::getenv("CAMPAIGN_ROUNDS");
        return campaign ? std::atoi(campaign) : 40;
    }
    /// A slice that is over after about so much work.
    Slice someWork() { return {static_cast<std::size_t>(random.integer(0, 200)), {}}; }

    TemporaryDirectory directory;
    FakeHost host;
    Preferences preferences;
    RandomShapes random{preferences};
    RandomFiles files{random};
};

TEST_F(LoadingTest, SlicesOfAnySizeLoadWhatIsLoadedAtOnce) {
    int slices = 0;
    for (int round = 0; round < rounds(); ++round) {
        const Story told = story();
        Session::Seen atOnce, before;
        std::vector<std::string> messages;
        {
            Session session(directory.path());
            begin(session, told);
            before = session.seen();
            session.load(told.second);
            atOnce = session.seen();
            messages = session.messages;
        }
        Session session(directory.path());
        begin(session, told);
        Document::Reading reading = session.document->begin(told.second, "one.zel");
        for (bool whole = false; !whole; ++slices) {
            session.act([&] {
                Slice slice = someWork();
                whole = session.document->goOn(reading, slice);
            });
        }
        session.act([&] { session.document->take(std::move(reading)); });
        EXPECT_EQ(session.messages, messages) << told.second;
        ASSERT_TRUE(session.seen() == atOnce) << told.first << "\nthen\n" << told.second;

        session.act([&] { session.document->undo(); });
        const Session::Seen after = session.seen();
        ASSERT_EQ(after.text, before.text);
        // A new name alone was not shown.
        ASSERT_EQ(after.displayed.size(), before.displayed.size());
    }
    EXPECT_GT(slices, 2 * rounds());
}

TEST_F(LoadingTest, CancelingInAnySliceLeavesEverythingAsItWas) {
    for (int round = 0; round < rounds(); ++round) {
        const Story told = story();
        Session session(directory.path());
        begin(session, told);
        const Session::Seen before = session.seen();
        Document::Reading reading = session.document->begin(told.second, "one.zel");
        for (int slices = random.integer(0, 8); slices > 0; --slices) {
            session.act([&] {
                Slice slice = someWork();
                session.document->goOn(reading, slice);
            });
        }
        session.act([&] { session.document->drop(std::move(reading)); });
        ASSERT_TRUE(session.seen() == before) << told.first << "\nthen\n" << told.second;
        // What is edited meanwhile goes on, and so does the next load.
        session.load(told.second);
        session.act([&] { session.document->undo(); });
        ASSERT_TRUE(session.seen().text == before.text);
    }
}

TEST_F(LoadingTest, WhatWaitsForTheHostIsInTheEndAsIfNothingHadWaited) {
    for (int round = 0; round < rounds(); ++round) {
        const Story told = story();
        const int seed = random.integer(0, 1'000'000);
        const auto run = [&](bool waits) {
            Session session(directory.path());
            const auto soon = [&] { return session.document->turns().comeBack(); };
            if (waits) session.overlay.setLater(soon, static_cast<std::size_t>(seed % 100), {});
            std::minstd_rand deeds(static_cast<unsigned>(seed));
            std::vector<std::string> texts;
            bool editing = true;
            for (int step = 0; step < 12; ++step) {
                const auto deed = deeds() % 8;
                const auto turns = static_cast<int>(deeds() % 3);
                session.act(
                    [&] {
                        Document& document = *session.document;
                        const std::vector<Shape*> shapes = session.overlay.shapes();
                        if (deed < 2)
                            document.take(document.read(deed ? told.first : told.second, "one.zel"));
                        if (deed == 2 || deed == 3) document.undo();
                        if (deed == 4) document.redo();
                        if (deed == 5) document.clear();
                        if (deed == 6) document.setEditing(editing = !editing);
                        if (deed == 7 && !shapes.empty()) session.overlay.deleteShape(shapes.front());
                    },
                    waits ? turns : 1000);
                texts.push_back(session.document->text());
            }
            session.act([] {});
            return std::pair(session.seen(), texts);
        };
        const auto atOnce = run(false);
        const auto later = run(true);
        ASSERT_EQ(later.second, atOnce.second);
        ASSERT_TRUE(later.first == atOnce.first) << told.first << "\nthen\n" << told.second;
    }
}

}  // namespace
}  // namespace OverlayEditor
