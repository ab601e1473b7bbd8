#include "globe/LineBatch.h"

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "geo/Ecef.h"
#include "globe/Camera.h"
#include "globe/OverlayShaders.h"
#include "globe/ShaderProgram.h"
#include "globe/SplitPosition.h"

namespace sandbox {

using halCore::Ecef;

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
constexpr std::uint8_t kOverBodies = 8;

void append(std::vector<LineVertex>& out, const DrawList::Line& line) {
    const std::size_t count = line.points.size();
    if (count == 0) return;
    const auto width = static_cast<std::uint8_t>(std::clamp(line.width, 1.0F, 255.0F));
    const int common = (line.solid ? kSolid : 0) | (line.overBodies ? kOverBodies : 0);
    double distance = line.metres;
    const auto put = [&](const Ecef& p, std::uint8_t segmentWidth, std::uint8_t flags) {
        const SplitPosition s = split(p);
        out.push_back({s.high,
                       static_cast<float>(distance),
                       s.low,
                       {line.color.r, line.color.g, line.color.b, line.color.a},
                       segmentWidth,
                       static_cast<std::uint8_t>(line.stroke),
                       static_cast<std::uint8_t>(flags | common),
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
        const bool drawn =
            closed || (i + 1 < count && !(line.leads && i == 0) && !(line.trails && i + 2 == count));
        put(line.points[i], drawn ? width : std::uint8_t{0}, flags);
    }
    if (!closed) return;
    distance += length(line.points.front() - line.points.back());
    put(line.points.front(), 0, 0);
    put(line.points[1], 0, 0);
}

constexpr int kAttributes = 11;

void point(QOpenGLExtraFunctions& gl, unsigned index, int size, std::size_t offset) {
    gl.glVertexAttribPointer(index, size, GL_FLOAT, GL_FALSE, sizeof(LineVertex),
                             reinterpret_cast<const void*>(offset));
}
void bytes(QOpenGLExtraFunctions& gl, unsigned index, GLboolean normalized, std::size_t offset) {
    gl.glVertexAttribPointer(index, 4, GL_UNSIGNED_BYTE, normalized, sizeof(LineVertex),
                             reinterpret_cast<const void*>(offset));
}

}  // namespace

void LineBatch::upload(std::span<const DrawList::Line> lines) {
    // Each segment reads the vertex before its start and the one after its end: pad both ends.
    std::vector<LineVertex> vertices(1);
    begins_.assign(1, 0);
    begins_.reserve(lines.size() + 1);
    for (const DrawList::Line& line : lines) {
        append(vertices, line);
        begins_.push_back(static_cast<int>(vertices.size()) - 1);
    }
    vertices.resize(vertices.size() + 2);
    if (begins_.back() == 0) return;
    buffer_.emplace(QOpenGLBuffer::VertexBuffer);
    buffer_->create();
    buffer_->bind();
    buffer_->allocate(vertices.data(), static_cast<int>(vertices.size() * sizeof(LineVertex)));
    buffer_->release();
}

std::unique_ptr<QOpenGLShaderProgram> LineBatch::compile() {
    return compileProgram(std::string(kRelativeShader) + kLineVertexShader,
                          std::string(kSightShader) + kLineFragmentShader,
                          {"corner", "previousHigh", "previousLow", "startHigh", "startLow", "endHigh",
                           "endLow", "nextHigh", "nextLow", "color", "style"});
}

void LineBatch::beginDrawing(QOpenGLShaderProgram& program, const Camera& camera, double pixelRatio) {
    program.bind();
    setCamera(program, camera);
    program.setUniformValue("viewport", QSizeF(camera.width() * pixelRatio, camera.height() * pixelRatio));
    program.setUniformValue("nearPlane", static_cast<float>(camera.nearPlane()));
    program.setUniformValue("pixelRatio", static_cast<float>(pixelRatio));
    // Lines bring their own antialiasing.
    glDisable(GL_MULTISAMPLE);
    QOpenGLExtraFunctions& gl = *QOpenGLContext::currentContext()->extraFunctions();
    static constexpr float kCorners[] = {0.0F, -1.0F, 1.0F, -1.0F, 0.0F, 1.0F, 1.0F, 1.0F};
    program.setAttributeArray(0, kCorners, 2);
    for (int i = 0; i < kAttributes; ++i) program.enableAttributeArray(i);
    for (unsigned i = 1; i < kAttributes; ++i) gl.glVertexAttribDivisor(i, 1);
}

void LineBatch::draw(std::size_t first, std::size_t last) {
    const int segments = begins_[last] - begins_[first];
    if (segments == 0) return;
    QOpenGLExtraFunctions& gl = *QOpenGLContext::currentContext()->extraFunctions();
    buffer_->bind();
    const std::size_t start = static_cast<std::size_t>(begins_[first]) * sizeof(LineVertex);
    for (unsigned vertex = 0; vertex < 4; ++vertex) {
        const std::size_t at = start + vertex * sizeof(LineVertex);
        point(gl, 1 + 2 * vertex, 4, at + offsetof(LineVertex, high));
        point(gl, 2 + 2 * vertex, 3, at + offsetof(LineVertex, low));
    }
    bytes(gl, 9, GL_TRUE, start + sizeof(LineVertex) + offsetof(LineVertex, color));
    bytes(gl, 10, GL_FALSE, start + sizeof(LineVertex) + offsetof(LineVertex, width));
    gl.glDrawArraysInstanced(GL_TRIANGLE_STRIP, 0, 4, segments);
    buffer_->release();
}

void LineBatch::endDrawing(QOpenGLShaderProgram& program) {
    QOpenGLExtraFunctions& gl = *QOpenGLContext::currentContext()->extraFunctions();
    for (unsigned i = 1; i < kAttributes; ++i) gl.glVertexAttribDivisor(i, 0);
    for (int i = 0; i < kAttributes; ++i) program.disableAttributeArray(i);
    program.release();
    glEnable(GL_MULTISAMPLE);
}

}  // namespace sandbox
