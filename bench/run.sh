#!/bin/sh
# Builds a release and prints how far each step is from the floor.
#   bench/run.sh          10,000 and 100,000 cells, files and instructions
#   bench/run.sh large    1,000,000 as well
#   bench/run.sh REGEX    only the benchmarks whose names match
# BUILD names the build folder. Figures are medians of at least 10 repetitions. Each reading
# gets fresh memory from the system, as in a process that reads one file; with BENCH_WARM=1
# it may use what the reading before gave back, as in a host that reads many.
set -eu
cd "$(dirname "$0")/.."
tools/setup.sh flex libbenchmark-dev
build=${BUILD:-build/bench-release}

case ${1:-} in
large) filter=. ;;
'') filter='^[a-z]+/[0-9]{3,6}/' ;;
*) filter=$1 ;;
esac

mkdir -p "$build"
log=$build/bench.log
run() { "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }; }
run cmake -G Ninja -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DTARNLET_BENCH=ON -DTARNLET_TESTS=OFF
run cmake --build "$build"

table=$build/read_bench.csv
"$build/bench/read_bench" --benchmark_filter="$filter" --benchmark_format=csv >"$table" 2>"$log" ||
    { cat "$log" >&2; exit 1; }
awk -F, '
    BEGIN {
        bound["scan"] = 2; bound["read"] = 5; bound["check"] = 7; bound["ebst"] = 4
        printf "%-13s %9s %-8s %10s %7s %6s %8s %8s %9s %8s %8s %8s\n", "shape", "size", "step",
               "ms", "ratio", "bound", "MB/s", "Mtok/s", "allocs", "heap/B", "rss/B", "growth"
    }
    /^name,/ { for (i = 1; i <= NF; i++) { gsub(/"/, "", $i); column[$i] = i }; next }
    !column["ratio"] { next }
    {
        gsub(/"/, "")
        split($1, name, "/")
        if ($column["error_occurred"] == "true") {
            printf "%-13s %9d %-8s %s\n", name[1], name[2], name[3], $column["error_message"]
            next
        }
        key = name[1] "/" name[3]
        growth = last_size[key] ? sprintf("%.2fx", $column["ms"] / last[key]) : ""
        last[key] = $column["ms"]; last_size[key] = name[2]
        printf "%-13s %9d %-8s %10.3f %7.2f %6s %8.1f %8.1f %9s %8.2f %8.2f %8s\n", name[1], name[2],
               name[3], $column["ms"], $column["ratio"], bound[name[3]], $column["MB/s"],
               $column["Mtok/s"], $column["allocs"], $column["heap/B"], $column["rss/B"], growth
    }' "$table"

if [ $# -eq 0 ] || [ "$1" = large ]; then
    if [ -x "$build/bench/tool_bench" ]; then
        "$build/bench/tool_bench" --benchmark_counters_tabular=true
    else
        echo "the tool is not built: its start-up was not measured" >&2
    fi
fi
