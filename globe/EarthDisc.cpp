#include "globe/EarthDisc.h"

#include <algorithm>

#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/Camera.h"

namespace sandbox {

using halCore::Ecef;

namespace {

/// Whether the ray of sight through a place of the view meets the earth; the places where it does form a
/// convex area.
class Sight {
  public:
    Sight(const Camera& camera, double pixelRatio)
        : camera_(camera),
          ratio_(pixelRatio),
          eye_(toUnitSphere(camera.eye())),
          excess_(dot(eye_, eye_) - 1.0) {}

    /// Device pixels from the lower left corner.
    bool meetsEarth(double x, double y) const {
        const Ecef ray = toUnitSphere(camera_.ray(x / ratio_, camera_.height() - y / ratio_));
        const double b = dot(eye_, ray);
        return b < 0.0 && b * b > dot(ray, ray) * excess_;
    }

  private:
    const Camera& camera_;
    double ratio_;
    Ecef eye_;
    double excess_;
};

}  // namespace

EarthDisc::EarthDisc(const Camera& camera, double pixelRatio) {
    // The tiles of the software renderer: between others its scissors let a row more through.
    constexpr int kRows = 64;
    constexpr int kColumns = 8;
    // The rim is soft for a pixel or two.
    constexpr int kSoft = 4;
    const QSize size = QSizeF(camera.width() * pixelRatio, camera.height() * pixelRatio).toSize();
    const Sight sight(camera, pixelRatio);
    for (int bottom = 0; bottom < size.height(); bottom += kRows) {
        const int rows = std::min(kRows, size.height() - bottom);
        const auto isWhole = [&](int column) {
            return sight.meetsEarth(column, bottom - kSoft) &&
                   sight.meetsEarth(column, bottom + rows + kSoft);
        };
        int left = -kSoft;
        while (left < size.width() && !isWhole(left)) left += kColumns;
        int right = size.width() + kSoft;
        while (right > left && !isWhole(right)) right -= kColumns;
        left = std::min(left + kSoft, size.width());
        right = std::max(right - kSoft, left);
        const auto add = [&](std::vector<QRect>& parts, int from, int to) {
            if (to > from) parts.emplace_back(from, bottom, to - from, rows);
        };
        add(rim, 0, left);
        add(earth, left, right);
        add(rim, right, size.width());
    }
}

}  // namespace sandbox
