// The name of the fault that broken.cpp is linked with.
extern const char fault[];
const char fault[] = OMBE_FAULT;
