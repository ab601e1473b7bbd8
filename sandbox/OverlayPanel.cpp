#include "sandbox/OverlayPanel.h"

#include <QItemSelectionModel>
#include <algorithm>
#include <utility>

namespace sandbox {

OverlayPanel::OverlayPanel(const Scenario& scenario) : rows_(scenario) {
    setModel(&rows_);
    setHeaderHidden(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true);
    connect(&rows_, &OverlayRows::shownWanted, this, &OverlayPanel::overlayShownChanged);
    connect(this, &QWidget::customContextMenuRequested, this, &OverlayPanel::openMenu);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        void* const handle = rows_.overlayOf(index);
        if (handle && rows_.rowCount(index) == 0) emit shapesWanted(handle);
    });
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        if (void* const handle = rows_.overlayOf(index))
            emit overlayActivated(handle);
        else if (const std::uint64_t platform = rows_.platformOf(index); platform != 0)
            emit platformActivated(platform);
    });
}

void OverlayPanel::openMenu(const QPoint& position) {
    const QPoint place = viewport()->mapToGlobal(position);
    if (const std::uint64_t platform = rows_.platformOf(indexAt(position)); platform != 0) {
        emit platformMenuRequested(platform, place);
        return;
    }
    std::vector<void*> handles;
    // A shape stands for its overlay.
    for (const QModelIndex& index : selectedIndexes())
        if (void* const handle = rows_.overlayOf(index);
            handle && std::ranges::find(handles, handle) == handles.end())
            handles.push_back(handle);
    emit overlayMenuRequested(handles, place);
}

void OverlayPanel::refresh(std::vector<OverlayRows::Overlay> overlays) {
    for (const QModelIndex& fresh : rows_.update(std::move(overlays))) expand(fresh);
    for (const QModelIndex& overlay : rows_.overlays())
        if (isExpanded(overlay)) emit shapesWanted(rows_.overlayOf(overlay));
}

void OverlayPanel::setShapes(void* handle, std::vector<OverlayRows::Shape> shapes, std::size_t more) {
    rows_.setShapes(handle, std::move(shapes), more);
}

void OverlayPanel::selectShape(void* handle, std::size_t shape) {
    clearSelection();
    const QModelIndex overlay = rows_.indexOf(handle);
    if (!overlay.isValid()) return;
    expand(overlay);
    QModelIndex index = rows_.index(static_cast<int>(shape), 0, overlay);
    if (!(index.flags() & Qt::ItemIsSelectable)) index = overlay;
    setCurrentIndex(index);
    scrollTo(index);
}

QModelIndex OverlayPanel::findOverlay(const QString& name) const {
    QModelIndex found;
    for (const QModelIndex& index : rows_.overlays()) {
        if (index.data().toString() != name) continue;
        if (found.isValid()) return {};
        found = index;
    }
    return found;
}

}  // namespace sandbox
