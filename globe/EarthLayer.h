#pragma once

#include <QImage>
#include <array>
#include <memory>

class QOpenGLShaderProgram;
class QOpenGLTexture;

namespace sandbox {

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
    /// Fills the whole view.
    void draw(const Camera& camera);

  private:
    /// Ways to colour the ground, each a program of its own: a software renderer pays for every branch.
    enum Ground { Plain, Minified, Mixed, Magnified, kGroundCount };

    void drawRectangle(QOpenGLShaderProgram& program, const Camera& camera, const std::array<float, 4>& area);

    std::unique_ptr<QOpenGLShaderProgram> sky_;
    std::array<std::unique_ptr<QOpenGLShaderProgram>, kGroundCount> ground_;
    std::unique_ptr<QOpenGLTexture> texture_;
};

}  // namespace sandbox
