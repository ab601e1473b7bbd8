// Any text through the GDAL driver: opened, every feature read, and written again.

#include <cstddef>
#include <cstdint>
#include <memory>

#include <cpl_error.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <gdal_utils.h>

#include "gdal/Driver.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool ready = [] {
        GDALAllRegister();
        exchange::registerDriver();
        CPLSetErrorHandler(CPLQuietErrorHandler);
        return true;
    }();
    (void)ready;
    // GDAL does not write to the bytes.
    auto* const bytes = const_cast<GByte*>(data);
    VSIFCloseL(VSIFileFromMemBuffer("/vsimem/in.zel", bytes, size, FALSE));
    const char* const about[] = {"ABOUT=60,179.99,5,30", "LAYERS=ALL", nullptr};
    for (const char* const* options : {static_cast<const char* const*>(nullptr), &about[0]}) {
        const GDALDatasetUniquePtr source(
            GDALDataset::Open("/vsimem/in.zel", GDAL_OF_VECTOR, nullptr, options));
        if (!source) continue;
        GDALDatasetH from = GDALDataset::ToHandle(source.get());
        if (GDALDatasetH to = GDALVectorTranslate("/vsimem/out.zel", nullptr, 1, &from, nullptr, nullptr))
            GDALClose(to);
    }
    VSIUnlink("/vsimem/out.zel");
    VSIUnlink("/vsimem/in.zel");
    return 0;
}
