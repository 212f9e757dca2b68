#include "support/allocation_faults.h"

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

// Relaxed throughout: anything more would put all threads in an order at each allocation, and hide
// their races from the thread sanitizer.
std::atomic<long> live{0};
thread_local long untilFault = 0;  // 0: none armed
thread_local bool failsOnce = false;
thread_local bool faultHappened = false;

void* allocate(std::size_t size) noexcept {
  if (untilFault > 0 && --untilFault == 0) {
    if (!failsOnce) untilFault = 1;
    faultHappened = true;
    return nullptr;
  }
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block != nullptr) live.fetch_add(1, std::memory_order_relaxed);
  return block;
}

void* allocateOrThrow(std::size_t size) {
  void* block = allocate(size);
  return block != nullptr ? block : throw std::bad_alloc();
}

void release(void* block) noexcept {
  if (block != nullptr) live.fetch_sub(1, std::memory_order_relaxed);
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }

namespace ombe_test {

AllocationFault::AllocationFault(long nth, FaultMode mode) {
  faultHappened = false;
  failsOnce = mode == FaultMode::kOnce;
  untilFault = nth;
}

AllocationFault::~AllocationFault() { untilFault = 0; }

bool AllocationFault::happened() const { return faultHappened; }

FaultPause::FaultPause() : rest_(std::exchange(untilFault, 0)) {}

FaultPause::~FaultPause() { untilFault = rest_; }

long liveAllocations() { return live.load(std::memory_order_relaxed); }

}  // namespace ombe_test
