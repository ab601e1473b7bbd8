#pragma once

namespace exchange {

/// Makes GDAL know the format "ZEL"; once is enough, more do no harm.
void registerDriver();

}  // namespace exchange
