#pragma once

#include <QOpenGLBuffer>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "globe/DrawList.h"

class QOpenGLShaderProgram;
class QOpenGLTexture;

namespace sandbox {

/// The textures of the pictures that are in use, one a file. To be used with the context current.
class PictureTextures {
  public:
    /// Null when the file cannot be read.
    std::shared_ptr<QOpenGLTexture> find(const PictureFile& file);

  private:
    std::map<PictureFile, std::weak_ptr<QOpenGLTexture>> textures_;
};

/// Pictures on the ground, in the order of their shapes.
class PictureBatch {
  public:
    static std::unique_ptr<QOpenGLShaderProgram> compile();

    /// Takes what can be drawn of the list; of the others it appends the border to `list.lines`.
    void upload(DrawList& list, PictureTextures& textures);
    bool empty() const { return runs_.empty(); }
    void draw(QOpenGLShaderProgram& program);

  private:
    struct Run {
        std::shared_ptr<QOpenGLTexture> texture;
        std::size_t first;
        int count;
    };

    /// None while there is nothing to draw: there are very many batches.
    std::optional<QOpenGLBuffer> vertexBuffer_;
    std::optional<QOpenGLBuffer> indexBuffer_;
    std::vector<Run> runs_;
};

}  // namespace sandbox
