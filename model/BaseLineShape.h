#pragma once

#include <cstdint>

#include "model/Panels.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// A shape with an outline. Colours are packed with red in the top byte and alpha in the lowest.
class BaseLineShape : public Shape {
  public:
    int serialize(Serializer& serializer) override;
    /// Truncated toward zero to whole pixels.
    virtual void setLineWidth(double pixels);
    virtual int lineWidth() const { return lineWidth_; }
    virtual void setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a);
    virtual std::uint32_t lineColor() const { return lineColor_; }
    /// Sets what differs in the panel's part, with a refresh each.
    virtual void setLineFromGui(const LineStyleGUI& gui);
    /// Removes the shape's geometry so that it can be drawn afresh.
    virtual void clear() = 0;

  protected:
    explicit BaseLineShape(const Preferences& preferences) : Shape(preferences) {}
    BaseLineShape(const BaseLineShape&) = default;
    /// Copies the style into a panel's part.
    void showLine_(LineStyleGUI& gui) const;
    bool lineDiffers_(const LineStyleGUI& gui) const;
    void saveState_(ShapeState& state, const ShapeState* like) const;
    void takeState_(const ShapeState& state);

  private:
    std::uint32_t lineColor_ = 0x00FF00FF;
    std::int32_t lineWidth_ = 2;
};

}  // namespace OverlayEditor
