#include "host/writers/subtitle_writer.h"

#include "host/writers/jsonl_writer.h"
#include "host/writers/srt_writer.h"
#include "host/writers/vtt_writer.h"

namespace Ombe {
namespace {

template <typename Writer>
std::unique_ptr<SubtitleWriter> make() {
  return std::make_unique<Writer>();
}

struct Format {
  const char* name;
  std::unique_ptr<SubtitleWriter> (*make)();
};

constexpr Format kFormats[] = {
    {"srt", make<SrtWriter>}, {"vtt", make<VttWriter>}, {"jsonl", make<JsonlWriter>}};

}  // namespace

std::unique_ptr<SubtitleWriter> makeWriter(std::string_view format) {
  for (const Format& known : kFormats) {
    if (known.name == format) return known.make();
  }
  return nullptr;
}

std::vector<std::string> writerNames() {
  std::vector<std::string> names;
  for (const Format& known : kFormats) names.emplace_back(known.name);
  return names;
}

}  // namespace Ombe
