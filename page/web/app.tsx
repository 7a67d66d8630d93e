// The page: one radio file with live controls, and the views of two files, of a log and of a fleet.

import { Fragment, h } from "preact";
import { useCallback, useEffect, useMemo, useRef, useState } from "preact/hooks";
import type { FleetLine, FleetReport, Check, Choice, Diff, Inputs, Powers, Progress, RuleStyle, Sweep, WhyNot } from "./answers";
import { Controls } from "./controls";
import { EngineRestarted } from "./engine";
import type { Answer, Change, Engine, Request } from "./engine";
import { save } from "./format";
import { fragmentOf, viewIn } from "./link";
import type { Radio, View } from "./link";
import { batchAnswerIn, FleetView, LogView } from "./many";
import type { Fleet, Log } from "./many";
import { DiffPanel, Editor, Findings, Messages, PowerTable, Scroll, SweepPanel, Tabs, Waterfall, WhyNotPanel } from "./panels";
import { Patterns, PowerPlot, Swatch } from "./plot";
import type { Legend } from "./plot";

export interface Report {
  files?: Radio[];
  log?: Radio;
  fleet?: Radio[];
  changes?: Change[];
  code?: string;
  tab?: string;
  over?: string;
  wanted?: string;
}

const badRadioFile = 2;
const slice = 16;
const linesInSlice = 25;
const radiosInReport = 1000;
const logSlice = 200000;
const stoppedHere = "the engine stopped at this one";

const pause = () => new Promise((resolve) => setTimeout(resolve, 0));

function viewOf(radio: Radio, report: Report = {}): View {
  return {
    radio,
    other: null,
    changes: report.changes ?? [],
    code: report.code ?? null,
    tab: report.tab ?? "steps",
    over: report.over ?? "cutback",
    wanted: report.wanted ?? "",
  };
}

type Kind = "radio" | "fleet" | "log";

/** What a text is by its looks; the engine says what is wrong with it. */
function kindOf(text: string): Kind {
  const first = text.trimStart().split("\n", 1)[0].trim();
  const rest = text.trimStart().slice(first.length).trim();
  try {
    const line = JSON.parse(first.slice(first.indexOf("{"))) as Record<string, unknown>;
    return "call" in line ? "log" : "radioFile" in line ? "fleet" : rest === "" && first.startsWith("{") ? "radio" : "fleet";
  } catch {
    return /^[{/\ufeff]/.test(first) ? "radio" : "log";
  }
}

/** Files of one name from several folders are several radios. */
function withOwnNames(files: Radio[]): Radio[] {
  const seen = new Map<string, number>();
  return files.map((file) => {
    const count = (seen.get(file.name) ?? 0) + 1;
    seen.set(file.name, count);
    return count === 1 ? file : { ...file, name: `${file.name} (${count})` };
  });
}

/**
 * Answers of a batch become the radio files that they are about, where those are among the radios: a name without its
 * folder has to belong to one answer and to one file, or nobody knows whose file it is.
 */
function withTheirFiles(radios: Radio[]): Radio[] {
  const answers = radios.map((radio) => (radio.isAnswer ? batchAnswerIn(radio.text) : null));
  const nameOf = (index: number) => answers[index]?.radioFile?.split("/").pop() ?? "";
  const files = new Map(radios.filter((_, index) => !answers[index]).map((radio) => [radio.name, radio]));
  const wanted = new Map<string, number>();
  radios.forEach((_, index) => wanted.set(nameOf(index), (wanted.get(nameOf(index)) ?? 0) + 1));
  const used = new Set<Radio>();
  const found = radios.map((radio, index) => {
    const answer = answers[index];
    const name = nameOf(index);
    const file = files.get(name);
    if (!answer || !file || wanted.get(name) !== 1 || files.has(`${name} (2)`)) {
      return radio;
    }
    used.add(file);
    return { name: answer.id ?? answer.radioFile ?? file.name, text: file.text, path: answer.radioFile ?? "" };
  });
  return found.filter((radio) => !used.has(radio));
}

function changedName(name: string): string {
  return `${name.replace(/\.json$/, "")}-changed.json`;
}

export function App({ engine, examples, report }: { engine: Engine; examples: Radio[]; report: Report | null }) {
  const [view, setView] = useState<View | null>(null);
  const [undoable, setUndoable] = useState<View[]>([]);
  const [notice, setNotice] = useState<string | null>(null);
  const [fleet, setFleet] = useState<Fleet | null>(null);
  const [log, setLog] = useState<Log | null>(null);
  const [place, setPlace] = useState<{ line: number; column: number; times: number } | null>(null);
  const [isOver, setIsOver] = useState(false);
  const lastKey = useRef("");
  const running = useRef(0);
  const ownFragment = useRef("");

  const ask = useCallback(
    (request: Request, text = ""): Answer | null => {
      try {
        return engine.ask(request, text);
      } catch (error) {
        if (!(error instanceof EngineRestarted)) {
          throw error;
        }
        setNotice(`The engine stopped and was started again (${error.message}). Nothing of yours is lost.`);
        return null;
      }
    },
    [engine],
  );

  const legend = useMemo<Legend>(() => {
    const answer = ask({ ask: "legend" });
    const rules = answer ? (JSON.parse(answer.text) as { rules: RuleStyle[] }).rules : [];
    return Object.fromEntries(rules.map((rule) => [rule.rule, rule]));
  }, [ask]);

  const groupings = useMemo(() => parsed<string[]>(ask({ ask: "fleet-groupings" })) ?? [], [ask]);

  const reportOf = useCallback(() => parsed<FleetReport>(ask({ ask: "fleet" })), [ask]);

  /** Has the engine count answers that are there. */
  const countAgain = useCallback(
    ({ lines, radios }: Fleet, by: string) =>
      lines.forEach((line, index) => {
        // What is no answer has to stay none.
        const isAsGiven = radios[index].isAnswer && line.error !== stoppedHere;
        ask({ ask: "fleet-radio", first: index === 0, by, answer: true },
          isAsGiven ? radios[index].text : JSON.stringify(line));
      }),
    [ask],
  );

  const saveFleet = useCallback(
    (form: "csv" | "svg") => {
      if (fleet && JSON.stringify(reportOf()) !== JSON.stringify(fleet.report)) {
        countAgain(fleet, fleet.by); // another engine does not know them
      }
      const answer = ask({ ask: "fleet", form });
      if (answer) {
        save(`fleet.${form}`, form === "svg" ? "image/svg+xml" : "text/csv", answer.text);
      }
    },
    [ask, countAgain, fleet, reportOf],
  );

  /** Another state that undo leads back from; steps with the same key are one. */
  const change = useCallback(
    (next: View, key = "") => {
      if (view && (key === "" || key !== lastKey.current)) {
        setUndoable((before) => [...before.slice(-99), view]);
      }
      lastKey.current = key;
      setView(next);
    },
    [view],
  );

  /** Takes a log away, of which the reading may go on, and makes room for what stands behind it. */
  const closeLog = useCallback(() => {
    setLog((shown) => {
      if (shown) {
        ++running.current;
      }
      return null;
    });
  }, []);

  /** Takes the radio away; undo brings it back as it was. */
  const leave = useCallback(() => {
    if (view) {
      setUndoable((before) => [...before.slice(-99), view]);
    }
    lastKey.current = "";
    setView(null);
  }, [view]);

  const undo = useCallback(() => {
    closeLog();
    setUndoable((before) => {
      if (before.length > 0) {
        setView(before[before.length - 1]);
      }
      return before.slice(0, -1);
    });
    lastKey.current = "";
  }, [closeLog]);

  const open = useCallback(
    (radio: Radio, from: Report = {}) => {
      const next = viewOf(radio, from);
      closeLog();
      setPlace(null);
      change(view ? { ...next, tab: from.tab ?? (view.tab === "diff" ? "steps" : view.tab) } : next);
    },
    [change, closeLog, view],
  );

  const readLog = useCallback(
    async (radio: Radio) => {
      const run = ++running.current;
      const read: Log = { name: radio.name, queries: [], messages: [], isDone: false };
      setFleet(null);
      setLog({ ...read });
      for (let at = 0; ; ) {
        const end = radio.text.indexOf("\n", at + logSlice);
        const isLast = end < 0;
        const lines = radio.text.slice(at, isLast ? undefined : end + 1);
        const answer = ask({ ask: "log", first: at === 0, last: isLast }, lines);
        if (answer) {
          read.queries.push(...answer.text.split("\n").filter(Boolean).map((line) => JSON.parse(line)));
          read.messages.push(...answer.messages);
        }
        read.isDone = isLast || !answer;
        if (run === running.current) {
          setLog({ ...read });
        }
        if (read.isDone || run !== running.current) {
          return;
        }
        at = end + 1;
        await pause();
        if (run !== running.current) {
          return;
        }
      }
    },
    [ask],
  );

  const readFleet = useCallback(
    async (radios: Radio[]) => {
      const run = ++running.current;
      const read: Fleet = { number: run, radios, lines: [], by: "", report: null, isDone: radios.length === 0 };
      setLog(null);
      leave();
      setFleet({ ...read });
      for (let at = 0; at < radios.length; at += linesInSlice) {
        const some = radios.slice(at, at + linesInSlice);
        // In a line of a fleet a line end is no more than a blank; comments of // would swallow the rest.
        for (const [index, radio] of some.entries()) {
          const { name, path, isAnswer } = radio;
          const answer = ask(
            { ask: "fleet-radio", first: at + index === 0, name: name === path ? "" : name, path, answer: isAnswer },
            radio.text,
          );
          read.lines.push(
            parsed<FleetLine>(answer) ??
              { id: null, radioFile: null, error: answer?.messages[0] ?? stoppedHere, place: "" },
          );
          if (!answer) {
            countAgain(read, "");
            setNotice(`The engine stopped at ${radio.name} and was started again. Nothing else of the fleet is lost.`);
          }
        }
        read.isDone = at + linesInSlice >= radios.length;
        if (read.isDone || at % radiosInReport === 0) {
          read.report = reportOf();
        }
        if (run !== running.current) {
          return;
        }
        setFleet({ ...read });
        await pause();
        if (run !== running.current) {
          return;
        }
      }
    },
    [ask, countAgain, leave, reportOf],
  );

  const groupFleet = useCallback(
    (by: string) => {
      if (fleet) {
        countAgain(fleet, by);
        setFleet({ ...fleet, by, report: reportOf() });
      }
    },
    [countAgain, fleet, reportOf],
  );

  const take = useCallback(
    async (files: Radio[]) => {
      if (files.length === 0) {
        return;
      }
      const kinds = files.map((file) => kindOf(file.text));
      if (files.length === 1 && kinds[0] === "log") {
        await readLog(files[0]);
      } else if (files.length === 1 && kinds[0] === "radio") {
        setFleet(null);
        open(files[0]);
      } else if (files.length === 2 && kinds.every((kind) => kind === "radio")) {
        setFleet(null);
        closeLog();
        change({ ...viewOf(files[0]), other: files[1], tab: "diff" });
      } else {
        await readFleet(
          withTheirFiles(withOwnNames(files).flatMap((file, index) =>
            kinds[index] !== "fleet"
              ? [file]
              : file.text.split("\n").filter((line) => line.trim() !== "").map((line, at, [firstLine]) => {
                  const tab = line.startsWith("{") ? -1 : line.indexOf("\t");
                  return {
                    name: tab < 0 ? `${file.name}, line ${at + 1}` : line.slice(0, tab),
                    text: line.slice(tab + 1),
                    isAnswer: batchAnswerIn(firstLine) !== null,
                  };
                }),
          )),
        );
      }
    },
    [change, closeLog, open, readFleet, readLog],
  );

  const takeFiles = useCallback(
    async (list: FileList | null) => {
      const decoder = new TextDecoder("utf-8", { ignoreBOM: true });
      const files = await Promise.all(
        [...(list ?? [])].map(async (file) => ({ name: file.name, text: decoder.decode(await file.arrayBuffer()) })),
      );
      await take(files);
    },
    [take],
  );

  // What is shown first, and a link that is followed later.
  useEffect(() => {
    const follow = async () => {
      if (location.hash !== ownFragment.current) {
        const linked = await viewIn(location.hash);
        if (linked) {
          setFleet(null);
          closeLog();
          setView(linked);
          return true;
        }
      }
      return false;
    };
    const begin = async () => {
      if (await follow()) {
        return;
      }
      if (report?.log) {
        await readLog(report.log);
      } else if (report?.fleet) {
        const [first] = report.fleet;
        const isAnswer = batchAnswerIn(first?.text ?? "") !== null;
        await readFleet(report.fleet.map((radio) => ({ ...radio, isAnswer })));
      } else if (report?.files?.length) {
        setView({
          ...viewOf(report.files[0], report),
          other: report.files[1] ?? null,
          tab: report.files.length > 1 ? "diff" : report.tab ?? "steps",
        });
      }
    };
    void begin();
    const onHash = () => void follow();
    addEventListener("hashchange", onHash);
    return () => removeEventListener("hashchange", onHash);
  }, []);

  useEffect(() => {
    if (!view) {
      return undefined;
    }
    const timer = setTimeout(async () => {
      ownFragment.current = await fragmentOf(view);
      history.replaceState(null, "", ownFragment.current);
    }, 250);
    return () => clearTimeout(timer);
  }, [view]);

  useEffect(() => {
    const onKey = (event: KeyboardEvent) => {
      const isText = event.target instanceof HTMLTextAreaElement;
      if ((event.ctrlKey || event.metaKey) && event.key === "z" && !event.shiftKey && !isText) {
        event.preventDefault();
        undo();
      }
    };
    addEventListener("keydown", onKey);
    return () => removeEventListener("keydown", onKey);
  }, [undo]);

  return (
    <div
      class={`page${isOver ? " over" : ""}`}
      onDragOver={(event) => {
        event.preventDefault();
        setIsOver(true);
      }}
      onDragLeave={() => setIsOver(false)}
      onDrop={(event) => {
        event.preventDefault();
        setIsOver(false);
        void takeFiles(event.dataTransfer?.files ?? null);
      }}
    >
      <Patterns rules={Object.values(legend)} />
      <header>
        <h1>
          qor-power <span class="name">{log ? "" : view?.radio.name}</span>
        </h1>
        <div class="row">
          <label class="button">
            Open files …
            <input
              id="open-files"
              type="file"
              multiple
              onChange={(event) => {
                const input = event.currentTarget;
                void takeFiles(input.files).then(() => (input.value = ""));
              }}
            />
          </label>
          <label class="hidden" for="examples">Example radio</label>
          <select
            id="examples"
            value=""
            onChange={(event) => {
              const example = examples.find((each) => each.name === event.currentTarget.value);
              event.currentTarget.value = "";
              if (example) {
                setFleet(null);
                open(example);
              }
            }}
          >
            <option value="">Examples …</option>
            {examples.map((example) => (
              <option key={example.name}>{example.name}</option>
            ))}
          </select>
          <button id="undo" disabled={undoable.length === 0} onClick={undo}>Undo</button>
          {fleet && view && <button onClick={leave}>Back to the fleet</button>}
        </div>
      </header>
      {notice && (
        <div class="messages" role="alert">
          <p>{notice}</p>
          <button id="close-notice" onClick={() => setNotice(null)}>Close</button>
        </div>
      )}
      <main>
        {log ? (
          <LogView log={log} legend={legend} cancel={() => { ++running.current; setLog({ ...log, isDone: true }); }} />
        ) : view ? (
          <RadioView view={view} ask={ask} legend={legend} change={change} place={place} setPlace={setPlace} />
        ) : fleet ? (
          <FleetView key={fleet.number} fleet={fleet} legend={legend} groupings={groupings} open={(radio) => open(radio)}
            cancel={() => { ++running.current; setFleet({ ...fleet, report: reportOf(), isDone: true }); }}
            group={groupFleet} save={saveFleet} />
        ) : (
          <Welcome examples={examples} open={(radio) => open(radio)} />
        )}
      </main>
      <footer>
        Everything is computed in this page. Nothing leaves your computer.
      </footer>
    </div>
  );
}

function Welcome({ examples, open }: { examples: Radio[]; open(radio: Radio): void }) {
  return (
    <section class="welcome">
      <h2>How much transmit power may this radio deliver, and why?</h2>
      <p>
        Drop a radio file here, or open one. Two files are compared, many files or one with a radio on each line are a
        fleet, and a log of a node's traces is explained. Or begin with an example:
      </p>
      <ul class="examples">
        {examples.map((example) => (
          <li key={example.name}>
            <button class="link" onClick={() => open(example)}>{example.name}</button>
          </li>
        ))}
      </ul>
    </section>
  );
}

interface RadioProps {
  view: View;
  ask(request: Request, text?: string): Answer | null;
  legend: Legend;
  change(next: View, key?: string): void;
  place: { line: number; column: number; times: number } | null;
  setPlace(place: { line: number; column: number; times: number } | null): void;
}

function parsed<Type>(answer: Answer | null): Type | null {
  return answer && answer.text !== "" ? (JSON.parse(answer.text) as Type) : null;
}

function RadioView({ view, ask, legend, change, place, setPlace }: RadioProps) {
  const { radio, changes } = view;
  const format = changes.filter(isOfAsker);
  const question = { name: radio.name, changes };

  // The last answers stay where the text in the editor is no radio file for the moment.
  const kept = useRef<{ inputs: Inputs | null; requests: Choice[]; inFile: Powers | null; powers: Powers | null }>({
    inputs: null, requests: [], inFile: null, powers: null,
  });
  const formatKey = JSON.stringify(format);
  // What is set at a place shows in the controls as well.
  const settings = changes.filter((each) => isOfAsker(each) || each.input === "set");
  const settingsKey = JSON.stringify(settings);
  useMemo(() => {
    const inputs = parsed<Inputs>(ask({ ask: "inputs", changes: settings }, radio.text));
    kept.current.inputs = inputs ?? kept.current.inputs;
  }, [radio.text, settingsKey, ask]);
  const inFile = useMemo(() => {
    // At a request those behind it are not there.
    const whole = parsed<Inputs>(ask({ ask: "inputs" }, radio.text));
    kept.current.requests = whole?.requests ?? kept.current.requests;
    const explained = parsed<Powers>(ask({ ask: "explain", changes: format }, radio.text));
    kept.current.inFile = explained ?? kept.current.inFile;
    return explained;
  }, [radio.text, formatKey, ask]);
  const explainedAnswer = useMemo(() => ask({ ask: "explain", ...question }, radio.text), [radio, changes, ask]);
  const explained = parsed<Powers>(explainedAnswer);
  kept.current.powers = explained ?? kept.current.powers;
  const check = useMemo(() => parsed<Check>(ask({ ask: "check", name: radio.name }, radio.text)), [radio, ask]);
  const isBad = explainedAnswer?.outcome === badRadioFile;
  const isOld = explained === null && kept.current.powers !== null;
  const powers = explained ?? kept.current.powers;
  const inputs = kept.current.inputs;

  const row = powers?.rows.find((each) => each.name === view.code) ?? powers?.rows[0];
  const isChanged = changes.some((each) => !isOfAsker(each));
  const command = useMemo(
    () => ask({ ask: "command", command: view.tab === "steps" ? "explain" : "table", ...question }, radio.text)?.text.trim() ?? "",
    [radio, changes, view.tab, ask],
  );
  const [copied, setCopied] = useState(false);

  const set = (input: string, value: string | null, isLasting: boolean) => {
    const others = changes.filter((each) => each.input !== input);
    const own = inputs?.inputs.find((each) => each.input === input);
    const isAsInFile = value === null || (value === own?.value) || (input === "frame-format" && value === "0") || (input === "request" && value === kept.current.requests[0].value);
    change({ ...view, changes: isAsInFile ? others : [...others, { input, value }] }, isLasting ? "" : `slide ${input}`);
  };
  const goTo = (line: number, column: number) => {
    change({ ...view, tab: "file" }, "go");
    setPlace({ line, column, times: (place?.times ?? 0) + 1 });
  };
  const go = (pointer: string) => {
    const answer = parsed<{ places: { line: number; column: number }[] }>(ask({ ask: "places", pointers: [pointer] }, radio.text));
    if (answer) {
      goTo(answer.places[0].line, answer.places[0].column);
    }
  };
  const choose = (code: string) => change({ ...view, code }, "choose");
  const saveChanged = () => {
    const answer = ask({ ask: "change", ...question }, radio.text);
    if (answer) {
      save(changedName(radio.name), "application/json", answer.text);
    }
  };
  const saveAnswer = (request: Request, name: string, type: string) => {
    const answer = ask({ ...question, ...request }, radio.text);
    if (answer) {
      save(name, type, answer.text);
    }
  };
  const base = radio.name.replace(/\.json$/, "");
  const errors = check?.files.flatMap((file) => (file.isRadioFile ? [] : file.findings)) ?? [];
  const findings = check?.files.flatMap((file) => file.findings).length ?? 0;

  const tabs: [string, string][] = [
    ["steps", "Why"],
    ["why-not", "What would it take?"],
    ["sweep", "Over an input"],
    ["check", findings > 0 ? `Check (${findings})` : "Check"],
    ["diff", "Compare"],
    ["file", "File"],
  ];

  return (
    <>
      <div class="radio">
        <aside aria-label="Inputs">
          <div class="row between">
            <h2>Inputs</h2>
            <button id="reset-all" disabled={changes.length === 0} onClick={() => change({ ...view, changes: [] })}>
              All as in the file
            </button>
          </div>
          {inputs && <Controls inputs={inputs} requests={kept.current.requests} changes={changes} set={set} />}
          {changes.filter((each) => each.input === "set").map((each) => (
            <div class="control changed">
              <span class="pointer">{each.value.slice(0, each.value.indexOf("="))}</span>
              <button class="quiet reset" aria-label={`${each.value.slice(0, each.value.indexOf("="))} as in the file`}
                onClick={() => change({ ...view, changes: changes.filter((other) => other !== each) })}>↺</button>
              <span>{each.value.slice(each.value.indexOf("=") + 1)}</span>
            </div>
          ))}
        </aside>
        <div class="column">
        <div class="answer">
          {isBad && <Messages messages={["The text is no radio file now."]} />}
          {!isBad && <Messages messages={explainedAnswer?.messages ?? []} />}
          {isOld && <p class="warning">What is shown is from before.</p>}
          {powers && (
            <>
              <p class="heading">
                <b>{powers.family}</b> · {powers.frameFormat.channelSpacingMHz} MHz · {powers.frameFormat.market} · DPD{" "}
                {powers.frameFormat.dpdVersion}
                {powers.minPowerCentiDbm !== null && (
                  <>
                    {" "}· minimum <b data-minimum={powers.minPowerCentiDbm}>{(powers.minPowerCentiDbm / 100).toFixed(2)} dBm</b>
                  </>
                )}
              </p>
              <div class="powers-and-plot">
                <figure>
                  <Scroll label="plot of the powers">
                    <PowerPlot powers={powers} inFile={isChanged ? inFile : null} legend={legend}
                      chosen={row?.name ?? null} choose={choose} />
                  </Scroll>
                  <figcaption>
                    {[...new Set(powers.rows.map((each) => each.rule ?? each.explanation?.rule ?? ""))]
                      .filter((rule) => legend[rule])
                      .map((rule) => (
                        <span class="key"><Swatch rule={legend[rule]} /> {legend[rule].words}</span>
                      ))}
                    {powers.minPowerCentiDbm !== null && <span class="key"><i class="floor-key" /> minimum</span>}
                    {isChanged && <span class="key"><i class="ghost-key" /> as in the file</span>}
                  </figcaption>
                </figure>
                <div class="scroll">
                  <PowerTable powers={powers} inFile={isChanged ? inFile : null} legend={legend}
                    chosen={row?.name ?? null} choose={choose} />
                </div>
              </div>
            </>
          )}
          <div class="row tools">
            <button id="save-file" onClick={saveChanged}>Save radio file</button>
            <button id="save-svg" onClick={() => saveAnswer({ ask: "plot", form: "svg" }, `${base}.svg`, "image/svg+xml")}>
              Save picture
            </button>
            <button id="save-csv" onClick={() => saveAnswer({ ask: "table", form: "csv" }, `${base}.csv`, "text/csv")}>
              Save table
            </button>
            <code id="command">{command}</code>
            <button
              id="copy-command"
              onClick={() => {
                void navigator.clipboard?.writeText(command).then(() => setCopied(true), () => setCopied(false));
                setTimeout(() => setCopied(false), 1500);
              }}
            >
              {copied ? "Copied" : "Copy"}
            </button>
          </div>
        </div>
      <Tabs tabs={tabs} tab={view.tab} setTab={(tab) => change({ ...view, tab }, "tab")} />
      <section id="panel" role="tabpanel" aria-labelledby={`tab-${view.tab}`} tabIndex={-1}>
        {view.tab === "steps" && row && (
          <>
            <h2>
              {row.name} <span class="power">{row.maxPowerCentiDbm === null ? "no power" : `${(row.maxPowerCentiDbm / 100).toFixed(2)} dBm`}</span>
            </h2>
            {row.explanation && <Waterfall explanation={row.explanation} legend={legend} go={go} />}
          </>
        )}
        {view.tab === "why-not" && row && <WhyNotTab {...{ view, ask, change, row: row.name, go }} />}
        {view.tab === "sweep" && inputs && <SweepTab {...{ view, ask, change, inputs }} />}
        {view.tab === "check" && check && <Findings check={check} goTo={goTo} />}
        {view.tab === "diff" && <DiffTab {...{ view, ask, change, legend }} />}
        {view.tab === "file" && (
          <Editor text={radio.text} errors={errors} place={place}
            edit={(text) => change({ ...view, radio: { ...radio, text } }, "typing")} />
        )}
      </section>
        </div>
      </div>
    </>
  );
}

type TabProps = Pick<RadioProps, "view" | "ask" | "change">;

interface Searched {
  answer: WhyNot | null;
  messages: string[];
  progress: Progress | null;
}

const nothingSearched: Searched = { answer: null, messages: [], progress: null };

/** Single changes, and pairs where none alone does it: a search in slices. */
function WhyNotTab({ view, ask, change, row, go }: TabProps & { row: string; go(pointer: string): void }) {
  const { radio, changes, wanted } = view;
  const [state, setState] = useState(nothingSearched);
  const run = useRef(0);
  useEffect(() => {
    const mine = ++run.current;
    const search = async () => {
      if (wanted === "") {
        setState(nothingSearched);
        return;
      }
      const question = { name: radio.name, changes, modulations: [row], power: wanted, most: "2" };
      for (let isFirst = true; ; isFirst = false) {
        const answer = ask({ ask: "search", first: isFirst, ...(isFirst ? question : {}) }, isFirst ? radio.text : "");
        const told = parsed<WhyNot | Progress>(answer);
        const messages = answer?.messages ?? [];
        if (told === null || !("of" in told)) {
          setState({ answer: told, messages, progress: null });
          return;
        }
        // What was shown stays until there is something else.
        setState((before) => ({ ...before, progress: told }));
        await pause();
        if (mine !== run.current) {
          return;
        }
      }
    };
    void search();
    return () => void ++run.current;
  }, [radio, changes, wanted, row, ask]);
  return (
    <WhyNotPanel
      code={row}
      wanted={wanted}
      setWanted={(power) => change({ ...view, wanted: power }, "wanted")}
      answer={state.answer}
      messages={state.messages}
      progress={state.progress}
      cancel={() => {
        ++run.current;
        setState(nothingSearched);
      }}
      go={go}
      apply={(advice) => {
        // Words of a command line: an option and its value each. Settings are made one by one.
        const added: Change[] = advice.flatMap(({ options }) =>
          options.flatMap((option, at) => (at % 2 === 0 ? [{ input: option.slice(2), value: options[at + 1] }] : [])));
        const others = changes.filter((each) => each.input === "set" || added.every((one) => one.input !== each.input));
        change({ ...view, changes: [...others, ...added] });
      }}
    />
  );
}

/** What is asked for, rather than what the radio is like. */
function isOfAsker(change: Change): boolean {
  return change.input === "frame-format" || change.input === "request";
}

/** What is varied is not set as well. */
function othersThan(input: string, changes: Change[]): Change[] {
  return changes.filter((each) => each.input !== input);
}

function SweepTab({ view, ask, change, inputs }: TabProps & { inputs: Inputs }) {
  const { radio, changes, over } = view;
  const [state, setState] = useState<{ sweep: Sweep | null; messages: string[]; progress: string | null }>({
    sweep: null, messages: [], progress: null,
  });
  const run = useRef(0);
  useEffect(() => {
    const mine = ++run.current;
    const axis = over.split("=")[0];
    const kept = othersThan(axis, changes);
    const separator = axis === "booster" ? "/" : ",";
    const sweepOver = (some: string[]) =>
      ask({ ask: "sweep", name: radio.name, changes: kept, over: [`${axis}=${some.join(separator)}`] }, radio.text);
    const work = async () => {
      const asked = ask({ ask: "values", changes: kept, over: [over] }, radio.text);
      const values = parsed<{ values: string[] }>(asked)?.values ?? [];
      let whole = null as Sweep | null;
      const messages: string[] = [...(asked?.messages ?? [])];
      if (values.length === 0) {
        setState({ sweep: null, messages, progress: null });
      }
      for (let at = 0; at < values.length; at += slice) {
        const answer = sweepOver(values.slice(at, at + slice));
        const part = parsed<Sweep>(answer);
        messages.push(...(answer?.messages ?? []));
        if (part) {
          whole = whole ? { ...whole, points: [...whole.points, ...part.points] } : part;
        }
        const done = Math.min(values.length, at + slice);
        setState({ sweep: whole, messages, progress: done < values.length && part ? `${done} of ${values.length}` : null });
        if (!part) {
          return;
        }
        await pause();
        if (mine !== run.current) {
          return;
        }
      }
    };
    void work();
    return () => void ++run.current;
  }, [radio, changes, over, inputs, ask]);
  return (
    <SweepPanel
      axes={inputs.inputs}
      over={over}
      setOver={(next) => change({ ...view, over: next }, "over")}
      sweep={state.sweep}
      messages={state.messages}
      progress={state.progress}
      cancel={() => {
        ++run.current;
        setState({ ...state, progress: null });
      }}
      saveCsv={() => {
        const others = othersThan(over.split("=")[0], changes);
        const answer = ask({ ask: "sweep", form: "csv", name: radio.name, changes: others, over: [over] }, radio.text);
        if (answer) {
          save(`${radio.name.replace(/\.json$/, "")}-${over.split("=")[0]}.csv`, "text/csv", answer.text);
        }
      }}
    />
  );
}

function DiffTab({ view, ask, change, legend }: TabProps & { legend: Legend }) {
  const { radio, changes, other } = view;
  const isOwn = other === null;
  const answer = useMemo(() => {
    // Without a second file the changes are compared with the file.
    const changed = isOwn ? ask({ ask: "change", changes }, radio.text)?.text : other.text;
    const format = changes.filter(isOfAsker);
    return ask(
      { ask: "diff", name: radio.name, changes: isOwn ? format : changes, other: changed,
        otherName: isOwn ? "changed" : other.name },
      radio.text,
    );
  }, [radio, changes, other, ask]);
  const diff = parsed<Diff>(answer);
  return (
    <>
      <div class="row">
        <label class="button">
          Compare with …
          <input
            id="compare-with"
            type="file"
            onChange={async (event) => {
              const input = event.currentTarget;
              const file = input.files?.[0];
              if (file) {
                const text = new TextDecoder("utf-8", { ignoreBOM: true }).decode(await file.arrayBuffer());
                change({ ...view, other: { name: file.name, text } });
              }
              input.value = "";
            }}
          />
        </label>
        {other && <button onClick={() => change({ ...view, other: null })}>Compare with the changes</button>}
        {isOwn && changes.length === 0 && <span class="note">Move an input, or choose a second file.</span>}
      </div>
      <Messages messages={answer?.messages ?? []} />
      {diff && <DiffPanel diff={diff} legend={legend} names={isOwn ? ["in the file", "changed"] : [radio.name, other.name]} />}
    </>
  );
}
