// The package seen from above, and the pins as a table.

import { button, counted, drawing, element, name } from './dom.js';
import { ROLES } from './model.js';
import { Picture, legendOf } from './picture.js';
import { planOf } from './places.js';
import { Rows } from './rows.js';

export const PIN_RADIUS = 0.38;

export function roleLabel(role) {
  return ROLES.find((each) => each.id === role).label;
}

function cellsText(pin) {
  return pin.cells.length ? pin.cells.join(', ') : '\u2013';
}

export function pinSummary(pin) {
  const parts = [pin.number, pin.port, roleLabel(pin.role)];
  if (pin.cells.length)
    parts.push(`${pin.cells.length === 1 ? 'cell' : 'cells'} ${cellsText(pin)}`);
  return parts.filter(Boolean).join(' \u00b7 ');
}

// Items for a picture of pins: one for each pin that has a place.
export function packageScene(pins, fromBelow) {
  const plan = planOf(pins.map((pin) => pin.number));
  if (!plan) return null;
  const right = 2 * plan.left + plan.width;
  const turned = (place) => (fromBelow ? { ...place, x: right - place.x } : place);
  const pinOfItem = [];
  const itemOfPin = new Map();
  const items = [];
  pins.forEach((pin, index) => {
    if (!plan.places[index]) return;
    itemOfPin.set(pin, items.length);
    pinOfItem.push(pin);
    items.push({
      ...turned(plan.places[index]),
      kind: pin.role,
      name: pin.number,
      note: pin.port,
      square: plan.kind === 'ring',
    });
  });
  return {
    plan,
    items,
    turned,
    pinOfItem,
    itemOfPin,
    around: surroundings(plan, items, turned, pinOfItem, itemOfPin),
  };
}

function gapsOf(plan, items, turned) {
  if (plan.empty) return plan.empty.map((place) => ({ ...turned(place), square: true }));
  const taken = new Set(items.map((item) => `${item.x} ${item.y}`));
  return plan.rows.flatMap((row) =>
    plan.columns
      .map((column) => turned({ x: column.x, y: row.y, scale: 0.3 }))
      .filter((place) => !taken.has(`${place.x} ${place.y}`)),
  );
}

function surroundings(plan, items, turned, pinOfItem, itemOfPin) {
  const pairs = items.flatMap((item, index) => {
    const other = items[itemOfPin.get(pinOfItem[index].partner)];
    return other && pinOfItem[index].partner.index > pinOfItem[index].index
      ? [`M${item.x} ${item.y}L${other.x} ${other.y}`]
      : [];
  });
  const every = Math.max(1, Math.ceil(plan.columns.length / 60));
  const texts = [...plan.rows, ...plan.columns]
    .filter((_, i) => every === 1 || i % every === 0)
    .map((text) => ({ ...turned(text), class: 'axis' }));
  const { body } = plan;
  const [x, y] = [turned({ x: body.x }).x, body.y];
  const corner = turned({ x: body.x + 0.7 }).x;
  return {
    left: plan.left,
    top: plan.top,
    width: plan.width,
    height: plan.height,
    body: { ...body, x: Math.min(x, turned({ x: body.x + body.width }).x) },
    corner: `M${x} ${y + 0.7}L${corner} ${y}`,
    empty: gapsOf(plan, items, turned),
    lines: pairs.join(''),
    texts,
  };
}

export class PackageView {
  constructor(device, selection) {
    this.device = device;
    this.selection = selection;
    this.fromBelow = false;
    this.picture = new Picture({
      label: 'Package seen from above',
      choose: (index) => selection.pin(this.scene.pinOfItem[index]),
      describe: (index) => pinSummary(this.scene.pinOfItem[index]),
    });
    this.table = new Rows({
      label: 'Pins',
      columns: [
        {
          label: 'Pin',
          class: 'narrow',
          cell: (pin) => (pin.number ? name(pin.number) : '\u2013'),
        },
        { label: 'Port', cell: (pin) => name(pin.port) },
        {
          label: 'Role',
          cell: (pin) => [
            element('span', { class: `swatch ${pin.role}`, 'aria-hidden': 'true' }),
            roleLabel(pin.role),
          ],
        },
        { label: 'Mode', cell: (pin) => pin.type ?? '\u2013' },
        { label: 'Function', cell: (pin) => pin.function ?? '' },
        { label: 'Cells', class: 'number', cell: cellsText },
      ],
      choose: (pin) => selection.pin(pin),
    });
    this.legend = element('div');
    this.note = element('p', { class: 'note' });
    this.side = button('From below', () => this.turn(), { 'aria-pressed': 'false' });
    this.tools = element(
      'div',
      { class: 'tools' },
      this.mapSwitch(),
      this.side,
      this.picture.zoomButtons(),
    );
    this.node = element(
      'div',
      { class: 'view' },
      element('div', { class: 'view-head' }, element('h2', {}, 'Package'), this.tools),
      this.picture.node,
      this.legend,
      this.note,
      this.table.node,
    );
    selection.listen((current) => this.show(current));
    this.draw();
  }

  mapSwitch() {
    const { maps, map } = this.device;
    if (maps.length < 2) return null;
    const choice = element(
      'select',
      {
        id: 'pin-map',
        onchange: () => {
          this.device.usePinMap(choice.selectedIndex);
          this.selection.set(null);
          this.draw();
        },
      },
      maps.map((each, index) =>
        element('option', { selected: index === map }, name(each.name ?? 'default').textContent),
      ),
    );
    return element('label', { class: 'choice', for: 'pin-map' }, 'Pin map ', choice);
  }

  turn() {
    this.fromBelow = !this.fromBelow;
    this.side.setAttribute('aria-pressed', String(this.fromBelow));
    this.draw();
  }

  draw() {
    const { pins } = this.device;
    this.scene = packageScene(pins, this.fromBelow);
    this.table.set(pins);
    const drawn = this.scene !== null;
    this.picture.node.hidden = !drawn;
    this.side.hidden = !drawn;
    this.legend.replaceChildren();
    this.note.hidden = true;
    if (drawn) {
      this.picture.draw(this.scene.items, this.scene.around, PIN_RADIUS);
      this.picture.svg.classList.toggle('ringed', this.scene.plan.kind === 'ring');
      this.legend.replaceChildren(
        legendOf(ROLES, this.scene.items, this.picture),
        ...(this.scene.around.lines ? [pairKey()] : []),
      );
    }
    this.tellMissing(pins, drawn);
    this.show(this.selection.current);
  }

  tellMissing(pins, drawn) {
    const missing = drawn ? pins.length - this.scene.items.length : 0;
    this.note.hidden = drawn && missing === 0;
    if (!drawn && pins.length)
      this.note.textContent =
        'There is no picture: the pin names are neither positions in a grid, such as A1, nor numbers around a package.';
    else if (!pins.length) this.note.textContent = 'The file gives no pins.';
    else
      this.note.textContent = `${counted(missing, 'pin')} of the table without a place in the picture.`;
  }

  show(current) {
    const pins = this.pinsOf(current);
    this.table.select(pins.length ? pins[0].index : -1);
    if (!this.scene) return;
    const items = pins
      .map((pin) => this.scene.itemOfPin.get(pin))
      .filter((item) => item !== undefined);
    const single = current?.kind === 'pin';
    const partner = single ? this.scene.itemOfPin.get(current.pin.partner) : undefined;
    const related = single ? [partner].filter((item) => item !== undefined) : items;
    this.picture.select(single ? (items[0] ?? -1) : -1, related);
  }

  // The pins that the selection is about, the enabled ones for a control cell.
  pinsOf(current) {
    if (current?.kind === 'pin')
      return this.device.pins[current.pin.index] === current.pin ? [current.pin] : [];
    if (current?.kind !== 'cell') return [];
    const rows = this.device.rowsOfCell.get(current.number) ?? [];
    const own = rows.flatMap((row) => this.device.pinsOf(row.port));
    const enabled = this.device.controlledBy.get(current.number) ?? [];
    return own.length ? own : enabled.flatMap((row) => this.device.pinsOf(row.port));
  }
}

function pairKey() {
  const line = drawing('svg', { class: 'pair-key', viewBox: '0 0 24 10', 'aria-hidden': 'true' });
  line.append(drawing('path', { class: 'lines', d: 'M3 5L21 5' }));
  return element('p', { class: 'note key-note' }, line, ' Joined: a differential pair');
}
