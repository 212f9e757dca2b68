// What a program in C++ costs that does nothing: the start of every other is compared with it.
#include <cstdio>
#include <string>

int main(int /*argc*/, char** argv) { return std::puts(std::string(argv[0]).c_str()) < 0 ? 1 : 0; }
