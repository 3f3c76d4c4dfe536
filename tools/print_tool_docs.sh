#!/bin/sh
# Has the tool print its manual pages and completions: print_tool_docs.sh TOOL DIR PAGES, where
# PAGES are the commands that have a page, set off by semicolons.
set -eu
tool=$1
dir=$2
pages=$(printf '%s' "$3" | tr ';' ' ')

mkdir -p "$dir/man/man1" "$dir/bash-completion/completions" "$dir/zsh/site-functions" \
    "$dir/fish/vendor_completions.d"
"$tool" manual > "$dir/man/man1/tarnlet.1"
for page in $pages; do
    "$tool" manual "$page" > "$dir/man/man1/tarnlet-$page.1"
done
"$tool" completion bash > "$dir/bash-completion/completions/tarnlet"
"$tool" completion zsh > "$dir/zsh/site-functions/_tarnlet"
"$tool" completion fish > "$dir/fish/vendor_completions.d/tarnlet.fish"
