#pragma once

#include <QOpenGLBuffer>
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "globe/DrawList.h"
#include "globe/SplitPosition.h"
#include "globe/ViewVolume.h"

class QOpenGLShaderProgram;

namespace sandbox {

class FillCost;

/// Meshes in the memory of the graphics card. To be uploaded, drawn and destroyed with the context current.
class MeshBatch {
  public:
    /// Before upload().
    void add(const DrawList::Mesh& mesh);
    void upload();
    static constexpr int kAttributes = 4;
    bool empty() const { return !contents_; }
    bool isOpaque() const { return contents_ && std::ranges::none_of(contents_->runs, &Run::translucent); }
    /// How many pieces can be drawn one by one.
    std::size_t pieces() const { return contents_ ? contents_->runs.size() : 0; }
    /// Draws some pieces, for a program with the attributes high, low, colour and normal: from `piece` on,
    /// which it moves on, to where they have cost about FillCost::kAtOnce, without those that are not to be
    /// seen. `begin` is called with each one, or several together: whether it is translucent and not solid.
    /// \return the cost, as that of pixels
    std::size_t draw(QOpenGLShaderProgram& program, const FillCost& cost, std::size_t& piece,
                     const std::function<void(bool translucent)>& begin);
    /// Of all pieces.
    std::size_t cost(const FillCost& cost) const;

  private:
    struct Vertex {
        FloatTriple high;
        FloatTriple low;
        std::array<std::uint8_t, 4> color;
        std::array<std::int16_t, 4> normal;  ///< 32767 = 1; zero = that of the face
    };
    struct Run {
        BoundingBall ball;
        std::size_t first;
        int count;
        bool translucent;
        bool solid;
        std::size_t cost(const FillCost& view) const;
    };

    struct Contents {
        QOpenGLBuffer vertexBuffer{QOpenGLBuffer::VertexBuffer};
        QOpenGLBuffer indexBuffer{QOpenGLBuffer::IndexBuffer};
        std::vector<Run> runs;
        std::vector<Vertex> vertices;  // until they are uploaded
        std::vector<std::uint32_t> triangles;
    };

    /// None while there is nothing to draw: there are very many batches.
    std::unique_ptr<Contents> contents_;
};

}  // namespace sandbox
