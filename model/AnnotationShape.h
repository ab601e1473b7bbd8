#pragma once

#include <cstdint>
#include <string>

#include "model/Carried.h"
#include "model/Equipped.h"
#include "model/Shape.h"

namespace OverlayEditor {

/// A text label at one position. Its text is the shape's name.
class AnnotationShape : public Equipped<AnnotationShape, Shape, AnnotationPanel>, public Carried {
  public:
    explicit AnnotationShape(const Preferences& preferences);
    AnnotationShape(const AnnotationShape& other);

    int serialize(Serializer& serializer) override;
    void setAttachedPlatformId(unsigned long id, PointConverter* converter, bool anchorCenter) override;
    void carry(const ReferenceMove& move) override;
    void setName(const std::string& name) override;
    /// A single point: the position.
    std::pair<halCore::Vec3, halCore::Vec3> boundingBox() const override;

    bool hasPoint() const { return hasPoint_; }
    /// (0, 0, 0) until it is set.
    const halCore::Vec3& position() const { return position_; }
    /// For the tool: as setPosition, shown at once in the host and in the panel.
    void mouseSetPosition(const halCore::Vec3& lla);

    // These leave the refresh to their caller.
    void setPosition(const halCore::Vec3& lla);
    /// Red in the top byte, alpha in the lowest.
    void setColor(std::uint32_t rgba) { color_ = rgba; }
    std::uint32_t color() const { return color_; }
    /// A font file's name.
    void setFontName(const std::string& fileName) { fontName_ = fileName; }
    const std::string& fontName() const { return fontName_; }
    void setFontSize(int points) { fontSize_ = points; }
    int fontSize() const { return fontSize_; }

  private:
    friend Equipped;

    void showIn_(AnnotationPanel& panel);
    void takeFrom_(AnnotationPanel& panel);

    bool hasPoint_ = false;
    halCore::Vec3 position_;
    std::uint32_t color_ = 0xFF0000FF;
    std::int32_t fontSize_ = 8;
    std::string fontName_ = "arialbd.ttf";
    /// The position that the panel shows while there is none.
    halCore::Vec3 shownPosition_;
    Equipment<AnnotationPanel> equipment_{*this, preferences_, mouseTool_};
};

}  // namespace OverlayEditor
