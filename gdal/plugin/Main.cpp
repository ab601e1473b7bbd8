#include <cpl_port.h>

#include "gdal/Driver.h"

/// Called by GDAL, by this name, once it has loaded the library ogr_ZEL.so.
extern "C" CPL_DLL void RegisterOGRZEL() {
    exchange::registerDriver();
}
