#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "format/MessageSink.h"
#include "format/ParsedShape.h"
#include "format/ZelShapes.h"
#include "geo/AngleText.h"

namespace halCore {
class UnitsRegistry;
}

namespace halCore::ZEL {

/// Turns one finished record into a shape: the one place where units are applied, texts become values and
/// values are checked. An unusable value is reported, with the block's line, and stays unset.
class ShapeBuilder {
  public:
    /// The record gives its comments away.
    ShapeBuilder(ParsedShape& record, const UnitsRegistry& registry, const MessageSink& messages);

    /// Null, with a message, for a record that makes no shape.
    std::shared_ptr<ZelShape> build();

  private:
    using P = ShapeParameter;

    std::shared_ptr<ZelShape> buildType_();
    std::shared_ptr<ZelShape> buildPoints_();
    template <typename Shape>
    std::shared_ptr<ZelShape> buildPointBased_(std::size_t fewest);
    template <typename Shape>
    std::shared_ptr<ZelShape> buildCircular_();
    template <typename Shape>
    std::shared_ptr<ZelShape> buildElliptical_();
    template <typename Shape>
    std::shared_ptr<ZelShape> buildWithHeight_();
    std::shared_ptr<ZelShape> buildOrbit_();
    std::shared_ptr<ZelShape> buildAnnotation_();
    std::shared_ptr<ZelShape> buildBox_();
    std::shared_ptr<ZelShape> buildImageOverlay_();

    void setFillable_(FillableShape& shape) const;
    void setCircular_(CircularShape& shape) const;
    void setElliptical_(EllipticalShape& shape) const;
    void setAxes_(auto& shape) const;
    void setHeight_(auto& shape) const;
    void setCommon_(ZelShape& shape);
    void setPlacement_(ZelShape& shape) const;
    void setOrientation_(ZelShape& shape) const;

    std::vector<Vec3> points_() const;
    /// The first point given, if it could be read.
    std::optional<Vec3> firstPoint_() const;
    /// A centre made the block absolute: the numbers of its relative points count as degrees.
    bool offsetsAreDegrees_() const;
    std::optional<Vec3> getPosition_(const PositionStrings& text, bool relative) const;
    std::optional<Vec3> centerPosition_(P absolute, P relative) const;
    std::optional<double> degrees_(P parameter, AngleKind kind) const;
    std::optional<Color> getColor_(P parameter, std::string_view field, P reported) const;
    std::optional<Color> getColor_(P parameter, std::string_view field) const {
        return getColor_(parameter, field, parameter);
    }
    std::optional<int> integer_(P parameter, std::string_view field) const;
    /// Nothing for an attribute that is not there; one that is no number is reported.
    std::optional<double> validateDouble_(P parameter, std::string_view field) const;
    std::optional<double> validateDouble_(std::string_view text, std::string_view field) const;
    std::optional<double> range_(P parameter, std::string_view field) const;
    std::optional<double> altitude_(P parameter, std::string_view field) const;
    std::optional<double> angle_(P parameter, std::string_view field) const;

    std::string_view name_() const;
    std::string label_() const;
    void error_(std::initializer_list<std::string_view> parts) const;

    ParsedShape& record_;
    const MessageSink& messages_;
    bool relative_;
    UnitsState units_;
};

}  // namespace halCore::ZEL
