#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/Strings.h"
#include "geo/Angles.h"
#include "gui/TestPanel.h"
#include "model/CylinderShape.h"
#include "model/PolygonShape.h"

/// A field of a panel at 10 N 20 E, 30 m, and what becomes of a text that is typed into it.
struct TypedField : TestPanel {
    TypedField() {
        using namespace OverlayEditor;
        converter.setReferenceLla(kPlace, 1);
    }

    /// Shows the panel anew. \param name the field's, or "Point" for a line's first latitude
    void open(const std::string& name) {
        using namespace OverlayEditor;
        shapes.clear();
        line = nullptr;
        isMgrs = name == "GZD" || name == "Easting/Northing";
        preferences.setCoordinateSystem(isMgrs ? Preferences::MGRS : Preferences::LLA);
        if (name == "Point") {
            auto made = std::make_unique<PolygonShape>(preferences, PolygonShape::Line);
            line = made.get();
            line->addPoint(kPlace);
            shapes.push_back(std::move(made));
        } else {
            auto made = std::make_unique<CylinderShape>(preferences, CylinderShape::Arc);
            made->setCenter(kPlace);
            made->setInnerRadius(5.0);
            shapes.push_back(std::move(made));
        }
        if (name == "X" || name == "Y" || name == "Z") shapes[0]->setAttachedPlatformId(1, &converter, false);
        shapes[0]->createGui(&preferences, &canvas);
        label = line ? "Lat:" : name == "Lon" ? "Lon: " : (name == "Radius" ? "X " : "") + name + ":";
        messages.clear();
        before = position();
        shown = text();
    }
    void type(const std::string& typed) { form.type(label, typed); }
    std::string text() { return form.field(label).text; }
    /// The texts of the position's three fields.
    std::vector<std::string> position() {
        std::vector<std::string> texts;
        for (const auto& field : form.textFields())
            if (texts.size() < 3) texts.push_back(field.widget->text);
        return texts;
    }

    /// Where the shape's centre is.
    halCore::Vec3 place() const { return *static_cast<OverlayEditor::CylinderShape&>(*shapes[0]).centerPt(); }

    bool refused() { return form.field(label).marked; }
    /// Why the text was refused; nothing when one message with field, text and value does not say so.
    std::optional<std::string> reason() {
        const std::string name = label.substr(0, label.find(':'));
        const std::string typed = isMgrs ? position()[0] + " " + position()[1] : text();
        const std::string front =
            name + (isMgrs ? ": MGRS \"" : ": Invalid value \"") + UTILS::excerpt(typed) + "\": ";
        const std::string back = "; still " + (isMgrs ? before[0] + " " + before[1] : shown);
        if (messages.size() != 1 || !messages[0].starts_with(front) || !messages[0].ends_with(back))
            return std::nullopt;
        const std::size_t end = messages[0].rfind("; understood are ");
        if (end == std::string::npos || end <= front.size()) return std::nullopt;
        return messages[0].substr(front.size(), end - front.size());
    }

    static inline const halCore::Vec3 kPlace{10 * halCore::kRadiansPerDegree, 20 * halCore::kRadiansPerDegree,
                                             30};
    std::string label;
    bool isMgrs = false;
    OverlayEditor::PolygonShape* line = nullptr;
    /// As it was before it was typed into.
    std::vector<std::string> before;
    std::string shown;
};
