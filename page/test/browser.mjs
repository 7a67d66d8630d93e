// Opens the page from a file in a browser and holds what it shows against the native tool.
//
// usage: node page/test/browser.mjs PAGE.html NATIVE-BUILD [chromium|firefox]

import { execFileSync, spawnSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { basename, join, resolve } from "node:path";
import { pathToFileURL } from "node:url";

const require = createRequire(import.meta.url);
const [pagePath, build, wantedBrowser] = process.argv.slice(2);
const work = mkdtempSync(join(tmpdir(), "qor-page-"));
const pictures = process.env.QOR_PAGE_PICTURES;
const examples = execFileSync("ls", ["examples/radios"], { encoding: "utf8" }).trim().split("\n");
const pathOf = (example) => join("examples/radios", example);
const largest = "18ghz-ansi-high-outdoor1.json";

let passed = 0;
let failed = 0;
function expect(what, ours, theirs) {
  if (JSON.stringify(ours) === JSON.stringify(theirs)) {
    ++passed;
  } else {
    ++failed;
    console.log(`${what}\n  shown:  ${JSON.stringify(ours)?.slice(0, 400)}\n  wanted: ${JSON.stringify(theirs)?.slice(0, 400)}`);
  }
}

function native(...words) {
  const run = spawnSync(`${build}/bin/qor-power`, words, { encoding: "utf8", maxBuffer: 1 << 28 });
  return { ...run, json: () => JSON.parse(run.stdout) };
}
const powersOf = (table) => table.rows.map((row) => [row.name, String(row.maxPowerCentiDbm ?? "none")]);
const nativePowers = (file, ...options) => powersOf(native("table", file, "--format", "json", ...options).json());
const reported = (name, ...words) => {
  const path = join(work, name);
  const run = native("report", ...words, "-o", path, "--page", pagePath);
  expect(`qor-power report ${words.join(" ")}`, [run.status, run.stderr], [0, ""]);
  return path;
};

// What is asked of a page, in both browsers.

const shownPowers = (page) =>
  page.$$eval("#power-table tbody tr", (rows) =>
    rows.map((row) => [row.dataset.code, row.querySelector("[data-power]").dataset.power]));
const ready = (page) => page.waitForSelector("#root[data-ready=yes]");

async function chooseExample(page, example) {
  await page.$eval("#examples", (select, name) => {
    select.value = name;
    select.dispatchEvent(new Event("change", { bubbles: true }));
  }, example);
  await page.waitForSelector("#power-table");
}

/** Sets a control as a person does: the events are the browser's own. */
async function setControl(page, selector, value) {
  await page.$eval(selector, (control, text) => {
    const prototype = Object.getPrototypeOf(control);
    Object.getOwnPropertyDescriptor(prototype, "value").set.call(control, text);
    control.dispatchEvent(new Event("input", { bubbles: true }));
    control.dispatchEvent(new Event("change", { bubbles: true }));
  }, value);
  await settled(page);
}

const settled = (page) => page.evaluate(() => new Promise((done) => requestAnimationFrame(() => setTimeout(done, 30))));

/** The figures of every example, and of every input of one. */
async function figures(page, url) {
  await page.goto(url);
  await ready(page);
  for (const example of examples) {
    await chooseExample(page, example);
    await settled(page);
    expect(`powers of ${example}`, await shownPowers(page), nativePowers(pathOf(example)));
  }
  for (const example of [examples[0], "18ghz-ansi-high-radio-unit-new-booster.json"]) {
    await chooseExample(page, example);
    for (const [input, value] of [["cutback", "4.25"], ["rsec", "6LB"], ["frame-format", "2"], ["request", "1"]]) {
      await setControl(page, `#input-${input}`, value);
      expect(`${example}, ${input} ${value}`, await shownPowers(page), nativePowers(pathOf(example), `--${input}`, value));
      await page.click(`#reset-${input}`);
      await settled(page);
    }
    expect(`${example}, as in the file`, await shownPowers(page), nativePowers(pathOf(example)));
  }
}

async function inChromium() {
  const { chromium } = require("playwright-core");
  const browser = await chromium.launch({
    executablePath: "/usr/bin/chromium",
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
      "--disable-component-update", "--disable-sync"],
  });
  const context = await browser.newContext({ viewport: { width: 1600, height: 1000 } });
  const page = await context.newPage();
  const url = pathToFileURL(resolve(pagePath)).href;
  const requests = [];
  const troubles = [];
  context.on("request", (request) => requests.push(request.url()));
  page.on("console", (message) => message.type() === "error" && troubles.push(message.text()));
  page.on("pageerror", (error) => troubles.push(String(error)));
  const picture = async (name) => pictures && page.screenshot({ path: join(pictures, `${name}.png`) });
  const axe = readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");
  const cdp = await context.newCDPSession(page);
  const accessible = async (what) => {
    await cdp.send("Runtime.evaluate", { expression: axe });
    const found = await page.evaluate(() =>
      globalThis.axe.run().then((result) => result.violations.map((each) => `${each.id}: ${each.nodes[0].html}`)));
    expect(`axe-core, ${what}`, found, []);
  };
  const saved = async (selector) => {
    const [download] = await Promise.all([page.waitForEvent("download"), page.click(selector)]);
    const path = join(work, download.suggestedFilename());
    await download.saveAs(path);
    return path;
  };
  const tab = async (name) => {
    await page.click(`#tab-${name}`);
    await settled(page);
  };

  const begin = Date.now();
  await page.goto(url);
  await ready(page);
  console.log(`opened in ${Date.now() - begin} ms`);
  await picture("welcome");
  await accessible("welcome");
  await figures(page, url);

  // Every other control, against the native tool on the file that the page saves.
  await chooseExample(page, examples[0]);
  for (const [selector, value] of [
    ["#input-market", "Ansi"], ["#input-dpd", "1"], ["#input-channel-spacing", "14"], ["#input-product", "QZT 846 003"],
    ["#input-min", "16QAM_STRONG"], ["#input-max", "256QAM"],
  ]) {
    await setControl(page, selector, value);
    const file = await saved("#save-file");
    expect(`${selector} ${value}`, await shownPowers(page), nativePowers(file));
  }
  await page.check(".control:has(#input-temporary-cutback) input[type=checkbox]");
  await setControl(page, "#input-temporary-cutback", "2.5");
  await page.check("#input-booster");
  await settled(page);
  const changedFile = await saved("#save-file");
  expect("all controls at once", await shownPowers(page), nativePowers(changedFile));
  expect("the saved table", readFileSync(await saved("#save-csv"), "utf8"),
    native("table", changedFile, "--format", "csv").stdout);
  expect("the saved picture", readFileSync(await saved("#save-svg"), "utf8").startsWith("<"), true);
  await picture("changed");
  await accessible("changed");

  // A link opens the view again; undo leads back.
  await page.waitForTimeout(600);
  const link = page.url();
  const powersThen = await shownPowers(page);
  const other = await context.newPage();
  await other.goto(link);
  await other.waitForSelector("#power-table");
  expect("a link", await shownPowers(other), powersThen);
  await other.close();
  await page.click("#reset-all");
  await settled(page);
  expect("all as in the file", await shownPowers(page), nativePowers(pathOf(examples[0])));
  await page.keyboard.press("Control+z");
  await settled(page);
  expect("undo", await shownPowers(page), powersThen);
  await page.click("#reset-all");

  // The waterfall, its figures' places, and the editor.
  await page.click("#power-table tr[data-code='64QAM'] button");
  await settled(page);
  const explained = native("explain", pathOf(examples[0]), "64QAM", "--format", "json").json().rows[0].explanation;
  expect("the waterfall", await page.$$eval(".steps [data-power]", (cells) => cells.map((cell) => Number(cell.dataset.power))),
    explained.steps.map((step) => step.powerCentiDbm));
  await accessible("waterfall");
  await picture("waterfall");
  await page.click(".steps button.pointer");
  await settled(page);
  expect("a figure's place", await page.$eval("#file-text", (area) => area.value.slice(area.selectionStart, area.selectionEnd)), "1700");
  const text = readFileSync(pathOf(examples[0]), "utf8");
  await setControl(page, "#file-text", text.replace('"market": "Etsi"', '"market": "Etzi"'));
  expect("an error at its place", await page.$eval(".editor [role=alert]", (alert) => /^Line \d+, column \d+: .*Etzi/.test(alert.textContent)), true);
  await accessible("editor");
  await picture("editor");
  await setControl(page, "#file-text", text.replace('["1024QAM", 1700]', '["1024QAM", 1500]'));
  const edited = join(work, "edited.json");
  writeFileSync(edited, text.replace('["1024QAM", 1700]', '["1024QAM", 1500]'));
  expect("the edited file", await shownPowers(page), nativePowers(edited));

  // Advice, applied.
  await chooseExample(page, examples[0]);
  await page.click("#power-table tr[data-code='64QAM'] button");
  await tab("why-not");
  await page.fill("#wanted", "18");
  await page.click("#why-not button[type=submit]");
  await settled(page);
  const advice = native("why-not", pathOf(examples[0]), "64QAM", "18", "--format", "json").json();
  expect("advice", await page.$$eval(".advice li", (items) => items.length), advice.changes.length);
  await accessible("why-not");
  await picture("why-not");
  for (let index = 0; index < advice.changes.length; ++index) {
    await (await page.$$(".advice li > button:first-child"))[index].click();
    await settled(page);
    expect(`advice ${index} applied`,
      (await shownPowers(page)).find(([name]) => name === "64QAM")[1], String(advice.changes[index].maxPowerCentiDbm));
    await page.click("#undo");
    await settled(page);
  }

  // A sweep.
  await tab("sweep");
  await setControl(page, "#sweep-axis", "rsec");
  await page.waitForTimeout(300);
  const sweep = native("sweep", pathOf(examples[0]), "--over", "rsec", "--format", "json").json();
  expect("a sweep", await page.$$eval("#sweep tbody [data-power]", (cells) => cells.map((cell) => cell.dataset.power)),
    sweep.points[0].rows.flatMap((_, row) => sweep.points.map((point) => String(point.rows[row].maxPowerCentiDbm ?? "none"))));
  await accessible("sweep");
  await picture("sweep");

  // Findings.
  await tab("check");
  expect("findings", await page.$$eval("#findings li", (items) => items.length),
    native("check", pathOf(examples[0]), "--format", "json").json().files[0].findings.length);
  await accessible("check");

  // Files that are dropped: one, two, a log, a fleet.
  const drop = async (files) => {
    await page.evaluate((list) => {
      const transfer = new DataTransfer();
      for (const { name, text: content } of list) {
        transfer.items.add(new File([content], name));
      }
      document.querySelector(".page").dispatchEvent(new DragEvent("drop", { bubbles: true, cancelable: true, dataTransfer: transfer }));
    }, files.map((path) => ({ name: basename(path), text: readFileSync(path, "utf8") })));
    await page.waitForTimeout(500);
  };
  await drop([pathOf(examples[3])]);
  expect("a dropped file", await shownPowers(page), nativePowers(pathOf(examples[3])));
  await drop([pathOf(examples[0]), pathOf(examples[1])]);
  const diff = native("diff", pathOf(examples[0]), pathOf(examples[1]), "--format", "json").json();
  const signed = (centi) => (centi > 0 ? "+" : centi < 0 ? "−" : "") + (Math.abs(centi) / 100).toFixed(2);
  expect("two files", await page.$$eval("#diff table:first-of-type tbody td.strong", (cells) => cells.map((cell) => cell.textContent)),
    diff.rows.map((row) => (row.differenceCentiDb === null ? "" : signed(row.differenceCentiDb))));
  await accessible("diff");
  await picture("diff");
  const log = join(work, "node.log");
  writeFileSync(log, native("replay", pathOf(examples[0]), "--trace", "6").stdout);
  await drop([log]);
  const queries = native("explain", "--trace-log", log, "--format", "json").stdout.trim().split("\n");
  expect("a log", await page.$$eval("#log tbody tr th", (rows) => rows.length >= 1) && await page.$$eval("#log .columns > div:first-child tbody tr", (rows) => rows.length), queries.length);
  await accessible("log");
  await picture("log");
  const list = join(work, "fleet.ndjson");
  const paths = join(work, "paths.txt");
  writeFileSync(paths, examples.map(pathOf).join("\n") + "\n");
  const plainText = (path) => JSON.stringify(JSON.parse(readFileSync(path, "utf8").replace(/\/\*[^]*?\*\//g, "").replace(/\/\/.*/g, "")));
  writeFileSync(list, Array.from({ length: 60 }, (_, index) => plainText(pathOf(examples[index % examples.length]))).join("\n"));
  await drop([list]);
  await page.waitForTimeout(500);
  const counts = native("batch", list).stderr.split("\n").slice(2).filter(Boolean)
    .map((line) => line.replace("qor-power: ", "").trim().split(/\s+/).slice(1, 3).map(Number));
  expect("a fleet's rules", await page.$$eval("#fleet-rules tbody tr", (rows) =>
    rows.map((row) => [...row.querySelectorAll("td")].map((cell) => Number(cell.textContent)))), counts);
  await accessible("fleet");
  await picture("fleet");
  await page.click("#fleet-radios tbody button");
  await settled(page);
  expect("a radio of the fleet", await shownPowers(page), nativePowers(pathOf(examples[0])));

  // An engine that traps is started again.
  await chooseExample(page, examples[0]);
  await page.evaluate(() => {
    globalThis.qorEngine.exports = { ...globalThis.qorEngine.exports, qorAsk: () => { throw new Error("out of memory"); } };
  });
  await setControl(page, "#input-cutback", "3");
  expect("a word on the restart", await page.$$eval(".messages", (all) => all.some((each) => /started again/.test(each.textContent))), true);
  await setControl(page, "#input-cutback", "3.5");
  expect("after a restart", await shownPowers(page), nativePowers(pathOf(examples[0]), "--cutback", "3.5"));

  // The keyboard alone: an example, a control, a code, a panel.
  await page.goto("about:blank");
  await page.goto(url);
  await ready(page);
  const tabTo = async (selector) => {
    for (let presses = 0; presses < 80; ++presses) {
      await page.keyboard.press("Tab");
      if (await page.evaluate((wanted) => document.activeElement?.matches(wanted), selector)) {
        return true;
      }
    }
    return false;
  };
  expect("to an example by Tab", await tabTo(".welcome button"), true);
  await page.keyboard.press("Enter");
  await page.waitForSelector("#power-table");
  expect("to a control by Tab", await tabTo("#input-cutback"), true);
  await page.keyboard.press("ArrowRight");
  await settled(page);
  expect("a slider by keys", await shownPowers(page), nativePowers(pathOf(examples[0]), "--cutback", "2.25"));
  expect("to a code by Tab", await tabTo("#power-table tr[data-code='64QAM'] button"), true);
  await page.keyboard.press("Enter");
  expect("to the panels by Tab", await tabTo("[role=tab][aria-selected=true]"), true);
  await page.keyboard.press("ArrowRight");
  await settled(page);
  expect("a panel by keys", await page.$eval("[role=tab][aria-selected=true]", (each) => each.id), "tab-why-not");

  // Dark, narrow and wide.
  await page.emulateMedia({ colorScheme: "dark" });
  await chooseExample(page, largest);
  await tab("steps");
  await accessible("dark");
  await picture("dark");
  for (const name of ["sweep", "check", "file"]) {
    await tab(name);
    await accessible(`dark ${name}`);
  }
  await page.emulateMedia({ colorScheme: "light" });
  for (const width of [360, 480, 768, 1024, 1280, 1920]) {
    await page.setViewportSize({ width, height: 900 });
    for (const name of ["steps", "sweep", "file"]) {
      await tab(name);
      expect(`${width} pixels, ${name}`, await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), true);
    }
    await tab("steps");
    await picture(`width-${width}`);
  }
  await page.setViewportSize({ width: 1600, height: 1000 });

  // Reports. No content becomes script.
  const hostile = join(work, "hostile.json");
  const attack = `</script><script>window.taken=1</script><img src=x onerror="window.taken=1"> \\ud800 <!-- ${"\ud800"}`;
  writeFileSync(hostile, readFileSync(pathOf(examples[3]), "utf8").replace("{", `{ // ${attack}\n`));
  await page.goto(pathToFileURL(reported("hostile.html", hostile)).href);
  await page.waitForSelector("#power-table");
  await tab("file");
  expect("hostile content", [await page.evaluate(() => window.taken ?? null),
    await page.$eval("#file-text", (area) => area.value.includes("</script><script>window.taken=1</script><img src=x onerror"))], [null, true]);
  expect("powers of a hostile report", await shownPowers(page), nativePowers(hostile));
  await page.goto(pathToFileURL(reported("asked.html", pathOf(examples[0]), "--cutback", "3", "--code", "64QAM", "--power", "18")).href);
  await page.waitForSelector(".advice");
  expect("a report opened at its question", await shownPowers(page), nativePowers(pathOf(examples[0]), "--cutback", "3"));
  await page.goto(pathToFileURL(reported("two.html", pathOf(examples[0]), pathOf(examples[1]))).href);
  await page.waitForSelector("#diff table");
  await page.goto(pathToFileURL(reported("log.html", "--trace-log", log)).href);
  await page.waitForSelector("#log tbody tr");
  await page.goto(pathToFileURL(reported("fleet.html", "--list", paths)).href);
  await page.waitForSelector("#fleet-radios tbody tr");
  expect("a fleet's report", await page.$$eval("#fleet-radios tbody tr", (rows) => rows.length), examples.length);
  expect("no report over another file", native("report", pathOf(examples[0]), "-o", join(work, "fleet.html"), "--page", pagePath).status, 4);

  // The time of a recalculation, with what the native tool takes for the same question.
  await page.goto(url);
  await ready(page);
  await chooseExample(page, largest);
  const times = await page.evaluate(async (content) => {
    const best = (work) => {
      const taken = [];
      for (let round = 0; round < 60; ++round) {
        const start = performance.now();
        work(round);
        taken.push(performance.now() - start);
      }
      return taken.sort((one, two) => one - two)[10];
    };
    const engineTime = best((round) =>
      globalThis.qorEngine.ask({ ask: "explain", changes: [{ input: "cutback", value: String(round % 10) }] }, content));
    const slider = document.querySelector("#input-cutback");
    const whole = [];
    for (let round = 0; round < 60; ++round) {
      const start = performance.now();
      slider.value = String(round % 10);
      slider.dispatchEvent(new Event("input", { bubbles: true }));
      await new Promise((done) => setTimeout(done, 0));
      whole.push(performance.now() - start);
    }
    return { engine: engineTime, whole: whole.sort((one, two) => one - two)[10] };
  }, readFileSync(pathOf(largest), "utf8"));
  const many = join(work, "many.ndjson");
  writeFileSync(many, (plainText(pathOf(largest)) + "\n").repeat(400));
  writeFileSync(join(work, "few.ndjson"), plainText(pathOf(largest)) + "\n");
  const timed = (file) => Math.min(...Array.from({ length: 5 }, () => {
    const start = process.hrtime.bigint();
    native("batch", "--quiet", file);
    return Number(process.hrtime.bigint() - start) / 1e6;
  }));
  const nativeTime = (timed(many) - timed(join(work, "few.ndjson"))) / 399;
  console.log(`recalculation: ${times.engine.toFixed(2)} ms in the engine, ${times.whole.toFixed(2)} ms with drawing; ` +
    `native ${nativeTime.toFixed(2)} ms, ratio ${(times.engine / nativeTime).toFixed(1)}`);
  expect("at most four times the native time", times.engine <= 4 * nativeTime, true);

  expect("no request leaves", requests.filter((each) => !/^(file|blob|data|about):/.test(each)), []);
  expect("nothing goes wrong", troubles, []);
  await browser.close();
}

async function inFirefox() {
  const puppeteer = require("puppeteer-core");
  const browser = await puppeteer.launch({
    browser: "firefox", executablePath: "/usr/bin/firefox-esr", headless: true,
    userDataDir: join(work, "firefox"), env: { ...process.env, HOME: work },
  });
  const page = await browser.newPage();
  await figures(page, pathToFileURL(resolve(pagePath)).href);
  await page.goto(pathToFileURL(reported("firefox.html", pathOf(examples[0]), "--cutback", "3")).href);
  await page.waitForSelector("#power-table");
  expect("a report in Firefox", await shownPowers(page), nativePowers(pathOf(examples[0]), "--cutback", "3"));
  await browser.close();
}

if (pictures) {
  mkdirSync(pictures, { recursive: true });
}
try {
  for (const [name, run] of [["chromium", inChromium], ["firefox", inFirefox]]) {
    if (!wantedBrowser || wantedBrowser === name) {
      console.log(`${name}:`);
      await run();
    }
  }
} catch (error) {
  ++failed;
  console.log(error);
}
rmSync(work, { recursive: true, force: true });
console.log(`${passed} passed, ${failed} failed`);
process.exit(failed === 0 && passed > 0 ? 0 : 1);
