#include "globe/OverlayLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "globe/ChunkPainter.h"
#include "globe/DetailChoice.h"
#include "globe/OverlayChunk.h"
#include "globe/PictureLayer.h"
#include "globe/RasterLayer.h"
#include "globe/ShaderProgram.h"
#include "globe/SoftwareRenderer.h"
#include "globe/ViewVolume.h"

namespace sandbox {

namespace {

/// From so many segments on a frame of a moving view may be a rough one.
constexpr std::size_t kRoughSegments = 100000;

ViewVolume viewWithMargin(const Camera& camera) {
    // Wide lines and dots reach into the view.
    constexpr double kMargin = 256.0;
    const double aside = kMargin / camera.width();
    const double above = kMargin / camera.height();
    return ViewVolume(camera, {-aside, -above, 1.0 + aside, 1.0 + above});
}

}  // namespace

/// A chunk as frames come across it: side by side in memory, since most are looked at to be left out.
struct OverlayLayer::Spot {
    BoundingBall ball;
    OverlayScene::Id id = 0;
    OverlayChunk* chunk = nullptr;
    bool shown = true;
    bool placed = false;  ///< the ball is that of the chunk, whose labels are known, too
    bool labelled = false;
    std::int8_t drawn = -1;  ///< the level in the picture that the raster keeps
};

struct OverlayLayer::Seen {
    const Spot* spot;
    ChunkGeometry* geometry;
};

OverlayLayer::OverlayLayer()
    : textures_(std::make_unique<PictureTextures>()),
      raster_(isSoftwareRenderer() ? std::make_unique<RasterLayer>() : nullptr),
      painter_(std::make_unique<ChunkPainter>(raster_.get())) {}

OverlayLayer::~OverlayLayer() = default;

void OverlayLayer::update(const OverlayScene& scene) {
    const auto changed = scene_ == &scene ? scene.changedSince(changes_) : std::nullopt;
    if (changed) {
        for (const OverlayScene::Id id : *changed) look(scene, id);
    } else {
        std::vector<OverlayScene::Id> ids;
        for (const auto& [id, item] : items_)
            if (!scene.contains(id)) ids.push_back(id);
        for (const auto& [id, entry] : scene.entries()) ids.push_back(id);
        for (const OverlayScene::Id id : ids) look(scene, id);
    }
    scene_ = &scene;
    changes_ = scene.changes();
    if (spotsStale_ || 2 * gone_ > spots_.size()) listSpots();
}

void OverlayLayer::look(const OverlayScene& scene, OverlayScene::Id id) {
    const OverlayScene::Entry* const entry = scene.find(id);
    const auto known = items_.find(id);
    if (known != items_.end()) {
        if (entry && known->second.revision == entry->revision) {
            known->second.entry = entry;
            for (auto spot = spotsOf(id); spot != spots_.end() && spot->id == id; ++spot)
                spot->shown = entry->shown;
            return;
        }
        remove(id);
    }
    if (!entry || !entry->shown) return;
    ChunkedOverlay& item = items_.try_emplace(id, *entry, fills_).first->second;
    // Nearly always it is the newest one.
    spotsStale_ = spotsStale_ || (!spots_.empty() && spots_.back().id >= id);
    if (spotsStale_) return;
    for (OverlayChunk& chunk : item.chunks) spots_.push_back({.ball = {}, .id = id, .chunk = &chunk});
}

void OverlayLayer::remove(OverlayScene::Id id) {
    for (auto spot = spotsOf(id); spot != spots_.end() && spot->id == id; ++spot) {
        if (!spot->chunk) continue;
        if (spot->drawn >= 0) noteChange(spot->chunk->built(static_cast<std::size_t>(spot->drawn)));
        spot->chunk = nullptr;
        ++gone_;
    }
    items_.erase(id);
}

std::vector<OverlayLayer::Spot>::iterator OverlayLayer::spotsOf(OverlayScene::Id id) {
    return std::ranges::lower_bound(spots_, id, {}, &Spot::id);
}

void OverlayLayer::listSpots() {
    std::vector<Spot> spots;
    auto before = spots_.begin();
    for (auto& [id, item] : items_)
        for (OverlayChunk& chunk : item.chunks) {
            while (before != spots_.end() && (before->id < id || (before->id == id && !before->chunk)))
                ++before;
            if (before != spots_.end() && before->chunk == &chunk)
                spots.push_back(*before++);
            else
                spots.push_back({.ball = {}, .id = id, .chunk = &chunk, .shown = item.entry->shown});
        }
    spots_ = std::move(spots);
    workedOut_ = 0;
    const auto last = std::ranges::find_if(spots_.rbegin(), spots_.rend(),
                                           [](const Spot& spot) { return spot.drawn >= 0; });
    laid_ = static_cast<std::size_t>(spots_.rend() - last);
    gone_ = 0;
    spotsStale_ = false;
}

void OverlayLayer::noteChange(const ChunkGeometry* geometry) {
    if (allChanged_ || !raster_ || !raster_->keeps()) return;
    // From here on it is as quick to draw everything.
    constexpr std::size_t kManyPoints = 20000;
    constexpr std::size_t kManyParts = 16;
    if (!geometry || geometry->segments > kManyPoints) {
        allChanged_ = true;
        return;
    }
    QRect part;
    for (const DrawList::Line& line : geometry->lines) part |= raster_->extentOf(line);
    if (part.isEmpty()) return;
    for (auto other = changed_.begin(); other != changed_.end();)
        if (other->intersects(part)) {
            part |= *other;
            other = changed_.erase(other);
        } else {
            ++other;
        }
    changed_.push_back(part);
    const QRect all = raster_->touched();
    const bool large = 2 * part.width() > all.width() && 2 * part.height() > all.height();
    allChanged_ = large || changed_.size() > kManyParts;
}

std::vector<const DrawList::Label*> OverlayLayer::labels() const {
    std::vector<const DrawList::Label*> result;
    for (const Spot& spot : spots_)
        if (spot.chunk && spot.labelled && spot.shown)
            for (const DrawList::Label& label : spot.chunk->labels) result.push_back(&label);
    return result;
}

ChunkGeometry* OverlayLayer::prepare(Spot& spot, const DetailChoice& detail, const ViewVolume& view,
                                     bool moving) {
    constexpr std::size_t unitsOfAChunk = 5;
    constexpr std::size_t placedInAUnit = 2;
    OverlayChunk& chunk = *spot.chunk;
    const auto build = [&](std::size_t level) {
        late_ = !chunk.build(level, *textures_, working_) || working_.isOver(unitsOfAChunk);
        if (!chunk.isPlaced()) return;
        spot.ball = chunk.bounds.ball();
        spot.placed = true;
        spot.labelled = !chunk.labels.empty();
    };
    const bool fresh = !chunk.isPlaced();
    if (fresh && late_) {
        partial_ = true;
        return nullptr;
    }
    if (fresh && chunk.placeRoughly()) late_ = working_.isOver(chunk.count / placedInAUnit);
    if (!chunk.isPlaced()) {
        build(detail.usual());
        if (!chunk.isPlaced()) {
            partial_ = true;
            return nullptr;
        }
    } else if (!spot.placed) {
        // Without its geometry, or listed anew.
        spot.ball = chunk.bounds.ball();
        spot.placed = true;
        spot.labelled = !chunk.labels.empty();
    }
    // With its tighter box the chunk may turn out to be farther away, or out of view.
    while (view.mayShow(spot.ball)) {
        const std::size_t level = detail.of(chunk.bounds);
        if (ChunkGeometry* const built = chunk.built(level)) {
            if (fresh) chunk.dropAllBut(built);
            return built;
        }
        if (ChunkGeometry* const near =
                moving && level + 1 < kTolerances.size() ? chunk.built(level + 1) : nullptr) {
            rough_ = true;
            return near;
        }
        if (late_) {
            partial_ = true;
            const auto any =
                std::ranges::find_if(chunk.levels, [](const auto& known) { return known != nullptr; });
            return any != chunk.levels.end() ? any->get() : nullptr;
        }
        build(level);
    }
    // Of what has not been in view yet its place and its labels are enough.
    if (fresh) chunk.dropAllBut(nullptr);
    return nullptr;
}

/// Gets the picture ready for lines that are drawn before their frame. \return whether it can be
bool OverlayLayer::beginAhead(const Camera& camera, double pixelRatio, bool calm) {
    constexpr auto smooth = LineRaster::Quality::Smooth;
    if (!raster_ || !seesLinesOnly_) return false;
    if (!allChanged_ && raster_->keepsFor(camera, pixelRatio, smooth)) {
        raster_->addMore();
        return true;
    }
    // What goes meanwhile would take the new picture with it.
    if (!calm || workedOut_ < spots_.size()) return false;
    raster_->beginKept(camera, pixelRatio, smooth);
    for (Spot& spot : spots_) spot.drawn = -1;
    laid_ = 0;
    changed_.clear();
    allChanged_ = false;
    return true;
}

bool OverlayLayer::workOut(const Camera& camera, double pixelRatio, bool calm, Slice working) {
    constexpr std::size_t laidInAUnit = 20;
    working_ = working;
    late_ = partial_ = false;
    if (workedOutFor_ != camera) workedOut_ = 0;
    workedOutFor_ = camera;
    const ViewVolume view = viewWithMargin(camera);
    const DetailChoice detail(camera, pixelRatio);
    bool ahead = beginAhead(camera, pixelRatio, calm);
    if (ahead) workedOut_ = std::min(workedOut_, laid_);
    while (workedOut_ < spots_.size()) {
        Spot& spot = spots_[workedOut_];
        ChunkGeometry* const geometry = spot.chunk && spot.shown && (!spot.placed || view.mayShow(spot.ball))
                                            ? prepare(spot, detail, view, false)
                                            : nullptr;
        if (partial_) return false;
        ahead = ahead && (!geometry || geometry->hasLinesOnly());
        if (ahead && workedOut_ >= laid_) {
            laid_ = workedOut_ + 1;
            if (geometry) {
                for (const DrawList::Line& line : geometry->lines) raster_->draw(line);
                spot.drawn = static_cast<std::int8_t>(geometry->level);
                late_ = working_.isOver(1 + geometry->segments / laidInAUnit);
            }
        }
        ++workedOut_;
        if (ahead && late_) break;
    }
    return workedOut_ == spots_.size();
}

/// Looks what the frame shows, and whether that has changed.
void OverlayLayer::find(const Camera& camera, double pixelRatio, bool moving) {
    const ViewVolume view = viewWithMargin(camera);
    const DetailChoice detail(camera, pixelRatio);
    // What is quickly worked out is never left for later.
    const bool rough = moving && seenSegments_ >= kRoughSegments;
    rough_ = false;
    seen_.clear();
    kept_ = 0;
    seesLinesOnly_ = true;
    seenSegments_ = 0;
    widestSeen_ = 0.0;
    laid_ = 0;
    for (Spot& spot : spots_) {
        if (!spot.chunk) continue;
        ChunkGeometry* const geometry = spot.shown && (!spot.placed || view.mayShow(spot.ball))
                                            ? prepare(spot, detail, view, rough)
                                            : nullptr;
        const auto drawn = static_cast<std::int8_t>(geometry ? static_cast<int>(geometry->level) : -1);
        const auto before = std::exchange(spot.drawn, drawn);
        if (before >= 0 && before != drawn) noteChange(spot.chunk->built(static_cast<std::size_t>(before)));
        if (!geometry) continue;
        seen_.push_back({&spot, geometry});
        laid_ = static_cast<std::size_t>(&spot - spots_.data()) + 1;
        if (before >= 0) {
            // What is new before it lies below it.
            for (; kept_ + 1 < seen_.size(); ++kept_) noteChange(seen_[kept_].geometry);
            ++kept_;
            if (before != drawn) noteChange(geometry);
        }
        seesLinesOnly_ = seesLinesOnly_ && geometry->hasLinesOnly();
        seenSegments_ += geometry->segments;
        widestSeen_ = std::max(widestSeen_, geometry->widest);
    }
}

void OverlayLayer::draw(const Camera& camera, double pixelRatio, bool moving, Slice working) {
    working_ = working;
    late_ = partial_ = false;
    if (raster_ && !raster_->keepsFor(camera, pixelRatio)) allChanged_ = true;
    find(camera, pixelRatio, moving && raster_);
    if (!painter_->isReady()) return;
    glEnable(GL_BLEND);
    setBlending();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    if (raster_ && seesLinesOnly_ && seenSegments_ >= RasterLayer::kManySegments) {
        drawTogether(camera, pixelRatio, moving);
    } else {
        if (raster_) raster_->begin(camera, pixelRatio, LineRaster::Quality::Smooth);
        drawInOrder(camera, pixelRatio);
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
}

/// Lines and nothing else, in memory.
void OverlayLayer::drawTogether(const Camera& camera, double pixelRatio, bool moving) {
    const bool rough = moving && seenSegments_ >= kRoughSegments;
    const auto quality = rough ? LineRaster::Quality::Rough : LineRaster::Quality::Smooth;
    rough_ = rough_ || rough;
    const auto lay = [this](const Seen& seen) {
        for (const DrawList::Line& line : seen.geometry->lines) raster_->draw(line);
    };
    if (!allChanged_ && raster_->resume(camera, pixelRatio, quality)) {
        for (const QRect& part : changed_) {
            raster_->redraw(part);
            const double margin = 0.5 * widestSeen_ * pixelRatio + 2.0;
            const double width = camera.width() * pixelRatio;
            const double height = camera.height() * pixelRatio;
            const ViewVolume view(
                camera, {(part.left() - margin) / width, (part.top() - margin) / height,
                         (part.right() + 1 + margin) / width, (part.bottom() + 1 + margin) / height});
            for (std::size_t i = 0; i < kept_; ++i)
                if (view.mayShow(seen_[i].spot->ball)) lay(seen_[i]);
        }
        if (kept_ < seen_.size()) raster_->addMore();
        for (std::size_t i = kept_; i < seen_.size(); ++i) lay(seen_[i]);
    } else {
        raster_->begin(camera, pixelRatio, quality);
        for (const Seen& seen : seen_) lay(seen);
    }
    raster_->composeAndKeep();
    changed_.clear();
    allChanged_ = false;
}

void OverlayLayer::drawInOrder(const Camera& camera, double pixelRatio) {
    if (seen_.empty()) return;
    painter_->begin(camera, pixelRatio);
    // Entries that are nothing but lines are drawn together: there may be one for each shape.
    std::vector<ChunkGeometry*> lines;
    const auto drawWaiting = [&] {
        if (!lines.empty()) painter_->draw(lines);
        lines.clear();
    };
    std::vector<ChunkGeometry*> entry;
    for (auto seen = seen_.begin(); seen != seen_.end();) {
        entry.clear();
        for (const OverlayScene::Id id = seen->spot->id; seen != seen_.end() && seen->spot->id == id; ++seen)
            entry.push_back(seen->geometry);
        if (std::ranges::all_of(entry, &ChunkGeometry::hasLinesOnly)) {
            lines.insert(lines.end(), entry.begin(), entry.end());
        } else {
            drawWaiting();
            painter_->draw(entry);
        }
    }
    drawWaiting();
    painter_->end();
}

}  // namespace sandbox
