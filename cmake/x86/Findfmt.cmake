# fmt for the 32-bit build: the headers alone.
find_path(fmt_INCLUDE_DIR fmt/format-inl.h)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(fmt REQUIRED_VARS fmt_INCLUDE_DIR)
if(fmt_FOUND AND NOT TARGET fmt::fmt-header-only)
  add_library(fmt::fmt-header-only INTERFACE IMPORTED)
  target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY)
  target_include_directories(fmt::fmt-header-only SYSTEM INTERFACE "${fmt_INCLUDE_DIR}")
endif()
