#!/bin/sh
# test_preset.sh PRESET: builds a preset and runs its tests, as a part of tools/test.sh does.
set -eu
cmake --preset "$1"
cmake --build --preset "$1" -j "$JOBS"
ctest --preset "$1" -j "$JOBS" --output-junit "$RESULTS/results.xml"
