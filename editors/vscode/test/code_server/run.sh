#!/bin/sh
# The extension in code-server and a headless Chromium: a mistake is underlined, its quick fix is
# applied and saved, and the pictures of docs/editor.md are taken anew.
# packages: nodejs npm make g++ pkg-config libkrb5-dev libsecret-1-dev libx11-dev libxkbfile-dev
# chromium; libnode-dev beside Debian's own Node 18
#
# The first run takes some minutes and 320 MB in node_modules, so nothing starts it but a hand.
# code-server asks for Node 18; it works with 20 too. NODE_HEADERS is the folder above the
# include/node of the Node that runs, if that is not /usr.
set -eu
cd "$(dirname "$0")"
here=$PWD
export npm_config_nodedir="${NODE_HEADERS:-/usr}"
export npm_config_build_from_source=true # nothing is fetched ready-made
quiet='--no-audit --no-fund --loglevel=error'

if [ ! -e node_modules/.built ]; then
    # Scripts off: those of packages that nothing here needs would fetch from elsewhere.
    npm ci --ignore-scripts $quiet
    cd node_modules/code-server/lib/vscode
    npm i --ignore-scripts --omit=dev --legacy-peer-deps $quiet
    cd extensions
    npm i --ignore-scripts --omit=dev $quiet
    cd "$here"
    npm rebuild argon2 $quiet
    cd node_modules/code-server/lib/vscode
    npm rebuild node-pty @vscode/spdlog native-watchdog @parcel/watcher $quiet
    cd "$here"
    touch node_modules/.built
fi
cd ../..
npm ci --omit=optional $quiet
npm run package
cd "$here"
node look.js "$here/../../tarnlet.vsix"
