// What differs between two descriptions of a device: both packages, and the list of changes.

import { counted, element, name, shortened, visible } from './dom.js';
import { themeSwitch } from './frame.js';
import { Device, folded } from './model.js';
import { PIN_RADIUS, packageScene, pinSummary } from './package.js';
import { Picture } from './picture.js';
import { Rows } from './rows.js';

const CHANGES = [
  { id: 'removed', label: 'Removed' },
  { id: 'added', label: 'Added' },
  { id: 'changed', label: 'Changed' },
  { id: 'same', label: 'Unchanged' },
];

function textOf(value) {
  if (value === null || value === undefined) return '\u2013';
  if (Array.isArray(value)) return value.map(textOf).join(' ');
  if (typeof value === 'object')
    return Object.entries(value)
      .filter(([, member]) => member !== null && !(Array.isArray(member) && member.length === 0))
      .map(([key, member]) => `${key} ${textOf(member)}`)
      .join(', ');
  return String(value);
}

function shownText(value) {
  return shortened(visible(textOf(value)), 200);
}

// By folded port, what has become of the pin; a changed cell changes the pin that it serves.
function pinChanges(changes, old, current) {
  const kinds = new Map();
  for (const change of changes) {
    if (change.section === 'pins') kinds.set(folded(change.key), change.change);
    if (change.section !== 'cells') continue;
    const number = Number.parseInt(change.key, 10);
    for (const device of [old, current])
      for (const row of device.rowsOfCell.get(number) ?? [])
        if (row.port && !kinds.has(folded(row.port))) kinds.set(folded(row.port), 'changed');
  }
  return kinds;
}

function half(device, title, kinds, choose) {
  const scene = packageScene(device.pins, false);
  const head = element('h2', {}, title, ' ', element('small', {}, visible(device.file)));
  if (!scene)
    return {
      node: element(
        'section',
        {},
        head,
        element('p', { class: 'note' }, 'No picture for these pins.'),
      ),
      show() {},
    };
  const kindOf = (pin) => kinds.get(folded(pin.port)) ?? 'same';
  const picture = new Picture({
    label: `${title} package`,
    choose: (index) => choose(scene.pinOfItem[index]),
    describe: (index) =>
      `${pinSummary(scene.pinOfItem[index])} \u00b7 ${kindOf(scene.pinOfItem[index])}`,
  });
  picture.svg.classList.toggle('ringed', scene.plan.kind === 'ring');
  picture.draw(
    scene.items.map((item, i) => ({ ...item, kind: kindOf(scene.pinOfItem[i]) })),
    scene.around,
    PIN_RADIUS,
  );
  return {
    node: element('section', {}, head, picture.node),
    show: (number, port) => {
      const index = scene.pinOfItem.findIndex((pin) => folded(pin.port) === folded(port));
      const same = scene.pinOfItem.findIndex((pin) => pin.number === number);
      picture.select(index >= 0 ? index : same);
    },
  };
}

export function diffPage(data) {
  const [old, current] = [new Device(data.old), new Device(data.new)];
  const kinds = pinChanges(data.changes, old, current);
  const table = new Rows({
    label: 'Changes',
    columns: [
      {
        label: 'Change',
        class: 'narrow',
        cell: (change) => [
          element('span', { class: `swatch ${change.change}`, 'aria-hidden': 'true' }),
          change.change,
        ],
      },
      { label: 'In', cell: (change) => change.section.replaceAll('_', ' ') },
      { label: 'Of', cell: (change) => (change.key === null ? '\u2013' : name(change.key)) },
      { label: 'Field', cell: (change) => change.field ?? '' },
      { label: 'Old', class: 'value', cell: (change) => shownText(change.a) },
      { label: 'New', class: 'value', cell: (change) => shownText(change.b) },
    ],
    choose: (change, index) => {
      table.select(index);
      const [pin] = portsOf(change, [old, current]);
      if (pin) for (const side of sides) side.show(pin.number, pin.port);
    },
  });
  table.set(data.changes);
  const choose = (pin) => {
    for (const side of sides) side.show(pin.number, pin.port);
    const wanted = folded(pin.port);
    table.select(
      data.changes.findIndex(
        (change) => change.section === 'pins' && folded(change.key) === wanted,
      ),
    );
  };
  const sides = [half(old, 'Old', kinds, choose), half(current, 'New', kinds, choose)];
  const legend = CHANGES.map((kind) =>
    element(
      'span',
      { class: 'key' },
      element('span', { class: `swatch ${kind.id}`, 'aria-hidden': 'true' }),
      kind.label,
    ),
  );
  document.body.append(
    element(
      'header',
      { class: 'head' },
      element(
        'div',
        { class: 'title' },
        element('h1', {}, name(current.name)),
        element(
          'span',
          { class: 'verdict' },
          data.changes.length ? counted(data.changes.length, 'change') : 'Nothing differs',
        ),
      ),
      element('div', { class: 'head-tools' }, themeSwitch()),
    ),
    element(
      'main',
      {},
      element(
        'div',
        { class: 'view' },
        element(
          'div',
          { class: 'sides' },
          sides.map((side) => side.node),
        ),
        element('div', { class: 'legend' }, legend),
        element('h2', {}, 'Changes'),
        table.node,
      ),
    ),
  );
}

function portsOf(change, devices) {
  if (change.section === 'pins') return devices.flatMap((device) => device.pinsOf(change.key));
  if (change.section !== 'cells') return [];
  return devices.flatMap((device) =>
    (device.rowsOfCell.get(Number.parseInt(change.key, 10)) ?? []).flatMap((row) =>
      device.pinsOf(row.port),
    ),
  );
}
