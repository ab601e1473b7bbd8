#include "globe/LineRaster.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "geo/Ecef.h"
#include "geo/Wgs84.h"

namespace sandbox {

using halCore::Ecef;
namespace wgs84 = halCore::wgs84;

namespace {

/// Shorter ones, in pixels, have no direction.
constexpr double kShortest = 1e-4;
/// Wider lines, in device pixels, are always smoothed: their joints would gape.
constexpr int kThin = 3;
/// A hair of overlap, in pixels: rounding must not leave a pixel to neither of two neighbours.
constexpr double kOverlap = 0.004;

std::uint32_t packed(const Rgba& color, std::uint32_t alpha) {
    const auto share = [&](std::uint32_t v) { return (v * alpha + 127) / 255; };
    return share(color.r) | share(color.g) << 8 | share(color.b) << 16 | alpha << 24;
}

/// Lays a premultiplied colour over a pixel.
void lay(std::uint32_t& pixel, std::uint32_t color) {
    const std::uint32_t rest = 255 - (color >> 24);
    // Two channels at a time, divided by 255 and rounded.
    const auto dimmed = [rest](std::uint32_t two) {
        const std::uint32_t v = two * rest + 0x00800080;
        return (v + ((v >> 8) & 0x00ff00ff)) >> 8 & 0x00ff00ff;
    };
    pixel = color + (dimmed(pixel & 0x00ff00ff) | dimmed(pixel >> 8 & 0x00ff00ff) << 8);
}

}  // namespace

/// A piece of a line on the screen. Its own coordinates are pixels along it from its start, and across it.
struct LineRaster::Segment {
    Vertex a, b;
    Direction along;
    double length;
    double halfWidth;
    Direction cutA, cutB;  ///< normals of the joints, in the segment's own coordinates; zero = a round cap
    Rgba color;
    Stroke stroke;
    bool solid;
    bool horizon;         ///< whether the earth may hide some of it
    double period = 1.0;  ///< of dashes or dots, in metres along the line
    double periodPixels = 1.0;
    double begin = -1e9;  ///< along it, what may be seen
    double end = 1e9;

    /// Equal steps on screen are not equal steps in space.
    double share(double at) const {
        const double t = std::clamp(at / std::max(length, kShortest), 0.0, 1.0);
        return t * a.depth / std::lerp(b.depth, a.depth, t);
    }
    double pixelsTo(double share) const {
        return length * share * b.depth / std::lerp(a.depth, b.depth, share);
    }
};

LineRaster::LineRaster(const Camera& camera, double pixelRatio, std::vector<std::uint32_t> memory)
    : camera_(camera),
      pixelRatio_(pixelRatio),
      size_(QSizeF(camera.width() * pixelRatio, camera.height() * pixelRatio).toSize()),
      pixelsPerTangent_(0.5 * camera.height() * pixelRatio / camera.tanHalfHeight()),
      nearPlane_(camera.nearPlane()),
      eye_(toUnitSphere(camera.eye())),
      eyeExcess_(dot(eye_, eye_) - 1.0),
      pixels_(std::move(memory)),
      tiles_(size_) {
    pixels_.resize(static_cast<std::size_t>(size_.width()) * static_cast<std::size_t>(size_.height()));
}

void LineRaster::clear(const QRect& part) {
    const QRect used = touched() & part;
    tiles_.forget(used);
    for (int y = used.top(); y <= used.bottom(); ++y) {
        const auto row = pixels_.begin() + static_cast<std::ptrdiff_t>(y) * size_.width();
        std::fill(row + used.left(), row + used.right() + 1, 0U);
    }
}

void LineRaster::clear() {
    clear(touched());
    touchedLeft_ = touchedBottom_ = kNowhere;
    touchedRight_ = touchedTop_ = -kNowhere;
}

QRect LineRaster::extentOf(const DrawList::Line& line) const {
    const double reach = 0.5 * line.width * pixelRatio_ + 2.0;
    double left = size_.width();
    double right = -1.0;
    double bottom = size_.height();
    double top = -1.0;
    for (const Ecef& p : line.points) {
        const Vertex v = vertex(p - camera_.eye());
        if (isBehind(v) || !std::isfinite(v.x + v.y)) return whole();
        left = std::min(left, v.x);
        right = std::max(right, v.x);
        bottom = std::min(bottom, v.y);
        top = std::max(top, v.y);
    }
    const auto pixel = [](double v, int size) { return static_cast<int>(std::clamp(v, -1.0, size + 1.0)); };
    return QRect(QPoint(pixel(left - reach, size_.width()), pixel(bottom - reach, size_.height())),
                 QPoint(pixel(right + reach, size_.width()), pixel(top + reach, size_.height()))) &
           whole();
}

LineRaster::Vertex LineRaster::vertex(const Ecef& fromEye) const {
    Vertex result{};
    result.depth = -dot(fromEye, camera_.back());
    const double scale = pixelsPerTangent_ / result.depth;
    result.x = 0.5 * camera_.width() * pixelRatio_ + dot(fromEye, camera_.right()) * scale;
    result.y = 0.5 * camera_.height() * pixelRatio_ + dot(fromEye, camera_.up()) * scale;
    result.fromEye = toUnitSphere(fromEye);
    lookPast(result);
    return result;
}

void LineRaster::lookPast(Vertex& vertex) const {
    const double a = dot(vertex.fromEye, vertex.fromEye);
    const double b = dot(eye_, vertex.fromEye);
    vertex.past = a + b;
    vertex.overEarth = b < 0.0 && b * b > a * eyeExcess_;
}

LineRaster::Vertex LineRaster::atNearPlane(const Vertex& behind, const Vertex& ahead) const {
    const double share = (nearPlane_ - behind.depth) / (ahead.depth - behind.depth);
    const Ecef s = behind.fromEye + (ahead.fromEye - behind.fromEye) * share;
    Vertex result = vertex({s.x * wgs84::a, s.y * wgs84::a, s.z * wgs84::b});
    result.metres = std::lerp(behind.metres, ahead.metres, share);
    return result;
}

/// On a straight piece, what lies past is a parabola that opens upwards.
LineRaster::Sight LineRaster::sightOf(const Vertex& a, const Vertex& b) const {
    const Ecef step = b.fromEye - a.fromEye;
    const double bend = dot(step, step);
    const double slope = b.past - a.past - bend;
    // The seam is soft for a pixel, over which `past` cannot change by more than over the whole piece.
    const double soft = std::abs(slope) + 2.0 * bend;
    if (std::max(a.past, b.past) < -soft) return Sight::All;
    if (!a.overEarth || !b.overEarth || std::min(a.past, b.past) <= soft) return Sight::Some;
    const double deepest = bend > 0.0 ? std::clamp(-slope / (2.0 * bend), 0.0, 1.0) : 0.0;
    return a.past + deepest * (slope + deepest * bend) > soft ? Sight::None : Sight::Some;
}

bool LineRaster::leaveHiddenEnds(Segment& segment) const {
    constexpr double kLong = 32.0;
    constexpr int kParts = 8;
    if (segment.length < kLong) return true;
    int first = kParts;
    int last = 0;
    segment.horizon = false;
    Vertex from = segment.a;
    for (int i = 0; i < kParts; ++i) {
        Vertex to = segment.b;
        if (i + 1 < kParts) {
            to.fromEye = segment.a.fromEye + (segment.b.fromEye - segment.a.fromEye) * ((i + 1.0) / kParts);
            lookPast(to);
        }
        if (const Sight seen = sightOf(from, to); seen != Sight::None) {
            first = std::min(first, i);
            last = i + 1;
            segment.horizon = segment.horizon || seen == Sight::Some;
        }
        from = to;
    }
    if (first > 0) segment.begin = segment.pixelsTo(static_cast<double>(first) / kParts);
    if (last < kParts) segment.end = segment.pixelsTo(static_cast<double>(last) / kParts);
    return first < last;
}

std::size_t LineRaster::draw(const DrawList::Line& line) {
    constexpr std::size_t segmentsOfAUnit = 20;
    constexpr std::size_t pixelsOfAUnit = 100;
    const std::size_t count = line.points.size();
    if (count == 0) return 0;
    filled_ = 0;
    vertices_.clear();
    for (const Ecef& p : line.points) vertices_.push_back(vertex(p - camera_.eye()));
    const bool closed = line.closed && count > 2;
    vertices_[0].metres = line.metres;
    if (line.stroke != Stroke::Solid)
        for (std::size_t i = 1; i < count; ++i)
            vertices_[i].metres = vertices_[i - 1].metres + length(line.points[i] - line.points[i - 1]);
    const double width = std::clamp(std::floor(line.width), 1.0F, 255.0F) * pixelRatio_;
    if (quality_ == Quality::Rough && line.stroke == Stroke::Solid && !line.solid && count > 1 &&
        std::lround(width) <= kThin) {
        drawRoughly(line, static_cast<int>(std::lround(width)));
    } else {
        if (count == 1) drawSegment(line, 0, 0);
        const std::size_t last = count - 1 - (line.trails ? 1 : 0);
        for (std::size_t i = line.leads ? 1 : 0; i < last; ++i) drawSegment(line, i, i + 1);
        if (closed) drawSegment(line, count - 1, 0);
    }
    return 1 + count / segmentsOfAUnit + filled_ / pixelsOfAUnit;
}

void LineRaster::drawRoughly(const DrawList::Line& line, int width) {
    // Of a piece between two such places nobody need ask what is seen of it.
    const double margin = width + 1.0;
    const double left = clip_.left() + margin;
    const double right = clip_.right() - margin;
    const double bottom = clip_.top() + margin;
    const double top = clip_.bottom() - margin;
    const auto isPlain = [&](const Vertex& v) {
        return !isBehind(v) && (v.past < 0.0 || !v.overEarth) && v.x >= left && v.x <= right &&
               v.y >= bottom && v.y <= top;
    };
    const std::uint32_t color = packed(line.color, line.color.a);
    const std::size_t count = vertices_.size();
    const std::size_t ends = line.closed && count > 2 ? count : count - 1 - (line.trails ? 1 : 0);
    std::size_t from = line.leads ? 1 : 0;
    bool fromPlain = isPlain(vertices_[from]);
    for (std::size_t i = from + 1; i <= ends; ++i) {
        const std::size_t end = i % count;
        const bool plain = isPlain(vertices_[end]);
        if (plain && fromPlain) {
            const Vertex& a = vertices_[from];
            const Vertex& b = vertices_[end];
            // What lies within a pixel waits for what follows.
            if (i < ends && std::abs(b.x - a.x) < 1.0 && std::abs(b.y - a.y) < 1.0) continue;
            drawSteps(a, b, width, color);
        } else {
            drawSegment(line, i - 1, end);
        }
        from = end;
        fromPlain = plain;
    }
}

void LineRaster::drawSteps(const Vertex& from, const Vertex& to, int width, std::uint32_t color) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const bool flat = std::abs(dx) >= std::abs(dy);
    const int steps = std::max(1, static_cast<int>(std::ceil(flat ? std::abs(dx) : std::abs(dy))));
    const double stepX = dx / steps;
    const double stepY = dy / steps;
    const double back = 0.5 * (width - 1);
    double x = from.x - (flat ? 0.0 : back);
    double y = from.y - (flat ? back : 0.0);
    const std::ptrdiff_t across = flat ? size_.width() : 1;
    const bool opaque = color >> 24 == 255;
    filled_ += static_cast<std::size_t>(steps);
    for (int i = 0; i < steps; ++i) {
        std::uint32_t* pixel =
            pixels_.data() + static_cast<std::ptrdiff_t>(y) * size_.width() + static_cast<std::ptrdiff_t>(x);
        for (int w = 0; w < width; ++w, pixel += across) {
            if (opaque)
                *pixel = color;
            else
                lay(*pixel, color);
        }
        x += stepX;
        y += stepY;
    }
    const auto [left, right] = std::minmax(from.x, to.x);
    const auto [bottom, top] = std::minmax(from.y, to.y);
    touch(static_cast<int>(left) - width, static_cast<int>(bottom) - width, static_cast<int>(right) + width,
          static_cast<int>(top) + width);
}

void LineRaster::touch(int left, int bottom, int right, int top) {
    touchedLeft_ = std::min(touchedLeft_, left);
    touchedBottom_ = std::min(touchedBottom_, bottom);
    touchedRight_ = std::max(touchedRight_, right);
    touchedTop_ = std::max(touchedTop_, top);
}

void LineRaster::drawSegment(const DrawList::Line& line, std::size_t start, std::size_t end) {
    const std::size_t count = vertices_.size();
    const Vertex& from = vertices_[start];
    const Vertex& to = vertices_[end];
    if (isBehind(from) && isBehind(to)) return;
    const Sight seen = line.solid ? Sight::Some : sightOf(from, to);
    if (seen == Sight::None) return;
    Segment segment{.a = from,
                    .b = to,
                    .along = {1.0, 0.0},
                    .length = 0.0,
                    .halfWidth = 0.5 * std::clamp(std::floor(line.width), 1.0F, 255.0F) * pixelRatio_,
                    .cutA = {},
                    .cutB = {},
                    .color = line.color,
                    .stroke = line.stroke,
                    .solid = line.solid,
                    .horizon = seen == Sight::Some};
    if (end < start) segment.b.metres = from.metres + length(line.points[end] - line.points[start]);
    if (isBehind(from)) segment.a = atNearPlane(from, segment.b);
    if (isBehind(to)) segment.b = atNearPlane(to, segment.a);
    // Places may be as far away as numbers go.
    if (!std::isfinite(segment.a.x + segment.a.y + segment.b.x + segment.b.y)) return;
    const double reach = segment.halfWidth + 0.5;
    const auto [left, right] = std::minmax(segment.a.x, segment.b.x);
    const auto [bottom, top] = std::minmax(segment.a.y, segment.b.y);
    if (right < clip_.left() - reach || top < clip_.top() - reach || left > clip_.right() + 1 + reach ||
        bottom > clip_.bottom() + 1 + reach)
        return;
    const Direction span{segment.b.x - segment.a.x, segment.b.y - segment.a.y};
    segment.length = std::sqrt(span.x * span.x + span.y * span.y);
    if (segment.length > kShortest) segment.along = {span.x / segment.length, span.y / segment.length};
    if (segment.horizon && !segment.solid && !leaveHiddenEnds(segment)) return;
    const Direction& along = segment.along;
    // The line on which this piece meets one from `v` to `w`, as its normal along the line of travel.
    const auto joint = [&](const Vertex& v, const Vertex& w) {
        Direction other{w.x - v.x, w.y - v.y};
        const double there = std::sqrt(other.x * other.x + other.y * other.y);
        other = isBehind(v) || isBehind(w) || there <= kShortest
                    ? along
                    : Direction{other.x / there, other.y / there};
        const Direction sum{along.x + other.x, along.y + other.y};
        const double size = std::sqrt(sum.x * sum.x + sum.y * sum.y);
        if (size < 0.1) return Direction{};
        return Direction{(sum.x * along.x + sum.y * along.y) / size,
                         (sum.y * along.x - sum.x * along.y) / size};
    };
    const bool closed = line.closed && count > 2;
    if (!isBehind(from) && count > 1 && (closed || start > 0))
        segment.cutA = joint(vertices_[(start + count - 1) % count], from);
    if (!isBehind(to) && count > 1 && (closed || end + 1 < count))
        segment.cutB = joint(to, vertices_[(end + 1) % count]);
    if (line.stroke != Stroke::Solid) {
        // Fixed to the ground, its period doubling as one moves away: every second mark stays.
        const double metresPerPixel =
            std::abs(segment.b.metres - segment.a.metres) / std::max(segment.length, 1e-3);
        const double half = segment.halfWidth;
        const double wanted =
            line.stroke == Stroke::Dotted ? 2.0 * half + 4.0 * pixelRatio_ : 4.0 * half + 10.0 * pixelRatio_;
        segment.period = std::exp2(std::floor(std::log2(std::max(wanted * metresPerPixel, 1e-3)) + 0.5));
        segment.periodPixels = segment.period / std::max(metresPerPixel, 1e-9);
    }
    fill(segment);
}

void LineRaster::fill(const Segment& segment) {
    const double reach = segment.halfWidth + 0.5;
    const Vertex& a = segment.a;
    const Direction along = segment.along;
    // On which side of a joint a pixel lies: where ahead.x * dx + ahead.y * dy is at least `from`.
    struct Side {
        Direction ahead;
        double from;
        void limit(double x, double dy, double& left, double& right) const {
            constexpr double kSteepest = 1e-3;
            if (std::abs(ahead.x) < kSteepest) return;
            const double edge = x + (from - ahead.y * dy) / ahead.x;
            if (ahead.x > 0.0)
                left = std::max(left, edge - 1.0);
            else
                right = std::min(right, edge + 1.0);
        }
    };
    const auto ahead = [&](const Direction& cut) {
        return Direction{along.x * cut.x - along.y * cut.y, along.y * cut.x + along.x * cut.y};
    };
    const Side afterA{ahead(segment.cutA), -kOverlap};
    const Side beforeB{ahead({-segment.cutB.x, -segment.cutB.y}),
                       -kOverlap - segment.length * segment.cutB.x};
    const Side afterBegin{along, segment.begin};
    const Side beforeEnd{{-along.x, -along.y}, -segment.end};
    // Of the pixels between two coordinates, those whose centres lie there.
    const auto pixelRange = [](double low, double high, double least, double most) {
        return std::pair{static_cast<int>(std::min(std::max(low, least), most) + 0.5),
                         static_cast<int>(std::min(std::max(high, least), most) + 0.5) - 1};
    };
    const double startY = a.y + std::max(segment.begin, 0.0) * along.y;
    const double endY = a.y + std::min(segment.end, segment.length) * along.y;
    const auto [bottom, top] = pixelRange(std::min(startY, endY) - reach, std::max(startY, endY) + reach,
                                          clip_.top(), clip_.bottom() + 1);
    const double leftmost = std::min(a.x, segment.b.x) - reach;
    const double rightmost = std::max(a.x, segment.b.x) + reach;
    const bool slanted = std::abs(along.y) > 1e-6;
    const double slope = slanted ? along.x / along.y : 0.0;
    const double aside = slanted ? std::abs(reach / along.y) : rightmost - leftmost;
    const double least = clip_.left();
    const double most = clip_.right() + 1;
    const std::uint32_t full = packed(segment.color, segment.color.a);
    int usedLeft = size_.width();
    int usedRight = -1;
    if (full != laid_) {
        laid_ = full;
        for (std::uint32_t before = ~(full_ = full); before != full_;) {
            before = full_;
            lay(full_, full);
        }
    }
    // Of what is drawn roughly no tile hears.
    int toldUpTo = quality_ == Quality::Smooth ? bottom - 1 : top;
    for (int y = bottom; y <= top; ++y) {
        if (y > toldUpTo) {
            toldUpTo = std::min(top, y - y % FullTiles::kSide + FullTiles::kSide - 1);
            const double begin = a.x + (y + 0.5 - a.y) * slope;
            const double end = a.x + (toldUpTo + 0.5 - a.y) * slope;
            const auto [low, high] = std::minmax(begin, end);
            const auto [left, right] =
                pixelRange(std::max(leftmost, low - aside), std::min(rightmost, high + aside), least, most);
            if (right < left || tiles_.enter(left, right, y, toldUpTo, full_, pixels_)) {
                y = toldUpTo;
                continue;
            }
        }
        const double dy = y + 0.5 - a.y;
        const double middle = a.x + dy * slope;
        double from = std::max(leftmost, middle - aside);
        double to = std::min(rightmost, middle + aside);
        afterA.limit(a.x, dy, from, to);
        beforeB.limit(a.x, dy, from, to);
        afterBegin.limit(a.x, dy, from, to);
        beforeEnd.limit(a.x, dy, from, to);
        const auto [left, right] = pixelRange(from, to, least, most);
        if (right < left) continue;
        usedLeft = std::min(usedLeft, left);
        usedRight = std::max(usedRight, right);
        filled_ += static_cast<std::size_t>(right - left + 1);
        std::uint32_t* row = pixels_.data() + static_cast<std::ptrdiff_t>(y) * size_.width();
        for (int x = left; x <= right; ++x) {
            // Where lines of one colour lie close together, most pixels are full of it already.
            if (row[x] == full_) continue;
            const double dx = x + 0.5 - a.x;
            const double shade = opacity(segment, dx * along.x + dy * along.y, dy * along.x - dx * along.y);
            if (!(shade > 0.0)) continue;
            if (shade >= 1.0)
                lay(row[x], full);
            else
                lay(row[x], packed(segment.color, static_cast<std::uint32_t>(segment.color.a * shade + 0.5)));
        }
    }
    if (usedRight >= usedLeft) touch(usedLeft, bottom, usedRight, top);
}

double LineRaster::opacity(const Segment& segment, double along, double across) const {
    if (along * segment.cutA.x + across * segment.cutA.y < -kOverlap) return 0.0;
    if ((along - segment.length) * segment.cutB.x + across * segment.cutB.y > kOverlap) return 0.0;
    const double beyond = std::max({-along, along - segment.length, 0.0});
    const double off = beyond > 0.0 ? std::sqrt(beyond * beyond + across * across) : std::abs(across);
    double result = std::min(segment.halfWidth + 0.5 - off, 1.0);
    if (result <= 0.0) return 0.0;
    if (segment.stroke != Stroke::Solid) result = std::min(result, pattern(segment, along, across));
    if (segment.horizon) result *= sight(segment, along);
    return result;
}

double LineRaster::sight(const Segment& segment, double along) const {
    const auto at = [&](double where) {
        return segment.a.fromEye + (segment.b.fromEye - segment.a.fromEye) * segment.share(where);
    };
    const auto past = [&](const Ecef& p) { return dot(p, p) + dot(eye_, p); };
    const Ecef here = at(along);
    const double towards = dot(eye_, here);
    const double discriminant = towards * towards - dot(here, here) * eyeExcess_;
    if (towards >= 0.0 || discriminant <= 0.0) return 1.0;
    if (segment.solid) return eyeExcess_ / (std::sqrt(discriminant) - towards) < 1.0 - 2e-6 ? 0.0 : 1.0;
    const double change = std::abs(past(at(along + 0.5)) - past(at(along - 0.5))) *
                          (std::abs(segment.along.x) + std::abs(segment.along.y));
    return std::clamp(0.5 - past(here) / std::max(change, 1e-15), 0.0, 1.0);
}

double LineRaster::pattern(const Segment& segment, double along, double across) const {
    const double at = std::lerp(segment.a.metres, segment.b.metres, segment.share(along)) / segment.period;
    const double off = std::abs(at + 0.5 - std::floor(at + 0.5) - 0.5) * segment.periodPixels;
    const double edge = segment.stroke == Stroke::Dotted ? segment.halfWidth - std::hypot(off, across)
                                                         : 0.3 * segment.periodPixels - off;
    return std::clamp(edge + 0.5, 0.0, 1.0);
}

}  // namespace sandbox
