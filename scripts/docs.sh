#!/usr/bin/env bash
# Builds the documents to HTML pages in build/docs, pictures beside them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
out=build/docs
mkdir -p "$out"
find docs -name '*.png' | while read -r picture; do
    mkdir -p "$out/$(dirname "${picture#docs/}")"
    cp "$picture" "$out/${picture#docs/}"
done
find docs -name '*.md' | while read -r page; do
    target="$out/${page#docs/}"
    target="${target%.md}.html"
    mkdir -p "$(dirname "$target")"
    # Links between the pages point to their HTML forms.
    sed -E 's/\(([A-Za-z0-9_\/.-]+)\.md(#[^)]*)?\)/(\1.html\2)/g' "$page" |
        pandoc --from gfm --to html5 --standalone \
            --metadata title="$(sed -n 's/^# //p;T;q' "$page")" --output "$target"
done
echo "The pages are in $out"
