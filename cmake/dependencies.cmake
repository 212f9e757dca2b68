# Libraries that the project calls. ICU is only bound at run time: its headers give the types, and
# the version found here is the one that is tried first.
find_package(Threads REQUIRED)
find_package(Boost 1.81 REQUIRED COMPONENTS url)
find_package(ICU REQUIRED COMPONENTS uc)
string(REGEX MATCH "^[0-9]+" OMBE_ICU_VERSION "${ICU_VERSION}")
