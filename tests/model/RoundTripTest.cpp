#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <typeinfo>

#include <gtest/gtest.h>

#include "common/Files.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "model/AnnotationShape.h"
#include "model/Overlay.h"
#include "model/OverlayFile.h"
#include "model/PolygonShape.h"
#include "model/RandomShapes.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;

namespace {

class RoundTripTest : public ::testing::Test {
  protected:
    /// Loads a text into an overlay, as the editor does.
    void fill(Overlay& overlay, const std::string& text) {
        overlay.setAttachedPlatformId(platform, platform ? &converter : nullptr, false);
        auto loaded = loadOverlayText(text, "test", preferences, overlay.pointConverter(), platform);
        for (auto& shape : loaded.shapes) overlay.addShape(shape.release());
    }

    FakeHost host;
    Preferences preferences;
    PointConverter converter;
    unsigned long platform = 0;
};

void expectSame(const Vec3& a, const Vec3& b) {
    constexpr double nanodegree = 1e-9 * halCore::kRadiansPerDegree;
    EXPECT_NEAR(a.lat(), b.lat(), nanodegree);
    EXPECT_NEAR(std::remainder(a.lon() - b.lon(), halCore::kTwoPi), 0.0, nanodegree);
    EXPECT_NEAR(a.alt(), b.alt(), 1e-6);
}

TEST_F(RoundTripTest, WhatIsWrittenIsWhatWasThere) {
    RandomShapes shapes(preferences);
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 100000 : 8000;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        const int kind = round % RandomShapes::kKinds;
        // A free drawing is never attached.
        platform = round / RandomShapes::kKinds % 2 == 0 || kind == RandomShapes::kFreeDrawing ? 0 : 77;
        const Vec3 reference(shapes.number(-1.5, 1.5), shapes.number(-3.14, 3.14), shapes.number(0, 9000));
        converter.setReferenceLla(reference, 77);

        Overlay first;
        first.setAttachedPlatformId(platform, platform ? &converter : nullptr, false);
        Shape* const made = shapes.make(kind, platform ? &reference : nullptr).release();
        first.addShape(made);
        const std::string text = first.text();
        ASSERT_NE(text, "");
        SCOPED_TRACE(text);

        Overlay second;
        fill(second, text);
        EXPECT_EQ(second.text(), text);
        // Each line of a drawing comes back as a line of its own; single points do not.
        if (kind == RandomShapes::kFreeDrawing) continue;
        ASSERT_EQ(second.shapes().size(), 1U);
        const Shape& back = *second.shapes()[0];
        EXPECT_EQ(back.name(), made->name());
        EXPECT_TRUE(typeid(back) == typeid(*made) || dynamic_cast<const PolygonShape*>(&back))
            << "a triangle";
        expectSame(back.boundingBox().first, made->boundingBox().first);
        expectSame(back.boundingBox().second, made->boundingBox().second);
    }
}

TEST_F(RoundTripTest, NamesCannotBreakTheFile) {
    struct Case {
        std::string name;
        std::string shapes = name, labels = name;  ///< what comes back
    };
    const Case cases[] = {{"two\nlines", "two\\nlines"},
                          {"two\r\nlines", "two\\nlines", "two\nlines"},
                          {"a\tb", "a b", "a b"},
                          {"  a  b  ", "a b"},
                          {"a\nend\nstart\ncircle", "a\\nend\\nstart\\ncircle"},
                          {"\n", "\\n"},
                          {"\"a  b\" c"},
                          {"\"open  quote"},
                          {"# a"},
                          {"end"},
                          {"Under_score"},
                          {"a _b"},
                          {"back\\slash"},
                          {"\xFF\xFE"},
                          {std::string(10000, 'n')}};
    for (const Case& c : cases)
        for (int kind = 0; kind < RandomShapes::kKinds; ++kind) {
            RandomShapes random(preferences);
            Overlay first;
            first.addShape(random.make(kind, nullptr).release());
            first.shapes()[0]->setName(c.name);
            const std::string text = first.text();
            SCOPED_TRACE(text.substr(0, 1000));
            Overlay second;
            fill(second, text);
            EXPECT_EQ(second.text(), text);
            ASSERT_FALSE(second.shapes().empty());
            const bool isLabel = dynamic_cast<AnnotationShape*>(first.shapes()[0]);
            for (const Shape* shape : second.shapes())
                EXPECT_EQ(shape->name(), isLabel ? c.labels : c.shapes);
        }
}

TEST_F(RoundTripTest, CountriesAreKept) {
    std::string text;
    ASSERT_EQ(UTILS::readFile(OE_SOURCE_DIR "/samples/countries-110m.zel", text), "");
    halCore::ZEL::Parser::Shapes countries;
    halCore::ZEL::Parser().parse(std::string_view(text), countries);
    Overlay once;
    fill(once, text);
    const auto shapes = once.shapes();
    ASSERT_EQ(shapes.size(), 286U);
    for (std::size_t i = 0; i < shapes.size(); ++i)
        EXPECT_EQ(dynamic_cast<const PolygonShape&>(*shapes[i]).points(),
                  dynamic_cast<const halCore::ZEL::Polygon&>(*countries[i]).points());
    const std::string saved = once.text();
    Overlay twice;
    fill(twice, saved);
    EXPECT_EQ(twice.text(), saved);
}

}  // namespace
