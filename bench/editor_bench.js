// How fast the language server answers: node bench/editor_bench.js [EDITS]
//
// Medians over random edits of a description of 100 KB and one of 2 MB: from a change to the
// library's findings and to those with fixes, hover and completion, and the memory of the server as
// a multiple of the open text. After `npm ci` in tests/lsp; TARNLET names the program.
"use strict";
const fs = require("node:fs");
const { performance } = require("node:perf_hooks");
const { Client, example, read } = require("../tests/lsp/client");

const EDITS = Number(process.argv[2] || 50);

// The demo with so many ports and cells more that the text has the size.
function description(size) {
  const rows = [];
  const ports = [];
  const pins = [];
  const base = read(example("demo.bsd"));
  const first = Number(
    /BOUNDARY_LENGTH of \w+ : entity is (\d+)/.exec(base)[1],
  );
  for (let i = 0, length = base.length; length < size; i++) {
    ports.push(`        P${i} : in bit;`);
    pins.push(`        "P${i} : P${i}, " &`);
    rows.push(`        "${first + i} (BC_4, P${i}, input, X), " &`);
    length += ports[i].length + 2 * pins[i].length + rows[i].length + 4;
  }
  return base
    .replace("port (", `port (\n${ports.join("\n")}`)
    .replace(/(constant \w+ : PIN_MAP_STRING :=\n)/g, `$1${pins.join("\n")}\n`)
    .replace(
      /(BOUNDARY_LENGTH of \w+ : entity is )\d+/,
      `$1${first + rows.length}`,
    )
    .replace(
      /(BOUNDARY_REGISTER of \w+ : entity is\n)/,
      `$1${rows.join("\n")}\n`,
    );
}

const median = (list) => list.sort((a, b) => a - b)[list.length >> 1];
const residentKiB = (pid) =>
  Number(
    /VmRSS:\s+(\d+)/.exec(fs.readFileSync(`/proc/${pid}/status`, "utf8"))[1],
  );

async function measure(name, text) {
  const client = await Client.start();
  const empty = residentKiB(client.process.pid);
  const uri = client.open("/tmp/bench.bsd", text);
  await client.findings(uri, 500);
  const times = { findings: [], mended: [], hover: [], completion: [] };
  const published = () => client.published.get(uri);
  let random = 1;
  for (let i = 0; i < EDITS; i++) {
    random = (Math.imul(random, 1103515245) + 12345) >>> 0;
    const at = random % text.length;
    const version = client.documents.get(uri).version + 1;
    const begin = performance.now();
    client.edit(uri, at, at + 1, i % 2 ? "A" : " ");
    await new Promise((resolve) =>
      client.waiting.push(
        () => published().version === version && (resolve(), true),
      ),
    );
    times.findings.push(performance.now() - begin);
    const settled = await client.findings(uri, 0).then(() => performance.now());
    times.mended.push(settled - begin);
    client.edit(uri, at, at + 1, text[at]);
    await client.findings(uri, 300);
    const where = client.behind(uri, "BC_7, DAT");
    for (const kind of ["hover", "completion"]) {
      const asked = performance.now();
      await client.request(`textDocument/${kind}`, where);
      times[kind].push(performance.now() - asked);
    }
  }
  const memory =
    ((residentKiB(client.process.pid) - empty) * 1024) / text.length;
  console.log(
    `${name}: findings ${median(times.findings).toFixed(1)} ms, hover ` +
      `${median(times.hover).toFixed(1)} ms, completion ${median(times.completion).toFixed(1)} ms, ` +
      `memory ${memory.toFixed(1)} times the text`,
  );
  await client.stop();
}

async function leak() {
  const client = await Client.start();
  const text = read(example("demo.bsd"));
  const uri = client.open("/tmp/bench.bsd", text);
  const sizes = [];
  for (let i = 0; i < 10000; i++) {
    const at = (i * 7919) % text.length;
    client.edit(uri, at, at + 1, i % 2 ? text[at] : "#");
    client.edit(uri, at, at + 1, text[at]);
    if (i % 1000 === 999) {
      await client.findings(uri, 50);
      sizes.push(residentKiB(client.process.pid));
    }
  }
  console.log(
    `memory after each 1,000 of 10,000 edits, KiB: ${sizes.join(" ")}`,
  );
  await client.stop();
}

(async () => {
  await measure("100 KB", description(100e3));
  await measure("2 MB", description(2e6));
  await leak();
})();
