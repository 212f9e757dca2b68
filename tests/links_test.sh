#!/bin/sh
# Follows the links to other files in the pages of a folder.
#   links_test.sh FOLDER
set -eu
pages=$(find "$1" -name '.?*' -prune -o -name 'build*' -prune -o -name '*.md' -print)
[ -n "$pages" ] || { printf 'FAILED: no page below %s\n' "$1"; exit 1; }
printf '%s\n' "$pages" | while read -r page; do
  grep -o '\]([^)#:]*' "$page" | cut -c 3- | grep -vx 'https*' | while read -r link; do
    [ -z "$link" ] || [ -e "${page%/*}/$link" ] || printf 'FAILED: %s: no %s\n' "$page" "$link"
  done
done | { ! grep . ; }
