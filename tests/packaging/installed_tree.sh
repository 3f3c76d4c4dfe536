#!/bin/sh
# Installs into a folder of its own, moves it, and builds and runs the host program against it as
# a user would: pkg-config, and a CMake project with find_package.
set -eu
source_dir=$1 build_dir=$2 libdir=$3 cc=$4 sanitize=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/first" > "$work/log" || { cat "$work/log"; exit 1; }
mv "$work/first" "$work/moved"
root=$work/moved
flags=${sanitize:+-fsanitize=$sanitize -fno-sanitize-recover=all}

run_host() {
    "$1" "$source_dir/examples/demo.bsd" "$source_dir/tests/packaging/needs_package.bsd" \
        "$work/demo.ebst"
}

PKG_CONFIG_PATH=$root/$libdir/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046,SC2086 # the words are separate arguments
$cc -std=c11 -Wall -Wextra -Werror -pedantic $flags "$source_dir/tests/packaging/host.c" \
    -o "$work/host" $(pkg-config --cflags --libs tarnlet) -Wl,-rpath,"$root/$libdir"
run_host "$work/host"

mkdir "$work/project"
cat > "$work/project/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES C)
find_package(tarnlet 1.7 REQUIRED)
add_executable(host $source_dir/tests/packaging/host.c)
target_link_libraries(host PRIVATE tarnlet::tarnlet)
CMAKE
{
    cmake -G Ninja -S "$work/project" -B "$work/project/build" -DCMAKE_PREFIX_PATH="$root" \
        -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$flags" &&
        cmake --build "$work/project/build"
} > "$work/log" 2>&1 || { cat "$work/log"; exit 1; }
run_host "$work/project/build/host"

[ ! -x "$build_dir/bin/tarnlet" ] || "$root/bin/tarnlet" check "$source_dir/examples/demo.bsd"
