#!/bin/sh
# try.sh [FILE...]: installs what is missing, builds the tool and checks a description with it, or
# the files that are named.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
tool=$root/build/release/bin/tarnlet

[ -x "$tool" ] || echo "This takes about three minutes on two cores and 1 GB of disk, packages included."
"$root/tools/setup.sh"
echo "Building build/release/bin/tarnlet"
mkdir -p "$root/build"
log=$root/build/try.log
(cd "$root" && cmake --preset release && cmake --build --preset release --target tarnlet_tool) \
    > "$log" 2>&1 || { tail -n 30 "$log"; exit 1; }
[ $# = 0 ] || exec "$tool" check "$@"

cd "$root"
echo "Checking examples/demo.bsd"
"$tool" check examples/demo.bsd
cat <<END

To go on, have the shell find the tool, then check your own file or one with mistakes:
    export PATH="$root/build/release/bin:\$PATH"
    tarnlet check examples/demo_mistakes.bsd
    tarnlet --help
END
