#!/bin/sh
# Installs into a folder of its own, moves it, builds the host program of the guide against it as the
# guide says, by pkg-config and by CMake, runs it, and compares what it prints with what it is known
# to print: of each table the first rows.
# With TARNLET_UPDATE=1 in the environment that is written anew.
set -eu
source_dir=$1 build_dir=$2 libdir=$3 cc=$4 sanitize=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root
flags="-Wall -Wextra -Werror ${sanitize:+-fsanitize=$sanitize -fno-sanitize-recover=all}"

cmake --install "$build_dir" --prefix "$work/first" > "$work/log" || { cat "$work/log"; exit 1; }
mv "$work/first" "$root"

PKG_CONFIG_PATH=$root/$libdir/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046,SC2086 # the words are separate arguments
$cc -std=c11 -pedantic $flags "$source_dir/examples/host/device_report.c" \
    -o "$work/device_report" $(pkg-config --cflags --libs tarnlet) -Wl,-rpath,"$root/$libdir"
{
    cmake -G Ninja -S "$source_dir/examples/host" -B "$work/project" \
        -DCMAKE_PREFIX_PATH="$root" -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$flags" &&
        cmake --build "$work/project"
} > "$work/log" 2>&1 || { cat "$work/log"; exit 1; }

cd "$source_dir"
for file in demo.bsd isc_2002.bsd aio_2003.bsd two_taps.prg; do
    "$work/device_report" "examples/$file" "$work/$file.dsh"
done | sed "s|$root|ROOT|" > "$work/report"
for file in demo.bsd isc_2002.bsd aio_2003.bsd two_taps.prg; do
    "$work/project/device_report" "examples/$file" "$work/$file.dsh"
done | sed "s|$root|ROOT|" > "$work/report_by_cmake"
[ -s "$work/demo.bsd.dsh" ]

expected=$source_dir/tests/packaging/example_host.txt
awk '/^  / { if (++rows > 4) next } !/^  / { rows = 0 } { print }' "$work/report" > "$work/shown"
[ "${TARNLET_UPDATE:-}" != 1 ] || cp "$work/shown" "$expected"
diff -u "$expected" "$work/shown"
cmp "$work/report" "$work/report_by_cmake"

status=0
"$work/device_report" examples/demo_mistakes.bsd > "$work/out" 2> "$work/err" || status=$?
[ $status = 1 ]
grep -q '^examples/demo_mistakes.bsd:[0-9]*: .*\[[a-z0-9-]*\]$' "$work/err"
status=0
"$work/device_report" no/such.bsd > "$work/out" 2> "$work/err" || status=$?
[ $status = 2 ]

# Packages that are installed beside the library are found without being told.
"$work/device_report" tests/packaging/needs_package.bsd > "$work/out"
[ ! -x "$build_dir/bin/tarnlet" ] || "$root/bin/tarnlet" check --quiet \
    tests/packaging/needs_package.bsd
