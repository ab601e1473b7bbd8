#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/Vec3.h"
#include "format/Data.h"
#include "format/Parser.h"

/// Ways to read and write the same geometry. Every reader makes the points as three doubles; those for small
/// shapes read name, width and colours too.
namespace bench {

struct Feature {
    std::string name;
    std::string lineColor;
    std::string fillColor;
    long lineWidth = 0;
    std::vector<Position> points;
};
using Features = std::vector<Feature>;

/// Lines found by memchr, every number read by std::from_chars, the other lines passed over: what reading
/// the text costs at the very least.
std::vector<Position> readByFromChars(const std::string& zel);
halCore::ZEL::Parser::Shapes readZel(const std::string& zel);
Features readBySimdjson(const std::string& geoJson);
/// Into a document, with numbers rounded right as everybody else does, and from there.
Features readByRapidJson(const std::string& geoJson);

/// The shortest text of every number by std::to_chars, appended to a string together with the lines that
/// the overlay text has.
std::string writeByToChars(const Data& data);
std::string writeZel(const halCore::ZEL::Parser::Shapes& shapes);
std::string writeByRapidJson(const Data& data);

#ifdef OE_BENCH_GDAL
/// Through a driver of GDAL, from and to a file in memory. Returns how many points there were.
std::size_t readByGdal(const std::string& file);
std::size_t writeByGdal(const Data& data, const std::string& driver, const std::string& file);
/// Puts a text into a file in memory.
void provideToGdal(const std::string& file, const std::string& text);
#endif

}  // namespace bench
