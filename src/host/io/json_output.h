// JSON as the commands write it: one object with a version, which counts up when a reader of the
// old form would misread the new one.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "host/io/output_file.h"

namespace Ombe {

using Json = nlohmann::ordered_json;

inline constexpr int kJsonVersion = 1;

/// {"file": ..., "step": ..., "message": ...}; the file is null when the error is of none.
Json errorJson(const std::string& file, const std::string& step, const std::string& message);

/// Writes the document to standard output. Bytes that are no UTF-8 become U+FFFD; beside a "file",
/// "output" or "path" that holds some stands "fileBytes" and the like with the whole name in
/// base64.
void writeJson(Json document);

/// Writes a document piece by piece, so that a long one need not be in memory, in the form of
/// writeJson. One thread at a time.
class JsonWriter {
 public:
  explicit JsonWriter(OutputFile& output) : output_(output) {}

  /// Begins an object ('{') or array ('['): a member of that name, an element, or the document.
  void begin(char bracket, std::string_view name = {});
  void value(Json json, std::string_view name = {});
  /// Ends what was begun last.
  void end();

 private:
  void write(const Json& json, std::string_view name);
  void separate(std::string_view name);
  [[nodiscard]] std::string newLine() const;

  OutputFile& output_;
  std::string open_;  // the brackets that will close
  bool isFirst_ = true;
};

/// What commands on many files write to standard output: the version, "files", and one member
/// behind them.
class FilesJson {
 public:
  FilesJson();

  /// Where the elements of "files" go.
  [[nodiscard]] JsonWriter& files() { return json_; }
  /// Ends the files. Last call.
  void finish(std::string_view name, const Json& value);

 private:
  OutputFile output_{"-"};
  JsonWriter json_{output_};
};

}  // namespace Ombe
