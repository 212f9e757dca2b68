#include "host/validate/verdict.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <thread>

#include "host/io/descriptor_io.h"
#include "host/io/failure.h"

namespace Ombe {
namespace {

int reportDescriptor = -1;
std::atomic<bool> hasReported{false};
std::string where;
Outcome failure = Outcome::kFailed;

void send(Outcome outcome, std::string_view came) {
  constexpr std::size_t kMessageSize = 4000;  // a pipe takes it at once, whoever reads
  std::string message(1, static_cast<char>(outcome));
  message.append(where).append(came.substr(0, kMessageSize - where.size()));
  static_cast<void>(writeBytes(reportDescriptor, message));
}

void closeStandardStreams(bool isLoud) {
  const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (stream != STDERR_FILENO || !isLoud) ::dup2(nothing, stream);
  }
}

[[noreturn]] void runChild(const std::function<void()>& ask, bool isLoud) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const rlimit noCore{0, 0};
  ::setrlimit(RLIMIT_CORE, &noCore);
  closeStandardStreams(isLoud);
  try {
    ask();
  } catch (const std::exception& error) {
    report(Outcome::kFailed, std::string("an exception left an operation: ") + error.what());
  } catch (...) {
    report(Outcome::kFailed, "an exception that is no std::exception left an operation");
  }
  where.clear();
  if (!hasReported.exchange(true)) send(Outcome::kPassed, {});
  std::exit(0);  // NOLINT(concurrency-mt-unsafe): what a module does at the end counts as well
}

/// All that comes before the end or the deadline; whether the end came.
bool readUntil(std::chrono::steady_clock::time_point deadline, int descriptor, std::string& out) {
  for (;;) {
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd waiting{descriptor, POLLIN, 0};
    if (::poll(&waiting, 1, static_cast<int>(left.count())) <= 0) continue;
    char block[512];
    const ssize_t got = ::read(descriptor, block, sizeof block);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return true;
    out.append(block, static_cast<std::size_t>(got));
  }
}

std::string endOf(int status) {
  if (WIFSIGNALED(status)) {
    const char* name = ::sigdescr_np(WTERMSIG(status));
    return "the process crashed: " + std::string(name == nullptr ? "unknown signal" : name);
  }
  return "the process ended with exit code " + std::to_string(WEXITSTATUS(status));
}

/// Whether the process has ended; one that has closed its end of the pipe may still hang. It stays
/// to be waited for, so its number is nobody else's.
bool endsBy(std::chrono::steady_clock::time_point deadline, pid_t child) {
  for (;;) {
    siginfo_t info{};
    ::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT);
    if (info.si_pid == child) return true;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

Verdict verdictOf(const std::string& message, int status) {
  const bool isWhole = !message.empty() && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  const Outcome outcome = message.empty() ? Outcome::kPassed : static_cast<Outcome>(message[0]);
  if (isWhole || (!message.empty() && outcome != Outcome::kPassed)) {
    return {outcome, message.substr(1)};
  }
  return {Outcome::kFailed, endOf(status) + (message.empty() ? "" : ", after all was asked")};
}

}  // namespace

Verdict judge(const std::function<void()>& ask, int limitSeconds, bool isLoud) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) {
    throw Failure(Step::kLoad, std::string("no pipe: ") + std::strerror(errno));
  }
  Descriptor ours(ends[0]), theirs(ends[1]);
  const pid_t child = ::fork();
  if (child < 0) throw Failure(Step::kLoad, std::string("no process: ") + std::strerror(errno));
  if (child == 0) {
    ours.reset();
    reportDescriptor = theirs.get();
    runChild(ask, isLoud);
  }
  theirs.reset();
  std::string message;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(limitSeconds);
  const bool hasEnded = readUntil(deadline, ours.get(), message) && endsBy(deadline, child);
  ::kill(-child, SIGKILL);  // also what it may have started
  ::kill(child, SIGKILL);
  int status = 0;
  ::waitpid(child, &status, 0);
  if (hasEnded) return verdictOf(message, status);
  return {Outcome::kFailed, "no end within " + std::to_string(limitSeconds) + " s", true};
}

void report(Outcome outcome, std::string_view came) {
  while (hasReported.exchange(true)) ::pause();  // another thread is about to end all this
  send(outcome, came);
  std::_Exit(0);
}

void setPlace(std::string place) { where = std::move(place); }
void setFailure(Outcome outcome) { failure = outcome; }

void reportFailure(std::string_view came) { report(failure, came); }

}  // namespace Ombe
