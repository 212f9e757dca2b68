// Where the build has put what the tests run and read. Known to one source only: in another folder
// nothing else is compiled anew.
#pragma once

namespace ombe_test {

// Files. GStreamer's element is an empty name when it is not built.
extern const char* const kProgram;  // `ombe`
extern const char* const kCoreLibrary;
extern const char* const kPlugin;  // MicroDVD's
extern const char* const kMpl2Plugin;
extern const char* const kThrowingPlugin;
extern const char* const kElementPlugin;
extern const char* const kElementRegistry;

// Folders.
extern const char* const kConverterStubs;
extern const char* const kSamples;
extern const char* const kTables;

}  // namespace ombe_test
