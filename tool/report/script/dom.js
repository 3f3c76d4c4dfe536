// Elements, and texts of a description as they may be shown.

const SVG = 'http://www.w3.org/2000/svg';

function fill(node, attributes, children) {
  for (const [key, value] of Object.entries(attributes ?? {})) {
    if (key.startsWith('on')) node.addEventListener(key.slice(2), value);
    else if (value === true) node.setAttribute(key, '');
    else if (value !== false && value !== null && value !== undefined)
      node.setAttribute(key, String(value));
  }
  node.append(...children.flat(Infinity).filter((child) => child !== null && child !== undefined));
  return node;
}

export function element(tag, attributes, ...children) {
  return fill(document.createElement(tag), attributes, children);
}

export function drawing(tag, attributes, ...children) {
  return fill(document.createElementNS(SVG, tag), attributes, children);
}

// What has no shape of its own, or turns the order of the text around it.
const HIDDEN =
  // eslint-disable-next-line no-control-regex
  /[\u0000-\u001f\u007f-\u009f\u00ad\u061c\u180e\u200b-\u200f\u2028-\u202e\u2060-\u206f\ufeff\ufff9-\ufffb]/g;

function spelled(character) {
  const code = character.charCodeAt(0);
  if (code < 0x20) return String.fromCharCode(0x2400 + code);
  if (code === 0x7f) return '\u2421';
  return `\u27e8U+${code.toString(16).toUpperCase().padStart(4, '0')}\u27e9`;
}

export function visible(text) {
  return String(text).replace(HIDDEN, spelled);
}

export function shortened(text, most) {
  return text.length > most ? `${text.slice(0, most - 1)}\u2026` : text;
}

// Prose of the description, with its line ends.
export function prose(text) {
  const lines = String(text).split(/\r\n|\n|\r/);
  return element('span', { class: 'prose' }, shortened(lines.map(visible).join('\n'), 4000));
}

const LONGEST_NAME = 80;

// A word of the description.
export function name(text, attributes) {
  const whole = visible(text);
  const shown = shortened(whole, LONGEST_NAME);
  return element(
    'span',
    {
      class: 'name',
      title: shown === whole ? null : shortened(whole, 1000),
      ...attributes,
    },
    shown,
  );
}

export function button(label, action, attributes) {
  return element('button', { type: 'button', onclick: action, ...attributes }, label);
}

export function counted(count, noun) {
  return `${count.toLocaleString('en')} ${noun}${count === 1 ? '' : 's'}`;
}
