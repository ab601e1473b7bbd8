#pragma once

#include <vector>

#include <ogrsf_frmts.h>

#include "format/Parser.h"
#include "gdal/Columns.h"
#include "gdal/ReadOptions.h"

namespace exchange {

/// A shape as it was read: the block's "start" is in that line.
struct ReadShape {
    halCore::ZEL::ZelShapePtr shape;
    std::size_t line = 0;
};

/// A layer of an overlay that was read. Features are made when they are asked for; their numbers count from
/// 0, in the file's order.
class ReadLayer final : public OGRLayer, public OGRGetNextFeatureThroughRaw<ReadLayer> {
  public:
    /// \param kind `None` for the columns of all kinds
    ReadLayer(const char* name, halCore::ZEL::ShapeType kind, std::vector<ReadShape> shapes,
              const ReadOptions& options);
    ~ReadLayer() override;

    void ResetReading() override { next_ = 0; }
    DEFINE_GET_NEXT_FEATURE_THROUGH_RAW(ReadLayer)
    OGRErr SetNextByIndex(GIntBig index) override;
    OGRFeature* GetFeature(GIntBig number) override;
    GIntBig GetFeatureCount(int force) override;
    OGRFeatureDefn* GetLayerDefn() override { return definition_; }
    int TestCapability(const char* capability) override;

  private:
    OGRFeature* GetNextRawFeature();
    OGRFeature* makeFeature_(std::size_t number) const;
    bool isFiltered_() const { return m_poFilterGeom != nullptr || m_poAttrQuery != nullptr; }

    std::vector<ReadShape> shapes_;
    ReadOptions options_;
    OGRFeatureDefn* definition_;
    ColumnIndex index_;
    std::size_t next_ = 0;
};

}  // namespace exchange
