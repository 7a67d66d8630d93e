// Makes the page: one HTML file that holds the script, the style, the engine and the example radios, and
// asks nobody for anything.
//
// usage: node page/build.mjs ENGINE.wasm OUTPUT.html

import { execFileSync } from "node:child_process";
import { createHash } from "node:crypto";
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";
import { base85 } from "./base85.mjs";

const most = 900000; // bytes
const here = dirname(fileURLToPath(import.meta.url));
const [engine, output] = process.argv.slice(2);

function esbuild(...options) {
  return execFileSync("esbuild", [...options, "--minify", "--target=es2022", "--log-level=warning"], {
    cwd: here,
    encoding: "utf8",
  });
}

/** A value as a block of data in a page: nothing in it ends the block. */
function dataOf(value) {
  return JSON.stringify(value).replaceAll("<", "\\u003c");
}

function hashOf(text) {
  return `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
}

const script = esbuild("web/main.tsx", "--bundle", "--format=iife", "--jsx-factory=h", "--jsx-fragment=Fragment");
const style = esbuild("web/page.css");
for (const text of [script, style]) {
  if (/<\/(script|style)|<!--/i.test(text)) {
    throw new Error("the script or the style holds what ends its element");
  }
}
const radios = join(here, "../examples/radios");
const examples = readdirSync(radios)
  .filter((name) => name.endsWith(".json"))
  .sort()
  .map((name) => ({ name, text: readFileSync(join(radios, name), "utf8") }));
const packed = gzipSync(readFileSync(engine), { level: 9 });
packed[9] = 255; // the byte that names the system that packed it

const policy = [
  "default-src 'none'",
  `script-src ${hashOf(script)} 'wasm-unsafe-eval'`,
  `style-src ${hashOf(style)}`,
  "img-src data:",
  "base-uri 'none'",
  "form-action 'none'",
].join("; ");

const licence = readFileSync(join(here, "node_modules/preact/LICENSE"), "utf8").trim();

const html = `<!doctype html>
<!-- Holds Preact:
${licence}
-->
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="${policy}">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="referrer" content="no-referrer">
<title>qor-power</title>
<link rel="icon" href="data:,">
<style>${style}</style>
</head>
<body>
<div id="root"></div>
<script type="application/json" id="report"></script>
<script type="application/json" id="examples">${dataOf(examples)}</script>
<script type="text/plain" id="engine">${base85(packed)}</script>
<script>${script}</script>
</body>
</html>
`;
const size = Buffer.byteLength(html);
if (size > most) {
  throw new Error(`the page has ${size} bytes, more than ${most}`);
}
mkdirSync(dirname(output), { recursive: true });
writeFileSync(output, html);
console.log(`${output}: ${size} bytes, of them the engine ${packed.length} packed, the script ${script.length}`);
