#pragma once

#include <QIcon>
#include <QTreeWidget>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace sandbox {

/// The tree of what is shown: every platform with the overlays that are attached to it, then the overlays
/// that stand on the earth. It only says what the user asked for.
class OverlayPanel : public QTreeWidget {
    Q_OBJECT

  public:
    struct PlatformRow {
        std::uint64_t id = 0;
        QString name;
        bool present = true;  ///< whether it is anywhere at the clock's time
    };
    struct OverlayRow {
        void* handle = nullptr;
        QString name;
        QString path;
        std::uint64_t platform = 0;  ///< that it is attached to, or 0
        bool shown = true;
        int messages = 0;  ///< what reading it had to say
    };
    struct ShapeRow {
        QString name;
        QIcon icon;
    };

    OverlayPanel();

    /// Shows these rows. What was selected or folded stays so.
    void setRows(const std::vector<PlatformRow>& platforms, const std::vector<OverlayRow>& overlays);
    /// Lists an overlay's shapes below it, in their order; see shapesWanted(). `more`: so many others are not
    /// listed.
    void setShapes(void* handle, const std::vector<ShapeRow>& shapes, std::size_t more);
    /// Unfolds an overlay and selects one of its shapes, or nothing if `handle` is null.
    void selectShape(void* handle, std::size_t shape);
    /// The row of an overlay's file, by its name; null when there is none or more than one.
    QTreeWidgetItem* findOverlay(const QString& name) const;

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
    void addOverlay(QTreeWidgetItem& item, const OverlayRow& row);
    QTreeWidgetItem* itemOf(void* handle) const;
};

}  // namespace sandbox
