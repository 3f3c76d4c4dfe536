#!/bin/sh
# What check says as SARIF passes the validator with the rules of code hosts
# packages: nodejs npm
set -eu
tool=$PWD/build/release/bin/tarnlet
validator=$PWD/build/sarif/node_modules/@microsoft/sarif-multitool-linux/Sarif.Multitool
[ -x "$tool" ] || {
    cmake --preset release > /dev/null
    cmake --build --preset release -j "$JOBS" --target tarnlet_tool
}
mkdir -p build/sarif
cp tools/sarif/package.json tools/sarif/package-lock.json build/sarif/
npm ci --prefix build/sarif --no-audit --no-fund || {
    echo "the validator cannot be fetched from the npm registry"
    exit 77
}
chmod u+x "$validator"

# Its exit status says nothing: a finding of its own has a rule identifier.
validate() {
    DOTNET_SYSTEM_GLOBALIZATION_INVARIANT=1 "$validator" validate "$1" --rule-kind "Sarif;Ghas" > "$1.log" 2>&1
    cat "$1.log"
    grep -q "Analysis completed successfully" "$1.log"
    ! grep -E ": (error|warning|note) [A-Z]+[0-9]+" "$1.log"
}

made=build/sarif
corpus=$(sed -n 's/^TARNLET_CORPUS:[A-Z]*=//p' build/release/CMakeCache.txt)
"$tool" check --format sarif --output "$made/findings.sarif" -q --strict -I packages \
    examples tests/tool missing.bsd ${corpus:+"$corpus"} > "$made/text" || [ $? -ne 0 ]
"$tool" check --format sarif --output "$made/clean.sarif" -q examples/demo.bsd
grep -q '"ruleId"' "$made/findings.sarif"
! grep -q '"ruleId"' "$made/clean.sarif"
validate "$made/findings.sarif"
validate "$made/clean.sarif"
