#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "globe/DrawList.h"

namespace sandbox {

class Camera;

/// The meridians and parallels that suit a view: so far apart that about a hundred pixels lie between them,
/// and no more of them than the view can show.
struct GraticuleGrid {
    /// Between two lines, in thousandths of an arc second: 30 degrees to a tenth of a second.
    std::int64_t latSpacing = 0;
    std::int64_t lonSpacing = 0;
    /// The lines, as multiples of the spacing; the longitudes may go on beyond 180 degrees.
    std::int64_t south = 0;
    std::int64_t north = 0;
    std::int64_t west = 0;
    std::int64_t east = 0;

    friend bool operator==(const GraticuleGrid&, const GraticuleGrid&) = default;
};

GraticuleGrid graticuleGrid(const Camera& camera);
std::vector<DrawList::Line> graticuleLines(const GraticuleGrid& grid);

/// The name of a line, where it leaves the view at its left or lower edge, or else in the middle of the grid.
struct GraticuleLabel {
    double x = 0.0;  ///< where it names its line, widget pixels
    double y = 0.0;
    std::string text;  ///< UTF-8, such as 21°30'N
    bool isMeridian = false;
};
std::vector<GraticuleLabel> graticuleLabels(const GraticuleGrid& grid, const Camera& camera);

/// "158°W", "21°30'N", "0°", "180°", "12°00'00.2"S": as fine as the spacing is.
std::string graticuleText(std::int64_t milliSeconds, bool isLatitude, std::int64_t spacing);

}  // namespace sandbox
