#!/bin/sh
# Doxygen makes the reference of the C interface, without a warning
# packages: doxygen
set -eu
mkdir -p build
doxygen docs/Doxyfile 2> "$RESULTS/warnings"
cat "$RESULTS/warnings"
[ ! -s "$RESULTS/warnings" ] && [ -s build/doc/html/index.html ]
