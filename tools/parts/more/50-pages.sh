#!/bin/sh
# the commands of the pages that build something run as they are printed
# packages: ccache dpkg-dev file doxygen clang libclang-rt-14-dev flex libbenchmark-dev
set -eu
cmake --preset release > /dev/null
cmake --build --preset release --target tarnlet_tool_docs -j "$JOBS" > /dev/null
exec python3 -B tests/pages/pages.py --slow . build/release
