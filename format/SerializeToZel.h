#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "format/Serializer.h"
#include "format/ZelShapes.h"

namespace OverlayEditor {

/// Turns a shape's description into shapes of the overlay format, and those into text.
///
/// A shape with a platform becomes a relative one: offsets stand in the text as they are given, places are
/// converted with the point converter. Angle sweeps are kept to 1e-12 degrees, so that one that was read and
/// is written again gives the same text. A property that the shape's
/// class does not have is ignored. A shape that cannot be written (a number is not finite, a relative
/// position has no converter, a label has no text) is left out with a message.
class SerializeToZel final : public Serializer {
  public:
    SerializeToZel();

    /// Whether relative shapes name the point converter's reference as their own, so that they have a place
    /// without a platform. Not at first.
    void setReferenceWritten(bool written) { referenceWritten_ = written; }

    /// What the shapes that are described from now on say beside, null for nothing. Not owned.
    void setExtras(const halCore::ZEL::ZelShape* extras) { extras_ = extras; }

    void beginShape(ShapeType type, unsigned long platformId) override;
    void endShape() override;
    void setItemName(const std::string& name) override;
    void addPoint(const halCore::Vec3& lla) override;
    void addPoints(std::span<const halCore::Vec3> llas) override;
    void addCorner(const halCore::Vec3& lla) override { addPoint(lla); }
    void setCenterPoint2(const halCore::Vec3& lla) override;
    void setMajorRadius(double meters) override;
    void setMinorRadius(double meters) override;
    void setHeight(double meters) override;
    void setStartEndAngles(double startRad, double endRad) override;
    void setLineColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) override;
    void setFillColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a) override;
    void setFilled(bool filled) override;
    void setVisible(bool visible) override;
    void setLineWidth(int pixels) override;
    void setPointSize(int pixels) override;
    void setLineStyle(LineStyle style) override;
    void setFontName(const std::string& fileName) override;
    void setTextSize(int points) override;
    void giveOffset(Use use, const halCore::Vec3& xyz, const PointConverter& frame, bool named) override;

    /// The finished shapes; null stands for one that could not be made.
    const std::vector<halCore::ZEL::ZelShapePtr>& shapes() const { return finished_; }
    /// Whether writeTo has a shape to write.
    bool hasShapes() const;
    /// Writes a whole file. Numbers follow the stream's precision; callers set UTILS::kSignificantDigits.
    /// \param precision not used
    void writeTo(std::ostream& stream, unsigned int precision) const;
    /// What stands at the beginning of a file, and the finished shapes behind it.
    static void writeHeadTo(std::ostream& stream);
    void writeShapesTo(std::ostream& stream) const;
    /// Drops all shapes, finished and current.
    void clear();

  private:
    /// The current shape by what it can do; null where it cannot.
    struct Faces {
        halCore::ZEL::PointBasedShape* pointBased = nullptr;
        halCore::ZEL::Points* points = nullptr;
        halCore::ZEL::Annotation* annotation = nullptr;
        halCore::ZEL::FillableShape* fillable = nullptr;
        halCore::ZEL::CircularShape* circular = nullptr;
        halCore::ZEL::Orbit* orbit = nullptr;
        halCore::ZEL::EllipticalShape* elliptical = nullptr;
        halCore::ZEL::Ellipsoid* ellipsoid = nullptr;
        halCore::ZEL::CircularHeightShape* circularHeight = nullptr;
        halCore::ZEL::Cylinder* cylinder = nullptr;
    };

    void findFaces_();
    /// Keeps what the next shape can use again of the memory of one that nobody else has.
    void reuse_(halCore::ZEL::ZelShape& shape);
    /// The position as it stands in the file; (0, 0, 0) and a failed shape when there is none.
    halCore::Vec3 filePosition_(const halCore::Vec3& lla);
    /// Takes a position as it stands in the file.
    void put_(Use use, const halCore::Vec3& position);
    /// `value`, noting that the shape cannot be written when it is not finite.
    double checked_(double value);

    const halCore::ZEL::UnitsState units_;
    bool referenceWritten_ = false;
    const halCore::ZEL::ZelShape* extras_ = nullptr;
    halCore::ZEL::ZelShapePtr current_;
    Faces as_;
    const char* failure_ = nullptr;
    std::vector<halCore::ZEL::ZelShapePtr> finished_;
    /// Room for a list of points, which is empty, and for comments, which say nothing any more: files are
    /// written shape by shape, and there may be very many.
    std::vector<halCore::Vec3> roomForPoints_;
    std::vector<std::string> roomForComments_;
};

}  // namespace OverlayEditor
