#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "geo/Angles.h"
#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/OverlayFile.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;

namespace {

/// Random shapes of every kind, the same in every run.
class Shapes {
  public:
    explicit Shapes(const Preferences& preferences) : preferences_(preferences) {}

    double number(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    int integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    bool maybe() { return integer(0, 1) == 1; }
    /// Near `about` when there is one: what is attached is near its platform.
    Vec3 position(const Vec3* about) {
        if (!about) return {number(-1.55, 1.55), number(-3.1415, 3.1415), number(-1000, 40000)};
        return {about->lat() + number(-0.02, 0.02), about->lon() + number(-0.02, 0.02), number(-1000, 40000)};
    }
    double length() { return std::pow(10.0, number(-2, 6)); }

    std::unique_ptr<Shape> make(int kind, const Vec3* about) {
        std::unique_ptr<BaseFilledShape> made;
        if (kind < 9) {
            auto shape =
                std::make_unique<CylinderShape>(preferences_, static_cast<CylinderShape::Subtype>(kind));
            shape->setCenter(position(about));
            shape->setMajorRadius(length());
            shape->setMinorRadius(length());
            shape->setHeight(number(-100, 20000));
            if (kind == CylinderShape::Wedge || (kind == CylinderShape::Arc && maybe())) {
                shape->setStartAngle(number(-7, 7));
                shape->setEndAngle(maybe() ? shape->startAngle() + number(-1e-6, 1e-6) : number(-7, 7));
            }
            made = std::move(shape);
        } else if (kind == 9) {
            auto shape = std::make_unique<OrbitShape>(preferences_);
            shape->setCenter(position(about));
            shape->setCenter2(position(about));
            if (maybe()) shape->setMinorRadius(length());
            if (maybe()) shape->setMinorRadius(position(about));
            made = std::move(shape);
        } else if (kind < 12) {
            auto shape =
                std::make_unique<PolygonShape>(preferences_, static_cast<PolygonShape::Subtype>(kind - 10));
            for (int points = integer(3, 20); points > 0; --points) shape->addPoint(position(about));
            made = std::move(shape);
        } else if (kind < 14) {
            auto shape = std::make_unique<RectangleShape>(preferences_,
                                                          static_cast<RectangleShape::Subtype>(kind - 12));
            if (maybe())
                shape->setFromCenter(position(about), length(), length());
            else
                shape->setFirstCorner(position(about)), shape->setLastCorner(position(about));
            made = std::move(shape);
        } else if (kind == 14) {
            auto shape = std::make_unique<FreeDrawShape>(preferences_);
            for (int lines = integer(1, 3); lines > 0; --lines) {
                shape->startLine(position(about));
                for (int points = integer(1, 10); points > 0; --points) shape->addPoint(position(about));
            }
            made = std::move(shape);
        } else {
            auto label = std::make_unique<AnnotationShape>(preferences_);
            label->setPosition(position(about));
            label->setColor(color());
            label->setFontSize(integer(1, 100));
            label->setFontName("times.ttf");
            label->setName(labelText());
            return label;
        }
        made->setLineWidth(integer(0, 20));
        made->setLineColor(byte(), byte(), byte(), byte());
        made->setFillColor(byte(), byte(), byte(), byte());
        made->setFilled(maybe());
        made->setName("Shape_" + std::to_string(integer(0, 999)) + " of mine");
        return made;
    }

    static constexpr int kKinds = 16;

  private:
    unsigned char byte() { return static_cast<unsigned char>(integer(0, 255)); }
    std::uint32_t color() { return static_cast<std::uint32_t>(random_()); }
    std::string labelText() {
        // An underscore beside a blank is the one thing that a file cannot always keep.
        static const char* const parts[] = {"a",  "B", " ",   "  ", "y_y", "\n",
                                            "\"", "#", "end", "é",  "😀",   "12"};
        std::string text = "x";
        for (int i = integer(0, 12); i > 0; --i) text += parts[integer(0, 11)];
        return text;
    }

    const Preferences& preferences_;
    std::mt19937_64 random_{20240229};
};

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
}

void expectSame(const Shape& was, const Shape& is) {
    EXPECT_EQ(was.name(), is.name());
    if (const auto* a = dynamic_cast<const CylinderShape*>(&was)) {
        const auto& b = dynamic_cast<const CylinderShape&>(is);
        EXPECT_EQ(a->subtype(), b.subtype());
        expectSame(a->centerPt()->getPosition(), b.centerPt()->getPosition());
        const bool orbit = a->subtype() == CylinderShape::NoSubtype;
        if (orbit) {
            expectSame(a->majorAxisPt()->getPosition(), b.majorAxisPt()->getPosition());
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
        if (c->subtype() == RectangleShape::Triangle) return;
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

TEST_F(RoundTripTest, WhatIsWrittenIsWhatWasThere) {
    Shapes shapes(preferences);
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        platform = round % 2 == 0 ? 0 : 77;
        const Vec3 reference(shapes.number(-1.5, 1.5), shapes.number(-3.14, 3.14), shapes.number(0, 9000));
        converter.setReferenceLla(reference, 77);

        Overlay first;
        first.setAttachedPlatformId(platform, platform ? &converter : nullptr, false);
        Shape* const made = shapes.make(round % Shapes::kKinds, platform ? &reference : nullptr).release();
        first.addShape(made);
        const std::string text = overlayText(first);
        ASSERT_NE(text, "");
        SCOPED_TRACE(text);

        Overlay second;
        fill(second, text);
        EXPECT_EQ(overlayText(second), text);
        if (dynamic_cast<const FreeDrawShape*>(made)) continue;
        ASSERT_EQ(second.shapes().size(), 1U);
        expectSame(*made, *second.shapes()[0]);
    }
}

TEST_F(RoundTripTest, CountriesAreKept) {
    std::string text;
    ASSERT_EQ(UTILS::readFile(OE_SOURCE_DIR "/samples/countries-110m.zel", text), "");
    Overlay once;
    fill(once, text);
    EXPECT_EQ(once.shapes().size(), 286U);
    const std::string saved = overlayText(once);
    Overlay twice;
    fill(twice, saved);
    EXPECT_EQ(overlayText(twice), saved);
}

}  // namespace
