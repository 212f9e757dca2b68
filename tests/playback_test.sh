#!/bin/sh
# Asks the library that plays sources what it is made of.
#   playback_test.sh NM LIBRARY ENGINE
# A front end links it into a process that is not its own: it may need the engine layer and the
# system, but nothing of the command line, and may neither end the process nor handle its signals.
set -eu
nm=$1 library=$2 engine=$3
# LLVM's nm leaves what has a version as it is and knows no option that drops versions.
names() {
  "$nm" --format=just-symbols "$@" | sed 's/@.*//' | c++filt
}
undefined=$(names --undefined-only "$library" | sort -u)
defined=$({
  names --defined-only "$library"
  names -D --defined-only "$engine"
} | sort -u)
failures=0
known=$(mktemp)
trap 'rm -f "$known"' EXIT
printf '%s\n' "$defined" >"$known"  # too many for an argument

none() { # DESCRIPTION LINES
  [ -z "$2" ] && return
  printf 'FAILED: %s:\n%s\n' "$1" "$2"
  failures=$((failures + 1))
}

none 'uses what belongs to the program' "$(printf '%s\n' "$undefined" | grep -E \
  '^(CLI|fmt|nlohmann)::|^(sig(action|nal|procmask|queue)|pthread_sigmask|raise|_?_?exit|abort)' || true)"
printf '%s\n' "$defined" | grep -q '^Ombe::Session::open' || none 'holds no session' .
none 'needs more than the engine layer' "$(printf '%s\n' "$undefined" | grep -E '^(typeinfo for |vtable for )?Ombe::' |
  grep -vxFf "$known" || true)"
none 'names options or the program' "$(strings -a "$library" | grep -aE '^[^/]*(--[a-z]|ombe [a-z]|/proc/self/exe)' || true)"
[ "$failures" = 0 ] && printf '%s undefined symbols checked\n' "$(printf '%s\n' "$undefined" | wc -l)"
