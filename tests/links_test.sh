#!/bin/sh
# Follows the links to other files in the pages of a folder.
#   links_test.sh FOLDER
set -eu
pages=$(find "$1" -name '.?*' -prune -o -name 'build*' -prune -o -name '*.md' -print)
[ -n "$pages" ] || { printf 'FAILED: no page below %s\n' "$1"; exit 1; }
broken=$(printf '%s\n' "$pages" | while read -r page; do
  grep -o '\]([^)#:]*' "$page" | cut -c 3- | while read -r link; do
    case $link in '' | http | https) continue ;; esac
    [ -e "${page%/*}/$link" ] || printf 'FAILED: %s: no %s\n' "$page" "$link"
  done
done)
[ -z "$broken" ] || { printf '%s\n' "$broken"; exit 1; }
