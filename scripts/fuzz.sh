#!/usr/bin/env bash
# Runs every fuzzer for some seconds from the tests' small files: scripts/fuzz.sh BUILD_FOLDER SECONDS
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=$1
seconds=$2
for program in "$build"/tests/fuzz/fuzz_*; do
    [ -x "$program" ] && [ -f "$program" ] || continue
    name=$(basename "$program")
    corpus="$build/corpus/$name"
    mkdir -p "$corpus"
    echo "== $name, $seconds s"
    "$program" "$corpus" tests/data/"${name#fuzz_}" -max_total_time="$seconds" -max_len=65536 \
        -rss_limit_mb=4096 -timeout=20 -print_final_stats=1 -verbosity=0 \
        -artifact_prefix="$build/corpus/"
done
