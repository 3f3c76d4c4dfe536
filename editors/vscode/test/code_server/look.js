// Opens a description with a mistake, looks at it, has it mended and saved. node look.js VSIX

import assert from 'node:assert';
import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { setTimeout } from 'node:timers/promises';
import { fileURLToPath } from 'node:url';
import puppeteer from 'puppeteer-core';

const ROOT = fileURLToPath(new URL('../../../..', import.meta.url));
const TOOL = process.env.TARNLET ?? path.join(ROOT, 'build/release/bin/tarnlet');
const CHROMIUM = process.env.CHROMIUM ?? '/usr/bin/chromium';
const IMAGES = path.join(ROOT, 'docs/images');
const ENTRY = fileURLToPath(import.meta.resolve('code-server/out/node/entry.js'));
const PORT = 8731;

const scratch = mkdtempSync(path.join(tmpdir(), 'tarnlet-code-'));
const folder = path.join(scratch, 'board');
const file = path.join(folder, 'demo.bsd');
const clean = readFileSync(path.join(ROOT, 'examples/demo.bsd'), 'latin1');
const CELL = '"  6';
const ROW = '"OE_N    : 2, "';
mkdirSync(folder);
writeFileSync(file, clean.replace(ROW, ROW.replace(',', '')), 'latin1');

const SETTINGS = {
  'tarnlet.path': TOOL,
  'workbench.colorTheme': 'Default Light Modern',
  'workbench.startupEditor': 'none',
  'workbench.tips.enabled': false,
  'security.workspace.trust.enabled': false,
  'editor.minimap.enabled': false,
  'window.commandCenter': false,
};
const data = path.join(scratch, 'data');
mkdirSync(path.join(data, 'User'), { recursive: true });
writeFileSync(path.join(data, 'User/settings.json'), JSON.stringify(SETTINGS));

const CODE = [ENTRY, '--user-data-dir', data, '--extensions-dir', path.join(scratch, 'extensions')];
const environment = { ...process.env, HOME: scratch };
execFileSync(process.execPath, [...CODE, '--install-extension', process.argv[2]], {
  env: environment,
  stdio: 'inherit',
});
const SERVE = ['--auth', 'none', '--disable-telemetry', '--disable-update-check'];
const server = spawn(process.execPath, [...CODE, ...SERVE, '--bind-addr', `127.0.0.1:${PORT}`], {
  env: environment,
});
let log = '';
for (const stream of [server.stdout, server.stderr]) stream.on('data', (text) => (log += text));

const listens = async () => {
  try {
    return (await fetch(`http://127.0.0.1:${PORT}/healthz`)).ok;
  } catch {
    return false;
  }
};

const browser = await puppeteer.launch({
  executablePath: CHROMIUM,
  args: process.getuid() === 0 ? ['--no-sandbox'] : [],
});
const page = await browser.newPage();
const picture = (name) => page.screenshot({ path: path.join(IMAGES, name) });
const press = async (held, key) => {
  await page.keyboard.down(held);
  await page.keyboard.press(key);
  await page.keyboard.up(held);
};

try {
  for (let tries = 0; !(await listens()); tries++) {
    assert(tries < 100, `code-server does not answer\n${log}`);
    await setTimeout(200);
  }
  await page.setViewport({ width: 1000, height: 640 });
  const opened = JSON.stringify([['openFile', `vscode-remote://127.0.0.1:${PORT}${file}`]]);
  await page.goto(
    `http://127.0.0.1:${PORT}/?folder=${folder}&payload=${encodeURIComponent(opened)}`,
  );
  await page.waitForSelector('.monaco-editor .view-line', { timeout: 60000 });

  // To the mistake: the next problem, shown where it is. The library's own message comes first and
  // stands elsewhere.
  await page.click('.monaco-editor .view-lines');
  const told = () => document.querySelector('.marker-widget')?.innerText ?? '';
  for (let tries = 0; !(await page.evaluate(told)).includes('a comma is missing'); tries++) {
    assert(tries < 60, 'the mistake is not shown');
    await page.keyboard.press('F8');
    await setTimeout(500);
  }
  await page.waitForSelector('.squiggly-error');
  await setTimeout(1000); // the widget unfolds
  await picture('editor-finding.png');

  await page.keyboard.press('Escape');
  await press('Control', '.');
  await page.waitForSelector('.action-widget');
  await setTimeout(500);
  await picture('editor-fix.png');

  await page.keyboard.press('Enter');
  await page.waitForFunction(() => !document.querySelector('.squiggly-error'));
  await press('Control', 's');
  for (let tries = 0; readFileSync(file, 'latin1') !== clean; tries++) {
    assert(tries < 50, `the file is not as it was:\n${readFileSync(file, 'latin1')}`);
    await setTimeout(100);
  }
  assert.strictEqual(spawnSync(TOOL, ['check', file]).status, 0);
  console.log('the mistake was underlined, mended and saved');

  // What a row of the boundary register says.
  const before = clean.slice(0, clean.indexOf(CELL) + CELL.length).split('\n');
  await press('Control', 'g');
  await page.keyboard.type(`${before.length}:${before.at(-1).length}\n`);
  await press('Control', 'k');
  await press('Control', 'i');
  await page.waitForFunction(() =>
    [...document.querySelectorAll('.monaco-hover')].some(({ innerText }) =>
      /output3/.test(innerText),
    ),
  );
  await setTimeout(500);
  await picture('editor-hover.png');
} catch (error) {
  await page.screenshot({ path: path.join(tmpdir(), 'code-server.png') });
  console.error(`${error.stack}\nThe screen is in ${tmpdir()}/code-server.png\n${log}`);
  process.exitCode = 1;
} finally {
  await browser.close();
  server.kill();
  rmSync(scratch, { recursive: true, force: true, maxRetries: 10 });
}
