#include "globe/OverlayLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/Camera.h"
#include "globe/DrawingOrder.h"
#include "globe/LineBatch.h"
#include "globe/MeshBatch.h"
#include "globe/OverlayShaders.h"
#include "globe/PictureLayer.h"
#include "globe/RasterLayer.h"
#include "globe/ShaderProgram.h"
#include "globe/ShapeGeometry.h"
#include "globe/SoftwareRenderer.h"
#include "globe/SplitPosition.h"
#include "globe/ViewVolume.h"

namespace sandbox {

using halCore::Ecef;
namespace wgs84 = halCore::wgs84;

namespace {

/// A box around everything, to leave out what is not in the view.
class Bounds {
  public:
    void add(const Ecef& p) {
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y), std::min(low_.z, p.z)};
        high_ = {std::max(high_.x, p.x), std::max(high_.y, p.y), std::max(high_.z, p.z)};
    }
    void grow(double meters) {
        low_ = low_ - Ecef{meters, meters, meters};
        high_ = high_ + Ecef{meters, meters, meters};
    }
    bool empty() const { return low_.x > high_.x; }
    double distanceFrom(const Ecef& p) const {
        return length(Ecef{std::max({low_.x - p.x, 0.0, p.x - high_.x}),
                           std::max({low_.y - p.y, 0.0, p.y - high_.y}),
                           std::max({low_.z - p.z, 0.0, p.z - high_.z})});
    }
    BoundingBall ball() const { return {(low_ + high_) * 0.5, length(high_ - low_) * 0.5}; }

    /// Whether two boxes, each with a margin, may lie before each other as seen by an eye.
    bool meets(const Bounds& other, const Ecef& eye, double marginRadians) const {
        const Ecef v = (low_ + high_) * 0.5 - eye;
        const Ecef w = (other.low_ + other.high_) * 0.5 - eye;
        const double near = length(high_ - low_) * 0.5;
        const double far = length(other.high_ - other.low_) * 0.5;
        if (length(v) <= near || length(w) <= far) return true;
        const double between = std::atan2(length(cross(v, w)), dot(v, w));
        return between < std::asin(near / length(v)) + std::asin(far / length(w)) + marginRadians;
    }

  private:
    static constexpr double kHuge = std::numeric_limits<double>::max();
    Ecef low_{kHuge, kHuge, kHuge};
    Ecef high_{-kHuge, -kHuge, -kHuge};
};

/// Metres that each level of detail may be off, finest first; 0 = as good as it gets.
constexpr std::array<double, 8> kTolerances = {0.0, 2.0, 10.0, 50.0, 250.0, 1250.0, 6250.0, 31250.0};
/// What a level may lack, in pixels.
constexpr double kSlack = 0.2;
/// An entry's chunks: at least so many if it has the shapes for it, until they hold so many points.
constexpr std::size_t kChunks = 64;
constexpr std::size_t kChunkSize = 4000;
/// So many segments or more are drawn in memory: to lay them over the view takes as long as a few thousand.
constexpr std::size_t kManySegments = 4000;
/// From so many on a frame of a moving view may be a rough one.
constexpr std::size_t kRoughSegments = 100000;

}  // namespace

/// Which level of detail the view cannot tell from the truth.
class OverlayLayer::Detail {
  public:
    Detail(const Camera& camera, double pixelRatio)
        : eye_(camera.eye()),
          above_(std::max(10.0, 0.5 * std::min(camera.range(), camera.eyePosition().alt()))),
          perMeter_(2.0 * camera.tanHalfHeight() / (camera.height() * pixelRatio)),
          usual_(std::max(at(camera.range()), kCoarseEnough)) {}

    std::size_t of(const Bounds& bounds) const { return at(bounds.distanceFrom(eye_)); }
    /// For what lies nobody knows where.
    std::size_t usual() const { return usual_; }

  private:
    /// What is out of view is to cost little.
    static constexpr std::size_t kCoarseEnough = 5;

    std::size_t at(double distance) const {
        const double pixel = std::max(above_, distance) * perMeter_;
        std::size_t level = kTolerances.size() - 1;
        while (level > 0 && kTolerances[level] > kSlack * pixel) --level;
        return level;
    }

    Ecef eye_;
    double above_;
    double perMeter_;
    std::size_t usual_;
};

struct OverlayLayer::Level {
    /// What is not a line.
    struct Others {
        PictureBatch pictures;
        MeshBatch areas;
        MeshBatch solids;
        MeshBatch roundSolids;
        MeshBatch areasOverBodies;
    };
    std::size_t number;  ///< in kTolerances
    std::unique_ptr<Others> others;
    std::vector<DrawList::Line> lines;
    std::unique_ptr<LineBatch> lineBatch;  ///< the same on the card, once they are drawn there
    std::size_t segments = 0;
    double widest = 0.0;  ///< of the lines, in widget pixels
    Bounds bounds;

    bool hasLinesOnly() const { return !others; }
    bool has(auto Others::*batch) const { return others && !((*others).*batch).empty(); }
    bool hasBodies() const { return has(&Others::solids) || has(&Others::roundSolids); }

    Level(std::size_t level, DrawList& list, PictureTextures& textures) : number(level) {
        if (!list.pictures.empty() || !list.meshes.empty()) {
            others = std::make_unique<Others>();
            others->pictures.upload(list, textures);
        }
        for (const DrawList::Mesh& mesh : list.meshes) {
            if (mesh.solid)
                (mesh.normals.empty() ? others->solids : others->roundSolids).add(mesh);
            else
                (mesh.overBodies ? others->areasOverBodies : others->areas).add(mesh);
        }
        if (others)
            for (MeshBatch* batch :
                 {&others->areas, &others->solids, &others->roundSolids, &others->areasOverBodies})
                batch->upload();
        lines = std::move(list.lines);
        lines.shrink_to_fit();
        for (const DrawList::Line& line : lines) {
            segments += line.points.size();
            widest = std::max(widest, double{line.width});
        }
    }
};

/// Some of an entry's shapes that follow each other.
struct OverlayLayer::Chunk {
    const Item* item;
    std::uint32_t first;  ///< of the item's shapes in drawing order
    std::uint32_t count;
    static constexpr std::size_t kRoughly = kTolerances.size();  ///< in place of a level
    static constexpr std::size_t kNowhere = kRoughly + 1;
    std::size_t boundsLevel = kNowhere;  ///< the level that the bounds are from
    Bounds bounds{};
    /// That in use and, once it has been built, the next finer and coarser one.
    std::array<std::unique_ptr<Level>, 3> levels{};
    std::vector<DrawList::Label> labels{};

    bool isPlaced() const { return boundsLevel != kNowhere; }
    /// Finds bounds without the geometry. \return whether that can be done
    bool placeRoughly();
    Level* built(std::size_t number) const {
        Level* const level = levels[number % levels.size()].get();
        return level && level->number == number ? level : nullptr;
    }
    void build(std::size_t level, PictureTextures& textures);
    void dropAllBut(const Level* needed) {
        for (auto& level : levels)
            if (level.get() != needed) level.reset();
    }
};

struct OverlayLayer::Item {
    const OverlayScene::Entry* entry = nullptr;
    std::uint64_t revision = 0;
    std::vector<std::size_t> order;  ///< of the entry's shapes
    std::vector<Chunk> chunks;

    explicit Item(const OverlayScene::Entry& shown)
        : entry(&shown), revision(shown.revision), order(drawingOrder(shown.shapes)) {
        std::size_t total = 0;
        for (const auto& shape : entry->shapes) total += shape ? roughSize(*shape) : 0;
        const std::size_t enough = std::min(kChunkSize, total / kChunks);
        std::size_t size = 0;
        for (std::uint32_t i = 0; i < order.size(); ++i) {
            const std::size_t more = roughSize(*entry->shapes[order[i]]);
            if (chunks.empty() || size + more > enough) {
                chunks.push_back({.item = this, .first = i, .count = 0});
                size = 0;
            }
            size += more;
            ++chunks.back().count;
        }
        chunks.shrink_to_fit();
    }
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;
};

bool OverlayLayer::Chunk::placeRoughly() {
    Bounds box;
    for (std::uint32_t i = first; i < first + count; ++i) {
        const auto place = roughPlace(*item->entry->shapes[item->order[i]], item->entry->reference);
        if (!place) return false;
        const Ecef reach{place->radius, place->radius, place->radius};
        box.add(place->center - reach);
        box.add(place->center + reach);
    }
    bounds = box;
    boundsLevel = kRoughly;
    return true;
}

void OverlayLayer::Chunk::build(std::size_t level, PictureTextures& textures) {
    const OverlayScene::Entry& entry = *item->entry;
    DrawList list;
    for (std::uint32_t i = first; i < first + count; ++i)
        appendGeometry(*entry.shapes[item->order[i]], entry.reference, kTolerances[level], list);
    Bounds box;
    for (DrawList::Picture& picture : list.pictures) {
        picture.file = findPicture(picture.file.path, entry.directory);
        for (const Ecef& p : picture.vertices) box.add(p);
    }
    for (DrawList::Label& label : list.labels)
        if (!label.icon.path.empty()) label.icon = findPicture(label.icon.path, entry.directory);
    for (const DrawList::Mesh& mesh : list.meshes)
        for (const Ecef& p : mesh.vertices) box.add(p);
    for (const DrawList::Line& line : list.lines)
        for (const Ecef& p : line.points) box.add(p);
    box.grow(kTolerances[level]);
    if (level < boundsLevel) {
        bounds = box;  // the tighter one
        boundsLevel = level;
    }
    for (auto& known : levels)
        if (known && (known->number + 1 < level || known->number > level + 1)) known.reset();
    auto& made = levels[level % levels.size()];
    made = std::make_unique<Level>(level, list, textures);
    made->bounds = box;
    labels = std::move(list.labels);
}

/// A chunk as frames come across it: side by side in memory, since most are looked at to be left out.
struct OverlayLayer::Spot {
    BoundingBall ball;
    OverlayScene::Id id = 0;
    Chunk* chunk = nullptr;
    bool shown = true;
    bool placed = false;  ///< the ball is that of the chunk, whose labels are known, too
    bool labelled = false;
    std::int8_t drawn = -1;  ///< the level in the picture that the raster keeps
};

struct OverlayLayer::Seen {
    const Spot* spot;
    Level* level;
};

OverlayLayer::OverlayLayer()
    : lineProgram_(LineBatch::compile()),
      meshProgram_(compileProgram(std::string(kRelativeShader) + kMeshVertexShader,
                                  std::string(kSightShader) + kMeshFragmentShader,
                                  {"high", "low", "color", "normal"})),
      pictureProgram_(PictureBatch::compile()),
      textures_(std::make_unique<PictureTextures>()),
      raster_(isSoftwareRenderer() ? std::make_unique<RasterLayer>() : nullptr) {}

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
    Item& item = items_.try_emplace(id, *entry).first->second;
    // Nearly always it is the newest one.
    spotsStale_ = spotsStale_ || (!spots_.empty() && spots_.back().id >= id);
    if (spotsStale_) return;
    for (Chunk& chunk : item.chunks) spots_.push_back({.ball = {}, .id = id, .chunk = &chunk});
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
        for (Chunk& chunk : item.chunks) {
            while (before != spots_.end() && (before->id < id || (before->id == id && !before->chunk)))
                ++before;
            if (before != spots_.end() && before->chunk == &chunk)
                spots.push_back(*before++);
            else
                spots.push_back({.ball = {}, .id = id, .chunk = &chunk, .shown = item.entry->shown});
        }
    spots_ = std::move(spots);
    gone_ = 0;
    spotsStale_ = false;
}

void OverlayLayer::noteChange(const Level* level) {
    if (allChanged_ || !raster_ || !raster_->keeps()) return;
    // From here on it is as quick to draw everything.
    constexpr std::size_t kManyPoints = 20000;
    constexpr std::size_t kManyParts = 16;
    if (!level || level->segments > kManyPoints) {
        allChanged_ = true;
        return;
    }
    QRect part;
    for (const DrawList::Line& line : level->lines) part |= raster_->extentOf(line);
    if (part.isEmpty()) return;
    for (auto other = changed_.begin(); other != changed_.end();)
        if (other->intersects(part)) {
            part |= *other;
            other = changed_.erase(other);
        } else {
            ++other;
        }
    changed_.push_back(part);
    allChanged_ = changed_.size() > kManyParts;
}

std::vector<const DrawList::Label*> OverlayLayer::labels() const {
    std::vector<const DrawList::Label*> result;
    for (const Spot& spot : spots_)
        if (spot.chunk && spot.labelled && spot.shown)
            for (const DrawList::Label& label : spot.chunk->labels) result.push_back(&label);
    return result;
}

OverlayLayer::Level* OverlayLayer::prepare(Spot& spot, const Detail& detail, const ViewVolume& view,
                                           bool moving) {
    // A unit is a microsecond.
    constexpr std::size_t units = 5;
    constexpr std::size_t segmentsOfAUnit = 5;
    constexpr std::size_t placedInAUnit = 2;
    Chunk& chunk = *spot.chunk;
    const auto build = [&](std::size_t level) {
        chunk.build(level, *textures_);
        late_ = working_.isOver(units + chunk.built(level)->segments / segmentsOfAUnit);
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
    } else if (!spot.placed) {
        // Without its geometry, or listed anew.
        spot.ball = chunk.bounds.ball();
        spot.placed = true;
        spot.labelled = !chunk.labels.empty();
    }
    // With its tighter box the chunk may turn out to be farther away, or out of view.
    while (view.mayShow(spot.ball)) {
        const std::size_t level = detail.of(chunk.bounds);
        if (Level* const built = chunk.built(level)) {
            if (fresh) chunk.dropAllBut(built);
            return built;
        }
        if (Level* const near = moving && level + 1 < kTolerances.size() ? chunk.built(level + 1) : nullptr) {
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

/// Looks what the frame shows, and whether that has changed.
void OverlayLayer::find(const Camera& camera, double pixelRatio, bool moving) {
    // Wide lines and dots reach into the view.
    constexpr double kMargin = 256.0;
    const double aside = kMargin / camera.width();
    const double above = kMargin / camera.height();
    const ViewVolume view(camera, {-aside, -above, 1.0 + aside, 1.0 + above});
    const Detail detail(camera, pixelRatio);
    // What is quickly worked out is never left for later.
    const bool rough = moving && seenSegments_ >= kRoughSegments;
    rough_ = false;
    seen_.clear();
    seesLinesOnly_ = true;
    seenSegments_ = 0;
    widestSeen_ = 0.0;
    for (Spot& spot : spots_) {
        if (!spot.chunk) continue;
        Level* const level = spot.shown && (!spot.placed || view.mayShow(spot.ball))
                                 ? prepare(spot, detail, view, rough)
                                 : nullptr;
        const auto drawn = static_cast<std::int8_t>(level ? static_cast<int>(level->number) : -1);
        if (const auto before = std::exchange(spot.drawn, drawn); before != drawn) {
            if (before >= 0) noteChange(spot.chunk->built(static_cast<std::size_t>(before)));
            if (level) noteChange(level);
        }
        if (!level) continue;
        seen_.push_back({&spot, level});
        seesLinesOnly_ = seesLinesOnly_ && level->hasLinesOnly();
        seenSegments_ += level->segments;
        widestSeen_ = std::max(widestSeen_, level->widest);
    }
}

void OverlayLayer::draw(const Camera& camera, double pixelRatio, bool moving, Slice working) {
    working_ = working;
    late_ = partial_ = false;
    if (raster_ && !raster_->keepsFor(camera, pixelRatio)) allChanged_ = true;
    find(camera, pixelRatio, moving && raster_);
    for (const auto* program : {&lineProgram_, &meshProgram_, &pictureProgram_})
        if (!(*program)->isLinked()) return;
    glEnable(GL_BLEND);
    setBlending();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    if (raster_ && seesLinesOnly_ && seenSegments_ >= kManySegments) {
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
    if (!allChanged_ && raster_->resume(camera, pixelRatio, quality)) {
        for (const QRect& part : changed_) {
            raster_->redraw(part);
            const double margin = 0.5 * widestSeen_ * pixelRatio + 2.0;
            const double width = camera.width() * pixelRatio;
            const double height = camera.height() * pixelRatio;
            const ViewVolume view(
                camera, {(part.left() - margin) / width, (part.top() - margin) / height,
                         (part.right() + 1 + margin) / width, (part.bottom() + 1 + margin) / height});
            for (const auto& [spot, level] : seen_)
                if (view.mayShow(spot->ball))
                    for (const DrawList::Line& line : level->lines) raster_->draw(line);
        }
    } else {
        raster_->begin(camera, pixelRatio, quality);
        for (const auto& [spot, level] : seen_)
            for (const DrawList::Line& line : level->lines) raster_->draw(line);
    }
    raster_->composeAndKeep();
    changed_.clear();
    allChanged_ = false;
}

void OverlayLayer::drawInOrder(const Camera& camera, double pixelRatio) {
    if (seen_.empty()) return;
    meshProgram_->bind();
    setCamera(*meshProgram_, camera);
    pictureProgram_->bind();
    setCamera(*pictureProgram_, camera);
    pictureProgram_->setUniformValue("picture", 0);
    pictureProgram_->release();
    areaMark_ = 0;
    bodies_.clear();
    // Entries that are nothing but lines are drawn together: with a shape an entry, as editors load them, it
    // is what precedes and follows the drawing that costs.
    std::vector<Level*> lines;
    const auto drawWaiting = [&] {
        if (!lines.empty()) drawLevels(lines, camera, pixelRatio);
        lines.clear();
    };
    std::vector<Level*> levels;
    for (auto seen = seen_.begin(); seen != seen_.end();) {
        levels.clear();
        for (const OverlayScene::Id id = seen->spot->id; seen != seen_.end() && seen->spot->id == id; ++seen)
            levels.push_back(seen->level);
        if (std::ranges::all_of(levels, &Level::hasLinesOnly)) {
            lines.insert(lines.end(), levels.begin(), levels.end());
        } else {
            drawWaiting();
            drawLevels(levels, camera, pixelRatio);
        }
    }
    drawWaiting();
    if (raster_) raster_->compose();
}

void OverlayLayer::drawPictures(const std::vector<Level*>& levels) {
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    pictureProgram_->bind();
    for (int i = 0; i < 3; ++i) pictureProgram_->enableAttributeArray(i);
    for (Level* level : levels)
        if (level->has(&Level::Others::pictures)) level->others->pictures.draw(*pictureProgram_);
    for (int i = 0; i < 3; ++i) pictureProgram_->disableAttributeArray(i);
    pictureProgram_->release();
    setBlending();
}

template <typename Batch>
void OverlayLayer::drawAreas(const std::vector<Level*>& levels, Batch batch) {
    glDepthMask(GL_FALSE);
    meshProgram_->setUniformValue("solid", false);
    // Triangles under a curved surface may lie before each other at a flat angle: the stencil lets each
    // area colour a pixel once only.
    glEnable(GL_STENCIL_TEST);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    const auto beginArea = [this] {
        if (++areaMark_ > 255) {
            glClear(GL_STENCIL_BUFFER_BIT);
            areaMark_ = 1;
        }
        glStencilFunc(GL_NOTEQUAL, areaMark_, 0xff);
    };
    for (Level* level : levels)
        if (level->has(batch)) {
            glStencilFunc(GL_ALWAYS, 0, 0xff);
            ((*level->others).*batch).draw(*meshProgram_, beginArea);
        }
    glDisable(GL_STENCIL_TEST);
}

void OverlayLayer::drawSolids(const std::vector<Level*>& levels) {
    glDepthMask(GL_TRUE);
    glEnable(GL_CULL_FACE);
    glEnable(GL_POLYGON_OFFSET_FILL);
    meshProgram_->setUniformValue("solid", true);
    glPolygonOffset(1.0F, 1.0F);
    for (Level* level : levels)
        if (level->has(&Level::Others::solids)) level->others->solids.draw(*meshProgram_, [] {});
    // Towards their rim the faces of round bodies are ever steeper. Put back by their slope, each would let
    // through the line on the far side.
    glPolygonOffset(0.0F, 1.0F);
    for (Level* level : levels)
        if (level->has(&Level::Others::roundSolids)) level->others->roundSolids.draw(*meshProgram_, [] {});
    glDisable(GL_CULL_FACE);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

void OverlayLayer::drawLevels(const std::vector<Level*>& levels, const Camera& camera, double pixelRatio) {
    const auto any = [&](auto batch) {
        return std::ranges::any_of(levels, [&](const Level* level) { return level->has(batch); });
    };
    const bool pictures = any(&Level::Others::pictures);
    const bool meshes = any(&Level::Others::areas) || any(&Level::Others::solids) ||
                        any(&Level::Others::roundSolids) || any(&Level::Others::areasOverBodies);
    if (raster_ && (pictures || meshes)) raster_->compose();
    std::ranges::copy_if(levels, std::back_inserter(bodies_), &Level::hasBodies);
    if (pictures) drawPictures(levels);
    if (meshes) {
        meshProgram_->bind();
        for (int i = 0; i < MeshBatch::kAttributes; ++i) meshProgram_->enableAttributeArray(i);
        drawAreas(levels, &Level::Others::areas);
        drawSolids(levels);
        glDisable(GL_DEPTH_TEST);
        drawAreas(levels, &Level::Others::areasOverBodies);
        glEnable(GL_DEPTH_TEST);
        for (int i = 0; i < MeshBatch::kAttributes; ++i) meshProgram_->disableAttributeArray(i);
        meshProgram_->release();
    }
    glDepthMask(GL_FALSE);
    drawLines(levels, camera, pixelRatio);
}

void OverlayLayer::drawLines(const std::vector<Level*>& levels, const Camera& camera, double pixelRatio) {
    const auto isFree = [&](const Level* level) {
        const double pixels = 0.5 * level->widest + 2.0;
        const double margin = pixels * 2.0 * camera.tanHalfHeight() / camera.height();
        return std::ranges::none_of(bodies_, [&](const Level* body) {
            return body->bounds.meets(level->bounds, camera.eye(), margin);
        });
    };
    std::size_t freeSegments = 0;
    std::vector<const Level*> free;
    if (raster_)
        for (const Level* level : levels)
            if (level->segments > 0 && isFree(level)) {
                freeSegments += level->segments;
                free.push_back(level);
            }
    const bool inMemory = raster_ && (freeSegments >= kManySegments || !raster_->empty());
    bool onCard = false;
    auto nextFree = free.begin();
    for (Level* level : levels) {
        if (level->segments == 0) continue;
        const bool isNextFree = nextFree != free.end() && *nextFree == level;
        nextFree += isNextFree ? 1 : 0;
        if (inMemory && isNextFree) {
            if (onCard) LineBatch::endDrawing(*lineProgram_);
            onCard = false;
            for (const DrawList::Line& line : level->lines) raster_->draw(line);
            continue;
        }
        if (!onCard) {
            if (raster_) raster_->compose();
            LineBatch::beginDrawing(*lineProgram_, camera, pixelRatio);
            onCard = true;
        }
        if (!level->lineBatch) {
            level->lineBatch = std::make_unique<LineBatch>();
            level->lineBatch->upload(level->lines);
            if (!raster_) level->lines = {};
        }
        level->lineBatch->draw();
    }
    if (onCard) LineBatch::endDrawing(*lineProgram_);
}

}  // namespace sandbox
