#!/bin/sh
# The design files' type as a desktop sees it: the MIME package goes through
# update-mime-database into a scratch data folder, and GLib's content-type guess (gio) names
# the type for a design the command line saved, by its name and, renamed, by its first bytes.
# The desktop entry offers to open that type.
# Usage: design-file-type.sh MIME-PACKAGE DESKTOP-ENTRY NERIVANE-CLI
set -eu
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
type=$(sed -n 's/.*<mime-type type="\([^"]*\)".*/\1/p' "$1")
grep -qx "MimeType=$type;" "$2" || { echo "$2 does not offer $type"; exit 1; }
mkdir -p "$scratch/mime/packages"
cp "$1" "$scratch/mime/packages/"
export XDG_DATA_HOME="$scratch" XDG_DATA_DIRS="$scratch"
update-mime-database "$scratch/mime"
"$3" --poles 4 --save "$scratch/design.kq_opamp"
cp "$scratch/design.kq_opamp" "$scratch/renamed"
for file in design.kq_opamp renamed; do
  found=$(gio info -a standard::content-type "$scratch/$file" | sed -n 's/ *standard::content-type: //p')
  [ "$found" = "$type" ] || { echo "$file: content type \"$found\", not \"$type\""; exit 1; }
done
echo "$type: by name and by content"
