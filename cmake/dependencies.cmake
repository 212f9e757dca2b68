# Libraries that the project calls. ICU is bound at run time only: its headers give the types, and the
# version found here is the one that the host loads and that the plug-in tries first.
find_package(Threads REQUIRED)
find_package(Boost 1.81 REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc)
string(REGEX MATCH "^[0-9]+" OMBE_ICU_VERSION "${ICU_VERSION}")
