#include "globe/PackedLines.h"

#include <algorithm>
#include <cmath>

#include "geo/Ecef.h"

namespace sandbox {

using halCore::Ecef;

void PackedLines::add(const DrawList::Line& line, double tolerance) {
    // Half of a float's last bit, of what it is, lies below that.
    constexpr double kOff = 1.0 / (1 << 24);
    const std::vector<Ecef>& points = line.points;
    double reach = 0.0;
    for (const Ecef& p : points) {
        const Ecef v = p - points.front();
        reach = std::max({reach, std::abs(v.x), std::abs(v.y), std::abs(v.z)});
    }
    const bool rough = points.size() > 1 && reach * kOff <= tolerance / 200.0;
    heads_.push_back({.first = static_cast<std::uint32_t>(exact_.size()),
                      .count = static_cast<std::uint32_t>(points.size()),
                      .next = static_cast<std::uint32_t>(rough_.size()),
                      .rough = rough,
                      .stroke = line.stroke,
                      .closed = line.closed,
                      .solid = line.solid,
                      .overBodies = line.overBodies,
                      .leads = line.leads,
                      .trails = line.trails,
                      .color = line.color,
                      .width = line.width,
                      .metres = line.metres});
    if (!rough) {
        exact_.insert(exact_.end(), points.begin(), points.end());
        return;
    }
    exact_.push_back(points.front());
    for (std::size_t i = 1; i < points.size(); ++i) {
        const Ecef v = points[i] - points.front();
        rough_.push_back({static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)});
    }
}

void PackedLines::shrinkToFit() {
    heads_.shrink_to_fit();
    exact_.shrink_to_fit();
    rough_.shrink_to_fit();
}

const DrawList::Line& PackedLines::unpack(std::size_t index, DrawList::Line& into) const {
    const Head& head = heads_[index];
    into.color = head.color;
    into.width = head.width;
    into.stroke = head.stroke;
    into.closed = head.closed;
    into.solid = head.solid;
    into.overBodies = head.overBodies;
    into.leads = head.leads;
    into.trails = head.trails;
    into.metres = head.metres;
    const auto first = exact_.begin() + head.first;
    into.points.assign(first, first + (head.rough ? 1 : head.count));
    for (std::uint32_t i = 0; head.rough && i + 1 < head.count; ++i) {
        const FloatTriple& v = rough_[head.next + i];
        into.points.push_back(*first + Ecef{double{v[0]}, double{v[1]}, double{v[2]}});
    }
    return into;
}

}  // namespace sandbox
