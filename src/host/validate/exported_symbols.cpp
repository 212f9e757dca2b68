#include "host/validate/exported_symbols.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <algorithm>
#include <bit>
#include <string_view>

namespace Ombe {
namespace {

/// The tables of a module in memory; the loader has made their addresses absolute.
struct Tables {
  const ElfW(Sym) * symbols = nullptr;
  const char* names = nullptr;
  const ElfW(Word) * hash = nullptr;     // of the old form, which counts its symbols
  const ElfW(Word) * gnuHash = nullptr;  // of the new one
};

Tables tablesOf(const ElfW(Dyn) * entry) {
  Tables tables;
  for (; entry->d_tag != DT_NULL; ++entry) {
    const void* table = std::bit_cast<const void*>(entry->d_un.d_ptr);
    if (entry->d_tag == DT_SYMTAB) tables.symbols = static_cast<const ElfW(Sym)*>(table);
    if (entry->d_tag == DT_STRTAB) tables.names = static_cast<const char*>(table);
    if (entry->d_tag == DT_HASH) tables.hash = static_cast<const ElfW(Word)*>(table);
    if (entry->d_tag == DT_GNU_HASH) tables.gnuHash = static_cast<const ElfW(Word)*>(table);
  }
  return tables;
}

/// Behind the last symbol: that of the chain which begins last.
std::size_t countOf(const ElfW(Word) * gnuHash) {
  const std::size_t buckets = gnuHash[0], first = gnuHash[1], filterWords = gnuHash[2];
  const ElfW(Word)* bucket = gnuHash + 4 + filterWords * sizeof(ElfW(Addr)) / sizeof(ElfW(Word));
  const ElfW(Word)* chain = bucket + buckets;
  std::size_t last = *std::max_element(bucket, chain);
  if (last < first) return first;
  while ((chain[last - first] & 1U) == 0) ++last;
  return last + 1;
}

/// Weak ones come from inline functions of headers.
bool isExported(const ElfW(Sym) & symbol) {
  const auto type = ELF64_ST_TYPE(symbol.st_info);
  return symbol.st_shndx != SHN_UNDEF && symbol.st_shndx != SHN_ABS &&
         ELF64_ST_BIND(symbol.st_info) == STB_GLOBAL && type != STT_SECTION && type != STT_FILE;
}

}  // namespace

std::vector<std::string> exportedSymbols(void* module) {
  constexpr std::string_view kOfLinkers[] = {"_init", "_fini", "_edata", "_end", "__bss_start"};
  std::vector<std::string> names;
  link_map* map = nullptr;
  if (::dlinfo(module, RTLD_DI_LINKMAP, static_cast<void*>(&map)) != 0) return names;
  const Tables tables = tablesOf(map->l_ld);
  if (tables.symbols == nullptr || tables.names == nullptr) return names;
  std::size_t count = 0;
  if (tables.gnuHash != nullptr) count = countOf(tables.gnuHash);
  if (tables.hash != nullptr) count = tables.hash[1];
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view name = tables.names + tables.symbols[i].st_name;
    const bool isOfLinker = std::count(std::begin(kOfLinkers), std::end(kOfLinkers), name) != 0;
    if (isExported(tables.symbols[i]) && !isOfLinker) names.emplace_back(name);
  }
  return names;
}

}  // namespace Ombe
