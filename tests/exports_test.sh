#!/bin/sh
# Compares what the engine layer exports with the list in the tree: whatever is missing breaks
# binaries of other people, and whatever is new is promised to them for good.
#   exports_test.sh NM LIBRARY LIST
set -eu
exported=$(mktemp)
trap 'rm -f "$exported"' EXIT
"$1" -D --defined-only "$2" | awk '$3 !~ /^OMBE_CORE_1$/ { sub(/@@OMBE_CORE_1$/, "", $3); print $3 }' |
  LC_ALL=C sort >"$exported"
diff "$3" "$exported" && exit
printf 'FAILED: %s exports other symbols than %s names\n' "${2##*/}" "${3##*/}"
exit 1
