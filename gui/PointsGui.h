#pragma once

#include "gui/PointEditGui.h"
#include "model/PointsContainer.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

/// The points of a shape, one at a time: rows of a panel. Behind the last point stands "New Point", which
/// becomes a point of the shape as soon as one of its coordinates is typed.
///
/// It edits the container itself, and shows nothing anew after that on its own: the shape tells it
/// (refreshPoint).
class PointsGui final : public PanelPart {
  public:
    /// \param closed whether the last point is joined to the first
    PointsGui(PanelBody& panel, bool closed);
    ~PointsGui() { callbacks_.disconnect(); }
    PointsGui(const PointsGui&) = delete;
    PointsGui& operator=(const PointsGui&) = delete;

    /// Shows the container's points: the one that is in view already, or the first one of a new container,
    /// which must outlive this or be replaced.
    void setPoints(PointsContainer& points);
    /// Goes to a point that was changed, and shows it and the number of points.
    void refreshPoint(unsigned long index);
    unsigned long shownPoint() const { return index_; }
    /// Takes over what was typed. \return whether anything was
    bool takeEdit();
    void setPointConverter(const PointConverter* converter) override { converter_ = converter; }

    int onCmdPrevious(PIObject* sender, void* data);
    int onCmdNext(PIObject* sender, void* data);
    int onCmdInsert(PIObject* sender, void* data);
    int onCmdDelete(PIObject* sender, void* data);

  private:
    void show_();
    /// What "New Point" starts from: an attached shape's reference, else the last point, else the ground in
    /// view.
    halCore::Vec3 newPoint_() const;
    /// Where a point before the current one is inserted: in the middle of the side.
    halCore::Vec3 inserted_() const;

    PointsContainer* points_ = nullptr;
    unsigned long index_ = 0;
    unsigned long shownIndex_ = 0;
    bool closed_;
    const PointConverter* converter_ = nullptr;
    CallbackList<PointsGui> callbacks_{this};
    PIGUI::PILabel caption_;
    PIGUI::PIHorizontalFrame buttons_;
    PIGUI::PIButton insert_;
    PIGUI::PIButton delete_;
    PIGUI::PILabel filler_;
    PIGUI::PILabel name_;
    PIGUI::PIHorizontalFrame steps_;
    PIGUI::PIButton previous_;
    PIGUI::PIButton next_;
    PIGUI::PILabel counter_;
    PIGUI::PILabel counterFiller_;
    PointEditGui point_;
};

}  // namespace OverlayEditor
