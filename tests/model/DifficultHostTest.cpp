#include <memory>

#include <gtest/gtest.h>

#include "model/AnnotationShape.h"
#include "model/FreeDrawShape.h"
#include "model/OrbitShape.h"
#include "model/OverlayFile.h"
#include "model/PolygonShape.h"
#include "model/QuietServiceTable.h"
#include "model/RectangleShape.h"
#include "support/FakeHost.h"

using halCore::Vec3;
using namespace OverlayEditor;

namespace {

/// Builds one shape of every class, changes, attaches, copies and deletes them.
void exercise() {
    Preferences preferences;
    PointConverter platform;
    platform.setReferenceLla({0.3, 0.4, 5.0}, 7);
    Overlay overlay;

    auto wedge = std::make_unique<CylinderShape>(preferences, CylinderShape::Wedge);
    wedge->setCenter({0.1, 0.2, 0.0});
    wedge->setInnerRadius(1000.0);
    wedge->setStartAngle(0.5);
    wedge->setEndAngle(1.5);
    auto orbit = std::make_unique<OrbitShape>(preferences);
    orbit->setCenter({0.1, 0.2, 0.0});
    orbit->setCenter2({0.1, 0.3, 0.0});
    auto line = std::make_unique<PolygonShape>(preferences, PolygonShape::Line);
    line->addPoint({0.1, 0.1, 0.0});
    line->addPoint({0.2, 0.1, 0.0});
    auto box = std::make_unique<RectangleShape>(preferences, RectangleShape::Rectangle);
    box->setFromCenter({0.5, 0.5, 0.0}, 2000.0, 1000.0);
    auto drawing = std::make_unique<FreeDrawShape>(preferences);
    drawing->startLine({0.1, 0.1, 0.0});
    drawing->addPoint({0.2, 0.2, 0.0});
    auto label = std::make_unique<AnnotationShape>(preferences);
    label->mouseSetPosition({0.1, 0.1, 0.0});

    overlay.addShape(wedge.release());
    overlay.addShape(orbit.release());
    overlay.addShape(line.release());
    overlay.addShape(box.release());
    overlay.addShape(drawing.release());
    overlay.addShape(label.release());
    overlay.setAttachedPlatformId(7, &platform, true);
    for (Shape* shape : overlay.shapes()) {
        shape->setName("X");
        shape->setShown(false);
        shape->setShown(true);
        const std::unique_ptr<Shape> copy(shape->clone());
        copy->setActive(true);
    }
    EXPECT_FALSE(overlayText(overlay).empty());
    overlay.setActive(false);
    overlay.setAttachedPlatformId(0, nullptr, false);
    overlay.setActive(true);
    overlay.clearShapes(false);
}

TEST(DifficultHost, RefusesEveryCall) {
    FakeHost host;
    host.refuseAll = true;
    exercise();
}

TEST(DifficultHost, CallsBackDuringEveryCall) {
    FakeHost host;
    host.eye = Vec3(0.1, 0.2, 1000.0);
    Preferences preferences;
    Overlay other;
    auto* const circle = new CylinderShape(preferences, CylinderShape::Circle);
    circle->setCenter({0.1, 0.2, 0.0});
    circle->setMajorRadius(10.0);
    other.addShape(circle);
    host.onCall = [&](PIServerFunctions_t) { circle->setFilled(!circle->filled()); };
    exercise();
    host.onCall = nullptr;
    EXPECT_EQ(host.overlays.size(), 1U);  // nothing is left behind but the circle
}

TEST(DifficultHost, IsNotThereAtAll) {
    const QuietServiceTable quiet;
    testing::internal::CaptureStderr();
    exercise();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
