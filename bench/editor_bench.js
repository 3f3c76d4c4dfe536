// How fast the language server answers: node bench/editor_bench.js [EDITS [small|large|leak]]
//
// Medians over random edits of a description of 100 KB and one of 2 MB: from a change to the
// library's findings, hover and completion, and what the open text adds to the memory of the
// server, as a multiple of the text: settled and at its peak. Where both sizes are measured, the
// peak's growth from the one to the other shows what a text takes without what the process takes
// once. After `npm ci` in tests/lsp; TARNLET names the program.
'use strict';
const fs = require('node:fs');
const { performance } = require('node:perf_hooks');
const { Client, description, example, read } = require('../tests/lsp/client');

const EDITS = Number(process.argv[2] || 50);

const median = (list) => list.sort((a, b) => a - b)[list.length >> 1];
const statusKiB = (pid, name) =>
  Number(new RegExp(`${name}:\\s+(\\d+)`).exec(fs.readFileSync(`/proc/${pid}/status`, 'utf8'))[1]);
const residentKiB = (pid) => statusKiB(pid, 'VmRSS');
const peakKiB = (pid) => statusKiB(pid, 'VmHWM');

// A server that has seen a description, so that what is measured is what a text takes.
async function warm() {
  const client = await Client.start();
  const uri = client.open('/tmp/warm.bsd', read(example('demo.bsd')));
  await client.findings(uri);
  client.notify('textDocument/didClose', { textDocument: { uri } });
  await client.request('tarnlet/settled');
  return client;
}

async function measure(name, text) {
  const client = await warm();
  const empty = residentKiB(client.process.pid);
  const uri = client.open('/tmp/bench.bsd', text);
  await client.findings(uri);
  const times = { findings: [], hover: [], completion: [] };
  const published = () => client.published.get(uri);
  let random = 1;
  const told = (version) =>
    new Promise((resolve) => {
      const check = () => published().version === version && (resolve(), true);
      if (!check()) client.waiting.push(check);
    });
  for (let i = 0; i < EDITS; i++) {
    random = (Math.imul(random, 1103515245) + 12345) >>> 0;
    const at = random % text.length;
    const version = client.documents.get(uri).version + 1;
    const begin = performance.now();
    client.edit(uri, at, at + 1, i % 2 ? 'A' : ' ');
    await told(version);
    times.findings.push(performance.now() - begin);
    const where = client.behind(uri, 'BC_7, DAT');
    for (const kind of ['hover', 'completion']) {
      const asked = performance.now();
      await client.request(`textDocument/${kind}`, where);
      times[kind].push(performance.now() - asked);
    }
    client.edit(uri, at, at + 1, text[at]);
    await told(version + 1);
  }
  await client.findings(uri);
  const settled = residentKiB(client.process.pid);
  const peak = peakKiB(client.process.pid);
  const times_of_text = (kib) => (((kib - empty) * 1024) / text.length).toFixed(1);
  console.log(
    `${name}: findings ${median(times.findings).toFixed(1)} ms, hover ${median(times.hover).toFixed(1)} ms, ` +
      `completion ${median(times.completion).toFixed(1)} ms; memory: ` +
      `${empty} KiB without a text, ${settled} KiB with it (${times_of_text(settled)} times ` +
      `the text more), ${peak} KiB at its peak (${times_of_text(peak)} times)`,
  );
  await client.stop();
  return { peak, size: text.length };
}

async function leak() {
  const client = await Client.start();
  const text = read(example('demo.bsd'));
  const uri = client.open('/tmp/bench.bsd', text);
  const sizes = [];
  for (let i = 0; i < 10000; i++) {
    const at = (i * 7919) % text.length;
    client.edit(uri, at, at + 1, i % 2 ? text[at] : '#');
    client.edit(uri, at, at + 1, text[at]);
    if (i % 1000 === 999) {
      await client.findings(uri);
      sizes.push(residentKiB(client.process.pid));
    }
  }
  console.log(`memory after each 1,000 of 10,000 edits, KiB: ${sizes.join(' ')}`);
  await client.stop();
}

(async () => {
  const parts = process.argv.slice(3);
  const wanted = (part) => !parts.length || parts.includes(part);
  const small = wanted('small') && (await measure('100 KB', description(100e3)));
  const large = wanted('large') && (await measure('2 MB', description(2e6)));
  if (small && large)
    console.log(
      `the peak grows by ${(((large.peak - small.peak) * 1024) / (large.size - small.size)).toFixed(1)} times the text`,
    );
  if (wanted('leak')) await leak();
})();
