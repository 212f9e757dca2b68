#!/bin/sh
# Asks the built files what the linker made of them.
#   linking_test.sh NM READELF SANITIZERS PLUGIN FILE...
# All files must be hardened; the plug-in must further export one symbol, link no ICU, stay loaded
# and carry no search path. SANITIZERS is empty, or says which checks cannot hold.
set -eu
nm=$1 readelf=$2 sanitizers=$3 plugin=$4
shift 3
failures=0

fault() {
  printf 'FAILED %s: %s\n' "${file##*/}" "$1"
  failures=$((failures + 1))
}

check() { # DESCRIPTION TEXT PATTERN: the text must have a line that matches
  printf '%s\n' "$2" | grep -Eq -- "$3" || fault "$1"
}

check_not() { # DESCRIPTION TEXT PATTERN: no line may match
  if printf '%s\n' "$2" | grep -E -- "$3"; then fault "$1"; fi
}

hardened() {
  check 'no read-only relocations (RELRO)' "$segments" 'GNU_RELRO'
  check 'symbols are bound lazily, so RELRO is partial' "$dynamic" 'FLAGS_1.* NOW'
  check 'no GNU_STACK header' "$segments" 'GNU_STACK'
  check_not 'the stack is executable' "$segments" 'GNU_STACK.* RWE'
  check_not 'text relocations' "$dynamic" 'TEXTREL'
  check 'not position independent' "$header" 'Type: +DYN'
  check 'no stack protector' "$imports" '__stack_chk_fail'
}

plugin_only() {
  exports=$("$nm" -D --defined-only --format=just-symbols "$file" | sed 's/@.*//')
  [ "$exports" = __getPlugin ] || fault "exports other than __getPlugin: $exports"
  check_not 'linked with ICU' "$dynamic" 'NEEDED.*libicu'
  check 'may be unloaded (no NODELETE)' "$dynamic" 'FLAGS_1.* NODELETE'
  check_not 'has a search path' "$dynamic" 'RPATH|RUNPATH'
}

for file in "$@"; do
  header=$("$readelf" -hW "$file")
  segments=$("$readelf" -lW "$file")
  dynamic=$("$readelf" -dW "$file")
  imports=$("$nm" -D --undefined-only "$file")
  hardened
  [ "$file" != "$plugin" ] || plugin_only
done
[ -z "$sanitizers" ] || printf 'built with -fsanitize=%s\n' "$sanitizers"
[ "$failures" = 0 ] && printf '%s files checked\n' "$#"
