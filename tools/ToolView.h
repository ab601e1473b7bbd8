#pragma once

#include <cstddef>
#include <vector>

#include "model/PlacedPoint.h"
#include "tools/PUDrawLine.h"
#include "tools/PUDrawPath.h"
#include "tools/PUDrawPoint.h"
#include "tools/PUDrawPoints.h"
#include "tools/ViewProjection.h"

namespace OverlayEditor {

/// What a tool wants drawn in one frame, from the back to the front. It refers to the tool's own things.
class ToolPicture {
  public:
    struct Point {
        const PluginUtils::PUDrawPoint* point;
        halCore::Ecef ecef;
    };

    void clear() {
        lists_.clear();
        points_.clear();
        lines_.clear();
        paths_.clear();
    }
    /// Those of them that have a place, behind all others; nothing is copied.
    void add(const PluginUtils::PUDrawPoints& points) {
        if (points.isShown()) lists_.push_back(&points);
    }
    /// Hidden points and lines are left out.
    void add(const PluginUtils::PUDrawPoint& point) { add(point, point.ecef()); }
    /// The same for a point that is drawn elsewhere than at its position.
    void add(const PluginUtils::PUDrawPoint& point, const halCore::Ecef& ecef) {
        if (point.isShown()) points_.push_back({&point, ecef});
    }
    void add(const PluginUtils::PUDrawLine& line) {
        if (line.isShown()) lines_.push_back(&line);
    }

    void add(const PluginUtils::PUDrawPath& path) { paths_.push_back(&path); }

    template <typename Visit>
    void eachPoint(Visit visit) const {
        for (const auto* const list : lists_)
            for (std::size_t i = 0; i < list->size(); ++i)
                if (const auto& point = list->point(i); isPlace(point.getPosition()))
                    visit(Point{&point, point.ecef()});
        for (const Point& point : points_) visit(point);
    }
    const std::vector<const PluginUtils::PUDrawLine*>& lines() const { return lines_; }
    const std::vector<const PluginUtils::PUDrawPath*>& paths() const { return paths_; }
    bool isEmpty() const { return lists_.empty() && points_.empty() && lines_.empty() && paths_.empty(); }

  private:
    std::vector<const PluginUtils::PUDrawPoints*> lists_;
    std::vector<Point> points_;
    std::vector<const PluginUtils::PUDrawLine*> lines_;
    std::vector<const PluginUtils::PUDrawPath*> paths_;
};

/// The view as the tools see it: how it looks in this frame, and where their picture goes. The host's
/// OpenGL view unless another one is installed.
class ToolView {
  public:
    virtual ~ToolView() = default;

    /// In the refresh hook: the view as it is now. Not valid when nothing can be drawn.
    virtual ViewProjection capture(int width, int height) = 0;
    /// In the refresh hook, with what capture answered in it.
    virtual void paint(const ViewProjection& view, const ToolPicture& picture) = 0;
    /// A pixel of a mouse event and the ground position that the host has there; views learn from it how
    /// many device pixels such a pixel has.
    virtual void sawCursor(const ViewProjection& view, int x, int y, const halCore::Vec3& ground) = 0;

    static ToolView& current();
    /// Not owned; null for the host's.
    static void install(ToolView* view);
};

/// Frees what the drawing tools hold in OpenGL: fonts. Needs a current context; to be called at close.
/// Drawing again afterwards makes it anew.
void releaseGraphics();

}  // namespace OverlayEditor
