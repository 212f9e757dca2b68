# fmt for the 32-bit build: the headers alone.
find_path(fmt_INCLUDE_DIR fmt/format-inl.h)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(fmt REQUIRED_VARS fmt_INCLUDE_DIR)
if(fmt_FOUND AND NOT TARGET fmt::fmt)
  add_library(fmt::fmt INTERFACE IMPORTED)
  target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)
  target_include_directories(fmt::fmt SYSTEM INTERFACE "${fmt_INCLUDE_DIR}")
endif()
