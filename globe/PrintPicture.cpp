#include "globe/PrintPicture.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "format/ZelShapes.h"
#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "globe/BaseMap.h"
#include "globe/Camera.h"
#include "globe/DepthMap.h"
#include "globe/DetailBudget.h"
#include "globe/Graticule.h"
#include "globe/IconReading.h"
#include "globe/OverlayScene.h"
#include "globe/ScaleBar.h"
#include "globe/ShapeGeometry.h"
#include "globe/Sprites.h"
#include "globe/SvgDevice.h"
#include "globe/TextLayout.h"

namespace sandbox {

using halCore::Ecef;

namespace {

QColor qColor(const Rgba& c) {
    return {c.r, c.g, c.b, c.a};
}

/// The edges of triangles that cover an area without overlaps: what two of them share, cancels out. The rest
/// makes closed rings.
class Outline {
  public:
    void addTriangle(QPointF a, QPointF b, QPointF c) {
        const double area = (b.x() - a.x()) * (c.y() - a.y()) - (c.x() - a.x()) * (b.y() - a.y());
        if (area < 0.0) std::swap(b, c);
        addEdge(rounded(a), rounded(b));
        addEdge(rounded(b), rounded(c));
        addEdge(rounded(c), rounded(a));
    }
    QPainterPath path() {
        QPainterPath result;
        result.setFillRule(Qt::WindingFill);
        while (!edges_.empty()) {
            const Place start = edges_.begin()->first;
            result.moveTo(point(start));
            for (std::optional<Place> next = take(start); next && *next != start; next = take(*next))
                result.lineTo(point(*next));
            result.closeSubpath();
        }
        return result;
    }

  private:
    using Place = std::pair<int, int>;  // hundredths of a pixel
    static constexpr double kUnit = 100.0;

    static Place rounded(const QPointF& p) {
        constexpr double kFarthest = 1.0e7;
        return {static_cast<int>(std::lround(std::clamp(p.x() * kUnit, -kFarthest, kFarthest))),
                static_cast<int>(std::lround(std::clamp(p.y() * kUnit, -kFarthest, kFarthest)))};
    }
    static QPointF point(const Place& p) { return {p.first / kUnit, p.second / kUnit}; }
    void addEdge(const Place& from, const Place& to) {
        if (from == to) return;
        const auto [first, last] = edges_.equal_range(to);
        const auto opposite =
            std::find_if(first, last, [&](const auto& edge) { return edge.second == from; });
        if (opposite != last)
            edges_.erase(opposite);
        else
            edges_.emplace(from, to);
    }
    std::optional<Place> take(const Place& from) {
        const auto found = edges_.find(from);
        if (found == edges_.end()) return std::nullopt;
        const Place to = found->second;
        edges_.erase(found);
        return to;
    }

    std::multimap<Place, Place> edges_;
};

class Printer {
  public:
    Printer(const Camera& camera, QPainter& painter) : camera_(camera), painter_(painter), bodies_(camera) {}

    void draw(const OverlayScene& scene) {
        const double tolerance = 0.15 * camera_.metersPerPixel();
        DetailBudget budget;
        for (const auto& [id, entry] : scene.entries()) {
            if (!entry.shown) continue;
            Upper upper;
            for (const auto& shape : entry.shapes) {
                if (!shape) continue;
                DrawList list;
                appendGeometry(*shape, entry.reference, tolerance, list, budget.shares());
                budget.spend(detailOf(*shape, list.meshes, list.lines));
                drawLowest(list, upper);
                for (DrawList::Label& label : list.labels) {
                    if (!camera_.project(label.position).visible) continue;
                    if (!label.icon.path.empty()) label.icon = findPicture(label.icon.path, entry.directory);
                    labels_.push_back(std::move(label));
                }
            }
            draw(upper);
        }
    }
    void draw(DrawList list) {
        Upper upper;
        drawLowest(list, upper);
        draw(upper);
    }
    const std::deque<DrawList::Label>& labels() const { return labels_; }
    void drawTexts(const std::vector<TextLayout::Text>& texts) {
        for (const auto& [x, y, text, look] : texts) drawText({x, y}, text, look);
    }
    void drawLabels(const TextLayout& layout) {
        for (const auto& [label, x, y] : layout.labels) {
            const QString text = QString::fromStdString(label->text);
            if (label->icon.path.empty()) {
                drawText({x, y}, text, lookOf(*label));
                continue;
            }
            constexpr double kGap = 3.0;
            QImage icon;
            readIcon(label->icon, 1.0, icon).finish();
            painter_.drawImage(QPointF(x - icon.width() / 2.0, y - icon.height() / 2.0), icon);
            drawText({x + icon.width() / 2.0 + kGap, y}, text, lookOf(*label), false);
        }
        for (const auto& [x, y, turn, isCross] : layout.platforms) {
            const QTransform before = painter_.transform();
            painter_.translate(x, y);
            painter_.scale(layout.symbolScale, layout.symbolScale);
            paintSymbol(painter_, isCross, turn / halCore::kRadiansPerDegree);
            painter_.setTransform(before);
        }
        const TextLook look = platformLook();
        const double middle = TextLayout::Platform::kNameY + QFontMetricsF(look.font).lineSpacing() / 2.0;
        for (const auto& [x, y, name] : layout.names)
            drawText({x + TextLayout::Platform::kNameX, y + middle}, QString::fromStdString(name), look,
                     false);
        drawTexts(layout.counts);
    }
    void drawText(const QPointF& place, const QString& text, const TextLook& look, bool centered = true) {
        const QFontMetricsF metrics(look.font);
        const QStringList lines = text.split(QLatin1Char('\n'));
        double width = 0.0;
        for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
        const double left = centered ? place.x() - width / 2 : place.x();
        double baseline =
            place.y() - metrics.lineSpacing() * static_cast<double>(lines.size()) / 2 + metrics.ascent();
        for (const QString& line : lines) {
            paintTextLine(painter_, {left, baseline}, line, look);
            baseline += metrics.lineSpacing();
        }
    }

  private:
    /// What lies on top of all areas that bodies hide, and waits until these are drawn.
    struct Upper {
        std::deque<DrawList::Mesh> meshes;
        std::deque<DrawList::Line> lines;
    };

    void drawLowest(DrawList& list, Upper& upper) {
        for (DrawList::Mesh& mesh : list.meshes)
            if (mesh.solid || mesh.overBodies)
                upper.meshes.push_back(std::move(mesh));
            else
                drawArea(mesh);
        // What the earth hides of its far half is convex: nothing between points there is seen.
        const Ecef up = toUnitSphere(camera_.eye());
        const auto isHidden = [&](const Ecef& p) {
            return dot(toUnitSphere(p), up) < 0.0 && isHiddenByEarth(camera_.eye(), p);
        };
        for (DrawList::Line& line : list.lines)
            if (!std::ranges::all_of(line.points, isHidden)) upper.lines.push_back(std::move(line));
    }
    void draw(const Upper& upper) {
        drawBodies(upper.meshes);
        for (const DrawList::Mesh& mesh : upper.meshes)
            if (!mesh.solid) drawArea(mesh);
        for (const DrawList::Line& line : upper.lines) drawLine(line);
    }

    bool isSeen(const Ecef& p) const {
        return dot(p - camera_.eye(), camera_.back()) < 0.0 && !isHiddenByEarth(camera_.eye(), p);
    }
    QPointF pixel(const Ecef& p) const {
        const Projected place = camera_.project(p);
        return {place.x, place.y};
    }
    bool reachesIn(const QRectF& box) const {
        return box.left() < camera_.width() + 50.0 && box.right() > -50.0 &&
               box.top() < camera_.height() + 50.0 && box.bottom() > -50.0;
    }
    /// Where sight ends on the way from what is seen to what is not.
    Ecef lastSeen(Ecef seen, Ecef hidden, const std::function<bool(const Ecef&)>& sees) const {
        for (int i = 0; i < 24; ++i) {
            const Ecef middle = (seen + hidden) * 0.5;
            (sees(middle) ? seen : hidden) = middle;
        }
        return seen;
    }

    void drawArea(const DrawList::Mesh& mesh) {
        const auto sees = [this](const Ecef& p) { return isSeen(p); };
        std::vector<bool> seen(mesh.vertices.size());
        for (std::size_t i = 0; i < seen.size(); ++i) seen[i] = sees(mesh.vertices[i]);
        Outline outline;
        std::vector<QPointF> part;
        for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
            part.clear();
            for (std::size_t k = 0; k < 3; ++k) {
                const std::size_t from = mesh.triangles[i + k];
                const std::size_t to = mesh.triangles[i + (k + 1) % 3];
                if (seen[from]) part.push_back(pixel(mesh.vertices[from]));
                if (seen[from] != seen[to])
                    part.push_back(pixel(seen[from]
                                             ? lastSeen(mesh.vertices[from], mesh.vertices[to], sees)
                                             : lastSeen(mesh.vertices[to], mesh.vertices[from], sees)));
            }
            for (std::size_t k = 2; k < part.size(); ++k) outline.addTriangle(part[0], part[k - 1], part[k]);
        }
        const QPainterPath path = outline.path();
        if (!path.isEmpty() && reachesIn(path.boundingRect())) painter_.fillPath(path, qColor(mesh.color));
    }

    /// What is painted together: an area, and more on top of it.
    struct Face {
        double depth = 0.0;
        std::vector<std::pair<QColor, QPainterPath>> layers;
    };
    /// The triangles of a body that are equally bright.
    struct Shade {
        std::vector<std::array<QPointF, 3>> triangles;
        double depths = 0.0;  ///< the sum of their distances

        QPainterPath path() const {
            Outline outline;
            for (const auto& [a, b, c] : triangles) outline.addTriangle(a, b, c);
            return outline.path();
        }
    };
    /// The darkest first, by their brightness in steps of 1 / kShades.
    using Shades = std::map<int, Shade>;

    /// The faces that look at the eye, by the light of the view.
    Shades shadesOf(const DrawList::Mesh& mesh) const {
        const Ecef sight = normalized(mesh.vertices.front() - camera_.eye());
        const Ecef light = normalized(normalized(toUnitSphere(camera_.eye())) - sight * 0.6);
        Shades shades;
        for (std::size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
            const Ecef& a = mesh.vertices[mesh.triangles[i]];
            const Ecef& b = mesh.vertices[mesh.triangles[i + 1]];
            const Ecef& c = mesh.vertices[mesh.triangles[i + 2]];
            const Ecef toFace = (a + b + c) * (1.0 / 3.0) - camera_.eye();
            const Ecef normal = normalized(cross(b - a, c - a));
            if (dot(normal, toFace) >= 0.0 || !isSeen(a) || !isSeen(b) || !isSeen(c)) continue;
            Shade& shade = shades[static_cast<int>(std::lround(std::abs(dot(normal, light)) * kShades))];
            shade.triangles.push_back({pixel(a), pixel(b), pixel(c)});
            shade.depths += length(toFace);
        }
        return shades;
    }
    static double brightness(int shade) { return 0.55 + 0.45 * shade / kShades; }
    static QColor lit(const Rgba& color, double brightness) {
        const auto part = [&](std::uint8_t v) { return static_cast<int>(std::lround(v * brightness)); };
        return {part(color.r), part(color.g), part(color.b), color.a};
    }
    static double meanDepth(const Shade& shade) {
        return shade.depths / static_cast<double>(shade.triangles.size());
    }

    /// A round body: all of it in its brightest colour, then shade upon shade what is darker. Nothing has a
    /// neighbour, so no seam can shine through.
    static Face roundFace(Shades shades, const Rgba& color) {
        Face face;
        double before = 1.0;
        std::size_t count = 0;
        for (const auto& [at, shade] : shades) {
            face.depth += shade.depths;
            count += shade.triangles.size();
        }
        face.depth /= static_cast<double>(std::max<std::size_t>(count, 1));
        while (!shades.empty()) {
            const auto brightest = std::prev(shades.end());
            // What is translucent is darkened by as much of the shade as it has colour.
            const double left = 1.0 - (1.0 - brightness(brightest->first)) * color.a / 255.0;
            Shade all;
            for (const auto& [at, shade] : shades)
                all.triangles.insert(all.triangles.end(), shade.triangles.begin(), shade.triangles.end());
            const bool opaque = color.a == 255;
            face.layers.emplace_back(
                opaque || face.layers.empty()
                    ? lit(color, brightness(brightest->first))
                    : QColor::fromRgbF(0.0F, 0.0F, 0.0F, static_cast<float>(1.0 - left / before)),
                all.path());
            before = left;
            shades.erase(brightest);
        }
        return face;
    }

    /// The farthest first.
    void drawBodies(const std::deque<DrawList::Mesh>& meshes) {
        std::vector<Face> faces;
        for (const DrawList::Mesh& mesh : meshes) {
            if (!mesh.solid || mesh.vertices.empty()) continue;
            bodies_.add(mesh);
            Shades shades = shadesOf(mesh);
            if (!mesh.normals.empty()) {
                faces.push_back(roundFace(std::move(shades), mesh.color));
                continue;
            }
            for (const auto& [at, shade] : shades)
                faces.push_back({meanDepth(shade), {{lit(mesh.color, brightness(at)), shade.path()}}});
        }
        std::erase_if(faces, [this](const Face& face) {
            return face.layers.empty() || !reachesIn(face.layers.front().second.boundingRect());
        });
        std::ranges::stable_sort(faces, std::ranges::greater(), &Face::depth);
        for (const Face& face : faces) {
            for (const auto& [color, path] : face.layers) {
                // Flat neighbours overlap by a hair: no background shines through between them.
                const bool overlaps = face.layers.size() == 1 && color.alpha() == 255;
                painter_.setPen(overlaps ? QPen(color, 0.5) : QPen(Qt::NoPen));
                painter_.setBrush(color);
                painter_.drawPath(path);
            }
        }
        painter_.setBrush(Qt::NoBrush);
    }

    void drawLine(const DrawList::Line& line) {
        const auto sees = [&](const Ecef& p) { return isSeen(p) && (line.overBodies || !bodies_.hides(p)); };
        if (line.points.size() == 1) {
            if (!sees(line.points.front())) return;
            painter_.setPen(Qt::NoPen);
            painter_.setBrush(qColor(line.color));
            painter_.drawEllipse(pixel(line.points.front()), line.width / 2.0, line.width / 2.0);
            painter_.setBrush(Qt::NoBrush);
            return;
        }
        QPainterPath path;
        std::optional<Ecef> before;
        bool sawBefore = false;
        const auto look = [&](const Ecef& p) {
            const bool seesIt = sees(p);
            if (before && seesIt && !sawBefore) path.moveTo(pixel(lastSeen(p, *before, sees)));
            if (before && !seesIt && sawBefore) path.lineTo(pixel(lastSeen(*before, p, sees)));
            before = p;
            sawBefore = seesIt;
        };
        const std::size_t count = line.points.size() + (line.closed ? 1 : 0);
        for (std::size_t i = 0; i < count; ++i) {
            const Ecef next = line.points[i % line.points.size()];
            const bool starts = i == 0;
            // Long pieces past a body, or the earth, are looked at more closely. A straight piece stays
            // straight in the picture: of the places between only those count where sight changes.
            if (!starts && !line.overBodies) {
                const double pixels =
                    std::hypot(pixel(next).x() - pixel(*before).x(), pixel(next).y() - pixel(*before).y());
                const int pieces = static_cast<int>(std::clamp(pixels / 4.0, 1.0, 400.0));
                const Ecef start = *before;
                for (int k = 1; k < pieces; ++k)
                    look(start + (next - start) * (static_cast<double>(k) / pieces));
            }
            look(next);
            if (!sawBefore) continue;
            if (starts)
                path.moveTo(pixel(next));
            else
                path.lineTo(pixel(next));
        }
        if (path.isEmpty() || !reachesIn(path.boundingRect())) return;
        // Equal pens in a row are written once; QPainter::strokePath would set them back each time.
        painter_.setPen(penOf(line));
        painter_.drawPath(path);
    }

    static QPen penOf(const DrawList::Line& line) {
        const double width = line.width;
        QPen pen(qColor(line.color), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        if (line.stroke == Stroke::Solid) return pen;
        // In widths of the pen; the same periods as on the screen.
        const bool dotted = line.stroke == Stroke::Dotted;
        const double period = (dotted ? width + 4.0 : 2.0 * width + 10.0) / width;
        pen.setDashPattern(dotted ? QList<qreal>{0.001, period} : QList<qreal>{0.6 * period, 0.4 * period});
        if (!dotted) pen.setCapStyle(Qt::FlatCap);
        return pen;
    }

    static constexpr double kShades = 32.0;

    const Camera& camera_;
    QPainter& painter_;
    DepthMap bodies_;
    std::deque<DrawList::Label> labels_;
};

void printScaleBar(const Camera& camera, Printer& printer, QPainter& painter) {
    const TextLook look{fontForFile(QStringLiteral("arial.ttf"), 11), 0xd0ffffff, 0xa0000000, 1};
    const ScaleBar bar = scaleBar(camera, ScaleBar::kMostPixels);
    const QPointF right(camera.width() - ScaleBar::kMargin, camera.height() - ScaleBar::kMargin);
    const QPointF left = right - QPointF(bar.pixels, 0.0);
    const QPointF tick(0.0, -5.0);
    for (const auto& [width, color] :
         {std::pair{4.0, QColor(0, 0, 0, 150)}, std::pair{2.0, QColor(Qt::white)}}) {
        painter.setPen(QPen(color, width));
        painter.drawPolyline(QPolygonF({left + tick, left, right, right + tick}));
    }
    printer.drawText((left + right) / 2.0 - QPointF(0.0, 13.0), QString::fromStdString(bar.text), look);
}

}  // namespace

OverlayScene picturesOf(const OverlayScene& scene) {
    OverlayScene pictures;
    for (const auto& [id, entry] : scene.entries()) {
        OverlayScene::Shapes shapes;
        for (const auto& shape : entry.shapes)
            if (shape && shape->shapeType() == halCore::ZEL::ShapeType::ImageOverlay) shapes.push_back(shape);
        if (!shapes.empty()) pictures.add(std::move(shapes), entry.reference, entry.shown, entry.directory);
    }
    return pictures;
}

bool printPicture(const GlobeFrame& frame, const QImage& ground, QIODevice& device) {
    const Camera& camera = frame.camera;
    SvgDevice drawing(device, QSize(camera.width(), camera.height()), QStringLiteral("Overlays"));
    QPainter painter;
    if (!painter.begin(&drawing)) return false;
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF all(0, 0, camera.width(), camera.height());
    if (!frame.backdrop.earth && frame.backdrop.color.alpha() > 0)
        painter.fillRect(all, frame.backdrop.color);
    if (!ground.isNull()) painter.drawImage(all, ground);

    Printer printer(camera, painter);
    DrawList map;
    map.lines = BaseMap::lines(camera, frame.map);
    printer.draw(std::move(map));
    std::vector<GraticuleLabel> graticule;
    if (frame.map.graticule) {
        const GraticuleGrid grid = graticuleGrid(camera);
        DrawList lines;
        lines.lines = graticuleLines(grid);
        printer.draw(std::move(lines));
        graticule = graticuleLabels(grid, camera);
    }
    printer.draw(frame.overlays);
    std::vector<const DrawList::Label*> labels;
    for (const DrawList::Label& label : printer.labels()) labels.push_back(&label);
    const TextLayout layout = layOutTexts(frame, labels, graticule);
    printer.drawTexts(layout.map);
    if (frame.map.scaleBar) printScaleBar(camera, printer, painter);
    printer.drawLabels(layout);
    return painter.end();
}

}  // namespace sandbox
