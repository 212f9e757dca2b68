# Boost for the 32-bit build: the headers alone.
find_path(Boost_INCLUDE_DIR boost/url/src.hpp)
set(Boost_INCLUDE_DIRS "${Boost_INCLUDE_DIR}")
if(Boost_INCLUDE_DIR)
  file(STRINGS "${Boost_INCLUDE_DIR}/boost/version.hpp" version REGEX "define BOOST_LIB_VERSION ")
  string(REGEX REPLACE "[^0-9]+([0-9]+)_([0-9]+).*" "\\1.\\2" Boost_VERSION "${version}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Boost
  REQUIRED_VARS Boost_INCLUDE_DIR VERSION_VAR Boost_VERSION)
