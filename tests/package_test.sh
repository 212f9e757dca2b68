#!/bin/sh
# Looks at the Debian packages, unpacks them into a folder, and runs ombe and plays through GStreamer
# from there.
#   package_test.sh FOLDER SAMPLE
set -eu
package=$(readlink -f "$1"/ombe_*.deb) element=$(readlink -f "$1"/gstreamer1.0-ombe_*.deb)
library=$(readlink -f "$1"/libombe-core?_*.deb) headers=$(readlink -f "$1"/libombe-core-dev_*.deb)
sample=$(readlink -f "$2")
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

field() { # PACKAGE NAME PATTERN: the field's value must match
  dpkg-deb -f "$1" "$2" | grep -Eq -- "$3" ||
    fault "${1##*/}: $2 does not match $3: $(dpkg-deb -f "$1" "$2")"
}

version=$(dpkg-deb -f "$package" Version)
own="libombe-core[0-9]+ \\(= $version\\)"
field "$package" Depends "$own, .*libicu[0-9]+(,|$)"
! dpkg-deb -f "$library" Depends | grep -q ombe || fault 'the library depends on itself'
field "$headers" Depends "^$own\$"
field "$element" Depends "ombe \\(= $version\\), $own, .*libgstreamer1\\.0-0 \\("
field "$element" Recommends 'gstreamer1.0-x'
for file in "$package" "$library" "$element"; do
  field "$file" Depends 'libc6 \('
  field "$file" Depends 'libstdc\+\+6 \('
done
for file in "$package" "$library" "$headers" "$element"; do
  field "$file" Version '^[0-9]+\.[0-9]+\.[0-9]+-[0-9]+$'
  listing=$(dpkg-deb -c "$file")
  printf '%s\n' "$listing" | grep -v ' root/root ' && fault 'not owned by root'
  printf '%s\n' "$listing" | grep -Ev '^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x|lrwxrwxrwx) ' &&
    fault 'unusual permissions'
  dpkg-deb -x "$file" "$root"
  control=$(mktemp -d -p "$root")
  dpkg-deb -e "$file" "$control"
  (cd "$root" && md5sum --quiet -c "$control/md5sums") || fault 'wrong checksums'
done
[ ! -e "$control/postinst" ] || fault 'the linker is told of an element'
dpkg-deb -e "$library" "$control"
grep -q ldconfig "$control/triggers" || fault 'the linker is not told of the library'
grep -Eq '^libombe_core ([0-9]+) libombe-core\1 \(>=' "$control/shlibs" ||
  fault 'no dependency on the library is told'
lintian --fail-on error "$package" "$library" "$headers" "$element" || fault 'lintian finds errors'
for file in doc/ombe/copyright doc/ombe/changelog.Debian.gz doc/libombe-core1/copyright \
  doc/gstreamer1.0-ombe/copyright man/man1/ombe.1.gz \
  bash-completion/completions/ombe zsh/vendor-completions/_ombe; do
  [ -s "$root/usr/share/$file" ] || fault "no usr/share/$file"
done
"$tree/tests/links_test.sh" "$root/usr/share/doc/ombe" || fault 'pages lead nowhere'
grep -rlF "$tree" "$root/usr" && fault 'the files above name the folder that they were built in'

libraries=$(dirname "$root"/usr/lib/*/ombe)
"$(dirname "$0")/linking_test.sh" nm readelf "$root" '' "$libraries/ombe/microdvd.so" \
  "$libraries"/libombe_core.so.?.?.? "$root/usr/bin/ombe" \
  "$libraries/gstreamer-1.0/libgstombe.so" || fault 'not linked as it should be'

# The program works from wherever it was unpacked, with the plug-in that came along.
cd /
info=$("$root/usr/bin/ombe" info "$sample") || fault 'ombe does not run'
printf '%s\n' "$info" | grep -q "plug-in: *$root/usr/lib/.*/ombe/microdvd.so$" ||
  fault "another plug-in was found: $info"
"$root/usr/bin/ombe" export "$sample" | grep -q -- '-->' || fault 'nothing was exported'

# So does the element.
elements=$(pkg-config --variable=pluginsdir gstreamer-1.0)
[ -f "$root$elements/libgstombe.so" ] || fault "no element in GStreamer's folder $elements"
mkdir -p "$HOME"
GST_REGISTRY=$root/registry GST_PLUGIN_PATH=$root$elements gst-launch-1.0 -q \
  filesrc location="$sample" ! ombesubparse ! filesink location="$root/texts" || fault 'nothing is played'
grep -q 'Did you hear that' "$root/texts" || fault 'the texts are not played'
[ "$failures" = 0 ] && printf '%s is in order\n' "${package##*/}"
