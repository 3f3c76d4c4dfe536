// What is wrong with the file: each finding with its place, what to do about it, and the edit.

import { button, counted, element, name, visible } from './dom.js';
import { linesOf, marked } from './source.js';

const MOST_CARDS = 300; // that are shown before they are asked for

function placeText(finding) {
  if (!finding.line) return null;
  return finding.column ? `line ${finding.line}, column ${finding.column}` : `line ${finding.line}`;
}

function excerpt(lines, finding) {
  const text = lines[finding.line - 1];
  if (text === undefined) return null;
  const to =
    finding.end_line && finding.end_line !== finding.line
      ? Infinity
      : (finding.end_column ?? 0) - 1;
  const mark = {
    severity: finding.severity,
    from: finding.column ? finding.column - 1 : null,
    to: to > 0 ? to : null,
  };
  return element(
    'pre',
    { class: 'excerpt', tabindex: 0, 'aria-label': 'Source line' },
    element('span', { class: 'gutter', 'aria-hidden': 'true' }, String(finding.line)),
    element('code', {}, marked(text, [mark])),
  );
}

// The line before and after the edits; edits from the end, so that their columns hold.
function mended(lines, edits) {
  const number = edits[0]?.from.line;
  if (!number || edits.some((edit) => edit.from.line !== number || edit.to.line !== number))
    return null;
  const old = lines[number - 1] ?? '';
  const text = [...edits]
    .sort((a, b) => b.from.column - a.from.column)
    .reduce(
      (line, { from, to, text: put }) =>
        line.slice(0, from.column - 1) + put + line.slice(to.column - 1),
      old,
    );
  return { old, text };
}

function fixOf(lines, fix) {
  const change = mended(lines, fix.edits ?? []);
  return element(
    'div',
    { class: 'fix' },
    element(
      'p',
      {},
      element('strong', {}, fix.sure ? 'Fix: ' : 'Perhaps: '),
      visible(fix.description ?? ''),
    ),
    change
      ? element(
          'pre',
          { class: 'change', tabindex: 0, 'aria-label': 'The line before and after' },
          element('del', {}, visible(change.old)),
          '\n',
          element('ins', {}, change.text.split('\n').map(visible).join('\n')),
        )
      : null,
  );
}

export class FindingsView {
  constructor(device, selection, goTo) {
    this.device = device;
    this.goTo = goTo;
    this.lines = linesOf(device.source);
    this.cards = new Map();
    this.hidden = new Set();
    this.shown = MOST_CARDS;
    this.list = element('ol', { class: 'findings' });
    this.rest = element('p', { class: 'note' });
    const { errors, warnings } = device;
    this.node = element(
      'div',
      { class: 'view' },
      element(
        'div',
        { class: 'view-head' },
        element('h2', {}, 'Findings'),
        element(
          'p',
          { class: 'note' },
          `${counted(errors, 'error')}, ${counted(warnings, 'warning')}`,
        ),
        element('div', { class: 'tools' }, this.filters()),
      ),
      device.unchecked ? element('p', { class: 'notice' }, visible(device.unchecked)) : null,
      device.findings.length ? null : this.clean(),
      this.list,
      this.rest,
    );
    this.draw();
    selection.listen((current) => this.show(current));
    this.show(selection.current);
  }

  clean() {
    const text =
      this.device.state === 'read'
        ? 'Nothing was found: the file passes its checks.'
        : 'The file could not be read.';
    return element('p', { class: 'clean' }, text);
  }

  filters() {
    const kinds = ['error', 'warning', 'note'].filter((kind) =>
      this.device.findings.some((finding) => finding.severity === kind),
    );
    if (kinds.length < 2) return null;
    return kinds.map((kind) =>
      button(
        `${kind}s`,
        (event) => {
          if (!this.hidden.delete(kind)) this.hidden.add(kind);
          event.currentTarget.setAttribute('aria-pressed', String(!this.hidden.has(kind)));
          this.draw();
        },
        { 'aria-pressed': 'true', class: `filter ${kind}` },
      ),
    );
  }

  draw(all = false) {
    const { findings } = this.device;
    this.followers = new Map();
    findings.forEach((finding, index) => {
      if (findings[finding.because])
        this.followers.set(finding.because, [
          ...(this.followers.get(finding.because) ?? []),
          index,
        ]);
    });
    const own = findings.flatMap((finding, index) =>
      findings[finding.because] || this.hidden.has(finding.severity) ? [] : [index],
    );
    const most = all ? own.length : this.shown;
    this.cards.clear();
    this.list.replaceChildren(...own.slice(0, most).map((index) => this.card(index)));
    this.rest.replaceChildren(
      ...(own.length > most
        ? [button(`Show ${counted(own.length - most, 'more finding')}`, () => this.showAll())]
        : []),
    );
  }

  showAll() {
    this.shown = Infinity;
    this.draw();
  }

  card(index) {
    const finding = this.device.findings[index];
    const followers = this.followers.get(index) ?? [];
    const card = element(
      'li',
      { class: `finding ${finding.severity}`, tabindex: -1 },
      element(
        'p',
        { class: 'what' },
        element('span', { class: `severity ${finding.severity}` }, finding.severity),
        element('span', { class: 'message' }, visible(finding.text.trim())),
      ),
      element(
        'p',
        { class: 'where' },
        this.place(finding),
        finding.rule ? element('code', { class: 'rule' }, finding.rule) : null,
        finding.pin_map ? element('span', {}, 'pin map ', name(finding.pin_map)) : null,
        finding.count > 1 ? element('span', {}, counted(finding.count, 'time')) : null,
      ),
      finding.line && finding.file === this.device.file ? excerpt(this.lines, finding) : null,
      finding.hint ? element('p', { class: 'hint' }, visible(finding.hint)) : null,
      finding.fix ? fixOf(this.lines, finding.fix) : null,
      (finding.related ?? []).map((related) => this.related(related)),
      followers.length
        ? element(
            'details',
            { class: 'followers' },
            element(
              'summary',
              {},
              `${followers.length} more follow${followers.length === 1 ? 's' : ''} from this`,
            ),
            element(
              'ol',
              { class: 'findings' },
              followers.map((each) => this.card(each)),
            ),
          )
        : null,
    );
    this.cards.set(index, card);
    return card;
  }

  place(finding) {
    const text = placeText(finding);
    if (!text) return null;
    if (finding.file === this.device.file)
      return button(text, () => this.goTo(finding.line), { class: 'link' });
    return element('span', {}, name(finding.file ?? ''), `, ${text}`);
  }

  related(related) {
    const text = related.text ?? related.message ?? '';
    return element(
      'p',
      { class: 'where' },
      visible(text),
      ' ',
      this.place({ file: this.device.file, ...related }),
    );
  }

  show(current) {
    for (const card of this.cards.values()) card.removeAttribute('aria-current');
    if (current?.kind !== 'finding') return;
    if (!this.cards.has(current.index)) this.showAll();
    const card = this.cards.get(current.index);
    if (!card) return;
    for (let above = card.parentElement; above; above = above.parentElement)
      if (above.localName === 'details') above.open = true;
    card.setAttribute('aria-current', 'true');
    requestAnimationFrame(() => card.scrollIntoView({ block: 'center' }));
  }
}
