// The `ombe` program.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

#include "host/cli/options.h"
#include "host/io/failure.h"
#include "host/io/messages.h"

namespace {

/// Takes the places of standard streams that are closed, which files would get when they are opened
/// next. Using one fails as before: what is read is open for writing only, and the other way
/// around.
void occupyStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

/// The folder of plug-ins beside that of this program; empty when that is not known.
std::string pluginsBesideProgram() {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (error) return {};
  return (program.parent_path() / OMBE_PLUGINS_FROM_PROGRAM).lexically_normal();
}

Ombe::ExitCode run(int argc, char** argv) {
  Ombe::Options options;
  options.session.pluginFolder = pluginsBesideProgram();
  if (const auto end = Ombe::parseCommandLine(argc, argv, options)) return *end;
  if (options.log) Ombe::logToStandardError();
  return options.run(options);
}

}  // namespace

int main(int argc, char** argv) {
  occupyStandardStreams();
  Ombe::ExitCode code = Ombe::ExitCode::kRefused;
  try {
    code = run(argc, argv);
  } catch (const Ombe::Failure& failure) {
    Ombe::reportError(messageOf(failure));
    code = exitCodeOf(failure);
  } catch (const std::bad_alloc&) {
    Ombe::reportError("out of memory");
  } catch (const std::exception& error) {
    Ombe::reportError(error.what());
  }
  return static_cast<int>(code);
}
