// The sanitizers' callbacks that count. They are not instrumented themselves, or would never end.
#include "cost.h"

#include <sanitizer/allocator_interface.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#define UNCOUNTED [[clang::no_sanitize("coverage")]]
#define EXPORTED extern "C" UNCOUNTED [[gnu::visibility("default")]]
// The address sanitizer's functions under the names that it leaves to the program.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" void* __interceptor_memchr(const void* bytes, int byte, std::size_t count);
extern "C" void* __interceptor_memmove(void* to, const void* from, std::size_t count);

namespace ombe_fuzz {
namespace {

Cost spent;  // by the process so far

UNCOUNTED void countAllocation(const volatile void* /*block*/, std::size_t size) {
  ++spent.allocations;
  spent.bytes += static_cast<double>(size);
}

UNCOUNTED void ignoreRelease(const volatile void* /*block*/) {}

const bool kCounts = __sanitizer_install_malloc_and_free_hooks(countAllocation, ignoreRelease) != 0;

UNCOUNTED void countGoingOver(std::size_t count) { spent.steps += static_cast<double>(count) / 16; }

UNCOUNTED void require(const char* what, double cost, double perByte, double bytes) {
  if (cost <= perByte * bytes) return;
  std::fprintf(stderr, "too costly: %.0f %s, which is more than %g for each of %.0f bytes\n", cost,
               what, perByte, bytes);
  std::abort();
}

}  // namespace

UNCOUNTED CostLimit::CostLimit(std::size_t inputBytes, const Cost& perByte, std::size_t bytesMore)
    : bytes_(static_cast<double>(inputBytes + bytesMore)), perByte_(perByte), before_(spent) {
  if (!kCounts) std::abort();
}

UNCOUNTED CostLimit::~CostLimit() {
  require("allocations", spent.allocations - before_.allocations, perByte_.allocations, bytes_);
  require("bytes allocated", spent.bytes - before_.bytes, perByte_.bytes, bytes_);
  require("steps", spent.steps - before_.steps, perByte_.steps, bytes_);
}

}  // namespace ombe_fuzz

// Called at each read of so many bytes.
EXPORTED void __sanitizer_cov_load1(std::uint8_t* /*at*/) { ++ombe_fuzz::spent.steps; }
EXPORTED void __sanitizer_cov_load2(std::uint16_t* /*at*/) { ++ombe_fuzz::spent.steps; }
EXPORTED void __sanitizer_cov_load4(std::uint32_t* /*at*/) { ++ombe_fuzz::spent.steps; }
EXPORTED void __sanitizer_cov_load8(std::uint64_t* /*at*/) { ++ombe_fuzz::spent.steps; }
EXPORTED void __sanitizer_cov_load16(void* /*at*/) { ++ombe_fuzz::spent.steps; }

EXPORTED void* memchr(const void* bytes, int byte, std::size_t count) {
  void* found = __interceptor_memchr(bytes, byte, count);
  const auto* start = static_cast<const char*>(bytes);
  ombe_fuzz::countGoingOver(
      found == nullptr ? count : static_cast<std::size_t>(static_cast<char*>(found) - start));
  return found;
}

EXPORTED void* memmove(void* to, const void* from, std::size_t count) {
  ombe_fuzz::countGoingOver(count);
  return __interceptor_memmove(to, from, count);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
