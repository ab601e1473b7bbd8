#pragma once

#include <QOpenGLBuffer>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "globe/DrawList.h"

class QOpenGLShaderProgram;

namespace sandbox {

class Camera;

/// Lines and dots in the memory of the graphics card. To be uploaded, drawn and destroyed with the context
/// current.
class LineBatch {
  public:
    void upload(std::span<const DrawList::Line> lines);
    static std::unique_ptr<QOpenGLShaderProgram> compile();
    /// Around any number of draw(), with the program that compile() made. `pixelRatio`: device pixels a
    /// widget pixel.
    static void beginDrawing(QOpenGLShaderProgram& program, const Camera& camera, double pixelRatio);
    /// Lines from `first` to before `last`, by their numbers in the order of upload().
    void draw(std::size_t first, std::size_t last);
    void draw() { draw(0, begins_.size() - 1); }
    bool empty() const { return !buffer_; }
    static void endDrawing(QOpenGLShaderProgram& program);

  private:
    std::optional<QOpenGLBuffer> buffer_;  ///< none while there is nothing to draw
    std::vector<int> begins_;              ///< of each line, and behind the last one: segments before it
};

}  // namespace sandbox
