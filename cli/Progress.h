#pragma once

#include <chrono>
#include <cstdint>

namespace cli {

/// A bar on the standard error, once the work has taken a second and if that is a terminal.
class Progress {
  public:
    explicit Progress(std::uint64_t totalBytes);
    ~Progress() { hide(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void advance(std::uint64_t bytes);
    /// Takes the bar off the screen, before anything else is printed.
    void hide();

  private:
    using Clock = std::chrono::steady_clock;

    std::uint64_t total_;
    std::uint64_t done_ = 0;
    bool terminal_;
    bool shown_ = false;
    Clock::time_point next_;
};

}  // namespace cli
