# Boost for the 32-bit build: there are only 64-bit libraries, so Boost.URL is compiled here from its
# headers. The component `url` is always given.
find_path(Boost_INCLUDE_DIR boost/url/src.hpp)
set(Boost_INCLUDE_DIRS "${Boost_INCLUDE_DIR}")
if(Boost_INCLUDE_DIR)
  file(STRINGS "${Boost_INCLUDE_DIR}/boost/version.hpp" version REGEX "define BOOST_LIB_VERSION ")
  string(REGEX REPLACE "[^0-9]+([0-9]+)_([0-9]+).*" "\\1.\\2" Boost_VERSION "${version}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Boost
  REQUIRED_VARS Boost_INCLUDE_DIR VERSION_VAR Boost_VERSION)
if(Boost_FOUND AND NOT TARGET Boost::url)
  file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/boost_url.cpp" CONTENT "#include <boost/url/src.hpp>\n")
  add_library(boost_url STATIC "${CMAKE_BINARY_DIR}/boost_url.cpp")
  target_include_directories(boost_url SYSTEM PUBLIC "${Boost_INCLUDE_DIR}")
  add_library(Boost::url ALIAS boost_url)
endif()
