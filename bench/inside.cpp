// Measures one step inside a fresh process: inside STEP FILE [CODE-PAGE [REPEATS]]
//
//   floor  what nobody can leave out of opening (see floor.h)
//   floor2 the same, from the two blocks that the plug-in has
//   copy   every chunk of the floor copied, and given back
//   open   the plug-in's open
//   read   every chunk of the opened file, taken and given back
//   all    open, read and release together
//   fresh  the same, after the C library has given its free memory back
//   icu    the bare converter calls for the texts that `read` converts
//
// Prints the processor seconds (user and system) of the step as a JSON number: with REPEATS, the
// mean of so many runs in one process.
#include <malloc.h>
#include <unicode/ucnv.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "floor.h"
#include "host/cli/common_options.h"
#include "host/session/session.h"
#include "ombe_core/media_source.h"

namespace {

using Ombe::Chunk;
using Ombe::Session;
using Ombe::SessionOptions;

double processorSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double secondsOf(const std::function<void()>& step) {
  const double start = processorSeconds();
  step();
  return processorSeconds() - start;
}

struct Arguments {
  std::string file;
  SessionOptions options;
};

double floorFrom(const Arguments& arguments, ombe_bench::Blocks blocks) {
  std::vector<std::unique_ptr<ombe_bench::FloorChunk>> chunks;
  return secondsOf([&] { chunks = ombe_bench::readFloor(arguments.file, blocks); });
}

double floorStep(const Arguments& arguments) {
  return floorFrom(arguments, ombe_bench::Blocks::kOne);
}

double floorOfTwoStep(const Arguments& arguments) {
  return floorFrom(arguments, ombe_bench::Blocks::kTwo);
}

double copyStep(const Arguments& arguments) {
  const auto chunks = ombe_bench::readFloor(arguments.file, ombe_bench::Blocks::kTwo);
  return secondsOf([&] { ombe_bench::copyEach(chunks); });
}

double openStep(const Arguments& arguments) {
  Session session(arguments.options);
  const Ombe::MediaSource source(Ombe::toByteString("file://" + arguments.file));
  Ombe::Status status = Ombe::kGeneralFailure;
  const double seconds = secondsOf([&] { status = session.container().open(source); });
  if (status != Ombe::kSuccess) throw std::runtime_error("not opened");
  session.container().deactivate(false);
  return seconds;
}

double readStep(const Arguments& arguments) {
  Session session(arguments.options);
  session.open(arguments.file);
  return secondsOf([&] { session.readToEnd([](const Chunk&) {}); });
}

double allStep(const Arguments& arguments) {
  return secondsOf([&] {
    Session session(arguments.options);
    session.open(arguments.file);
    session.readToEnd([](const Chunk&) {});
  });
}

/// A session of a process that had no use for so much memory before.
double freshStep(const Arguments& arguments) {
  ::malloc_trim(0);
  return allStep(arguments);
}

/// Both conversions of one text with converters of their own, into buffers that are there already.
std::size_t convert(const char* codePage, const std::string& text, std::vector<UChar>& units,
                    std::vector<char>& bytes) {
  UErrorCode error = U_ZERO_ERROR;
  UChar* unit = units.data();
  const char* source = text.data();
  UConverter* converter = ucnv_open(codePage, &error);
  ucnv_toUnicode(converter, &unit, unit + units.size(), &source, source + text.size(), nullptr,
                 true, &error);
  ucnv_close(converter);
  const UChar* from = units.data();
  char* byte = bytes.data();
  converter = ucnv_open("utf8", &error);
  ucnv_fromUnicode(converter, &byte, byte + bytes.size(), &from, unit, nullptr, true, &error);
  ucnv_close(converter);
  if (U_FAILURE(error)) throw std::runtime_error(u_errorName(error));
  return static_cast<std::size_t>(byte - bytes.data());
}

double icuStep(const Arguments& arguments) {
  SessionOptions options = arguments.options;
  options.codePage.reset();
  Session session(options);
  session.open(arguments.file);
  std::vector<std::string> texts;
  session.readToEnd([&](const Chunk& chunk) { texts.emplace_back(chunk.text()); });
  std::vector<UChar> units(4096);
  std::vector<char> bytes(4 * units.size());
  std::size_t written = 0;
  const double seconds = secondsOf([&] {
    for (const std::string& text : texts) {
      written += convert(arguments.options.codePage->c_str(), text, units, bytes);
    }
  });
  if (written == 0) throw std::runtime_error("nothing was converted");
  return seconds;
}

struct Step {
  std::string_view name;
  double (*run)(const Arguments& arguments);
};

constexpr Step kSteps[] = {
    {"floor", floorStep}, {"floor2", floorOfTwoStep}, {"copy", copyStep},   {"open", openStep},
    {"read", readStep},   {"all", allStep},           {"fresh", freshStep}, {"icu", icuStep}};

int run(std::string_view name, const Arguments& arguments, int repeats) {
  for (const Step& step : kSteps) {
    if (step.name != name) continue;
    double total = 0;
    for (int i = 0; i < repeats; ++i) total += step.run(arguments);
    std::printf("%.9f\n", total / repeats);
    return 0;
  }
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  try {
    Arguments arguments{argv[2], {}};
    arguments.options.pluginFolder = Ombe::pluginsBesideProgram();
    if (argc > 3 && *argv[3] != '\0') arguments.options.codePage = argv[3];
    return run(argv[1], arguments, argc > 4 ? std::atoi(argv[4]) : 1);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "inside: %s\n", failure.what());
    return 1;
  }
}
