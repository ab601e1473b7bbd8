#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "globe/Graticule.h"
#include "globe/LineBatch.h"

class QOpenGLShaderProgram;

namespace sandbox {

/// Draws the graticule; its lines are worked out anew only when the view needs others. To be made, used and
/// destroyed with the context current.
class GraticuleLayer {
  public:
    GraticuleLayer();
    ~GraticuleLayer();

    void draw(const Camera& camera, double pixelRatio);
    /// Of what was drawn last.
    std::vector<GraticuleLabel> labels(const Camera& camera) const;

  private:
    std::unique_ptr<QOpenGLShaderProgram> program_;
    std::optional<GraticuleGrid> grid_;
    std::unique_ptr<LineBatch> lines_;
};

}  // namespace sandbox
