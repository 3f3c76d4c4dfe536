#!/bin/sh
# the Debian packages are made and looked at, and the completions tried in their shells
# packages: dpkg-dev file lintian bash-completion zsh fish
set -eu
cmake --preset release > /dev/null
cmake --build --preset release --target tarnlet tarnlet_packages tarnlet_tool_docs -j "$JOBS" \
    > /dev/null
rm -rf build/release/packages
cpack --config build/release/CPackConfig.cmake
lintian --allow-root --fail-on error build/release/packages/*.deb

# What a page refers to is there.
for page in build/release/share/man/man1/*.gz; do
    for name in $(zcat "$page" | sed -n 's/^\.BR \([a-z\\-]*\) (1).*/\1/p' | tr -d '\\'); do
        [ -e "build/release/share/man/man1/$name.1.gz" ] || {
            echo "$page refers to $name(1), which is not there"
            exit 1
        }
    done
done

PATH=$PWD/build/release/bin:$PATH python3 -B tests/packaging/completions.py "$PWD/build/release/share"
