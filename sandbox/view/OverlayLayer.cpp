#include "sandbox/view/OverlayLayer.h"

#include <QOpenGLBuffer>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "sandbox/view/Camera.h"
#include "sandbox/view/OverlayShaders.h"
#include "sandbox/view/PictureLayer.h"
#include "sandbox/view/ShaderProgram.h"
#include "sandbox/view/ShapeGeometry.h"
#include "sandbox/view/SplitPosition.h"

namespace sandbox {

namespace {

struct LineVertex {
    FloatTriple high;
    float distance;  ///< metres from the start of the line, for dashes
    FloatTriple low;
    std::array<std::uint8_t, 4> color;
    std::uint8_t width;  ///< of the segment from here to the next vertex; 0 = none is drawn
    std::uint8_t stroke;
    std::uint8_t flags;
    std::uint8_t unused;
};
static_assert(sizeof(LineVertex) == 36);

constexpr std::uint8_t kNoPrevious = 1;
constexpr std::uint8_t kNoNext = 2;
constexpr std::uint8_t kSolid = 4;

struct MeshVertex {
    FloatTriple high;
    FloatTriple low;
    std::array<std::uint8_t, 4> color;
};
static_assert(sizeof(MeshVertex) == 28);

void append(std::vector<LineVertex>& out, const DrawList::Line& line) {
    const std::size_t count = line.points.size();
    if (count == 0) return;
    const auto width = static_cast<std::uint8_t>(std::clamp(line.width, 1.0F, 255.0F));
    const auto solid = line.solid ? kSolid : std::uint8_t{0};
    double distance = 0.0;
    const auto put = [&](const Ecef& p, std::uint8_t segmentWidth, std::uint8_t flags) {
        const SplitPosition s = split(p);
        out.push_back({s.high,
                       static_cast<float>(distance),
                       s.low,
                       {line.color.r, line.color.g, line.color.b, line.color.a},
                       segmentWidth,
                       static_cast<std::uint8_t>(line.stroke),
                       static_cast<std::uint8_t>(flags | solid),
                       0});
    };
    if (count == 1) {
        put(line.points.front(), width, kNoPrevious | kNoNext);
        put(line.points.front(), 0, 0);
        return;
    }
    const bool closed = line.closed && count > 2;
    if (closed) put(line.points.back(), 0, 0);
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) distance += length(line.points[i] - line.points[i - 1]);
        std::uint8_t flags = 0;
        if (!closed && i == 0) flags |= kNoPrevious;
        if (!closed && i + 2 == count) flags |= kNoNext;
        put(line.points[i], closed || i + 1 < count ? width : std::uint8_t{0}, flags);
    }
    if (!closed) return;
    distance += length(line.points.front() - line.points.back());
    put(line.points.front(), 0, 0);
    put(line.points[1], 0, 0);
}

void append(std::vector<MeshVertex>& vertices, std::vector<std::uint32_t>& triangles,
            const DrawList::Mesh& mesh) {
    const auto base = static_cast<std::uint32_t>(vertices.size());
    for (const Ecef& p : mesh.vertices) {
        const SplitPosition s = split(p);
        vertices.push_back({s.high, s.low, {mesh.color.r, mesh.color.g, mesh.color.b, mesh.color.a}});
    }
    for (const std::uint32_t index : mesh.triangles) triangles.push_back(base + index);
}

/// A box around everything, to leave out what is not in the view.
class Bounds {
  public:
    void add(const Ecef& p) {
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y), std::min(low_.z, p.z)};
        high_ = {std::max(high_.x, p.x), std::max(high_.y, p.y), std::max(high_.z, p.z)};
    }
    void grow(double meters) {
        low_ = low_ - Ecef{meters, meters, meters};
        high_ = high_ + Ecef{meters, meters, meters};
    }
    bool empty() const { return low_.x > high_.x; }
    double distanceFrom(const Ecef& p) const {
        return length({std::max({low_.x - p.x, 0.0, p.x - high_.x}),
                       std::max({low_.y - p.y, 0.0, p.y - high_.y}),
                       std::max({low_.z - p.z, 0.0, p.z - high_.z})});
    }
    bool outside(const Camera& camera, double marginPixels) const {
        if (empty()) return true;
        const Ecef center = (low_ + high_) * 0.5;
        const double radius = length(high_ - low_) * 0.5;
        const Ecef v = center - camera.eye();
        const double ahead = -dot(v, camera.back());
        if (ahead + radius < 0.0) return true;
        const auto beyond = [&](double sideways, double tangent) {
            const double slope = tangent * (1.0 + 2.0 * marginPixels / camera.height());
            return std::abs(sideways) - ahead * slope > radius * std::sqrt(1.0 + slope * slope);
        };
        return beyond(dot(v, camera.right()), camera.tanHalfWidth()) ||
               beyond(dot(v, camera.up()), camera.tanHalfHeight());
    }

  private:
    static constexpr double kHuge = std::numeric_limits<double>::max();
    Ecef low_{kHuge, kHuge, kHuge};
    Ecef high_{-kHuge, -kHuge, -kHuge};
};

class MeshBatch {
  public:
    void add(const DrawList::Mesh& mesh) {
        const std::size_t first = triangles_.size();
        append(vertices_, triangles_, mesh);
        const std::size_t count = triangles_.size() - first;
        if (count == 0) return;
        const bool translucent = mesh.color.a < 255 && !mesh.solid;
        if (!translucent && !runs_.empty() && !runs_.back().translucent)
            runs_.back().count += static_cast<int>(count);
        else
            runs_.push_back({first, static_cast<int>(count), translucent});
    }
    void upload() {
        if (runs_.empty()) return;
        vertexBuffer_.create();
        vertexBuffer_.bind();
        vertexBuffer_.allocate(vertices_.data(), static_cast<int>(vertices_.size() * sizeof(MeshVertex)));
        vertexBuffer_.release();
        indexBuffer_.create();
        indexBuffer_.bind();
        indexBuffer_.allocate(triangles_.data(), static_cast<int>(triangles_.size() * sizeof(std::uint32_t)));
        indexBuffer_.release();
        vertices_ = {};
        triangles_ = {};
    }
    bool empty() const { return runs_.empty(); }
    /// `beginArea` is called before each translucent mesh.
    template <typename BeginArea>
    void draw(QOpenGLShaderProgram& program, const BeginArea& beginArea) {
        vertexBuffer_.bind();
        indexBuffer_.bind();
        program.setAttributeBuffer(0, GL_FLOAT, offsetof(MeshVertex, high), 3, sizeof(MeshVertex));
        program.setAttributeBuffer(1, GL_FLOAT, offsetof(MeshVertex, low), 3, sizeof(MeshVertex));
        program.setAttributeBuffer(2, GL_UNSIGNED_BYTE, offsetof(MeshVertex, color), 4, sizeof(MeshVertex));
        for (const Run& run : runs_) {
            if (run.translucent) beginArea();
            glDrawElements(GL_TRIANGLES, run.count, GL_UNSIGNED_INT,
                           reinterpret_cast<const void*>(run.first * sizeof(std::uint32_t)));
        }
        indexBuffer_.release();
        vertexBuffer_.release();
    }

  private:
    struct Run {
        std::size_t first;
        int count;
        bool translucent;
    };

    QOpenGLBuffer vertexBuffer_{QOpenGLBuffer::VertexBuffer};
    QOpenGLBuffer indexBuffer_{QOpenGLBuffer::IndexBuffer};
    std::vector<Run> runs_;
    std::vector<MeshVertex> vertices_;  // until they are uploaded
    std::vector<std::uint32_t> triangles_;
};

constexpr int kLineAttributes = 11;

/// Metres that each level of detail may be off, finest first; 0 = as good as it gets.
constexpr std::array<double, 5> kTolerances = {0.0, 2.0, 50.0, 1250.0, 20000.0};
/// An entry's chunks: at least so many if it has the shapes for it, until they hold so many points.
constexpr std::size_t kChunks = 64;
constexpr std::size_t kChunkSize = 4000;

class LineBatch {
  public:
    void upload(const std::vector<DrawList::Line>& lines) {
        // Each segment reads the vertex before its start and the one after its end: pad both ends.
        std::vector<LineVertex> vertices(1);
        for (const DrawList::Line& line : lines) append(vertices, line);
        vertices.resize(vertices.size() + 2);
        segments_ = static_cast<int>(vertices.size()) - 3;
        if (segments_ == 0) return;
        buffer_.create();
        buffer_.bind();
        buffer_.allocate(vertices.data(), static_cast<int>(vertices.size() * sizeof(LineVertex)));
        buffer_.release();
    }
    bool empty() const { return segments_ == 0; }
    void draw(QOpenGLExtraFunctions& gl) {
        buffer_.bind();
        for (unsigned vertex = 0; vertex < 4; ++vertex) {
            const std::size_t at = vertex * sizeof(LineVertex);
            point(gl, 1 + 2 * vertex, 4, at + offsetof(LineVertex, high));
            point(gl, 2 + 2 * vertex, 3, at + offsetof(LineVertex, low));
        }
        bytes(gl, 9, GL_TRUE, sizeof(LineVertex) + offsetof(LineVertex, color));
        bytes(gl, 10, GL_FALSE, sizeof(LineVertex) + offsetof(LineVertex, width));
        gl.glDrawArraysInstanced(GL_TRIANGLE_STRIP, 0, 4, segments_);
        buffer_.release();
    }

  private:
    static void point(QOpenGLExtraFunctions& gl, unsigned index, int size, std::size_t offset) {
        gl.glVertexAttribPointer(index, size, GL_FLOAT, GL_FALSE, sizeof(LineVertex),
                                 reinterpret_cast<const void*>(offset));
    }
    static void bytes(QOpenGLExtraFunctions& gl, unsigned index, GLboolean normalized, std::size_t offset) {
        gl.glVertexAttribPointer(index, 4, GL_UNSIGNED_BYTE, normalized, sizeof(LineVertex),
                                 reinterpret_cast<const void*>(offset));
    }

    QOpenGLBuffer buffer_{QOpenGLBuffer::VertexBuffer};
    int segments_ = 0;
};

/// For colours that are not premultiplied; keeps the picture's own alpha right.
void setBlending() {
    QOpenGLContext::currentContext()->functions()->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA,
                                                                       GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

void setCamera(QOpenGLShaderProgram& program, const Camera& camera) {
    const auto projection = camera.projection();
    const auto modelview = camera.modelview();
    QMatrix4x4 matrix;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += projection[static_cast<std::size_t>(k * 4 + row)] *
                       modelview[static_cast<std::size_t>(column * 4 + k)];
            matrix(row, column) = static_cast<float>(sum);
        }
    }
    program.setUniformValue("matrix", matrix);
    const SplitPosition eye = split(camera.eye());
    program.setUniformValue("eyeHigh", vector(eye.high));
    program.setUniformValue("eyeLow", vector(eye.low));
    const Ecef unit = toUnitSphere(camera.eye());
    program.setUniformValue(
        "eye", QVector3D(static_cast<float>(unit.x), static_cast<float>(unit.y), static_cast<float>(unit.z)));
    program.setUniformValue("eyeExcess", static_cast<float>(dot(unit, unit) - 1.0));
    program.setUniformValue("toUnitSphere", QVector3D(static_cast<float>(1.0 / kEquatorRadius),
                                                      static_cast<float>(1.0 / kEquatorRadius),
                                                      static_cast<float>(1.0 / kPoleRadius)));
}

}  // namespace

struct OverlayLayer::Level {
    PictureBatch pictures;
    MeshBatch areas;
    MeshBatch solids;
    LineBatch lines;

    Level(DrawList& list, PictureTextures& textures) {
        pictures.upload(list, textures);
        for (const DrawList::Mesh& mesh : list.meshes) (mesh.solid ? solids : areas).add(mesh);
        areas.upload();
        solids.upload();
        lines.upload(list.lines);
    }
};

/// A run of an entry's shapes.
struct OverlayLayer::Chunk {
    std::size_t firstShape = 0;
    std::size_t lastShape = 0;  ///< one past
    Bounds bounds;
    std::array<std::unique_ptr<Level>, kTolerances.size()> levels;
    std::vector<DrawList::Label> labels;

    /// The coarsest level that the view cannot tell from the truth.
    std::size_t wanted(const Camera& camera, double pixelRatio) const {
        const double above = std::max(10.0, 0.5 * std::min(camera.range(), camera.eyePosition().alt()));
        const double distance = std::max(above, bounds.distanceFrom(camera.eye()));
        const double pixel = 2.0 * distance * camera.tanHalfHeight() / (camera.height() * pixelRatio);
        std::size_t level = kTolerances.size() - 1;
        while (level > 0 && kTolerances[level] > 0.3 * pixel) --level;
        return level;
    }

    void build(const OverlayScene::Entry& entry, std::size_t level, PictureTextures& textures) {
        if (levels[level]) return;
        DrawList list;
        for (std::size_t i = firstShape; i < lastShape; ++i)
            if (entry.shapes[i]) appendGeometry(*entry.shapes[i], entry.reference, kTolerances[level], list);
        Bounds box;
        for (DrawList::Picture& picture : list.pictures) {
            picture.file = findPicture(picture.file.path, entry.directory);
            for (const Ecef& p : picture.vertices) box.add(p);
        }
        for (DrawList::Label& label : list.labels)
            if (!label.icon.path.empty()) label.icon = findPicture(label.icon.path, entry.directory);
        for (const DrawList::Mesh& mesh : list.meshes)
            for (const Ecef& p : mesh.vertices) box.add(p);
        for (const DrawList::Line& line : list.lines)
            for (const Ecef& p : line.points) box.add(p);
        box.grow(kTolerances[level]);
        // Finer levels come later: their box is the tighter one.
        if (!std::any_of(levels.begin(), levels.begin() + static_cast<std::ptrdiff_t>(level),
                         [](const auto& finer) { return finer != nullptr; }))
            bounds = box;
        levels[level] = std::make_unique<Level>(list, textures);
        labels = std::move(list.labels);
    }
};

struct OverlayLayer::Item {
    std::uint64_t revision = 0;
    std::vector<Chunk> chunks;

    Item(const OverlayScene::Entry& entry, PictureTextures& textures) : revision(entry.revision) {
        std::size_t total = 0;
        for (const auto& shape : entry.shapes) total += shape ? roughSize(*shape) : 0;
        const std::size_t enough = std::min(kChunkSize, total / kChunks);
        std::size_t size = 0;
        for (std::size_t i = 0; i < entry.shapes.size(); ++i) {
            if (!entry.shapes[i]) continue;
            const std::size_t more = roughSize(*entry.shapes[i]);
            if (chunks.empty() || size + more > enough) {
                chunks.emplace_back().firstShape = i;
                size = 0;
            }
            size += more;
            chunks.back().lastShape = i + 1;
        }
        for (Chunk& chunk : chunks) chunk.build(entry, kTolerances.size() - 1, textures);
    }
};

OverlayLayer::OverlayLayer()
    : lineProgram_(compileProgram(std::string(kRelativeShader) + kLineVertexShader,
                                  std::string(kSightShader) + kLineFragmentShader,
                                  {"corner", "previousHigh", "previousLow", "startHigh", "startLow",
                                   "endHigh", "endLow", "nextHigh", "nextLow", "color", "style"})),
      meshProgram_(compileProgram(std::string(kRelativeShader) + kMeshVertexShader,
                                  std::string(kSightShader) + kMeshFragmentShader, {"high", "low", "color"})),
      pictureProgram_(PictureBatch::compile()),
      textures_(std::make_unique<PictureTextures>()) {}

OverlayLayer::~OverlayLayer() = default;

void OverlayLayer::update(const OverlayScene& scene) {
    std::erase_if(items_, [&](const auto& item) { return !scene.contains(item.first); });
    for (const auto& [id, entry] : scene.entries()) {
        if (!entry.shown) continue;
        std::unique_ptr<Item>& item = items_[id];
        if (!item || item->revision != entry.revision) item = std::make_unique<Item>(entry, *textures_);
    }
}

std::vector<const DrawList::Label*> OverlayLayer::labels(const OverlayScene& scene) const {
    std::vector<const DrawList::Label*> result;
    for (const auto& [id, item] : items_) {
        if (!scene.find(id)->shown) continue;
        for (const Chunk& chunk : item->chunks)
            for (const DrawList::Label& label : chunk.labels) result.push_back(&label);
    }
    return result;
}

void OverlayLayer::draw(const OverlayScene& scene, const Camera& camera, double pixelRatio) {
    if (items_.empty()) return;
    for (const auto* program : {&lineProgram_, &meshProgram_, &pictureProgram_})
        if (!(*program)->isLinked()) return;
    lineProgram_->bind();
    setCamera(*lineProgram_, camera);
    lineProgram_->setUniformValue("viewport",
                                  QSizeF(camera.width() * pixelRatio, camera.height() * pixelRatio));
    lineProgram_->setUniformValue("nearPlane", static_cast<float>(camera.nearPlane()));
    lineProgram_->setUniformValue("pixelRatio", static_cast<float>(pixelRatio));
    meshProgram_->bind();
    setCamera(*meshProgram_, camera);
    pictureProgram_->bind();
    setCamera(*pictureProgram_, camera);
    pictureProgram_->setUniformValue("picture", 0);
    pictureProgram_->release();

    glEnable(GL_BLEND);
    setBlending();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    areaMark_ = 0;
    constexpr double kMargin = 256.0;  // wide lines and dots reach into the view
    std::vector<Level*> levels;
    for (const auto& [id, item] : items_) {
        const OverlayScene::Entry& entry = *scene.find(id);
        if (!entry.shown) continue;
        levels.clear();
        for (Chunk& chunk : item->chunks) {
            if (chunk.bounds.outside(camera, kMargin)) continue;
            std::size_t level = chunk.wanted(camera, pixelRatio);
            chunk.build(entry, level, *textures_);
            // With its tighter box the chunk may turn out to be farther away, or out of view.
            if (chunk.bounds.outside(camera, kMargin)) continue;
            levels.push_back(chunk.levels[level].get());
        }
        drawLevels(levels);
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
}

void OverlayLayer::drawPictures(const std::vector<Level*>& levels) {
    if (std::ranges::all_of(levels, [](const Level* level) { return level->pictures.empty(); })) return;
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    pictureProgram_->bind();
    for (int i = 0; i < 3; ++i) pictureProgram_->enableAttributeArray(i);
    for (Level* level : levels)
        if (!level->pictures.empty()) level->pictures.draw(*pictureProgram_);
    for (int i = 0; i < 3; ++i) pictureProgram_->disableAttributeArray(i);
    pictureProgram_->release();
    setBlending();
}

void OverlayLayer::drawLevels(const std::vector<Level*>& levels) {
    QOpenGLExtraFunctions& gl = *QOpenGLContext::currentContext()->extraFunctions();
    drawPictures(levels);
    meshProgram_->bind();
    for (int i = 0; i < 3; ++i) meshProgram_->enableAttributeArray(i);
    glDepthMask(GL_FALSE);
    meshProgram_->setUniformValue("solid", false);
    // Triangles under a curved surface may lie before each other at a flat angle: the stencil lets each
    // area colour a pixel once only.
    glEnable(GL_STENCIL_TEST);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    const auto beginArea = [this] {
        if (++areaMark_ > 255) {
            glClear(GL_STENCIL_BUFFER_BIT);
            areaMark_ = 1;
        }
        glStencilFunc(GL_NOTEQUAL, areaMark_, 0xff);
    };
    for (Level* level : levels)
        if (!level->areas.empty()) {
            glStencilFunc(GL_ALWAYS, 0, 0xff);
            level->areas.draw(*meshProgram_, beginArea);
        }
    glDisable(GL_STENCIL_TEST);
    glDepthMask(GL_TRUE);
    glEnable(GL_CULL_FACE);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1.0F, 1.0F);
    meshProgram_->setUniformValue("solid", true);
    for (Level* level : levels)
        if (!level->solids.empty()) level->solids.draw(*meshProgram_, [] {});
    glDisable(GL_CULL_FACE);
    glDisable(GL_POLYGON_OFFSET_FILL);
    for (int i = 0; i < 3; ++i) meshProgram_->disableAttributeArray(i);
    meshProgram_->release();

    lineProgram_->bind();
    glDepthMask(GL_FALSE);
    // Lines bring their own antialiasing.
    glDisable(GL_MULTISAMPLE);
    static constexpr float kCorners[] = {0.0F, -1.0F, 1.0F, -1.0F, 0.0F, 1.0F, 1.0F, 1.0F};
    lineProgram_->setAttributeArray(0, kCorners, 2);
    for (int i = 0; i < kLineAttributes; ++i) lineProgram_->enableAttributeArray(i);
    for (unsigned i = 1; i < kLineAttributes; ++i) gl.glVertexAttribDivisor(i, 1);
    for (Level* level : levels)
        if (!level->lines.empty()) level->lines.draw(gl);
    for (unsigned i = 1; i < kLineAttributes; ++i) gl.glVertexAttribDivisor(i, 0);
    for (int i = 0; i < kLineAttributes; ++i) lineProgram_->disableAttributeArray(i);
    lineProgram_->release();
    glEnable(GL_MULTISAMPLE);
}

}  // namespace sandbox
