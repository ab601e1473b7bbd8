#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/TestDocument.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace OverlayEditor {
namespace {

TEST_F(DocumentTest, AFileWithOffsetsStaysOne) {
    struct Case {
        const char* name;
        std::string text;
        Vec3 reference;
        bool written, warned;
    };
    const std::vector<Case> table = {
        {"own.zel", offsets("ref 21.25 -158 300\n"), {21.25 * kDegree, -158 * kDegree, 300}, true, false},
        {"none.zel", offsets(), {0.4, -2.7, 0}, false, true},  // below the eye
        {"mixed.zel", offsets() + kTwoCircles, {0.4, -2.7, 0}, false, true}};
    for (const auto& [name, text, reference, written, warned] : table) {
        SCOPED_TRACE(name);
        messages.clear();
        const std::string file = write(name, text);
        ASSERT_TRUE(load(file));
        const std::uint64_t platform = overlay.attachedPlatformId();
        ASSERT_EQ(host.platforms.size(), 1u) << "the one before is gone";
        ASSERT_EQ(host.platforms.count(platform), 1u);
        const auto& [header, point] = host.platforms[platform];
        EXPECT_EQ(header.name, "ZEL Reference Point");
        EXPECT_EQ(header.icon, "x2");
        EXPECT_NEAR(point.latRad, reference.lat(), 1e-15);
        EXPECT_NEAR(point.lonRad, reference.lon(), 1e-15);
        EXPECT_EQ(point.altMeters, reference.alt());
        if (warned) {
            EXPECT_THAT(messages, ElementsAre(HasSubstr("no reference of its own")));
        } else {
            EXPECT_THAT(messages, IsEmpty());
            // 2000 m along the meridian, whose radius of curvature at the reference is 6344105.44 m.
            EXPECT_NEAR(overlay.shapes().front()->boundingBox().second.lat() / kDegree, 21.26806268199, 1e-9);
        }
        // Nobody changed it: not even the reference platform, which others may move.
        EXPECT_TRUE(document->isSaved());
        document->save(file);
        const std::string saved = contentsOf(file);
        EXPECT_THAT(saved, HasSubstr("xyz 1000.5 2000 0\nxyz 3000 -400.25 10\n"));
        EXPECT_EQ(saved.find("ref ") != std::string::npos, written) << saved;
        EXPECT_EQ(host.overlays[overlay.zelId()].platform, platform);
        EXPECT_FALSE(UTILS::fileIsFile(file + "~")) << "nothing is lost";
        // The host has it on the reference platform now.
        ASSERT_TRUE(load(file));
        EXPECT_EQ(host.platforms.size(), 1u);
        document->save(file);
        EXPECT_EQ(contentsOf(file), saved);
        host.platforms[overlay.attachedPlatformId()].point.latRad += 0.01;
        document->followPlatform();
        EXPECT_TRUE(document->isSaved()) << "a reference belongs to its block";
        clear();
    }
    EXPECT_THAT(host.platforms, IsEmpty());
}

TEST_F(DocumentTest, OffsetsGoFromReferenceToPlatformAndBack) {
    const std::string file = write("offsets.zel", offsets("ref 21.25 -158\n"));
    host.platforms[40].point.latRad = 0.37;
    const auto standing = [&] { return host.platforms.size() == 2; };
    ASSERT_TRUE(load(file));
    EXPECT_TRUE(standing());
    ASSERT_TRUE(document->attach(40, false));
    EXPECT_FALSE(standing());
    document->save(path("other.zel"));
    EXPECT_THAT(contentsOf(path("other.zel")), Not(HasSubstr("ref ")));

    ASSERT_TRUE(load(file));
    EXPECT_TRUE(document->attach(overlay.attachedPlatformId(), false));
    EXPECT_TRUE(standing());
    document->attach(0, false);
    EXPECT_FALSE(standing());

    // Removed by others: it is not removed a second time, and the shapes stay.
    ASSERT_TRUE(load(file));
    const unsigned long reference = overlay.attachedPlatformId();
    host.platforms.erase(reference);
    const int removals = host.calls[FakeHost::Id::RemoveEntity];
    EXPECT_FALSE(document->platformRemoved(40));
    EXPECT_TRUE(document->platformRemoved(reference));
    EXPECT_EQ(host.calls[FakeHost::Id::RemoveEntity], removals);
    EXPECT_EQ(overlay.attachedPlatformId(), 0u);

    // Offsets from nowhere are the same on any platform, also after they were detached; and no more once one
    // of them was changed.
    write("nowhere.zel", offsets());
    for (const bool changed : {false, true}) {
        ASSERT_TRUE(load(path("nowhere.zel")));
        document->attach(0, false);
        EXPECT_TRUE(document->attachment().holdsOffsets());
        if (changed) first().setName("x");
        document->attach(40, false);
        EXPECT_EQ(overlay.text().find("xyz 1000.5 2000 0\n") == std::string::npos, changed);
    }
    messages.clear();
    EXPECT_FALSE(document->attach(41, false));
    EXPECT_THAT(messages, ElementsAre(HasSubstr("has no position now")));
    EXPECT_EQ(overlay.attachedPlatformId(), 40u);
    ASSERT_TRUE(load(file));
    document.reset();
    EXPECT_FALSE(standing());
}

TEST_F(DocumentTest, AFileShownOnSeveralPlatformsIsReplacedOnEach) {
    const std::string file = write("ring.zel", block("circle\ncenterxyz 0 0 0\nradius 5\n", "Ring"));
    int ships[3];
    for (int i = 0; i < 3; ++i) {
        host.platforms[7 + static_cast<unsigned>(i)].point.latRad = 0.3 + 0.1 * i;
        host.overlays[&ships[i]] = {contentsOf(file), file, 7 + static_cast<unsigned>(i), true};
    }
    host.overlays[&host] = {contentsOf(file), file, 0, true};
    ASSERT_TRUE(take(document->readOverlay(&ships[1])));
    first().setMajorRadius(6);
    ASSERT_TRUE(document->save(file));
    std::map<std::uint64_t, bool> shown;
    for (const auto& [handle, zel] : host.overlays)
        if (zel.path == file && !shown.emplace(zel.platform, zel.shown).second)
            ADD_FAILURE() << "shown twice";
    EXPECT_EQ(shown, (std::map<std::uint64_t, bool>{{0, true}, {7, true}, {8, false}, {9, true}}));
    EXPECT_THAT(messages, ElementsAre(HasSubstr("is shown without a platform, too")));
    EXPECT_EQ(host.overlays.at(overlay.zelId()).platform, 8u);
    for (int& ship : ships) EXPECT_EQ(host.overlays.count(&ship), 0u);

    // What others show stands still from now on.
    messages.clear();
    const std::string old = contentsOf(file);
    document->attach(0, false);
    ASSERT_TRUE(document->save(file));
    EXPECT_THAT(messages, ElementsAre(HasSubstr("it has offsets, and is shown elsewhere"),
                                      HasSubstr("does not go with it")));
    EXPECT_EQ(contentsOf(file + "~"), old);

    // Under another name, over a file that is shown twice, by a link to the one that is edited.
    messages.clear();
    const std::string other = write("other.zel", kTwoCircles);
    std::filesystem::create_symlink(other, path("link.zel"));
    host.overlays[&ships[0]] = {kTwoCircles, other, 7, true};
    host.overlays[&ships[2]] = {kTwoCircles, path("link.zel"), 9, true};
    ASSERT_TRUE(take(document->readOverlay(&ships[2])));
    first().setMajorRadius(7);
    ASSERT_TRUE(document->save(other));
    EXPECT_THAT(messages, IsEmpty()) << "nothing to copy, and places are the same everywhere";
    EXPECT_EQ(host.overlays.at(shownOf(other)).platform + host.overlays.at(overlay.zelId()).platform, 16u);
    clear();
    addCircle("New");
    ASSERT_TRUE(document->save(other));
    shown.clear();
    for (const auto& [handle, zel] : host.overlays)
        if (zel.path == other) shown[zel.platform] = zel.shown;
    EXPECT_EQ(shown, (std::map<std::uint64_t, bool>{{0, false}, {7, true}, {9, true}}));
}

}  // namespace
}  // namespace OverlayEditor
