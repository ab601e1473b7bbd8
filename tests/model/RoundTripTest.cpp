#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/Files.h"
#include "format/Parser.h"
#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/Overlay.h"
#include "model/OverlayFile.h"
#include "model/PolygonShape.h"
#include "model/RandomShapes.h"
#include "model/RectangleShape.h"
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

double angleBetween(double a, double b) {
    return std::abs(std::remainder(a - b, halCore::kTwoPi));
}

void expectSame(const Vec3& a, const Vec3& b) {
    constexpr double nanodegree = 1e-9 * halCore::kRadiansPerDegree;
    EXPECT_NEAR(a.lat(), b.lat(), nanodegree);
    EXPECT_LT(angleBetween(a.lon(), b.lon()), nanodegree);
    EXPECT_NEAR(a.alt(), b.alt(), 1e-6);
    EXPECT_LE(std::abs(b.lon()), halCore::kPi);
}

void expectSame(const Shape& was, const Shape& is) {
    EXPECT_EQ(was.name(), is.name());
    if (const auto* a = dynamic_cast<const CylinderShape*>(&was)) {
        const auto& b = dynamic_cast<const CylinderShape&>(is);
        EXPECT_EQ(a->subtype(), b.subtype());
        expectSame(*a->centerPt(), *b.centerPt());
        if (a->subtype() == CylinderShape::NoSubtype) {
            expectSame(*a->majorAxisPt(), *b.majorAxisPt());
            if (a->minorAxisPt()) {
                EXPECT_NEAR(a->minorAxis(), b.minorAxis(), 1e-9 * a->minorAxis());
            }
            return;
        }
        EXPECT_NEAR(a->majorAxis(), b.majorAxis(), 1e-9 * a->majorAxis());
        if (b.minorAxisPt()) {
            EXPECT_NEAR(a->minorAxis(), b.minorAxis(), 1e-9 * a->minorAxis());
        }
        if (b.heightPt()) {
            EXPECT_NEAR(a->height(), b.height(), 1e-9 * std::abs(a->height()));
        }
        EXPECT_LT(angleBetween(a->startAngle(), b.startAngle()), 1e-9);
        EXPECT_LT(angleBetween(a->endAngle(), b.endAngle()), 1e-9);
    } else if (const auto* c = dynamic_cast<const RectangleShape*>(&was)) {
        if (c->subtype() == RectangleShape::Triangle) {
            // It comes back as a polygon: base in the south, tip in the middle of the north side.
            const auto& triangle = dynamic_cast<const PolygonShape&>(is);
            ASSERT_EQ(triangle.getNumPoints(), 3U);
            const auto [low, high] = c->boundingBox();
            expectSame({low.lat(), c->firstCorner()->lon(), low.alt()}, triangle.pointAtIndex(0));
            expectSame({low.lat(), c->lastCorner()->lon(), low.alt()}, triangle.pointAtIndex(1));
            expectSame({high.lat(), 0.5 * (low.lon() + high.lon()), low.alt()}, triangle.pointAtIndex(2));
            return;
        }
        const auto& d = dynamic_cast<const RectangleShape&>(is);
        expectSame(*c->firstCorner(), *d.firstCorner());
        expectSame(*c->lastCorner(), *d.lastCorner());
    } else if (const auto* e = dynamic_cast<const PolygonShape*>(&was)) {
        const auto& f = dynamic_cast<const PolygonShape&>(is);
        EXPECT_EQ(e->subtype(), f.subtype());
        ASSERT_EQ(e->getNumPoints(), f.getNumPoints());
        for (std::size_t i = 0; i < e->getNumPoints(); ++i) expectSame(e->pointAtIndex(i), f.pointAtIndex(i));
    } else if (const auto* g = dynamic_cast<const AnnotationShape*>(&was)) {
        const auto& h = dynamic_cast<const AnnotationShape&>(is);
        expectSame(g->position(), h.position());
        EXPECT_EQ(g->color(), h.color());
        EXPECT_EQ(g->fontSize(), h.fontSize());
        EXPECT_EQ(g->fontName(), h.fontName());
    }
}

/// Each line of a drawing comes back as a line of its own; single points do not.
void expectSameLines(const FreeDrawShape& drawing, const Overlay& overlay) {
    const auto shapes = overlay.shapes();
    std::size_t count = 0;
    for (const auto& line : drawing.lines()) {
        if (line.size() < 2) continue;
        ASSERT_LT(count, shapes.size());
        const auto& back = dynamic_cast<const PolygonShape&>(*shapes[count++]);
        EXPECT_EQ(back.name(), drawing.name());
        ASSERT_EQ(back.getNumPoints(), line.size());
        for (std::size_t i = 0; i < line.size(); ++i) expectSame(line[i], back.pointAtIndex(i));
    }
    EXPECT_EQ(count, shapes.size());
}

TEST_F(RoundTripTest, WhatIsWrittenIsWhatWasThere) {
    RandomShapes shapes(preferences);
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 100000 : 8000;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        platform = round / RandomShapes::kKinds % 2 == 0 ? 0 : 77;
        const Vec3 reference(shapes.number(-1.5, 1.5), shapes.number(-3.14, 3.14), shapes.number(0, 9000));
        converter.setReferenceLla(reference, 77);

        Overlay first;
        first.setAttachedPlatformId(platform, platform ? &converter : nullptr, false);
        Shape* const made =
            shapes.make(round % RandomShapes::kKinds, platform ? &reference : nullptr).release();
        first.addShape(made);
        const std::string text = first.text();
        ASSERT_NE(text, "");
        SCOPED_TRACE(text);

        Overlay second;
        fill(second, text);
        const auto* const drawing = dynamic_cast<const FreeDrawShape*>(made);
        // A free drawing is never attached; the lines that come back are.
        if (!drawing || !platform) {
            EXPECT_EQ(second.text(), text);
        }
        if (drawing) {
            expectSameLines(*drawing, second);
            continue;
        }
        ASSERT_EQ(second.shapes().size(), 1U);
        expectSame(*made, *second.shapes()[0]);
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

/// A platform that moves takes the shapes along; what is written of them is offsets from it.
TEST_F(RoundTripTest, ShapesCarriedAboutKeepTheirOffsetsAndAreNotLoadedAnew) {
    RandomShapes shapes(preferences);
    platform = 77;
    for (int kind = 0; kind < RandomShapes::kKinds && !HasFailure(); ++kind) {
        const Vec3 start(shapes.number(-1.2, 1.2), shapes.number(-3.14, 3.14), shapes.number(0, 9000));
        converter.setReferenceLla(start, 77);
        Overlay first;
        first.setAttachedPlatformId(77, &converter, false);
        first.addShape(shapes.make(kind, &start).release());
        Overlay overlay;
        fill(overlay, first.text());
        const std::string text = overlay.text();
        SCOPED_TRACE(text);

        const int loads = host.loads;
        const auto carryTo = [&](const Vec3& to) {
            Vec3 from;
            converter.getReferenceLla(from);
            converter.setReferenceLla(to, 77);
            overlay.carry(OverlayEditor::ReferenceMove(from, converter));
        };
        // Sides along the meridians: the other two corners of a box are a little elsewhere at each place.
        const bool box = text.find("\npolygon\n") != std::string::npos && kind >= 12;
        for (int step = 0; step < 500; ++step) {
            carryTo({shapes.number(-1.2, 1.2), shapes.number(-3.14, 3.14), shapes.number(0, 9000)});
            if (box) continue;
            ASSERT_EQ(overlay.text(), text) << "after step " << step;
        }
        carryTo(start);
        EXPECT_EQ(overlay.text(), text);
        EXPECT_EQ(host.loads, loads);
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
