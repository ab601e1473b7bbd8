#pragma once

#include <QOpenGLBuffer>
#include <memory>
#include <optional>
#include <vector>

#include "globe/DrawList.h"
#include "globe/ViewVolume.h"

class QOpenGLShaderProgram;
class QOpenGLTexture;

namespace sandbox {

class FillCost;

/// Pictures on the ground, in the order of their shapes.
class PictureBatch {
  public:
    static std::unique_ptr<QOpenGLShaderProgram> compile();

    using Textures = std::vector<std::shared_ptr<QOpenGLTexture>>;
    /// Takes the pictures of the list that have a texture; of the others it appends the border to
    /// `list.lines`.
    void upload(DrawList& list, const Textures& textures);
    bool empty() const { return runs_.empty(); }
    /// How many pieces can be drawn one by one.
    std::size_t pieces() const { return runs_.size(); }
    /// Draws a piece. \return the cost, as that of pixels; 0 when it is not to be seen
    std::size_t draw(QOpenGLShaderProgram& program, const FillCost& cost, std::size_t piece);
    /// Of all pieces.
    std::size_t cost(const FillCost& cost) const;

  private:
    struct Run {
        std::shared_ptr<QOpenGLTexture> texture;
        BoundingBall ball;
        std::size_t first;
        int count;
    };

    /// None while there is nothing to draw: there are very many batches.
    std::optional<QOpenGLBuffer> vertexBuffer_;
    std::optional<QOpenGLBuffer> indexBuffer_;
    std::vector<Run> runs_;
};

}  // namespace sandbox
