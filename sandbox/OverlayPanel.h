#pragma once

#include <QTreeWidget>
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

    OverlayPanel();

    /// Shows these rows. What was selected or folded stays so.
    void setRows(const std::vector<PlatformRow>& platforms, const std::vector<OverlayRow>& overlays);
    /// The row of an overlay's file, by its name; null when there is none or more than one.
    QTreeWidgetItem* findOverlay(const QString& name) const;

  signals:
    void overlayShownChanged(void* handle, bool shown);
    void overlayMenuRequested(const std::vector<void*>& handles, const QPoint& globalPosition);
    void platformMenuRequested(std::uint64_t id, const QPoint& globalPosition);
    /// By a double click.
    void overlayActivated(void* handle);
    void platformActivated(std::uint64_t id);

  private:
    void openMenu(const QPoint& position);
    void addOverlay(QTreeWidgetItem& item, const OverlayRow& row);
};

}  // namespace sandbox
