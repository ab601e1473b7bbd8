#include "gdal/Seam.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace exchange {
namespace {

constexpr double kHalf = 180.0;
constexpr double kWhole = 360.0;

/// The step from one longitude to the next, the short way.
double step(double from, double to) {
    return std::remainder(to - from, kWhole);
}

void unwrap(Track& track) {
    for (std::size_t i = 1; i < track.size(); ++i)
        track.lon[i] = track.lon[i - 1] + step(track.lon[i - 1], track.lon[i]);
}

void shift(Track& track, double degrees) {
    if (degrees == 0.0) return;
    for (double& lon : track.lon) lon += degrees;
}

/// The number of the strip of 360 degrees, 0 for that about Greenwich.
double stripOf(double lon) {
    return std::floor((lon + kHalf) / kWhole);
}

/// Appends the place between points i and k of a track at a longitude.
void addCrossing(const Track& track, std::size_t i, std::size_t k, double lon, Track& out) {
    const double share = (lon - track.lon[i]) / (track.lon[k] - track.lon[i]);
    out.add(lon, std::lerp(track.lat[i], track.lat[k], share), std::lerp(track.alt[i], track.alt[k], share));
}

/// What of a line lies on one side of a meridian, a piece for each time that it does. `side`: 1 the east, -1
/// the west. Of a ring, it begins with a point outside.
std::vector<Track> piecesBeside(const Track& track, bool closed, double meridian, double side) {
    const auto inside = [&](std::size_t i) { return side * (track.lon[i] - meridian) >= 0.0; };
    std::vector<Track> pieces;
    const std::size_t count = track.size();
    if (inside(0)) pieces.emplace_back().add(track, 0);
    for (std::size_t i = 0; i + (closed ? 0 : 1) < count; ++i) {
        const std::size_t k = (i + 1) % count;
        if (inside(i) != inside(k)) {
            if (inside(k)) pieces.emplace_back();
            addCrossing(track, i, k, meridian, pieces.back());
        }
        if (inside(k)) pieces.back().add(track, k);
    }
    return pieces;
}

/// What of a ring lies on one side of a meridian: its pieces, joined along the meridian.
std::vector<Track> ringsBeside(const Track& ring, double meridian, double side) {
    const auto outside = [&](double lon) { return side * (lon - meridian) < 0.0; };
    const auto first = std::ranges::find_if(ring.lon, outside);
    if (first == ring.lon.end()) return {ring};
    Track turned = ring;
    const auto offset = first - ring.lon.begin();
    for (std::vector<double>* values : {&turned.lon, &turned.lat, &turned.alt})
        std::rotate(values->begin(), values->begin() + offset, values->end());
    const std::vector<Track> pieces = piecesBeside(turned, true, meridian, side);

    // Ends of pieces that follow each other on the meridian belong together.
    struct End {
        double lat;
        std::size_t piece;
        bool isStart;
    };
    std::vector<End> ends;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        ends.push_back({pieces[i].lat.front(), i, true});
        ends.push_back({pieces[i].lat.back(), i, false});
    }
    std::ranges::stable_sort(ends, {}, &End::lat);
    std::vector<std::size_t> next(pieces.size());
    for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
        const End& a = ends[i].isStart ? ends[i + 1] : ends[i];
        const End& b = ends[i].isStart ? ends[i] : ends[i + 1];
        // Two ends, or two starts: the ring crosses itself. Each piece is closed by itself then.
        if (a.isStart == b.isStart)
            next[a.piece] = a.piece, next[b.piece] = b.piece;
        else
            next[a.piece] = b.piece;
    }
    std::vector<Track> rings;
    std::vector<bool> used(pieces.size(), false);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        Track joined;
        for (std::size_t at = i; !used[at]; at = next[at]) {
            used[at] = true;
            for (std::size_t k = 0; k < pieces[at].size(); ++k) joined.add(pieces[at], k);
        }
        if (joined.size() < 3) continue;
        const auto [west, east] = std::ranges::minmax(joined.lon);
        if (west < east) rings.push_back(std::move(joined));
    }
    return rings;
}

/// Cuts what reaches beyond 180 degrees into strips, `cut` by a meridian and a side each, and moves them
/// into their place.
template <typename Cut>
std::vector<Track> inStrips(Track track, const Cut& cut) {
    const auto [west, east] = std::ranges::minmax(track.lon);
    const double firstStrip = stripOf(west);
    // What ends at 180 degrees has no part in the next strip.
    const double lastStrip = std::max(firstStrip, std::ceil((east + kHalf) / kWhole) - 1.0);
    std::vector<Track> done;
    for (double strip = firstStrip; strip <= lastStrip; ++strip) {
        const double middle = strip * kWhole;
        for (const Track& eastern : cut(track, middle - kHalf, 1.0)) {
            for (Track& piece : cut(eastern, middle + kHalf, -1.0)) {
                shift(piece, -middle);
                done.push_back(std::move(piece));
            }
        }
    }
    return done;
}

/// A ring that begins at a point of a pole leads along the pole from its end to its beginning.
bool openAtPole(Track& ring) {
    const auto pole = std::ranges::find_if(ring.lat, [](double lat) { return std::abs(lat) > 90.0 - 1e-10; });
    if (pole == ring.lat.end()) return false;
    const auto offset = pole - ring.lat.begin();
    for (std::vector<double>* values : {&ring.lon, &ring.lat, &ring.alt})
        std::rotate(values->begin(), values->begin() + offset, values->end());
    ring.lon.front() = ring.lon[1];
    unwrap(ring);
    ring.add(ring.lon.back(), ring.lat.front(), ring.alt.front());
    return true;
}

/// A ring round a pole, as it is from one side of the map to the other, with an edge along the pole. `turn`:
/// 360 or -360, how far its longitudes lead.
Track closedAtPole(const Track& ring, double turn, double pole) {
    const std::size_t count = ring.size();
    const auto lonOf = [&](std::size_t i) { return ring.lon[i % count] + (i >= count ? turn : 0.0); };
    std::size_t at = 0;
    while (at + 1 < count && stripOf(lonOf(at)) == stripOf(lonOf(at + 1))) ++at;
    Track around = ring;
    around.add(lonOf(count), ring.lat.front(), ring.alt.front());
    const double seam = std::max(stripOf(lonOf(at)), stripOf(lonOf(at + 1))) * kWhole - kHalf;
    Track closed;
    addCrossing(around, at, at + 1, seam, closed);
    for (std::size_t i = at + 1; i <= at + count; ++i)
        closed.add(lonOf(i), ring.lat[i % count], ring.alt[i % count]);
    closed.add(seam + turn, closed.lat.front(), closed.alt.front());
    closed.add(seam + turn, pole, closed.alt.front());
    closed.add(seam, pole, closed.alt.front());
    shift(closed, (turn > 0.0 ? -kHalf : kHalf) - seam);
    return closed;
}

double signedArea(const Track& ring) {
    double sum = 0.0;
    for (std::size_t i = 0, k = ring.size() - 1; i < ring.size(); k = i++)
        sum += ring.lon[k] * ring.lat[i] - ring.lon[i] * ring.lat[k];
    return 0.5 * sum;
}

}  // namespace

bool crossesSeam(const Track& track, bool closed) {
    const auto crosses = [&](std::size_t i, std::size_t k) {
        const double from = track.lon[i];
        const double to = track.lon[k];
        if (std::abs(to) > kHalf) return true;
        return std::abs(to - from) > kHalf && !(std::abs(from) == kHalf && std::abs(to) == kHalf);
    };
    if (track.size() == 0) return false;
    for (std::size_t i = 0; i + 1 < track.size(); ++i)
        if (crosses(i, i + 1)) return true;
    return std::abs(track.lon.front()) > kHalf || (closed && crosses(track.size() - 1, 0));
}

std::vector<Track> layLine(Track line, bool split) {
    unwrap(line);
    if (!split) return {std::move(line)};
    return inStrips(std::move(line), [](const Track& track, double meridian, double side) {
        return piecesBeside(track, false, meridian, side);
    });
}

std::vector<Track> layArea(Track ring, Outline::Origin origin, bool split, bool& outside) {
    outside = false;
    if (origin != Outline::Origin::Grid && !openAtPole(ring)) {
        unwrap(ring);
        const double turn = ring.lon.back() + step(ring.lon.back(), ring.lon.front()) - ring.lon.front();
        if (std::abs(turn) > kHalf) {
            const double mean = std::accumulate(ring.lat.begin(), ring.lat.end(), 0.0);
            const bool north = origin == Outline::Origin::Curve ? turn > 0.0 : mean > 0.0;
            ring = closedAtPole(ring, std::copysign(kWhole, turn), north ? 90.0 : -90.0);
        } else {
            outside = origin == Outline::Origin::Curve && signedArea(ring) < 0.0;
        }
    }
    // What is left out is taken from the map, which ends at 180 degrees.
    if (!split && !outside) return {std::move(ring)};
    return inStrips(std::move(ring), ringsBeside);
}

}  // namespace exchange
