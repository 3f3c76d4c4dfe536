// Messages that are out of order, called off, malformed, or cut short.
'use strict';
const test = require('node:test');
const assert = require('node:assert');
const { spawn } = require('node:child_process');
const { Client, description, endServers, TOOL, example, read } = require('./client');

test.after(endServers);

const framed = (message) => {
  const body =
    typeof message === 'string' ? message : JSON.stringify({ jsonrpc: '2.0', ...message });
  return `Content-Length: ${Buffer.byteLength(body)}\r\n\r\n${body}`;
};

// Sends bytes to a server of its own; the messages that came back, and the exit status.
function talk(bytes) {
  return new Promise((resolve) => {
    const server = spawn(TOOL, ['lsp'], { stdio: ['pipe', 'pipe', 'inherit'] });
    let output = Buffer.alloc(0);
    server.stdout.on('data', (data) => (output = Buffer.concat([output, data])));
    server.stdin.on('error', () => {});
    server.on('exit', (status) => {
      const messages = [];
      for (let at = 0; at < output.length;) {
        const header = /^Content-Length: (\d+)\r\n\r\n/.exec(
          output.toString('latin1', at, at + 64),
        );
        const begin = at + header[0].length;
        at = begin + Number(header[1]);
        messages.push(JSON.parse(output.toString('utf8', begin, at)));
      }
      resolve({ messages, status });
    });
    server.stdin.end(bytes);
  });
}

const START = framed({ id: 0, method: 'initialize', params: { capabilities: {} } });
const STOP = framed({ id: 9, method: 'shutdown' }) + framed({ method: 'exit' });
const codes = (messages) => messages.filter((each) => each.error).map((each) => each.error.code);

test('what cannot be answered is answered with the error of the protocol', async () => {
  const hover = (id) => framed({ id, method: 'textDocument/hover', params: {} });
  const early = await talk(hover(1) + START + STOP);
  assert.deepStrictEqual(codes(early.messages), [-32002]);
  assert.strictEqual(early.status, 0);
  const { messages, status } = await talk(
    START +
      framed('{ no json') +
      framed('[]') +
      framed('{"id": 4, "method": 5}') +
      framed({ id: 1, method: 'no/such' }) +
      framed({ id: 2, method: 'textDocument/hover', params: { textDocument: 7 } }) +
      framed({
        id: 3,
        method: 'textDocument/hover',
        params: { textDocument: { uri: 'file:///x' } },
      }) +
      framed({ method: 'no/such' }) +
      framed({ method: 'textDocument/didChange', params: {} }) +
      framed({ id: 5, method: 'initialize', params: {} }) +
      STOP,
  );
  assert.deepStrictEqual(codes(messages), [-32700, -32600, -32600, -32601, -32602, -32602, -32600]);
  assert.strictEqual(status, 0);
  const late = await talk(
    START + framed({ id: 9, method: 'shutdown' }) + hover(2) + framed({ method: 'exit' }),
  );
  assert.deepStrictEqual(codes(late.messages), [-32600]);
  assert.strictEqual(late.status, 0);
});

test('a client that goes away, or says nothing that can be told apart, ends the server', async () => {
  for (const bytes of [
    '',
    START,
    START + 'Content-Length: 100\r\n\r\n{',
    START + 'Content-Length: -5\r\n\r\n',
    'garbage\r\n\r\n'.repeat(1000),
    'x'.repeat(100000),
    START + framed({ method: 'exit' }),
  ])
    assert.strictEqual((await talk(bytes)).status, 1, JSON.stringify(bytes.slice(-40)));
});

test('positions and ranges that are nowhere', async () => {
  const client = await Client.start();
  const uri = client.open('/tmp/nowhere.bsd', 'entity D is\nend D;\n');
  for (const position of [
    { line: 99, character: 0 },
    { line: 0, character: 9999 },
    { line: -1, character: -1 },
    { line: 1, character: 2 ** 31 },
  ]) {
    await client.request('textDocument/hover', { textDocument: { uri }, position });
    await client.request('textDocument/completion', { textDocument: { uri }, position });
  }
  await assert.rejects(
    client.request('textDocument/hover', { textDocument: { uri }, position: { line: 'a' } }),
  );
  assert.strictEqual(await client.stop(), 0);
});

test('a request that is called off while others are before it is not answered in full', async () => {
  const file = example('demo.bsd');
  const client = await Client.start();
  const uri = client.open(file, read(file));
  const { CancellationTokenSource } = require('vscode-jsonrpc/node');
  const source = new CancellationTokenSource();
  const ahead = [];
  for (let i = 0; i < 40; i++)
    ahead.push(client.request('textDocument/semanticTokens/full', { textDocument: { uri } }));
  const called = client.request(
    'textDocument/documentSymbol',
    { textDocument: { uri } },
    source.token,
  );
  source.cancel();
  await assert.rejects(called, { code: -32800 });
  await Promise.all(ahead);
  assert.strictEqual(await client.stop(), 0);
});

test('an hour of typing in a minute: the last text counts, and nothing of the others stays', async () => {
  const file = example('demo.bsd');
  const client = await Client.start();
  const uri = client.open(file, read(file));
  for (let i = 0; i < 300; i++) {
    const at = client.text(uri).indexOf('BC_4, CLK');
    client.edit(uri, at, at + 4, 'BC_X');
    client.edit(uri, at, at + 4, 'BC_4');
  }
  assert.deepStrictEqual(await client.findings(uri), []);
  client.notify('textDocument/didClose', { textDocument: { uri } });
  await client.request('shutdown').then(() => client.notify('exit'));
  assert.deepStrictEqual(client.published.get(uri).diagnostics, []);
  assert.strictEqual(await client.ended, 0);
});

test('a newer edit ends the search for the fixes of an older text', async () => {
  const client = await Client.start();
  const right = description(100e3);
  const wrong = right.replace(/" &\n +"P\d*7 :/g, (join) => join.replace('" &', '"'));
  const uri = client.open('/tmp/search.bsd', wrong);
  const opened = performance.now();
  assert.ok((await client.findings(uri)).length);
  const search = performance.now() - opened;
  client.edit(uri, wrong.length, wrong.length, '\n');
  await client.until(uri, () => client.published.get(uri).version === 2);
  const edited = performance.now();
  client.edit(uri, 0, wrong.length, right);
  assert.deepStrictEqual(await client.findings(uri), []);
  const answer = performance.now() - edited;
  assert.ok(answer < search / 4, `${answer} ms, while the search takes ${search} ms`);
  assert.strictEqual(await client.stop(), 0);
});
