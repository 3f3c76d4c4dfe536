// The index of many devices.

import { counted, element, name } from './dom.js';
import { themeSwitch } from './frame.js';
import { folded } from './model.js';
import { Rows } from './rows.js';
import { makerOf } from './tap.js';

export function verdictOf({ state, errors, warnings }) {
  if (state !== 'read') return element('span', { class: 'verdict error' }, 'Not read');
  if (errors) return element('span', { class: 'verdict error' }, counted(errors, 'error'));
  if (warnings) return element('span', { class: 'verdict warning' }, counted(warnings, 'warning'));
  return element('span', { class: 'verdict clean' }, 'No findings');
}

// "0x1X4B" as bits, most significant first; null for what is no code.
function bitsOf(text) {
  const digits = text.replace(/^0x|[\s_]/gi, '');
  if (/^[01x]{32}$/i.test(digits)) return digits.toUpperCase();
  if (!/^[0-9a-fx]{1,8}$/i.test(digits)) return null;
  return [...digits.toUpperCase()]
    .map((digit) => (digit === 'X' ? 'XXXX' : parseInt(digit, 16).toString(2).padStart(4, '0')))
    .join('');
}

// X stands for either value, on both sides. Fewer digits are those at the end.
export function idcodeMatches(pattern, wanted) {
  const bits = bitsOf(wanted);
  if (bits === null || !pattern) return false;
  const end = pattern.toUpperCase().slice(-bits.length);
  return [...bits].every((bit, i) => bit === 'X' || end[i] === 'X' || end[i] === bit);
}

function contains(device, wanted) {
  const makers = device.idcodes.map(makerOf);
  return [device.component, device.file, device.pin_map, ...makers].some(
    (text) => text && folded(text).includes(wanted),
  );
}

function link(device) {
  const href = device.page.split('/').map(encodeURIComponent).join('/');
  return element('a', { href: `./${href}` }, name(device.component ?? device.file));
}

export function indexPage(data) {
  const { devices } = data;
  const table = new Rows({
    label: 'Devices',
    height: 36,
    columns: [
      { label: 'Device', cell: link },
      {
        label: 'Maker',
        cell: (device) => (device.idcodes[0] && makerOf(device.idcodes[0])) ?? '\u2013',
      },
      { label: 'IDCODE', class: 'code', cell: (device) => device.idcodes[0]?.hex ?? '\u2013' },
      {
        label: 'Pins',
        class: 'number',
        cell: (device) => device.pins?.toLocaleString('en') ?? '\u2013',
      },
      {
        label: 'Cells',
        class: 'number',
        cell: (device) => device.cells?.toLocaleString('en') ?? '\u2013',
      },
      { label: 'Verdict', cell: verdictOf },
      { label: 'File', class: 'file', cell: (device) => name(device.file) },
    ],
  });
  table.node.classList.add('tall');
  const text = field('Name, maker or file', 'filter');
  const code = field('IDCODE, X for any digit', 'idcode');
  const count = element('p', { class: 'note', role: 'status' });
  const show = () => {
    const wanted = folded(text.input.value.trim());
    const pattern = code.input.value.trim();
    const found = devices.filter(
      (device) =>
        (!wanted || contains(device, wanted)) &&
        (!pattern || device.idcodes.some((idcode) => idcodeMatches(idcode.pattern, pattern))),
    );
    count.textContent =
      found.length === devices.length
        ? counted(devices.length, 'device')
        : `${found.length} of ${counted(devices.length, 'device')}`;
    table.set(found);
  };
  text.input.addEventListener('input', show);
  code.input.addEventListener('input', show);
  document.body.append(
    element(
      'header',
      { class: 'head' },
      element('div', { class: 'title' }, element('h1', {}, 'Devices')),
      element('div', { class: 'head-tools' }, text.node, code.node, themeSwitch()),
    ),
    element('main', {}, element('div', { class: 'view' }, count, table.node)),
  );
  show();
}

function field(label, id) {
  const input = element('input', {
    type: 'search',
    id,
    placeholder: label,
    'aria-label': `Filter: ${label}`,
    spellcheck: 'false',
  });
  return { input, node: element('div', { class: 'search' }, input) };
}
