#!/bin/sh
# Looks at a Debian package, unpacks it into a folder and runs ombe from there.
#   package_test.sh PACKAGE SAMPLE
set -eu
package=$(readlink -f "$1") sample=$(readlink -f "$2")
tree=$(readlink -f "$(dirname "$0")/..")
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
unset OMBE_PLUGIN_PATH LD_LIBRARY_PATH
export HOME="$root/home"
failures=0

fault() {
  printf 'FAILED: %s\n' "$*"
  failures=$((failures + 1))
}

field() { # NAME PATTERN: the field's value must match
  dpkg-deb -f "$package" "$1" | grep -Eq -- "$2" ||
    fault "$1 does not match $2: $(dpkg-deb -f "$package" "$1")"
}

field Recommends '^libicu[0-9]+$'
field Depends 'libc6 \('
field Depends 'libstdc\+\+6 \('
field Depends 'libfmt[0-9]+ \('
field Version '^[0-9]+\.[0-9]+\.[0-9]+-[0-9]+$'
! dpkg-deb -f "$package" Depends | grep -q ombe || fault 'depends on itself'

listing=$(dpkg-deb -c "$package")
printf '%s\n' "$listing" | grep -v ' root/root ' && fault 'not owned by root'
printf '%s\n' "$listing" | grep -Ev '^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x|lrwxrwxrwx) ' &&
  fault 'unusual permissions'

dpkg-deb -x "$package" "$root"
control=$(mktemp -d -p "$root")
dpkg-deb -e "$package" "$control"
(cd "$root" && md5sum --quiet -c "$control/md5sums") || fault 'wrong checksums'
grep -q ldconfig "$control/postinst" || fault 'the linker is not told of the library'
grep -Eq '^libombe_core [0-9]+ ombe \(>=' "$control/shlibs" || fault 'no dependency on the library is told'
for file in doc/ombe/copyright doc/ombe/changelog.Debian.gz man/man1/ombe.1.gz \
  bash-completion/completions/ombe zsh/vendor-completions/_ombe; do
  [ -s "$root/usr/share/$file" ] || fault "no usr/share/$file"
done
grep -rlF "$tree" "$root/usr" && fault 'the files above name the folder that they were built in'

libraries=$(dirname "$root"/usr/lib/*/ombe)
"$(dirname "$0")/linking_test.sh" nm readelf "$root" '' "$libraries/ombe/microdvd.so" \
  "$libraries"/libombe_core.so.?.?.? "$root/usr/bin/ombe" || fault 'not linked as it should be'

# The program works from wherever it was unpacked, with the plug-in that came along.
cd /
info=$("$root/usr/bin/ombe" info "$sample") || fault 'ombe does not run'
printf '%s\n' "$info" | grep -q "plug-in: *$root/usr/lib/.*/ombe/microdvd.so$" ||
  fault "another plug-in was found: $info"
"$root/usr/bin/ombe" export "$sample" | grep -q -- '-->' || fault 'nothing was exported'
[ "$failures" = 0 ] && printf '%s is in order\n' "${package##*/}"
