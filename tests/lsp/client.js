// A client of the server: what an editor would send, with answers and findings to wait for.
'use strict';
const { spawn } = require('node:child_process');
const rpc = require('vscode-jsonrpc/node');
const fs = require('node:fs');
const path = require('node:path');
const url = require('node:url');

const SOURCES = path.resolve(__dirname, '../..');
const TOOL = process.env.TARNLET || path.join(SOURCES, 'build/release/bin/tarnlet');

const servers = new Set();
// A test that fails leaves its server behind.
const endServers = () => servers.forEach((server) => server.kill());

class Client {
  static async start({
    encodings = ['utf-16'],
    options = {},
    snippets = true,
    watches = true,
  } = {}) {
    const client = new Client();
    client.process = spawn(TOOL, ['lsp', '--stdio'], { stdio: ['pipe', 'pipe', 'inherit'] });
    servers.add(client.process);
    client.ended = new Promise((resolve) => client.process.on('exit', resolve));
    client.connection = rpc.createMessageConnection(
      new rpc.StreamMessageReader(client.process.stdout),
      new rpc.StreamMessageWriter(client.process.stdin),
    );
    client.published = new Map(); // by URI: the latest
    client.waiting = [];
    client.logged = [];
    client.connection.onNotification('textDocument/publishDiagnostics', (params) => {
      client.published.set(params.uri, params);
      client.waiting = client.waiting.filter((check) => !check());
    });
    client.connection.onNotification('window/logMessage', (params) => client.logged.push(params));
    client.connection.onRequest('client/registerCapability', (params) => {
      client.registered = params.registrations;
      return null;
    });
    client.connection.listen();
    client.result = await client.request('initialize', {
      processId: process.pid,
      rootUri: null,
      initializationOptions: options,
      capabilities: {
        general: { positionEncodings: encodings },
        workspace: { didChangeWatchedFiles: { dynamicRegistration: watches } },
        textDocument: { completion: { completionItem: { snippetSupport: snippets } } },
      },
    });
    client.notify('initialized', {});
    client.documents = new Map();
    return client;
  }

  request(method, params, token) {
    return this.connection.sendRequest(method, ...[params, token].filter((each) => each));
  }

  notify(method, params) {
    return this.connection.sendNotification(method, params);
  }

  open(file, text) {
    const uri = url.pathToFileURL(file).href;
    this.documents.set(uri, { text, version: 1 });
    this.notify('textDocument/didOpen', {
      textDocument: { uri, languageId: 'bsdl', version: 1, text },
    });
    return uri;
  }

  text(uri) {
    return this.documents.get(uri).text;
  }

  // Replaces part of a text, as typing does. UTF-16 offsets.
  edit(uri, begin, end, text) {
    const document = this.documents.get(uri);
    const range = { start: this.at(uri, begin), end: this.at(uri, end) };
    document.text = document.text.slice(0, begin) + text + document.text.slice(end);
    document.version++;
    this.notify('textDocument/didChange', {
      textDocument: { uri, version: document.version },
      contentChanges: [{ range, text }],
    });
  }

  replace(uri, before, after) {
    const begin = this.text(uri).indexOf(before);
    if (begin < 0) throw new Error(`no '${before}' in the text`);
    this.edit(uri, begin, begin + before.length, after);
  }

  at(uri, offset) {
    const lines = this.text(uri)
      .slice(0, offset)
      .split(/\r\n|\n|\r/);
    return { line: lines.length - 1, character: lines[lines.length - 1].length };
  }

  // The position of a mark in the text: behind `before`, within what follows it.
  behind(uri, before, more = 0) {
    const begin = this.text(uri).indexOf(before);
    if (begin < 0) throw new Error(`no '${before}' in the text`);
    return {
      textDocument: { uri },
      position: this.at(uri, begin + before.length + more),
    };
  }

  offset(uri, position) {
    const ends = /\r\n|\n|\r/g;
    for (let line = 0; line < position.line; line++) ends.exec(this.text(uri));
    return ends.lastIndex + position.character;
  }

  // The findings on the present text, once nothing more is to come.
  async findings(uri) {
    await this.request('tarnlet/settled');
    return this.published.get(uri).diagnostics;
  }

  // Waits until what the client shows for a text is as wanted.
  async until(uri, wanted) {
    for (let tries = 0; tries < 200; tries++) {
      const shown = this.published.get(uri);
      if (shown && wanted(shown.diagnostics)) return shown.diagnostics;
      await new Promise((resolve) => setTimeout(resolve, 50));
    }
    throw new Error(`still ${JSON.stringify(this.published.get(uri))}`);
  }

  // Applies a workspace edit to the texts that are open; returns the texts of other files.
  apply(edit) {
    for (const change of edit.documentChanges) {
      const uri = change.textDocument.uri;
      this.applyEdits(uri, change.edits);
    }
  }

  // As one change, from the end of the text to its beginning.
  applyEdits(uri, edits) {
    const document = this.documents.get(uri);
    const places = edits.map(({ range, newText }) => ({
      range,
      text: newText,
      begin: this.offset(uri, range.start),
      end: this.offset(uri, range.end),
    }));
    places.sort((a, b) => b.begin - a.begin);
    for (const { begin, end, text } of places)
      document.text = document.text.slice(0, begin) + text + document.text.slice(end);
    document.version++;
    this.notify('textDocument/didChange', {
      textDocument: { uri, version: document.version },
      contentChanges: places.map(({ range, text }) => ({ range, text })),
    });
  }

  async stop() {
    await this.request('shutdown');
    this.notify('exit');
    return this.ended;
  }
}

const example = (name) => path.join(SOURCES, 'examples', name);
const read = (file) => fs.readFileSync(file, 'latin1');

// The demo with so many ports and cells more that the text has the size.
function description(size) {
  const rows = [];
  const ports = [];
  const pins = [];
  const base = read(example('demo.bsd'));
  const first = Number(/BOUNDARY_LENGTH of \w+ : entity is (\d+)/.exec(base)[1]);
  for (let i = 0, length = base.length; length < size; i++) {
    ports.push(`        P${i} : in bit;`);
    pins.push(`        "P${i} : P${i}, " &`);
    rows.push(`        "${first + i} (BC_4, P${i}, input, X), " &`);
    length += ports[i].length + 2 * pins[i].length + rows[i].length + 4;
  }
  return base
    .replace('port (', `port (\n${ports.join('\n')}`)
    .replace(/(constant \w+ : PIN_MAP_STRING :=\n)/g, `$1${pins.join('\n')}\n`)
    .replace(/(BOUNDARY_LENGTH of \w+ : entity is )\d+/, `$1${first + rows.length}`)
    .replace(/(BOUNDARY_REGISTER of \w+ : entity is\n)/, `$1${rows.join('\n')}\n`);
}

module.exports = { Client, description, endServers, TOOL, SOURCES, example, read };
