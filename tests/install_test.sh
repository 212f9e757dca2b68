#!/bin/sh
# Installs the build into a folder, moves that elsewhere, and uses it as strangers do: runs ombe, and
# builds a plug-in outside the tree with the CMake package and with pkg-config.
#   install_test.sh CMAKE BUILD CXX FLAGS EXAMPLES SAMPLE
set -eu
cmake=$1 build=$2 cxx=$3 flags=$4 examples=$5 sample=$6
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
unset OMBE_PLUGIN_PATH PKG_CONFIG_PATH LD_LIBRARY_PATH DESTDIR
export HOME="$folder/home" CXXFLAGS="$flags"

fail() {
  printf 'FAILED: %s\n' "$*"
  exit 1
}

contains() { # WHAT TEXT PART
  case $2 in *"$3"*) ;; *) fail "$1: no '$3' in: $2" ;; esac
}

"$cmake" --install "$build" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/moved here"
prefix="$folder/moved here"
config=$(find "$prefix" -name ombe_core.pc)
[ -f "$config" ] || fail 'no ombe_core.pc'
export PKG_CONFIG_PATH="${config%/*}"
plugins=$(readlink -f "$(pkg-config --variable=pluginsdir ombe_core | sed 's/\\ / /g')")

# The program finds its library and the plug-in, whatever the folder that it is called from.
cd /
contains 'plug-in of the installed program' "$("$prefix/bin/ombe" info "$sample")" \
  "$plugins/microdvd.so"
[ ! -e "$build/share/man/man1/ombe.1" ] || [ -s "$prefix/share/man/man1/ombe.1" ] ||
  fail 'no manual page'

inspected() { # HOW PLUGIN
  if "$prefix/bin/ombe" --help | grep -q "^  inspect "; then
    contains "plug-in built by $1" "$("$prefix/bin/ombe" inspect "$2")" text/x-standalone
  else
    contains "plug-in built by $1" "$("$prefix/bin/ombe" probe "$sample" --plugin "$2" || true)" \
      'not recognised'
  fi
}

# The name of a folder with a blank is the harder one, for CMake as for the compiler.
"$cmake" -S "$examples/standalone" -B "$folder/by cmake" "-DCMAKE_CXX_COMPILER=$cxx" \
  "-DCMAKE_PREFIX_PATH=$prefix" >/dev/null
"$cmake" --build "$folder/by cmake" >/dev/null
inspected CMake "$folder/by cmake/standalone.so"
"$cmake" --install "$folder/by cmake" >/dev/null
inspected 'CMake and installed' "$plugins/standalone.so"

eval "'$cxx' $flags -std=c++20 -fPIC -shared -fvisibility=hidden '$examples/standalone/standalone.cpp' \
  -o '$folder/by-pkg-config.so' $(pkg-config --cflags --libs ombe_core)"
inspected pkg-config "$folder/by-pkg-config.so"
printf 'installed, moved, used\n'
