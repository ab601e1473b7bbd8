#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/Notify.h"
#include "model/Document.h"
#include "model/RandomShapes.h"
#include "model/Utils.h"
#include "pi/EntryScope.h"
#include "support/FakeHost.h"
#include "support/TemporaryDirectory.h"

namespace OverlayEditor {
namespace {

using halCore::Vec3;

/// Somebody who does whatever can be done to an overlay, and remembers what it was after each step.
class Walk {
  public:
    explicit Walk(unsigned seed) : random_(preferences_, seed) {
        host_.eye = Vec3(0.4, -2.7, 1e6);
        host_.settings["AutoSaveZelDir"] = directory_.path() + "/rescued";
        for (const std::uint64_t id : {7U, 8U, 9U}) host_.platforms[id].header.name = "P";
        movePlatforms_();
        write_("absolute.zel", "version 2\n\nstart\ncircle\ncenterlla 21.3 -158 0\nradius 1852.5\nend\n");
        write_("offsets.zel", "start\nline\nxyz 1000.5 2000 0\nxyz 3000 -400.25 10\nend\n");
        write_("referenced.zel", "start\nline\nref 20 -150 100\nxyz 1 2 3\nxyz 3000 -4 10\nend\n");
        document_->setEditing(true);
        host_.onCall = [this](FakeHost::Id) { glance_(); };
        seen_.push_back(look_());
    }

    ~Walk() { host_.onCall = {}; }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    void walk(int actions) {
        for (int i = 0; i < actions; ++i) {
            if (random_.integer(0, 4) == 0) hold_();
            const std::size_t before = history_().done();
            act_();
            ASSERT_EQ(history_().done(), seen_.size() - 1 + (history_().done() > before ? 1 : 0)) << i;
            if (history_().done() > before) seen_.push_back(look_());
            check_("action " + std::to_string(i));
            if (::testing::Test::HasFailure()) return;
            if (random_.integer(0, 99) == 0) thereAndBack();
            if (random_.integer(0, 9) == 0) undoSome_();
        }
    }

    /// To the beginning and to the end again, comparing each state with what it was.
    void thereAndBack() {
        const std::size_t end = seen_.size() - 1;
        while (history_().canUndo()) go_(&Document::undo);
        EXPECT_EQ(history_().done(), 0U);
        while (history_().canRedo()) go_(&Document::redo);
        EXPECT_EQ(history_().done(), end);
    }

  private:
    History& history_() { return document_->history(); }

    void go_(History::Outcome (Document::*step)()) {
        // Not even about a platform that is gone.
        const auto fail = [](halNotify::Severity, const std::string& text) { ADD_FAILURE() << text; };
        halNotify::setNotifyHandler(halNotify::Error, fail);
        halNotify::setNotifyLevel(halNotify::Error);
        const EntryScope entry;
        (*document_.*step)();
        halNotify::setNotifyLevel(halNotify::Always);
        check_(step == &Document::undo ? "undo" : "redo");
    }

    void undoSome_() {
        for (int i = random_.integer(1, 5); i > 0 && history_().canUndo(); --i) go_(&Document::undo);
        if (random_.maybe())
            while (history_().canRedo()) go_(&Document::redo);
    }

    void check_(const std::string& when) {
        ASSERT_LT(history_().done(), seen_.size()) << when << ": " << history_().undoName();
        const Seen now = look_();
        const Seen& then = seen_.at(history_().done());
        // A platform that is gone leaves shapes where they stood; where none is needed they are what they
        // were.
        const bool exact = !lost_ || history_().done() == 0;
        if (exact) {
            EXPECT_EQ(now.shapes, then.shapes) << when << " at " << history_().done();
            EXPECT_TRUE(now.states == then.states) << when;
        }
        if (!saved_) {
            EXPECT_EQ(now.file, then.file) << when;
        }
        if (!saved_ && exact) {
            EXPECT_EQ(now.changes, then.changes) << when;
        }
        for (const auto& [number, state] : history_().states()) {
            ASSERT_TRUE(overlay_.shapeOf(number)) << when;
            EXPECT_TRUE(lost_ || *overlay_.shapeOf(number)->state() == *state) << when << state->name;
        }
    }

    struct Seen {
        std::string shapes, file, changes;
        std::vector<ShapeState> states;
    };
    Seen look_() {
        std::ostringstream shapes;
        shapes << overlay_.text() << "attached " << (overlay_.attachedPlatformId() != 0);
        for (const Shape* shape : overlay_.shapes())
            shapes << '\n'
                   << shape->name() << shape->shown() << shape->anchorCenter() << overlay_.contains(shape);
        return {shapes.str(), document_->fileName(), document_->changes(), states_()};
    }
    std::vector<ShapeState> states_() const {
        std::vector<ShapeState> states;
        for (const Shape* shape : overlay_.shapes()) states.push_back(*shape->state());
        return states;
    }
    /// What somebody sees whom the host lets in.
    void glance_() {
        if (!glances_.contains(overlay_.revision())) glances_[overlay_.revision()] = states_();
    }

    void write_(const std::string& name, const std::string& text) {
        std::ofstream(directory_.path() + "/" + name) << text;
    }
    void movePlatforms_() {
        for (auto& [id, platform] : host_.platforms) {
            if (platform.header.name != "P") continue;  // the editor's own
            const Vec3 at = random_.position(nullptr);
            platform.point.latRad = 0.8 * at.lat();
            platform.point.lonRad = at.lon();
            platform.point.altMeters = at.alt();
        }
    }
    Shape* any_() {
        const auto shapes = overlay_.shapes();
        return shapes.empty() ? nullptr : shapes[std::size_t(random_.integer(0, int(shapes.size()) - 1))];
    }
    const Vec3* about_() {
        if (overlay_.attachedPlatformId() == 0) return nullptr;
        overlay_.pointConverter()->getReferenceLla(reference_);
        return &reference_;
    }

    void act_() {
        {
            const EntryScope entry;
            history_().begin(History::Gesture::Command);
            while (seen_.size() > history_().done() + 1) seen_.pop_back();
            glances_.clear();
            glance_();
            // Hosts give no number twice.
            host_.platforms.erase(1000 + 10 * acted_);
            host_.platforms[1000 + 10 * ++acted_];
            perform_(random_.integer(0, 24));
            // Whoever has looked at the overlay at this revision has seen what it is now.
            if (const auto known = glances_.find(overlay_.revision()); known != glances_.end()) {
                EXPECT_TRUE(known->second == states_()) << history_().done();
            }
        }
        // What was undone is gone only when something was done.
        if (history_().canRedo()) {
            const EntryScope entry;
            overlay_.addShape(random_.make(0, about_()).release());
        }
    }

    /// What a button held is given up, also what the journal has of it.
    void hold_() {
        history_().begin(History::Gesture::Press);
        for (int i = random_.integer(1, 3); i > 0; --i) {
            {
                const EntryScope entry;
                if (Shape* const shape = any_()) edit_(*shape);
            }
            if (random_.maybe()) host_.fireTimeouts();
        }
        const EntryScope entry;
        history_().revert();
        check_("held");
    }

    void perform_(int action) {
        Shape* const shape = any_();
        switch (action) {
            case 0:
                if (overlay_.shapes().size() > 30) return document_->clear();
                [[fallthrough]];
            case 1:
            case 2:
                return overlay_.addShape(random_.make(random_.integer(0, 15), about_()).release());
            case 3:
                return overlay_.addShape(
                    shapeKinds()[std::size_t(random_.integer(0, 15))].make(preferences_).release());
            case 4:
            case 5:
                overlay_.removeShape(shape);
                delete shape;
                return;
            case 6:
                if (random_.integer(0, 3) == 0) document_->clear();
                return;
            case 7:
            case 8:
                return load_();
            case 9:
                if (random_.integer(0, 3) == 0)
                    saved_ = document_->save(directory_.path() + "/saved.zel") || saved_;
                return;
            case 10:
            case 11:
            case 12: {
                const unsigned long platforms[] = {0, 7, 8, 9};
                document_->attach(platforms[random_.integer(0, 3)], random_.integer(0, 4) == 0);
                return;
            }
            case 13:
                movePlatforms_();
                document_->followPlatform();
                return;
            case 14:
                return hostTakes_();
            default:
                if (shape) edit_(*shape);
        }
    }

    void load_() {
        const char* const files[] = {"absolute.zel", "offsets.zel", "referenced.zel"};
        auto reading = document_->readFile(directory_.path() + "/" + files[random_.integer(0, 2)]);
        if (reading.loaded.error.empty()) document_->take(std::move(reading));
    }

    /// The host unloads the edited overlay, or removes its platform.
    void hostTakes_() {
        if (random_.maybe()) return document_->overlayRemoved(overlay_.zelId());
        const unsigned long platform = overlay_.attachedPlatformId();
        if (random_.integer(0, 9) > 0 || platform < 7 || platform > 9) return;
        host_.platforms.erase(platform);
        lost_ = true;
        document_->platformRemoved(platform);
    }

    void edit_(Shape& shape) {
        const Vec3 place = random_.position(about_());
        if (random_.integer(0, 5) == 0) shape.setName("N" + std::to_string(random_.integer(0, 9)));
        if (random_.integer(0, 5) == 0) shape.setShown(!shape.shown());
        if (random_.integer(0, 5) == 0) shape.setAnchorCenter(random_.maybe());
        if (random_.integer(0, 5) == 0) shape.setShowPoints(random_.maybe());
        if (auto* const filled = dynamic_cast<BaseFilledShape*>(&shape)) {
            if (random_.integer(0, 5) == 0) filled->setFilled(random_.maybe());
            if (random_.integer(0, 5) == 0)
                filled->setFillColor(3, 2, 1, static_cast<unsigned char>(random_.integer(0, 255)));
        }
        if (auto* const line = dynamic_cast<BaseLineShape*>(&shape)) {
            if (random_.integer(0, 5) == 0) line->setLineWidth(random_.number(0, 9));
            if (random_.integer(0, 5) == 0)
                line->setLineColor(1, 2, 3, static_cast<unsigned char>(random_.integer(0, 255)));
            if (random_.integer(0, 19) == 0) line->clear();
        }
        if (auto* const points = dynamic_cast<PointsContainer*>(&shape)) {
            const auto index = static_cast<unsigned long>(random_.integer(0, 25));
            const int what = random_.integer(0, 2);
            if (what == 0) points->insertPointAtIndex(index, place);
            if (what == 1) points->deletePointAtIndex(index);
            if (what == 2) points->setPointAtIndex(index, place);
            if (auto* const drawn = dynamic_cast<FreeDrawShape*>(&shape)) {
                if (random_.maybe()) random_.maybe() ? drawn->startLine(place) : drawn->removeLastLine();
                if (random_.maybe()) drawn->setPixelPrecision(random_.integer(1, 9));
            } else if (auto* const line = dynamic_cast<PolygonShape*>(&shape); line && random_.maybe()) {
                line->replacePointAtIndex(index, std::vector<PlacedPoint>(3, PlacedPoint(place)));
            }
        } else if (auto* const orbit = dynamic_cast<OrbitShape*>(&shape)) {
            if (random_.maybe()) orbit->setCenter2(place);
            if (random_.maybe()) orbit->setMinorRadius(random_.length());
            if (random_.maybe()) orbit->setAltitude(random_.number(0, 1000));
            if (random_.maybe()) orbit->moveFirstCenter(place);
        } else if (auto* const round = dynamic_cast<CylinderShape*>(&shape)) {
            if (random_.maybe()) random_.maybe() ? round->setCenter(place) : round->moveCenter(place);
            if (random_.maybe()) round->setMajorRadius(random_.length());
            if (random_.maybe()) round->setMajorRadius(place);
            if (random_.maybe()) round->setStartAngle(random_.number(-7, 7));
            if (random_.maybe()) round->setHeight(random_.number(1, 100));
            if (random_.maybe()) round->setEndAnglePt(place);
            if (random_.maybe()) round->setInnerRadius(random_.length());
            if (random_.maybe()) round->setRequiresAllPoints(random_.maybe());
            if (random_.maybe()) round->updatePoints();
        } else if (auto* const rectangle = dynamic_cast<RectangleShape*>(&shape)) {
            if (random_.maybe()) rectangle->setFromCenter(place, random_.length(), random_.length());
            if (random_.maybe()) rectangle->setFirstCorner(place);
        } else if (auto* const label = dynamic_cast<AnnotationShape*>(&shape)) {
            if (random_.maybe()) label->mouseSetPosition(place);
            if (random_.maybe()) label->setFontSize(random_.integer(1, 50));
            if (random_.maybe()) label->setColor(static_cast<std::uint32_t>(random_.integer(0, 99)));
            if (random_.maybe()) label->setPosition(place);
        }
    }

    halNotify::Silence silence_;
    FakeHost host_;
    TemporaryDirectory directory_;
    Preferences preferences_;
    RandomShapes random_;
    Overlay overlay_;
    std::unique_ptr<Document> document_ = std::make_unique<Document>(preferences_, overlay_);
    std::vector<Seen> seen_;
    /// By revision, since an action began.
    std::map<std::uint64_t, std::vector<ShapeState>> glances_;
    Vec3 reference_;
    std::uint64_t acted_ = 0;
    bool lost_ = false;
    bool saved_ = false;
};

TEST(HistoryTest, WhateverIsDoneIsUndoneAndRedoneToTheDigit) {
    const char* const rounds = std::getenv("CAMPAIGN_ROUNDS");
    const char* const from = std::getenv("CAMPAIGN_FROM");
    const unsigned first = from ? static_cast<unsigned>(std::atoi(from)) : 0;
    const unsigned walks = rounds ? static_cast<unsigned>(std::atoi(rounds)) : 5;
    for (unsigned seed = first; seed < first + walks; ++seed) {
        SCOPED_TRACE("walk " + std::to_string(seed));
        Walk walk(seed);
        walk.walk(rounds ? 1000 : 300);
        walk.thereAndBack();
        if (::testing::Test::HasFailure()) return;
    }
}

}  // namespace
}  // namespace OverlayEditor
