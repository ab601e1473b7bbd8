#include "globe/OverlayLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>

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
    bool outside(const Camera& camera, double marginPixels) const {
        if (empty()) return true;
        const Ecef center = (low_ + high_) * 0.5;
        const double radius = length(high_ - low_) * 0.5;
        if (isBeyondHorizon(camera, center, radius)) return true;
        const Ecef v = center - camera.eye();
        const double ahead = -dot(v, camera.back());
        if (ahead + radius < 0.0) return true;
        const auto beyond = [&](double sideways, double tangent) {
            const double slope = tangent * (1.0 + 2.0 * marginPixels / camera.height());
            return std::abs(sideways) - ahead * slope > radius * std::sqrt(1.0 + slope * slope);
        };
        return beyond(dot(v, camera.right()), camera.tanHalfWidth()) ||
               beyond(dot(v, camera.up()), camera.tanHalfHeight());
    }

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
    /// Whether the earth, even one that is nowhere larger than at its poles, hides a whole ball. Counts
    /// angles at the earth's centre: to the horizon, and from there as far as the ball's highest point can be
    /// seen.
    static bool isBeyondHorizon(const Camera& camera, const Ecef& center, double radius) {
        const double distance = length(center);
        if (distance <= radius) return false;
        const double eye = std::max(length(camera.eye()), wgs84::b);
        const double angle = std::acos(std::clamp(dot(camera.eye(), center) / (eye * distance), -1.0, 1.0));
        const double horizon = std::acos(wgs84::b / eye);
        const double highest = std::acos(wgs84::b / std::max(distance + radius, wgs84::b));
        return angle - std::asin(radius / distance) > horizon + highest;
    }

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

}  // namespace

struct OverlayLayer::Level {
    PictureBatch pictures;
    MeshBatch areas;
    MeshBatch solids;
    MeshBatch roundSolids;
    MeshBatch areasOverBodies;
    std::vector<DrawList::Line> lines;
    LineBatch lineBatch;  ///< the same on the card, once they are drawn there
    std::size_t segments = 0;
    double widest = 0.0;  ///< of the lines, in widget pixels
    Bounds bounds;

    bool hasBodies() const { return !solids.empty() || !roundSolids.empty(); }
    bool hasLinesOnly() const {
        return pictures.empty() && areas.empty() && areasOverBodies.empty() && !hasBodies();
    }

    Level(DrawList& list, PictureTextures& textures) {
        pictures.upload(list, textures);
        for (const DrawList::Mesh& mesh : list.meshes) {
            if (mesh.solid)
                (mesh.normals.empty() ? solids : roundSolids).add(mesh);
            else
                (mesh.overBodies ? areasOverBodies : areas).add(mesh);
        }
        for (MeshBatch* batch : {&areas, &solids, &roundSolids, &areasOverBodies}) batch->upload();
        lines = std::move(list.lines);
        for (const DrawList::Line& line : lines) {
            segments += line.points.size();
            widest = std::max(widest, double{line.width});
        }
    }
};

/// Some of an entry's shapes that follow each other.
struct OverlayLayer::Chunk {
    std::vector<std::size_t> shapes;  ///< of the entry, in drawing order
    Bounds bounds;
    std::size_t boundsLevel = kTolerances.size();  ///< the level that the bounds are from
    /// That in use and, once it has been built, the next finer and coarser one.
    std::array<std::unique_ptr<Level>, kTolerances.size()> levels;
    std::vector<DrawList::Label> labels;

    /// The coarsest level that the view cannot tell from the truth.
    std::size_t wanted(const Camera& camera, double pixelRatio) const {
        const double above = std::max(10.0, 0.5 * std::min(camera.range(), camera.eyePosition().alt()));
        const double distance = std::max(above, bounds.distanceFrom(camera.eye()));
        const double pixel = 2.0 * distance * camera.tanHalfHeight() / (camera.height() * pixelRatio);
        std::size_t level = kTolerances.size() - 1;
        while (level > 0 && kTolerances[level] > kSlack * pixel) --level;
        return level;
    }

    void build(const OverlayScene::Entry& entry, std::size_t level, PictureTextures& textures) {
        if (levels[level]) return;
        DrawList list;
        for (const std::size_t i : shapes)
            appendGeometry(*entry.shapes[i], entry.reference, kTolerances[level], list);
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
        for (std::size_t i = 0; i < levels.size(); ++i)
            if (i + 1 < level || i > level + 1) levels[i].reset();
        levels[level] = std::make_unique<Level>(list, textures);
        levels[level]->bounds = box;
        labels = std::move(list.labels);
    }
};

struct OverlayLayer::Item {
    const OverlayScene::Entry* entry = nullptr;  ///< as update() has found it
    std::uint64_t revision = 0;
    std::vector<Chunk> chunks;

    Item(const OverlayScene::Entry& entry, PictureTextures& textures) : revision(entry.revision) {
        std::size_t total = 0;
        for (const auto& shape : entry.shapes) total += shape ? roughSize(*shape) : 0;
        const std::size_t enough = std::min(kChunkSize, total / kChunks);
        std::size_t size = 0;
        for (const std::size_t i : drawingOrder(entry.shapes)) {
            const std::size_t more = roughSize(*entry.shapes[i]);
            if (chunks.empty() || size + more > enough) {
                chunks.emplace_back();
                size = 0;
            }
            size += more;
            chunks.back().shapes.push_back(i);
        }
        for (Chunk& chunk : chunks) chunk.build(entry, kTolerances.size() - 1, textures);
    }
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
    // Both are in the order of the ids: with very many entries a search for each would cost more than the
    // rest.
    auto item = items_.begin();
    for (const auto& [id, entry] : scene.entries()) {
        while (item != items_.end() && item->first < id) item = items_.erase(item);
        const bool known = item != items_.end() && item->first == id;
        if (entry.shown && !(known && item->second->revision == entry.revision)) {
            auto made = std::make_unique<Item>(entry, *textures_);
            item = known ? item : items_.try_emplace(item, id);
            item->second = std::move(made);
        } else if (!known) {
            continue;
        }
        item->second->entry = &entry;
        ++item;
    }
    items_.erase(item, items_.end());
}

std::vector<const DrawList::Label*> OverlayLayer::labels() const {
    std::vector<const DrawList::Label*> result;
    for (const auto& [id, item] : items_) {
        if (!item->entry->shown) continue;
        for (const Chunk& chunk : item->chunks)
            for (const DrawList::Label& label : chunk.labels) result.push_back(&label);
    }
    return result;
}

void OverlayLayer::draw(const Camera& camera, double pixelRatio) {
    if (items_.empty()) return;
    for (const auto* program : {&lineProgram_, &meshProgram_, &pictureProgram_})
        if (!(*program)->isLinked()) return;
    meshProgram_->bind();
    setCamera(*meshProgram_, camera);
    pictureProgram_->bind();
    setCamera(*pictureProgram_, camera);
    pictureProgram_->setUniformValue("picture", 0);
    pictureProgram_->release();

    glEnable(GL_BLEND);
    setBlending();
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    areaMark_ = 0;
    bodies_.clear();
    if (raster_) raster_->begin(camera, pixelRatio);
    constexpr double kMargin = 256.0;  // wide lines and dots reach into the view
    std::vector<Level*> levels;
    // Entries that are nothing but lines are drawn together: with a shape an entry, as editors load them, it
    // is what precedes and follows the drawing that costs.
    std::vector<Level*> lines;
    const auto drawWaiting = [&] {
        if (!lines.empty()) drawLevels(lines, camera, pixelRatio);
        lines.clear();
    };
    for (const auto& [id, item] : items_) {
        const OverlayScene::Entry& entry = *item->entry;
        if (!entry.shown) continue;
        levels.clear();
        for (Chunk& chunk : item->chunks) {
            if (chunk.bounds.outside(camera, kMargin)) continue;
            std::size_t level = chunk.wanted(camera, pixelRatio);
            chunk.build(entry, level, *textures_);
            // With its tighter box the chunk may turn out to be farther away, or out of view.
            if (chunk.bounds.outside(camera, kMargin)) continue;
            levels.push_back(chunk.levels[level].get());
        }
        if (std::ranges::all_of(levels, &Level::hasLinesOnly)) {
            lines.insert(lines.end(), levels.begin(), levels.end());
        } else {
            drawWaiting();
            drawLevels(levels, camera, pixelRatio);
        }
    }
    drawWaiting();
    if (raster_) raster_->compose();
    glDepthMask(GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
}

void OverlayLayer::drawPictures(const std::vector<Level*>& levels) {
    glDepthMask(GL_FALSE);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    pictureProgram_->bind();
    for (int i = 0; i < 3; ++i) pictureProgram_->enableAttributeArray(i);
    for (Level* level : levels)
        if (!level->pictures.empty()) level->pictures.draw(*pictureProgram_);
    for (int i = 0; i < 3; ++i) pictureProgram_->disableAttributeArray(i);
    pictureProgram_->release();
    setBlending();
}

void OverlayLayer::drawAreas(const std::vector<Level*>& levels, MeshBatch Level::*batch) {
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
        if (!(level->*batch).empty()) {
            glStencilFunc(GL_ALWAYS, 0, 0xff);
            (level->*batch).draw(*meshProgram_, beginArea);
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
        if (!level->solids.empty()) level->solids.draw(*meshProgram_, [] {});
    // Towards their rim the faces of round bodies are ever steeper. Put back by their slope, each would let
    // through the line on the far side.
    glPolygonOffset(0.0F, 1.0F);
    for (Level* level : levels)
        if (!level->roundSolids.empty()) level->roundSolids.draw(*meshProgram_, [] {});
    glDisable(GL_CULL_FACE);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

void OverlayLayer::drawLevels(const std::vector<Level*>& levels, const Camera& camera, double pixelRatio) {
    const auto any = [&](auto Level::*batch) {
        return std::ranges::any_of(levels, [&](const Level* level) { return !(level->*batch).empty(); });
    };
    const bool pictures = any(&Level::pictures);
    const bool meshes =
        any(&Level::areas) || any(&Level::solids) || any(&Level::roundSolids) || any(&Level::areasOverBodies);
    if (raster_ && (pictures || meshes)) raster_->compose();
    std::ranges::copy_if(levels, std::back_inserter(bodies_), &Level::hasBodies);
    if (pictures) drawPictures(levels);
    if (meshes) {
        meshProgram_->bind();
        for (int i = 0; i < MeshBatch::kAttributes; ++i) meshProgram_->enableAttributeArray(i);
        drawAreas(levels, &Level::areas);
        drawSolids(levels);
        glDisable(GL_DEPTH_TEST);
        drawAreas(levels, &Level::areasOverBodies);
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
        if (level->lineBatch.empty()) {
            level->lineBatch.upload(level->lines);
            if (!raster_) level->lines = {};
        }
        level->lineBatch.draw();
    }
    if (onCard) LineBatch::endDrawing(*lineProgram_);
}

}  // namespace sandbox
