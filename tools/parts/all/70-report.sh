#!/bin/sh
# pages of the report in a browser, with a linter and a formatter over their script
# packages: nodejs npm chromium fonts-dejavu-core
set -eu
cd tests/report
npm ci --no-audit --no-fund
npm run lint
TARNLET=$(pwd)/../../build/release/bin/tarnlet
[ -x "$TARNLET" ] || { echo "there is no build/release: the part release has to run first"; exit 77; }
export TARNLET
node --test --test-reporter=spec --test-reporter-destination=stdout \
    --test-reporter=junit --test-reporter-destination="$RESULTS/results.xml"
