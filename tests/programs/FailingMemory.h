#pragma once

/// A program that is linked with this has an operator new that fails when it is told to: in the program
/// itself and in the libraries that it loads.
namespace failing {

/// Lets the n-th allocation from now on fail, of any thread, from 1.
/// \param all whether all later ones fail, too
void arm(long allocation, bool all);
void disarm();
/// How many have failed since it was armed, those of forked processes included.
long count();

/// Whether allocations are counted and may fail, while it lives.
class Counting {
  public:
    explicit Counting(bool on);
    ~Counting();
    Counting(const Counting&) = delete;
    Counting& operator=(const Counting&) = delete;

  private:
    bool before_;
};

}  // namespace failing
