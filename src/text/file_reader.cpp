#include "text/file_reader.h"

#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <limits>
#include <memory>

#include "ombe_core/logger.h"
#include "ombe_core/setting_store.h"
#include "ombe_core/subtitle_settings.h"
#include "text/charset.h"
#include "text/memory_buffer.h"
#include "text/text_settings.h"

namespace Ombe {
namespace {

constexpr char kChannel[] = "Utilities";
constexpr char kFunction[] = "readFile";

/// A file open for reading, closed at the latest when it goes out of scope.
class SourceFile {
 public:
  explicit SourceFile(const ByteString& path) : descriptor_(::open(view(path).data(), O_RDONLY)) {}
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;
  ~SourceFile() { close(); }

  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

  /// -1 when it cannot be found. The position is at the start afterwards.
  [[nodiscard]] off_t size() const {
    const off_t end = ::lseek(descriptor_, 0, SEEK_END);
    ::lseek(descriptor_, 0, SEEK_SET);
    return end;
  }

  ssize_t read(char* block, std::uint32_t count) const { return ::read(descriptor_, block, count); }

  void close() {
    if (isOpen()) ::close(descriptor_);
    descriptor_ = -1;
  }

 private:
  int descriptor_;
};

void logUnallocated(std::uint64_t bytes) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
  Logger::instance().log(kChannel, kFunction, 298, "Couldn't allocate %" PRId64 " bytes\n",
                         static_cast<std::int64_t>(std::min(bytes, kLargest)));
}

/// How many bytes to read. False, logged, when a file is too large for 32 bits. A size that cannot
/// be found counts as all ones.
bool findCount(const SourceFile& file, std::uint32_t limit, std::uint32_t& count) {
  count = limit;
  if (limit != kWholeFile) return true;
  const std::int64_t size = file.size();
  if (size > std::int64_t{std::numeric_limits<std::uint32_t>::max()}) {
    logUnallocated(static_cast<std::uint64_t>(size) + 1);
    return false;
  }
  count = static_cast<std::uint32_t>(size);
  return true;
}

/// The name is copied before anything is stored: once handed over, it is the store's.
void storeCodePage(SettingStore& store, const String& name) {
  const Setting& nameSetting = codePageSetting();
  auto payload = name.empty() ? nullptr : std::make_unique<String>(name);
  store.setValue(autodetectedSetting(), SettingValue::boolean(payload != nullptr));
  if (payload != nullptr) store.setValue(nameSetting, SettingValue::string(payload.release()));
}

}  // namespace

bool readFile(SettingStore* store, const ByteString& path, ByteString& out, std::uint32_t limit) {
  SourceFile file(path);
  if (!file.isOpen()) {
    Logger::instance().log(kChannel, kFunction, 284, "Failed to open file %s\n", view(path).data());
    return false;
  }
  std::uint32_t count = 0;
  if (!findCount(file, limit, count)) return false;
  // One byte more, for a terminating NUL. All ones wrap to no block at all.
  const std::uint32_t blockSize = count + 1;
  ktl::MemoryBuffer<char> block(blockSize, true);
  if (block.isNull()) {
    logUnallocated(blockSize);
    return false;
  }
  const ssize_t got = file.read(block.data(), count);
  file.close();
  if (got < 0 || static_cast<std::size_t>(got) != count) {
    Logger::instance().log(kChannel, kFunction, 309,
                           "Tried to read %" PRId64 " bytes, got %" PRId64 "\n",
                           std::int64_t{count}, std::int64_t{got});
    return false;
  }
  const auto* bytes = reinterpret_cast<const unsigned char*>(block.data());
  String codePage;
  const std::uint32_t skipped = detectTextSignature(bytes, count, codePage);
  if (store != nullptr) storeCodePage(*store, codePage);
  out = ByteString(bytes + skipped, count - skipped);
  return true;
}

bool readDecodedText(SettingStore* store, const ByteString& path, ByteString* out,
                     std::uint32_t limit) {
  ByteString raw;
  return out != nullptr && readFile(store, path, raw, limit) &&
         decodeText(store, raw.data(), raw.length(), *out);
}

}  // namespace Ombe
