#include "tools/SnapLayer.h"

#include <algorithm>
#include <cmath>

#include "geo/Angles.h"
#include "geo/GeodesicPath.h"
#include "model/AnnotationShape.h"
#include "model/CylinderShape.h"
#include "model/FreeDrawShape.h"
#include "model/PolygonShape.h"
#include "model/RectangleShape.h"
#include "tools/PUDrawPoint.h"

namespace OverlayEditor {

using halCore::Ecef;
using halCore::Vec3;

namespace {

/// A way over the ground leaves its chord by 8 m then.
constexpr double kPieceMeters = 20e3;
constexpr int kMostPieces = 2000;

}  // namespace

void SnapLayer::clear() {
    owners_.clear();
    points_.clear();
    sides_.clear();
    pieces_.clear();
    view_.reset();
}

void SnapLayer::add(const Shape& shape) {
    const std::size_t first = points_.size();
    const auto owner = static_cast<std::uint32_t>(owners_.size());
    owners_.push_back({&shape, shape.name(), first, 0});
    const auto put = [&](const Vec3& place) { points_.push_back({owner, place, halCore::toEcef(place)}); };
    const auto putIfAny = [&](const std::optional<Vec3>& place) {
        if (place && isPlace(*place)) put(*place);
    };
    if (const auto* const polygon = dynamic_cast<const PolygonShape*>(&shape)) {
        points_.reserve(first + polygon->getNumPoints());
        pieces_.reserve(pieces_.size() + polygon->getNumPoints());
        // One for each, so that numbers stay what they are.
        for (const Vec3& place : polygon->points()) put(place);
        addSides_(first, polygon->subtype() == PolygonShape::Polygon);
    } else if (const auto* const rectangle = dynamic_cast<const RectangleShape*>(&shape)) {
        for (const Vec3& corner : rectangle->corners()) put(corner);
        addSides_(first, true);
    } else if (const auto* const drawn = dynamic_cast<const FreeDrawShape*>(&shape)) {
        for (const auto& line : drawn->lines()) {
            const std::size_t start = points_.size();
            for (const Vec3& place : line) put(place);
            addSides_(start, false);
        }
    } else if (const auto* const round = dynamic_cast<const CylinderShape*>(&shape)) {
        using Role = CylinderShape::EditPoint;
        for (const Role role :
             {Role::Center, Role::MajorAxis, Role::MinorAxis, Role::StartAngle, Role::EndAngle})
            putIfAny(round->editPoint(role));
    } else if (const auto* const label = dynamic_cast<const AnnotationShape*>(&shape)) {
        if (label->hasPoint()) putIfAny(label->position());
    }
    owners_.back().count = points_.size() - first;
    view_.reset();
}

void SnapLayer::addPoint(const Vec3& place, std::string name) {
    owners_.push_back({nullptr, std::move(name), points_.size(), 1});
    points_.push_back({static_cast<std::uint32_t>(owners_.size() - 1), place, halCore::toEcef(place)});
    view_.reset();
}

void SnapLayer::addSides_(std::size_t first, bool closed) {
    for (std::size_t i = first; i + 1 < points_.size(); ++i) addSide_(i, i + 1);
    if (closed && points_.size() > first + 2) addSide_(points_.size() - 1, first);
}

void SnapLayer::addSide_(std::size_t from, std::size_t to) {
    const Point& a = points_[from];
    const Point& b = points_[to];
    if (!isPlace(a.place) || !isPlace(b.place) || a.ecef == b.ecef) return;
    const auto number = static_cast<std::uint32_t>(sides_.size());
    sides_.push_back({static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(to)});
    const double chord = halCore::length(b.ecef - a.ecef);
    const int count = std::min(static_cast<int>(chord / kPieceMeters) + 1, kMostPieces);
    if (count == 1) {
        pieces_.push_back({number, 0.0, 1.0, a.ecef, b.ecef});
        return;
    }
    const auto way = halCore::geodesicBetween(a.place, b.place);
    Ecef before = a.ecef;
    for (int i = 1; i <= count; ++i) {
        const double share = static_cast<double>(i) / count;
        Vec3 place = halCore::geodesicFrom(a.place, way.azimuthAtStart, way.meters * share);
        place.setAlt(std::lerp(a.place.alt(), b.place.alt(), share));
        const Ecef end = i == count ? b.ecef : halCore::toEcef(place);
        pieces_.push_back({number, static_cast<double>(i - 1) / count, share, before, end});
        before = end;
    }
}

void SnapLayer::project_(const ViewProjection& view) {
    if (view_ == view) return;
    view_ = view;
    grid_.begin(view, PluginUtils::kGrabRadius * view.pixelScale());
    for (std::size_t i = 0; i < points_.size(); ++i)
        if (isPlace(points_[i].place)) grid_.addPoint(points_[i].ecef, static_cast<SnapGrid::Id>(i));
    for (std::size_t i = 0; i < pieces_.size(); ++i)
        grid_.addLine(pieces_[i].from, pieces_[i].to, static_cast<SnapGrid::Id>(i));
    grid_.finish();
}

std::string SnapLayer::nameOf_(std::size_t point) const {
    const Owner& owner = owners_[points_[point].owner];
    if (!owner.shape) return owner.name;
    const std::string quoted = std::string("\"").append(owner.name).append("\"");
    if (owner.count == 1) return quoted;
    return std::string("point ")
        .append(std::to_string(point - owner.first + 1))
        .append(" of ")
        .append(quoted);
}

bool SnapLayer::counts_(const SnapSource::Query& query, std::size_t point) const {
    const Owner& owner = owners_[points_[point].owner];
    if (!owner.shape || owner.shape != query.edited) return true;
    return query.dragged && point - owner.first != *query.dragged;
}

std::optional<SnapLayer::Hit> SnapLayer::nearestPoint(const SnapSource::Query& query) {
    project_(query.view);
    const auto found = grid_.nearestPoint(query.cursor, [&](SnapGrid::Id id) { return counts_(query, id); });
    const auto pixel = found ? query.view.pixel(points_[*found].ecef) : std::nullopt;
    if (!pixel) return std::nullopt;
    return Hit{{points_[*found].place, nameOf_(*found)}, distance(*pixel, query.cursor), *found};
}

std::optional<SnapLayer::Hit> SnapLayer::nearestSide(const SnapSource::Query& query) {
    project_(query.view);
    const auto found = grid_.nearestLine(query.cursor, [&](SnapGrid::Id id) {
        const Side& side = sides_[pieces_[id].side];
        return counts_(query, side.from) && counts_(query, side.to);
    });
    if (!found) return std::nullopt;
    const Piece& piece = pieces_[found->id];
    // Equal steps on the screen are none on the piece: what is nearer is larger.
    const auto at = [&](double t) { return piece.from + (piece.to - piece.from) * t; };
    const auto away = [&](double t) {
        const auto pixel = query.view.pixel(at(t));
        return pixel ? distance(*pixel, query.cursor) : HUGE_VAL;
    };
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < 60; ++i) {
        const double third = (high - low) / 3.0;
        if (away(low + third) < away(high - third))
            high -= third;
        else
            low += third;
    }
    const double t = 0.5 * (low + high);
    const Side& side = sides_[piece.side];
    const Vec3& from = points_[side.from].place;
    const double share = std::lerp(piece.start, piece.end, t);
    const auto way = halCore::geodesicBetween(from, points_[side.to].place);
    Vec3 place = halCore::geodesicFrom(from, way.azimuthAtStart, way.meters * share);
    place.setAlt(std::lerp(from.alt(), points_[side.to].place.alt(), share));
    const Owner& owner = owners_[points_[side.from].owner];
    return Hit{{place, std::string("a side of \"").append(owner.name).append("\"")}, away(t), side.from};
}

}  // namespace OverlayEditor
