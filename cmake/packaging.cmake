# The Debian packages, made by `cpack -G DEB` (scripts/package) from a build for the prefix /usr. The
# element is one of its own, since it changes what every player on the machine shows.
set(OMBE_PACKAGE_CONTACT "The ombe contributors <ombe@example.org>"
  CACHE STRING "Maintainer of the packages that are made here")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ombe)
set(CPACK_PACKAGE_CONTACT "${OMBE_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # would go before each package's own
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime Development)
set(CPACK_COMPONENT_RUNTIME_GROUP ombe)
set(CPACK_COMPONENT_DEVELOPMENT_GROUP ombe)
set(CPACK_DEBIAN_OMBE_PACKAGE_NAME ombe)
set(CPACK_DEBIAN_OMBE_DESCRIPTION
"MicroDVD subtitles for the Ombe engine, and a headless player
Plays MicroDVD subtitle files in the terminal, says why one does not open,
and exports them to other formats, through the engine's MicroDVD plug-in.
Holds the program ombe, the plug-in, the engine layer libombe_core, and the
headers for other plug-ins.")
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
set(CPACK_DEBIAN_GSTREAMER_PACKAGE_DEPENDS "ombe (= ${PROJECT_VERSION}-1)")
set(CPACK_DEBIAN_GSTREAMER_PACKAGE_RECOMMENDS "gstreamer1.0-plugins-base, gstreamer1.0-x")
set(CPACK_DEBIAN_GSTREAMER_PACKAGE_SUGGESTS "gstreamer1.0-tools")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
# ICU is bound at run time, so no linker knows of it.
set(CPACK_DEBIAN_OMBE_PACKAGE_DEPENDS "libicu${OMBE_ICU_VERSION}")
set(CPACK_DEBIAN_OMBE_PACKAGE_SUGGESTS "bash-completion, ffmpeg | mediainfo, gstreamer1.0-ombe, pkgconf")
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
