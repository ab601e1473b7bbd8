#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/Strings.h"
#include "format/Parser.h"
#include "model/BlockRewriter.h"
#include "model/Document.h"
#include "model/Overlay.h"
#include "model/RandomFiles.h"
#include "model/ShapeState.h"
#include "model/ShapeWriter.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;
namespace ZEL = halCore::ZEL;

namespace {

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        lines.emplace_back(UTILS::trimmed(line));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return lines;
}

/// Of the lines of one text those that another has not.
std::size_t linesBeside(const std::string& text, const std::string& other) {
    const auto lines = linesOf(text);
    const auto others = linesOf(other);
    std::multiset<std::string> left(lines.begin(), lines.end());
    for (const std::string& line : others)
        if (const auto found = left.find(line); found != left.end()) left.erase(found);
    return left.size();
}

class KeptFilesTest : public ::testing::Test {
  protected:
    KeptFilesTest() {
        halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
    }
    ~KeptFilesTest() override { halNotify::setNotifyHandler({}); }

    /// An overlay as the editor loads it from a file.
    struct Loaded {
        Loaded(const Preferences& preferences, const std::string& text) : document(preferences, overlay) {
            auto reading = document.read(text, "test.zel");
            if (reading.loaded.error.empty()) document.take(std::move(reading));
        }
        Overlay overlay;
        Document document;
    };
    /// What a shape of an overlay says, whatever block it came from.
    static std::string meaning(const Overlay& overlay, Shape& shape) {
        ShapeWriter writer(overlay.pointConverter(), overlay.referenceWritten());
        writer.add(shape);
        return std::string(writer.blocks());
    }
    /// \param amongOffsets where a block without a position stands
    std::string meaningOfReloaded(const std::string& block, bool amongOffsets) {
        const Loaded loaded(preferences, amongOffsets ? block + "\nstart\npoints\nxy 1 2\nend\n" : block);
        const auto shapes = loaded.overlay.shapes();
        return shapes.empty() ? "no shape" : meaning(loaded.overlay, *shapes.front());
    }
    /// Changes something of a shape.
    void edit(Shape& shape) {
        const Vec3 near(0.35, -2.75, 0.0);
        const auto place = [&] { return random.position(shape.placed().frame() ? &near : nullptr); };
        if (random.integer(0, 5) == 0) shape.setName("Another name");
        if (random.integer(0, 9) == 0) shape.setShown(!shape.shown());
        if (auto* const line = dynamic_cast<BaseFilledShape*>(&shape)) {
            if (random.integer(0, 4) == 0) line->setLineWidth(random.integer(1, 9));
            if (random.integer(0, 4) == 0)
                line->setLineColor(255, 0, static_cast<unsigned char>(random.integer(0, 1)), 255);
            if (random.integer(0, 4) == 0) line->setFilled(!line->filled());
            if (random.integer(0, 6) == 0) line->setFillColor(1, 2, 3, 4);
        }
        if (auto* const label = dynamic_cast<AnnotationShape*>(&shape)) {
            if (random.maybe()) label->setFontSize(random.integer(5, 50));
            if (random.maybe()) label->setPosition(place());
        } else if (auto* const orbit = dynamic_cast<OrbitShape*>(&shape)) {
            orbit->setMinorRadius(random.number(5, 5000));
            if (random.maybe()) orbit->setCenter2(place());
        } else if (auto* const round = dynamic_cast<CylinderShape*>(&shape)) {
            // What its panel has a field for.
            const ShapeKind& kind = round->kind();
            int what = random.integer(0, 5);
            if (what == 2 && kind.radii != ShapeKind::Radii::Two) what = 1;
            if (what == 3 && kind.height != ShapeKind::Height::Own) what = 0;
            if (what == 5 && !round->startAnglePt()) what = 4;
            if (what > 3 && kind.sector != ShapeKind::Sector::Drawn) what = 1;
            if (what == 0) round->moveCenter(place());
            if (what == 1) round->setMajorRadius(random.number(5, 5000));
            if (what == 2) round->setMinorRadius(random.number(5, 5000));
            if (what == 3) round->setHeight(random.number(5, 5000));
            // The other bound stands where the panel shows it.
            if (what == 4) round->setStartAngle(random.number(0, 6));
            if (what == 4 && !round->endAnglePt()) round->setEndAngle(0.0);
            if (what == 5) round->setEndAngle(random.number(0, 6));
        } else if (auto* const list = dynamic_cast<PolygonShape*>(&shape)) {
            for (int i = random.integer(1, 3); i > 0; --i) {
                const auto index =
                    static_cast<unsigned long>(random.integer(0, static_cast<int>(list->getNumPoints()) - 1));
                const int what = random.integer(0, 3);
                if (what < 2) list->setPointAtIndex(index, place());
                if (what == 2) list->insertPointAtIndex(index, place());
                if (what == 3 && list->getNumPoints() > 4) list->deletePointAtIndex(index);
            }
        } else if (auto* const box = dynamic_cast<RectangleShape*>(&shape)) {
            if (random.maybe())
                box->setFirstCorner(place());
            else
                box->setLastCorner(place());
        }
    }

    FakeHost host;
    Preferences preferences;
    RandomShapes random{preferences};
};

TEST_F(KeptFilesTest, EveryLineThatNobodyTouchedSurvives) {
    RandomFiles files(random);
    std::size_t touched = 0;
    std::size_t respelled = 0;
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 100000 : 1000;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        const std::string text = files.make();
        SCOPED_TRACE("file " + std::to_string(round) + ":\n" + text);
        Loaded loaded(preferences, text);
        Overlay& overlay = loaded.overlay;
        if (overlay.shapes().empty()) continue;
        ASSERT_EQ(overlay.text(), text);
        overlay.keep();
        const auto source = overlay.source();

        // One shape changes, perhaps one goes, perhaps one comes.
        const auto shapes = overlay.shapes();
        Shape& shape =
            *shapes[static_cast<std::size_t>(random.integer(0, static_cast<int>(shapes.size()) - 1))];
        const std::unique_ptr<Shape> before(shape.clone());
        const std::size_t own = shape.source().block;
        edit(shape);
        const std::string meant = meaning(overlay, shape);
        // Another value means other bytes, and nothing else does.
        ShapeState edited = *shape.state();
        const ShapeState given = *before->state();
        // A point that came and went has left no offsets to come back to; no file holds them.
        edited.positions.left = given.positions.left;
        const bool isChanged = edited != given;
        EXPECT_EQ(overlay.isKept() && overlay.begun().empty(), !isChanged);
        std::size_t gone = source->blockCount();
        if (shapes.size() > 1 && random.integer(0, 3) == 0) {
            Shape* const victim = shapes.front() == &shape ? shapes.back() : shapes.front();
            gone = victim->source().block;
            delete victim;
        }
        const bool added = random.integer(0, 3) == 0;
        if (added) overlay.addShape(random.make(0, nullptr).release());
        Overlay::Losses lost;
        const std::string saved = overlay.text(nullptr, &lost);
        SCOPED_TRACE("saved:\n" + saved);

        std::vector<ZEL::BlockSpan> spans;
        ZEL::ParseReport report;
        report.spans = &spans;
        ZEL::Parser::Shapes ignored;
        ZEL::Parser().parse(std::string_view(saved), ignored, report);
        const ZEL::SourceText now(saved, spans, {});
        const bool isOpen = !source->block(source->blockCount() - 1).isEnded;
        ASSERT_EQ(now.blockCount(), source->blockCount() - (gone < source->blockCount()) + added);
        std::size_t at = 0;
        for (std::size_t i = 0; i < source->blockCount(); ++i) {
            if (i == gone) continue;
            if (added && isOpen && i + 1 == source->blockCount()) ++at;
            const std::string block(now.blockText(at++));
            if (i != own || !isChanged) {
                EXPECT_EQ(UTILS::trimmed(block), UTILS::trimmed(source->blockText(i)));
                continue;
            }
            ++touched;
            const std::string means =
                meaningOfReloaded(block, overlay.attachedPlatformId() != 0 && shape.placed().has(0));
            EXPECT_TRUE(sayTheSame(means, meant)) << means << meant;
            auto left = linesOf(block);
            for (const std::string& line : linesOf(source->blockText(i))) {
                const auto found = std::find(left.begin(), left.end(), line);
                const bool isNamed = std::ranges::any_of(lost, [&](const ZEL::ParseMessage& message) {
                    return message.text.find('"' + UTILS::excerpt(line) + '"') != std::string::npos;
                });
                const bool isNothing = line.starts_with('#') || line.starts_with('/') ||
                                       UTILS::lowerCase(line).starts_with("foo");
                EXPECT_TRUE(found != left.end() || isNamed || !isNothing) << "lost: " << line;
                if (found != left.end()) left.erase(found);
            }
            // Beside them a fill that was told by the line's colour, and the kind and name of what becomes
            // another.
            const std::size_t allowed =
                linesBeside(meant, meaning(overlay, *before)) + (shape.source().becomes ? 3 : 1);
            if (left.size() > allowed) ++respelled;
        }
        // Offsets become places: all their blocks change.
        if (random.integer(0, 5) == 0 && gone == source->blockCount() && !added && !isOpen) {
            loaded.document.attach(0, false);
            const std::string detached = overlay.text();
            SCOPED_TRACE("detached:\n" + detached);
            report = {};
            spans.clear();
            report.spans = &spans;
            ZEL::Parser().parse(std::string_view(detached), ignored, report);
            const ZEL::SourceText then(detached, spans, {});
            for (Shape* const one : overlay.shapes()) {
                if (one->source().digest == 0) continue;
                const std::string block(then.blockText(one->source().block));
                const std::string wanted = meaning(overlay, *one);
                const std::string means = meaningOfReloaded(block, false);
                EXPECT_TRUE(sayTheSame(means, wanted)) << means << wanted;
            }
            continue;
        }
        // What is undone is no change.
        if (added || gone < source->blockCount()) continue;
        overlay.removeShape(&shape);
        delete &shape;
        Shape* const undone = before->clone();
        const bool shown = before->shown();
        overlay.addShape(undone);
        undone->setShown(shown);
        EXPECT_EQ(overlay.text(), text);
        EXPECT_TRUE(overlay.isKept());
    }
    EXPECT_LT(respelled * 100, touched) << "nearly always only lines change whose value changed";
}

TEST_F(KeptFilesTest, OneValueIsOneLine) {
    for (const auto& entry : std::filesystem::directory_iterator(OE_SOURCE_DIR "/samples")) {
        if (entry.path().extension() != ".zel") continue;
        SCOPED_TRACE(entry.path());
        std::string text;
        ASSERT_EQ(UTILS::readFile(entry.path(), text), "");
        Loaded loaded(preferences, text);
        Overlay& overlay = loaded.overlay;
        ASSERT_EQ(overlay.text(), text);
        std::size_t count = 0;
        for (Shape* const shape : overlay.shapes()) {
            auto* const line = dynamic_cast<BaseLineShape*>(shape);
            if (!line || shape->source().becomes || (text.size() > 100000 && ++count % 40 != 0)) continue;
            SCOPED_TRACE(shape->name());
            const int width = line->lineWidth();
            line->setLineWidth(width + 1);
            const std::string wider = overlay.text();
            EXPECT_LE(linesBeside(text, wider), 1U);
            EXPECT_EQ(linesBeside(wider, text), 1U);
            line->setLineWidth(width);
            if (auto* const list = dynamic_cast<PolygonShape*>(shape)) {
                const Vec3 point = list->pointAtIndex(1);
                list->insertPointAtIndex(1, {0.1, 0.2, 0.0});
                const std::string longer = overlay.text();
                EXPECT_EQ(linesBeside(text, longer), 0U);
                EXPECT_EQ(linesBeside(longer, text), 1U);
                list->deletePointAtIndex(1);
                EXPECT_EQ(list->pointAtIndex(1), point);
            }
        }
        EXPECT_EQ(overlay.text(), text);
    }
}

/// Of long lines only what changes is looked at, wherever it is, and whatever stands between the points.
TEST_F(KeptFilesTest, LongLinesChangeOnlyWhereTheirPointsDo) {
    for (int round = 0; round < 150 && !HasFailure(); ++round) {
        const int count = random.integer(250, 700);
        std::string text = random.maybe() ? "start\nline\n" : "start\npolygon\nref 1 2\n";
        const bool relative = text.find("ref") != std::string::npos;
        for (int i = 0; i < count; ++i) {
            text += relative ? "xyz " : random.integer(0, 40) == 0 ? " LLA " : "lla ";
            text.append(std::to_string(random.integer(-80, 80))).append(" ");
            text.append(std::to_string(random.integer(-9, 9))).append(" 7\n");
            // A point that cannot be read is none.
            if (round % 4 == 0 && i == count / 2) text += relative ? "xyz 1 x\n" : "lla x 1\n";
            if (random.integer(0, 30) == 0) text.append("# comment ").append(std::to_string(i)).append("\n");
        }
        text += random.maybe() ? "end" : "off\nfoo\nend\n";
        Loaded loaded(preferences, text);
        auto& line = dynamic_cast<PolygonShape&>(*loaded.overlay.shapes().front());
        const int edits = random.integer(0, 4);
        const bool moveOnly = random.maybe();
        for (int i = 0; i < edits; ++i) {
            const auto last = static_cast<int>(line.getNumPoints()) - 1;
            const auto at =
                static_cast<unsigned long>(random.integer(0, 9) == 0 ? last : random.integer(0, last));
            const int what = moveOnly ? 0 : random.integer(0, 2);
            const Vec3 point = random.maybe() ? line.pointAtIndex(at / 2) : random.position(nullptr);
            if (what == 0) line.setPointAtIndex(at, point);
            if (what == 1) line.insertPointAtIndex(at, point);
            if (what == 2) line.deletePointAtIndex(at);
        }
        if (edits == 0) line.setName("Another");
        Overlay::Losses lost;
        const std::string saved = loaded.overlay.text(nullptr, &lost);
        const std::string means = meaningOfReloaded(saved, false);
        EXPECT_TRUE(sayTheSame(means, meaning(loaded.overlay, line)));
        EXPECT_TRUE(lost.empty());
        EXPECT_LE(linesBeside(text, saved), static_cast<std::size_t>(edits));
        EXPECT_LE(linesBeside(saved, text), static_cast<std::size_t>(edits == 0 ? 1 : edits));
    }
}

/// What a block does not name stays unnamed as long as the others give it.
TEST_F(KeptFilesTest, OneNumberIsOneLineWhateverStandsForWhat) {
    using Round = CylinderShape;
    const auto major = [](Round& shape) { shape.setMajorRadius(7.0); };
    const auto minor = [](Round& shape) { shape.setMinorRadius(7.0); };
    const auto both = [](Round& shape) { shape.setInnerRadius(7.0); };
    const auto height = [](Round& shape) { shape.setHeight(7.0); };
    struct Case {
        const char* lines;
        std::function<void(Round&)> change;
        const char* now;
    };
    const Case cases[] = {{"foo", major, "foo\nmajoraxis 14"},
                          {"radius 5", major, "radius 5\nmajoraxis 14"},
                          {"radius 5", minor, "radius 5\nminoraxis 14"},
                          {"radius 5", both, "radius 7"},
                          {"radius 5", height, "radius 5\nheight 7"},
                          {"radius 5\nheight -1", both, "radius 7\nheight -1"},
                          {"radius 5\nheight 4", major, "radius 5\nheight 4\nmajoraxis 14"},
                          {"radius 5\nmajoraxis 12", major, "radius 5\nmajoraxis 14"},
                          {"radius 5\nmajoraxis 12", minor, "radius 7\nmajoraxis 12"},
                          {"radius 5\nminoraxis 12", major, "radius 7\nminoraxis 12"},
                          {"majoraxis 12", both, "majoraxis 14"},
                          {"semiminoraxis 6", both, "semiminoraxis 7"},
                          {"majoraxis 12\nminoraxis 6", minor, "majoraxis 12\nminoraxis 14"}};
    for (const char* kind : {"ellipsoid", "ellipse", "cylinder"})
        for (const auto& [lines, change, now] : cases) {
            if (std::string(kind) == "ellipse" && std::string(now).find("height") != std::string::npos)
                continue;
            const std::string begin =
                std::string("start\n") + kind + "\ncenterll 1 2\nrangeunits m\naltitudeunits m\n";
            Loaded loaded(preferences, begin + lines + "\nend\n");
            change(dynamic_cast<Round&>(*loaded.overlay.shapes().front()));
            EXPECT_EQ(loaded.overlay.text(), begin + now + "\nend\n");
        }
}

TEST_F(KeptFilesTest, WhatBecomesIncompleteIsNamedAndComesBack) {
    const std::string text =
        "version 2\n# A\nstart\nline\nll 1 2\nll 3 4 # b\nfoo\nend\n\nstart\ncircle\ncenterll 1 2\nradius "
        "2\nend\n";
    Loaded loaded(preferences, text);
    auto& line = dynamic_cast<PolygonShape&>(*loaded.overlay.shapes().front());
    const Vec3 second = line.pointAtIndex(1);
    line.deletePointAtIndex(1);
    Overlay::Losses lost;
    EXPECT_EQ(loaded.overlay.text(nullptr, &lost), "version 2\n" + text.substr(text.find("\nstart\ncircle")));
    ASSERT_EQ(lost.size(), 1U) << "so that the file is copied";
    EXPECT_EQ(lost[0].text, "\"line\" is not complete any more");
    line.addPoint(second);
    EXPECT_EQ(loaded.overlay.text(), text);
}

TEST_F(KeptFilesTest, WhatIsChangedOfAnIncompleteBlockIsNamed) {
    const std::string text = "version 2\nstart\npoints\nll 1 2\n3d name Buoy\nend\n";
    Loaded loaded(preferences, text);
    Overlay& overlay = loaded.overlay;
    auto& list = dynamic_cast<PolygonShape&>(*overlay.shapes().front());
    const Vec3 only = list.pointAtIndex(0);
    EXPECT_THAT(overlay.incomplete(), ::testing::IsEmpty());
    list.setPointAtIndex(0, Vec3(0.1, 0.2, 0.0));
    std::vector<std::string> skipped;
    EXPECT_EQ(overlay.text(&skipped), text);
    EXPECT_THAT(skipped, ::testing::ElementsAre("Buoy"));
    EXPECT_EQ(overlay.begun(), skipped);
    list.setPointAtIndex(0, only);
    EXPECT_THAT(overlay.begun(), ::testing::IsEmpty());
}

}  // namespace
