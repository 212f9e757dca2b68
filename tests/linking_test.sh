#!/bin/sh
# Asks built files what compiler and linker made of them.
#   linking_test.sh NM READELF TREE FLAGS PLUGIN FILE...
# No binary anywhere in TREE may search the current folder for libraries, and all sources of its
# compile_commands.json, if it has one, are compiled with FLAGS. All files must be hardened; the
# plug-in must further export one symbol, link no ICU, stay loaded and carry no search path; the GStreamer
# element must export its two entry points and leave out what only a program may do.
set -eu
nm=$1 readelf=$2 tree=$3 flags=$4 plugin=$5
shift 4
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

element_only() {
  exports=$("$nm" -D --defined-only --format=just-symbols "$file" | sort | tr '\n' ' ')
  [ "$exports" = 'gst_plugin_ombe_get_desc gst_plugin_ombe_register ' ] ||
    fault "exports other than the entry points: $exports"
  check_not 'brings a library of the command line' "$dynamic" 'NEEDED.*libfmt'
  check_not 'handles signals' "$imports" ' (sig(action|nal|procmask)|raise)(@|$)'
}

# The loader takes an empty element, like any relative one, below the current folder.
searched=$(find "$tree" -path '*/CMakeFiles' -prune -o -type f \( -perm -u+x -o -name '*.so*' \) \
  -exec "$readelf" -dW {} + 2>/dev/null | awk '
    /^File: / { file = substr($0, 7); files++ }
    /\((RPATH|RUNPATH)\)/ {
      gsub(/.*\[|\]$/, "")
      count = split($0 ":", element, ":") - 1
      for (i = 1; i <= count; i++)
        if (element[i] !~ /^(\/|\$ORIGIN(\/|$))/) printf "%s searches \"%s\"\n", file, element[i]
    }
    END { if (files < 3) print "hardly a binary was found" }')
file=$tree
[ -z "$searched" ] || fault "$searched"

commands="$tree/compile_commands.json"
# Commands for the project's own sources, not for those of other projects that it builds or generates.
ours() { grep -E '"command":.* -c .*/(src|tests|fuzz|bench|examples)/[^ ]*' "$commands" | grep -v ' -c /usr/'; }
if [ -f "$commands" ]; then
  for flag in $flags; do
    file=$commands
    check_not "compiled without $flag" "$(ours | grep -vF -- " $flag ")" .
  done
fi

for file in "$@"; do
  header=$("$readelf" -hW "$file")
  segments=$("$readelf" -lW "$file")
  dynamic=$("$readelf" -dW "$file")
  imports=$("$nm" -D --undefined-only "$file")
  hardened
  [ "$file" != "$plugin" ] || plugin_only
  [ "${file##*/}" != libgstombe.so ] || element_only
done
[ "$failures" = 0 ] && printf '%s files checked\n' "$#"
