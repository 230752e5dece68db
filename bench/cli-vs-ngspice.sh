#!/bin/bash
# Times the command line as a whole process against ngspice on the same circuit: a 20-pole
# design written as JSON, and ngspice's batch run of the netlist the command line exports for
# it. The two run alternately in one loop, so a busy machine slows them alike.
# Usage: bench/cli-vs-ngspice.sh [BUILD_DIR] [RUNS]
set -eu
build=${1:-build}
runs=${2:-200}
cli="$(cd "$build" && pwd)/src/cli/nerivane-cli"
design=(--poles 20 --response butterworth --f0 5)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$cli" "${design[@]}" --spice design.cir 2>/dev/null

# bash's own clock in microseconds: timing starts no process of its own.
cli_us=0
spice_us=0
for ((i = 0; i < runs; i++)); do
    start=${EPOCHREALTIME/./}
    "$cli" "${design[@]}" --json /dev/null 2>/dev/null
    middle=${EPOCHREALTIME/./}
    ngspice -b design.cir >/dev/null 2>&1
    end=${EPOCHREALTIME/./}
    cli_us=$((cli_us + middle - start))
    spice_us=$((spice_us + end - middle))
done

awk -v c="$cli_us" -v s="$spice_us" -v n="$runs" 'BEGIN {
    printf "nerivane-cli --json  %8.2f ms per run\n", c / n / 1e3
    printf "ngspice -b           %8.2f ms per run\n", s / n / 1e3
    printf "ratio                %8.1f (target: at least 5)\n", s / c
}'
