#pragma once

#include <cstdint>
#include <string>

#include "model/Anchored.h"
#include "model/Equipped.h"
#include "model/Shape.h"
#include "model/Stateful.h"

namespace OverlayEditor {

/// A text label at one position. Its text is the shape's name.
class AnnotationShape : public Equipped<AnnotationShape, Shape, AnnotationPanel>,
                        public Anchored,
                        public Stateful {
  public:
    explicit AnnotationShape(const Preferences& preferences);
    AnnotationShape(const AnnotationShape& other);

    int serialize(Serializer& serializer) override;
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    halCore::Vec3 anchorPlace() const override { return position(); }
    void setName(const std::string& name) override;
    /// A single point: the position.
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;

    bool hasPoint() const { return points_.has(0); }
    /// (0, 0, 0) until it is set; kNoPlace where its offset leads nowhere.
    halCore::Vec3 position() const { return hasPoint() ? points_.place(0) : halCore::Vec3(); }
    /// For the tool: as setPosition, shown at once in the host and in the panel.
    void mouseSetPosition(const halCore::Vec3& lla) { showPosition(PlacedPoint(lla)); }
    /// The same as it was given.
    void showPosition(const PlacedPoint& point);

    // These leave the refresh to their caller.
    void setPosition(const halCore::Vec3& lla) { setPosition(PlacedPoint(lla)); }
    void setPosition(const PlacedPoint& point) { putPlaced_(0, point); }
    /// Red in the top byte, alpha in the lowest.
    void setColor(std::uint32_t rgba) { set_(color_, rgba); }
    std::uint32_t color() const { return color_; }
    /// A font file's name.
    void setFontName(const std::string& fileName) { set_(fontName_, fileName); }
    const std::string& fontName() const { return fontName_; }
    void setFontSize(int points) { set_(fontSize_, points); }
    int fontSize() const { return fontSize_; }

  private:
    friend Equipped;

    template <typename Value>
    void set_(Value& member, const Value& value) {
        member = value;
        changed_();
    }
    void saveState_(ShapeState& state, const ShapeState* like) const override;
    void takeState_(const ShapeState& state) override;
    void showIn_(AnnotationPanel& panel);
    void takeFrom_(AnnotationPanel& panel);

    std::uint32_t color_ = 0xFF0000FF;
    std::int32_t fontSize_ = 8;
    std::string fontName_ = "arialbd.ttf";
    Equipment<AnnotationPanel> equipment_;
};

}  // namespace OverlayEditor
