#!/bin/sh
# Times 1000 designs of 20 poles (each its own F0 and circuit) given to one nerivane-cli --batch
# on standard input, against the same 1000 designs run as 1000 separate processes writing
# their JSON, side by side in one run; prints both, per design, and their ratio.
# Usage: bench/batch-vs-separate.sh [BUILD_DIR] [DESIGNS]
set -eu
build=${1:-build}
count=${2:-1000}
cmake --build "$build" --target nerivane-cli >/dev/null
cli="$build/src/cli/nerivane-cli"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

topologies="vcvs-lpf mfb-lpf vcvs-hpf mfb-hpf"
i=0
while [ "$i" -lt "$count" ]; do
  set -- $topologies
  shift $((i % 4))
  echo "--poles 20 --f0 $((1000 + i)) --topology $1"
  i=$((i + 1))
done >"$scratch/designs"

now() { date +%s.%N; }

start=$(now)
"$cli" --batch <"$scratch/designs" >"$scratch/batch.jsonl" 2>/dev/null
batch=$(awk -v a="$start" -v b="$(now)" 'BEGIN { print b - a }')
results=$(grep -c '"format_version"' "$scratch/batch.jsonl")
[ "$results" -eq "$count" ] || { echo "batch gave $results results for $count designs" >&2; exit 1; }

start=$(now)
while read -r line; do
  # The options are words without quotes, so splitting them as the shell does is right.
  # shellcheck disable=SC2086
  "$cli" $line --json "$scratch/one.json" 2>/dev/null
done <"$scratch/designs"
separate=$(awk -v a="$start" -v b="$(now)" 'BEGIN { print b - a }')

awk -v n="$count" -v batch="$batch" -v separate="$separate" 'BEGIN {
  printf "%d designs of 20 poles, JSON written\n", n
  printf "batch:    %8.3f s in all, %8.1f us a design\n", batch, batch * 1e6 / n
  printf "separate: %8.3f s in all, %8.1f us a design\n", separate, separate * 1e6 / n
  printf "batch is %.1f times faster a design\n", separate / batch
}'
