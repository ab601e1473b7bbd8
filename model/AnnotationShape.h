#pragma once

#include <cstdint>
#include <string>

#include "model/Carried.h"
#include "model/Shape.h"
#include "model/ShapeEquipment.h"

namespace OverlayEditor {

/// A text label at one position. Its text is the shape's name.
class AnnotationShape : public Shape, public Carried {
  public:
    /// The panel calls it after each edit of the user's.
    using GuiChange = PanelChange;

    explicit AnnotationShape(const Preferences& preferences);
    AnnotationShape(const AnnotationShape& other);
    ~AnnotationShape() override;

    Shape* clone() const override;

    int serialize(Serializer& serializer) override;
    void createGui(Preferences* preferences, PIGUI::PICanvas* canvas) override;
    void notifyPrefsUpdate() override;
    void fillGui() override;
    void deleteGui() override;
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
    /// The panel was edited.
    void refreshFromGui_();

    bool hasPoint_ = false;
    halCore::Vec3 position_;
    std::uint32_t color_ = 0xFF0000FF;
    std::int32_t fontSize_ = 8;
    std::string fontName_ = "arialbd.ttf";
    /// The position that the panel shows while there is none.
    halCore::Vec3 shownPosition_;
    // Last, in this order: what touches the shape while it dies must find its data alive.
    std::unique_ptr<AnnotationPanel> panel_;
    MouseToolPtr ownTool_;
};

}  // namespace OverlayEditor
