#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "model/Document.h"
#include "model/QuietServiceTable.h"
#include "model/RandomShapes.h"
#include "support/FakeHost.h"
#include "support/TemporaryDirectory.h"

namespace ZEL = halCore::ZEL;
using halCore::Vec3;
using namespace OverlayEditor;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

constexpr double kDegree = halCore::kRadiansPerDegree;

/// Files of blocks in all frames, on all parts of the earth.
class RandomFiles {
  public:
    explicit RandomFiles(const Preferences& preferences) : shapes(preferences) {}

    std::string file() {
        std::ostringstream text;
        for (int blocks = shapes.integer(1, 5); blocks > 0; --blocks) block_(text);
        return std::move(text).str();
    }
    /// Often a pole, or close to one; often half way round from Greenwich.
    Vec3 place() {
        double lat = shapes.number(-90, 90);
        if (shapes.maybe()) lat = std::copysign(90 - std::pow(10, shapes.integer(-12, 1)), lat);
        if (shapes.integer(0, 9) == 0) lat = std::copysign(90, lat);
        const double lon = shapes.maybe() ? shapes.number(-180, 180) : shapes.integer(-1, 1) * 180.0;
        return {lat * kDegree, lon * kDegree, shapes.integer(0, 2) * 1000.5};
    }

    RandomShapes shapes;

  private:
    enum Frame { Absolute, Named, FromNowhere };

    std::string number_(double most) {
        std::ostringstream text;
        text.precision(shapes.integer(1, 12));
        text << shapes.number(-most, most);
        return text.str();
    }
    /// Two numbers that are a position in the frame.
    std::string pair_(Frame frame) {
        if (frame == Absolute) return number_(shapes.integer(0, 20) == 0 ? 95 : 90) + " " + number_(180);
        const double reach = std::pow(10.0, shapes.integer(0, 8));
        return number_(reach) + " " + number_(reach);
    }
    void block_(std::ostream& text) {
        static constexpr const char* kinds[] = {
            "annotation Label", "points",    "line", "linesegs", "polygon",  "polygon",
            "circle",           "ellipse",   "arc",  "cylinder", "cylinder", "sphere",
            "hemisphere",       "ellipsoid", "cone", "orbit"};
        const int kind = shapes.integer(0, 15);
        const auto frame = static_cast<Frame>(shapes.integer(Absolute, FromNowhere));
        const std::string relative = frame == Absolute ? "lla " : "xyz ";
        text << "start\n" << kinds[kind] << "\naltitudeunits m\nrangeunits m\nangleunits deg\n";
        if (frame == Named) {
            const Vec3 reference = place();
            text.precision(15);
            text << "ref " << reference.lat() / kDegree << " " << reference.lon() / kDegree << " 50\n";
        }
        if (kind == 5) {
            // A box, in the order in which one is written.
            const std::string a = number_(80), b = number_(80), c = number_(80), d = number_(80);
            for (const auto& [x, y] :
                 {std::pair(a, b), std::pair(frame == Absolute ? a : c, frame == Absolute ? d : b),
                  std::pair(c, d), std::pair(frame == Absolute ? c : a, frame == Absolute ? b : d)})
                text << relative << x << " " << y << " 7\n";
        } else if (kind >= 1 && kind <= 4) {
            for (int points = shapes.integer(3, 6); points > 0; --points)
                text << relative << pair_(frame) << " " << number_(100) << "\n";
        } else if (kind == 15 || frame == Absolute || shapes.integer(0, 9) != 0) {
            // Otherwise without a place: a zero offset.
            text << (kind == 0 ? "" : "center") << relative << pair_(frame) << " 3\n";
        }
        if (kind >= 6) text << "radius " << 1 + std::abs(shapes.integer(0, 100000)) << "\n";
        if (kind == 10) text << "anglestart 10\nangledeg 300\nheight 25\n";
        if (kind == 15) text << "center" << (frame == Absolute ? "latlon2 " : "xy2 ") << pair_(frame) << "\n";
        text << "end\n";
    }
};

constexpr Vec3 kNone(99, 99, 99);

struct Position {
    bool relative;
    Vec3 reference;
    std::vector<Vec3> given;
};

/// What stands in a text, read by the library alone.
std::vector<Position> positionsOf(const std::string& text) {
    ZEL::Parser::Shapes shapes;
    ZEL::Parser().parse(std::string_view(text), shapes);
    std::vector<Position> all;
    for (const auto& shape : shapes) {
        Position position{shape->isRelative(), kNone, {}};
        if (shape->getReferencePosition(position.reference) != 0) position.reference = kNone;
        Vec3 place;
        if (const auto* list = dynamic_cast<const ZEL::PointBasedShape*>(shape.get()))
            position.given = list->points();
        else if (const auto* points = dynamic_cast<const ZEL::Points*>(shape.get()))
            position.given = points->points();
        else if (const auto* circular = dynamic_cast<const ZEL::CircularShape*>(shape.get()))
            position.given.push_back((circular->getCenterPosition(place), place));
        else if (const auto* label = dynamic_cast<const ZEL::Annotation*>(shape.get()))
            position.given.push_back((label->getPosition(place), place));
        if (const auto* orbit = dynamic_cast<const ZEL::Orbit*>(shape.get()))
            position.given.push_back((orbit->getCenterPosition2(place), place));
        all.push_back(position);
    }
    return all;
}

double apart(const Vec3& a, const Vec3& b) {
    constexpr double radius = 6.4e6;
    return std::hypot((a.lat() - b.lat()) * radius,
                      std::remainder(a.lon() - b.lon(), halCore::kTwoPi) * std::cos(a.lat()) * radius,
                      a.alt() - b.alt());
}

/// Offsets to the digit, places to a micrometre.
void expectSame(const std::string& was, const std::string& is) {
    const auto before = positionsOf(was);
    const auto after = positionsOf(is);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        SCOPED_TRACE(testing::Message() << "block " << i);
        ASSERT_EQ(before[i].relative, after[i].relative);
        ASSERT_EQ(before[i].given.size(), after[i].given.size());
        if (before[i].relative) {
            ASSERT_EQ(before[i].reference, after[i].reference);
            ASSERT_EQ(before[i].given, after[i].given);
        }
        for (std::size_t k = 0; k < before[i].given.size() && !before[i].relative; ++k)
            ASSERT_LT(apart(before[i].given[k], after[i].given[k]), 1e-6);
    }
}

class PositionsTest : public ::testing::Test {
  protected:
    PositionsTest() {
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
        host.settings["AutoSaveZelDir"] = temporary.path();
        document->setEditing(true);
    }
    ~PositionsTest() override {
        document.reset();
        halNotify::setNotifyHandler({});
    }
    void move(const Vec3& place) {
        auto& point = host.platforms[7].point;
        point.latRad = place.lat();
        point.lonRad = place.lon();
        point.altMeters = place.alt();
        document->followPlatform();
    }
    /// \param zel the host's overlay that it is, null for none
    void load(const std::string& text, void* zel = nullptr) {
        messages.clear();
        auto reading = document->read(text, "test.zel", zel);
        ASSERT_EQ(reading.loaded.error, "");
        document->take(std::move(reading));
    }
    std::vector<Vec3> places() const {
        std::vector<Vec3> all;
        for (const Shape* shape : overlay.shapes())
            all.insert(all.end(), shape->placed().places().begin(), shape->placed().places().end());
        return all;
    }

    FakeHost host;
    std::vector<std::string> messages;
    const TemporaryDirectory temporary;
    Preferences preferences;
    Overlay overlay;
    std::unique_ptr<Document> document = std::make_unique<Document>(preferences, overlay);
    RandomFiles random{preferences};
};

/// Where a host draws a block, and what that counts from, is the same after loading and saving, for every
/// camera, platform and mixture of blocks, and wherever the platform goes in between.
TEST_F(PositionsTest, StayWhatTheyAre) {
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 100000 : 3000;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        const std::string text = random.file();
        SCOPED_TRACE(text);
        host.eye = random.shapes.maybe() ? std::optional(random.place()) : std::nullopt;
        move(random.place());
        void* const zel = random.shapes.maybe() ? &host : nullptr;
        if (zel) host.overlays[zel] = {text, "test.zel", 7, true};
        load(text, zel);
        if (HasFailure()) break;
        const std::string saved = document->text();
        expectSame(text, saved);

        Overlay blind;
        host.eye.reset();
        Document other(preferences, blind);
        other.take(other.read(text, "test.zel"));
        EXPECT_EQ(other.text(), saved) << "the same without a view and a platform, as in the command";

        const int loads = host.loads;
        for (int leg = 0; leg < 4; ++leg) move(random.place());
        EXPECT_EQ(document->text(), saved);
        EXPECT_EQ(host.loads, loads);
        EXPECT_TRUE(overlay.isKept());

        // Attached by the user, all of it keeps its places or nothing changes, but for offsets from nowhere.
        if (!zel) {
            const auto blocks = positionsOf(text);
            const bool fromNowhere = std::ranges::any_of(
                blocks, [](const auto& block) { return block.relative && block.reference == kNone; });
            const auto before = places();
            const bool attached = document->attach(7, false);
            if (!attached) {
                EXPECT_THAT(messages, Contains(HasSubstr("Not attached to")));
                EXPECT_EQ(document->text(), saved);
            } else {
                const std::string sailing = document->text();
                const auto after = places();
                for (std::size_t i = 0; i < before.size() && !fromNowhere; ++i)
                    EXPECT_TRUE(apart(before[i], after[i]) < 1e-6 ||
                                !(isPlace(before[i]) || isPlace(after[i])));
                const auto& point = host.platforms[7].point;
                const Vec3 start(point.latRad, point.lonRad, point.altMeters);
                for (int leg = 0; leg < 4; ++leg) move(random.place());
                EXPECT_EQ(document->text(), sailing);
                move(start);
                document->attach(0, false);
                const auto detached = places();
                for (std::size_t i = 0; i < after.size(); ++i)
                    if (isPlace(after[i])) {
                        EXPECT_LT(apart(after[i], detached[i]), 1e-6);
                    }
            }
        }
        document->clear();
    }
}

/// Of drawn shapes of every kind too, attached in any part of the earth; read again they are the same bytes.
TEST_F(PositionsTest, StayWhatTheyAreOnceTheyAreAttached) {
    for (int round = 0; round < 40 * RandomShapes::kKinds && !HasFailure(); ++round) {
        const Vec3 place = random.place();
        move(place);
        overlay.addShape(random.shapes.make(round % RandomShapes::kKinds, &place).release());
        const std::string drawn = overlay.text();
        SCOPED_TRACE(drawn);
        const auto before = places();
        if (document->attach(7, false)) {
            EXPECT_EQ(places(), before);
            const std::string text = overlay.text();
            for (int leg = 0; leg < 4; ++leg) move(random.place());
            EXPECT_EQ(overlay.text(), text);
            move(place);
            document->attach(0, false);
            const auto after = places();
            for (std::size_t i = 0; i < before.size(); ++i) EXPECT_LT(apart(before[i], after[i]), 1e-6);
            host.overlays[&host] = {text, "test.zel", 7, true};
            load(text, &host);
            EXPECT_EQ(overlay.text(), text);
        } else {
            EXPECT_THAT(messages.back(), HasSubstr("Not attached to"));
            EXPECT_EQ(overlay.text(), drawn);
            EXPECT_GT(std::abs(place.lat()), 88.8 * kDegree);
        }
        document->clear();
    }
}

TEST_F(PositionsTest, CenteringTellsWhatItDoesToTheFormOrIsRefused) {
    struct Case {
        const char* what;
        std::vector<Vec3> degrees;
        double platform;
        const char* message;
    };
    const std::vector<Vec3> north = {{0, 0, 0}, {0.3, 0, 0}};
    // About 89.5 degrees north, 120 degrees are 116.97 km of the parallel, and 96.7 km of way.
    const std::vector<Case> table = {
        {"a third of a degree", north, 45, ""},
        {"11 km from the pole", north, 89.9, "Not attached to"},
        {"round the pole", {{89.5, 0, 0}, {89.5, 120, 0}, {89.5, -120, 0}}, 45, "change by up to 142 %"},
        {"nothing but the pole", {{90, 0, 0}, {90, 50, 0}, {90, 90, 0}}, 45, "Not attached to"}};
    for (const auto& [what, degrees, platform, message] : table) {
        SCOPED_TRACE(what);
        document->clear();
        messages.clear();
        auto* const shape = new PolygonShape(preferences, PolygonShape::Line);
        for (const Vec3& point : degrees) shape->addPoint({point.lat() * kDegree, point.lon() * kDegree, 0});
        overlay.addShape(shape);
        const std::string before = overlay.text();
        move({platform * kDegree, 1, 0});
        const bool refused = std::string(message).starts_with("Not attached");
        EXPECT_EQ(document->attach(7, true), !refused);
        EXPECT_EQ(overlay.text() == before, refused);
        if (*message)
            EXPECT_THAT(messages, Contains(HasSubstr(message)));
        else
            EXPECT_THAT(messages, IsEmpty());
    }
}

TEST_F(PositionsTest, NothingIsLostOnAPole) {
    auto* const circle = new CylinderShape(preferences, CylinderShape::Circle);
    circle->setCenter({0.31, 0.2, 0});
    circle->setMajorRadius(1000);
    circle->setName("Ring");
    overlay.addShape(circle);
    const std::string drawn = overlay.text();
    const Vec3 pole(halCore::kHalfPi, 0, 0);
    move(pole);
    EXPECT_FALSE(document->attach(7, false));
    EXPECT_THAT(messages, Contains(HasSubstr("no offsets from there lead to all of Ring")));
    EXPECT_EQ(overlay.text(), drawn);

    // Sailing there it is complete all the time. A rescue file can be attached again.
    move({0.3, 0.2, 0});
    ASSERT_TRUE(document->attach(7, false));
    const std::string sailing = overlay.text();
    move(pole);
    EXPECT_FALSE(circle->centerPt());
    EXPECT_TRUE(circle->isComplete());
    EXPECT_THAT(overlay.begun(), IsEmpty());
    ASSERT_TRUE(document->rescue());
    std::string rescued;
    for (const auto& entry : std::filesystem::directory_iterator(temporary.path()))
        UTILS::readFile(entry.path(), rescued);
    ASSERT_EQ(positionsOf(rescued).size(), 1u);
    EXPECT_EQ(positionsOf(rescued)[0].given, positionsOf(sailing)[0].given);
    EXPECT_EQ(positionsOf(rescued)[0].reference, kNone);
    EXPECT_THAT(messages, Contains(HasSubstr("The offsets in ")));
    // What is typed counts as elsewhere; what is drawn has no offset.
    circle->setMajorRadius(2000);
    auto* const line = new PolygonShape(preferences, PolygonShape::Line);
    overlay.addShape(line);
    line->mouseSetPointAtIndex(0, {0.3, 0.2, 0});
    EXPECT_EQ(line->getNumPoints(), 0u);
    EXPECT_THAT(messages.back(), HasSubstr("no offset from its platform leads there"));
    // The platform goes for good: the offset stays, with where it counted from.
    messages.clear();
    EXPECT_TRUE(document->platformRemoved(7));
    EXPECT_THAT(messages, Contains(HasSubstr("\"Ring\" keeps its offsets")));
    EXPECT_EQ(positionsOf(overlay.text())[0].reference, pole);
    EXPECT_EQ(positionsOf(overlay.text())[0].given, positionsOf(sailing)[0].given);
    EXPECT_EQ(circle->majorAxis(), 2000);
    // And so it does from the next one.
    move({0.5, 0.4, 0});
    EXPECT_TRUE(document->attach(7, false));
    EXPECT_EQ(positionsOf(overlay.text())[0].reference, kNone);
    EXPECT_EQ(positionsOf(overlay.text())[0].given, positionsOf(sailing)[0].given);
    EXPECT_TRUE(circle->centerPt());
}

/// One block that counts from where nothing leads anywhere keeps nobody else from the platform.
TEST_F(PositionsTest, ABlockWithoutAPlaceStaysWithItsReference) {
    load(
        "start\nannotation Lost\naltitudeunits m\nrangeunits m\nref 90 0 0\nxyz 5 6 7\nend\n"
        "start\nline\nlla 17.2 11.5 0\nlla 17.3 11.6 0\nend\n");
    move({0.3, 0.2, 0});
    EXPECT_TRUE(document->attach(7, false));
    const auto positions = positionsOf(overlay.text());
    ASSERT_EQ(positions.size(), 2u);
    EXPECT_THAT(positions[0].given, ElementsAre(Vec3(5, 6, 7)));
    EXPECT_EQ(positions[0].reference, Vec3(halCore::kHalfPi, 0, 0));
    EXPECT_TRUE(positions[1].relative && positions[1].reference == kNone);
}

}  // namespace
