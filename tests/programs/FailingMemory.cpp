#include "programs/FailingMemory.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include <sys/mman.h>

namespace {

std::atomic<bool> armed = false;
/// Allocations until the one that fails.
std::atomic<long> remaining = 0;
std::atomic<bool> fromThen = false;
/// Of this process and those that it forks.
std::atomic<long>& failed =
    *new (::mmap(nullptr, sizeof failed, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
        std::atomic<long>(0);

bool fails() {
    if (!armed) return false;
    const long left = --remaining;
    if (left > 0 || (left < 0 && !fromThen)) return false;
    ++failed;
    return true;
}

}  // namespace

namespace failing {

void arm(long allocation, bool all) {
    remaining = allocation;
    fromThen = all;
    failed = 0;
    armed = true;
}

void disarm() {
    armed = false;
}

long count() {
    return failed;
}

Counting::Counting(bool on) : before_(armed.exchange(on)) {}

Counting::~Counting() {
    armed = before_;
}

}  // namespace failing

void* operator new(std::size_t size) {
    if (!fails())
        if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
