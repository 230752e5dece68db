#!/bin/sh
# The command line's manual page keeps up with the program: every option that --help lists is
# in the page. Every page named renders without a warning from groff.
# Usage: man-page-options.sh NERIVANE-CLI CLI-PAGE [OTHER-PAGE ...]
set -eu
cli=$1
page=$2
options=$("$cli" --help | grep -oE '^ +(-[a-zA-Z], ?)?--[a-z0-9-]+' | grep -oE -- '--[a-z0-9-]+')
count=$(printf '%s\n' "$options" | grep -c .)
[ "$count" -ge 20 ] || { echo "only $count options read from --help; has its layout changed?"; exit 1; }
text=$(sed 's/\\-/-/g' "$page") # the page's source writes an option's hyphens \-
missing=""
for option in $options; do
  printf '%s\n' "$text" | grep -qE -- "(^|[^a-z0-9-])$option([^a-z0-9-]|\$)" || missing="$missing $option"
done
[ -z "$missing" ] || { echo "$page lacks options that --help lists:$missing"; exit 1; }
shift
for each in "$@"; do
  warnings=$(groff -man -Tutf8 -ww -z "$each" 2>&1)
  [ -z "$warnings" ] || { echo "$each: $warnings"; exit 1; }
done
echo "$count options, all in $page"
