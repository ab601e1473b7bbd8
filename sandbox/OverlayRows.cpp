#include "sandbox/OverlayRows.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <algorithm>
#include <utility>

#include "sandbox/scenario/Scenario.h"
#include "sandbox/widgets/Caption.h"

namespace sandbox {

namespace {

constexpr std::uintptr_t kKindBits = 2;
constexpr std::uintptr_t kKindMask = (std::uintptr_t{1} << kKindBits) - 1;

std::uintptr_t keyOf(const void* handle) {
    return reinterpret_cast<std::uintptr_t>(handle);
}

std::uintptr_t whichOf(const QModelIndex& index) {
    return index.internalId() >> kKindBits;
}

template <typename Kind>
std::uintptr_t idOf(Kind kind, std::uintptr_t which) {
    return which << kKindBits | static_cast<std::uintptr_t>(kind);
}

}  // namespace

OverlayRows::Kind OverlayRows::kindOf(const QModelIndex& index) {
    return static_cast<Kind>(index.internalId() & kKindMask);
}

std::size_t OverlayRows::unlisted() const {
    return allPlatforms_ - platforms_.size();
}

OverlayRows::OverlayRows(const Scenario& scenario) : scenario_(scenario) {
    connect(&scenario, &Scenario::platformAdded, this, [this](std::uint64_t id) { added_.push_back(id); });
    connect(&scenario, &Scenario::platformRemoved, this, [this] { removed_ = true; });
}

void OverlayRows::takePlatforms() {
    const auto add = [this](std::uint64_t id) {
        if (platforms_.size() < kMostPlatforms) platforms_.push_back(id);
    };
    const std::vector<std::uint64_t> added = std::exchange(added_, {});
    if (!std::exchange(removed_, false)) {
        std::ranges::for_each(added, add);
        return;
    }
    platforms_.clear();
    for (auto at = scenario_.platforms().begin();
         at != scenario_.platforms().end() && platforms_.size() < kMostPlatforms; ++at)
        add(at->first);
}

QModelIndexList OverlayRows::update(std::vector<Overlay> overlays) {
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();

    allPlatforms_ = scenario_.platforms().size();
    takePlatforms();
    auto shapesBefore = std::exchange(overlays_, {});
    const auto belowBefore = std::exchange(below_, {});
    for (Overlay& overlay : overlays) {
        const std::uintptr_t key = keyOf(overlay.handle);
        const bool hasRow = std::ranges::binary_search(platforms_, overlay.platform);
        auto& siblings = below_[hasRow ? overlay.platform : 0];
        Entry& entry = overlays_[key];
        if (const auto old = shapesBefore.find(key); old != shapesBefore.end())
            entry = std::move(old->second);
        entry.overlay = std::move(overlay);
        entry.row = static_cast<int>(siblings.size());
        siblings.push_back(key);
    }
    if (const std::size_t first = platforms_.size() + (unlisted() > 0 ? 1 : 0); first > 0)
        for (const std::uintptr_t key : below_[0]) overlays_[key].row += static_cast<int>(first);

    QModelIndexList after;
    for (const QModelIndex& index : before) after << again(index);
    changePersistentIndexList(before, after);
    emit layoutChanged();

    QModelIndexList fresh;
    for (const auto& [platform, siblings] : below_)
        if (platform != 0 && !belowBefore.contains(platform))
            fresh << parent(indexOf(overlays_.at(siblings.front())));
    return fresh;
}

/// Where a row of before is now; invalid when it is gone.
QModelIndex OverlayRows::again(const QModelIndex& before) const {
    const std::uintptr_t which = whichOf(before);
    const auto at = overlays_.find(which);
    switch (kindOf(before)) {
        case Kind::Platform: {
            const auto found = std::ranges::lower_bound(platforms_, which);
            if (found == platforms_.end() || *found != which) return {};
            return createIndex(static_cast<int>(found - platforms_.begin()), 0, before.internalId());
        }
        case Kind::Overlay:
            return at == overlays_.end() ? QModelIndex() : indexOf(at->second);
        case Kind::Shape:
            return at == overlays_.end() ? QModelIndex() : before;
        case Kind::More:
            break;
    }
    return {};
}

void OverlayRows::setShapes(void* handle, std::vector<Shape> shapes, std::size_t more) {
    const auto at = overlays_.find(keyOf(handle));
    if (at == overlays_.end()) return;
    Entry& entry = at->second;
    const QModelIndex parent = indexOf(entry);
    if (const int count = rowCount(parent); count > 0) {
        beginRemoveRows(parent, 0, count - 1);
        entry.shapes.clear();
        entry.more = 0;
        endRemoveRows();
    }
    const std::size_t count = shapes.size() + (more > 0 ? 1 : 0);
    if (count == 0) return;
    beginInsertRows(parent, 0, static_cast<int>(count) - 1);
    entry.shapes = std::move(shapes);
    entry.more = more;
    endInsertRows();
}

QModelIndex OverlayRows::indexOf(void* overlay) const {
    const auto at = overlays_.find(keyOf(overlay));
    return at == overlays_.end() ? QModelIndex() : indexOf(at->second);
}

QModelIndex OverlayRows::indexOf(const Entry& entry) const {
    return createIndex(entry.row, 0, idOf(Kind::Overlay, keyOf(entry.overlay.handle)));
}

QModelIndexList OverlayRows::overlays() const {
    QModelIndexList all;
    for (const auto& [key, entry] : overlays_) all << indexOf(entry);
    return all;
}

const OverlayRows::Entry* OverlayRows::entryOf(const QModelIndex& index) const {
    if (!index.isValid() || (kindOf(index) != Kind::Overlay && kindOf(index) != Kind::Shape)) return nullptr;
    const auto at = overlays_.find(whichOf(index));
    return at == overlays_.end() ? nullptr : &at->second;
}

void* OverlayRows::overlayOf(const QModelIndex& index) const {
    const Entry* entry = entryOf(index);
    return entry ? entry->overlay.handle : nullptr;
}

std::uint64_t OverlayRows::platformOf(const QModelIndex& index) const {
    return index.isValid() && kindOf(index) == Kind::Platform ? whichOf(index) : 0;
}

bool OverlayRows::isShape(const QModelIndex& index) const {
    return index.isValid() && kindOf(index) == Kind::Shape;
}

QModelIndex OverlayRows::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0 || row >= rowCount(parent)) return {};
    const auto at = static_cast<std::size_t>(row);
    if (parent.isValid()) {
        if (kindOf(parent) == Kind::Overlay) return createIndex(row, 0, idOf(Kind::Shape, whichOf(parent)));
        return indexOf(overlays_.at(below_.at(whichOf(parent))[at]));
    }
    if (at < platforms_.size()) return createIndex(row, 0, idOf(Kind::Platform, platforms_[at]));
    const std::size_t behind = at - platforms_.size();
    const std::size_t more = unlisted() > 0 ? 1 : 0;
    if (behind < more) return createIndex(row, 0, idOf(Kind::More, 0));
    return indexOf(overlays_.at(below_.at(0)[behind - more]));
}

QModelIndex OverlayRows::parent(const QModelIndex& child) const {
    const Entry* entry = entryOf(child);
    if (!entry) return {};
    if (kindOf(child) == Kind::Shape) return indexOf(*entry);
    const std::uint64_t platform = entry->overlay.platform;
    const auto at = std::ranges::lower_bound(platforms_, platform);
    if (at == platforms_.end() || *at != platform) return {};
    return createIndex(static_cast<int>(at - platforms_.begin()), 0, idOf(Kind::Platform, platform));
}

int OverlayRows::rowCount(const QModelIndex& parent) const {
    const auto countBelow = [this](std::uint64_t platform) {
        const auto at = below_.find(platform);
        return at == below_.end() ? 0 : at->second.size();
    };
    std::size_t count = 0;
    if (!parent.isValid())
        count = platforms_.size() + (unlisted() > 0 ? 1 : 0) + countBelow(0);
    else if (kindOf(parent) == Kind::Platform)
        count = countBelow(whichOf(parent));
    else if (const Entry* entry = entryOf(parent); entry && kindOf(parent) == Kind::Overlay)
        count = entry->shapes.size() + (entry->more > 0 ? 1 : 0);
    return static_cast<int>(count);
}

bool OverlayRows::hasChildren(const QModelIndex& parent) const {
    // An overlay's shapes are looked up when somebody unfolds it.
    return (parent.isValid() && kindOf(parent) == Kind::Overlay) || rowCount(parent) > 0;
}

Qt::ItemFlags OverlayRows::flags(const QModelIndex& index) const {
    if (!index.isValid()) return {};
    const Entry* entry = entryOf(index);
    const bool isMore =
        kindOf(index) == Kind::More ||
        (entry && isShape(index) && static_cast<std::size_t>(index.row()) >= entry->shapes.size());
    if (isMore) return Qt::ItemIsEnabled;
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return kindOf(index) == Kind::Overlay ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant OverlayRows::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const auto more = [role](std::size_t count) {
        return role == Qt::DisplayRole ? QVariant(QString("and %1 more").arg(count)) : QVariant();
    };
    if (kindOf(index) == Kind::More) return more(unlisted());
    const Entry* entry = entryOf(index);
    if (!entry) return platformData(index, role);
    if (!isShape(index)) return overlayData(entry->overlay, role);
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= entry->shapes.size()) return more(entry->more);
    if (role == Qt::DisplayRole) return entry->shapes[row].name;
    if (role == Qt::DecorationRole) return entry->shapes[row].icon;
    return {};
}

QVariant OverlayRows::platformData(const QModelIndex& index, int role) const {
    const Scenario::Platform* platform = scenario_.find(whichOf(index));
    if (!platform) return {};
    if (role == Qt::DisplayRole) return Caption::inOneLine(QString::fromStdString(platform->name));
    if (role != Qt::ToolTipRole && role != Qt::ForegroundRole) return {};
    const bool present = platform->track.at(scenario_.time()).has_value();
    if (role == Qt::ToolTipRole) return present ? "Platform" : "Platform; not anywhere at this time";
    return present ? QVariant() : QApplication::palette().color(QPalette::Disabled, QPalette::Text);
}

QVariant OverlayRows::overlayData(const Overlay& overlay, int role) const {
    switch (role) {
        case Qt::DisplayRole:
            return overlay.name;
        case Qt::CheckStateRole:
            return overlay.shown ? Qt::Checked : Qt::Unchecked;
        case Qt::DecorationRole:
            if (overlay.messages > 0)
                return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
            return {};
        case Qt::ToolTipRole:
            if (overlay.messages > 0)
                return overlay.path +
                       QString("\n%1 message(s); see \"Show Text\" in its menu").arg(overlay.messages);
            return overlay.path;
        default:
            return {};
    }
}

bool OverlayRows::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || kindOf(index) != Kind::Overlay) return false;
    if (void* overlay = overlayOf(index)) emit shownWanted(overlay, value.toInt() == Qt::Checked);
    return true;
}

}  // namespace sandbox
