#include "cli/Progress.h"

#include <algorithm>
#include <iostream>
#include <string>

#include <unistd.h>

namespace cli {

Progress::Progress(std::uint64_t totalBytes)
    : total_(totalBytes),
      terminal_(isatty(STDERR_FILENO) != 0),
      next_(Clock::now() + std::chrono::seconds(1)) {}

void Progress::advance(std::uint64_t bytes) {
    done_ = std::min(done_ + bytes, total_);
    if (!terminal_ || total_ == 0) return;
    const Clock::time_point now = Clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    constexpr std::uint64_t width = 40;
    const std::uint64_t filled = width * done_ / total_;
    std::cerr << "\r[" << std::string(filled, '#') << std::string(width - filled, '.') << "] "
              << 100 * done_ / total_ << " % " << std::flush;
    shown_ = true;
}

void Progress::hide() {
    if (shown_) std::cerr << "\r\033[K" << std::flush;
    shown_ = false;
}

}  // namespace cli
