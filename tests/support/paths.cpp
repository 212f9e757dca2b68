#include "support/paths.h"

namespace ombe_test {

const char* const kProgram = OMBE_PROGRAM;
const char* const kCoreLibrary = OMBE_CORE_LIBRARY;
const char* const kPlugin = OMBE_PLUGIN;
const char* const kMpl2Plugin = OMBE_MPL2_PLUGIN;
const char* const kThrowingPlugin = OMBE_THROWING_PLUGIN;
const char* const kElementPlugin = OMBE_ELEMENT_PLUGIN;
const char* const kElementRegistry = OMBE_ELEMENT_REGISTRY;
const char* const kConverterStubs = OMBE_CONVERTER_STUBS;
const char* const kSamples = OMBE_SAMPLES;
const char* const kTables = OMBE_TABLES;

}  // namespace ombe_test
