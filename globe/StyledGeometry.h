#pragma once

#include <optional>
#include <vector>

#include "common/Vec3.h"
#include "common/Work.h"
#include "format/Placement.h"
#include "format/ZelShapes.h"
#include "geo/Ecef.h"
#include "geo/GeodesicPath.h"
#include "globe/DrawList.h"
#include "globe/SolidGeometry.h"

namespace sandbox {

using halCore::ZEL::Placement;

// What the geometry of all kinds of shapes is made of: lines and areas in a shape's style, on the ground or
// at an altitude, with what their extrusion adds.

Rgba rgba(const halCore::ZEL::Color& color);
ShapeStyle styleOf(const halCore::ZEL::FillableShape& shape);

/// How long straight pieces of a way of so many metres may be.
double stepFor(double meters, double tolerance);

void addLine(std::vector<halCore::Ecef> places, bool closed, const ShapeStyle& style, DrawList& out);
/// The line itself, and that at the other end of what is extruded, unless it ends on the ground.
void addOutline(const GeodeticPath& path, bool closed, const Placement& placement, const ShapeStyle& style,
                DrawList& out);
/// The line from an extruded point to its other end.
void addStem(const halCore::Vec3& point, const Placement& placement, Rgba color, DrawList& out);

/// An area or a line; when it is extruded, with its curtain, and with its other end if that is not on the
/// ground. \param path may lack its places; or its points, where it is a line on the ground \param fill none:
/// the area stays empty
Work addRing(halCore::PlacedPath path, bool closed, const RingFill& fill, const Placement& placement,
             const ShapeStyle& style, DrawList& out);
/// The same at once, filled by fillRing() with its `middle`.
void addRing(const GeodeticPath& path, bool closed, const std::optional<halCore::Vec3>& middle,
             const Placement& placement, const ShapeStyle& style, DrawList& out);
/// \param share that fillRing() takes
RingFill filledAbout(const std::optional<halCore::Vec3>& middle, const Placement& placement,
                     const ShapeStyle& style, double share = 1.0);

}  // namespace sandbox
