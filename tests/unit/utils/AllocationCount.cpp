// Counts the heap allocations of this test binary, so that tests can hold the per-frame paths to
// none. Kept in its own file so that no caller sees the replacement inlined. Sanitizer runtimes
// own operator new, so under a sanitizer nothing is counted.
#include <atomic>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CAMEXT_COUNT_ALLOCATIONS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CAMEXT_COUNT_ALLOCATIONS 0
#endif
#endif
#ifndef CAMEXT_COUNT_ALLOCATIONS
#define CAMEXT_COUNT_ALLOCATIONS 1
#endif

#if CAMEXT_COUNT_ALLOCATIONS

namespace {
std::atomic<long> gAllocations{0};
}  // namespace

long allocationCount() {
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

#else

long allocationCount() {
    return -1;
}

#endif
