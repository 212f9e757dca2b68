// Makes operator new fail on purpose, and counts what is alive. Linking this replaces the operators
// of the whole process; they behave as usual while no fault is armed.
#pragma once

namespace ombe_test {

enum class FaultMode { kOnce, kFromThereOn };

/// For its lifetime, the `nth` allocation of this thread (counted from 1) throws std::bad_alloc.
class AllocationFault {
 public:
  AllocationFault(long nth, FaultMode mode);
  AllocationFault(const AllocationFault&) = delete;
  AllocationFault& operator=(const AllocationFault&) = delete;
  ~AllocationFault();

  /// Whether the allocation to fail was reached.
  [[nodiscard]] bool happened() const;
};

/// For its lifetime, allocations of this thread neither fail nor count towards the one that is to:
/// what a fake allocates on its own account is no fault of the plug-in that called it.
class FaultPause {
 public:
  FaultPause();
  FaultPause(const FaultPause&) = delete;
  FaultPause& operator=(const FaultPause&) = delete;
  ~FaultPause();

 private:
  long rest_;
};

/// Blocks from operator new that were not deleted yet, of all threads.
long liveAllocations();

}  // namespace ombe_test
