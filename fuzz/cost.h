// What an input costs, counted and not timed, so that every machine finds the same.
#pragma once

#include <cstddef>

namespace ombe_fuzz {

struct Cost {
  double allocations;
  double bytes;  ///< allocated, whether given back or not
  double steps;  ///< reads of memory by our code, and each 16 bytes that the C library goes over
};

/// Ends the run when what is done while this lives costs more than so much for each byte of the
/// input. What costs the same for every input is allowed for as that many bytes more. One at a
/// time.
class CostLimit {
 public:
  CostLimit(std::size_t inputBytes, const Cost& perByte, std::size_t bytesMore = 256);
  CostLimit(const CostLimit&) = delete;
  CostLimit& operator=(const CostLimit&) = delete;
  ~CostLimit();

 private:
  const double bytes_;
  const Cost perByte_;
  const Cost before_;
};

}  // namespace ombe_fuzz
