#pragma once

#include <QTreeView>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "sandbox/OverlayRows.h"

namespace sandbox {

/// The tree of what is shown; see OverlayRows. It only says what the user asked for.
class OverlayPanel : public QTreeView {
    Q_OBJECT

  public:
    /// \param scenario whose platforms are shown
    explicit OverlayPanel(const Scenario& scenario);
    const OverlayRows& rows() const { return rows_; }

    /// Shows the scenario's platforms and these overlays. What was selected or folded stays so.
    void refresh(std::vector<OverlayRows::Overlay> overlays);
    /// Lists an overlay's shapes below it, in their order; see shapesWanted(). `more`: so many others are not
    /// listed.
    void setShapes(void* handle, std::vector<OverlayRows::Shape> shapes, std::size_t more);
    /// Unfolds an overlay and selects one of its shapes, or nothing if `handle` is null.
    void selectShape(void* handle, std::size_t shape);
    /// The row of an overlay's file, by its name; invalid when there is none or more than one.
    QModelIndex findOverlay(const QString& name) const;

  signals:
    void overlayShownChanged(void* handle, bool shown);
    void overlayMenuRequested(const std::vector<void*>& handles, const QPoint& globalPosition);
    void platformMenuRequested(std::uint64_t id, const QPoint& globalPosition);
    /// An overlay was unfolded whose shapes have not been listed.
    void shapesWanted(void* handle);
    /// By a double click.
    void overlayActivated(void* handle);
    void platformActivated(std::uint64_t id);

  private:
    void openMenu(const QPoint& position);

    OverlayRows rows_;
};

}  // namespace sandbox
