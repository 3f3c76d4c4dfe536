// In-system configuration, AC-coupled pins, analog pins and data files: what has parts of parts.

import { element, name, prose, visible } from './dom.js';
import { Rows } from './rows.js';

function isLeaf(value) {
  return value === null || typeof value !== 'object';
}

function words(key) {
  return key.replaceAll('_', ' ');
}

function leaf(value) {
  if (value === null) return '\u2013';
  if (value === true || value === false) return value ? 'yes' : 'no';
  const text = String(value);
  return text.includes(' ') ? prose(text) : name(text);
}

const TITLES = ['name', 'procedure', 'instruction', 'part', 'port', 'tap', 'kind'];

// "PROC_PROGRAM (ARRAY)" for what has a name, else its place.
function titleOf(value, index) {
  const key = TITLES.find(
    (each) => !isLeaf(value) && value[each] !== undefined && value[each] !== null,
  );
  if (!key) return String(index + 1);
  const data = value.data ? ` (${value.data})` : '';
  return `${visible(value[key])}${data}`;
}

function leavesOf(value) {
  const entries = Object.entries(value).filter(
    ([, member]) => isLeaf(member) && member !== null && member !== false,
  );
  if (!entries.length) return null;
  return element(
    'dl',
    { class: 'facts' },
    entries.flatMap(([key, member]) => [
      element('dt', {}, words(key)),
      element('dd', {}, leaf(member)),
    ]),
  );
}

function plainList(values) {
  return element(
    'span',
    {},
    values.map((value) => [leaf(value), ' ']),
  );
}

// Opens by levels: what is inside is made when it is first looked at.
function branch(title, value, open) {
  const summary = element('summary', {}, title);
  const node = element('details', {}, summary);
  let filled = false;
  const fillIn = () => {
    if (!filled) node.append(...insideOf(value));
    filled = true;
  };
  node.addEventListener('toggle', () => node.open && fillIn());
  node.addEventListener('fill', fillIn);
  if (open) {
    fillIn();
    node.open = true;
  }
  return node;
}

function insideOf(value) {
  if (Array.isArray(value)) {
    if (value.every(isLeaf)) return [plainList(value)];
    return value.map((each, i) =>
      isLeaf(each) ? leaf(each) : branch(titleOf(each, i), each, false),
    );
  }
  const parts = Object.entries(value).filter(
    ([, member]) => !isLeaf(member) && Object.keys(member).length > 0,
  );
  return [
    leavesOf(value),
    ...parts.map(([key, member]) => {
      if (Array.isArray(member) && member.every(isLeaf))
        return element('p', { class: 'note' }, `${words(key)}: `, plainList(member));
      const count = Array.isArray(member) ? ` (${member.length})` : '';
      return branch(`${words(key)}${count}`, member, !Array.isArray(member) || member.length < 4);
    }),
  ].filter(Boolean);
}

export function treeView(title, value) {
  return element(
    'div',
    { class: 'view tree' },
    element('div', { class: 'view-head' }, element('h2', {}, title)),
    leavesOf(value),
    Object.entries(value)
      .filter(([, member]) => !isLeaf(member) && Object.keys(member).length > 0)
      .map(([key, member]) =>
        element('section', {}, element('h3', {}, words(key)), insideOf(member)),
      ),
  );
}

function seconds(value) {
  if (value === null) return '\u2013';
  const scale = [
    [1, 's'],
    [1e-3, 'ms'],
    [1e-6, '\u00b5s'],
    [1e-9, 'ns'],
    [1e-12, 'ps'],
  ].find(([size]) => value >= size);
  return scale ? `${Number((value / scale[0]).toPrecision(4))} ${scale[1]}` : `${value} s`;
}

export class AioView {
  constructor(device, selection) {
    const { aio } = device.model;
    const { pins, ...rest } = aio;
    this.device = device;
    this.rows = pins;
    this.table = new Rows({
      label: 'Pins with AC settings',
      columns: [
        { label: 'Port', cell: (pin) => name(pin.port ?? '') },
        { label: 'Low pass', cell: (pin) => seconds(pin.low_pass_time) },
        { label: 'High pass', cell: (pin) => seconds(pin.high_pass_time) },
        { label: 'High pass on chip', cell: (pin) => (pin.high_pass_on_chip ? 'yes' : 'no') },
        { label: 'Select cell', class: 'number', cell: (pin) => pin.select_cell ?? '\u2013' },
        { label: 'Input cell', class: 'number', cell: (pin) => pin.input_cell ?? '\u2013' },
      ],
      choose: (row) => {
        const [pin] = device.pinsOf(row.port);
        if (pin) selection.pin(pin);
      },
    });
    this.table.set(pins);
    this.node = treeView('AC-coupled pins', rest);
    this.node.append(element('section', {}, element('h3', {}, 'Pins'), this.table.node));
    selection.listen((current) => this.show(current));
  }

  show(current) {
    const port = current?.kind === 'pin' ? current.pin.port : null;
    this.table.select(port === null ? -1 : this.rows.findIndex((row) => row.port === port));
  }
}

export function aioText(setting) {
  const parts = [];
  if (setting.low_pass_time !== null) parts.push(`low pass ${seconds(setting.low_pass_time)}`);
  if (setting.high_pass_time !== null) parts.push(`high pass ${seconds(setting.high_pass_time)}`);
  if (setting.high_pass_on_chip) parts.push('on the chip');
  if (setting.select_cell !== null) parts.push(`select cell ${setting.select_cell}`);
  if (setting.input_cell !== null) parts.push(`input cell ${setting.input_cell}`);
  return parts.join(', ') || 'AC-coupled';
}
