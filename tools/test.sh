#!/bin/sh
# test.sh [--all] [PART...]: installs what is missing, then runs the parts of the test: those in
# tools/parts/, with --all also those in tools/parts/all/, or the parts that are named, which may also
# be in tools/parts/more/. Ends with a line for each part and the totals. CONTRIBUTING.md tells how a
# part is written.
set -u
cd "$(dirname "$0")/.." || exit 1

all=
[ "${1:-}" != --all ] || { all=yes; shift; }

name_of() { basename "$1" .sh | sed 's/^[0-9]*-//'; }

parts=
left_out=
for part in tools/parts/*.sh tools/parts/all/*.sh tools/parts/more/*.sh; do
    [ -x "$part" ] || continue
    name=$(name_of "$part")
    case " $* " in
    *" $name "*) parts="$parts $part" ;;
    '  ') case $part in
        tools/parts/all/*) [ -n "$all" ] && parts="$parts $part" || left_out="$left_out $name" ;;
        tools/parts/more/*) left_out="$left_out $name" ;;
        *) parts="$parts $part" ;;
        esac ;;
    esac
done
[ -n "$parts" ] || { echo "no such part: $*" >&2; exit 2; }

[ -n "$*" ] || case $all in
yes) echo "The parts take about 15 minutes on two cores and 3 GB of disk." ;;
*) echo "The test takes about eight minutes on two cores and 1 GB of disk." ;;
esac
# shellcheck disable=SC2086,SC2046 # the words are separate arguments, here and below
tools/setup.sh $(sed -n 's/^# packages: //p' $parts) || exit 1

JOBS=$(nproc)
export JOBS
results=$PWD/build/test
rm -rf "$results"
for part in $parts; do
    name=$(name_of "$part")
    RESULTS=$results/$name
    export RESULTS
    mkdir -p "$RESULTS"
    sed -n "2s/^# /$name: /p" "$part"
    begin=$(date +%s)
    "$part" > "$RESULTS/log" 2>&1 < /dev/null
    status=$?
    echo "$status $(($(date +%s) - begin))" > "$RESULTS/verdict"
    case $status in
    0) ;;
    77) tail -n 1 "$RESULTS/log" ;;
    *) grep -vE '^ *Start +[0-9]+: |  Passed +[0-9.]+ sec$' "$RESULTS/log" | tail -n 100
       echo "$name failed; all it printed: build/test/$name/log" ;;
    esac
done

echo
[ -z "$left_out" ] || echo "left out:$left_out"
exec python3 tools/print_totals.py "$results" $(for part in $parts; do name_of "$part"; done)
