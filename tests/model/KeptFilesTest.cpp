#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/Strings.h"
#include "format/Parser.h"
#include "model/BlockRewriter.h"
#include "model/Overlay.h"
#include "model/OverlayFile.h"
#include "model/RandomFiles.h"
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

class KeptFilesTest : public ::testing::Test {
  protected:
    KeptFilesTest() {
        halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
    }
    ~KeptFilesTest() override { halNotify::setNotifyHandler({}); }

    /// As the editor loads a file.
    void load(Overlay& overlay, const std::string& text) {
        auto loaded = loadOverlayText(text, "test", preferences, &anywhere, 0);
        for (auto& read : loaded.shapes) {
            Shape* const shape = read.release();
            const bool shown = shape->shown();
            overlay.addShape(shape);
            shape->setShown(shown);
        }
        overlay.adopt(loaded.source ? loaded.source
                                    : std::make_shared<ZEL::SourceText>(text, std::vector<ZEL::BlockSpan>(),
                                                                        std::vector<bool>()));
    }
    /// What a shape says, whatever block it came from.
    std::string meaning(const Shape& shape) {
        const std::unique_ptr<Shape> copy(shape.clone());
        std::vector<std::unique_ptr<Shape>> one;
        one.emplace_back(shape.clone());
        one.front()->setShown(shape.shown());
        return shapesText(one, &anywhere);
    }
    std::string meaningOfReloaded(const std::string& text) {
        auto loaded = loadOverlayText(text, "test", preferences, &anywhere, 0);
        return loaded.shapes.size() == 1 ? meaning(*loaded.shapes.front()) : "no shape";
    }
    /// Changes something of a shape.
    void edit(Shape& shape) {
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
            if (random.maybe()) label->setPosition(random.position(nullptr));
        } else if (auto* const orbit = dynamic_cast<OrbitShape*>(&shape)) {
            orbit->setMinorRadius(random.number(5, 5000));
            if (random.maybe()) orbit->setCenter2(random.position(nullptr));
        } else if (auto* const round = dynamic_cast<CylinderShape*>(&shape)) {
            const int what = random.integer(0, 5);
            if (what == 0) round->moveCenter(random.position(nullptr));
            if (what == 1) round->setMajorRadius(random.number(5, 5000));
            if (what == 2) round->setMinorRadius(random.number(5, 5000));
            if (what == 3) round->setHeight(random.number(5, 5000));
            if (what == 4) round->setStartAngle(random.number(0, 6));
            if (what == 5) round->setEndAngle(random.number(0, 6));
        } else if (auto* const list = dynamic_cast<PolygonShape*>(&shape)) {
            for (int i = random.integer(1, 3); i > 0; --i) {
                const auto index =
                    static_cast<unsigned long>(random.integer(0, static_cast<int>(list->getNumPoints()) - 1));
                const int what = random.integer(0, 3);
                if (what < 2) list->setPointAtIndex(index, random.position(nullptr));
                if (what == 2) list->insertPointAtIndex(index, random.position(nullptr));
                if (what == 3 && list->getNumPoints() > 4) list->deletePointAtIndex(index);
            }
        } else if (auto* const box = dynamic_cast<RectangleShape*>(&shape)) {
            if (random.maybe())
                box->setFirstCorner(random.position(nullptr));
            else
                box->setLastCorner(random.position(nullptr));
        }
    }

    FakeHost host;
    Preferences preferences;
    PointConverter anywhere;
    RandomShapes random{preferences};
};

TEST_F(KeptFilesTest, EveryLineThatNobodyTouchedSurvives) {
    RandomFiles files(random);
    anywhere.setReferenceLla({0.35, -2.75, 0}, 0);
    std::size_t touched = 0;
    std::size_t anew = 0;
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 100000 : 400;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        const std::string text = files.make();
        SCOPED_TRACE("file " + std::to_string(round) + ":\n" + text);
        Overlay overlay;
        load(overlay, text);
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
        const std::string meant = meaning(shape);
        const bool isChanged = !overlay.isKept();
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
            const std::string means = meaningOfReloaded(block);
            EXPECT_TRUE(sayTheSame(means, meant)) << means << meant;
            if (lost.empty() || lost.back().text.find("becomes") != std::string::npos) {
                auto left = linesOf(block);
                for (const std::string& line : linesOf(source->blockText(i)))
                    if (line.empty() || line.front() == '#' || line.front() == '/' ||
                        UTILS::lowerCase(line).starts_with("foo") ||
                        UTILS::lowerCase(line).starts_with("priority")) {
                        const auto found = std::find(left.begin(), left.end(), line);
                        if (found == left.end())
                            ADD_FAILURE() << "lost: " << line;
                        else
                            left.erase(found);
                    }
            } else {
                ++anew;
                if (std::getenv("SHOW_ANEW"))
                    std::printf("--- anew\n%s+++\n%s", std::string(source->blockText(i)).c_str(),
                                block.c_str());
            }
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
    std::printf("%zu blocks changed, %zu of them anew\n", touched, anew);
}

}  // namespace
