#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "geo/Angles.h"
#include "gui/Form.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/TestEquipment.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"
#include "model/ShapeRegistry.h"
#include "support/TemporaryDirectory.h"

namespace OverlayEditor {

using halCore::kRadiansPerDegree;
using halCore::Vec3;

inline constexpr const char* kTwoCircles =
    "version 2\n\nstart\ncircle\naltitudeunits m\nrangeunits m\ncenterlla 21.3 -158 0\nradius "
    "1852.123456789\n"
    "3d name Inner\nend\n\nstart\ncircle\naltitudeunits m\nrangeunits m\ncenterlla 21.3 -158 0\nradius 3704\n"
    "3d name Outer\nend\n";

class OverlayEditorDialogTest : public ::testing::Test {
  protected:
    OverlayEditorDialogTest() {
        halNotify::setNotifyHandler([this](halNotify::Severity severity, const std::string& text) {
            messages.push_back(text);
            if (dialog) dialog->hear(severity, text);
        });
        host.eye = Vec3(0.4, -2.7, 1e6);
        host.settings["AutoSaveZelDir"] = path("rescued");
        for (const auto subtype : {CylinderShape::Circle, CylinderShape::Sphere, CylinderShape::Cone})
            registry.addPrototype(CylinderShape(preferences, subtype));
        registry.addPrototype(AnnotationShape(preferences));
        registry.addPrototype(PolygonShape(preferences, PolygonShape::Line));
        dialog = std::make_unique<OverlayEditorDialog>(&preferences, &mouse, &overlay, registry.getShapes());
    }
    ~OverlayEditorDialogTest() override {
        dialog.reset();
        overlay.clearShapes(true);
        halNotify::setNotifyHandler({});
        freeFunctors();
    }

    void press(const std::string& caption) { host.activate(*host.find(caption)); }
    FakeHost::Widget& list() {
        for (auto& [handle, widget] : host.widgets)
            if (widget.kind == FakeHost::Id::CreateList) return widget;
        throw std::runtime_error("no list");
    }
    void select(int item) {
        list().number = item;
        host.activate(list());
    }
    /// 1 is the first kind behind "Add".
    CylinderShape& add(int option) {
        form.choose("Shape:", option);
        return static_cast<CylinderShape&>(*overlay.shapes().back());
    }
    CylinderShape& addCircle(double latDeg, double lonDeg, double radiusMeters) {
        CylinderShape& shape = add(1);
        shape.setCenter(Vec3(latDeg * kRadiansPerDegree, lonDeg * kRadiansPerDegree, 0));
        shape.setMajorRadius(radiusMeters);
        press("Stop");
        return shape;
    }
    /// What the dialog says about changes, a second later.
    std::string changes() {
        host.fireTimeouts();
        const std::string& text = form.field("Changes:").text;
        return text.empty() ? "None" : text;
    }
    /// Whether the dialog tells it.
    bool says(const std::string& text) const {
        return std::ranges::any_of(host.widgets, [&](const auto& entry) {
            return entry.second.kind == FakeHost::Id::CreateLabel &&
                   entry.second.text.find(text) != std::string::npos;
        });
    }
    std::string path(const char* name) const { return directory + "/" + name; }
    std::string contentsOf(const std::string& file) const {
        std::string contents;
        UTILS::readFile(file, contents);
        return contents;
    }
    std::vector<std::string> rescued() const {
        std::vector<std::string> files;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(path("rescued"), none))
            files.push_back(entry.path().string());
        return files;
    }
    void write(const std::string& file, const std::string& text) const { std::ofstream(file) << text; }
    void* fileOverlay(const std::string& file) const {
        for (const auto& [handle, zel] : host.overlays)
            if (zel.path == file) return handle;
        return nullptr;
    }

    FakeHost host;
    std::vector<std::string> messages;
    const TemporaryDirectory temporary;
    const std::string& directory = temporary.path();
    TestEquipment equipment;
    Preferences preferences;
    MouseManager mouse;
    ShapeRegistry registry;
    Overlay overlay;
    std::unique_ptr<OverlayEditorDialog> dialog;
    Form form{host};
};

}  // namespace OverlayEditor
