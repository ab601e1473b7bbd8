#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "pi/HostStructures.h"

namespace sandbox {

/// The points of many tracks, column by column: what is the same in all of them, such as the altitude of
/// ships, takes no memory.
class TrackRows {
  public:
    void add(const PIData::PIDataPoint& point);
    std::size_t size() const { return size_; }
    PIData::PIDataPoint at(std::size_t row) const;
    double time(std::size_t row) const { return columns_.front().at(row); }
    /// Puts the rows in another order. \param from for each of them, where it was
    void arrange(const std::vector<std::uint32_t>& from);

  private:
    class Column {
      public:
        void add(double value, std::size_t row);
        double at(std::size_t row) const { return values_.empty() ? all_ : values_[row]; }
        void arrange(const std::vector<std::uint32_t>& from);

      private:
        double all_ = 0.0;
        std::vector<double> values_;  ///< none while all are the same
    };

    std::array<Column, 8> columns_;  ///< the time first
    std::size_t size_ = 0;
};

}  // namespace sandbox
