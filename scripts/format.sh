#!/usr/bin/env bash
# Formats every C++ source in place; with --check only tells which ones are not formatted.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mode=(-i)
[ "${1:-}" = --check ] && mode=(--dry-run --Werror)
git ls-files -z --cached --others --exclude-standard '*.cpp' '*.h' |
    xargs -0 -n 20 -P "$(nproc)" clang-format "${mode[@]}"
