#!/bin/sh
# The hook for pre-commit, run from a clone, stops a commit with a faulty description
# packages: git pre-commit
set -eu
tool=$PWD/build/release/bin
[ -x "$tool/tarnlet" ] || {
    cmake --preset release > /dev/null
    cmake --build --preset release -j "$JOBS" --target tarnlet_tool
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export PATH="$tool:$PATH" PRE_COMMIT_HOME="$work/cache" HOME="$work"
git clone -q "$PWD" "$work/hooks"
cp .pre-commit-hooks.yaml "$work/hooks/"
git -C "$work/hooks" -c user.name=test -c user.email=test@localhost commit -q -a --allow-empty -m hooks
revision=$(git -C "$work/hooks" rev-parse HEAD)

mkdir "$work/parts"
sed -e "s|/path/to/tarnlet|$work/hooks|" -e "s|rev: HEAD|rev: $revision|" \
    docs/pipelines/pre-commit-config.yaml > "$work/parts/.pre-commit-config.yaml"
cp examples/demo.bsd "$work/parts/good.BSD"
cd "$work/parts"
git init -q
git add .
pre-commit run --all-files
cp "$OLDPWD/examples/demo_mistakes.bsd" bad.bsd
git add .
if pre-commit run --all-files > "$work/log"; then
    echo "the hook let a faulty description pass"
    exit 1
fi
cat "$work/log"
grep -q "bad.bsd:[0-9]*" "$work/log"
if grep -q "good.BSD:" "$work/log"; then
    exit 1
fi
