#include "text/ucnv_library.h"

#include <dlfcn.h>

#include <memory>

#ifndef OMBE_ICU_VERSION
#define OMBE_ICU_VERSION U_ICU_VERSION_MAJOR_NUM
#endif

namespace KMDSOLD {
namespace {

static_assert(U_INTERNAL_PROGRAM_ERROR == 5, "the code that engines know");

void report(UErrorCode* error) {
  if (error != nullptr) *error = U_INTERNAL_PROGRAM_ERROR;
}

std::unique_ptr<UCNVLibrary> bindVersion(int version) {
  const std::string number = std::to_string(version);
  return std::make_unique<UCNVLibrary>("libicuuc.so." + number, "_" + number);
}

std::unique_ptr<UCNVLibrary> bindInstalledVersion() {
  // Releases carry whole numbers, in the library's name as in the suffix, since 49.
  constexpr int kOldest = 49;
  constexpr int kNewest = 99;
  auto preferred = bindVersion(OMBE_ICU_VERSION);
  if (preferred->isLoaded()) return preferred;
  for (int version = kNewest; version >= kOldest; --version) {
    auto other = bindVersion(version);
    if (other->isLoaded()) return other;
  }
  return preferred;
}

}  // namespace

UCNVLibrary::UCNVLibrary(const std::string& library, const std::string& suffix) {
  // Made before the library is loaded: a constructor that throws would not unload it.
  const std::string openName = "ucnv_open" + suffix;
  const std::string closeName = "ucnv_close" + suffix;
  const std::string toUnicodeName = "ucnv_toUnicode" + suffix;
  const std::string fromUnicodeName = "ucnv_fromUnicode" + suffix;
  handle_ = ::dlopen(library.c_str(), RTLD_LAZY);
  if (handle_ == nullptr) return;
  open_ = reinterpret_cast<decltype(open_)>(::dlsym(handle_, openName.c_str()));
  close_ = reinterpret_cast<decltype(close_)>(::dlsym(handle_, closeName.c_str()));
  toUnicode_ = reinterpret_cast<decltype(toUnicode_)>(::dlsym(handle_, toUnicodeName.c_str()));
  fromUnicode_ =
      reinterpret_cast<decltype(fromUnicode_)>(::dlsym(handle_, fromUnicodeName.c_str()));
}

UCNVLibrary::~UCNVLibrary() {
  if (handle_ != nullptr) ::dlclose(handle_);
  handle_ = nullptr;
}

const UCNVLibrary& UCNVLibrary::instance() {
  static const UCNVLibrary* const library = bindInstalledVersion().release();
  return *library;
}

UConverter* UCNVLibrary::open(const char* name, UErrorCode* error) const {
  if (isLoaded()) return open_(name, error);
  report(error);
  return nullptr;
}

void UCNVLibrary::close(UConverter* converter) const {
  if (isLoaded()) close_(converter);
}

void UCNVLibrary::toUnicode(UConverter* converter, UChar** target, const UChar* targetLimit,
                            const char** source, const char* sourceLimit, int32_t* offsets,
                            UBool flush, UErrorCode* error) const {
  if (!isLoaded()) return report(error);
  toUnicode_(converter, target, targetLimit, source, sourceLimit, offsets, flush, error);
}

void UCNVLibrary::fromUnicode(UConverter* converter, char** target, const char* targetLimit,
                              const UChar** source, const UChar* sourceLimit, int32_t* offsets,
                              UBool flush, UErrorCode* error) const {
  if (!isLoaded()) return report(error);
  fromUnicode_(converter, target, targetLimit, source, sourceLimit, offsets, flush, error);
}

}  // namespace KMDSOLD
