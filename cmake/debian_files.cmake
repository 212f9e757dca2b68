# Run by CPack on the trees that become the Debian packages: gives them the documents that Debian asks
# for. The program holds code of header-only libraries, whose licenses want to be shown: they are
# taken from the packages that it was built with.
set(documents "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/ombe/usr/share/doc/ombe")

file(READ "${CPACK_OMBE_SOURCE_DIR}/LICENSE" copyright)
foreach(package IN ITEMS libcli11-dev nlohmann-json3-dev libfmt-dev)
  file(READ "/usr/share/doc/${package}/copyright" text)
  string(APPEND copyright
    "\n\n======== ombe holds code of ${package}, to which this applies:\n\n${text}")
endforeach()
file(WRITE "${documents}/copyright" "${copyright}")
file(REMOVE "${documents}/LICENSE")
file(GLOB_RECURSE pages "${documents}/*.md")
foreach(page IN LISTS pages)
  file(READ "${page}" text)
  string(REPLACE "](LICENSE)" "](copyright)" text "${text}")
  string(REPLACE "](CHANGELOG.md)" "](changelog.gz)" text "${text}")
  file(WRITE "${page}" "${text}")
endforeach()

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(RENAME "${documents}/CHANGELOG.md" "${documents}/changelog")
file(WRITE "${documents}/changelog.Debian"
  "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; "
  "urgency=medium\n\n  * Built from the sources of ${CPACK_PACKAGE_VERSION}.\n\n"
  " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
file(GLOB manuals "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/ombe/usr/share/man/man1/*.1")
execute_process(COMMAND gzip -9n "${documents}/changelog" "${documents}/changelog.Debian" ${manuals}
  COMMAND_ERROR_IS_FATAL ANY)

# One that depends on the other, in the same version, may point to the other's.
set(element "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/GStreamer/usr")
if(EXISTS "${element}")
  file(MAKE_DIRECTORY "${element}/share/doc")
  file(CREATE_LINK ombe "${element}/share/doc/gstreamer1.0-ombe" SYMBOLIC)
endif()
