#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>

/// How long work goes on before others get their turn. Work is told in units of about a microsecond. So much
/// is done at least, whatever the clock says, that what is small is done at once even by a machine that is
/// busy.
class Slice {
  public:
    /// One that is never over.
    Slice() = default;
    Slice(std::size_t atLeast, std::chrono::milliseconds time)
        : look_(atLeast), end_(std::chrono::steady_clock::now() + time) {}

    bool isEndless() const { return look_ == ~std::size_t{0}; }
    /// Ends it so long from now on, if that is later.
    void extend(std::chrono::milliseconds time) {
        end_ = std::max(end_, std::chrono::steady_clock::now() + time);
    }
    /// To be asked after each piece of work. \return whether others wait
    bool isOver(std::size_t units) {
        done_ += units;
        if (done_ < look_ || over_) return over_;
        look_ = done_ + kBetweenLooks;
        return over_ = std::chrono::steady_clock::now() >= end_;
    }

  private:
    static constexpr std::size_t kBetweenLooks = 500;

    std::size_t done_ = 0;
    std::size_t look_ = ~std::size_t{0};
    std::chrono::steady_clock::time_point end_ = std::chrono::steady_clock::time_point::max();
    bool over_ = false;
};
