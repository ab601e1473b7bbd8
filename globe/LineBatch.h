#pragma once

#include <QOpenGLBuffer>
#include <memory>
#include <optional>
#include <span>

#include "globe/DrawList.h"

class QOpenGLShaderProgram;

namespace sandbox {

class Camera;

/// Lines and dots in the memory of the graphics card. To be uploaded, drawn and destroyed with the context
/// current.
class LineBatch {
  public:
    void upload(std::span<const DrawList::Line> lines);
    bool empty() const { return segments_ == 0; }

    static std::unique_ptr<QOpenGLShaderProgram> compile();
    /// Around any number of draw(), with the program that compile() made. `pixelRatio`: device pixels a
    /// widget pixel.
    static void beginDrawing(QOpenGLShaderProgram& program, const Camera& camera, double pixelRatio);
    void draw();
    static void endDrawing(QOpenGLShaderProgram& program);

  private:
    std::optional<QOpenGLBuffer> buffer_;  ///< none while there is nothing to draw
    int segments_ = 0;
};

}  // namespace sandbox
