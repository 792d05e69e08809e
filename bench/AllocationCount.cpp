// Counts operator new calls of the benchmark binary. Kept in its own file so that no caller
// sees the replacement inlined.
#include "AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long> gAllocations{0};
}  // namespace

long benchAllocationCount() {
    return gAllocations.load(std::memory_order_relaxed);
}

void* operator new(std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size != 0 ? size : 1)) return p;
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept {
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
