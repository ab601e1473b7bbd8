#pragma once

#include <string>
#include <string_view>

namespace halCore::ZEL {

/// One position as text: latitude and longitude in degrees and altitude, or east, north and up. z may be
/// empty. A position that came from a grid reference has that as its source.
class PositionStrings {
  public:
    PositionStrings() = default;
    PositionStrings(std::string_view x, std::string_view y) : x_(x), y_(y) {}
    PositionStrings(std::string_view x, std::string_view y, std::string_view z) : x_(x), y_(y), z_(z) {}

    const std::string& x() const { return x_; }
    const std::string& y() const { return y_; }
    const std::string& z() const { return z_; }

    const std::string& mgrs() const { return mgrs_; }
    void setMgrs(std::string_view source) { mgrs_ = std::string(source); }

  private:
    std::string x_;
    std::string y_;
    std::string z_;
    std::string mgrs_;
};

}  // namespace halCore::ZEL
