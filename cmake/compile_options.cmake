# Warnings, hardening and sanitizers for everything that is built here.
add_library(ombe_options INTERFACE)

target_compile_options(ombe_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wformat=2
  -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wundef -Wdouble-promotion
  -Werror
  # g++ 12 takes joining a literal and a std::string for an overlapping copy.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# The x87 unit of 32-bit x86 keeps more digits than a double has: times would come out a millisecond
# off those of every other platform.
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86")
  target_compile_options(ombe_options INTERFACE -msse2 -mfpmath=sse)
endif()

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)
check_pie_supported()
target_compile_options(ombe_options INTERFACE -fstack-protector-strong -D_GLIBCXX_ASSERTIONS)
foreach(flag IN ITEMS -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "OMBE_HAS${flag}" has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    target_compile_options(ombe_options INTERFACE ${flag})
  endif()
endforeach()
# What is not called is left out, most of all of libraries that are headers alone: a program starts the
# sooner the fewer pages it is spread over.
target_compile_options(ombe_options INTERFACE
  -ffunction-sections -fdata-sections $<$<CONFIG:Release>:-O2>)
target_link_options(ombe_options INTERFACE -Wl,--gc-sections -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed)

if(OMBE_SANITIZE)
  target_compile_options(ombe_options INTERFACE
    -fsanitize=${OMBE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(ombe_options INTERFACE -fsanitize=${OMBE_SANITIZE})
elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  # The system's headers warn of a level that they do not have for the compiler.
  set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("#include <cstdio>\nint main() {}" OMBE_HAS_FORTIFY_3)
  unset(CMAKE_REQUIRED_FLAGS)
  target_compile_options(ombe_options INTERFACE
    -U_FORTIFY_SOURCE $<IF:$<BOOL:${OMBE_HAS_FORTIFY_3}>,-D_FORTIFY_SOURCE=3,-D_FORTIFY_SOURCE=2>)
endif()
# What the figures are asked of is counted; more would cost time. With -pthread threads count
# together (ccache does not know -fprofile-update).
add_library(ombe_counted INTERFACE)
if(OMBE_COVERAGE)
  target_compile_options(ombe_counted INTERFACE --coverage -pthread)
  target_link_options(ombe_options INTERFACE --coverage)
endif()
if(OMBE_BUILD_FUZZ)
  target_compile_options(ombe_options INTERFACE
    -fsanitize=fuzzer-no-link -fsanitize-coverage=trace-loads)
endif()
