// A picture of many small items that can be zoomed, moved and gone through with the keyboard.
//
// Items of a kind are one path, so that twenty thousand of them cost as little as twenty, take
// their colours from the style sheet and print sharp. What is pointed at is found by place.

import { drawing, element, button, visible, shortened } from './dom.js';

const SPARE = 0.5; // of a unit, for items between two places
const MOST_LABELS = 1500;
const LABEL_PIXELS = 22; // an item of this size has room for its name
const NOTE_PIXELS = 60; // and of this size, for what it is
const MOST_PIXELS = 40; // of a unit, so that small packages are no posters
const FARTHEST = 60;

function shapeOf(item, radius) {
  const r = item.radius ?? radius;
  if (item.square) return `M${item.x - r} ${item.y - r}h${2 * r}v${2 * r}h${-2 * r}z`;
  return `M${item.x - r} ${item.y}a${r} ${r} 0 1 0 ${2 * r} 0a${r} ${r} 0 1 0 ${-2 * r} 0z`;
}

function keyOf(x, y) {
  return `${Math.round(x / SPARE)} ${Math.round(y / SPARE)}`;
}

export class Picture {
  // label: what it shows, for those who do not see it. choose(index): an item was pointed at.
  constructor({ label, choose, describe }) {
    this.choose = choose;
    this.describe = describe;
    this.items = [];
    this.current = -1;
    this.svg = drawing('svg', { class: 'picture', 'aria-hidden': 'true', focusable: 'false' });
    this.announcer = element('div', { class: 'unseen', 'aria-live': 'polite' });
    this.tip = element('div', { class: 'tip', hidden: true, 'aria-hidden': 'true' });
    this.frame = element(
      'div',
      {
        class: 'frame',
        tabindex: 0,
        role: 'application',
        'aria-roledescription': 'picture',
        'aria-label': `${label}. Arrow keys go from one to the next; plus and minus zoom. The table below holds the same.`,
        onkeydown: (event) => this.key(event),
      },
      this.svg,
      this.tip,
    );
    this.node = element('div', { class: 'picture-box' }, this.frame, this.announcer);
    this.listen();
    new ResizeObserver(() => this.show()).observe(this.frame);
  }

  zoomButtons() {
    return element(
      'div',
      { class: 'buttons', role: 'group', 'aria-label': 'Zoom' },
      button('\u2212', () => this.zoom(1 / 1.5), {
        'aria-label': 'Zoom out',
        title: 'Zoom out (\u2212)',
      }),
      button('Fit', () => this.fit(), { title: 'Show all (0)' }),
      button('+', () => this.zoom(1.5), { 'aria-label': 'Zoom in', title: 'Zoom in (+)' }),
    );
  }

  // items: {x, y, kind, name, radius, square}; scene: {left, top, width, height, body, texts,
  // empty, lines}.
  draw(items, scene, radius) {
    this.items = items;
    this.scene = scene;
    this.radius = radius;
    this.byPlace = new Map(items.map((item, index) => [keyOf(item.x, item.y), index]));
    const kinds = new Map();
    for (const item of items)
      kinds.set(item.kind, (kinds.get(item.kind) ?? '') + shapeOf(item, radius));
    this.labels = drawing('g', { class: 'labels' });
    this.marks = drawing('path', { class: 'marks' });
    this.related = drawing('path', { class: 'related' });
    this.ring = drawing('path', { class: 'ring' });
    this.svg.replaceChildren(
      ...(scene.body ? [drawing('rect', { class: 'body', rx: 0.35, ...scene.body })] : []),
      ...(scene.corner ? [drawing('path', { class: 'corner', d: scene.corner })] : []),
      drawing('path', {
        class: 'empty',
        d: (scene.empty ?? []).map((place) => shapeOf(place, radius * (place.scale ?? 1))).join(''),
      }),
      drawing('path', { class: 'lines', d: scene.lines ?? '' }),
      ...[...kinds].map(([kind, d]) => drawing('path', { class: `items ${kind}`, d })),
      drawing(
        'g',
        { class: 'texts' },
        (scene.texts ?? []).map(({ text, ...place }) => drawing('text', place, text)),
      ),
      this.marks,
      this.related,
      this.labels,
      this.ring,
    );
    this.fit();
  }

  fit() {
    this.scale = 1;
    this.centre = {
      x: this.scene.left + this.scene.width / 2,
      y: this.scene.top + this.scene.height / 2,
    };
    this.show();
  }

  // Pixels for a unit.
  unit() {
    const { width, height } = this.frame.getBoundingClientRect();
    const fits = Math.min(width / this.scene.width, height / this.scene.height);
    return Math.min(fits, MOST_PIXELS) * this.scale;
  }

  zoom(factor, at = this.items[this.current] ?? this.centre) {
    const scale = Math.min(FARTHEST, Math.max(1, this.scale * factor));
    const ratio = this.scale / scale;
    this.scale = scale;
    this.centre = {
      x: at.x + (this.centre.x - at.x) * ratio,
      y: at.y + (this.centre.y - at.y) * ratio,
    };
    this.show();
  }

  show() {
    if (!this.scene) return;
    const { width, height } = this.frame.getBoundingClientRect();
    if (!width || !height) return;
    const unit = this.unit();
    const [w, h] = [width / unit, height / unit];
    const kept = (value, from, size, part) =>
      part >= size
        ? from + size / 2
        : Math.min(from + size - part / 2, Math.max(from + part / 2, value));
    this.centre.x = kept(this.centre.x, this.scene.left, this.scene.width, w);
    this.centre.y = kept(this.centre.y, this.scene.top, this.scene.height, h);
    this.box = { x: this.centre.x - w / 2, y: this.centre.y - h / 2, width: w, height: h };
    this.svg.setAttribute('viewBox', `${this.box.x} ${this.box.y} ${w} ${h}`);
    this.svg.classList.toggle('far', unit < 9);
    this.svg.classList.toggle('near', unit * 2 * this.radius >= LABEL_PIXELS);
    this.showLabels(unit);
  }

  showLabels(unit) {
    const { x, y, width, height } = this.box;
    const near = unit * 2 * this.radius >= LABEL_PIXELS;
    const seen = near
      ? this.items.filter(
          (item) =>
            item.x > x - 1 && item.x < x + width + 1 && item.y > y - 1 && item.y < y + height + 1,
        )
      : [];
    const both = unit * 2 * this.radius >= NOTE_PIXELS;
    const line = (item, text, most, lower, className) =>
      drawing(
        'text',
        {
          x: item.x,
          y: item.y + lower,
          'font-size': Math.min(0.3, (this.radius * 2.6) / Math.max(text.length, most)),
          class: `${className} ${item.kind}`,
        },
        text,
      );
    this.labels.replaceChildren(
      ...(seen.length > MOST_LABELS ? [] : seen).flatMap((item) => {
        const label = line(item, shortened(visible(item.name), 12), 3, 0, 'label');
        if (!both || !item.note) return [label];
        label.setAttribute('y', item.y - 0.1);
        return [label, line(item, shortened(visible(item.note), 14), 8, 0.14, 'note-label')];
      }),
    );
  }

  // The item, and others that belong to it.
  select(index, related = []) {
    this.current = index;
    const at = this.items[index];
    this.ring.setAttribute('d', at ? shapeOf(at, this.radius + 0.13) : '');
    this.related.setAttribute(
      'd',
      related.map((other) => shapeOf(this.items[other], this.radius + 0.1)).join(''),
    );
    if (at && this.scale > 1) this.reveal(at);
  }

  // Those that a search or the legend has found.
  mark(indexes) {
    this.svg.classList.toggle('dimmed', indexes !== null);
    this.marks.setAttribute(
      'd',
      (indexes ?? []).map((index) => shapeOf(this.items[index], this.radius)).join(''),
    );
  }

  reveal({ x, y }) {
    const { box } = this;
    if (x > box.x + 1 && x < box.x + box.width - 1 && y > box.y + 1 && y < box.y + box.height - 1)
      return;
    this.centre = { x, y };
    this.show();
  }

  placeOf(event) {
    const frame = this.frame.getBoundingClientRect();
    return {
      x: this.box.x + ((event.clientX - frame.left) / frame.width) * this.box.width,
      y: this.box.y + ((event.clientY - frame.top) / frame.height) * this.box.height,
    };
  }

  itemAt({ x, y }) {
    let best = -1;
    let least = Infinity;
    for (let i = -1; i <= 1; i++)
      for (let j = -1; j <= 1; j++) {
        const index = this.byPlace.get(keyOf(x + i * SPARE, y + j * SPARE));
        if (index === undefined) continue;
        const distance = Math.hypot(this.items[index].x - x, this.items[index].y - y);
        if (distance < least) [best, least] = [index, distance];
      }
    return least <= Math.max(this.items[best]?.radius ?? 0, this.radius) * 1.2 ? best : -1;
  }

  listen() {
    let from = null;
    let moved = false;
    this.frame.addEventListener('pointerdown', (event) => {
      if (event.button !== 0) return;
      from = { x: event.clientX, y: event.clientY, centre: this.centre };
      moved = false;
    });
    this.frame.addEventListener('pointermove', (event) => {
      if (!from || !(event.buttons & 1)) return this.hover(event);
      const unit = this.unit();
      const [dx, dy] = [event.clientX - from.x, event.clientY - from.y];
      if (!moved && Math.hypot(dx, dy) < 4) return undefined;
      moved = true;
      this.centre = { x: from.centre.x - dx / unit, y: from.centre.y - dy / unit };
      return this.show();
    });
    this.frame.addEventListener('pointerleave', () => {
      this.tip.hidden = true;
    });
    this.frame.addEventListener('click', (event) => {
      from = null;
      const index = moved ? -1 : this.itemAt(this.placeOf(event));
      if (index >= 0) this.choose(index);
    });
    this.frame.addEventListener(
      'wheel',
      (event) => {
        // Without a key the wheel is for the page, but where there is more to see here.
        if (!event.ctrlKey && !event.metaKey && this.scale === 1) return;
        event.preventDefault();
        this.zoom(Math.exp(-event.deltaY / 300), this.placeOf(event));
      },
      { passive: false },
    );
    this.frame.addEventListener('dblclick', (event) => this.zoom(2, this.placeOf(event)));
  }

  hover(event) {
    const index = this.box ? this.itemAt(this.placeOf(event)) : -1;
    this.frame.classList.toggle('pointing', index >= 0);
    this.tip.hidden = index < 0;
    if (index < 0) return;
    this.tip.textContent = shortened(visible(this.describe(index)), 120);
    const frame = this.frame.getBoundingClientRect();
    const x = event.clientX - frame.left;
    this.tip.classList.toggle('leftwards', x > frame.width / 2);
    this.tip.style.left = `${x}px`;
    this.tip.style.top = `${event.clientY - frame.top}px`;
  }

  key(event) {
    const step = {
      ArrowLeft: [-1, 0],
      ArrowRight: [1, 0],
      ArrowUp: [0, -1],
      ArrowDown: [0, 1],
    }[event.key];
    if (event.altKey || event.ctrlKey || event.metaKey) return;
    if (step) this.go(step);
    else if (event.key === '+' || event.key === '=') this.zoom(1.5);
    else if (event.key === '-') this.zoom(1 / 1.5);
    else if (event.key === '0') this.fit();
    else return;
    event.preventDefault();
  }

  // The nearest item that way; one that is off the line counts as farther.
  go([dx, dy]) {
    const at = this.items[this.current];
    let best = at ? -1 : 0;
    let least = Infinity;
    this.items.forEach((item, index) => {
      if (!at) return;
      const along = (item.x - at.x) * dx + (item.y - at.y) * dy;
      const aside = Math.abs((item.x - at.x) * dy) + Math.abs((item.y - at.y) * dx);
      if (along <= 0.01) return;
      const distance = along + aside * 4;
      if (distance < least) [best, least] = [index, distance];
    });
    if (best < 0 || best >= this.items.length) return;
    this.choose(best);
    this.announcer.textContent = visible(this.describe(best));
  }
}

// A legend: how many there are of each kind; a press shows where they are.
export function legendOf(kinds, items, picture) {
  let pressed = null;
  const buttons = kinds
    .map((kind) => ({ kind, count: items.filter((item) => item.kind === kind.id).length }))
    .filter(({ count }) => count > 0)
    .map(({ kind, count }) =>
      element(
        'button',
        {
          type: 'button',
          class: 'key',
          'aria-pressed': 'false',
          title: 'Show where they are',
          onclick: (event) => press(event.currentTarget, kind.id),
        },
        element('span', { class: `swatch ${kind.id}`, 'aria-hidden': 'true' }),
        `${kind.label} `,
        element('span', { class: 'count' }, count.toLocaleString('en')),
      ),
    );
  function press(target, id) {
    pressed = pressed === id ? null : id;
    for (const each of buttons)
      each.setAttribute('aria-pressed', String(each === target && pressed !== null));
    picture.mark(
      pressed === null
        ? null
        : items.flatMap((item, index) => (item.kind === pressed ? [index] : [])),
    );
  }
  return element('div', { class: 'legend', role: 'group', 'aria-label': 'Legend' }, buttons);
}
