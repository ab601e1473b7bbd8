#include "sandbox/OverlayPanel.h"

#include <QHeaderView>
#include <QSet>
#include <QSignalBlocker>
#include <QStyle>
#include <QTreeWidgetItemIterator>
#include <algorithm>
#include <map>

namespace sandbox {

namespace {

constexpr int kHandleRole = Qt::UserRole;
constexpr int kPlatformRole = Qt::UserRole + 1;
constexpr int kShapeRole = Qt::UserRole + 2;

quintptr keyOf(const void* handle) {
    return reinterpret_cast<quintptr>(handle);
}

quintptr overlayKey(const QTreeWidgetItem& item) {
    return item.data(0, kHandleRole).value<quintptr>();
}

/// Whether it stands for a shape; these have no handle of their own.
bool isShape(const QTreeWidgetItem& item) {
    return item.data(0, kShapeRole).toBool();
}

/// Null for a platform's row and for a shape's.
void* handleOf(const QTreeWidgetItem& item) {
    return reinterpret_cast<void*>(overlayKey(item));
}

std::uint64_t platformOf(const QTreeWidgetItem& item) {
    return item.data(0, kPlatformRole).toULongLong();
}

}  // namespace

OverlayPanel::OverlayPanel() {
    setHeaderHidden(true);
    setColumnCount(1);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        if (void* handle = handleOf(*item))
            emit overlayShownChanged(handle, item->checkState(0) == Qt::Checked);
    });
    connect(this, &QWidget::customContextMenuRequested, this, &OverlayPanel::openMenu);
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
        if (handleOf(*item) && item->childCount() == 0) emit shapesWanted(handleOf(*item));
    });
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (isShape(*item)) item = item->parent();
        if (void* handle = handleOf(*item))
            emit overlayActivated(handle);
        else
            emit platformActivated(platformOf(*item));
    });
}

void OverlayPanel::openMenu(const QPoint& position) {
    const QPoint place = viewport()->mapToGlobal(position);
    const QTreeWidgetItem* clicked = itemAt(position);
    if (clicked && isShape(*clicked)) clicked = clicked->parent();
    if (clicked && !handleOf(*clicked)) {
        emit platformMenuRequested(platformOf(*clicked), place);
        return;
    }
    std::vector<void*> handles;
    for (const QTreeWidgetItem* item : selectedItems()) {
        // A shape stands for its overlay.
        void* handle = handleOf(isShape(*item) ? *item->parent() : *item);
        if (handle && std::ranges::find(handles, handle) == handles.end()) handles.push_back(handle);
    }
    emit overlayMenuRequested(handles, place);
}

void OverlayPanel::addOverlay(QTreeWidgetItem& item, const OverlayRow& row) {
    item.setText(0, row.name);
    item.setData(0, kHandleRole, QVariant::fromValue(keyOf(row.handle)));
    item.setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    item.setCheckState(0, row.shown ? Qt::Checked : Qt::Unchecked);
    QString tip = row.path;
    if (row.messages > 0) {
        item.setIcon(0, style()->standardIcon(QStyle::SP_MessageBoxWarning));
        tip += QString("\n%1 message(s); see \"Show Text\" in its menu").arg(row.messages);
    }
    item.setToolTip(0, tip);
}

void OverlayPanel::setRows(const std::vector<PlatformRow>& platforms,
                           const std::vector<OverlayRow>& overlays) {
    const QSignalBlocker blocker(this);
    QSet<quintptr> selectedOverlays;
    QSet<std::uint64_t> selectedPlatforms;
    QSet<std::uint64_t> folded;
    QSet<quintptr> unfolded;
    for (QTreeWidgetItemIterator at(this); *at; ++at) {
        if ((*at)->isSelected() && handleOf(**at)) selectedOverlays.insert(overlayKey(**at));
        if ((*at)->isExpanded() && handleOf(**at)) unfolded.insert(overlayKey(**at));
        if (isShape(**at) || handleOf(**at)) continue;
        if ((*at)->isSelected()) selectedPlatforms.insert(platformOf(**at));
        if ((*at)->childCount() > 0 && !(*at)->isExpanded()) folded.insert(platformOf(**at));
    }
    clear();

    std::map<std::uint64_t, QTreeWidgetItem*> parents;
    for (const PlatformRow& row : platforms) {
        auto* item = new QTreeWidgetItem(this, {row.name});
        item->setData(0, kPlatformRole, QVariant::fromValue<qulonglong>(row.id));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        if (!row.present) item->setForeground(0, palette().color(QPalette::Disabled, QPalette::Text));
        item->setToolTip(0, row.present ? "Platform" : "Platform; not anywhere at this time");
        item->setSelected(selectedPlatforms.contains(row.id));
        parents[row.id] = item;
    }
    for (const OverlayRow& row : overlays) {
        const auto parent = parents.find(row.platform);
        auto* item =
            parent == parents.end() ? new QTreeWidgetItem(this) : new QTreeWidgetItem(parent->second);
        addOverlay(*item, row);
        item->setSelected(selectedOverlays.contains(keyOf(row.handle)));
    }
    for (const auto& [id, item] : parents) item->setExpanded(!folded.contains(id));
    for (const OverlayRow& row : overlays)
        if (unfolded.contains(keyOf(row.handle))) {
            emit shapesWanted(row.handle);
            itemOf(row.handle)->setExpanded(true);
        }
}

QTreeWidgetItem* OverlayPanel::itemOf(void* handle) const {
    for (QTreeWidgetItemIterator at(const_cast<OverlayPanel*>(this)); *at; ++at)
        if (handle && handleOf(**at) == handle) return *at;
    return nullptr;
}

void OverlayPanel::setShapes(void* handle, const std::vector<ShapeRow>& shapes, std::size_t more) {
    QTreeWidgetItem* overlay = itemOf(handle);
    if (!overlay) return;
    const QSignalBlocker blocker(this);
    qDeleteAll(overlay->takeChildren());
    for (const ShapeRow& row : shapes) {
        auto* item = new QTreeWidgetItem(overlay, {row.name});
        item->setData(0, kShapeRole, true);
        item->setIcon(0, row.icon);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    }
    if (more == 0) return;
    auto* rest = new QTreeWidgetItem(overlay, {QString("and %1 more").arg(more)});
    rest->setData(0, kShapeRole, true);
    rest->setFlags(Qt::ItemIsEnabled);
}

void OverlayPanel::selectShape(void* handle, std::size_t shape) {
    clearSelection();
    QTreeWidgetItem* overlay = itemOf(handle);
    if (!overlay) return;
    overlay->setExpanded(true);
    QTreeWidgetItem* item = overlay->child(static_cast<int>(shape));
    if (!item || !(item->flags() & Qt::ItemIsSelectable)) item = overlay;
    setCurrentItem(item);
    scrollToItem(item);
}

QTreeWidgetItem* OverlayPanel::findOverlay(const QString& name) const {
    QTreeWidgetItem* found = nullptr;
    for (QTreeWidgetItem* item : findItems(name, Qt::MatchExactly | Qt::MatchRecursive)) {
        if (!handleOf(*item)) continue;
        if (found) return nullptr;
        found = item;
    }
    return found;
}

}  // namespace sandbox
