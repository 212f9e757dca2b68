// The `ombe` program.
#include <exception>
#include <new>

#include "host/failure.h"
#include "host/messages.h"
#include "host/options.h"

namespace {

Ombe::ExitCode run(int argc, char** argv) {
  Ombe::Options options;
  if (const auto end = Ombe::parseCommandLine(argc, argv, options)) return *end;
  if (options.log) Ombe::logToStandardError();
  return options.run(options);
}

}  // namespace

int main(int argc, char** argv) {
  Ombe::ExitCode code = Ombe::ExitCode::kRefused;
  try {
    code = run(argc, argv);
  } catch (const Ombe::Failure& failure) {
    Ombe::reportError(failure.what());
    code = failure.code();
  } catch (const std::bad_alloc&) {
    Ombe::reportError("out of memory");
  } catch (const std::exception& error) {
    Ombe::reportError(error.what());
  }
  return static_cast<int>(code);
}
