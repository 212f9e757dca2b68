# Libraries that the project calls. The plug-in binds ICU at run time only: it takes the types from
# its headers and tries the version found here first. The host links it.
find_package(Threads REQUIRED)
find_package(Boost 1.81 REQUIRED COMPONENTS url)
find_package(ICU REQUIRED COMPONENTS uc i18n)
string(REGEX MATCH "^[0-9]+" OMBE_ICU_VERSION "${ICU_VERSION}")
