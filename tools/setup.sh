#!/bin/sh
# setup.sh [PACKAGE...]: installs with apt what a fresh Debian 12 lacks to build and test, and the
# packages named; does nothing when all is there.
set -eu
cd "$(dirname "$0")/.."
packages="g++ cmake ninja-build bison python3 pkg-config libglib2.0-dev libgtest-dev libcli11-dev
    nlohmann-json3-dev libtomlplusplus-dev python3-jsonschema"

command -v dpkg-query > /dev/null || {
    echo "This is no Debian: README.md names what has to be there."
    exit 0
}
# What answers to the name of its package is there, wherever it came from: Node.js brings npm along in
# other packages than Debian's.
missing=
for package in $packages "$@"; do
    ! command -v "$package" > /dev/null || continue
    case $(dpkg-query -W -f '${Status}' "$package" 2>/dev/null) in
    "install ok installed") ;;
    *) missing="$missing $package" ;;
    esac
done
[ -n "$missing" ] || exit 0

as_root=
[ "$(id -u)" = 0 ] || as_root=sudo
echo "Installing$missing"
mkdir -p build
{
    $as_root apt-get update -q &&
        # shellcheck disable=SC2086 # the words are separate arguments
        $as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends $missing
} > build/setup.log 2>&1 || {
    tail -n 5 build/setup.log >&2
    echo "They could not be installed. Have root run this, then try again:" >&2
    echo "    apt-get install --no-install-recommends$missing" >&2
    exit 1
}
