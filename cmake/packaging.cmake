# The Debian packages, made by `cpack -G DEB` (scripts/package) from a build for the prefix /usr. The
# element is one of its own, since it changes what every player on the machine shows.
set(OMBE_PACKAGE_CONTACT "The ombe contributors <ombe@example.org>"
  CACHE STRING "Maintainer of the packages that are made here")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ombe)
set(CPACK_PACKAGE_CONTACT "${OMBE_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # would go before each package's own
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Library Runtime Development)
set(same_version "= ${PROJECT_VERSION}-1")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME "libombe-core${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION
"Engine layer that plug-ins for the Ombe engine are built against
The classes of the engine that its plug-ins and hosts meet: strings, chunks,
settings, streams and containers. What needs it brings it in.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/debian/triggers")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ombe)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"MicroDVD subtitles for the Ombe engine, and a headless player
Plays MicroDVD subtitle files in the terminal, says why one does not open,
mends it, and exports it to other formats, through the engine's MicroDVD
plug-in, which comes with it.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libombe-core-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"Headers for plug-ins and hosts of the Ombe engine
What a plug-in for another subtitle format, or another host, is built with: the
headers of libombe-core, and its descriptions for CMake and pkg-config.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} (${same_version})")
if(TARGET gstombe)
  list(APPEND CPACK_COMPONENTS_ALL GStreamer)
endif()
set(CPACK_DEBIAN_GSTREAMER_PACKAGE_NAME gstreamer1.0-ombe)
set(CPACK_DEBIAN_GSTREAMER_DESCRIPTION
"MicroDVD subtitles with their styles in GStreamer's players
Takes the place of GStreamer's own parser for MicroDVD subtitles: colours,
overlapping subtitles, encoding signatures, seeking and reverse work, and files
with a broken line are refused with the reason. Remove it to switch it off.")
# As exact as a package and the library that it was built with; overlays stand in the other two.
set(CPACK_DEBIAN_GSTREAMER_PACKAGE_DEPENDS
  "ombe (${same_version}), ${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} (${same_version})")
set(CPACK_DEBIAN_GSTREAMER_PACKAGE_RECOMMENDS "gstreamer1.0-plugins-base, gstreamer1.0-x")
set(CPACK_DEBIAN_GSTREAMER_PACKAGE_SUGGESTS "gstreamer1.0-tools")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
# ICU is bound at run time, so no linker knows of it.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS
  "${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} (${same_version}), libicu${OMBE_ICU_VERSION}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "bash-completion, ffmpeg | mediainfo, gstreamer1.0-ombe")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/debian_files.cmake")
set(CPACK_OMBE_SOURCE_DIR "${PROJECT_SOURCE_DIR}")

include(CPack)
