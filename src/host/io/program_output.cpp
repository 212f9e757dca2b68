#include "host/io/program_output.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "host/io/descriptor_io.h"

namespace Ombe {
namespace {

constexpr std::size_t kMostOutput = 4096;  // bytes

/// The process, or nothing.
std::optional<pid_t> start(std::vector<std::string>& command, int output) {
  std::vector<char*> words(command.size() + 1);  // the last stays null
  std::transform(command.begin(), command.end(), words.begin(),
                 [](std::string& word) { return word.data(); });
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return std::nullopt;
  pid_t process = 0;
  const bool isStarted =
      ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
      ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO) == 0 &&
      ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) == 0 &&
      ::posix_spawnp(&process, words.front(), &actions, nullptr, words.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  return isStarted ? std::optional(process) : std::nullopt;
}

}  // namespace

std::optional<std::string> outputOf(std::vector<std::string> command) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
  Descriptor ours(ends[0]), theirs(ends[1]);
  const auto process = start(command, theirs.get());
  if (!process) return std::nullopt;
  theirs.reset();
  std::string output(kMostOutput, '\0');
  static_cast<void>(fill(output, ours.get()));
  ours.reset();  // ends a program that goes on writing
  while (::waitpid(*process, nullptr, 0) < 0 && errno == EINTR) continue;
  return output;
}

}  // namespace Ombe
