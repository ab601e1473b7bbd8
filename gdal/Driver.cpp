#include "gdal/Driver.h"

#include <gdal_priv.h>

#include "gdal/ReadDataset.h"
#include "gdal/WriteDataset.h"

namespace exchange {

void registerDriver() {
    if (GDALGetDriverByName("ZEL")) return;
    auto driver = std::make_unique<GDALDriver>();
    driver->SetDescription("ZEL");
    const auto set = [&driver](const char* item, const char* value) { driver->SetMetadataItem(item, value); };
    for (const char* can :
         {GDAL_DCAP_VECTOR, GDAL_DCAP_VIRTUALIO, GDAL_DCAP_Z_GEOMETRIES, GDAL_DCAP_MULTIPLE_VECTOR_LAYERS,
          GDAL_DCAP_FEATURE_STYLES, GDAL_DCAP_CREATE, GDAL_DCAP_CREATE_LAYER, GDAL_DCAP_CREATE_FIELD})
        set(can, "YES");
    set(GDAL_DMD_LONGNAME, "ZEL overlay");
    set(GDAL_DMD_EXTENSION, "zel");
    set(GDAL_DMD_EXTENSIONS, "zel");
    set(GDAL_DMD_SUPPORTED_SQL_DIALECTS, "OGRSQL SQLITE");
    set(GDAL_DMD_CREATIONFIELDDATATYPES, "Integer Integer64 Real String Date DateTime Time");
    set(GDAL_DMD_CREATIONFIELDDATASUBTYPES, "Boolean");
    set(GDAL_DMD_OPENOPTIONLIST,
        "<OpenOptionList>"
        "<Option name='LAYERS' type='string-select' default='BY_KIND' description='One layer for each kind "
        "of "
        "shape, or one of all'><Value>BY_KIND</Value><Value>ALL</Value></Option>"
        "<Option name='TOLERANCE' type='float' description='Metres that straight pieces may leave a curve; "
        "without it 1 m or 1e-4 of the radius, the smaller'/>"
        "<Option name='SPLIT' type='boolean' default='YES' description='Whether shapes are cut at 180 "
        "degrees'/>"
        "<Option name='ABOUT' type='string' description='latitude,longitude[,altitude[,heading]] for offsets "
        "that have no reference'/>"
        "</OpenOptionList>");
    driver->pfnIdentify = &ReadDataset::identify;
    driver->pfnOpen = &ReadDataset::open;
    driver->pfnCreate = &WriteDataset::create;
    GetGDALDriverManager()->RegisterDriver(driver.release());
}

}  // namespace exchange
