// What commands on many files write as JSON.
#pragma once

#include <string_view>

#include "host/io/json_output.h"
#include "host/io/output_file.h"

namespace Ombe {

/// A document on standard output: the version, "files", and one member behind them.
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
