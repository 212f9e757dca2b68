// The `ombe` program.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <new>

#include "host/cli/command.h"
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

}  // namespace

int main(int argc, char** argv) {
  occupyStandardStreams();
  Ombe::ExitCode code = Ombe::ExitCode::kRefused;
  try {
    code = Ombe::runCommandLine(argc, argv);
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
