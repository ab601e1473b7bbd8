#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/Notify.h"
#include "geo/PointConverter.h"
#include "gui/Form.h"
#include "gui/TestEquipment.h"
#include "model/Preferences.h"
#include "model/Shape.h"
#include "pi/PIWidgets.h"

/// What shapes and their panels stand on, and what is said meanwhile.
struct TestPanel {
    TestPanel() {
        halNotify::setNotifyHandler(
            [this](halNotify::Severity, const std::string& text) { messages.push_back(text); });
    }
    ~TestPanel() {
        shapes.clear();
        halNotify::setNotifyHandler({});
        freeFunctors();
    }

    FakeHost host;
    TestEquipment equipment;
    OverlayEditor::Preferences preferences;
    OverlayEditor::PointConverter converter;
    PIGUI::PICanvas canvas{nullptr};
    Form form{host};
    std::vector<std::string> messages;
    std::vector<std::unique_ptr<OverlayEditor::Shape>> shapes;
};
