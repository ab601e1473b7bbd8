#pragma once

#include <memory>
#include <vector>

#include <gdal_priv.h>

#include "gdal/ReadLayer.h"

namespace exchange {

/// An overlay that was read. What its reader has to say goes to CPLError as warnings, with file and line.
class ReadDataset final : public GDALDataset {
  public:
    /// Whether a file is an overlay: by its suffix, or because its first lines can be of nothing else.
    static int identify(GDALOpenInfo* info);
    /// Null, with an error, for one that cannot be read.
    static GDALDataset* open(GDALOpenInfo* info);

    int GetLayerCount() override { return static_cast<int>(layers_.size()); }
    OGRLayer* GetLayer(int number) override;
    int TestCapability(const char* capability) override;

  private:
    void addLayers_(std::vector<ReadShape> shapes, const ReadOptions& options, const char* file);

    std::vector<std::unique_ptr<ReadLayer>> layers_;
};

}  // namespace exchange
