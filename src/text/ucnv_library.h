// The converter functions of the ICU common library, bound at run time.
#pragma once

#include <unicode/ucnv.h>

#include <string>

namespace KMDSOLD {

/// Loads a library and looks up the four functions by name plus suffix. When the library or one of
/// them is missing the binding is unloaded for good: opening yields no converter and nothing is
/// called. Read-only once made, so any thread may use it; a converter belongs to one thread.
class UCNVLibrary {
 public:
  /// `library` as for dlopen; `suffix` is what follows each function's plain name, such as "_72".
  UCNVLibrary(const std::string& library, const std::string& suffix);
  UCNVLibrary(const UCNVLibrary&) = delete;
  UCNVLibrary& operator=(const UCNVLibrary&) = delete;
  virtual ~UCNVLibrary();

  /// The binding of the process: the version that the build found, else the newest installed one.
  /// Made by the first call, exactly once, and never destroyed.
  static const UCNVLibrary& instance();

  [[nodiscard]] bool isLoaded() const {
    return handle_ != nullptr && open_ != nullptr && close_ != nullptr && toUnicode_ != nullptr &&
           fromUnicode_ != nullptr;
  }

  /// The library's functions of these names. Unloaded, they report U_INTERNAL_PROGRAM_ERROR where
  /// `error` is given, and do nothing else. A converter is closed by whoever opened it.
  UConverter* open(const char* name, UErrorCode* error) const;
  void close(UConverter* converter) const;
  void toUnicode(UConverter* converter, UChar** target, const UChar* targetLimit,
                 const char** source, const char* sourceLimit, int32_t* offsets, UBool flush,
                 UErrorCode* error) const;
  void fromUnicode(UConverter* converter, char** target, const char* targetLimit,
                   const UChar** source, const UChar* sourceLimit, int32_t* offsets, UBool flush,
                   UErrorCode* error) const;

 private:
  void* handle_ = nullptr;
  decltype(&::ucnv_open) open_ = nullptr;
  decltype(&::ucnv_close) close_ = nullptr;
  decltype(&::ucnv_toUnicode) toUnicode_ = nullptr;
  decltype(&::ucnv_fromUnicode) fromUnicode_ = nullptr;
};

}  // namespace KMDSOLD
