#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "globe/DrawList.h"
#include "globe/MapOptions.h"
#include "globe/map/MapField.h"

namespace sandbox {

class Camera;

inline constexpr Rgba kCoastColor{214, 232, 240, 200};
inline constexpr Rgba kBorderColor{244, 232, 205, 130};

/// The world's land, coasts, borders and countries (Natural Earth, 1:10 million), for any view: as a field of
/// distances that the earth's shader draws from, in a level of detail that suits the view, and as lines. A
/// field is worked out when the view leaves what the last one covers, and read when first shown.
class BaseMap {
  public:
    /// Beyond this range coasts, borders and names are not shown; the lines fade in as the view comes closer.
    static constexpr double kFarthest = 1.7e7;

    struct Detail {
        MapRegion region;
        MapField field;
        std::uint64_t revision = 0;  ///< another one for each field
    };

    /// Prepares what a view needs. `pixelRatio`: device pixels a widget pixel.
    void update(const Camera& camera, double pixelRatio, const MapOptions& options);

    /// Of all the earth.
    const MapField& world();
    /// Of what the view looks at; null where that of all the earth is fine enough.
    const Detail* detail() const { return detailNeeded_ ? &*detail_ : nullptr; }
    /// Whether the view shows nothing beyond the detail.
    bool isDetailEnough() const { return detailEnough_; }

    /// The names of the countries that have room for theirs in the view, the largest with the highest
    /// priority.
    static std::vector<DrawList::Label> names(const Camera& camera);
    /// Coasts and borders as lines, as fine as the view can tell.
    static std::vector<DrawList::Line> lines(const Camera& camera, const MapOptions& options);

  private:
    std::optional<MapField> world_;
    std::optional<Detail> detail_;
    bool detailNeeded_ = false;
    bool detailEnough_ = false;
};

}  // namespace sandbox
