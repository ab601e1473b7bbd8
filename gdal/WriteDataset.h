#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gdal_priv.h>

#include "format/ZelShape.h"
#include "gdal/WriteLayer.h"

namespace exchange {

/// An overlay that is being written: its shapes are collected, and the file is replaced as a whole when the
/// dataset is flushed or closed.
class WriteDataset final : public GDALDataset {
  public:
    explicit WriteDataset(const char* file) { SetDescription(file); }
    ~WriteDataset() override;

    static GDALDataset* create(const char* file, int columns, int rows, int bands, GDALDataType type,
                               char** options);

    int GetLayerCount() override { return static_cast<int>(layers_.size()); }
    OGRLayer* GetLayer(int number) override;
    int TestCapability(const char* capability) override;
    OGRLayer* ICreateLayer(const char* name, OGRSpatialReference* reference, OGRwkbGeometryType type,
                           char** options) override;
#if GDAL_VERSION_NUM >= 3070000
    CPLErr FlushCache(bool) override {
        return save_() ? CE_None : CE_Failure;
    }
#else
    void FlushCache(bool) override {
        save_();
    }
#endif

    void add(halCore::ZEL::ZelShapePtr shape);
    /// Warns of something, the first times.
    void note(const std::string& text);

  private:
    bool save_();

    std::vector<std::unique_ptr<WriteLayer>> layers_;
    std::vector<halCore::ZEL::ZelShapePtr> shapes_;
    bool saved_ = false;
    std::size_t notes_ = 0;
};

}  // namespace exchange
