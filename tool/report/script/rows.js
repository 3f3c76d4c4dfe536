// A table of any length: only the rows that are in sight exist, all of them when it is printed.

import { element } from './dom.js';

const HEIGHT = 28; // of a row, as in the style sheet
const AHEAD = 12;
const MOST_PRINTED = 25000;

const tables = new Set();

export class Rows {
  static drawAll(whole) {
    for (const rows of tables)
      if (rows.node.isConnected) rows.draw(whole && rows.rows.length <= MOST_PRINTED);
  }

  // columns: {label, class, cell(row)}. choose(row, index) is for rows that can be selected.
  constructor({ label, columns, choose, rowClass, height = HEIGHT, headless = false }) {
    this.columns = columns;
    this.choose = choose;
    this.rowClass = rowClass;
    this.height = height;
    this.rows = [];
    this.current = -1;
    this.body = element('tbody');
    this.above = element('tbody', { 'aria-hidden': 'true' });
    this.below = element('tbody', { 'aria-hidden': 'true' });
    this.head = element(
      'thead',
      { class: headless ? 'unseen' : null },
      element(
        'tr',
        { 'aria-rowindex': 1 },
        columns.map((column) => element('th', { scope: 'col', class: column.class }, column.label)),
      ),
    );
    this.table = element(
      'table',
      { 'aria-label': label },
      this.head,
      this.above,
      this.body,
      this.below,
    );
    this.node = element(
      'div',
      {
        class: 'rows',
        tabindex: 0,
        role: 'region',
        'aria-label': label,
        onscroll: () => this.draw(),
        onkeydown: (event) => this.key(event),
      },
      this.table,
    );
    new ResizeObserver(() => this.draw()).observe(this.node);
    tables.add(this);
  }

  set(rows) {
    this.rows = rows;
    this.current = -1;
    this.drawn = null;
    this.table.setAttribute('aria-rowcount', rows.length + 1);
    this.node.classList.toggle('none', rows.length === 0);
    this.draw();
  }

  draw(whole = false) {
    const seen = Math.ceil((this.node.clientHeight || 600) / this.height) + 2 * AHEAD;
    const first = whole ? 0 : Math.max(0, Math.floor(this.node.scrollTop / this.height) - AHEAD);
    const last = whole ? this.rows.length : Math.min(this.rows.length, first + seen);
    const key = `${first} ${last}`;
    if (this.drawn === key) return;
    this.drawn = key;
    this.body.replaceChildren(
      ...this.rows.slice(first, last).map((row, i) => this.line(row, first + i)),
    );
    this.spread(this.above, first);
    this.spread(this.below, this.rows.length - last);
  }

  spread(body, rows) {
    body.replaceChildren();
    if (!rows) return;
    const line = element('tr', {}, element('td', { colspan: this.columns.length }));
    line.firstChild.style.height = `${rows * this.height}px`;
    body.append(line);
  }

  line(row, index) {
    return element(
      'tr',
      {
        'aria-rowindex': index + 2,
        'data-index': index,
        class: this.rowClass?.(row) ?? null,
        'aria-current': index === this.current ? 'true' : null,
        onclick: this.choose ? () => this.choose(row, index) : null,
      },
      this.columns.map((column) => element('td', { class: column.class }, column.cell(row))),
    );
  }

  // Shows which row is meant, and brings it into sight.
  select(index) {
    this.current = index;
    for (const line of this.body.children)
      if (Number(line.dataset.index) === index) line.setAttribute('aria-current', 'true');
      else line.removeAttribute('aria-current');
    if (index >= 0) this.reveal(index);
  }

  reveal(index) {
    const { scrollTop, clientHeight } = this.node;
    const top = index * this.height;
    if (top < scrollTop || top + 2 * this.height > scrollTop + clientHeight)
      this.node.scrollTop = Math.max(0, top - clientHeight / 3);
    this.draw();
  }

  key(event) {
    if (
      !this.choose ||
      event.target !== this.node ||
      event.ctrlKey ||
      event.metaKey ||
      event.altKey
    )
      return;
    const page = Math.max(1, Math.floor(this.node.clientHeight / this.height) - 2);
    const step = {
      ArrowDown: 1,
      ArrowUp: -1,
      PageDown: page,
      PageUp: -page,
      Home: -Infinity,
      End: Infinity,
    }[event.key];
    if (step === undefined || this.rows.length === 0) return;
    event.preventDefault();
    const next = Math.min(this.rows.length - 1, Math.max(0, this.current + step));
    this.choose(this.rows[next], next);
  }
}

export function fact(label, ...value) {
  return [element('dt', {}, label), element('dd', {}, ...value)];
}
