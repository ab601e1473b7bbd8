#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "model/PanelMaker.h"
#include "model/Shape.h"
#include "model/Stateful.h"
#include "model/ToolMaker.h"

namespace OverlayEditor {

/// A shape's mouse tool, once somebody has asked for it, and its property panel while there is one. The
/// concrete shape's last member: both may touch the shape while they die, and find its data alive. Callers do
/// not see the tool any more then. Very many shapes are never drawn with the mouse nor shown in a panel: a
/// tool is larger than they are.
template <typename Panel>
class Equipment {
  public:
    /// Null for a shape without one.
    /// \param place where the shape finds the tool; null while there is none
    template <typename Concrete>
    MouseTool* tool(Concrete& shape, MouseTool*& place) {
        auto* const maker = place || (parts_ && parts_->ending) ? nullptr : ToolMaker::installed();
        if (!maker) return place;
        Parts& parts = partsAt_(place);
        parts.tool = maker->make(shape.preferences(), shape);
        place = parts.tool.get();
        if (parts.tool && !shape.showPoints()) parts.tool->setShowPoints(false);
        return place;
    }
    /// Null without one.
    Panel* panel() const { return parts_ ? parts_->panel.get() : nullptr; }
    void setPanel(std::unique_ptr<Panel> panel, MouseTool*& place) {
        if (panel || parts_) partsAt_(place).panel = std::move(panel);
    }

  private:
    struct Parts {
        explicit Parts(MouseTool*& at) : place(at) {}
        ~Parts() {
            ending = true;
            place = nullptr;
        }
        Parts(const Parts&) = delete;
        Parts& operator=(const Parts&) = delete;

        std::unique_ptr<Panel> panel;
        MouseTool*& place;
        MouseToolPtr tool;
        bool ending = false;
    };
    Parts& partsAt_(MouseTool*& place) {
        if (!parts_) parts_ = std::make_unique<Parts>(place);
        return *parts_;
    }

    std::unique_ptr<Parts> parts_;
};

/// What all concrete shapes do alike with their equipment, put between each of them and its base class. The
/// concrete shape makes it a friend and has, as its last member, an `equipment_`; besides it has
/// `showIn_(Panel&)`, which copies the shape's values into its panel, and `takeFrom_(Panel&)`, which takes
/// over what the user has edited there.
template <typename Concrete, typename Base, typename Panel>
class Equipped : public Base {
  public:
    /// The panel calls it after each edit of the user's.
    using GuiChange = PanelChange;

    Shape* clone() const override {
        static_assert(std::is_base_of_v<Stateful, Concrete>);
        return new Concrete(static_cast<const Concrete&>(*this));
    }
    MouseTool* mouseTool() const override {
        // It is made of the shape, whoever asks.
        Concrete& shape = const_cast<Equipped&>(*this).self_();
        return shape.equipment_.tool(shape, const_cast<Equipped&>(*this).mouseTool_);
    }
    void createGui(Preferences* preferences, PIGUI::PICanvas* canvas) override {
        auto* const maker = PanelMaker::installed();
        if (!maker || !preferences || !canvas) return;
        self_().equipment_.setPanel(
            maker->make(self_(), *preferences, *canvas, GuiChange([this] { refreshFromGui_(); })),
            this->mouseTool_);
        fillGui();
    }
    void notifyPrefsUpdate() override {
        if (panel_()) panel_()->notifyPrefsUpdate();
        fillGui();
    }
    void fillGui() override {
        if (!panel_()) return;
        panel_()->setPointConverter(this->points_.frame());
        self_().showIn_(*panel_());
    }
    void deleteGui() override { self_().equipment_.setPanel(nullptr, this->mouseTool_); }

  protected:
    using Base::Base;
    Equipped(const Equipped&) = default;

    /// Null without one.
    Panel* panel_() { return self_().equipment_.panel(); }
    const Panel* panel_() const { return static_cast<const Concrete*>(this)->equipment_.panel(); }

  private:
    Concrete& self_() { return static_cast<Concrete&>(*this); }
    void refreshFromGui_() {
        if (!panel_()) return;
        self_().takeFrom_(*panel_());
        fillGui();
    }
};

}  // namespace OverlayEditor
