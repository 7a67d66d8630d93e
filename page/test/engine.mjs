// Holds the engine against the native tool, byte for byte: the replay of every example, of the files at the
// limits and of random files with every trace, and the answers to questions about them.
//
// usage: node page/test/engine.mjs ENGINE.wasm NATIVE-BUILD [RANDOM-FILES]

import { execFileSync, spawnSync } from "node:child_process";
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { base85 } from "../base85.mjs";

const [enginePath, build, countText] = process.argv.slice(2);
const count = Number(countText ?? 300);
const work = mkdtempSync(join(tmpdir(), "qor-engine-"));
execFileSync("esbuild", ["page/web/engine.ts", "--format=esm", `--outfile=${work}/engine.mjs`, "--log-level=error"]);
execFileSync("esbuild", ["page/web/link.ts", "--format=esm", `--outfile=${work}/link.mjs`, "--log-level=error"]);
const { Engine, EngineRestarted } = await import(`${work}/engine.mjs`);
const { fromBase85 } = await import(`${work}/link.mjs`);
const engine = await Engine.from(readFileSync(enginePath));

let compared = 0;
let failed = 0;

function native(...words) {
  const run = spawnSync(`${build}/bin/qor-power`, words, { maxBuffer: 1 << 28 });
  return {
    status: run.status,
    text: run.stdout,
    messages: run.stderr.toString().split("\n").filter(Boolean),
  };
}

function complain(what, ours, theirs) {
  ++failed;
  const one = ours.toString().split("\n");
  const two = theirs.toString().split("\n");
  const line = one.findIndex((each, index) => each !== two[index]);
  console.log(`${what}: differs\n  engine: ${one[line]?.slice(0, 300)}\n  native: ${two[line]?.slice(0, 300)}`);
}

function compare(what, answer, expected, withMessages = true) {
  ++compared;
  if (answer.outcome !== expected.status) {
    complain(`${what}: status`, String(answer.outcome), String(expected.status));
  }
  if (!Buffer.from(answer.text).equals(expected.text)) {
    complain(what, answer.text, expected.text);
  }
  const messages = answer.messages.map((message) => `qor-power: ${message}`).join("\n");
  if (withMessages && messages !== expected.messages.join("\n")) {
    complain(`${what}: messages`, messages, expected.messages.join("\n"));
  }
}

function ask(request, text) {
  engine.restart();
  return engine.ask(request, text);
}

/** Every question about a file that the tool answers as well. */
function compareQuestions(path, text) {
  const json = ["--format", "json"];
  const asked = (request, ...words) => compare(words.join(" "), ask({ name: path, ...request }, text), native(...words));
  asked({ ask: "explain" }, "explain", path, ...json);
  asked({ ask: "explain", form: "text" }, "explain", path);
  asked({ ask: "table", form: "csv" }, "table", path, "--format", "csv");
  asked({ ask: "sweep", over: ["rsec"] }, "sweep", path, "--over", "rsec", ...json);
  asked({ ask: "sweep", over: ["cutback=0..3:0.5", "market"], form: "csv" },
    "sweep", path, "--over", "cutback=0..3:0.5", "--over", "market", "--format", "csv");
  asked({ ask: "plot", form: "svg" }, "plot", path, "-o", "-");
  asked({ ask: "plot", form: "svg", over: ["rsec"] }, "plot", path, "-o", "-", "--over", "rsec");
  asked({ ask: "why-not", modulations: ["64QAM"], power: "25" }, "why-not", path, "64QAM", "25", ...json);
  asked({ ask: "explain", changes: [{ input: "cutback", value: "1.5" }, { input: "rsec", value: "2" }] },
    "explain", path, "--cutback", "1.5", "--rsec", "2", ...json);
  asked({ ask: "why-not", modulations: ["64QAM"], power: "25", most: "2" }, "why-not", path, "64QAM", "25", "--changes", "2", ...json);
  const check = native("check", path, ...json);
  const own = ask({ ask: "check", name: path }, text);
  compare(`check ${path}`, own, { ...check, messages: check.messages.filter((line) => own.messages.length > 0 || !line) });
}

/** A file that the engine has changed gives natively what the engine says of the change. */
function compareChanges(path, text) {
  for (const [input, value] of [
    ["market", "Ansi"], ["dpd", "1"], ["channel-spacing", "14"], ["product", "QZT 846 003"], ["min", "16QAM"],
    ["max", "256QAM"], ["cutback", "3.25"], ["temporary-cutback", "1.00"], ["booster", "2,16,15,256QAM"], ["rsec", "6LB"],
  ]) {
    const changes = [{ input, value }];
    const changed = ask({ ask: "change", changes }, text);
    const file = join(work, "changed.json");
    writeFileSync(file, changed.text);
    const ofFile = native("table", file, "--format", "csv");
    compare(`${path} with ${input} ${value}`, ask({ ask: "table", form: "csv", name: file, changes }, text), ofFile);
  }
}

const files = ["examples/radios", "tests/board/limits"].flatMap((folder) =>
  readdirSync(folder).filter((name) => name.endsWith(".json")).map((name) => join(folder, name)),
);
let bytes = 0;
function compareReplay(path, text) {
  const expected = native("replay", path, "--trace", "6");
  bytes += expected.text.length;
  compare(`replay ${path}`, ask({ ask: "replay", trace: 6, name: path }, text), expected, false);
}

for (const path of files) {
  const text = readFileSync(path, "utf8");
  compareReplay(path, text);
  compareQuestions(path, text);
  if (path.startsWith("examples")) {
    compareChanges(path, text);
  }
}
for (let seed = 0; seed < count; ++seed) {
  const path = join(work, `random-${seed}.json`);
  const text = execFileSync(`${build}/bin/qor-reference-replay`, ["--random", String(seed)], { encoding: "utf8" });
  writeFileSync(path, text);
  compareReplay(path, text);
  compare(`explain ${path}`, ask({ ask: "explain", name: path }, text), native("explain", path, "--format", "json"));
}

// A log in slices, and a fleet.
const log = native("replay", files[0], "--trace", "6").text.toString();
const logPath = join(work, "node.log");
writeFileSync(logPath, log);
const half = log.indexOf("\n", log.length / 2) + 1;
engine.restart();
const parts = [
  engine.ask({ ask: "log", first: true }, log.slice(0, half)),
  engine.ask({ ask: "log", last: true }, log.slice(half)),
];
compare("a log in two parts", { outcome: 0, messages: [], text: parts.map((part) => part.text).join("") },
  { ...native("explain", "--trace-log", logPath, "--format", "json"), status: 0 });
const list = join(work, "list.txt");
writeFileSync(list, files.slice(0, 8).join("\n") + "\n");
const fleet = native("batch", list, "--quiet").text.toString().trim().split("\n");
for (const [index, path] of files.slice(0, 8).entries()) {
  const own = JSON.parse(ask({ ask: "fleet-radio", first: index === 0 }, readFileSync(path, "utf8")).text);
  compare(`fleet, ${path}`, { outcome: 0, messages: [], text: JSON.stringify({ ...own, radioFile: path }) },
    { status: 0, messages: [], text: Buffer.from(JSON.stringify(JSON.parse(fleet[index]))) });
}
const answersPath = join(work, "answers.ndjson");
writeFileSync(answersPath, fleet.join("\n") + "\n");
for (const by of ["", ...JSON.parse(ask({ ask: "fleet-groupings" }).text)]) {
  for (const [index, line] of fleet.entries()) {
    engine.ask({ ask: "fleet-radio", first: index === 0, by, answer: true }, line);
  }
  for (const form of ["json", "csv", "svg"]) {
    compare(`fleet by ${by} as ${form}`, engine.ask({ ask: "fleet", form }),
      native("fleet", answersPath, ...(by === "" ? [] : ["--by", by]), "--format", form));
  }
}

// An engine that traps or runs out of memory is started again, and answers the next question.
for (const [what, harm] of [
  ["a trap", (broken) => {
    broken.exports = { ...broken.exports, qorAsk: () => { throw new WebAssembly.RuntimeError("unreachable"); } };
  }],
  ["want of memory", (broken) => {
    const { encode } = broken.encoder;
    broken.encoder.encode = () => {
      broken.encoder.encode = encode;
      return { length: 2 ** 30 };
    };
  }],
]) {
  const broken = await Engine.from(readFileSync(enginePath));
  harm(broken);
  let said = null;
  try {
    broken.ask({ ask: "legend" });
  } catch (error) {
    said = error;
  }
  compare(`after ${what}`, { outcome: said instanceof EngineRestarted ? broken.ask({ ask: "legend" }).outcome : 9, messages: [], text: "" },
    { status: 0, messages: [], text: Buffer.from("") });
}

// Bytes of every length behind the last four come back as they were packed, and as no end of an element.
for (let length = 0; length <= 9; ++length) {
  for (const bytesOf of [() => 0, () => 255, (at) => (at * 91 + 37) % 256]) {
    const wanted = Buffer.from(Array.from({ length }, (_, at) => bytesOf(at)));
    const packed = base85(wanted);
    compare(`${length} bytes in base 85`, { outcome: packed.includes("<") ? 1 : 0, text: Buffer.from(fromBase85(packed)).toString("hex"), messages: [] },
      { status: 0, text: Buffer.from(wanted.toString("hex")), messages: [] });
  }
}

rmSync(work, { recursive: true });
console.log(`engine: ${compared} comparisons, ${bytes} bytes of replays, ${failed} differences`);
console.log(`${compared - failed} passed, ${failed} failed`);
process.exit(failed === 0 && compared > count ? 0 : 1);
