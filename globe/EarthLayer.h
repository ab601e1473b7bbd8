#pragma once

#include <QImage>
#include <QRect>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "globe/MapOptions.h"

class QOpenGLShaderProgram;
class QOpenGLTexture;

namespace sandbox {

class BaseMap;
class Camera;

/// Draws space, the atmosphere's rim and the earth. The ellipsoid is not a mesh: each pixel's ray is
/// intersected with it, so that the limb is round and every pixel shows the place that
/// `Camera::pick` answers for it. Writes no depth; what the earth hides, the other layers compute.
///
/// To be made, used and destroyed with the context current.
class EarthLayer {
  public:
    EarthLayer();
    ~EarthLayer();

    /// A null image gives the plain globe with a graticule.
    void setImage(const QImage& image);
    /// Fills the whole view. Of the map it shows what the options say; `map` was updated for the camera.
    void draw(const Camera& camera, double pixelRatio, BaseMap& map, const MapOptions& options);

  private:
    /// Ways to colour the ground, each a program of its own: a software renderer pays for every branch.
    enum Ground : unsigned {
        kPlain = 1,
        kMinified = 2,
        kMagnified = 4,
        kFading = 8,
        kWorld = 16,
        kDetail = 32
    };

    QOpenGLShaderProgram& groundProgram(unsigned ground);
    void uploadMap(BaseMap& map, unsigned ground);
    /// `area` of the view is what drawWithin() may draw: left, bottom, right, top, -1 to 1.
    static void setView(QOpenGLShaderProgram& program, const Camera& camera,
                        const std::array<float, 4>& area);
    static void drawWithin(const std::vector<QRect>& parts);

    std::unique_ptr<QOpenGLShaderProgram> sky_;
    std::map<unsigned, std::unique_ptr<QOpenGLShaderProgram>> ground_;
    std::unique_ptr<QOpenGLTexture> texture_;
    std::unique_ptr<QOpenGLTexture> world_;
    std::unique_ptr<QOpenGLTexture> detail_;
    std::uint64_t detailRevision_ = 0;
};

}  // namespace sandbox
