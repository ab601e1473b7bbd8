#pragma once

#include <memory>
#include <type_traits>

#include "model/PanelMaker.h"
#include "model/Shape.h"
#include "model/Stateful.h"
#include "model/ToolMaker.h"

namespace OverlayEditor {

/// A shape's mouse tool, once somebody has asked for it, and its property panel while there is one. The
/// concrete shape's last member: both may touch the shape while they die, and find its data alive. Callers do
/// not see the tool any more then.
template <typename Panel>
class Equipment {
  public:
    /// \param place where the shape finds the tool; null while there is none
    explicit Equipment(MouseTool*& place) : place_(place) {}
    ~Equipment() {
        ending_ = true;
        place_ = nullptr;
    }
    /// Null for a shape without one. Very many shapes are never drawn with the mouse: a tool is larger than
    /// they are.
    template <typename Concrete>
    MouseTool* tool(Concrete& shape) {
        auto* const maker = place_ || ending_ ? nullptr : ToolMaker::installed();
        if (!maker) return place_;
        tool_ = maker->make(shape.preferences(), shape);
        place_ = tool_.get();
        if (tool_ && !shape.showPoints()) tool_->setShowPoints(false);
        return place_;
    }
    Equipment(const Equipment&) = delete;
    Equipment& operator=(const Equipment&) = delete;

    std::unique_ptr<Panel> panel;

  private:
    MouseTool*& place_;
    MouseToolPtr tool_;
    bool ending_ = false;
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
        return shape.equipment_.tool(shape);
    }
    void createGui(Preferences* preferences, PIGUI::PICanvas* canvas) override {
        auto* const maker = PanelMaker::installed();
        if (!maker || !preferences || !canvas) return;
        self_().equipment_.panel =
            maker->make(self_(), *preferences, *canvas, GuiChange([this] { refreshFromGui_(); }));
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
    void deleteGui() override { self_().equipment_.panel.reset(); }

  protected:
    using Base::Base;
    Equipped(const Equipped&) = default;

    /// Null without one.
    Panel* panel_() { return self_().equipment_.panel.get(); }
    const Panel* panel_() const { return static_cast<const Concrete*>(this)->equipment_.panel.get(); }

  private:
    Concrete& self_() { return static_cast<Concrete&>(*this); }
    void refreshFromGui_() {
        if (!panel_()) return;
        self_().takeFrom_(*panel_());
        fillGui();
    }
};

}  // namespace OverlayEditor
