#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "format/Placement.h"

namespace halCore::ZEL {
class ZelShape;
}

namespace sandbox {

using OverlayReference = halCore::ZEL::Reference;

/// The overlays that the view shows, drawn in the order in which they were added. Each change reports
/// itself through the change callback; the view redraws by itself. Geometry is rebuilt for changed
/// entries only, when the next frame is drawn.
class OverlayScene {
  public:
    using Id = std::uint64_t;
    using Shapes = std::vector<std::shared_ptr<halCore::ZEL::ZelShape>>;

    struct Entry {
        Id id = 0;
        std::string directory;  ///< from which the shapes count the names of picture files
        Shapes shapes;
        std::optional<OverlayReference> reference;
        bool shown = true;
        std::uint64_t revision = 0;  ///< grows whenever the geometry may differ
    };

    /// Adds an entry on top and gives its id, never 0. The shapes must not be changed afterwards; replace
    /// them. Without a reference, relative shapes that name no position of their own are not drawn.
    Id add(Shapes shapes, std::optional<OverlayReference> reference = std::nullopt, bool shown = true,
           std::string directory = {});
    /// The following do nothing for an unknown id, and report no change when nothing changed.
    void replace(Id id, Shapes shapes);
    void setReference(Id id, std::optional<OverlayReference> reference);
    void setShown(Id id, bool shown);
    void remove(Id id);
    void clear();

    bool contains(Id id) const { return entries_.contains(id); }
    const Entry* find(Id id) const;
    /// In drawing order, which is that of the ids.
    const std::map<Id, Entry>& entries() const { return entries_; }

    /// Another number after each change, and in each scene.
    std::uint64_t changes() const { return forgotten_ + recent_.size(); }
    /// The entries that were added, changed or removed since that was the number, in that order, some of them
    /// repeatedly; none when that is not known any more. Valid until the next change.
    std::optional<std::span<const Id>> changedSince(std::uint64_t changes) const;

    void setChangeCallback(std::function<void()> callback) { changed_ = std::move(callback); }

  private:
    /// Where to begin to count, so that no two scenes have the same numbers: one may lie where another was.
    static std::uint64_t ownNumbers();
    void report(Id id);
    /// \param count of the earliest ones that are known
    void forgetChanges(std::size_t count);

    std::map<Id, Entry> entries_;
    std::vector<Id> recent_;                  ///< what the latest changes were about
    std::uint64_t forgotten_ = ownNumbers();  ///< changes before those
    std::size_t mostEntries_ = 0;             ///< since some were forgotten
    Id lastId_ = 0;
    std::uint64_t lastRevision_ = ownNumbers();
    std::function<void()> changed_;
};

}  // namespace sandbox
