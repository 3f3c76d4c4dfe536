// The page of a device as a browser shows it.

import assert from 'node:assert/strict';
import { readFileSync, statSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { after, test } from 'node:test';
import {
  barriers,
  closeBrowser,
  examples,
  json,
  onScreen,
  open,
  openTab,
  realFiles,
  ROOT,
  scratch,
  selected,
  tarnlet,
  tarnletIn,
} from './browser.js';

after(closeBrowser);

function pageOf(file, ...options) {
  const page = path.join(scratch, `${path.basename(file)}.html`);
  tarnlet('report', file, '-o', page, ...options);
  return page;
}

function scratchFile(name, text) {
  const file = path.join(scratch, name);
  writeFileSync(file, text);
  return file;
}

const demo = path.join(ROOT, 'examples/demo.bsd');
const demoText = readFileSync(demo, 'utf8');

// ------------------------------------------------------------------------------ what it shows

const ROWS = 'ABCDEFGHJKLMNPRTUVWY';

// Where a pin has to be: balls by row and column, leads round a square from the upper left.
function placesOf(numbers) {
  const ball = /^([A-Z]+)(\d+)$/;
  if (numbers.every((number) => ball.test(number)))
    return numbers.map((number) => {
      const [, letters, column] = ball.exec(number);
      return {
        x: Number(column),
        y: [...letters].reduce((row, letter) => row * 20 + ROWS.indexOf(letter) + 1, 0),
      };
    });
  if (!numbers.every((number) => /^\d+$/.test(number))) return null;
  const last = Math.max(...numbers.map(Number));
  const side = Math.ceil((last % 4 === 1 ? last - 1 : last) / 4);
  return numbers.map((number) => {
    const along = ((number - 1) % side) + 1;
    const turn = Math.floor((number - 1) / side);
    if (turn === 4) return { x: (side + 1) / 2, y: (side + 1) / 2 };
    return [
      { x: 0, y: along },
      { x: along, y: side + 1 },
      { x: side + 1, y: side + 1 - along },
      { x: side + 1 - along, y: 0 },
    ][turn];
  });
}

// How many of the places have ink, and how many shapes there are in all.
function inkAt(page, places) {
  return page.evaluate((wanted) => {
    const paths = [...document.querySelectorAll('.panel .picture .items')];
    const hit = wanted.filter(({ x, y }) =>
      paths.some((shape) => shape.isPointInFill(new DOMPoint(x, y))),
    ).length;
    const shapes = paths
      .map((shape) => shape.getAttribute('d').split('M').length - 1)
      .reduce((a, b) => a + b, 0);
    return { hit, shapes };
  }, places);
}

// Where the default pin map is none of the file the page begins with the first.
function pinsOf(file) {
  const numbered = (...options) =>
    json('pins', '--json', ...options, file).filter((pin) => pin.number);
  const pins = numbered();
  const maps = pins.length ? [] : json('info', '--json', file).pin_maps;
  return maps.length ? numbered('--package', maps[0]) : pins;
}

function cellsShown(page) {
  return page.$$eval('.inspector .cell .chip', (chips) =>
    chips.map((chip) => Number(chip.textContent.replace('Cell ', ''))),
  );
}

const real = realFiles(10);
test('real descriptions', { skip: real.length ? false : 'TARNLET_CORPUS is not set' }, () => {});

for (const file of [...examples().filter((each) => each.endsWith('.bsd')), ...real])
  test(`pins and cells of ${path.basename(file)}`, async () => {
    const page = await open(pageOf(file));
    const pins = pinsOf(file);
    const cells = json('cells', '--json', file);
    const places = placesOf(pins.map((pin) => pin.number));
    if (!places) {
      assert.equal(await page.$eval('.picture-box', (node) => node.hidden), true);
      const rows = await page.$eval('.rows table', (table) => table.getAttribute('aria-rowcount'));
      assert.equal(Number(rows) - 1, json('pins', '--json', file).length);
    } else {
      const distinct = new Set(pins.map((pin) => pin.number)).size;
      assert.deepEqual(await inkAt(page, places), { hit: pins.length, shapes: distinct });
      for (let i = 0; i < pins.length; i += Math.ceil(pins.length / 6)) {
        const { x, y } = await onScreen(page, places[i]);
        await page.mouse.click(x, y);
        assert.equal(await selected(page), pins[i].number);
        const expected = cells
          .filter((cell) => cell.port?.toLowerCase() === pins[i].port.toLowerCase())
          .map((cell) => cell.number);
        assert.deepEqual(await cellsShown(page), expected, pins[i].port);
      }
    }
    for (const tab of await page.$$('[role=tab]')) await tab.click();
    assert.deepEqual(page.faults, []);
    await page.close();
  });

test('a pin map that is chosen takes the place of the other', async () => {
  const other = json('info', '--json', demo).pin_maps[1];
  const page = await open(pageOf(demo));
  await page.select('#pin-map', other);
  const pins = json('pins', '--json', '--package', other, demo).filter((pin) => pin.number);
  const places = placesOf(pins.map((pin) => pin.number));
  assert.deepEqual(await inkAt(page, places), { hit: pins.length, shapes: pins.length });
  assert.deepEqual(page.faults, []);
  await page.close();
});

test('an output tells what enables it, in words and in the chain', async () => {
  const output = json('cells', '--json', demo).find((cell) => cell.function === 'OUTPUT3');
  const page = await open(pageOf(demo), { hash: 'boundary' });
  await page.type('#search', `cell ${output.number}`);
  await page.keyboard.press('Enter');
  assert.equal(await selected(page), String(output.number));
  const text = await page.$eval('.inspector', (node) => node.textContent);
  const enabling = output.disable_value === '1' ? 0 : 1;
  assert.match(text, new RegExp(`Enabled by cell ${output.control} = ${enabling};`));
  const related = await page.$eval('.panel .related', (shape) => shape.getAttribute('d'));
  assert.equal(related.split('M').length - 1, 1);
  await page.close();
});

test('an instruction marks the register that it selects', async () => {
  const page = await open(pageOf(demo), { hash: 'tap' });
  for (const { name, register } of json('instructions', '--json', demo).filter((i) => i.register)) {
    await page.$eval('#search', (input) => (input.value = ''));
    await page.type('#search', name);
    await page.keyboard.press('Enter');
    const chosen = await page.$$eval('.tap-diagram .chosen text', (nodes) =>
      nodes.map((node) => node.textContent.split(' ')[0]),
    );
    assert.deepEqual(chosen, [register]);
  }
  await page.close();
});

test('findings stand at their lines', async () => {
  const file = path.join(ROOT, 'tests/tool/mistakes.bsd');
  const check = json('check', '--format', 'json', file);
  const page = await open(pageOf(file), { hash: 'findings' });
  const shown = await page.$$eval('.finding', (cards) =>
    cards.map((card) => ({
      rule: card.querySelector('.rule')?.textContent ?? null,
      text: card.querySelector('.message').textContent,
    })),
  );
  assert.equal(shown.length, check.messages.length);
  for (const message of check.messages)
    assert.ok(
      shown.some((card) => card.rule === message.rule && card.text === message.text.trim()),
      message.text,
    );
  await page.click('.finding .link');
  assert.equal(await page.$eval('.tabs [aria-selected=true]', (tab) => tab.id), 'tab-source');
  const line = check.messages.find((message) => message.line).line;
  const row = await page.$eval('.source [aria-current]', (each) => each.textContent);
  assert.equal(row, `${line}${readFileSync(file, 'latin1').split('\n')[line - 1]}`);
  assert.deepEqual(page.faults, []);
  await page.close();
});

// -------------------------------------------------------------------------------- how it is used

test('search answers at each key', async () => {
  const page = await open(pageOf(demo));
  const found = () =>
    page.$$eval('#found .title', (nodes) => nodes.map((n) => n.textContent.trim()));
  await page.type('#search', 'd');
  const many = (await found()).length;
  await page.type('#search', 'ata(3)');
  const few = await found();
  assert.ok(many > few.length);
  assert.match(few[0], /DATA\(3\)$/);
  await page.$eval('#search', (input) => (input.value = ''));
  await page.type('#search', 'nothing of this name');
  assert.deepEqual(await page.$$eval('#found li', (nodes) => nodes.map((n) => n.textContent)), [
    'Nothing found',
  ]);
  await page.close();
});

test('the keyboard alone leads everywhere', async () => {
  const page = await open(pageOf(demo));
  const press = (...keys) =>
    keys.reduce((before, key) => before.then(() => page.keyboard.press(key)), Promise.resolve());
  const focused = () =>
    page.evaluate(() => document.activeElement.id || document.activeElement.className);
  await press('/');
  assert.equal(await focused(), 'search');
  await page.keyboard.type('1');
  await press('Enter');
  assert.equal(await selected(page), '1');
  const seen = new Set();
  for (let i = 0; i < 40 && !seen.has('frame'); i++) {
    await press('Tab');
    seen.add(await focused());
  }
  assert.ok(seen.has('tab-package') && seen.has('pin-map') && seen.has('frame'), [...seen].join());
  await press('ArrowDown');
  assert.equal(await selected(page), '2');
  assert.match(await page.$eval('.panel [aria-live]', (node) => node.textContent), /^2 ·/);
  await page.focus('#tab-package');
  await press('ArrowRight');
  assert.equal(await focused(), 'tab-boundary');
  await press('Tab', 'Tab', 'Tab', 'Tab', 'ArrowRight');
  assert.equal(await focused(), 'frame');
  assert.match(await page.$eval('.inspector .kind', (node) => node.textContent), /cell/);
  assert.deepEqual(page.faults, []);
  await page.close();
});

const WIDTHS = { wide: 1280, narrow: 420 };
for (const theme of ['light', 'dark'])
  test(`no barriers in the ${theme} theme`, async () => {
    const files = [demo, path.join(ROOT, 'tests/tool/mistakes.bsd'), ...examples().slice(0, 1)];
    const isc = examples().find((file) => /isc_2002/.test(file));
    for (const file of [...files, isc, ...real.slice(0, 1)])
      for (const width of Object.values(WIDTHS)) {
        const page = await open(pageOf(file), { theme, width });
        for (const tab of await page.$$('[role=tab]')) {
          await tab.evaluate((node) => node.click());
          assert.deepEqual(await barriers(page), [], `${file} ${await tab.evaluate((n) => n.id)}`);
        }
        await page.close();
      }
  });

test('on paper all rows are there', async () => {
  const page = await open(pageOf(demo));
  const pins = json('pins', '--json', demo).length;
  await page.evaluate(() => dispatchEvent(new Event('beforeprint')));
  assert.equal(await page.$$eval('.panel tbody tr[data-index]', (rows) => rows.length), pins);
  await page.close();
});

// ------------------------------------------------------------------------------- hostile contents

const ATTACK = `</script><script>document.title = 'ran'</script><img src=x onerror="document.title='ran'">`;

test('names are shown as text, whatever they are', async () => {
  const long = 'N'.repeat(6000);
  const text = demoText
    .replace(
      'entity tarn_demo is',
      `-- ${ATTACK} <!--<script> \u202Eright\u202C \u0007 ü\nentity tarn_demo is`,
    )
    .replace(
      /(attribute DESIGN_WARNING of tarn_demo : entity is\s*)"/,
      `$1"${ATTACK.replaceAll('"', '')}" & "`,
    )
    .replaceAll('RXP', long);
  const file = scratchFile(`<img src=x onerror=document.title='ran'> 'a' &amp; \u202E.bsd`, text);
  const page = await open(pageOf(file));
  for (const tab of await page.$$('[role=tab]')) await tab.click();
  assert.notEqual(await page.title(), 'ran');
  assert.equal(await page.$$eval('img', (nodes) => nodes.length), 0);
  const source = await page.$$eval('.source .text', (nodes) => nodes.map((n) => n.textContent));
  const line = source.find((each) => each.includes('</script>'));
  assert.ok(line.includes(`${ATTACK} <!--<script>`), line);
  assert.ok(line.includes('\u27e8U+202E\u27e9right') && line.includes('\u2407 ü'), line);
  assert.match(await page.$eval('.file', (node) => node.textContent), /<img src=x .*U\+202E/);
  await openTab(page, 'package');
  await page.type('#search', 'NNNN');
  await page.keyboard.press('Enter');
  const width = await page.evaluate(() => document.documentElement.scrollWidth);
  assert.ok(width <= 1280, `the page is ${width} pixels wide`);
  assert.deepEqual(page.faults, []);
  await page.close();
});

test('a name of 64 KB, which no reading takes, is shown in its line', async () => {
  const text = demoText.replaceAll('RXP', 'N'.repeat(64 << 10));
  const page = await open(pageOf(scratchFile('long.bsd', text)), { hash: 'source' });
  const lines = await page.$$eval('.source .text', (nodes) => nodes.map((n) => n.textContent));
  const line = lines.find((each) => each.includes('NNN'));
  assert.ok(line.length < 3000 && /more characters$/.test(line), `${line.length} characters`);
  assert.deepEqual(page.faults, []);
  await page.close();
});

test('the policy forbids what is not of the page', async () => {
  const page = await open(pageOf(demo));
  await page.evaluate(() => {
    const script = document.createElement('script');
    script.textContent = "document.title = 'ran'";
    const image = document.createElement('img');
    image.src = 'https://example.com/x.png';
    document.body.append(script, image);
  });
  assert.notEqual(await page.title(), 'ran');
  // The request is shown as one, and then refused.
  const said = page.faults.filter((fault) => fault.startsWith('console'));
  assert.equal(said.length, 2);
  assert.ok(
    said.every((each) => /Content Security Policy/.test(each)),
    said.join(),
  );
  await page.close();
});

// ---------------------------------------------------------------------------------------- size

async function timeOfSelection(page, numbers) {
  let longest = 0;
  for (const number of numbers) {
    await page.$eval('#search', (input) => (input.value = ''));
    await page.type('#search', number);
    const time = await page.evaluate(async () => {
      const begin = performance.now();
      document.querySelector('#found li').dispatchEvent(new MouseEvent('mousedown'));
      await new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
      return performance.now() - begin;
    });
    assert.equal(await selected(page), number);
    longest = Math.max(longest, time);
  }
  return longest;
}

test('the largest real device opens in a second', { skip: real.length === 0 }, async (t) => {
  const file = pageOf(real[0]);
  assert.ok(statSync(file).size < 2 << 20, `${statSync(file).size} bytes`);
  const page = await open(file);
  const time = await page.evaluate(() => {
    const [entry] = performance.getEntriesByType('navigation');
    return entry.domComplete - entry.startTime;
  });
  t.diagnostic(`${time.toFixed(0)} ms, ${statSync(file).size} bytes`);
  assert.ok(time < 1000, `${time} ms`);
  await page.close();
});

test('20,000 pins are no burden', async (t) => {
  const row = (n) => (n < 20 ? '' : ROWS[Math.floor(n / 20) - 1]) + ROWS[n % 20];
  const names = Array.from(
    { length: 20000 },
    (_, i) => `${row(Math.floor(i / 142))}${(i % 142) + 1}`,
  );
  const text = demoText
    .replace(/port \(/, 'port (\n    BUS : linkage bit_vector(1 to 20000);')
    .replace(
      /constant TQFP48 : PIN_MAP_STRING :=\s*"/,
      (start) => `${start}BUS : (${names.map((n) => `"\n & "${n}`).join(', ')}), `,
    );
  const page = await open(pageOf(scratchFile('large.bsd', text)));
  const pins = await page.$eval('.rows table', (table) => table.getAttribute('aria-rowcount'));
  assert.ok(Number(pins) > 20000, pins);
  const time = await timeOfSelection(page, [names[7], names[9999], names[19990]]);
  t.diagnostic(`${time.toFixed(0)} ms`);
  assert.ok(time < 100, `${time} ms`);
  assert.deepEqual(page.faults, []);
  await page.close();
});

// --------------------------------------------------------------------------- the index, two devices

test('the index is filtered by text and by IDCODE', async () => {
  const folder = path.join(scratch, 'all');
  tarnlet('report', path.join(ROOT, 'examples'), '-o', folder);
  const page = await open(path.join(folder, 'index.html'));
  const names = () => page.$$eval('tbody a', (links) => links.map((link) => link.textContent));
  assert.equal((await names()).length, examples().length);
  await page.type('#filter', 'FLASH');
  assert.ok((await names()).every((each) => /flash/i.test(each)) && (await names()).length > 0);
  await page.$eval('#filter', (input) => (input.value = ''));
  const { hex } = json('info', '--json', demo).idcodes[0];
  await page.type('#idcode', hex.replace(/.(.)$/, 'X$1'));
  assert.ok((await names()).includes('tarn_demo'));
  assert.ok(!(await names()).includes('tarn_flash'));
  assert.deepEqual(await barriers(page), []);
  assert.deepEqual(page.faults, []);
  const [link] = await page.$$('tbody a');
  await Promise.all([page.waitForNavigation(), link.click()]);
  assert.equal(await page.$$eval('[role=tab]', (tabs) => tabs.length > 3), true);
  await page.close();
});

test('what differs is marked in both packages', async () => {
  const changed = scratchFile(
    'changed.bsd',
    demoText.replace('(11, 23, 35, 47)', '(25, 23, 35, 47)'),
  );
  const file = path.join(scratch, 'diff.html');
  tarnlet('report', '--diff', demo, changed, '-o', file);
  const page = await open(file);
  const marks = await page.$$eval('.picture', (pictures) =>
    pictures.map(
      (each) => each.querySelectorAll('.items.changed, .items.added, .items.removed').length,
    ),
  );
  assert.deepEqual(marks, [1, 1]);
  assert.deepEqual(await barriers(page), []);
  assert.deepEqual(page.faults, []);
  await page.close();
});

// --------------------------------------------------------------------------------- documentation

test(
  'screenshots',
  { skip: process.env.SCREENSHOTS ? false : 'SCREENSHOTS is not set' },
  async () => {
    const images = path.join(ROOT, 'docs/images');
    const take = async (file, name, { hash, theme = 'light', find }) => {
      const out = path.join(scratch, `${name}.html`);
      tarnletIn(ROOT, 'report', file, '-o', out);
      const page = await open(out, { hash, theme, width: 1180, height: 760 });
      if (find) {
        await page.type('#search', find);
        await page.keyboard.press('Enter');
      }
      await page.screenshot({ path: path.join(images, `report-${name}.png`) });
      await page.close();
    };
    await take('examples/demo.bsd', 'package', { find: 'rxp' });
    await take('examples/demo.bsd', 'boundary', { find: 'cell 9', theme: 'dark' });
    await take('examples/demo.bsd', 'tap', { find: 'idcode' });
    await take('examples/demo_mistakes.bsd', 'findings', { hash: 'findings' });
  },
);
