#!/bin/sh
# The program as a user gets it: installed by `cmake --install` into a scratch prefix, or
# packaged by CPack and unpacked with dpkg -x. From there the command line tells its version
# and draws a plot (so it finds its raster plugin in the tree), the window finds its run-time
# files (it makes the user's folder only after that), and the desktop files, icons, screenshot
# and manual pages are where a desktop and man look for them.
# Usage: installed-tree.sh prefix|package BUILD-DIR VERSION
set -eu
how=$1
build=$2
version=$3
scratch=$(mktemp -d)
window=""
trap '[ -z "$window" ] || kill "$window" 2>/dev/null; rm -rf "$scratch"' EXIT
fail() { echo "$how: $*"; exit 1; }
case $how in
  prefix) cmake --install "$build" --prefix "$scratch/usr" >/dev/null ;;
  package)
    cpack -G DEB --config "$build/CPackConfig.cmake" -B "$scratch/package" >/dev/null
    deb=$(ls "$scratch"/package/*.deb)
    for field in "Package: nerivane" "Version: $version" "Section: electronics"; do
      dpkg-deb -f "$deb" | grep -qx "$field" || fail "the package has no \"$field\""
    done
    # Read off the binaries by dpkg-shlibdeps.
    dpkg-deb -f "$deb" Depends | grep -q 'libqt6gui6' ||
      fail "the package's dependencies lack Qt: $(dpkg-deb -f "$deb" Depends)"
    dpkg -x "$deb" "$scratch"
    ;;
  *) fail "neither prefix nor package" ;;
esac
root=$scratch/usr
cd "$scratch"
[ "$("$root/bin/nerivane-cli" --version)" = "nerivane-cli $version" ] || fail "wrong --version"
"$root/bin/nerivane-cli" --poles 5 --traces mag10,phase --plot plot.png
file plot.png | grep -q 'PNG image data, 800 x 500' || fail "no plot: $(file plot.png)"
app=com.kestrune.Nerivane
for each in "applications/$app.desktop" "metainfo/$app.metainfo.xml" "mime/packages/$app.xml" \
  "icons/hicolor/scalable/apps/$app.svg" man/man1/nerivane.1.gz man/man1/nerivane-cli.1.gz \
  doc/nerivane/cli.md "nerivane/RunTime Files/Help Files/Program Help.md" \
  "nerivane/RunTime Files/NOTCH.bmp"; do
  [ -s "$root/share/$each" ] || fail "share/$each is missing"
done
for size in 16 24 32 48 64 128 256; do
  file "$root/share/icons/hicolor/${size}x$size/apps/$app.png" |
    grep -q "PNG image data, $size x $size" || fail "no $size px icon"
done
for page in nerivane nerivane-cli; do
  gzip -dc "$root/share/man/man1/$page.1.gz" | grep -q '^\.TH' ||
    fail "share/man/man1/$page.1.gz is not a compressed manual page"
done
file "$root/share/nerivane/screenshots/main-window.png" | grep -q 'PNG image data' || fail "no screenshot"
program=$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$root/share/applications/$app.desktop")
[ -x "$root/bin/$program" ] || fail "the desktop entry starts $program, which is not installed"
mkdir home
env -u XDG_CONFIG_HOME -u XDG_DATA_HOME HOME="$scratch/home" QT_QPA_PLATFORM=offscreen \
  "$root/bin/nerivane" 2>window.err &
window=$!
waited=0
until [ -d home/Documents/Kestrune/Nerivane/Files ]; do
  kill -0 "$window" 2>/dev/null || fail "the window ended: $(cat window.err)"
  waited=$((waited + 1))
  [ "$waited" -le 200 ] || fail "the window made no user folder in 20 s"
  sleep 0.1
done
echo "$how: nerivane-cli $version draws; the window starts; desktop files in place"
