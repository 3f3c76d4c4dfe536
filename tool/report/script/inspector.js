// What is selected, in words: the same beside every view.

import { button, counted, element, name, shortened, visible } from './dom.js';
import { folded } from './model.js';
import { roleLabel } from './package.js';
import { drives } from './boundary.js';
import { fact } from './rows.js';
import { aioText } from './trees.js';

const MOST_CHIPS = 24;

export class Inspector {
  constructor(device, selection) {
    this.device = device;
    this.selection = selection;
    this.body = element('div', { class: 'inspector-body' });
    this.node = element('aside', { class: 'inspector', 'aria-label': 'Selection' }, this.body);
    selection.listen((current) => this.show(current));
    this.show(null);
  }

  show(current) {
    const parts = {
      pin: () => this.pin(current.pin),
      cell: () => this.cell(current.number),
      instruction: () => this.instruction(this.device.instruction(current.name)),
      finding: () => this.finding(this.device.findings[current.index]),
    }[current?.kind]?.();
    this.node.classList.toggle('idle', !parts);
    this.body.replaceChildren(...(parts ?? this.nothing()));
  }

  nothing() {
    return [
      element('h2', {}, 'Nothing selected'),
      element(
        'p',
        { class: 'note' },
        'Select a pin, a cell or an instruction to see what belongs to it. Press / to search.',
      ),
    ];
  }

  head(kind, title, badge) {
    return element(
      'div',
      { class: 'selected-head' },
      element('p', { class: 'kind' }, kind),
      element('h2', {}, title),
      badge,
    );
  }

  pinButton(pin) {
    return button(
      shortened(visible([pin.number, pin.port].filter(Boolean).join(' \u00b7 ')), 60),
      () => this.selection.pin(pin),
      { class: 'chip' },
    );
  }

  cellButton(number) {
    return button(`Cell ${number}`, () => this.selection.cell(number), { class: 'chip' });
  }

  several(items, make) {
    const shown = items.slice(0, MOST_CHIPS).map(make);
    if (items.length > MOST_CHIPS)
      shown.push(element('span', { class: 'note' }, `and ${items.length - MOST_CHIPS} more`));
    return element('div', { class: 'chips' }, shown);
  }

  pin(pin) {
    const rows = this.device.cellsOfPort.get(folded(pin.port)) ?? [];
    const aio = this.device.aio.get(folded(pin.port)) ?? [];
    return [
      this.head(
        'Pin',
        pin.number ? name(pin.number) : 'without a number',
        element(
          'p',
          { class: 'role' },
          element('span', { class: `swatch ${pin.role}`, 'aria-hidden': 'true' }),
          roleLabel(pin.role),
        ),
      ),
      element(
        'dl',
        { class: 'facts' },
        fact('Port', name(pin.port)),
        fact('Mode', pin.type ?? '\u2013'),
        pin.function ? fact('Function', pin.function) : null,
        aio.map((setting) => fact('AC', aioText(setting))),
      ),
      pin.partner
        ? element(
            'section',
            {},
            element('h3', {}, 'Differential partner'),
            this.pinButton(pin.partner),
          )
        : null,
      element(
        'section',
        {},
        element('h3', {}, 'Boundary cells'),
        rows.length
          ? rows.map((row) => this.cellRow(row))
          : element('p', { class: 'note' }, this.noCell(pin)),
      ),
    ].filter(Boolean);
  }

  noCell(pin) {
    if (pin.role === 'tap') return 'A pin of the test access port has none.';
    if (pin.type === 'linkage') return 'A linkage pin has none.';
    if (pin.partner?.cells.length) return 'None of its own: its partner is tested for both.';
    return 'None: boundary scan neither drives nor sees this pin.';
  }

  cellRow(row) {
    return element(
      'div',
      { class: 'cell' },
      element('p', {}, this.cellButton(row.number), ` ${row.function ?? ''}`),
      element('p', { class: 'note' }, this.enabling(row)),
    );
  }

  // What turns the driver of an output on and off.
  enabling(row) {
    const driver = drives(row);
    const type = row.cell ? `${visible(row.cell)}, ` : '';
    const safe = `${type}safe value ${row.safe ?? 'not given'}`;
    if (!driver) return `${safe}.`;
    const result = driver.result ? `, the pin is ${driver.result} then` : '';
    const own = driver.cell === row.number;
    const on = own
      ? `Drives the pin while it is ${driver.enabling}`
      : `Enabled by cell ${driver.cell} = ${driver.enabling}`;
    return [`${on}; ${driver.disabling} disables it${result}. `, element('br'), `${safe}.`];
  }

  cell(number) {
    const { device } = this;
    const rows = device.rowsOfCell.get(number) ?? [];
    const pins = [...new Set(rows.flatMap((row) => device.pinsOf(row.port)))];
    const enabled = [...new Set((device.controlledBy.get(number) ?? []).map((row) => row.number))];
    const controls = [
      ...new Set(rows.map((row) => row.control).filter((each) => each !== null && each !== number)),
    ];
    const place = device.chain.indexOf(number);
    return [
      this.head(
        'Boundary cell',
        String(number),
        element(
          'p',
          { class: 'role' },
          element('span', {
            class: `swatch square ${device.functionOf(number)}`,
            'aria-hidden': 'true',
          }),
          [...new Set(rows.map((row) => row.function ?? ''))].join(', '),
        ),
      ),
      element(
        'dl',
        { class: 'facts' },
        fact('Place', `${place + 1} of ${device.chain.length} from TDI`),
        rows.map((row) => [
          row.port ? fact('Port', name(row.port)) : [],
          fact(row.function ?? 'Cell', this.enabling(row)),
        ]),
      ),
      pins.length
        ? element(
            'section',
            {},
            element('h3', {}, 'Pins'),
            this.several(pins, (pin) => this.pinButton(pin)),
          )
        : null,
      controls.length
        ? element(
            'section',
            {},
            element('h3', {}, 'Enabled by'),
            this.several(controls, (each) => this.cellButton(each)),
          )
        : null,
      enabled.length
        ? element(
            'section',
            {},
            element('h3', {}, `Enables ${counted(enabled.length, 'cell')}`),
            this.several(enabled, (each) => this.cellButton(each)),
          )
        : null,
    ].filter(Boolean);
  }

  instruction(instruction) {
    return [
      this.head(
        'Instruction',
        name(instruction.name ?? ''),
        element('p', { class: 'role' }, instruction.class ?? ''),
      ),
      element(
        'dl',
        { class: 'facts' },
        fact(
          instruction.opcodes.length === 1 ? 'Opcode' : 'Opcodes',
          instruction.opcodes.map((code) => [name(code), ' ']),
        ),
        fact('Register', instruction.register ? name(instruction.register) : 'not named'),
        instruction.length === null ? [] : fact('Length', counted(instruction.length, 'bit')),
        instruction.capture ? fact('Captures', name(instruction.capture)) : [],
        instruction.preload ? fact('Preloads', 'yes') : [],
      ),
    ];
  }

  finding(finding) {
    return [
      this.head('Finding', finding.rule ?? finding.severity, null),
      element('p', { class: `severity ${finding.severity}` }, finding.severity),
      element('p', {}, visible(finding.text.trim())),
      finding.hint ? element('p', { class: 'hint' }, visible(finding.hint)) : null,
    ].filter(Boolean);
  }
}
