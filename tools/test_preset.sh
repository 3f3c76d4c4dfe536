#!/bin/sh
# test_preset.sh PRESET HALF: builds one half of the tests, units or product, in a preset and runs it,
# as a part of tools/test.sh does. tests/CMakeLists.txt says what the halves are.
set -eu
cmake --preset "$1"
cmake --build --preset "$1" -j "$JOBS" --target "tarnlet_$2"
# Under the sanitizers a program runs whole and writes its cases itself.
case $1 in
asan) GTEST_OUTPUT=xml:$RESULTS/ exec ctest --preset "$1" -j "$JOBS" -L "$2" ;;
*) exec ctest --preset "$1" -j "$JOBS" -L "$2" --output-junit "$RESULTS/results.xml" ;;
esac
