#include "host/io/json_output.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "host/text/utf8_scan.h"

namespace Ombe {
namespace {

std::string base64(std::string_view bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    std::uint32_t group = 0;
    for (std::size_t i = at; i < at + 3; ++i) {
      group = group << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (int shift = 18; shift >= 0; shift -= 6) out += kDigits[group >> shift & 0x3F];
  }
  const std::size_t missing = (3 - bytes.size() % 3) % 3;
  return out.replace(out.size() - missing, missing, missing, '=');
}

bool needsBytes(std::string_view member, const Json& value) {
  return (member == "file" || member == "output" || member == "path") && value.is_string() &&
         !isUtf8(value.get_ref<const std::string&>());
}

std::pair<std::string, Json> bytesOf(std::string_view member, const Json& name) {
  return {std::string(member) + "Bytes", base64(name.get_ref<const std::string&>())};
}

void addBytes(Json& json) {
  std::vector<std::pair<std::string, Json>> added;
  for (const auto& [member, value] : json.items()) {
    if (value.is_structured()) addBytes(value);
    if (needsBytes(member, value)) added.push_back(bytesOf(member, value));
  }
  for (auto& [member, value] : added) json[member] = std::move(value);
}

}  // namespace

Json errorJson(const std::string& file, const std::string& step, const std::string& message) {
  return {
      {"file", file.empty() ? Json(nullptr) : Json(file)}, {"step", step}, {"message", message}};
}

void writeJson(Json document) {
  OutputFile output("-");
  JsonWriter(output).value(std::move(document));
  output.buffer() += '\n';
  output.commit();
}

void JsonWriter::begin(char bracket, std::string_view name) {
  separate(name);
  output_.buffer() += bracket;
  open_ += bracket == '{' ? '}' : ']';
  isFirst_ = true;
}

void JsonWriter::value(Json json, std::string_view name) {
  if (json.is_structured()) addBytes(json);
  write(json, name);
  if (!needsBytes(name, json)) return;
  const auto [member, bytes] = bytesOf(name, json);
  write(bytes, member);
}

void JsonWriter::write(const Json& json, std::string_view name) {
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

FilesJson::FilesJson() {
  json_.begin('{');
  json_.value(kJsonVersion, "version");
  json_.begin('[', "files");
}

void FilesJson::finish(std::string_view name, const Json& value) {
  json_.end();
  json_.value(value, name);
  json_.end();
  output_.commit();
}

}  // namespace Ombe
