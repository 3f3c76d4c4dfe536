// Every capability that the server announces, on a description of ours.
'use strict';
const test = require('node:test');
const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const url = require('node:url');
const { spawnSync } = require('node:child_process');
const { Client, endServers, TOOL, SOURCES, example, read } = require('./client');

test.after(endServers);

const DEMO = example('demo.bsd');

async function withDemo(options, body) {
  const client = await Client.start(options);
  const uri = client.open(DEMO, read(DEMO));
  try {
    await body(client, uri);
  } finally {
    assert.strictEqual(await client.stop(), 0);
  }
}

// A package file with one cell.
const packageText = (name) =>
  `package MYCELLS is\nuse STD_1149_1_2001.all;\nconstant ${name} : CELL_INFO;\nend MYCELLS;\n` +
  `package body MYCELLS is\nuse STD_1149_1_2001.all;\nconstant ${name} : CELL_INFO :=\n` +
  '((CLOCK, EXTEST, PI), (CLOCK, SAMPLE, PI), (CLOCK, INTEST, PI));\nend MYCELLS;\n';

const found = (list) => list.map((each) => each.code);

test('a mistake shows where it is and goes when it is mended', () =>
  withDemo({}, async (client, uri) => {
    assert.deepStrictEqual(await client.findings(uri), []);
    client.replace(uri, 'BC_4, CLK', 'BC_9X, CLK');
    const [finding] = await client.findings(uri);
    assert.match(finding.message, /BC_9X/);
    assert.strictEqual(finding.severity, 1);
    assert.strictEqual(finding.source, 'tarnlet');
    const line = client.text(uri).split('\n')[finding.range.start.line];
    assert.match(line, /BC_9X/);
    assert.ok(finding.codeDescription.href.endsWith(`rules.md#${finding.code}`));
    assert.ok(fs.existsSync(new URL(finding.codeDescription.href)));
    client.replace(uri, 'BC_9X, CLK', 'BC_4, CLK');
    assert.deepStrictEqual(await client.findings(uri), []);
  }));

// The actions for a finding, by their titles.
async function actionsFor(client, uri, finding, only) {
  const actions = await client.request('textDocument/codeAction', {
    textDocument: { uri },
    range: finding.range,
    context: { diagnostics: [finding], only },
  });
  return Object.fromEntries(actions.map((each) => [each.title, each]));
}

test('a rule is turned off by the comment that the action puts', () =>
  withDemo({}, async (client, uri) => {
    client.replace(uri, 'BC_4, CLK', 'BC_9X, CLK');
    const [finding] = await client.findings(uri);
    const actions = await actionsFor(client, uri, finding, ['quickfix']);
    const off = actions[`Turn ${finding.code} off here`];
    assert.deepStrictEqual(found(off.diagnostics), [finding.code]);
    client.apply(off.edit);
    const line = client.text(uri).split('\n')[finding.range.start.line];
    assert.ok(line.endsWith(`-- tarnlet: off ${finding.code}`), line);
    let sent = 0;
    client.connection.onNotification('textDocument/publishDiagnostics', (params) => {
      client.published.set(uri, params);
      sent += params.diagnostics.length;
    });
    client.edit(uri, 0, 0, '\n');
    assert.deepStrictEqual(await client.findings(uri), []);
    assert.strictEqual(sent, 0, 'nor is it shown for a moment');
    client.replace(uri, 'BC_9X, CLK', 'BC_4, CLK');
    assert.deepStrictEqual(found(await client.findings(uri)), ['suppression-unused']);
  }));

// Each with what the server offers first: whether it is certain, and the text that it puts.
for (const [mistake, before, after, fix, sure] of [
  ['a missing comma', '"CLK     : 1, "', '"CLK     : 1 "', "insert ','", true],
  [
    'a keyword with a slip',
    'attribute BOUNDARY_LENGTH',
    'atribute BOUNDARY_LENGTH',
    /attribute/,
    true,
  ],
  ['a cell that is near another', 'BC_4, CLK', 'BC_44, CLK', "replace 'BC_44' with 'BC_4'", false],
])
  test(`${mistake} is mended by its quick fix`, () =>
    withDemo({}, async (client, uri) => {
      client.replace(uri, before, after);
      const list = await client.findings(uri);
      assert.strictEqual(list.length, 1);
      const action = Object.values(await actionsFor(client, uri, list[0], ['quickfix']))[0];
      if (fix instanceof RegExp) assert.match(action.title, fix);
      else assert.strictEqual(action.title, fix);
      assert.strictEqual(action.isPreferred, sure);
      const all = await actionsFor(client, uri, list[0], ['source.fixAll']);
      assert.strictEqual(Object.keys(all).length, sure ? 1 : 0);
      client.apply(sure ? all['Fix all that is certain'].edit : action.edit);
      assert.deepStrictEqual(await client.findings(uri), []);
      assert.strictEqual(client.text(uri), read(DEMO));
    }));

test('all that is certain is mended at once, and what follows is told with its cause', () =>
  withDemo({}, async (client, uri) => {
    client.replace(uri, '"CLK     : 1, "', '"CLK     : 1 "');
    client.replace(uri, 'attribute BOUNDARY_LENGTH', 'atribute BOUNDARY_LENGTH');
    client.replace(uri, 'attribute TAP_SCAN_IN ', 'attribute TAP_SCAM_INN ');
    const list = await client.findings(uri);
    assert.strictEqual(list.length, 3);
    const { edit } = (await actionsFor(client, uri, list[0], ['source']))[
      'Fix all that is certain'
    ];
    assert.ok(edit.documentChanges[0].edits.length >= 2);
    client.apply(edit);
    assert.ok((await client.findings(uri)).length < list.length);
  }));

test('hover says what a word stands for, with the numbers', () =>
  withDemo({}, async (client, uri) => {
    await client.findings(uri);
    const hover = async (before, more = 1) => {
      const answer = await client.request('textDocument/hover', client.behind(uri, before, more));
      return answer && answer.contents.value;
    };
    const port = await hover('port (\n        ');
    assert.match(port, /\*\*CLK\*\* port, `in bit`/);
    assert.match(port, /Pins in TQFP48: 1\b/);
    assert.match(port, /cell 0: clock of CLK; safe value X/);
    assert.strictEqual(
      await hover('" 11', -1),
      'cell **11**: bidir of DATA(7), enabled when cell 10 is 1, else Z; safe value X',
    );
    assert.strictEqual(
      await hover('DATA(7),  BIDIR,        X,   10', -1),
      'cell **10**: controlr; safe value 0',
    );
    assert.match(
      await hover('TQFP48 : PIN_MAP_STRING :=\n        "CLK     : ', 0),
      /pin \*\*1\*\* of port CLK/,
    );
    assert.match(
      await hover('"EXTEST', -2),
      /\*\*EXTEST\*\* instruction[^]*Opcode[^]*BOUNDARY, 26 bits/,
    );
    assert.match(await hover('attribute BOUNDARY_LEN'), /Number of cells/);
    assert.match(
      await hover('IDCODE_REGISTER of tarn_demo : entity is\n        "'),
      /32 bits[^]*manufacturer/,
    );
  }));

test('definition, references, highlights and rename of names of all kinds', () =>
  withDemo({}, async (client, uri) => {
    const go = async (before, more = 1) => {
      const answer = await client.request(
        'textDocument/definition',
        client.behind(uri, before, more),
      );
      return client
        .text(uri)
        .slice(client.offset(uri, answer.range.start), client.offset(uri, answer.range.end));
    };
    assert.strictEqual(await go('BIDIR,        X,   10', -1), '10');
    assert.strictEqual(await go('"DATA', -1), 'DATA');
    assert.strictEqual(await go('TAP_SCAN_IN    of TDI', -1), 'TDI');

    for (const [before, name, count] of [
      ['        DATA', 'LANES', 11],
      ['constant TQFP', 'TQFP48A', 2],
      ['"FACTORY', 'FABRIC', 2],
    ]) {
      const where = client.behind(uri, before, -1);
      const uses = await client.request('textDocument/references', {
        ...where,
        context: { includeDeclaration: true },
      });
      assert.ok(uses.length >= count, `${before}: ${uses.length} uses`);
      const marks = await client.request('textDocument/documentHighlight', where);
      assert.strictEqual(marks.length, uses.length);
      const prepared = await client.request('textDocument/prepareRename', where);
      assert.ok(before.includes(prepared.placeholder.slice(0, 4)));
      client.apply(await client.request('textDocument/rename', { ...where, newName: name }));
      assert.deepStrictEqual(await client.findings(uri), [], name);
      const [statements] = client.text(uri).replace(/--.*/g, '').split('DESIGN_WARNING');
      assert.ok(!new RegExp(`\\b${prepared.placeholder}\\b`).test(statements), name);
    }
  }));

test('names are refused where they would break the text', () =>
  withDemo({}, async (client, uri) => {
    const rename = (before, newName) =>
      client.request('textDocument/rename', { ...client.behind(uri, before, -1), newName });
    await assert.rejects(rename('        DATA', 'Q'), /is already a name in this text/);
    await assert.rejects(rename('        DATA', '1A'), /is no name/);
    await assert.rejects(rename('"BYPASS', 'BY'), /name of the standard/);
    await assert.rejects(rename('attribute BOUNDARY_LEN', 'X'), /cannot be renamed/);
    client.replace(uri, 'port (', 'port ((');
    await assert.rejects(
      rename('        DATA', 'BUS'),
      /Fix the syntax errors before renaming: line \d+/,
    );
    const options = { tabSize: 4, insertSpaces: true };
    await assert.rejects(
      client.request('textDocument/formatting', { textDocument: { uri }, options }),
      /Fix the syntax errors before formatting: line \d+/,
    );
  }));

test('names lead into package files, also those that are not saved', async () => {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'lsp-'));
  const cells = path.join(folder, 'MYCELLS.all');
  const device = path.join(folder, 'device.bsd');
  fs.writeFileSync(cells, packageText('MY_1'));
  const text = read(DEMO)
    .replace('use STD_1149_1_2001.all;', 'use STD_1149_1_2001.all;\n    use MYCELLS.all;')
    .replace('BC_4, CLK', 'MY_1, CLK');
  const client = await Client.start();
  const uri = client.open(device, text);
  assert.deepStrictEqual(found(await client.findings(uri)), []);
  const where = client.behind(uri, 'MY_1, CLK', -5);
  const definition = await client.request('textDocument/definition', where);
  assert.ok(definition.uri.endsWith('MYCELLS.all'));
  assert.strictEqual(definition.range.start.line, 2);
  const use = await client.request(
    'textDocument/definition',
    client.behind(uri, 'use MYCELLS', -1),
  );
  assert.ok(use.uri.endsWith('MYCELLS.all'));

  // An open package file counts with its unsaved text.
  const open = client.open(cells, packageText('MY_2'));
  client.documents.get(uri).version++;
  client.notify('textDocument/didChange', {
    textDocument: { uri, version: client.documents.get(uri).version },
    contentChanges: [{ text: client.text(uri) }],
  });
  assert.ok((await client.findings(uri)).some((each) => /MY_1/.test(each.message)));
  client.edit(open, 0, client.text(open).length, packageText('MY_1'));
  assert.deepStrictEqual(found(await client.findings(uri)), []);

  const edit = await client.request('textDocument/rename', { ...where, newName: 'MY_3' });
  client.apply(edit);
  assert.match(client.text(open), /constant MY_3 : CELL_INFO;[^]*constant MY_3 : CELL_INFO :=/);
  assert.deepStrictEqual(found(await client.findings(uri)), []);
  assert.strictEqual(await client.stop(), 0);
  fs.rmSync(folder, { recursive: true });
});

test('outline, folding and ever larger selections', () =>
  withDemo({}, async (client, uri) => {
    const [device] = await client.request('textDocument/documentSymbol', { textDocument: { uri } });
    assert.strictEqual(device.name, 'tarn_demo');
    const names = device.children.map((each) => each.name);
    for (const name of ['ports', 'TQFP48', 'INSTRUCTION_OPCODE', 'BOUNDARY_REGISTER'])
      assert.ok(names.includes(name), name);
    const child = (name) => device.children.find((each) => each.name === name).children;
    assert.ok(child('ports').some((each) => each.name === 'RXN'));
    assert.ok(child('INSTRUCTION_OPCODE').some((each) => each.name === 'EXTEST'));
    assert.match(child('BOUNDARY_REGISTER')[0].name, /^cells \d+ to \d+$/);

    const folds = await client.request('textDocument/foldingRange', { textDocument: { uri } });
    const lines = client.text(uri).split('\n');
    assert.ok(folds.some((each) => /BOUNDARY_REGISTER/.test(lines[each.startLine])));
    assert.ok(folds.some((each) => each.kind === 'comment' && each.startLine === 0));

    const where = client.behind(uri, 'BC_7, DAT');
    const [selection] = await client.request('textDocument/selectionRange', {
      textDocument: { uri },
      positions: [where.position],
    });
    const texts = [];
    for (let each = selection; each; each = each.parent)
      texts.push(
        client
          .text(uri)
          .slice(client.offset(uri, each.range.start), client.offset(uri, each.range.end)),
      );
    assert.strictEqual(texts[0], 'DATA');
    assert.match(texts[1], /^11 +\( +BC_7, DATA\(7\).*\)$/);
    assert.match(texts[2], /^attribute BOUNDARY_REGISTER[^]*;$/);
    assert.strictEqual(texts[texts.length - 1], client.text(uri));
  }));

test('completion at ten places', () =>
  withDemo({}, async (client, uri) => {
    await client.findings(uri);
    // Puts a text in place of another, asks at its '|', and undoes.
    const complete = async (before, after) => {
      const text = client.text(uri);
      client.replace(uri, before, after.replace('|', ''));
      const at = client.text(uri).indexOf(after.replace('|', '')) + after.indexOf('|');
      const { items } = await client.request('textDocument/completion', {
        textDocument: { uri },
        position: client.at(uri, at),
      });
      client.edit(uri, 0, client.text(uri).length, text);
      return items.sort((a, b) => (a.sortText < b.sortText ? -1 : 1)).map((each) => each.label);
    };
    const has = async (before, after, ...labels) => {
      const list = await complete(before, after);
      for (const label of labels) assert.ok(list.includes(label), `${after}: ${label} in ${list}`);
      return list;
    };
    await has('attribute PIN_MAP of', 'attribute PIN_|\nattribute PIN_MAP_X of', 'PIN_MAP');
    await has('attribute PIN_MAP of', '|\nattribute X of', 'attribute', 'PIN_MAP', 'constant');
    const mapped = await has('"CLK     : 1, "', '"|     : 1, "', 'CLK', 'OE_N');
    assert.strictEqual(mapped[0], 'CLK', 'a port without pins comes first');
    await has('BC_4, CLK', '|, CLK', 'BC_1', 'BC_7');
    const celled = await has('BC_4, CLK', 'BC_4, |', 'CLK', 'DATA');
    assert.ok(celled.indexOf('CLK') < celled.indexOf('DATA'), 'a port without a cell comes first');
    await has('DATA(7),  BIDIR', 'DATA(7),  b|', 'bidir', 'observe_only');
    await has('DATA(7),  BIDIR,        X,   10', 'DATA(7),  BIDIR,        X,   |', '10');
    await has('X,   10,    0,     Z', 'X,   10,    0,     |', 'Z', 'PULL1');
    await has(
      'INSTRUCTION_PRIVATE of tarn_demo : entity is "FACTORY',
      'INSTRUCTION_PRIVATE of tarn_demo : entity is "|',
      'FACTORY',
      'EXTEST',
    );
    await has('string := "TQFP48', 'string := "|', 'TQFP48');
    await has('use STD_1149_1_2001', 'use |', 'STD_1149_1_2001.all', 'STD_1532_2002.all');
    await has('CLK      : in ', 'CLK      : |', 'in', 'inout', 'linkage');
  }));

test('semantic tokens reach into the tables, and a range gives its part', () =>
  withDemo({}, async (client, uri) => {
    const legend = client.result.capabilities.semanticTokensProvider.legend;
    const decode = ({ data }) => {
      const tokens = [];
      let line = 0;
      let character = 0;
      for (let i = 0; i < data.length; i += 5) {
        character = data[i] ? data[i + 1] : character + data[i + 1];
        line += data[i];
        const text = client
          .text(uri)
          .split('\n')
          [line].slice(character, character + data[i + 2]);
        tokens.push({ line, text, type: legend.tokenTypes[data[i + 3]], declaration: data[i + 4] });
      }
      return tokens;
    };
    const all = decode(
      await client.request('textDocument/semanticTokens/full', { textDocument: { uri } }),
    );
    const row = client
      .text(uri)
      .split('\n')
      .findIndex((each) => /BC_7, DATA\(7\)/.test(each));
    assert.deepStrictEqual(
      all
        .filter((each) => each.line === row)
        .map((each) => `${each.text}:${each.type}`)
        .slice(0, 6),
      ['11:number', 'BC_7:type', 'DATA:variable', '7:number', 'BIDIR:enumMember', 'X:enumMember'],
    );
    const part = decode(
      await client.request('textDocument/semanticTokens/range', {
        textDocument: { uri },
        range: { start: { line: row, character: 0 }, end: { line: row + 1, character: 0 } },
      }),
    );
    assert.deepStrictEqual(
      part,
      all.filter((each) => each.line === row),
    );
  }));

test('formatting lines tables up once, keeps what is said, and a range keeps to itself', async () => {
  const ragged = read(DEMO)
    .replace(/ +: (?=\d+, " &)/g, ':')
    .replace(/\( +BC_4, CLK, +CLOCK/, '( BC_4 ,CLK,CLOCK')
    .replace(/\n/g, '\r\n');
  const client = await Client.start();
  const uri = client.open(DEMO, ragged);
  const before = await client.findings(uri);
  const options = { tabSize: 4, insertSpaces: true };
  const format = () =>
    client.request('textDocument/formatting', { textDocument: { uri }, options });

  const line = ragged.split('\r\n').findIndex((each) => /CLK:1/.test(each));
  const range = { start: { line, character: 0 }, end: { line: line + 1, character: 0 } };
  const some = await client.request('textDocument/rangeFormatting', {
    textDocument: { uri },
    range,
    options,
  });
  assert.deepStrictEqual(
    some.map((each) => each.range.start.line),
    [line],
  );

  const edits = await format();
  assert.ok(edits.length > 2);
  client.applyEdits(uri, edits);
  assert.deepStrictEqual(await format(), []);
  assert.deepStrictEqual(await client.findings(uri), before);
  const text = client.text(uri);
  assert.ok(!/[^\r]\n/.test(text), 'line ends are kept');
  assert.match(text, /"CLK +: 1, " &/);
  const columns = text.split('\r\n').filter((each) => /^ *"\w+ *: \d+, " &$/.test(each));
  assert.strictEqual(new Set(columns.map((each) => each.indexOf(':'))).size, 1);
  const words = (all) => all.replace(/[\s"&]/g, '');
  assert.strictEqual(words(text), words(ragged));
  assert.strictEqual(await client.stop(), 0);
});

test('positions count UTF-16 or UTF-8, as the client asks', async () => {
  for (const [encodings, behindNote] of [
    [['utf-16'], 12],
    [['utf-8', 'utf-16'], 17],
  ]) {
    const client = await Client.start({ encodings });
    assert.strictEqual(client.result.capabilities.positionEncoding, encodings[0]);
    const text = 'entity D is -- note\n-- \u00e4\u{1F600}\u20ac text';
    const uri = client.open('/tmp/positions.bsd', text);
    const { data } = await client.request('textDocument/semanticTokens/full', {
      textDocument: { uri },
    });
    assert.strictEqual(data[data.length - 3], behindNote);
    client.notify('textDocument/didChange', {
      textDocument: { uri, version: 2 },
      contentChanges: [
        {
          range: {
            start: { line: 1, character: behindNote - 4 },
            end: { line: 1, character: behindNote },
          },
          text: 'WORD',
        },
      ],
    });
    const again = await client.request('textDocument/semanticTokens/full', {
      textDocument: { uri },
    });
    assert.deepStrictEqual(again.data, data);
    assert.strictEqual(await client.stop(), 0);
  }
});

// What `tarnlet check` says about a file, as shown() says what the server has sent.
function foundBy(file) {
  const { stdout } = spawnSync(TOOL, ['check', '--format', 'json', file], {
    encoding: 'utf8',
    maxBuffer: 1 << 26,
  });
  return stdout
    .split('\n')
    .filter((line) => line)
    .flatMap((line) => JSON.parse(line).messages)
    .filter((each) => each.because === null && !each.accepted)
    .map((each) => `${each.line || 1} ${each.severity} ${each.rule} ${each.text.split('\n')[0]}`)
    .sort();
}

function checked(text, file) {
  fs.writeFileSync(file, text, 'utf8');
  return foundBy(file);
}

const shown = (list) =>
  list
    .map((each) => {
      const severity = ['error', 'warning', 'note'][each.severity - 1];
      return `${each.range.start.line + 1} ${severity} ${each.code} ${each.message.split('\n')[0]}`;
    })
    .sort();

test('changes that come together are made one after the other', async () => {
  const client = await Client.start();
  const start = 'entity A is\nend A;\n';
  const change = (line, from, to, text) => ({
    range: { start: { line, character: from }, end: { line, character: to } },
    text,
  });
  for (const [changes, expected] of [
    [[change(1, 4, 5, 'BB'), change(0, 7, 8, 'BB')], 'entity BB is\nend BB;\n'],
    [[change(0, 7, 8, 'BB'), change(0, 7, 9, 'C'), change(1, 4, 5, 'C')], 'entity C is\nend C;\n'],
    [[change(0, 11, 11, ' -- x'), change(0, 16, 16, 'y')], 'entity A is -- xy\nend A;\n'],
    [[change(1, 0, 0, 'D\n'), change(2, 4, 5, 'E')], 'entity A is\nD\nend E;\n'],
    [[change(1, 4, 5, 'B'), { text: 'entity F is\n' }, change(0, 7, 8, 'G')], 'entity G is\n'],
  ]) {
    const uri = client.open('/tmp/changes.bsd', start);
    client.notify('textDocument/didChange', {
      textDocument: { uri, version: 2 },
      contentChanges: changes,
    });
    // What the server takes for the text shows in its words.
    const tokens = await client.request('textDocument/semanticTokens/full', {
      textDocument: { uri },
    });
    const fresh = client.open('/tmp/fresh.bsd', expected);
    assert.deepStrictEqual(
      tokens.data,
      (await client.request('textDocument/semanticTokens/full', { textDocument: { uri: fresh } }))
        .data,
    );
  }
  assert.strictEqual(await client.stop(), 0);
});

test('settings of the client apply, and when they change', async () => {
  const client = await Client.start({ options: { strict: false } });
  const uri = client.open(DEMO, read(DEMO).replace(/\bRXN\b/g, 'RXN_'));
  const errors = (list) => list.filter((each) => each.severity === 1).length;
  const lenient = errors(await client.findings(uri));
  client.notify('workspace/didChangeConfiguration', { settings: { tarnlet: { strict: true } } });
  assert.ok(errors(await client.findings(uri)) > lenient);
  assert.strictEqual(await client.stop(), 0);
});

for (const watches of [true, false])
  test(`settings of the project apply, and when they change; ${
    watches ? 'the client' : 'the server'
  } watches`, async () => {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'lsp-'));
    const settings = path.join(folder, '.tarnlet.toml');
    const file = path.join(folder, 'parts', 'device.bsd');
    const text = read(example('demo_mistakes.bsd'))
      .replace('use STD_1149_1_2001.all;', 'use STD_1149_1_2001.all; use MYCELLS.all;')
      .replace(/\bRDY\b/g, 'RDY_')
      .replace('signal is true;', 'signal is true; -- tarnlet: off port-unknown');
    for (const sub of ['parts', 'cells']) fs.mkdirSync(path.join(folder, sub));
    fs.writeFileSync(path.join(folder, 'cells/MYCELLS.all'), packageText('MY_1'));
    const client = await Client.start({ watches });
    const uri = client.open(file, text);
    const plain = shown(await client.findings(uri));
    assert.deepStrictEqual(plain, checked(text, file));
    assert.strictEqual(client.registered !== undefined, watches);
    const put = async (content, wanted) => {
      if (content) fs.writeFileSync(settings, content);
      else fs.rmSync(settings);
      if (watches)
        client.notify('workspace/didChangeWatchedFiles', {
          changes: [{ uri: url.pathToFileURL(settings).href, type: 2 }],
        });
      await client.until(uri, wanted);
      return shown(await client.findings(uri));
    };
    const has = (rule) => (list) => list.some((each) => each.code === rule);
    const lacks = (rule) => (list) => list.length && !has(rule)(list);
    for (const [content, wanted] of [
      ['package-dirs = ["cells"]', lacks('package-not-found')],
      ['strict = true', has('syntax-error')],
      ['[rules]\nopcode-length = "off"\nidcode-last-bit = "warning"', has('idcode-last-bit')],
      ['exclude = ["parts"]', (list) => list.length === 0],
    ])
      assert.deepStrictEqual(await put(content, wanted), checked(text, file), content);
    const wrong = await put('strickt = true', (list) => /strickt/.test(list[0]?.message));
    assert.match(wrong[0], /toml:1:1: there is no setting 'strickt'; did you mean 'strict'/);
    assert.deepStrictEqual(await put('', (list) => list.length === plain.length), plain);
    assert.strictEqual(await client.stop(), 0);
    fs.rmSync(folder, { recursive: true });
  });

// A request for each capability of the server, at a place of a text.
const DRIVEN = {
  hoverProvider: (at) => ['hover', at],
  definitionProvider: (at) => ['definition', at],
  referencesProvider: (at) => ['references', { ...at, context: { includeDeclaration: true } }],
  documentHighlightProvider: (at) => ['documentHighlight', at],
  renameProvider: (at) => ['prepareRename', at],
  documentSymbolProvider: ({ textDocument }) => ['documentSymbol', { textDocument }],
  foldingRangeProvider: ({ textDocument }) => ['foldingRange', { textDocument }],
  selectionRangeProvider: ({ textDocument, position }) => [
    'selectionRange',
    { textDocument, positions: [position] },
  ],
  completionProvider: (at) => ['completion', at],
  semanticTokensProvider: ({ textDocument }) => ['semanticTokens/full', { textDocument }],
  documentFormattingProvider: ({ textDocument }) => ['formatting', { textDocument, options: {} }],
  documentRangeFormattingProvider: ({ textDocument, position }) => [
    'rangeFormatting',
    { textDocument, range: { start: position, end: position }, options: {} },
  ],
  codeActionProvider: ({ textDocument, position }) => [
    'codeAction',
    { textDocument, range: { start: position, end: position }, context: { diagnostics: [] } },
  ],
};
const REFUSED = -32803; // with a reason for the user

// Asks for everything at ten places. Only what would change the text may be refused.
async function askForEverything(client, uri) {
  const text = client.text(uri);
  for (let i = 0; i < 10; i++) {
    const at = { textDocument: { uri }, position: client.at(uri, (text.length * i) / 10) };
    for (const [capability, ask] of Object.entries(DRIVEN)) {
      const [method, params] = ask(at);
      try {
        await client.request(`textDocument/${method}`, params);
      } catch (error) {
        assert.strictEqual(error.code, REFUSED, `${method}: ${error.message}`);
        assert.match(capability, /rename|Formatting/);
      }
    }
  }
}

// Formats a text twice and renames its first port; what is found stays.
async function changeHarmlessly(client, uri) {
  const places = (list) => list.map((each) => `${each.range.start.line} ${each.code}`);
  const before = places(await client.findings(uri));
  const params = { textDocument: { uri }, options: { tabSize: 4, insertSpaces: true } };
  const format = () => client.request('textDocument/formatting', params);
  try {
    client.applyEdits(uri, await format());
  } catch (error) {
    assert.match(error.message, /Fix the syntax errors before formatting/);
    return false;
  }
  assert.deepStrictEqual(await format(), []);
  assert.deepStrictEqual(places(await client.findings(uri)), before);
  const [device] = await client.request('textDocument/documentSymbol', { textDocument: { uri } });
  const [port] = device.children.find((each) => each.name === 'ports').children;
  const renamed = await client.request('textDocument/rename', {
    textDocument: { uri },
    position: port.selectionRange.start,
    newName: 'A_NAME_OF_ITS_OWN',
  });
  client.apply(renamed);
  assert.deepStrictEqual(places(await client.findings(uri)), before);
  return true;
}

test('all that the server announces is answered, at any place', () =>
  withDemo({}, async (client, uri) => {
    const announced = Object.keys(client.result.capabilities).filter((each) =>
      each.endsWith('Provider'),
    );
    assert.deepStrictEqual(announced.sort(), Object.keys(DRIVEN).sort());
    await askForEverything(client, uri);
    client.replace(uri, 'port (', 'port ((');
    await askForEverything(client, uri);
  }));

const CORPUS = process.env.TARNLET_CORPUS;
const real = CORPUS ? fs.readdirSync(CORPUS).filter((each) => /\.(bsdl?|bsm)$/i.test(each)) : [];

test('real descriptions', { skip: real.length ? false : 'TARNLET_CORPUS is not set' }, async () => {
  const client = await Client.start();
  let changed = 0;
  const some = real.sort().filter((_, i) => i % 10 === 0);
  for (const name of some) {
    const file = path.join(CORPUS, name);
    const uri = client.open(file, read(file));
    const list = await client.findings(uri);
    assert.deepStrictEqual(shown(list), foundBy(file), name);
    await askForEverything(client, uri);
    changed += await changeHarmlessly(client, uri);
    client.notify('textDocument/didClose', { textDocument: { uri } });
  }
  assert.ok(changed > some.length / 2, `${changed} of ${some.length} could be changed`);
  assert.strictEqual(await client.stop(), 0);
});

test('after any edit the findings are those of tarnlet check', async () => {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'lsp-'));
  const file = path.join(folder, 'walk.bsd');
  const client = await Client.start();
  const uri = client.open(file, read(DEMO));
  let random = Number(process.env.SEED || 7);
  const below = (limit) => {
    random = (Math.imul(random, 1103515245) + 12345) >>> 0;
    return (random >>> 8) % limit;
  };
  const pieces = ['', '', '"', ',', '(', ')', ';', ' ', '\n', 'A', '7', '--', 'BC_1'];
  for (let step = 0; step < Number(process.env.WALK || 60); step++) {
    const length = client.text(uri).length;
    const begin = below(length);
    // Now and then the text as it was, so that not all of the walk is in a ruin.
    if (step % 12 === 11) client.edit(uri, 0, length, read(DEMO));
    else client.edit(uri, begin, Math.min(length, begin + below(4)), pieces[below(pieces.length)]);
    const list = shown(await client.findings(uri));
    assert.deepStrictEqual(list, checked(client.text(uri), file), `step ${step}`);
  }
  assert.strictEqual(await client.stop(), 0);
  fs.rmSync(folder, { recursive: true });
});
