#!/bin/sh
# run.sh MINUTES [TARGET...]: runs the fuzzers, all without TARGET, so many minutes each, one for
# each processor at a time. Seeds are the examples, fuzz/corpus, the folder of descriptions that
# TARNLET_CORPUS names, and what earlier runs have kept in build/fuzz/kept. A fault is left in
# build/fuzz/faults; once fixed it goes to fuzz/corpus. The last lines give executions and
# coverage at start and end.
set -eu
cd "$(dirname "$0")/.."
minutes=${1:?usage: fuzz/run.sh MINUTES [TARGET...]}
shift
[ $# -gt 0 ] || set -- bsdl isc_aio prg package calls memory symbols

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target $(printf 'fuzz_%s ' "$@")
mkdir -p build/fuzz/faults

run() {
    target=$1
    kept=build/fuzz/kept/$target
    mkdir -p "$kept"
    seeds=fuzz/corpus/$target
    [ -d "$seeds" ] || seeds=fuzz/corpus/bsdl
    case $target in
    calls | package) ;;
    *) seeds="$seeds examples ${TARNLET_CORPUS-}" ;;
    esac
    build/fuzz/fuzz/fuzz_"$target" -max_total_time=$((minutes * 60)) -max_len=20000 -timeout=60 \
        -rss_limit_mb=3000 -dict=build/fuzz/fuzz/bsdl.dict \
        -artifact_prefix="build/fuzz/faults/$target-" -print_final_stats=1 \
        "$kept" $seeds >"build/fuzz/$target.log" 2>&1 || echo "$target: a fault, see build/fuzz/$target.log"
    awk -v target="$target" '
        { for (i = 1; i < NF; i++) if ($i == "cov:") { at = $(i + 1); if (!start) start = at } }
        /number_of_executed_units/ { runs = $NF }
        END { print target ": " runs " executions, coverage " start " to " at }' "build/fuzz/$target.log"
}

running=0
for target in "$@"; do
    run "$target" &
    running=$((running + 1))
    if [ $((running % $(nproc))) -eq 0 ]; then
        wait
    fi
done
wait
