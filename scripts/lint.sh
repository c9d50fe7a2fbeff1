#!/usr/bin/env bash
# clang-tidy over the project's sources: scripts/lint.sh BUILD_FOLDER [FILE ...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=$1
shift
if [ $# -eq 0 ]; then
    mapfile -t files < <(git ls-files '*.cpp' | grep -vE '^(bench|tests/fuzz)/')
else
    files=("$@")
fi
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option
