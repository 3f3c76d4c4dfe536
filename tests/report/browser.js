// The tool, and a browser that looks at the pages it writes.

import { execFileSync } from 'node:child_process';
import { existsSync, mkdtempSync, readdirSync, rmSync, statSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import puppeteer from 'puppeteer-core';

export const ROOT = fileURLToPath(new URL('../..', import.meta.url));
const TOOL = process.env.TARNLET ?? path.join(ROOT, 'build/release/bin/tarnlet');
const CHROMIUM = process.env.CHROMIUM ?? '/usr/bin/chromium';

export const scratch = mkdtempSync(path.join(tmpdir(), 'tarnlet-report-'));
process.on('exit', () => rmSync(scratch, { recursive: true, force: true }));

export function tarnletIn(folder, ...args) {
  return execFileSync(TOOL, args, { encoding: 'utf8', maxBuffer: 1 << 28, cwd: folder });
}

export function tarnlet(...args) {
  return tarnletIn(scratch, ...args);
}

// What a file with findings gives is as good here; its status is not.
export function json(...args) {
  try {
    return JSON.parse(tarnlet(...args));
  } catch (error) {
    return JSON.parse(error.stdout);
  }
}

export function examples() {
  const folder = path.join(ROOT, 'examples');
  return readdirSync(folder)
    .filter((file) => /\.(bsd|prg)$/.test(file))
    .map((file) => path.join(folder, file));
}

// Real descriptions where there are some: the largest, and others from all over.
export function realFiles(count) {
  const folder = process.env.TARNLET_CORPUS;
  if (!folder || !existsSync(folder)) return [];
  const files = readdirSync(folder)
    .filter((file) => /\.bsd[l]?$/i.test(file))
    .sort()
    .map((file) => path.join(folder, file))
    .filter((file) => {
      try {
        return json('info', '--json', file).pins.length > 0;
      } catch {
        return false;
      }
    });
  const largest = files.reduce((a, b) => (statSync(a).size >= statSync(b).size ? a : b));
  const step = Math.max(1, Math.floor(files.length / (count - 1)));
  const others = files.filter((file, i) => i % step === 0 && file !== largest);
  return [largest, ...others.slice(0, count - 1)];
}

let browser = null;

export async function closeBrowser() {
  await browser?.close();
}

// Opens a page that must neither say nor ask anything. `faults` is what it did say and ask.
export async function open(file, { hash = '', width = 1280, height = 860, theme = 'light' } = {}) {
  browser ??= await puppeteer.launch({
    executablePath: CHROMIUM,
    args: process.getuid?.() === 0 ? ['--no-sandbox'] : [],
  });
  const page = await browser.newPage();
  const url = pathToFileURL(file).href;
  page.faults = [];
  page.on('console', (message) => page.faults.push(`console: ${message.text()}`));
  page.on('pageerror', (error) => page.faults.push(`error: ${error.message}`));
  page.on('dialog', (dialog) => {
    page.faults.push(`dialog: ${dialog.message()}`);
    dialog.dismiss();
  });
  page.on('request', (request) => {
    if (request.url().split('#')[0] !== url) page.faults.push(`request: ${request.url()}`);
  });
  await page.setViewport({ width, height });
  await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: theme }]);
  await page.goto(url + (hash && `#${hash}`));
  return page;
}

export async function openTab(page, id) {
  await page.click(`#tab-${id}`);
}

// Where a place of the picture is on the screen.
export function onScreen(page, place) {
  return page.evaluate(({ x, y }) => {
    const svg = document.querySelector('.panel .picture');
    const point = new DOMPoint(x, y).matrixTransform(svg.getScreenCTM());
    return { x: point.x, y: point.y };
  }, place);
}

export const selected = (page) => page.$eval('.inspector h2', (node) => node.textContent);

const axe = createRequire(import.meta.url).resolve('axe-core');

// What would keep somebody from using the page, told so that the element can be found.
export async function barriers(page) {
  // As a debugger does it: the policy of the page lets no other script in.
  await page.evaluate(await import('node:fs').then((fs) => fs.readFileSync(axe, 'utf8')));
  const { violations } = await page.evaluate(() => globalThis.axe.run(document));
  return violations
    .filter(({ impact }) => impact === 'serious' || impact === 'critical')
    .map(({ id, nodes }) => `${id}: ${nodes.map((node) => node.html.slice(0, 120)).join(' | ')}`);
}
