#pragma once

#include <QRect>
#include <QSize>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "globe/Camera.h"
#include "globe/DrawList.h"
#include "globe/FullTiles.h"

namespace sandbox {

/// Draws lines and dots into a picture in memory, as the shaders of LineBatch draw them where nothing but the
/// earth hides them: the same formulas, evaluated at the same pixels. Where the processor plays the graphics
/// card, a segment costs a small part of what its triangles cost there.
class LineRaster {
  public:
    /// \param memory of a picture before, empty as clear() leaves it, to be used again
    LineRaster(const Camera& camera, double pixelRatio, std::vector<std::uint32_t> memory = {});
    /// Ends the use of the picture.
    std::vector<std::uint32_t> takeMemory() { return std::move(pixels_); }

    /// How well lines are drawn. Rough: thin lines without a dash are not smoothed and end squarely, at a
    /// fraction of the time, for a view that moves.
    enum class Quality : std::uint8_t { Smooth, Rough };
    void setQuality(Quality quality) { quality_ = quality; }
    Quality quality() const { return quality_; }
    bool sees(const Camera& camera, double pixelRatio) const {
        return camera == camera_ && pixelRatio == pixelRatio_;
    }

    /// \return about how many microseconds it takes
    std::size_t draw(const DrawList::Line& line);
    /// From now on nothing is drawn but in this part of the picture.
    void setClip(const QRect& part) { clip_ = part & whole(); }
    /// Where draw() may leave something.
    QRect extentOf(const DrawList::Line& line) const;
    QRect whole() const { return QRect(QPoint(0, 0), size_); }

    /// In device pixels.
    const QSize& size() const { return size_; }
    /// Rows from the bottom up; the bytes of a pixel are red, green, blue and alpha, premultiplied.
    const std::vector<std::uint32_t>& pixels() const { return pixels_; }
    /// What has been drawn on: columns from the left, rows from the bottom.
    QRect touched() const {
        if (touchedRight_ < touchedLeft_) return {};
        return QRect(QPoint(touchedLeft_, touchedBottom_), QPoint(touchedRight_, touchedTop_)) & whole();
    }
    /// Empties a part of the picture, or all of it, for the same camera.
    void clear(const QRect& part);
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
    void lookPast(Vertex& vertex) const;
    /// Where a line crosses the near plane on its way from a point behind it.
    Vertex atNearPlane(const Vertex& behind, const Vertex& ahead) const;
    bool isBehind(const Vertex& vertex) const { return vertex.depth < nearPlane_; }
    Sight sightOf(const Vertex& a, const Vertex& b) const;
    /// Finds what of a long segment the earth may leave to be seen. \return false for nothing
    bool leaveHiddenEnds(Segment& segment) const;
    void drawSegment(const DrawList::Line& line, std::size_t start, std::size_t end);
    void drawRoughly(const DrawList::Line& line, int width);
    /// A piece in full view, without the pixel at its end.
    void drawSteps(const Vertex& from, const Vertex& to, int width, std::uint32_t color);
    void touch(int left, int bottom, int right, int top);
    void fill(const Segment& segment);
    double opacity(const Segment& segment, double along, double across) const;
    double sight(const Segment& segment, double along) const;
    double pattern(const Segment& segment, double along, double across) const;

    Camera camera_;
    double pixelRatio_;
    QSize size_;
    QRect clip_{whole()};
    Quality quality_ = Quality::Smooth;
    double pixelsPerTangent_;
    double nearPlane_;
    halCore::Ecef eye_;  ///< where the earth is the unit sphere
    double eyeExcess_;
    std::vector<std::uint32_t> pixels_;
    FullTiles tiles_;         ///< of what drawSegment() draws
    std::uint32_t laid_ = 0;  ///< the colour that was drawn with
    std::uint32_t full_ = 0;  ///< what a pixel comes to that it is laid over again and again
    static constexpr int kNowhere = 1 << 28;
    int touchedLeft_ = kNowhere;
    int touchedBottom_ = kNowhere;
    int touchedRight_ = -kNowhere;
    int touchedTop_ = -kNowhere;
    std::vector<Vertex> vertices_;  ///< of the line that is being drawn
    std::size_t filled_ = 0;        ///< pixels that have been looked at for it
};

}  // namespace sandbox
