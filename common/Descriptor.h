#pragma once

#include <unistd.h>

namespace UTILS {

/// An open file descriptor that closes itself.
class Descriptor {
  public:
    /// \param fd -1 for none
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd_; }
    bool isOpen() const { return fd_ >= 0; }

  private:
    int fd_;
};

}  // namespace UTILS
