#pragma once

#include "model/BaseLineShape.h"

namespace OverlayEditor {

/// A shape that can be filled.
class BaseFilledShape : public BaseLineShape {
  public:
    int serialize(Serializer& serializer) override;
    virtual void setFilled(bool filled);
    virtual bool filled() const { return filled_; }
    virtual void setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a);
    virtual std::uint32_t fillColor() const { return fillColor_; }
    /// Outlining is not part of what the editor saves: it is stored, copied nowhere and never written.
    virtual void setOutlined(bool outlined);
    /// \see setLineFromGui
    virtual void setFillFromGui(const FillStyleGUI& gui);

  protected:
    explicit BaseFilledShape(const Preferences& preferences) : BaseLineShape(preferences) {}
    BaseFilledShape(const BaseFilledShape& other);
    /// Copies the styles into a panel's parts.
    void showStyles_(LineStyleGUI& line, FillStyleGUI& fill) const;
    /// Takes over the style that the user changed. A panel reports each edit on its own, so there is only
    /// one.
    void takeStyles_(const LineStyleGUI& line, const FillStyleGUI& fill);
    void saveState_(ShapeState& state, const ShapeState* like) const;
    void takeState_(const ShapeState& state);

  private:
    std::uint32_t fillColor_ = 0xFF00FFA0;
    bool filled_ = false;
    bool outlined_;  // no value until set, on purpose: nothing may depend on it
};

}  // namespace OverlayEditor
