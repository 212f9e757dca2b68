# Shared by the commands in this folder: packages, configuring and building. Bash; to be sourced.
# Standard output belongs to the program that a command runs, so everything here speaks on stderr.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
self="scripts/$(basename "$0")"
preparation_failed=125

say() { printf '%s: %s\n' "$self" "$*" >&2; }

fail() {
  say "$*"
  exit "$preparation_failed"
}

processors() { nproc 2>/dev/null || echo 2; }

# The names in the package lists LIST..., without comments.
listed_packages() {
  local list
  for list in "$@"; do
    sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$root/scripts/packages/$list.txt"
  done
}

# Those of the packages on stdin that are not installed. NAME means this machine's architecture,
# NAME:ARCHITECTURE another one's.
missing_packages() {
  local installed name
  installed=$(dpkg-query -W -f='${Package}:${Architecture} ${db:Status-Status}\n' |
    sed -n 's/ installed$//p' | sed -e "s/:all\$//" -e "s/:$(dpkg --print-architecture)\$//")
  while read -r name; do
    grep -qxF -- "$name" <<<"$installed" || printf '%s\n' "$name"
  done
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  else
    sudo "$@"
  fi
}

apt() {
  # Never removes what somebody else installed, such as another Boost version's headers.
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-remove \
    --no-install-recommends -o DPkg::Lock::Timeout=300 "$@" </dev/null
}

# Installs what is missing of the package lists LIST...
need_packages() {
  local missing log
  if ! command -v dpkg-query >/dev/null; then
    say "this is no Debian system: taking the needed libraries and tools to be there"
    return
  fi
  mapfile -t missing < <(listed_packages "$@" | missing_packages)
  [ "${#missing[@]}" -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
    fail "missing packages, and no sudo here; as root: apt-get install ${missing[*]}"
  fi
  say "installing ${#missing[@]} Debian packages: ${missing[*]}"
  log=$(mktemp)
  # Somebody's broken extra source must not stop the installation: what counts is that it succeeds.
  if ! { apt update || true; apt install "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail "could not install the packages (see above); as root: apt-get install ${missing[*]}"
  fi
  rm -f "$log"
}

# Runs the rest of the script alone in build/, when it is started twice at once.
lock_build() {
  mkdir -p "$root/build"
  exec 9>"$root/build/.lock"
  flock -n 9 || {
    say 'waiting for the build or test that runs in build/'
    flock 9
  }
}

# How far the build tool says that it is in LOG: "[3/192]".
progress() { tail -c 4096 "$1" 2>/dev/null | grep -oE '^\[[0-9]+/[0-9]+\]' | tail -1; }

# Runs a build step, with its output in FOLDER/build.log, and shows that when the step fails. Says WHAT
# is being done when it takes more than a moment, and how far it is: on a terminal in one line that
# moves, elsewhere every 20 seconds.
step() {
  local what=$1 log=$2/build.log status results seconds=0
  shift 2
  mkdir -p "${log%/*}"
  exec {results}< <("$@" >"$log" 2>&1 9>&- </dev/null && echo 0 || echo failed)
  until read -r -t 1 -u "$results" status; do
    [ $? -gt 128 ] || { status=killed; break; }
    if [ -t 2 ]; then
      printf '\r\033[K%s: %s %s' "$self" "$what" "$(progress "$log")" >&2
    elif [ $((seconds++ % 20)) -eq 0 ]; then
      say "$what $(progress "$log")"
    fi
  done
  exec {results}<&-
  [ ! -t 2 ] || printf '\r\033[K' >&2
  [ "$status" != 0 ] || return 0
  cat "$log" >&2
  fail "$what failed: its messages stand above (and in $log)"
}

configured() { [ -e "$root/build/build.ninja" ] || [ -e "$root/build/Makefile" ]; }

# The value of the cache entry ENTRY (name:type) in build/, or FALLBACK when there is none yet.
cached() {
  local entry=$1 fallback=$2 value=
  ! configured || value=$(sed -n "s/^$entry=//p" "$root/build/CMakeCache.txt")
  printf '%s\n' "${value:-$fallback}"
}

# Configures build/ as a Release build with OPTION... (name:type=value), unless it already is.
configure() {
  local option current=yes generator=()
  configured || current=no
  for option in CMAKE_BUILD_TYPE:STRING=Release "$@"; do
    [ "$(cached "${option%%=*}" '')" = "${option#*=}" ] || current=no
  done
  [ "$current" = no ] || return 0
  [ -e "$root/build/CMakeCache.txt" ] || generator=(-G Ninja)
  step "configuring build/" "$root/build" cmake -S "$root" -B "$root/build" "${generator[@]}" \
    -DCMAKE_BUILD_TYPE:STRING=Release "${@/#/-D}"
}

# Builds TARGET... in build/.
build() {
  step "building $* in build/" "$root/build" \
    cmake --build "$root/build" --parallel "$(processors)" --target "$@"
}
