#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "common/Work.h"
#include "globe/BoundingBox.h"
#include "globe/ChunkGeometry.h"
#include "globe/DetailBudget.h"
#include "globe/DetailChoice.h"
#include "globe/DrawList.h"
#include "globe/OverlayScene.h"

namespace sandbox {

struct ChunkedOverlay;

/// Some of an entry's shapes that follow each other in drawing order, with their geometry in the levels of
/// detail that were needed of late.
struct OverlayChunk {
    ChunkedOverlay* overlay;
    std::uint32_t first;  ///< of the overlay's shapes in drawing order
    std::uint32_t count;
    static constexpr std::size_t kRoughly = kTolerances.size();  ///< in place of a level
    static constexpr std::size_t kNowhere = kRoughly + 1;
    std::size_t boundsLevel = kNowhere;  ///< the level that the bounds are from
    BoundingBox bounds{};
    float pieces = kUnknown;  ///< its share of them: what it was at first it is in each detail
    static constexpr float kUnknown = -1.0F;
    /// That in use and, once it has been built, the next finer and coarser one.
    std::array<std::unique_ptr<ChunkGeometry>, 3> levels{};
    std::vector<DrawList::Label> labels{};

    bool isPlaced() const { return boundsLevel != kNowhere; }
    /// Whether its shapes are few, with few points.
    bool isQuick() const;
    /// Finds bounds without the geometry. \return whether that can be done
    bool placeRoughly();
    /// Null when the level has not been built, or not of late.
    ChunkGeometry* built(std::size_t level) const {
        ChunkGeometry* const known = levels[level % levels.size()].get();
        return known && known->level == level ? known : nullptr;
    }
    /// Begins to build a level, or goes on with it. A neighbouring one that has been begun comes first;
    /// another one is given up. \return whether the level is built
    bool build(std::size_t level, PictureTextures& textures, Slice& slice);
    void dropAllBut(const ChunkGeometry* needed) {
        unfinished.reset();
        for (auto& level : levels)
            if (level.get() != needed) level.reset();
    }

    /// A level that is being built. The chunk stays where it is meanwhile.
    struct Unfinished {
        std::size_t level;
        DrawList list{};
        BoundingBox box{};
        bool placed = false;  ///< the box is known, and the labels are
        float pieces;         ///< its share
        std::size_t linePieces = 0;
        std::unique_ptr<ChunkGeometry> made{};
        Work work;
        Unfinished(const OverlayChunk& chunk, std::size_t number, PictureTextures& textures);
    };
    std::unique_ptr<Unfinished> unfinished{};

  private:
    Work workOut(Unfinished& into, PictureTextures& textures) const;
    void place(Unfinished& placed);
    void keep(Unfinished& finished);
};

/// An entry of the scene, cut into chunks of a few thousand points. It stays where it is: chunks refer to it.
/// `budget` is to outlive it.
struct ChunkedOverlay {
    const OverlayScene::Entry* entry;
    std::uint64_t revision;          ///< of the entry, when it was cut
    std::vector<std::size_t> order;  ///< in which the entry's shapes are drawn
    std::vector<OverlayChunk> chunks;
    ChunkedOverlay(const OverlayScene::Entry& shown, DetailBudget& budget);
    ~ChunkedOverlay() { budget_.giveBack(spent_); }
    ChunkedOverlay(const ChunkedOverlay&) = delete;
    ChunkedOverlay& operator=(const ChunkedOverlay&) = delete;

    /// What the next shape is to have.
    DetailShares shares() const { return budget_.shares(); }
    /// The same of rows for the shape at a place in the order, which keeps what it had.
    double rowsOf(std::uint32_t place) const;
    /// Counts what was filled for it with that share.
    void spendRows(std::uint32_t place, double share, std::size_t triangles);
    /// Counts more of the budget.
    void spend(const DetailCount& more);

  private:
    DetailBudget& budget_;
    DetailCount spent_;
    /// Of tangled areas, by their place in the order: what was theirs at first is theirs in each detail.
    std::map<std::uint32_t, double> rows_;
};

}  // namespace sandbox
