// Boost.URL, compiled here: one library less to find and to map at the start of a program, and it
// is the same on machines that have its shared library for another architecture only.
#include <boost/url/src.hpp>
