#!/bin/sh
# Installs what is missing, builds the tool and checks a description with it.
# With arguments: checks these files instead of the example.
set -eu
cd "$(dirname "$0")/.."
tools/setup.sh
cmake --preset release > /dev/null
cmake --build --preset release --target tarnlet_tool
[ $# -gt 0 ] || set -- examples/demo.bsd
exec build/release/bin/tarnlet check "$@"
