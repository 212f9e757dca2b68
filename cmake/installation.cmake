# What `cmake --install` puts where. Everything finds the rest by relative paths, so an installed
# tree may be moved as a whole. Components: Library is the engine layer, Runtime runs ombe on it,
# Development is for those who build plug-ins or hosts.
include(CMakePackageConfigHelpers)

set(OMBE_PLUGINS_DIR "${CMAKE_INSTALL_LIBDIR}/ombe")
set(OMBE_ZSH_COMPLETIONS_DIR "${CMAKE_INSTALL_DATADIR}/zsh/site-functions"
  CACHE STRING "Where completions for zsh go, below the prefix")

# The headers use C++20.
target_compile_features(ombe_core INTERFACE cxx_std_20)

install(TARGETS ombe RUNTIME COMPONENT Runtime)
install(TARGETS microdvd LIBRARY DESTINATION "${OMBE_PLUGINS_DIR}" COMPONENT Runtime)
install(TARGETS ombe_core EXPORT ombe_core
  LIBRARY COMPONENT Library NAMELINK_COMPONENT Development)
install(DIRECTORY src/engine/ombe_core DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  COMPONENT Development FILES_MATCHING PATTERN "*.h")

# For find_package.
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/ombe_core")
install(EXPORT ombe_core NAMESPACE ombe_core:: FILE ombe_coreTargets.cmake
  DESTINATION "${package_dir}" COMPONENT Development)
configure_package_config_file(cmake/ombe_coreConfig.cmake.in ombe_coreConfig.cmake
  INSTALL_DESTINATION "${package_dir}" PATH_VARS OMBE_PLUGINS_DIR)
write_basic_package_version_file(ombe_coreConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/ombe_coreConfig.cmake"
              "${PROJECT_BINARY_DIR}/ombe_coreConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT Development)

# For pkg-config.
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH INCLUDES_FROM_PREFIX
  "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
file(RELATIVE_PATH LIBRARIES_FROM_PREFIX
  "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
string(REGEX REPLACE "/$" "" PREFIX_FROM_PKGCONFIG "${PREFIX_FROM_PKGCONFIG}")
configure_file(cmake/ombe_core.pc.in ombe_core.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ombe_core.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT Development)

# All that the pages lead to.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md LICENSE
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Runtime)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Runtime)

# Descriptions of the command line, which the program itself made.
set(descriptions "${PROJECT_BINARY_DIR}/share")
install(FILES "${descriptions}/man/man1/ombe.1"
  DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT Runtime)
install(FILES "${descriptions}/bash-completion/completions/ombe"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT Runtime)
install(FILES "${descriptions}/zsh/site-functions/_ombe"
  DESTINATION "${OMBE_ZSH_COMPLETIONS_DIR}" COMPONENT Runtime)
install(FILES "${descriptions}/fish/vendor_completions.d/ombe.fish"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT Runtime)
