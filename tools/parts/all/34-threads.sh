#!/bin/sh
# eight threads at once read the examples under the thread sanitizer
set -eu
cmake --preset tsan
cmake --build --preset tsan -j "$JOBS" --target frame_test
# The sanitizer does not know the address layouts of some newer kernels.
setarch -R build/tsan/tests/frame_test --gtest_filter='Threads*' \
    --gtest_output=xml:"$RESULTS/threads.xml"
