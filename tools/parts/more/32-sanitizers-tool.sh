#!/bin/sh
# the tool and its language server under the same sanitizers
# packages: nodejs npm
set -eu
tools/test_preset.sh asan product
cd tests/lsp
npm ci --no-audit --no-fund
TARNLET=$PWD/../../build/asan/bin/tarnlet exec node --test --test-concurrency=1 \
    --test-reporter=spec --test-reporter-destination=stdout \
    --test-reporter=junit --test-reporter-destination="$RESULTS/server.xml" \
    protocol.test.js features.test.js
