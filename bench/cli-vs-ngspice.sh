#!/bin/sh
# Times a 20-pole design written as JSON by nerivane-cli, as a whole process, against ngspice's
# batch run of the netlist the command line exports for it, side by side in one run, and
# prints both and their ratio (target: nerivane-cli at least five times faster).
# Usage: bench/cli-vs-ngspice.sh [BUILD_DIR]
set -eu
build=${1:-build}
cmake --build "$build" --target Cliprocess_bench >/dev/null
exec "$build/bench/Cliprocess_bench" --benchmark_filter=Cli20PolesAgainstNgspice
