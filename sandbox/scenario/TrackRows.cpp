#include "sandbox/scenario/TrackRows.h"

#include <cmath>
#include <utility>

namespace sandbox {

namespace {

using PIData::PIDataPoint;

constexpr std::array kFields = {&PIDataPoint::timeSeconds, &PIDataPoint::latRad,
                                &PIDataPoint::lonRad,      &PIDataPoint::altMeters,
                                &PIDataPoint::headingRad,  &PIDataPoint::pitchRad,
                                &PIDataPoint::rollRad,     &PIDataPoint::speedMetersPerSecond};

}  // namespace

void TrackRows::Column::add(double value, std::size_t row) {
    if (row == 0) all_ = value;
    if (values_.empty()) {
        if (value == all_ || (std::isnan(value) && std::isnan(all_))) return;
        values_.assign(row, all_);
    }
    values_.push_back(value);
}

void TrackRows::Column::arrange(const std::vector<std::uint32_t>& from) {
    if (values_.empty()) return;
    std::vector<double> arranged;
    arranged.reserve(from.size());
    for (const std::uint32_t row : from) arranged.push_back(values_[row]);
    values_ = std::move(arranged);
}

void TrackRows::add(const PIDataPoint& point) {
    for (std::size_t i = 0; i < columns_.size(); ++i) columns_[i].add(point.*kFields[i], size_);
    ++size_;
}

PIDataPoint TrackRows::at(std::size_t row) const {
    PIDataPoint point;
    for (std::size_t i = 0; i < columns_.size(); ++i) point.*kFields[i] = columns_[i].at(row);
    return point;
}

void TrackRows::arrange(const std::vector<std::uint32_t>& from) {
    for (Column& column : columns_) column.arrange(from);
}

}  // namespace sandbox
