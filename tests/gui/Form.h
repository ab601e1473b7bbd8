#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "support/FakeHost.h"

/// Finds a panel's fields as a person does: by the label in front of them, among what is shown.
class Form {
  public:
    explicit Form(FakeHost& host) : host_(host) {}

    /// The widget behind the shown label of that text.
    FakeHost::Widget& field(const std::string& label) {
        const auto at = labelled(label);
        if (at == host_.widgets.end()) throw std::runtime_error("no field " + label);
        return at->second;
    }
    bool has(const std::string& label) { return labelled(label) != host_.widgets.end(); }
    /// Text, and unit where the next widget is a label.
    std::string text(const std::string& label) {
        auto at = labelled(label);
        const std::string text = at->second.text;
        ++at;
        const bool unit = at != host_.widgets.end() && at->second.kind == FakeHost::Id::CreateLabel;
        return unit ? text + " " + at->second.text : text;
    }
    void type(const std::string& label, const std::string& text) { host_.type(field(label), text); }
    struct Field {
        std::string label;
        FakeHost::Widget* widget;
    };
    /// The text fields that can be typed into, in their order, each with the label in front of it.
    std::vector<Field> textFields() {
        std::vector<Field> found;
        std::string label;
        for (auto& [handle, widget] : host_.widgets) {
            if (widget.kind == FakeHost::Id::CreateLabel)
                label = widget.caption.substr(0, widget.caption.find('\t'));
            else if (widget.kind == FakeHost::Id::CreateTextField && widget.shown && widget.enabled)
                found.push_back({label, &widget});
        }
        return found;
    }
    void check(const std::string& label, bool checked) {
        field(label).checked = checked;
        host_.activate(field(label));
    }
    void choose(const std::string& label, double value) {
        field(label).number = value;
        host_.activate(field(label));
    }

  private:
    std::map<void*, FakeHost::Widget>::iterator labelled(const std::string& label) {
        auto& widgets = host_.widgets;
        for (auto at = widgets.begin(); at != widgets.end(); ++at) {
            const auto& widget = at->second;
            if (widget.kind == FakeHost::Id::CreateLabel && widget.shown &&
                widget.caption.substr(0, widget.caption.find('\t')) == label) {
                // What stands in a row of its own with its unit.
                do ++at;
                while (at != widgets.end() && at->second.kind == FakeHost::Id::CreateHorizontalFrame);
                return at;
            }
        }
        return widgets.end();
    }

    FakeHost& host_;
};
