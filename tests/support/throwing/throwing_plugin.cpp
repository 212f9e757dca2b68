// A binary whose static data cannot be made.
#include <stdexcept>

static const struct Unmakeable {
  Unmakeable() { throw std::runtime_error("unmakeable"); }
} unmakeable;
