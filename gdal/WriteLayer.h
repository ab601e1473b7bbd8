#pragma once

#include <set>
#include <string>
#include <vector>

#include <ogrsf_frmts.h>

#include "gdal/Columns.h"
#include "gdal/Wgs84Reference.h"

namespace exchange {

class WriteDataset;

/// A layer of an overlay that is being written. It takes any geometry and any columns; those that a ZEL file
/// has no place for are named once. What was written cannot be read again.
class WriteLayer final : public OGRLayer {
  public:
    /// \param reference the layer's coordinates, which are turned into WGS 84; null for that
    WriteLayer(WriteDataset& dataset, const char* name, OGRSpatialReference* reference,
               OGRwkbGeometryType type);
    ~WriteLayer() override;

    void ResetReading() override {}
    OGRFeature* GetNextFeature() override;
    OGRFeatureDefn* GetLayerDefn() override { return definition_; }
    GIntBig GetFeatureCount(int) override { return count_; }
    int TestCapability(const char* capability) override;
    OGRErr CreateField(OGRFieldDefn* field, int approximately) override;
    OGRErr ICreateFeature(OGRFeature* feature) override;

  private:
    std::string styleOf_(OGRFeature& feature);
    /// Notes the columns without a place that hold something.
    void noteUnknown_(const OGRFeature& feature);
    /// Notes a word for a kind that is none.
    void noteKind_(const OGRFeature& feature);

    WriteDataset& dataset_;
    OGRFeatureDefn* definition_;
    ColumnIndex index_;
    std::unique_ptr<OGRCoordinateTransformation> toWgs84_;
    bool known_ = true;
    /// Fields that no column stands for, until one was seen that holds something.
    std::vector<int> unknown_;
    std::string lost_;
    std::set<std::string> strangeKinds_;
    /// KML's field for what is not shown, -1 for none.
    int visibility_ = -1;
    GIntBig count_ = 0;
};

}  // namespace exchange
