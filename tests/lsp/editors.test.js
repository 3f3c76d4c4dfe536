// Editors with clients of their own: each opens a file with a mistake, shows it, applies what the
// server offers, and saves a file that `tarnlet check` takes. Skipped where an editor is missing.
'use strict';
const test = require('node:test');
const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { spawnSync } = require('node:child_process');
const { TOOL, example, read } = require('./client');

const EDITORS = [
  {
    name: 'nvim',
    run: (file) => ['--headless', '--clean', '-u', 'NONE', file, '-c', 'luafile neovim.lua'],
  },
  { name: 'emacs', run: () => ['--batch', '-l', 'emacs.el'] },
];

for (const editor of EDITORS)
  test(`${editor.name} shows a mistake and applies the fix`, (t) => {
    if (spawnSync(editor.name, ['--version']).status !== 0)
      return t.skip(`${editor.name} is not installed`);
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'lsp-'));
    const file = path.join(folder, 'device.bsd');
    const check = () => spawnSync(TOOL, ['check', '--format', 'json', file], { encoding: 'utf8' });
    const mistake = read(example('demo.bsd')).replace('"CLK     : 1, "', '"CLK     : 1 "');
    fs.writeFileSync(file, mistake);
    const [finding] = JSON.parse(check().stdout).messages;
    const result = spawnSync(editor.name, editor.run(file), {
      cwd: path.join(__dirname, 'editors'),
      encoding: 'utf8',
      timeout: 60000,
      env: {
        ...process.env,
        TARNLET: TOOL,
        FILE: file,
        RULE: finding.rule,
        TITLE: finding.fix.description,
        HOME: folder,
      },
    });
    assert.strictEqual(result.status, 0, result.stderr + result.stdout);
    assert.strictEqual(check().status, 0);
    assert.strictEqual(fs.readFileSync(file, 'latin1'), read(example('demo.bsd')));
    fs.rmSync(folder, { recursive: true });
  });
