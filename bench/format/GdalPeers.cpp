#ifdef OE_BENCH_GDAL

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include "format/Peers.h"
#include "gdal/Driver.h"

namespace bench {
namespace {

/// Warnings cost time and say nothing here: GDAL finds that the polygons' last points are not their first.
void prepareGdal() {
    GDALAllRegister();
    exchange::registerDriver();
    // A line of a million points is more than GeoJSON's driver takes unasked.
    CPLSetConfigOption("OGR_GEOJSON_MAX_OBJ_SIZE", "0");
    CPLSetErrorHandler(CPLQuietErrorHandler);
}

}  // namespace

void provideToGdal(const std::string& file, const std::string& text) {
    VSILFILE* const out = VSIFOpenL(file.c_str(), "wb");
    VSIFWriteL(text.data(), 1, text.size(), out);
    VSIFCloseL(out);
}

std::size_t readByGdal(const std::string& file) {
    prepareGdal();
    // GeoJSON's driver takes points as they stand.
    const char* const options[] = {"SPLIT=NO", nullptr};
    const bool isZel = file.ends_with(".zel");
    GDALDatasetUniquePtr dataset(
        GDALDataset::Open(file.c_str(), GDAL_OF_VECTOR, nullptr, isZel ? options : nullptr));
    std::size_t points = 0;
    if (!dataset) return points;
    for (OGRLayer* const layer : dataset->GetLayers()) {
        for (const auto& feature : *layer) {
            OGRGeometry* geometry = feature->GetGeometryRef();
            if (geometry->getGeometryType() == wkbPolygon25D || geometry->getGeometryType() == wkbPolygon)
                geometry = geometry->toPolygon()->getExteriorRing();
            points += static_cast<std::size_t>(geometry->toLineString()->getNumPoints());
        }
    }
    return points;
}

std::size_t writeByGdal(const Data& data, const std::string& driver, const std::string& file) {
    prepareGdal();
    VSIUnlink(file.c_str());
    GDALDriver* const found = GetGDALDriverManager()->GetDriverByName(driver.c_str());
    GDALDatasetUniquePtr dataset(found->Create(file.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer* const layer = dataset->CreateLayer("shapes", nullptr, wkbUnknown, nullptr);
    OGRFieldDefn nameField("Name", OFTString);
    layer->CreateField(&nameField);
    for (std::size_t i = 0; i < data.shapes.size(); ++i) {
        OGRFeatureUniquePtr feature(OGRFeature::CreateFeature(layer->GetLayerDefn()));
        feature->SetField("Name", shapeName(i).c_str());
        OGRLineString lineString;
        for (const Position& point : data.shapes[i]) lineString.addPoint(point.lon, point.lat, point.alt);
        feature->SetGeometry(&lineString);
        if (layer->CreateFeature(feature.get()) != OGRERR_NONE) return 0;
    }
    return data.points;
}

}  // namespace bench

#endif
