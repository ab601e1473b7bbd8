#include "globe/GraticuleLayer.h"

#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>

#include "globe/Camera.h"
#include "globe/ShaderProgram.h"

namespace sandbox {

GraticuleLayer::GraticuleLayer() : program_(LineBatch::compile()) {}

GraticuleLayer::~GraticuleLayer() = default;

void GraticuleLayer::draw(const Camera& camera, double pixelRatio) {
    if (!program_->isLinked()) return;
    const GraticuleGrid grid = graticuleGrid(camera);
    if (grid_ != grid) {
        grid_ = grid;
        lines_ = std::make_unique<LineBatch>();
        lines_->upload(graticuleLines(grid));
    }
    if (lines_->empty()) return;
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    setBlending();
    LineBatch::beginDrawing(*program_, camera, pixelRatio);
    lines_->draw();
    LineBatch::endDrawing(*program_);
    glDisable(GL_BLEND);
}

std::vector<GraticuleLabel> GraticuleLayer::labels(const Camera& camera) const {
    return grid_ ? graticuleLabels(*grid_, camera) : std::vector<GraticuleLabel>();
}

}  // namespace sandbox
