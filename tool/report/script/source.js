// The text of the file with its line numbers, and what was found in it.

import { element, visible } from './dom.js';
import { Rows } from './rows.js';

const LINE_HEIGHT = 20;
const LONGEST = 2000; // characters of a line that are shown at first

// As the lines of findings are counted: a lone carriage return ends a line too.
export function linesOf(text) {
  const lines = text.split(/\r\n|\n|\r/);
  if (lines.at(-1) === '') lines.pop();
  return lines;
}

// Tabs are as wide as in any editor, all else of no shape is spelled out.
function sourceText(text) {
  return text.split('\t').map(visible).join('\t');
}

// The parts of a line that findings point at. A mark without a column is on the line as a whole.
export function marked(text, marks) {
  const cut = text.length > LONGEST ? text.slice(0, LONGEST) : text;
  const parts = [];
  let at = 0;
  const places = marks
    .filter((mark) => mark.from !== null && mark.from < cut.length)
    .sort((a, b) => a.from - b.from);
  for (const { from, to, severity } of places) {
    if (from < at) continue;
    const end = Math.min(cut.length, Math.max(to ?? from + 1, from + 1));
    parts.push(sourceText(cut.slice(at, from)));
    parts.push(element('mark', { class: severity }, sourceText(cut.slice(from, end))));
    at = end;
  }
  parts.push(sourceText(cut.slice(at)));
  if (text.length > LONGEST)
    parts.push(
      element(
        'span',
        { class: 'more' },
        `\u2026 ${(text.length - LONGEST).toLocaleString('en')} more characters`,
      ),
    );
  return parts;
}

// By line, the places of the findings of this file.
export function marksOf(device) {
  const marks = new Map();
  device.findings.forEach((finding, index) => {
    if (!finding.line || finding.file !== device.file) return;
    const oneLine = !finding.end_line || finding.end_line === finding.line;
    const mark = {
      index,
      severity: finding.severity,
      from: finding.column ? finding.column - 1 : null,
      to: oneLine && finding.end_column ? finding.end_column - 1 : Infinity,
    };
    if (!finding.end_column && oneLine) mark.to = null;
    marks.set(finding.line, [...(marks.get(finding.line) ?? []), mark]);
  });
  return marks;
}

const SEVERITIES = ['error', 'warning', 'note'];

function worst(marks) {
  return SEVERITIES.find((severity) => marks.some((mark) => mark.severity === severity)) ?? 'note';
}

export class SourceView {
  constructor(device, selection) {
    this.device = device;
    this.lines = linesOf(device.source);
    this.marks = marksOf(device);
    this.rows = new Rows({
      label: 'Source text',
      height: LINE_HEIGHT,
      headless: true,
      columns: [
        {
          label: 'Line',
          class: 'gutter',
          cell: (line) => this.gutter(line),
        },
        {
          label: 'Text',
          class: 'text',
          cell: (line) => marked(line.text, this.marks.get(line.number) ?? []),
        },
      ],
      rowClass: (line) =>
        this.marks.has(line.number) ? `flagged ${worst(this.marks.get(line.number))}` : null,
    });
    this.rows.set(this.lines.map((text, i) => ({ text, number: i + 1 })));
    this.rows.node.classList.add('source');
    this.selection = selection;
    this.node = element(
      'div',
      { class: 'view' },
      element(
        'div',
        { class: 'view-head' },
        element('h2', {}, 'Source'),
        element('p', { class: 'note' }, visible(device.file)),
      ),
      this.lines.length
        ? this.rows.node
        : element('p', { class: 'note' }, 'The text of the file is not available.'),
    );
  }

  gutter(line) {
    const marks = this.marks.get(line.number);
    if (!marks) return String(line.number);
    return element(
      'button',
      {
        type: 'button',
        class: 'flag',
        'aria-label': `Line ${line.number}: ${marks.length > 1 ? `${marks.length} findings` : marks[0].severity}`,
        onclick: () => this.selection.finding(marks[0].index),
      },
      String(line.number),
    );
  }

  goTo(number) {
    this.rows.select(number - 1);
  }
}
