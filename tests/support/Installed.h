#pragma once

/// A maker of tools or panels at its seam, for as long as it lives.
template <typename Seam, typename Maker>
class Installed {
  public:
    Installed() { Seam::install(&maker_); }
    ~Installed() { Seam::install(nullptr); }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

  private:
    Maker maker_;
};
