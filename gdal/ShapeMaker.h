#pragma once

#include <optional>
#include <string>
#include <vector>

#include <ogr_feature.h>

#include "gdal/FeatureColumns.h"
#include "gdal/Outline.h"

namespace exchange {

/// Turns a feature into shapes.
///
/// A feature whose columns tell a kind is that shape, as long as its geometry is the one that they give. A
/// geometry that was only moved takes the shape along; any other one counts instead of the columns. Without a
/// kind, geometries become points, lines, polygons and, with a text, labels; those of many parts are taken
/// apart, curves are cut into straight pieces, holes become outlines of their own. Colours, widths and fonts
/// come from the columns, else from the style string.
class ShapeMaker {
  public:
    /// All are only referred to. `geometry`: in WGS 84, longitudes first; null for none. `style`: a
    /// style string, not the name of one. `note` is told what
    /// was not taken over as it stands.
    ShapeMaker(const OGRFeature& feature, const ColumnIndex& index, const OGRGeometry* geometry,
               std::string style, const Note& note);

    /// None, with a note, for a feature that makes no shape.
    std::vector<halCore::ZEL::ZelShapePtr> make();

  private:
    using Paths = std::vector<halCore::GeodeticPath>;

    halCore::ZEL::ZelShapePtr byColumns_(halCore::ZEL::ShapeType kind);
    bool takePlaces_(halCore::ZEL::ZelShape& shape, bool& altered);
    bool takeOwnPoints_(halCore::ZEL::ZelShape& shape, bool& altered);
    bool fits_(halCore::ZEL::ZelShape& shape);
    bool isWhole_(const halCore::ZEL::ZelShape& shape) const;
    void byGeometry_(const OGRGeometry& geometry);
    void addShape_(halCore::ZEL::ShapeType kind, halCore::GeodeticPath points);
    void addPolygon_(const OGRPolygon& polygon);
    void finish_(halCore::ZEL::ZelShape& shape) const;
    std::string label_() const;
    std::string who_(halCore::ZEL::ShapeType kind) const;

    const OGRFeature& feature_;
    ColumnIndex index_;
    const OGRGeometry* geometry_;
    std::string style_;
    const Note& note_;
    std::optional<Paths> paths_;
    std::vector<halCore::ZEL::ZelShapePtr> shapes_;
};

}  // namespace exchange
