// A device of the page's data, with what belongs together found.

export function folded(text) {
  return String(text).replace(/[A-Z]/g, (letter) => letter.toLowerCase());
}

export const ROLES = [
  { id: 'input', label: 'Input' },
  { id: 'output', label: 'Output' },
  { id: 'bidir', label: 'Bidirectional' },
  { id: 'tap', label: 'Test access port' },
  { id: 'nocell', label: 'No cell' },
  { id: 'power', label: 'Power' },
  { id: 'ground', label: 'Ground' },
  { id: 'linkage', label: 'Other linkage' },
];

export const FUNCTIONS = [
  { id: 'input', label: 'Input', words: ['INPUT', 'CLOCK', 'OBSERVE_ONLY', 'BIDIR_IN'] },
  { id: 'output', label: 'Output', words: ['OUTPUT2', 'OUTPUT3', 'BIDIR_OUT'] },
  { id: 'bidir', label: 'Bidirectional', words: ['BIDIR'] },
  { id: 'control', label: 'Control', words: ['CONTROL', 'CONTROLR'] },
  { id: 'internal', label: 'Internal', words: ['INTERNAL'] },
];

const TAP_PINS = ['TDI', 'TDO', 'TMS', 'TCK', 'TRST'];
const GROUND = /GND|VSS|GROUND|(^|_)VEE/i;
const POWER = /V(CC|DD|BAT|REF|PP|TT|AA|IO|CORE|IN|PS)|PWR|POWER|SUPPLY|(^|_)\d+V\d*/i;

function roleOf(pin) {
  if (TAP_PINS.includes(pin.function)) return 'tap';
  if (pin.type === 'linkage') {
    if (GROUND.test(pin.port)) return 'ground';
    return POWER.test(pin.port) ? 'power' : 'linkage';
  }
  if (pin.cells.length === 0 && pin.function !== 'associated') return 'nocell';
  return { in: 'input', inout: 'bidir' }[pin.type] ?? 'output';
}

function baseOf(port) {
  return port.replace(/\(-?\d+\)$/, '');
}

function push(map, key, value) {
  const list = map.get(key);
  if (list) list.push(value);
  else map.set(key, [value]);
}

export class Device {
  constructor(data) {
    this.file = data.file;
    this.state = data.state;
    this.errors = data.errors;
    this.warnings = data.warnings;
    this.findings = data.findings ?? [];
    this.unchecked = data.unchecked;
    this.source = data.source ?? '';
    this.model = data.model ?? {};
    this.name = this.model.component ?? data.file;
    this.instructions = this.model.instructions ?? [];
    this.registers = this.model.registers ?? [];
    this.maps = data.pin_maps?.length
      ? data.pin_maps
      : [{ name: this.model.pin_map ?? null, pins: this.model.pins ?? [] }];
    this.map = Math.max(
      0,
      this.maps.findIndex((map) => map.name === this.model.pin_map),
    );
    this.takeCells(this.model.boundary?.cells ?? []);
    this.takeGroups(this.model.port_groups ?? []);
    this.aio = new Map();
    for (const setting of this.model.aio?.pins ?? [])
      if (setting.port) push(this.aio, folded(setting.port), setting);
    this.usePinMap(this.map);
  }

  takeCells(rows) {
    this.rowsOfCell = new Map();
    this.cellsOfPort = new Map();
    this.controlledBy = new Map();
    this.cells = rows;
    for (const row of rows) {
      push(this.rowsOfCell, row.number, row);
      if (row.port) push(this.cellsOfPort, folded(row.port), row);
      if (row.control !== null) push(this.controlledBy, row.control, row);
    }
    this.chain = [...this.rowsOfCell.keys()].sort((a, b) => b - a);
  }

  takeGroups(groups) {
    this.groupOf = new Map();
    for (const group of groups)
      if (group.representative && group.associated) {
        this.groupOf.set(folded(group.representative), group.associated);
        this.groupOf.set(folded(group.associated), group.representative);
      }
  }

  // A group of vectors joins their bits one by one.
  partnerOf(port) {
    const whole = this.groupOf.get(folded(port));
    if (whole) return whole;
    const base = baseOf(port);
    const other = this.groupOf.get(folded(base));
    return other ? other + port.slice(base.length) : null;
  }

  usePinMap(index) {
    this.map = index;
    this.pins = this.maps[index].pins.map((pin, i) => ({
      ...pin,
      port: pin.port ?? '',
      index: i,
      role: roleOf({ ...pin, port: pin.port ?? '' }),
    }));
    this.pinsOfPort = new Map();
    this.pinsOfNumber = new Map();
    for (const pin of this.pins) {
      push(this.pinsOfPort, folded(pin.port), pin);
      if (pin.number) push(this.pinsOfNumber, folded(pin.number), pin);
    }
    for (const pin of this.pins) {
      const partner = this.partnerOf(pin.port);
      pin.partner = partner ? (this.pinsOfPort.get(folded(partner))?.[0] ?? null) : null;
    }
  }

  pinsOf(port) {
    return port ? (this.pinsOfPort.get(folded(port)) ?? []) : [];
  }

  functionOf(number) {
    const words = this.rowsOfCell.get(number).map((row) => row.function);
    const kinds = FUNCTIONS.filter((kind) => kind.words.some((word) => words.includes(word)));
    // A cell that is an input and an output serves both.
    if (kinds.length > 1) return kinds.some((kind) => kind.id === 'control') ? 'control' : 'bidir';
    return kinds[0]?.id ?? 'internal';
  }

  instruction(text) {
    return this.instructions.find((each) => each.name && folded(each.name) === folded(text));
  }
}
