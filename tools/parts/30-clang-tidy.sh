#!/bin/sh
# clang-tidy looks at the library
# packages: clang-tidy libclang-rt-14-dev
set -eu
# The build of the sanitizers, since it sees the code that only they compile.
cmake --preset asan > /dev/null
cmake --build --preset asan --target tarnlet_objects -j "$JOBS" > /dev/null
# The analyser gives a function up after so many states, a tenth of its own bound: it takes a third of the
# time then.
find src -name '*.cpp' -print0 | xargs -0 -P "$JOBS" -n 4 clang-tidy -p build/asan --quiet \
    --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wunused-const-variable \
    --extra-arg=-Xclang --extra-arg=-analyzer-config --extra-arg=-Xclang --extra-arg=max-nodes=20000
