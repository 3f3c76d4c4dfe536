// Makes the page of the data that stands in it.

import { AioView, treeView } from './trees.js';
import { BoundaryView } from './boundary.js';
import { counted, element, name, visible } from './dom.js';
import { diffPage } from './diff.js';
import { FindingsView } from './findings.js';
import { Tabs, themeSwitch } from './frame.js';
import { indexPage, verdictOf } from './devices.js';
import { Inspector } from './inspector.js';
import { Device } from './model.js';
import { PackageView } from './package.js';
import { Rows } from './rows.js';
import { Search } from './search.js';
import { Selection } from './selection.js';
import { SourceView } from './source.js';
import { TapView, makerOf } from './tap.js';

function summary(device) {
  const { model } = device;
  const facts = [];
  const idcode = model.idcodes?.[0];
  if (idcode) facts.push(['IDCODE', idcode.hex], ['Maker', makerOf(idcode)]);
  const standard = model.standards?.governing;
  if (standard)
    facts.push([
      'Standard',
      standard
        .replace('STD_', '')
        .replaceAll('_', '.')
        .replace(/\.(\d{4})$/, ' ($1)'),
    ]);
  if (model.pin_map) facts.push(['Pin map', name(model.pin_map)]);
  if (model.pins) facts.push(['Pins', device.pins.length.toLocaleString('en')]);
  if (model.boundary?.length)
    facts.push(['Boundary register', counted(model.boundary.length, 'cell')]);
  return element(
    'dl',
    { class: 'summary' },
    facts
      .filter(([, value]) => value !== null)
      .map(([label, value]) =>
        element('div', {}, element('dt', {}, label), element('dd', {}, value)),
      ),
  );
}

function viewsOf(device, selection, goTo) {
  const { model } = device;
  const views = [];
  const add = (id, label, make, badge) => views.push({ id, label, make, badge });
  if (model.pins) {
    add('package', 'Package', () => new PackageView(device, selection));
    add('boundary', 'Boundary register', () => new BoundaryView(device, selection));
    add('tap', 'TAP and instructions', () => new TapView(device, selection));
  }
  if (model.prg) add('prg', 'Data file', () => ({ node: treeView('Data file', model.prg) }));
  if (model.isc)
    add('isc', 'Configuration', () => ({ node: treeView('In-system configuration', model.isc) }));
  if (model.aio) add('aio', 'AC pins', () => new AioView(device, selection));
  if (model.analog)
    add('analog', 'Analog pins', () => ({ node: treeView('Analog pins', model.analog) }));
  const count = device.errors + device.warnings;
  add(
    'findings',
    'Findings',
    () => new FindingsView(device, selection, goTo),
    count ? { text: String(count), kind: device.errors ? 'error' : 'warning' } : null,
  );
  add('source', 'Source', () => new SourceView(device, selection));
  return views;
}

function devicePage(data) {
  const device = new Device(data.device);
  const selection = new Selection();
  const goTo = (line) => {
    tabs.open('source');
    tabs.view('source').goTo(line);
  };
  const tabs = new Tabs(viewsOf(device, selection, goTo));
  const search = new Search(device, selection, (id) => tabs.open(id));
  const inspector = new Inspector(device, selection);
  document.body.append(
    element(
      'header',
      { class: 'head' },
      element(
        'div',
        { class: 'title' },
        element('h1', {}, name(device.name)),
        verdictOf(device),
        element('p', { class: 'file' }, visible(device.file)),
      ),
      element(
        'div',
        { class: 'head-tools' },
        device.pins.length ? search.node : null,
        themeSwitch(),
      ),
      summary(device),
      tabs.bar,
    ),
    element(
      'main',
      { class: device.model.pins ? 'with-side' : '' },
      tabs.panel,
      device.model.pins ? inspector.node : null,
    ),
  );
  const asked = location.hash.slice(1);
  tabs.open(tabs.has(asked) ? asked : tabs.views[0].id);
  selection.listen((current) => {
    if (current?.kind === 'finding') tabs.open('findings');
  });
  addEventListener('keydown', (event) => {
    if (
      event.key !== '/' ||
      event.ctrlKey ||
      event.metaKey ||
      /^(input|select|textarea)$/.test(event.target.localName)
    )
      return;
    event.preventDefault();
    search.input.focus();
    search.input.select();
  });
}

// On paper there is no scrolling.
addEventListener('beforeprint', () => Rows.drawAll(true));
addEventListener('afterprint', () => Rows.drawAll(false));

const data = JSON.parse(document.getElementById('data').textContent);
({ device: devicePage, index: indexPage, diff: diffPage })[data.kind](data);
