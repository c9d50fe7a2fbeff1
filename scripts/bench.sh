#!/usr/bin/env bash
# Runs the benchmark programs of a build folder: scripts/bench.sh BUILD_FOLDER [FILTER]
set -euo pipefail
build=$1
filter=${2:-.}
grep -m1 'model name' /proc/cpuinfo | sed 's/.*: /processor: /'
for program in "$build"/bench/*_bench; do
    echo "== $(basename "$program")"
    "$program" --benchmark_filter="$filter"
done
