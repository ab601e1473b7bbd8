#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Files.h"
#include "common/Notify.h"
#include "geo/Angles.h"
#include "model/CylinderShape.h"
#include "model/Document.h"
#include "pi/PIHALVIS.h"
#include "support/FakeHost.h"
#include "support/ScopedVariable.h"
#include "support/TemporaryDirectory.h"

namespace OverlayEditor {

using halCore::Vec3;

inline constexpr double kDegree = halCore::kRadiansPerDegree;

inline std::string block(const std::string& lines, const std::string& name) {
    return "start\naltitudeunits m\nrangeunits m\n" + lines + "3d name " + name + "\nend\n\n";
}

inline const std::string kTwoCircles =
    "version 2\n\n" + block("circle\ncenterlla 21.3 -158 0\nradius 1852.123456789\n", "Inner") +
    block("circle\ncenterlla 21.3 -158 0\nradius 3704\n", "Outer");
inline const std::string kBox = block("latlonaltbox 4 3 1 2 0\n", "Fence");

inline std::string offsets(const std::string& reference = {}) {
    return block("line\n" + reference + "xyz 1000.5 2000 0\nxyz 3000 -400.25 10\n", "Leg");
}

class DocumentTest : public ::testing::Test {
  protected:
    DocumentTest() {
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
        host.eye = Vec3(0.4, -2.7, 1e6);
        host.settings["AutoSaveZelDir"] = path("rescued");
        document->setEditing(true);
    }
    ~DocumentTest() override {
        document.reset();
        halNotify::setNotifyHandler({});
    }

    std::string path(const std::string& name) const { return temporary.path() + "/" + name; }
    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name)) << text;
        return path(name);
    }
    std::string contentsOf(const std::string& file) const {
        std::string contents;
        UTILS::readFile(file, contents);
        return contents;
    }
    std::vector<std::string> filesIn(const char* directory) const {
        std::vector<std::string> files;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(path(directory), none))
            files.push_back(entry.path().string());
        return files;
    }
    std::vector<std::string> rescued() const { return filesIn("rescued"); }
    void* shownOf(const std::string& file) const {
        for (const auto& [handle, zel] : host.overlays)
            if (zel.path == file) return handle;
        return nullptr;
    }

    /// As the dialog does it. \return whether the shapes are the text's now
    bool take(Document::Reading reading) {
        if (!reading.loaded.error.empty() || !document->rescue()) return false;
        document->take(std::move(reading));
        return true;
    }
    bool load(const std::string& file) { return take(document->readFile(file)); }
    bool clear() {
        if (!document->rescue()) return false;
        document->clear();
        return true;
    }
    CylinderShape& add(const std::string& name) {
        auto* const shape = new CylinderShape(preferences, CylinderShape::Circle);
        shape->setName(name);
        overlay.addShape(shape);
        return *shape;
    }
    CylinderShape& addCircle(const std::string& name, double radiusMeters = 500) {
        CylinderShape& shape = add(name);
        shape.setCenter({0.1, 0.2, 0});
        shape.setMajorRadius(radiusMeters);
        return shape;
    }
    CylinderShape& first() { return static_cast<CylinderShape&>(*overlay.shapes().front()); }

    FakeHost host;
    std::vector<std::string> messages;
    const TemporaryDirectory temporary;
    Preferences preferences;
    Overlay overlay;
    std::unique_ptr<Document> document = std::make_unique<Document>(preferences, overlay);
};

}  // namespace OverlayEditor
