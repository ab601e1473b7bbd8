#pragma once

#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include <GeographicLib/Geodesic.hpp>
#include <gtest/gtest.h>

#include "TestView.h"
#include "model/Overlay.h"
#include "support/FakeHost.h"
#include "support/Installed.h"
#include "tools/BaseMouseTool.h"
#include "tools/MouseManager.h"
#include "tools/MouseToolMaker.h"

/// Reads "21.3N 158.0W".
inline halCore::Vec3 place(const std::string& text) {
    char* rest = nullptr;
    const double lat = std::strtod(text.c_str(), &rest);
    const char northSouth = *rest ? *rest++ : ' ';
    const double lon = std::strtod(rest, &rest);
    const char eastWest = *rest;
    EXPECT_TRUE((northSouth == 'N' || northSouth == 'S') && (eastWest == 'E' || eastWest == 'W')) << text;
    return degrees(northSouth == 'S' ? -lat : lat, eastWest == 'W' ? -lon : lon);
}

struct Line {
    double meters;
    double bearing;  ///< radians in [0, 2 pi)
};

inline Line geodesic(const halCore::Vec3& from, const halCore::Vec3& to) {
    Line line{};
    double azimuth = 0.0, back = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(from.lat() / kDegree, from.lon() / kDegree, to.lat() / kDegree,
                                             to.lon() / kDegree, line.meters, azimuth, back);
    line.bearing = (azimuth < 0.0 ? azimuth + 360.0 : azimuth) * kDegree;
    return line;
}

/// The mouse of a user of the view: goes to places on the earth; the host answers with exactly these.
class Mouse {
  public:
    using Type = PIGUI::PIMouseEventType_t;

    Mouse(FakeHost& host, TestView& view, OverlayEditor::MouseManager& manager)
        : view_(view), manager_(manager) {
        host.pixelToLla = [this](int x, int y) {
            return x == x_ && y == y_ ? at_ : view_.pick(x * view_.density, y * view_.density);
        };
    }

    Mouse& move(const std::string& where) { return move(place(where)); }
    Mouse& move(const halCore::Vec3& lla) {
        const auto pixel = view_.projection().visiblePixel(halCore::toEcef({lla.lat(), lla.lon(), 0.0}));
        EXPECT_TRUE(pixel) << "not in the view";
        if (pixel) aim(toMouse(pixel->x), toMouse(pixel->y), lla);
        return *this;
    }
    /// Onto a device pixel, wherever that is.
    Mouse& moveToPixel(double x, double y) {
        const int column = toMouse(x), row = toMouse(y);
        aim(column, row, view_.pick(column * view_.density, row * view_.density));
        return *this;
    }
    Mouse& moveOffTheEarth() {
        aim(1, 1, std::nullopt);
        return *this;
    }
    Mouse& press() { return send(Type::LeftPress); }
    Mouse& release() { return send(Type::LeftRelease); }
    Mouse& rightPress() { return send(Type::RightPress); }
    /// Out of the view.
    Mouse& leave() { return send(Type::Leave); }
    Mouse& wheel(int delta) { return send(Type::Wheel, PIGUI::PIModifierShift, delta); }
    Mouse& from(const std::string& where) { return move(where).frame().press().frame(); }
    Mouse& to(const std::string& where) { return move(where).frame().release().frame(); }
    Mouse& frame() {
        manager_.preDrawOnRefresh(TestView::kWidth, TestView::kHeight);
        return *this;
    }

    int result = 0;          ///< of the last event
    unsigned modifiers = 0;  ///< held with each event
    /// Called before each event.
    std::function<void()> beforeEvent;

  private:
    int toMouse(double device) const { return static_cast<int>(std::lround(device / view_.density)); }
    void aim(int x, int y, std::optional<halCore::Vec3> at) {
        x_ = x;
        y_ = y;
        at_ = at;
        send(Type::Motion);
    }
    Mouse& send(Type type, unsigned more = 0, int delta = 0) {
        if (beforeEvent) beforeEvent();
        result = manager_.handleMouseEvent(type, PIGUI::PIMouseEvent{x_, y_, modifiers | more, delta});
        return *this;
    }

    TestView& view_;
    OverlayEditor::MouseManager& manager_;
    int x_ = 0;
    int y_ = 0;
    std::optional<halCore::Vec3> at_;
};

/// A view of Oahu with the mouse over it, and shapes that are drawn there.
struct DrawingTest : testing::Test {
    using Tool = OverlayEditor::BaseMouseTool;

    /// Takes the shape; its tool becomes the current one.
    template <typename ConcreteShape>
    ConcreteShape& start(ConcreteShape* shape) {
        overlay.addShape(shape);
        manager.setCurrentMouseTool(shape->mouseTool(), true);
        mouse.frame();
        return *shape;
    }
    static Tool::State stateOf(const OverlayEditor::Shape& shape) {
        return static_cast<const Tool&>(*shape.mouseTool()).state();
    }
    void click(const std::string& where) { mouse.from(where).to(where); }
    /// The label that is drawn, "" for none.
    std::string label() {
        mouse.frame();
        for (const auto& point : view.painted)
            if (!point.label.empty()) return point.label;
        return {};
    }
    bool rubberBandShown() const {
        for (const auto& [handle, loaded] : host.overlays)
            if (loaded.text.find("ff0073ff") != std::string::npos) return true;
        return false;
    }

    FakeHost host;
    TestView view{degrees(21.0, -158.0, 2e5)};
    OverlayEditor::Preferences preferences;
    Installed<OverlayEditor::ToolMaker, OverlayEditor::MouseToolMaker> tools;
    OverlayEditor::MouseManager manager;
    Mouse mouse{host, view, manager};
    OverlayEditor::Overlay overlay;
};
