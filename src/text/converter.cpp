#include "text/converter.h"

#include <limits>
#include <memory>
#include <new>
#include <stdexcept>

#include "text/ucnv_library.h"

namespace Ombe {
namespace {

using KMDSOLD::UCNVLibrary;

struct ConverterCloser {
  void operator()(UConverter* converter) const { UCNVLibrary::instance().close(converter); }
};
using ConverterHandle = std::unique_ptr<UConverter, ConverterCloser>;

bool isMissing(const char* name) { return name == nullptr || *name == '\0'; }

/// Units of room for one unit of input. A conversion that needs more ends where the room does.
constexpr std::size_t kGrowth = 4;

/// Room for `count` converted units and a terminator, uninitialised; null when there is none.
template <typename Unit>
std::unique_ptr<Unit[]> allocateWorstCase(std::size_t count) {
  constexpr std::size_t kMostUnits = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(Unit);
  if (count > (kMostUnits - 1) / kGrowth) return nullptr;
  return std::unique_ptr<Unit[]>(new (std::nothrow) Unit[count * kGrowth + 1]);
}

/// What both directions have in common; `convert` runs the conversion proper, which moves the given
/// target to where it stopped. An error that it meets is not looked at: what was written counts.
template <typename Unit, typename Convert>
bool convertInto(const char* name, std::size_t count, Unit** buffer, std::size_t* written,
                 Convert convert) {
  const UCNVLibrary& library = UCNVLibrary::instance();
  *buffer = nullptr;
  *written = 0;
  std::unique_ptr<Unit[]> block = allocateWorstCase<Unit>(count);
  if (block == nullptr) return false;
  UErrorCode error = U_ZERO_ERROR;
  const ConverterHandle converter(library.open(name, &error));
  if (converter == nullptr || U_FAILURE(error)) return false;
  Unit* target = block.get();
  convert(converter.get(), &target, block.get() + count * kGrowth, &error);
  *target = Unit{};
  *written = static_cast<std::size_t>(target - block.get());
  *buffer = block.release();
  return true;
}

ConvertedText convertThroughUtf16(const char* name, const unsigned char* bytes,
                                  std::uint32_t length) {
  char16_t* units = nullptr;
  std::size_t unitCount = 0;
  if (!toUtf16(name, bytes, length, &units, &unitCount)) return {};
  const std::unique_ptr<char16_t[]> unitOwner(units);
  char* text = nullptr;
  std::size_t textLength = 0;
  if (!fromUtf16("utf8", units, unitCount, &text, &textLength)) return {};
  return {std::unique_ptr<char[]>(text), textLength};
}

}  // namespace

bool toUtf16(const char* name, const unsigned char* bytes, std::uint32_t length, char16_t** buffer,
             std::size_t* units) {
  if (isMissing(name) || bytes == nullptr || length == 0) return false;
  if (buffer == nullptr || units == nullptr) return false;
  const auto convert = [&](UConverter* converter, char16_t** target, const char16_t* targetLimit,
                           UErrorCode* error) {
    const auto* source = reinterpret_cast<const char*>(bytes);
    UCNVLibrary::instance().toUnicode(converter, target, targetLimit, &source, source + length,
                                      nullptr, true, error);
  };
  return convertInto(name, length, buffer, units, convert);
}

bool fromUtf16(const char* name, const char16_t* units, std::size_t count, char** buffer,
               std::size_t* bytes) {
  if (isMissing(name) || units == nullptr || count == 0) return false;
  if (buffer == nullptr || bytes == nullptr) return false;
  const auto convert = [&](UConverter* converter, char** target, const char* targetLimit,
                           UErrorCode* error) {
    const char16_t* source = units;
    UCNVLibrary::instance().fromUnicode(converter, target, targetLimit, &source, units + count,
                                        nullptr, true, error);
  };
  return convertInto(name, count, buffer, bytes, convert);
}

ConvertedText convertText(const char* name, const unsigned char* bytes, std::uint32_t length) {
  try {
    return convertThroughUtf16(name, bytes, length);
  } catch (const std::bad_alloc&) {  // the binding could not be made
    return {};
  }
}

std::string convertToUtf8(const char* name, const unsigned char* bytes, std::uint32_t length) {
  try {
    return std::string(convertText(name, bytes, length).view());
  } catch (const std::bad_alloc&) {
    return {};
  } catch (const std::length_error&) {
    return {};
  }
}

}  // namespace Ombe
