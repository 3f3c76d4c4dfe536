// The test access port: the instruction register, the instructions, and what lies between TDI and
// TDO for each of them.

import { counted, drawing, element, name, prose, shortened, visible } from './dom.js';
import { folded } from './model.js';
import { Rows, fact } from './rows.js';

const IDCODE_FIELDS = [
  { label: 'Version', from: 0, to: 4 },
  { label: 'Part number', from: 4, to: 20 },
  { label: 'Manufacturer', from: 20, to: 31 },
  { label: '', from: 31, to: 32 },
];

// ------------------------------------------------------------------------ instruction register

function bits(pattern, field) {
  return [...pattern].map((bit) =>
    element('span', { class: `bit ${field ?? ''} ${/x/i.test(bit) ? 'any' : ''}` }, bit),
  );
}

function shiftLine(...content) {
  return element(
    'div',
    { class: 'shift' },
    element('span', { class: 'end' }, 'TDI'),
    element('span', { class: 'arrow', 'aria-hidden': 'true' }, '\u2192'),
    ...content,
    element('span', { class: 'arrow', 'aria-hidden': 'true' }, '\u2192'),
    element('span', { class: 'end' }, 'TDO'),
  );
}

function instructionRegister(model) {
  const register = model.instruction_register ?? {};
  const captures = register.captures ?? [];
  return element(
    'section',
    {},
    element('h3', {}, 'Instruction register'),
    element(
      'p',
      { class: 'note' },
      register.length ? `${counted(register.length, 'bit')}. ` : '',
      captures.length
        ? 'What it captures, the bit next to TDI first:'
        : 'The file gives no capture value.',
    ),
    captures.map((pattern) => shiftLine(element('span', { class: 'bits' }, bits(pattern)))),
  );
}

export function makerOf(idcode) {
  const maker = idcode.manufacturer;
  if (!maker) return null;
  const number = maker.number.toString(16).toUpperCase().padStart(2, '0');
  return maker.name ?? `bank ${maker.bank}, number 0x${number}`;
}

function idcodeFields(idcode) {
  const values = [idcode.version, idcode.part, makerOf(idcode), null];
  return element(
    'div',
    { class: 'idcode' },
    IDCODE_FIELDS.map((field, i) =>
      element(
        'div',
        { class: 'field' },
        element('span', { class: 'bits' }, bits(idcode.pattern.slice(field.from, field.to))),
        element('span', { class: 'label' }, field.label),
        element(
          'span',
          { class: 'value' },
          typeof values[i] === 'number'
            ? `${values[i]} (0x${values[i].toString(16).toUpperCase()})`
            : (values[i] ?? ''),
        ),
      ),
    ),
  );
}

function identification(model) {
  const idcodes = model.idcodes ?? [];
  const usercodes = model.usercodes ?? [];
  if (!idcodes.length && !usercodes.length) return null;
  return element(
    'section',
    {},
    element('h3', {}, idcodes.length ? 'IDCODE' : 'USERCODE'),
    idcodes.map((idcode) => [
      element('p', { class: 'hex' }, idcode.hex),
      idcode.pattern?.length === 32
        ? idcodeFields(idcode)
        : element('p', {}, name(idcode.pattern ?? '')),
    ]),
    usercodes.length
      ? element(
          'p',
          { class: 'note' },
          'USERCODE ',
          usercodes.map((code) => [name(code), ' ']),
        )
      : null,
  );
}

function portFacts(model) {
  const tap = model.tap ?? {};
  const ports = ['tdi', 'tdo', 'tms', 'tck', 'trst']
    .filter((key) => tap[key])
    .flatMap((key) => fact(key.toUpperCase(), name(tap[key])));
  const frequency = tap.tck_frequency
    ? fact(
        'Clock',
        `up to ${(tap.tck_frequency / 1e6).toLocaleString('en')} MHz, may stop ${tap.tck_halt === 'BOTH' ? 'low or high' : 'low'}`,
      )
    : [];
  const compliance = model.compliance
    ? fact(
        'Compliance',
        model.compliance.ports.map((port) => [name(port), ' ']),
        ' = ',
        model.compliance.patterns.map((pattern) => [name(pattern), ' ']),
      )
    : [];
  return element('dl', { class: 'facts wide' }, ports, frequency, compliance);
}

function warningOf(model) {
  if (!model.design_warning) return null;
  return element(
    'section',
    { class: 'notice' },
    element('h3', {}, 'Design warning'),
    element('p', {}, prose(model.design_warning)),
  );
}

// ------------------------------------------------------------------------- between TDI and TDO

const BAR_STEP = 34;
const [LEFT, RIGHT, BAR_LEFT, BAR_RIGHT] = [70, 730, 150, 650];

// Each register once, the longest bar the longest register; lengths differ so much that the bars
// go by the logarithm.
function registersOf(device) {
  const list = device.registers.map((register) => ({ ...register }));
  return list.sort((a, b) => (a.length ?? 0) - (b.length ?? 0));
}

export class TapDiagram {
  constructor(device) {
    this.registers = registersOf(device);
    const longest = Math.log2(2 + Math.max(1, ...this.registers.map((each) => each.length ?? 1)));
    const height = this.registers.length * BAR_STEP + 20;
    const middle = height / 2;
    this.rows = this.registers.map((register, i) => {
      const y = 10 + BAR_STEP * i + BAR_STEP / 2;
      const half =
        ((BAR_RIGHT - BAR_LEFT) / 2) *
        Math.max(0.16, Math.log2(2 + (register.length ?? 1)) / longest);
      const centre = (BAR_LEFT + BAR_RIGHT) / 2;
      const text = `${shortened(visible(register.name), 40)}`;
      const size = register.length === null ? '' : counted(register.length, 'bit');
      const inside = half * 2 > (text.length + size.length + 4) * 7.5;
      return drawing(
        'g',
        { class: 'register' },
        drawing('path', {
          class: 'wire',
          d: `M${LEFT} ${middle}V${y}H${centre - half}M${centre + half} ${y}H${RIGHT}V${middle}`,
        }),
        drawing('rect', { x: centre - half, y: y - 12, width: half * 2, height: 24, rx: 4 }),
        drawing(
          'text',
          { x: inside ? centre : centre + half + 10, y, class: inside ? 'inside' : 'beside' },
          `${text}  ${size}`,
        ),
      );
    });
    this.node = drawing(
      'svg',
      {
        class: 'tap-diagram',
        viewBox: `0 0 800 ${height}`,
        role: 'img',
        'aria-label': 'Registers between TDI and TDO',
      },
      drawing('path', { class: 'wire', d: `M46 ${middle}H${LEFT}M${RIGHT} ${middle}H754` }),
      this.rows,
      drawing('text', { x: 24, y: middle, class: 'end' }, 'TDI'),
      drawing('text', { x: 778, y: middle, class: 'end' }, 'TDO'),
    );
  }

  show(register) {
    this.rows.forEach((row, i) => {
      const chosen = register !== null && folded(this.registers[i].name) === folded(register ?? '');
      row.classList.toggle('chosen', chosen);
      if (chosen) row.parentNode.append(row);
    });
  }
}

export class TapView {
  constructor(device, selection) {
    this.device = device;
    this.diagram = new TapDiagram(device);
    this.table = new Rows({
      label: 'Instructions',
      columns: [
        { label: 'Instruction', cell: (each) => name(each.name ?? '') },
        {
          label: 'Opcode',
          class: 'code',
          cell: (each) => each.opcodes.map((code) => [name(code), ' ']),
        },
        { label: 'Register', cell: (each) => (each.register ? name(each.register) : '\u2013') },
        {
          label: 'Length',
          class: 'number',
          cell: (each) => (each.length === null ? '\u2013' : each.length.toLocaleString('en')),
        },
        { label: 'Class', cell: (each) => each.class ?? '\u2013' },
      ],
      choose: (each) => selection.instruction(each.name),
    });
    this.table.set(device.instructions);
    this.caption = element('p', { class: 'note' });
    this.node = element(
      'div',
      { class: 'view' },
      element('div', { class: 'view-head' }, element('h2', {}, 'Test access port')),
      portFacts(device.model),
      warningOf(device.model),
      instructionRegister(device.model),
      identification(device.model),
      element(
        'section',
        {},
        element('h3', {}, 'Between TDI and TDO'),
        this.caption,
        this.diagram.registers.length ? this.diagram.node : null,
      ),
      element('section', {}, element('h3', {}, 'Instructions'), this.table.node),
    );
    selection.listen((current) => this.show(current));
    this.show(selection.current);
  }

  show(current) {
    const chosen = current?.kind === 'instruction' ? this.device.instruction(current.name) : null;
    this.diagram.show(chosen?.register ?? null);
    this.table.select(chosen ? this.device.instructions.indexOf(chosen) : -1);
    if (!chosen) {
      this.caption.textContent = 'Select an instruction to see the register that it puts there.';
      return;
    }
    this.caption.replaceChildren(
      name(chosen.name),
      chosen.register ? ' selects ' : ' selects a register that the file does not name.',
      ...(chosen.register ? [name(chosen.register), '.'] : []),
    );
  }
}
