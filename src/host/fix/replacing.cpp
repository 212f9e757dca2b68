#include "host/fix/replacing.h"

#include <filesystem>
#include <system_error>

#include "host/io/failure.h"
#include "host/io/output_file.h"

namespace Ombe {

namespace fs = std::filesystem;

void replaceFile(const std::string& file, const std::string& text) {
  std::error_code error;
  const fs::path target = fs::canonical(file, error);
  const fs::path original = target.string() + ".orig";
  OutputFile output(file);
  output.buffer() = text;
  fs::create_hard_link(target, original, error);
  if (error == std::errc::operation_not_permitted) fs::copy_file(target, original, error);
  if (error) {
    throw Failure(file, Step::kWrite,
                  "cannot be kept as " + original.string() + ": " + error.message());
  }
  try {
    output.commit();
  } catch (const Failure&) {
    fs::remove(original, error);
    throw;
  }
}

}  // namespace Ombe
