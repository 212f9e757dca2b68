// Owning descriptors, files without a name, and reading and writing whatever a descriptor is,
// blocking or not.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Ombe {

/// Owns an open descriptor, or none, which is -1.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { reset(); }

  [[nodiscard]] int get() const { return number_; }
  /// Closes it and owns the other.
  void reset(int number = -1);

 private:
  int number_;
};

/// A new file that can be read and written and goes with its last descriptor, whatever ends the
/// process: without a name in `folder`, or in memory where the file system has no such files.
/// -1 and errno otherwise.
int openUnnamed(const std::string& folder, mode_t permissions);

/// Writes all of it, and waits where a descriptor that does not block takes no more for now. The
/// error number, 0 for success. One thread at a time for each descriptor.
[[nodiscard]] int writeBytes(int descriptor, std::string_view bytes);

/// Does what read(2) does, but waits for data, or the end, where a descriptor that does not block
/// has none yet, and goes on after a signal.
[[nodiscard]] ssize_t readBytes(int descriptor, char* buffer, std::size_t size);

/// Reads what the string has room for, and shortens it to what there was. False on an error.
[[nodiscard]] bool fill(std::string& bytes, int file);

/// Copies all that is still to be read. The error number, 0 for success.
[[nodiscard]] int copyBytes(int from, int to);

/// The file from its beginning, at most `limit` bytes of it. Throws Failure.
std::string readFile(const std::string& path, std::uintmax_t limit);

}  // namespace Ombe
