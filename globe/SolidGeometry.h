#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "common/Work.h"
#include "geo/GeodesicPath.h"
#include "globe/DrawList.h"

namespace sandbox {

/// The stroke and fill of a shape.
struct ShapeStyle {
    Rgba lineColor;
    Rgba fillColor;
    float lineWidth = 1.0F;
    Stroke stroke = Stroke::Solid;
    bool outlined = true;
    bool filled = false;
};

using halCore::BodyFrame;
using halCore::GeodeticPath;

/// Fills a ring that lies level; also the same ring at another altitude. \param mesh an empty one
using RingFill = std::function<Work(const GeodeticPath& ring, DrawList::Mesh& mesh)>;

// `tolerance` in metres: how far straight pieces may be from the true curves of round bodies and lids.

/// An ellipsoid about a centre with half axes to the right, forward and up; `dome` = its upper half, or its
/// lower one when the half axis upwards is negative. The other axes' signs mean nothing.
void appendEllipsoid(const halCore::Vec3& center, const BodyFrame& frame,
                     const std::array<double, 3>& halfAxes, bool dome, const ShapeStyle& style,
                     double tolerance, DrawList& out);

// Rings of bodies are level and run counter-clockwise as seen from above.

/// The body between a ring and the same ring raised by `height` (a prism): walls, lid and floor. Edges
/// stand up at the given points of the ring.
void appendPrism(const GeodeticPath& ring, double height, const RingFill& fill,
                 const std::vector<std::size_t>& edges, const ShapeStyle& style, DrawList& out);

/// A cone with its rim at the ring and its tip `height` above the centre.
void appendCone(const halCore::Vec3& center, const GeodeticPath& ring, double height, const ShapeStyle& style,
                double tolerance, DrawList& out);

/// The curtain between two paths with the same number of points; open or closed.
Work appendCurtain(const std::vector<halCore::Ecef>& path, const std::vector<halCore::Ecef>& other,
                   bool closed, Rgba color, DrawList& out);

}  // namespace sandbox
