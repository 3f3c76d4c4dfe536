#!/bin/sh
# The library exports what exports.txt lists, all of it and nothing else.
set -eu
library=$1 list=$2
exported=$(mktemp)
trap 'rm -f "$exported"' EXIT
nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' |
    LC_ALL=C sort > "$exported"
diff -u "$list" "$exported"
