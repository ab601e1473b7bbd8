#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

namespace sandbox {

class Scenario;

/// The rows of the overlay panel: every platform with the overlays that are attached to it, then the overlays
/// that stand on the earth; below an overlay the shapes that it was given. Of very many platforms the first
/// ones have a row each. What is written on a platform's row is looked up when it is shown.
class OverlayRows final : public QAbstractItemModel {
    Q_OBJECT

  public:
    struct Overlay {
        void* handle = nullptr;
        QString name;
        QString path;
        std::uint64_t platform = 0;  ///< that it is attached to, or 0
        bool shown = true;
        int messages = 0;  ///< what reading it had to say
    };
    struct Shape {
        QString name;
        QIcon icon;
    };
    static constexpr std::size_t kMostPlatforms = 100'000;

    explicit OverlayRows(const Scenario& scenario);

    /// Takes the scenario's platforms and these overlays. What was selected or folded stays so; shapes go
    /// with their overlay.
    /// \return rows that have something below them for the first time
    QModelIndexList update(std::vector<Overlay> overlays);
    /// What is below an overlay, in this order, and how many others there are that have no row.
    void setShapes(void* handle, std::vector<Shape> shapes, std::size_t more);

    QModelIndex indexOf(void* overlay) const;
    /// All overlays' rows, in their order.
    QModelIndexList overlays() const;
    /// The overlay of a row, or of the shape of a row; null for others.
    void* overlayOf(const QModelIndex& index) const;
    /// 0 for what is not a platform's row.
    std::uint64_t platformOf(const QModelIndex& index) const;
    bool isShape(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return 1; }
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  signals:
    void shownWanted(void* overlay, bool shown);

  private:
    struct Entry {
        Overlay overlay;
        std::vector<Shape> shapes;
        std::size_t more = 0;
        int row = 0;
    };
    /// What a row is, in the lowest bits of its index' number; the others tell which one, by the platform's
    /// number or by the overlay's handle.
    enum class Kind : std::uintptr_t { Platform, Overlay, Shape, More };

    static Kind kindOf(const QModelIndex& index);
    QModelIndex indexOf(const Entry& entry) const;
    QModelIndex again(const QModelIndex& before) const;
    const Entry* entryOf(const QModelIndex& index) const;
    QVariant platformData(const QModelIndex& index, int role) const;
    QVariant overlayData(const Overlay& overlay, int role) const;
    std::size_t unlisted() const;

    void takePlatforms();

    const Scenario& scenario_;
    /// Since the last update: many may come, each of them last.
    std::vector<std::uint64_t> added_;
    bool removed_ = false;
    std::vector<std::uint64_t> platforms_;  ///< that have a row, by their numbers
    std::size_t allPlatforms_ = 0;
    std::map<std::uintptr_t, Entry> overlays_;  ///< by their handles
    /// Of each platform that has a row; 0 for the others.
    std::unordered_map<std::uint64_t, std::vector<std::uintptr_t>> below_;
};

}  // namespace sandbox
