#pragma once

#include <QRect>
#include <QSize>
#include <cstdint>
#include <vector>

#include "globe/Camera.h"
#include "globe/DrawList.h"

namespace sandbox {

/// Draws lines and dots into a picture in memory, as the shaders of LineBatch draw them where nothing but the
/// earth hides them: the same formulas, evaluated at the same pixels. Where the processor plays the graphics
/// card, a segment costs a small part of what its triangles cost there.
class LineRaster {
  public:
    LineRaster(const Camera& camera, double pixelRatio);

    void draw(const DrawList::Line& line);

    /// In device pixels.
    const QSize& size() const { return size_; }
    /// Rows from the bottom up; the bytes of a pixel are red, green, blue and alpha, premultiplied.
    const std::vector<std::uint32_t>& pixels() const { return pixels_; }
    /// What has been drawn on: columns from the left, rows from the bottom.
    const QRect& touched() const { return touched_; }
    /// Empties the picture, for the same camera.
    void clear();

  private:
    /// A point of a line as the view sees it.
    struct Vertex {
        double x, y;            ///< device pixels from the lower left corner
        double depth;           ///< metres along the sight
        halCore::Ecef fromEye;  ///< where the earth is the unit sphere
        double past;            ///< below 0 on this side of where the ray of sight comes deepest
        bool overEarth;         ///< whether the ray of sight meets the earth
        double metres = 0.0;    ///< from the start of the line
    };
    struct Direction {
        double x = 0.0;
        double y = 0.0;
    };
    struct Segment;
    enum class Sight { All, None, Some };

    Vertex vertex(const halCore::Ecef& fromEye) const;
    /// Where a line crosses the near plane on its way from a point behind it.
    Vertex atNearPlane(const Vertex& behind, const Vertex& ahead) const;
    bool isBehind(const Vertex& vertex) const { return vertex.depth < nearPlane_; }
    Sight sightOf(const Vertex& a, const Vertex& b) const;
    void drawSegment(const DrawList::Line& line, std::size_t start, std::size_t end);
    void fill(const Segment& segment);
    double opacity(const Segment& segment, double along, double across) const;
    double sight(const Segment& segment, double along) const;
    double pattern(const Segment& segment, double along, double across) const;

    Camera camera_;
    double pixelRatio_;
    QSize size_;
    double pixelsPerTangent_;
    double nearPlane_;
    halCore::Ecef eye_;  ///< where the earth is the unit sphere
    double eyeExcess_;
    std::vector<std::uint32_t> pixels_;
    QRect touched_;
    std::vector<Vertex> vertices_;  ///< of the line that is being drawn
};

}  // namespace sandbox
