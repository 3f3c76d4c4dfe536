#!/bin/sh
# builds the wheel of the Python package and runs it where the library is not installed
# packages: python3-pybind11 python3-dev python3-setuptools python3-wheel python3-venv patchelf
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
/usr/bin/python3 -m venv --system-site-packages "$work/builder"
"$work/builder/bin/pip" wheel ./bindings/python --no-build-isolation --no-deps -w "$work"
/usr/bin/python3 -m venv "$work/clean"
"$work/clean/bin/pip" install --no-index --no-deps "$work"/tarnlet-*.whl
site=$("$work/clean/bin/python" -c 'import sysconfig; print(sysconfig.get_path("platlib"))')

# Beside its own files a wheel may link what every system has.
links=$(ldd "$site"/tarnlet/_native*.so "$site"/tarnlet/lib/*.so.* | sed -n 's/.* => \([^ ]*\) .*/\1/p' |
    grep -v "^$site/" | sort -u)
echo "$links"
! echo "$links" | grep -vE '/lib(c|m)\.so\.6$'

cd "$work"
env -i "$work/clean/bin/python" - "$OLDPWD/examples/aio_2003.bsd" <<'END'
import sys, tarnlet
device = tarnlet.read(sys.argv[1])
assert device.ok and device.aio.pins, device.findings
END
