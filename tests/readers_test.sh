#!/bin/sh
# Sees that another program reads every subtitle of every export of the samples, at its time. Skipped
# where there is no ffprobe.
#   readers_test.sh OMBE SAMPLES
set -eu
ombe=$1 samples=$2
command -v ffprobe >/dev/null || exit 77
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
read=0

starts() { # FILE: milliseconds at which it has subtitles begin, as ffprobe reads it
  ffprobe -v error -show_entries packet=pts_time -of csv=p=0 "$1" | sed 's/,.*//; s/\.\(...\).*/\1/; s/^0*//'
}

for sample in "$samples"/*.sub; do
  [ "${sample##*/}" != broken.sub ] || continue
  for options in '' '--offset 3600000 --frame-rate 25 --color-order bgr'; do
    # shellcheck disable=SC2086
    "$ombe" export -f jsonl $options "$sample" 2>/dev/null | grep -v '"duration": 0,' |
      sed 's/.*"timestamp": \([0-9]*\),.*/\1/' >"$work/own"
    [ -s "$work/own" ] || { printf 'FAILED: nothing exported of %s\n' "$sample"; exit 1; }
    for format in srt vtt; do
      # shellcheck disable=SC2086
      "$ombe" export $options "$sample" -o "$work/cues.$format" 2>/dev/null
      starts "$work/cues.$format" | diff "$work/own" - || {
        printf 'FAILED: %s as %s %s\n' "$sample" "$format" "$options"
        exit 1
      }
      read=$((read + 1))
    done
  done
done
printf '%s exports read\n' "$read"
