#!/bin/sh
# Has the tool print its manual pages, one for each command, and its completions:
# print_tool_docs.sh TOOL DIR.
set -eu
tool=$1
dir=$2

rm -rf "$dir/man"
mkdir -p "$dir/man/man1" "$dir/bash-completion/completions" "$dir/zsh/site-functions" \
    "$dir/fish/vendor_completions.d"
"$tool" manual | gzip -9n > "$dir/man/man1/tarnlet.1.gz"
commands=$("$tool" --help | sed -n 's/^  \([a-z-]*\) .*/\1/p')
[ -n "$commands" ]
for command in $commands; do
    "$tool" manual "$command" | gzip -9n > "$dir/man/man1/tarnlet-$command.1.gz"
done
"$tool" completion bash > "$dir/bash-completion/completions/tarnlet"
"$tool" completion zsh > "$dir/zsh/site-functions/_tarnlet"
"$tool" completion fish > "$dir/fish/vendor_completions.d/tarnlet.fish"
