#!/bin/sh
# Drives the example of a second format through ombe.
#   second_format_test.sh OMBE PLUGIN FOLDER
set -eu
ombe=$1 plugin=$2 folder=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

same() { # WHAT FILE, with what is expected on standard input
  diff -u - "$2" || { printf 'FAILED: %s\n' "$1"; exit 1; }
}

refused() { # WHAT TEXT
  printf '%b' "$2" >"$work/refused.txt"
  if "$ombe" export "$work/refused.txt" --plugin "$plugin" 2>/dev/null; then
    printf 'FAILED: %s was not refused\n' "$1"
    exit 1
  fi
}

# Sorted, styled, and shifted by the host's offset.
"$ombe" export -f jsonl --offset 50 "$folder/harbour.txt" --plugin "$plugin" >"$work/out"
same 'export' "$work/out" <<'END'
{"timestamp": 1050, "duration": 2200, "text": "The harbour light went out at nine."}
{"timestamp": 4550, "duration": 2500, "text": "<i>Nobody noticed</i>\nuntil the ferry came."}
{"timestamp": 6250, "duration": 3300, "text": "Za późno, powiedział sternik."}
{"timestamp": 7150, "duration": 0, "text": ""}
END

# In time, though not in real time.
"$ombe" play --no-interactive --speed 1000 "$folder/harbour.txt" --plugin "$plugin" >"$work/out"
grep -q '00:00:04.500.*ferry' "$work/out" || { printf 'FAILED: play\n'; exit 1; }

# The container template brings the code pages along.
printf '[10][20]Za p\363\237no\n' >"$work/old.txt"
"$ombe" export -f jsonl --code-page windows-1250 "$work/old.txt" --plugin "$plugin" >"$work/out"
same 'code page' "$work/out" <<'END'
{"timestamp": 1000, "duration": 1000, "text": "Za późno"}
END

# What holds for MicroDVD alone is not said of another format.
printf '{10}{20}text\n' >"$work/bad.txt"
(cd "$work" && "$ombe" check old.txt bad.txt --plugin "$plugin" --code-page windows-1250) \
  >"$work/out" || :
same 'check' "$work/out" <<'END'
old.txt: opens: 1 subtitle, windows-1250 (as given)
bad.txt: will not open
bad.txt: the plug-in refuses it; what it wants of a file is not known here: see --log
2 files: 1 open, 1 will not
  unexplained: 1 in 1 file
END

refused 'a MicroDVD line' '{10}{20}text\n'
refused 'a broken second line' '[10][20]text\n[30[40]text\n'
refused 'a time past 32 bits' '[10][42949673]text\n'
refused 'a file without lines' '\n\n'
printf 'a second format plays\n'
