# ICU for the 32-bit build: the 64-bit package's headers, and the libraries of the i386 package,
# which come without the links that a linker looks for.
find_path(ICU_INCLUDE_DIR unicode/uvernum.h)
set(ICU_INCLUDE_DIRS "${ICU_INCLUDE_DIR}")
if(ICU_INCLUDE_DIR)
  file(STRINGS "${ICU_INCLUDE_DIR}/unicode/uvernum.h" version REGEX "define U_ICU_VERSION ")
  string(REGEX REPLACE ".*\"(.+)\".*" "\\1" ICU_VERSION "${version}")
  string(REGEX MATCH "^[0-9]+" major "${ICU_VERSION}")
endif()
foreach(component IN LISTS ICU_FIND_COMPONENTS)
  find_library(ICU_${component}_LIBRARY "libicu${component}.so.${major}"
    PATHS /usr/lib/i386-linux-gnu NO_DEFAULT_PATH)
  list(APPEND libraries "ICU_${component}_LIBRARY")
  if(ICU_${component}_LIBRARY AND NOT TARGET ICU::${component})
    add_library(ICU::${component} SHARED IMPORTED)
    set_target_properties(ICU::${component} PROPERTIES
      IMPORTED_LOCATION "${ICU_${component}_LIBRARY}"
      INTERFACE_INCLUDE_DIRECTORIES "${ICU_INCLUDE_DIR}")
  endif()
endforeach()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(ICU
  REQUIRED_VARS ICU_INCLUDE_DIR ${libraries} VERSION_VAR ICU_VERSION)
