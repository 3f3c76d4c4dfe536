#!/bin/sh
# setup.sh [PACKAGE...]: installs with apt what a fresh Debian 12 lacks to build and test, and the
# packages named; does nothing when all is there.
set -eu
packages="g++ cmake ninja-build bison flex python3 pkg-config libglib2.0-dev libgtest-dev
    libbenchmark-dev libcli11-dev nlohmann-json3-dev python3-jsonschema"

missing=
for package in $packages "$@"; do
    case $(dpkg-query -W -f '${Status}' "$package" 2>/dev/null) in
    "install ok installed") ;;
    *) missing="$missing $package" ;;
    esac
done
[ -n "$missing" ] || exit 0

as_root=
[ "$(id -u)" = 0 ] || as_root=sudo
echo "Installing$missing"
$as_root apt-get update -q
# shellcheck disable=SC2086 # the words are separate arguments
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $missing
