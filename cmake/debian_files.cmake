# Run by CPack on the trees that become the Debian packages: gives them the documents that Debian asks
# for. Program and plug-in hold code of libraries of headers, whose licenses want to be shown: they are
# taken from the packages that it was built with. Every file gets the time of SOURCE_DATE_EPOCH where
# that is set, so that the same sources make the same packages.
set(trees "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
set(documents "${trees}/Runtime/usr/share/doc/ombe")
set(library_documents "${trees}/Library/usr/share/doc/${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME}")

file(READ "${CPACK_OMBE_SOURCE_DIR}/LICENSE" copyright)
file(WRITE "${library_documents}/copyright" "${copyright}")
foreach(package IN ITEMS libboost1.81-dev libcli11-dev nlohmann-json3-dev libfmt-dev)
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
file(COPY "${documents}/changelog.Debian" DESTINATION "${library_documents}")
file(GLOB manuals "${trees}/Runtime/usr/share/man/man1/*.1")
execute_process(COMMAND gzip -9n "${documents}/changelog" "${documents}/changelog.Debian" ${manuals}
  "${library_documents}/changelog.Debian" COMMAND_ERROR_IS_FATAL ANY)

# One that depends on another, in the same version, may point to the other's.
function(point_documents component package other)
  if(EXISTS "${trees}/${component}")
    file(MAKE_DIRECTORY "${trees}/${component}/usr/share/doc")
    file(CREATE_LINK ${other} "${trees}/${component}/usr/share/doc/${package}" SYMBOLIC)
  endif()
endfunction()
point_documents(GStreamer gstreamer1.0-ombe ombe)
point_documents(Development libombe-core-dev ${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME})

if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find "${trees}" -exec touch -h -d "@$ENV{SOURCE_DATE_EPOCH}" {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
