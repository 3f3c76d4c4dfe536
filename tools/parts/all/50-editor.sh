#!/bin/sh
# a client drives the language server; Neovim and Emacs; the extension is built, linted and packed
# packages: nodejs npm neovim emacs-nox elpa-eglot
set -eu
TARNLET=$PWD/build/release/bin/tarnlet
export TARNLET
[ -x "$TARNLET" ] || { cmake --preset release && cmake --build --preset release --target tarnlet_tool; }
TARNLET_CORPUS=$(sed -n 's/^TARNLET_CORPUS:[A-Z]*=//p' build/release/CMakeCache.txt)
export TARNLET_CORPUS

cd tests/lsp
npm ci --no-audit --no-fund
npm test
cd ../../editors/vscode
npm ci --omit=optional --no-audit --no-fund
npm run lint
npm test
npm run package
