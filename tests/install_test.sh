#!/bin/sh
# Installs the build into a folder, moves that elsewhere, and uses it as strangers do: runs ombe, and
# builds a plug-in outside the tree with the CMake package and with pkg-config.
#   install_test.sh CMAKE GENERATOR BUILD CXX FLAGS EXAMPLES SAMPLE
set -eu
here=$(readlink -f "$(dirname "$0")")
cmake=$1 generator=$2 build=$3 cxx=$4 flags=$5 examples=$6 sample=$7
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
plugins=$(readlink -m "$(pkg-config --variable=pluginsdir ombe_core | sed 's/\\ / /g')")

# The program finds its library and the plug-in, whatever the folder that it is called from.
cd /
contains 'plug-in of the installed program' "$("$prefix/bin/ombe" info "$sample")" \
  "$plugins/microdvd.so"
for file in man/man1/ombe.1 bash-completion/completions/ombe zsh/site-functions/_ombe \
  fish/vendor_completions.d/ombe.fish; do
  [ -s "$prefix/share/$file" ] || fail "no share/$file"
done
"$here/links_test.sh" "$prefix/share/doc/ombe" || fail 'pages lead nowhere'

inspected() { # HOW FOLDER: what ombe says of the two plug-ins there
  smallest=$("$prefix/bin/ombe" inspect "$2/smallest.so")
  contains "smallest.so $1" "$smallest" 'engine: '
  case $smallest in *answers:*) fail "smallest.so $1 offers something: $smallest" ;; esac
  contains "standalone.so $1" "$("$prefix/bin/ombe" inspect "$2/standalone.so")" \
    'text/x-standalone (rank 1)'
}

"$cmake" -G "$generator" -S "$examples/standalone" -B "$folder/by cmake" \
  "-DCMAKE_CXX_COMPILER=$cxx" "-DCMAKE_PREFIX_PATH=$prefix" >/dev/null
"$cmake" --build "$folder/by cmake" >/dev/null
inspected 'built by CMake' "$folder/by cmake"
"$cmake" --install "$folder/by cmake" >/dev/null
inspected 'installed by CMake' "$plugins"

mkdir "$folder/by hand"
for plugin in smallest standalone; do
  eval "'$cxx' $flags -std=c++20 -fPIC -shared -fvisibility=hidden \
    '$examples/standalone/$plugin.cpp' -o '$folder/by hand/$plugin.so' \
    $(pkg-config --cflags --libs ombe_core)"
done
inspected 'built with pkg-config' "$folder/by hand"
printf 'installed, moved, used\n'
