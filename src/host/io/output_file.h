// Where a command's data goes.
#pragma once

#include <sys/stat.h>

#include <mutex>
#include <set>
#include <string>

namespace Ombe {

class TemporaryName;

/// Folders with new names in them that the disk may not have yet. Any thread.
class UnsyncedFolders {
 public:
  void add(const std::string& folder);
  /// Returns when the disk has them. Throws Failure that names one of which it has not, after all.
  void sync();

 private:
  std::mutex mutex_;
  std::set<std::string> folders_;  // guarded
};

/// Takes a command's data in big writes. A regular file is written without a name and
/// takes its place in `commit`, when the disk has it, so that it is there whole or as it was
/// before; a device or pipe that exists is written straight, and so is standard output ("-"). A
/// terminal gets the data made visible, anything else as it is. Every failure is thrown as a
/// Failure that names the output. One thread at a time.
class OutputFile {
 public:
  /// Data that is visible already may hold escape sequences, which a terminal is then to follow.
  enum class Text { kAsItCame, kVisible };

  explicit OutputFile(const std::string& path, Text text = Text::kAsItCame);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Without `commit` nothing has changed.
  ~OutputFile();

  /// Append here whole characters, then call `drain`: it writes what has gathered once that is
  /// worth a write.
  [[nodiscard]] std::string& buffer() { return buffer_; }
  void drain() {
    if (buffer_.size() >= kWriteSize) flush();
  }

  /// Writes the rest and puts the file in its place. Last call. With many files in a folder it is
  /// cheaper to have their names synced `later`, by the caller: until then one may be there as it
  /// was before when the machine stops.
  void commit(UnsyncedFolders* later = nullptr);

 private:
  static constexpr std::size_t kWriteSize = std::size_t{1} << 15;

  void openTemporary(mode_t permissions);
  [[nodiscard]] int giveName(const TemporaryName& name);
  void replaceTarget(const std::string& folder);
  void flush();
  [[noreturn]] void fail(int error) const;

  Text text_;
  std::string path_;    // as given, for messages
  std::string target_;  // behind links; of a file that gets made or replaced
  bool isUnnamed_ = false;
  mode_t permissions_ = 0;
  std::string buffer_;
  int descriptor_ = -1;
};

/// An output that is a text, whole.
void writeOutput(const std::string& path, std::string text,
                 OutputFile::Text kind = OutputFile::Text::kAsItCame);

}  // namespace Ombe
