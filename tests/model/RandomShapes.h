#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include "geo/Angles.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "model/ShapeKinds.h"

namespace OverlayEditor {

/// Random shapes of every kind, the same in every run.
class RandomShapes {
  public:
    explicit RandomShapes(const Preferences& preferences, unsigned seed = 20240229)
        : preferences_(preferences), random_(seed) {}

    double number(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    int integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }
    bool maybe() { return integer(0, 1) == 1; }
    /// Near `about` when there is one: what is attached is near its platform.
    halCore::Vec3 position(const halCore::Vec3* about) {
        if (!about) return {number(-1.55, 1.55), number(-3.1415, 3.1415), number(-1000, 40000)};
        return {std::clamp(about->lat() + number(-0.02, 0.02), -1.57, 1.57),
                halCore::wrapToPi(about->lon() + number(-0.02, 0.02)), number(-1000, 40000)};
    }
    double length() { return std::pow(10.0, number(-2, 6)); }

    std::unique_ptr<Shape> make(int kind, const halCore::Vec3* about) {
        std::unique_ptr<BaseFilledShape> made;
        if (kind < 9) {
            auto shape =
                std::make_unique<CylinderShape>(preferences_, static_cast<CylinderShape::Subtype>(kind));
            shape->setCenter(position(about));
            shape->setMajorRadius(length());
            if (shape->kind().radii == ShapeKind::Radii::Two) shape->setMinorRadius(length());
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
        } else if (kind == kFreeDrawing) {
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
    static constexpr int kFreeDrawing = 14;

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
    std::mt19937_64 random_;
};

}  // namespace OverlayEditor
