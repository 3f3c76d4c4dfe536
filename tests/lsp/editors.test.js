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
    // A mistake that the library mends; while there is none, one that a comment turns off.
    let mistake = read(example('demo.bsd')).replace('"CLK     : 1, "', '"CLK     : 1 "');
    fs.writeFileSync(file, mistake);
    let [finding] = JSON.parse(check().stdout).messages;
    const mends = finding.fix !== null;
    if (!mends) {
      mistake = read(example('demo.bsd')).replace('BC_4, CLK', 'BC_9X, CLK');
      fs.writeFileSync(file, mistake);
      [finding] = JSON.parse(check().stdout).messages;
    }
    const result = spawnSync(editor.name, editor.run(file), {
      cwd: path.join(__dirname, 'editors'),
      encoding: 'utf8',
      timeout: 60000,
      env: {
        ...process.env,
        TARNLET: TOOL,
        FILE: file,
        RULE: finding.rule,
        TITLE: mends ? finding.fix.description : `Turn ${finding.rule} off here`,
        CLEAN: mends ? '1' : '',
        HOME: folder,
      },
    });
    assert.strictEqual(result.status, 0, result.stderr + result.stdout);
    const saved = fs.readFileSync(file, 'latin1');
    assert.notStrictEqual(saved, mistake);
    if (mends) assert.strictEqual(check().status, 0);
    else assert.match(saved, new RegExp(`BC_9X, CLK.*-- tarnlet: off ${finding.rule}`));
    fs.rmSync(folder, { recursive: true });
  });
