#include "host/io/json_output.h"

#include <nlohmann/json.hpp>

#include "host/io/output_file.h"

namespace Ombe {

Json errorJson(const std::string& file, const std::string& step, const std::string& message) {
  return {
      {"file", file.empty() ? Json(nullptr) : Json(file)}, {"step", step}, {"message", message}};
}

void writeJson(const Json& document) {
  OutputFile output("-");
  JsonWriter(output).value(document);
  output.buffer() += '\n';
  output.commit();
}

void JsonWriter::begin(char bracket, std::string_view name) {
  separate(name);
  output_.buffer() += bracket;
  open_ += bracket == '{' ? '}' : ']';
  isFirst_ = true;
}

void JsonWriter::value(const Json& json, std::string_view name) {
  separate(name);
  const std::string text = json.dump(2, ' ', false, Json::error_handler_t::replace);
  for (std::string_view rest = text; !rest.empty();) {  // strings hold no line feed
    const std::size_t end = rest.find('\n');
    output_.buffer().append(rest.substr(0, end));
    if (end == std::string_view::npos) break;
    output_.buffer() += newLine();
    rest.remove_prefix(end + 1);
  }
  output_.drain();
}

void JsonWriter::end() {
  const char bracket = open_.back();
  open_.pop_back();
  if (!isFirst_) output_.buffer() += newLine();
  output_.buffer() += bracket;
  isFirst_ = false;
  if (open_.empty()) output_.buffer() += '\n';
}

void JsonWriter::separate(std::string_view name) {
  if (!isFirst_) output_.buffer() += ',';
  if (!open_.empty()) output_.buffer() += newLine();
  if (!name.empty()) output_.buffer().append(Json(name).dump()).append(": ");
  isFirst_ = false;
}

std::string JsonWriter::newLine() const { return "\n" + std::string(2 * open_.size(), ' '); }

}  // namespace Ombe
