#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sandbox/view/Ecef.h"

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
/// Positions are earth-centred metres. Within an overlay fills come first, then lines and points in the
/// order of the shapes, then labels.
///
/// Straight pieces between points of the surface dip below it. They are drawn nevertheless: what is not
/// `solid` is hidden beyond the horizon only. What is `solid` is cut off where it enters the ground.
struct DrawList {
    /// A polyline. A single point makes a round dot with the width as its diameter.
    struct Line {
        std::vector<Ecef> points;
        Rgba color;
        float width = 1.0F;  ///< widget pixels
        Stroke stroke = Stroke::Solid;
        bool closed = false;  ///< the last point joins the first; the first is not repeated
        bool solid = false;
    };
    /// Triangles, three indices each.
    struct Mesh {
        std::vector<Ecef> vertices;
        std::vector<std::uint32_t> triangles;
        Rgba color;
        bool solid = false;  ///< lit, outer faces only (counter-clockwise), hides other things by depth
    };
    struct Label {
        Ecef position;
        std::string text;  ///< UTF-8, may hold line breaks
        std::string fontName;
        int pixelSize = 15;
        Rgba color;
        Rgba outlineColor{0, 0, 0, 255};
        int outlineWidth = 0;  ///< pixels
    };

    std::vector<Mesh> meshes;
    std::vector<Line> lines;
    std::vector<Label> labels;
};

}  // namespace sandbox
