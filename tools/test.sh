#!/bin/sh
# Installs what is missing, builds everything and runs all tests twice: as it is installed, and
# under the address and undefined behaviour sanitizers, where inputs of the fuzzers are among them.
# Then clang-tidy looks at the library. The last line gives the totals of both runs.
set -u
cd "$(dirname "$0")/.." || exit 1
tools/setup.sh clang-tidy || exit 1

jobs=$(nproc)
status=0
results=
for preset in release asan; do
    echo "== $preset"
    cmake --preset "$preset" && cmake --build --preset "$preset" -j "$jobs" || exit 1
    rm -f "build/$preset/results.xml"
    ctest --preset "$preset" -j "$jobs" --output-junit results.xml || status=1
    results="$results build/$preset/results.xml"
done

echo "== clang-tidy"
find src -name '*.cpp' | xargs -P "$jobs" -n 4 clang-tidy -p build/asan --quiet \
    --extra-arg=-Wno-unknown-warning-option 2> /dev/null ||
    { echo "clang-tidy has findings"; status=1; }

# shellcheck disable=SC2086 # the words are separate arguments
python3 tools/print_totals.py $results || status=1
exit $status
