#!/bin/sh
# The library exports what its headers declare, all of it and nothing else, and the guide knows it.
set -eu
library=$1 source_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cat "$source_dir"/include/tarnlet/*.h | tr '\n' ' ' | grep -oE 'TARNLET_API [A-Za-z][^#(;]*\(' |
    sed -E 's/.*[ *]([A-Za-z0-9_]+)\($/\1/' | LC_ALL=C sort > "$work/declared"
nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' |
    LC_ALL=C sort > "$work/exported"
[ "$(wc -l < "$work/declared")" -gt 200 ]
diff -u "$work/declared" "$work/exported"
while read -r name; do
    grep -qw "$name" "$source_dir/docs/guide.md" ||
        { echo "docs/guide.md does not mention $name"; exit 1; }
done < "$work/declared"
