#include "globe/OverlayLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <utility>

#include "globe/ChunkPainter.h"
#include "globe/DetailChoice.h"
#include "globe/FillCost.h"
#include "globe/OverlayChunk.h"
#include "globe/OverlayPicture.h"
#include "globe/PictureTextures.h"
#include "globe/RasterLayer.h"
#include "globe/ShaderProgram.h"
#include "globe/SoftwareRenderer.h"
#include "globe/ViewVolume.h"

namespace sandbox {

namespace {

/// A frame waits so long for a shape that changes before its geometry is ready, as one does that a hand drags
/// or a platform carries; and the frames for so long afterwards.
constexpr std::chrono::milliseconds kHurried{50};
constexpr std::chrono::seconds kHurry{3};

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
    OverlayScene::Id id;
    std::size_t spot;  ///< its number
    ChunkGeometry* part;
};

OverlayLayer::OverlayLayer()
    : textures_(std::make_unique<PictureTextures>()),
      raster_(isSoftwareRenderer() ? std::make_unique<RasterLayer>() : nullptr),
      painter_(std::make_unique<ChunkPainter>(raster_.get())),
      picture_(raster_ ? std::make_unique<OverlayPicture>() : nullptr) {}

OverlayLayer::~OverlayLayer() = default;

void OverlayLayer::update(const OverlayScene& scene) {
    // What changes keeps its picture while it is worked out anew.
    if (!partial_) textures_->forgetUnused();
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
                if (std::exchange(spot->shown, entry->shown) != entry->shown) changePicture(*spot);
            return;
        }
        remove(id);
    }
    if (!entry || !entry->shown) return;
    ChunkedOverlay& item = items_.try_emplace(id, *entry, budget_).first->second;
    // Nearly always it is the newest one.
    spotsStale_ = spotsStale_ || (!spots_.empty() && spots_.back().id >= id);
    if (spotsStale_) return;
    for (OverlayChunk& chunk : item.chunks) spots_.push_back({.ball = {}, .id = id, .chunk = &chunk});
}

void OverlayLayer::remove(OverlayScene::Id id) {
    for (auto spot = spotsOf(id); spot != spots_.end() && spot->id == id; ++spot) {
        if (!spot->chunk) continue;
        if (spot->drawn >= 0) noteChange(spot->chunk->built(static_cast<std::size_t>(spot->drawn)));
        changePicture(*spot);
        if (&*spot == spots_.data() + laid_) stopLaying();
        if (spot->chunk->unfinished) hurriesUntil_ = std::chrono::steady_clock::now() + kHurry;
        spot->chunk = nullptr;
        ++gone_;
    }
    items_.erase(id);
}

std::vector<OverlayLayer::Spot>::iterator OverlayLayer::spotsOf(OverlayScene::Id id) {
    return std::ranges::lower_bound(spots_, id, {}, &Spot::id);
}

/// What is drawn of a chunk is going, or coming.
void OverlayLayer::changePicture(const Spot& spot) {
    if (picture_ && static_cast<std::size_t>(&spot - spots_.data()) < picture_->held()) picture_->forget();
}

void OverlayLayer::stopLaying() {
    layingPart_ = nullptr;
    laidLines_ = 0;
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
    if (picture_) {
        const auto same = [](const Spot& a, const Spot& b) { return a.chunk == b.chunk; };
        const auto differ = std::ranges::mismatch(spots_, spots, same).in1;
        if (static_cast<std::size_t>(differ - spots_.begin()) < picture_->held()) picture_->forget();
    }
    // Of what lies half in the picture nobody knows the number any more.
    if (layingPart_) allChanged_ = true;
    stopLaying();
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
    if (!geometry || geometry->allSegments() > kManyPoints) {
        allChanged_ = true;
        return;
    }
    QRect part;
    for (; geometry; geometry = geometry->next.get())
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
    if (!raster_ || !seesLinesOnly_ || (picture_ && picture_->isFor(camera, pixelRatio))) return false;
    if (!allChanged_ && raster_->keepsFor(camera, pixelRatio, smooth)) {
        raster_->addMore();
        return true;
    }
    // What goes meanwhile would take the new picture with it.
    if (!calm || workedOut_ < spots_.size()) return false;
    raster_->beginKept(camera, pixelRatio, smooth);
    forgetLaid();
    changed_.clear();
    allChanged_ = false;
    return true;
}

void OverlayLayer::forgetLaid() {
    for (Spot& spot : spots_) spot.drawn = -1;
    laid_ = 0;
    stopLaying();
}

/// Draws the lines of the first chunk that is not in the raster's picture, or goes on with them. \return
/// whether they are all there
bool OverlayLayer::lay(ChunkGeometry& geometry, const ViewVolume& view, Slice& slice) {
    spots_[laid_].drawn = static_cast<std::int8_t>(geometry.level);
    if (!layingPart_) layingPart_ = &geometry;
    DrawList::Line line;
    for (; layingPart_; layingPart_ = layingPart_->next.get(), laidLines_ = 0) {
        if (geometry.next && !view.mayShow(layingPart_->bounds.ball())) continue;
        while (laidLines_ < layingPart_->lines.size())
            if (slice.isOver(raster_->draw(layingPart_->lines.unpack(laidLines_++, line)))) return false;
    }
    ++laid_;
    return true;
}

bool OverlayLayer::workOut(const Camera& camera, double pixelRatio, bool calm, Slice working,
                           const std::function<void()>& ground) {
    working_ = working;
    late_ = partial_ = false;
    if (workedOutFor_ != camera) workedOut_ = 0;
    workedOutFor_ = camera;
    if (picture_ && !picture_->isFor(camera, pixelRatio)) picture_->forget();
    const ViewVolume view = viewWithMargin(camera);
    const DetailChoice detail(camera, pixelRatio);
    bool ahead = beginAhead(camera, pixelRatio, calm);
    if (ahead) workedOut_ = std::min(workedOut_, laid_);
    while (workedOut_ < spots_.size()) {
        ChunkGeometry* const geometry = find(spots_[workedOut_], detail, view, false);
        if (partial_) return false;
        ahead = ahead && (!geometry || geometry->hasLinesOnly());
        if (ahead && workedOut_ == laid_) {
            if (geometry) {
                if (!lay(*geometry, view, working_)) return false;
            } else {
                stopLaying();
                ++laid_;
            }
        }
        ++workedOut_;
        if (late_) break;
    }
    return workedOut_ == spots_.size() && drawAhead(camera, pixelRatio, working_, ground);
}

/// Draws areas before their frame. \return whether nothing is left
bool OverlayLayer::drawAhead(const Camera& camera, double pixelRatio, Slice& slice,
                             const std::function<void()>& ground) {
    if (!picture_ || !overdrawn_) return true;
    if (!picture_->isFor(camera, pixelRatio)) {
        if (seesLinesOnly_) return true;
        if (picture_->begin(camera, pixelRatio, ground)) return false;
        // Where there can be none a frame draws it all.
        picture_.reset();
        return true;
    }
    if (picture_->isComplete()) {
        std::vector<Seen> seen;
        const ViewVolume view = viewWithMargin(camera);
        const DetailChoice detail(camera, pixelRatio);
        for (std::size_t i = picture_->held(); i < spots_.size(); ++i)
            if (ChunkGeometry* const geometry = find(spots_[i], detail, view, false))
                see(i, *geometry, view, seen);
        if (partial_) {
            // It has been laid aside since, or was hidden. What stands for it meanwhile is not to stay.
            workedOut_ = 0;
            return false;
        }
        const std::size_t top = topmost(seen, FillCost(camera, pixelRatio));
        if (top == 0) return true;
        const std::size_t chunks = top < seen.size() ? seen[top].spot : spots_.size();
        seen.resize(top);
        picture_->add(chunks, drawInOrder(std::move(seen)));
    }
    raster_->begin(camera, pixelRatio, LineRaster::Quality::Smooth);
    return picture_->goOn(*painter_, slice);
}

/// What a view shows of a chunk; null for nothing.
ChunkGeometry* OverlayLayer::find(Spot& spot, const DetailChoice& detail, const ViewVolume& view,
                                  bool moving) {
    if (!spot.chunk || !spot.shown || (spot.placed && !view.mayShow(spot.ball))) return nullptr;
    return prepare(spot, detail, view, moving);
}

/// Adds the parts of a chunk that are in view.
void OverlayLayer::see(std::size_t spot, ChunkGeometry& geometry, const ViewVolume& view,
                       std::vector<Seen>& seen) const {
    for (ChunkGeometry* part = &geometry; part; part = part->next.get())
        if (part == &geometry || view.mayShow(part->bounds.ball()))
            seen.push_back({spots_[spot].id, spot, part});
}

/// What lies on top of all: the first of a few entries that are quickly drawn.
std::size_t OverlayLayer::topmost(std::span<const Seen> seen, const FillCost& cost) {
    constexpr std::size_t kEntries = 8;
    // Besides as much as fills the view twice.
    constexpr std::size_t kUnits = 5000;
    const std::size_t most = kUnits + 2 * cost.ofView();
    // The raster may keep a picture of others.
    constexpr std::size_t kSegments = RasterLayer::kManySegments / 2;
    std::size_t first = seen.size();
    std::size_t units = 0;
    std::size_t segments = 0;
    const auto areFew = [&] { return units <= most && segments <= kSegments; };
    for (std::size_t entries = 0; first > 0 && entries < kEntries; ++entries) {
        std::size_t begin = first;
        for (; begin > 0 && seen[begin - 1].id == seen[first - 1].id && areFew(); --begin) {
            segments += seen[begin - 1].part->segments;
            if (areFew()) units += seen[begin - 1].part->cost(cost);
        }
        if (!areFew()) break;
        first = begin;
    }
    return first;
}

/// Looks what the frame shows, and whether that has changed.
void OverlayLayer::findAll(const Camera& camera, double pixelRatio, bool moving) {
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
    // What people draw does not wait for what lies below.
    constexpr std::size_t kFirst = 8;
    for (std::size_t i = spots_.size(), found = 0; i > 0 && found < kFirst && !late_; --i) {
        if (!spots_[i - 1].chunk) continue;
        ++found;
        if (spots_[i - 1].chunk->isQuick()) find(spots_[i - 1], detail, view, rough);
    }
    for (std::size_t i = 0; i < spots_.size(); ++i) {
        Spot& spot = spots_[i];
        if (!spot.chunk) continue;
        ChunkGeometry* const geometry = find(spot, detail, view, rough);
        const auto now = static_cast<std::int8_t>(geometry ? static_cast<int>(geometry->level) : -1);
        const auto before = spot.drawn;
        if (before >= 0 && before != now) {
            noteChange(spot.chunk->built(static_cast<std::size_t>(before)));
            spot.drawn = now;
            if (i == laid_) allChanged_ = allChanged_ || layingPart_;
        }
        if (!geometry) continue;
        const std::size_t first = seen_.size();
        see(i, *geometry, view, seen_);
        if (before >= 0) {
            // What is new before it lies below it.
            for (; kept_ < first; ++kept_) {
                const Seen& below = seen_[kept_];
                noteChange(below.part);
                spots_[below.spot].drawn = static_cast<std::int8_t>(below.part->level);
            }
            kept_ = seen_.size();
            if (before != now) noteChange(geometry);
        }
        seesLinesOnly_ = seesLinesOnly_ && geometry->hasLinesOnly();
        seenSegments_ += geometry->allSegments();
        for (std::size_t k = first; k < seen_.size(); ++k)
            widestSeen_ = std::max(widestSeen_, seen_[k].part->widest);
    }
}

void OverlayLayer::forgetGround() {
    if (picture_) picture_->forget();
}

void OverlayLayer::draw(const Camera& camera, double pixelRatio, bool moving, Slice working, Slice drawing,
                        const std::function<void()>& ground) {
    working_ = working;
    if (std::chrono::steady_clock::now() < hurriesUntil_) working_.extend(kHurried);
    drawing_ = picture_ ? drawing : Slice();
    late_ = partial_ = overdrawn_ = false;
    if (raster_ && !raster_->keepsFor(camera, pixelRatio)) allChanged_ = true;
    const bool pictured = picture_ && picture_->isFor(camera, pixelRatio);
    if (pictured) {
        raster_->begin(camera, pixelRatio, LineRaster::Quality::Smooth);
        // Others see how far it is.
        if (drawing_.isEndless()) picture_->goOn(*painter_, drawing_);
        picture_->show();
    } else {
        if (picture_) picture_->forget();
        ground();
    }
    findAll(camera, pixelRatio, moving && raster_);
    if (partial_) workedOut_ = 0;
    if (!painter_->isReady()) return;
    // Few lines are many if they are as wide as areas.
    const auto areMany = [&] {
        constexpr std::size_t kUnits = 5000;
        const FillCost cost(camera, pixelRatio);
        std::size_t units = 0;
        return seenSegments_ >= RasterLayer::kManySegments ||
               std::ranges::any_of(seen_, [&](const Seen& seen) {
                   units += seen.part->cost(cost);
                   return units > kUnits;
               });
    };
    if (raster_ && !pictured && seesLinesOnly_ && areMany())
        drawTogether(camera, pixelRatio, moving);
    else
        drawSeen(camera, pixelRatio, moving, pictured);
}

/// Lines and nothing else, in memory.
void OverlayLayer::drawTogether(const Camera& camera, double pixelRatio, bool moving) {
    const bool rough = moving && seenSegments_ >= kRoughSegments;
    const auto quality = rough ? LineRaster::Quality::Rough : LineRaster::Quality::Smooth;
    rough_ = rough_ || rough;
    const auto layAll = [this](const Seen& seen) {
        for (const DrawList::Line& line : seen.part->lines) raster_->draw(line);
    };
    glEnable(GL_BLEND);
    setBlending();
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
                if (view.mayShow(spots_[seen_[i].spot].ball)) layAll(seen_[i]);
        }
        if (kept_ < seen_.size() || layingPart_) raster_->addMore();
    } else {
        raster_->begin(camera, pixelRatio, quality);
        forgetLaid();
        kept_ = 0;
    }
    allChanged_ = false;
    changed_.clear();
    const ViewVolume view = viewWithMargin(camera);
    const auto layNext = [&] {
        Spot& spot = spots_[laid_];
        return lay(*spot.chunk->built(static_cast<std::size_t>(spot.drawn)), view, drawing_);
    };
    const auto top = [&] { return std::span(seen_).subspan(topmost(seen_, FillCost(camera, pixelRatio))); };
    bool over = layingPart_ && !layNext();
    for (std::size_t i = kept_; i < seen_.size() && !over; ++i) {
        if (spots_[seen_[i].spot].drawn >= 0) continue;
        laid_ = seen_[i].spot;
        spots_[laid_].drawn = static_cast<std::int8_t>(seen_[i].part->level);
        over = !layNext();
    }
    if (over && moving) {
        rough_ = true;
        for (const Seen& seen : top()) layAll(seen);
        allChanged_ = true;
    }
    partial_ = partial_ || (over && !moving);
    if (!over) laid_ = seen_.empty() ? 0 : seen_.back().spot + 1;
    raster_->composeAndKeep();
    glDisable(GL_BLEND);
    if (!over || moving) return;
    std::vector<ChunkGeometry*> bodies;
    painter_->begin(camera, pixelRatio, bodies);
    drawTop(top());
    painter_->end();
}

/// Whatever it is, above what the picture shows.
void OverlayLayer::drawSeen(const Camera& camera, double pixelRatio, bool moving, bool pictured) {
    if (raster_) raster_->begin(camera, pixelRatio, LineRaster::Quality::Smooth);
    std::vector<ChunkGeometry*> bodies;
    std::span<const Seen> seen = seen_;
    if (pictured) {
        bodies = picture_->bodies();
        seen = seen.subspan(static_cast<std::size_t>(
            std::ranges::lower_bound(seen_, picture_->held(), {}, &Seen::spot) - seen_.begin()));
    }
    painter_->begin(camera, pixelRatio, bodies);
    overdrawn_ = pictured && !picture_->isComplete();
    // The few on top wait for nothing.
    const std::size_t top = topmost(seen, FillCost(camera, pixelRatio));
    const bool areFew = top == 0;
    if (!areFew && !overdrawn_) {
        Work drawing = drawInOrder({seen.begin(), seen.end()});
        overdrawn_ = !drawing.goOn(drawing_);
    }
    if (areFew || overdrawn_) drawTop(seen.subspan(top));
    if (overdrawn_) (moving ? rough_ : partial_) = true;
    painter_->end();
}

/// What people draw.
void OverlayLayer::drawTop(std::span<const Seen> top) {
    drawInOrder({top.begin(), top.end()}).finish();
}

Work OverlayLayer::drawInOrder(std::vector<Seen> seen) {
    // Entries that are nothing but lines are drawn together: there may be one for each shape.
    std::vector<ChunkGeometry*> lines;
    std::vector<ChunkGeometry*> entry;
    for (std::size_t i = 0; i < seen.size();) {
        entry.clear();
        for (const OverlayScene::Id id = seen[i].id; i < seen.size() && seen[i].id == id; ++i)
            entry.push_back(seen[i].part);
        if (std::ranges::all_of(entry, &ChunkGeometry::hasLinesOnly)) {
            lines.insert(lines.end(), entry.begin(), entry.end());
            continue;
        }
        if (!lines.empty()) co_await painter_->draw(lines);
        lines.clear();
        co_await painter_->draw(entry);
    }
    if (!lines.empty()) co_await painter_->draw(lines);
}

}  // namespace sandbox
