// Search over pins, ports, cells and instructions, at each key.

import { element, name } from './dom.js';
import { folded } from './model.js';
import { roleLabel } from './package.js';

const MOST_FOUND = 12;

export class Search {
  constructor(device, selection, open) {
    this.device = device;
    this.selection = selection;
    this.open = open;
    this.found = [];
    this.current = -1;
    this.list = element('ul', {
      id: 'found',
      role: 'listbox',
      'aria-label': 'Found',
      hidden: true,
    });
    this.input = element('input', {
      type: 'search',
      id: 'search',
      role: 'combobox',
      placeholder: 'Port, pin, cell, instruction',
      autocomplete: 'off',
      spellcheck: 'false',
      'aria-label': 'Search ports, pins, cells and instructions',
      'aria-expanded': 'false',
      'aria-controls': 'found',
      'aria-autocomplete': 'list',
      oninput: () => this.search(),
      onfocus: () => this.search(),
      onblur: () => this.close(),
      onkeydown: (event) => this.key(event),
    });
    this.node = element(
      'div',
      { class: 'search', role: 'search' },
      this.input,
      element('kbd', { 'aria-hidden': 'true' }, '/'),
      this.list,
    );
  }

  // Whole words first, then beginnings, then what has it anywhere.
  matches(text) {
    const wanted = folded(text.trim());
    if (!wanted) return [];
    const { device } = this;
    const ranked = [[], [], []];
    const offer = (word, make) => {
      const key = folded(word);
      const at = key.indexOf(wanted);
      if (at >= 0) ranked[key === wanted ? 0 : at === 0 ? 1 : 2].push(make);
    };
    for (const pin of device.pins) {
      if (pin.number) offer(pin.number, () => this.pin(pin));
      offer(pin.port, () => this.pin(pin));
    }
    const cell = /^(?:cell\s*)?(\d+)$/.exec(wanted);
    if (cell && device.rowsOfCell.has(Number(cell[1])))
      ranked[0].push(() => this.cell(Number(cell[1])));
    for (const each of device.instructions)
      if (each.name) offer(each.name, () => this.instruction(each));
    const seen = new Set();
    const found = [];
    for (const make of ranked.flat()) {
      const item = make();
      if (seen.has(item.key)) continue;
      seen.add(item.key);
      found.push(item);
      if (found.length === MOST_FOUND) break;
    }
    return found;
  }

  pin(pin) {
    return {
      key: `pin ${pin.index}`,
      kind: 'Pin',
      title: [pin.number ? name(pin.number) : '', ' ', name(pin.port)],
      note: roleLabel(pin.role),
      choose: () => {
        this.open('package');
        this.selection.pin(pin);
      },
    };
  }

  cell(number) {
    const [row] = this.device.rowsOfCell.get(number);
    return {
      key: `cell ${number}`,
      kind: 'Cell',
      title: [String(number), ' ', row.port ? name(row.port) : ''],
      note: row.function ?? '',
      choose: () => {
        this.open('boundary');
        this.selection.cell(number);
      },
    };
  }

  instruction(each) {
    return {
      key: `instruction ${each.name}`,
      kind: 'Instruction',
      title: [name(each.name)],
      note: shortOpcodes(each),
      choose: () => {
        this.open('tap');
        this.selection.instruction(each.name);
      },
    };
  }

  search() {
    this.found = this.matches(this.input.value);
    const asked = this.input.value.trim() !== '';
    this.list.replaceChildren(
      ...this.found.map((item, index) =>
        element(
          'li',
          {
            id: `found-${index}`,
            role: 'option',
            onmousedown: (event) => {
              event.preventDefault();
              this.choose(index);
            },
          },
          element('span', { class: 'kind' }, item.kind),
          element('span', { class: 'title' }, item.title),
          element('span', { class: 'note' }, item.note),
        ),
      ),
      ...(asked && !this.found.length
        ? [
            element(
              'li',
              { class: 'note', role: 'option', 'aria-disabled': 'true' },
              'Nothing found',
            ),
          ]
        : []),
    );
    this.list.hidden = !asked;
    this.input.setAttribute('aria-expanded', String(asked));
    this.point(this.found.length ? 0 : -1);
  }

  point(index) {
    this.current = index;
    [...this.list.children].forEach((line, i) => {
      line.setAttribute('aria-selected', String(i === index));
    });
    if (index >= 0) this.input.setAttribute('aria-activedescendant', `found-${index}`);
    else this.input.removeAttribute('aria-activedescendant');
  }

  choose(index) {
    this.close();
    this.found[index]?.choose();
  }

  close() {
    this.list.hidden = true;
    this.input.setAttribute('aria-expanded', 'false');
    this.input.removeAttribute('aria-activedescendant');
  }

  key(event) {
    const count = this.found.length;
    if (event.key === 'ArrowDown' && count) this.point((this.current + 1) % count);
    else if (event.key === 'ArrowUp' && count) this.point((this.current + count - 1) % count);
    else if (event.key === 'Enter' && !this.list.hidden) this.choose(this.current);
    else if (event.key === 'Escape') {
      this.input.value = '';
      this.close();
    } else return;
    event.preventDefault();
  }
}

function shortOpcodes(instruction) {
  const [first, ...others] = instruction.opcodes;
  return first === undefined ? '' : others.length ? `${first} \u2026` : first;
}
