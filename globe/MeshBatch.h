#pragma once

#include <QOpenGLBuffer>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "globe/DrawList.h"
#include "globe/SplitPosition.h"

class QOpenGLShaderProgram;

namespace sandbox {

/// Meshes in the memory of the graphics card. To be uploaded, drawn and destroyed with the context current.
class MeshBatch {
  public:
    /// Before upload().
    void add(const DrawList::Mesh& mesh);
    void upload();
    static constexpr int kAttributes = 4;
    bool empty() const { return !contents_; }
    bool isOpaque() const {
        return contents_ && contents_->runs.size() == 1 && !contents_->runs[0].translucent;
    }
    std::size_t triangles() const { return contents_ ? contents_->indices / 3 : 0; }
    /// For a program with the attributes high, low, colour and normal. `beginArea` is called before each
    /// translucent mesh that is not solid.
    void draw(QOpenGLShaderProgram& program, const std::function<void()>& beginArea);

  private:
    struct Vertex {
        FloatTriple high;
        FloatTriple low;
        std::array<std::uint8_t, 4> color;
        std::array<std::int16_t, 4> normal;  ///< 32767 = 1; zero = that of the face
    };
    struct Run {
        std::size_t first;
        int count;
        bool translucent;
    };

    struct Contents {
        QOpenGLBuffer vertexBuffer{QOpenGLBuffer::VertexBuffer};
        QOpenGLBuffer indexBuffer{QOpenGLBuffer::IndexBuffer};
        std::vector<Run> runs;
        std::vector<Vertex> vertices;  // until they are uploaded
        std::vector<std::uint32_t> triangles;
        std::size_t indices = 0;
    };

    /// None while there is nothing to draw: there are very many batches.
    std::unique_ptr<Contents> contents_;
};

}  // namespace sandbox
