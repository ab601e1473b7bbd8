#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "geo/Ecef.h"
#include "globe/PictureFile.h"

namespace sandbox {

/// Four bytes of colour, not premultiplied.
struct Rgba {
    std::uint8_t r = 255;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 255;
    friend bool operator==(const Rgba&, const Rgba&) = default;
};

enum class Stroke : std::uint8_t { Solid, Dashed, Dotted };

/// What to draw of one overlay, worked out from its shapes and independent of OpenGL and of the camera.
/// Positions are earth-centred metres. Within an overlay pictures come first, then fills, then lines and
/// points in the order of the shapes, then labels.
///
/// Straight pieces between points of the surface dip below it. They are drawn nevertheless: what is not
/// `solid` is hidden beyond the horizon only. What is `solid` is cut off where it enters the ground.
struct DrawList {
    /// A polyline. A single point makes a round dot with the width as its diameter.
    struct Line {
        std::vector<halCore::Ecef> points;
        Rgba color;
        float width = 1.0F;  ///< widget pixels
        Stroke stroke = Stroke::Solid;
        bool closed = false;  ///< the last point joins the first; the first is not repeated
        bool solid = false;
        bool overBodies = false;  ///< nothing but the earth hides it
        // Of a piece of a longer line: its first point, or its last one, is but that of a neighbour's
        // segment.
        bool leads = false;
        bool trails = false;
        double metres = 0.0;  ///< along the longer line, at the first point
    };
    /// Triangles, three indices each.
    struct Mesh {
        std::vector<halCore::Ecef> vertices;
        std::vector<std::uint32_t> triangles;
        std::vector<halCore::Ecef>
            normals;  ///< of a round solid's vertices, unit vectors outwards; none = flat faces
        Rgba color;
        bool solid = false;       ///< lit, outer faces only (counter-clockwise), hides other things by depth
        bool overBodies = false;  ///< of what is not solid: nothing but the earth hides it
        bool tangled = false;     ///< filled in rows: its line crosses itself too often
    };
    /// A picture on the ground. The file's path is still as the shape says it.
    struct Picture {
        std::vector<halCore::Ecef> vertices;
        std::vector<std::array<float, 2>> places;  ///< of the vertices: 0 to 1 from its left, from its top
        std::vector<std::uint32_t> triangles;
        PictureFile file;
        Line border;  ///< drawn in its place when it cannot be read
    };
    struct Label {
        halCore::Ecef position;
        std::string text;  ///< UTF-8, may hold line breaks
        std::string fontName;
        int pixelSize = 15;
        Rgba color;
        Rgba outlineColor{0, 0, 0, 255};
        int outlineWidth = 0;   ///< pixels
        double priority = 0.0;  ///< where labels overlap, those with the highest remain
        PictureFile icon;       ///< empty = none; like a picture's file
    };

    std::vector<Picture> pictures;
    std::vector<Mesh> meshes;
    std::vector<Line> lines;
    std::vector<Label> labels;
};

}  // namespace sandbox
