// The boundary register as a chain from TDI to TDO, and its cells as a table.

import { counted, element, name } from './dom.js';
import { FUNCTIONS } from './model.js';
import { Picture, legendOf } from './picture.js';
import { Rows } from './rows.js';

const CELL_RADIUS = 0.4;
const CHAIN_STEP = 1.35; // from one row of the chain to the next

// Along a row and back along the next, so that neighbours of the chain are neighbours.
function chainScene(device) {
  const { chain } = device;
  const width = Math.max(6, Math.ceil(Math.sqrt(chain.length * 2.8)));
  const items = chain.map((number, i) => {
    const row = Math.floor(i / width);
    const along = i % width;
    return {
      x: row % 2 ? width - 1 - along : along,
      y: row * CHAIN_STEP,
      kind: device.functionOf(number),
      name: String(number),
      square: true,
    };
  });
  const last = items.at(-1);
  const height = Math.floor((chain.length - 1) / width) * CHAIN_STEP;
  const out = Math.floor((chain.length - 1) / width) % 2 ? -1 : 1;
  const size = Math.max(0.5, width * 0.016); // legible in any picture
  const end = (text, x, y, anchor) => ({
    x,
    y,
    text,
    class: 'end',
    'font-size': size,
    'text-anchor': anchor,
  });
  const margin = 1.2 + size * 2.2;
  return {
    items,
    around: {
      left: -margin,
      top: -1,
      width: width - 1 + 2 * margin,
      height: height + 2,
      lines: last ? `M-1 0L${items.map((item) => `${item.x} ${item.y}`).join('L')}l${out} 0` : '',
      texts: last
        ? [
            end('TDI', -1.15, 0, 'end'),
            end('TDO', last.x + out * 1.15, last.y, out > 0 ? 'start' : 'end'),
          ]
        : [],
    },
  };
}

export function drives(row) {
  if (row.control === null) return null;
  const enabling = { 0: '1', 1: '0' }[row.disable_value];
  return { cell: row.control, enabling, disabling: row.disable_value, result: row.disable_result };
}

function rowSummary(row) {
  return [row.function, row.port].filter(Boolean).join(' ');
}

export class BoundaryView {
  constructor(device, selection) {
    this.device = device;
    this.selection = selection;
    this.itemOfCell = new Map(device.chain.map((number, index) => [number, index]));
    this.picture = new Picture({
      label: 'Boundary register from TDI to TDO',
      choose: (index) => selection.cell(device.chain[index]),
      describe: (index) => {
        const number = device.chain[index];
        return `Cell ${number} \u00b7 ${device.rowsOfCell.get(number).map(rowSummary).join(' \u00b7 ')}`;
      },
    });
    const rows = [...device.cells].sort((a, b) => b.number - a.number);
    this.firstRow = new Map();
    rows.forEach((row, index) => {
      if (!this.firstRow.has(row.number)) this.firstRow.set(row.number, index);
    });
    this.table = new Rows({
      label: 'Cells of the boundary register, the one next to TDI first',
      columns: [
        { label: 'Cell', class: 'number', cell: (row) => String(row.number) },
        {
          label: 'Function',
          cell: (row) => [
            element('span', {
              class: `swatch square ${device.functionOf(row.number)}`,
              'aria-hidden': 'true',
            }),
            row.function ?? '\u2013',
          ],
        },
        { label: 'Port', cell: (row) => (row.port ? name(row.port) : '\u2013') },
        { label: 'Type', cell: (row) => (row.cell ? name(row.cell) : '\u2013') },
        { label: 'Safe', class: 'short', cell: (row) => row.safe ?? '\u2013' },
        {
          label: 'Control',
          class: 'number',
          cell: (row) => (row.control === null ? '\u2013' : String(row.control)),
        },
        { label: 'Disabled by', class: 'short', cell: (row) => row.disable_value ?? '\u2013' },
        { label: 'Result', class: 'short', cell: (row) => row.disable_result ?? '\u2013' },
      ],
      choose: (row) => selection.cell(row.number),
    });
    this.table.set(rows);
    const { items, around } = chainScene(device);
    this.legend = element('div');
    this.node = element(
      'div',
      { class: 'view' },
      element(
        'div',
        { class: 'view-head' },
        element('h2', {}, 'Boundary register'),
        element('p', { class: 'note' }, counted(device.chain.length, 'cell')),
        element('div', { class: 'tools' }, this.picture.zoomButtons()),
      ),
      this.picture.node,
      this.legend,
      this.table.node,
    );
    this.picture.node.classList.add('chain');
    this.picture.node.classList.toggle('short', items.length < 80);
    if (items.length) {
      this.picture.draw(items, around, CELL_RADIUS);
      this.legend.append(legendOf(FUNCTIONS, items, this.picture));
    } else {
      this.picture.node.hidden = true;
    }
    selection.listen((current) => this.show(current));
    this.show(selection.current);
  }

  show(current) {
    const { device } = this;
    const cells = this.cellsOf(current);
    this.table.select(cells.length ? this.firstRow.get(cells[0]) : -1);
    if (!this.picture.scene) return;
    const rows = cells.flatMap((number) => device.rowsOfCell.get(number));
    const controls = rows.map((row) => row.control).filter((number) => this.itemOfCell.has(number));
    const enabled = cells
      .flatMap((number) => device.controlledBy.get(number) ?? [])
      .map((row) => row.number);
    const others = [...new Set([...cells.slice(1), ...controls, ...enabled])];
    this.picture.select(
      cells.length ? this.itemOfCell.get(cells[0]) : -1,
      others.map((number) => this.itemOfCell.get(number)),
    );
  }

  cellsOf(current) {
    const numbers =
      current?.kind === 'cell'
        ? [current.number]
        : current?.kind === 'pin'
          ? current.pin.cells
          : [];
    return numbers.filter((number) => this.itemOfCell.has(number));
  }
}
