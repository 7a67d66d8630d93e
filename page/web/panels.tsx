// What stands below the picture: each panel shows the answer to one question.

import { Fragment, h } from "preact";
import type { ComponentChildren } from "preact";
import { useEffect, useRef, useState } from "preact/hooks";
import type { Advice, Check, Diff, Explanation, Finding, Powers, Progress, Sweep, WhyNot } from "./answers";
import type { Input } from "./answers";
import { decibels, indexOf, signed } from "./format";
import { labelsOf, SweepPlot, Swatch, ticksOf } from "./plot";
import type { Legend } from "./plot";

export type Go = (pointer: string) => void;

/** What may be wider than the window; without a button of its own the keyboard could not get to it. */
export function Scroll({ label, children }: { label: string; children: ComponentChildren }) {
  return <div class="scroll" role="group" aria-label={label} tabIndex={0}>{children}</div>;
}

export function RuleName({ rule, legend, words }: { rule: string; legend: Legend; words?: string }) {
  const style = legend[rule];
  return (
    <span class="rule-name">
      {style && <Swatch rule={style} />}
      {words ?? style?.words ?? rule}
    </span>
  );
}

export function PowerTable(props: {
  powers: Powers;
  inFile: Powers | null;
  legend: Legend;
  chosen: string | null;
  choose?: (name: string) => void;
}) {
  const ghosts = new Map((props.inFile?.rows ?? []).map((row) => [row.name, row.maxPowerCentiDbm]));
  return (
    <table class="powers" id="power-table">
      <thead>
        <tr>
          <th scope="col">Code</th>
          <th scope="col" class="number">Max power/dBm</th>
          {props.inFile && <th scope="col" class="number">In the file</th>}
          <th scope="col">Limited by</th>
        </tr>
      </thead>
      <tbody>
        {props.powers.rows.map((row) => {
          const ghost = ghosts.get(row.name);
          return (
            <tr key={row.name} class={row.name === props.chosen ? "chosen" : ""} data-code={row.name}
              data-rule={row.rule ?? row.explanation?.rule}>
              <th scope="row">
                {props.choose ? (
                  <button class="link" aria-pressed={row.name === props.chosen} onClick={() => props.choose?.(row.name)}>
                    {row.name}
                  </button>
                ) : (
                  row.name
                )}
              </th>
              <td class="number" data-power={row.maxPowerCentiDbm ?? "none"}>
                {decibels(row.maxPowerCentiDbm)}
              </td>
              {props.inFile && <td class="was">{decibels(ghost)}</td>}
              <td title={row.reason ?? row.explanation?.binding?.words}>
                <RuleName rule={row.rule ?? row.explanation?.rule ?? ""} legend={props.legend} />
                {row.warning && <div class="warning">{row.warning}</div>}
              </td>
            </tr>
          );
        })}
      </tbody>
    </table>
  );
}

function Where({ pointer, source, go }: { pointer: string | null; source?: string | null; go: Go | null }) {
  if (pointer && go) {
    return (
      <button class="link pointer" onClick={() => go(pointer)} title="Show this in the file">
        {pointer}
      </button>
    );
  }
  return <span class="source">{pointer ?? source ?? ""}</span>;
}

/** From Pmax to the answer, step by step. */
export function Waterfall({ explanation, legend, go }: { explanation: Explanation; legend: Legend; go: Go | null }) {
  const figures = explanation.steps.flatMap((step) => [step.powerCentiDbm, step.boundCentiDbm ?? step.powerCentiDbm]);
  const ticks = ticksOf(figures);
  const low = Math.max(ticks[0], Math.min(...figures) - 400);
  const high = ticks[ticks.length - 1];
  const x = (power: number) => ((Math.max(power, low) - low) * 240) / (high - low);
  return (
    <div class="waterfall" id="waterfall">
      {explanation.binding && (
        <p class="verdict">
          <b>Limited by</b> <RuleName rule={explanation.binding.rule} legend={legend} words={explanation.binding.words} />{" "}
          at <b class="binding">{decibels(explanation.binding.powerCentiDbm)} dBm</b>
          {explanation.runnerUp && (
            <>
              . <b>Next bound</b>{" "}
              <RuleName rule={explanation.runnerUp.rule} legend={legend} words={explanation.runnerUp.words} /> at{" "}
              <span class="runner-up">{decibels(explanation.runnerUp.powerCentiDbm)} dBm</span>
              {explanation.headroomCentiDb !== null && (
                <>
                  , <b class="headroom">{decibels(explanation.headroomCentiDb)} dB</b> above
                </>
              )}
            </>
          )}
        </p>
      )}
      {explanation.refusal && <p class="verdict">{explanation.refusal}</p>}
      {explanation.mismatch && <p class="warning">{explanation.mismatch}</p>}
      {explanation.steps.length > 0 && (
        <Scroll label="steps">
          <table class="steps">
            <thead>
              <tr>
                <th scope="col">Step</th>
                <th scope="col" class="number">Amount/dB</th>
                <th scope="col" class="number">Bound/dBm</th>
                <th scope="col" class="number">Power/dBm</th>
                <th scope="col" class="wide"><span class="hidden">Picture</span></th>
                <th scope="col">Figure from</th>
              </tr>
            </thead>
            <tbody>
              {explanation.steps.map((step, index) => {
                const before = index === 0 ? low : explanation.steps[index - 1].powerCentiDbm;
                const from = Math.min(x(before), x(step.powerCentiDbm));
                const to = Math.max(x(before), x(step.powerCentiDbm));
                return (
                  <tr class={step.kind}>
                    <th scope="row">
                      <RuleName rule={step.rule} legend={legend} words={step.words} />
                    </th>
                    <td class="number">{step.kind === "start" ? "" : signed(step.amountCentiDb)}</td>
                    <td class="number">{step.boundCentiDbm === null ? "" : decibels(step.boundCentiDbm)}</td>
                    <td class="number strong" data-power={step.powerCentiDbm}>{decibels(step.powerCentiDbm)}</td>
                    <td class="wide">
                      <svg class="rule" style={{ "--rule": legend[step.rule]?.color ?? "#555555" }}
                        viewBox="0 0 246 22" width="246" height="22" aria-hidden="true">
                        {step.boundCentiDbm !== null && (
                          <path class="bound" d={`M${x(step.boundCentiDbm)} 1 V21`} />
                        )}
                        <rect class="edge" x={from} y="4" height="14" width={Math.max(1.5, to - from)}
                          fill={`url(#rule-${step.rule})`} />
                        <path class="now" d={`M${x(step.powerCentiDbm)} 1 V21`} />
                      </svg>
                    </td>
                    <td><Where pointer={step.pointer} source={step.source} go={go} /></td>
                  </tr>
                );
              })}
            </tbody>
          </table>
        </Scroll>
      )}
      {explanation.notes.map((note) => (
        <p class="note">{note}</p>
      ))}
    </div>
  );
}

export function Findings({ check, goTo }: { check: Check; goTo(line: number, column: number): void }) {
  const findings = check.files.flatMap((file) => file.findings);
  if (findings.length === 0) {
    return <p class="note">Nothing found.</p>;
  }
  return (
    <ul class="findings" id="findings">
      {findings.map((finding: Finding) => (
        <li class={finding.severity}>
          <span class="severity">{finding.severity}</span>
          <button class="link pointer" onClick={() => goTo(finding.line, finding.column)}>
            {finding.line}:{finding.column}
          </button>{" "}
          {finding.message}
          {finding.remedy && <span class="remedy"> {finding.remedy}.</span>} <span class="code">{finding.code}</span>
        </li>
      ))}
    </ul>
  );
}

export function SweepPanel(props: {
  axes: Input[];
  over: string;
  setOver(over: string): void;
  sweep: Sweep | null;
  messages: string[];
  progress: string | null;
  cancel(): void;
  saveCsv(): void;
}) {
  const { sweep } = props;
  const names = [...new Set((sweep?.points ?? []).flatMap((point) => point.rows.map((row) => row.name)))];
  const axis = props.over.split("=")[0];
  return (
    <div id="sweep">
      <div class="row">
        <label for="sweep-axis">over</label>
        <select id="sweep-axis" value={axis} onChange={(event) => props.setOver(event.currentTarget.value)}>
          {props.axes.map((each) => (
            <option value={each.input} key={each.input}>{each.words}</option>
          ))}
        </select>
        <label for="sweep-values">values</label>
        <input id="sweep-values" placeholder="the usual ones; 0..6:0.5 or 2,4L"
          value={props.over.includes("=") ? props.over.slice(props.over.indexOf("=") + 1) : ""}
          onChange={(event) => {
            const values = event.currentTarget.value.trim();
            props.setOver(values === "" ? axis : `${axis}=${values}`);
          }} />
        <button onClick={props.saveCsv} disabled={!sweep}>CSV</button>
        {props.progress && (
          <span role="status">
            {props.progress} <button onClick={props.cancel}>Cancel</button>
          </span>
        )}
      </div>
      <Messages messages={props.messages} />
      {sweep && names.length > 0 && (
        <>
          <Scroll label="plot of the sweep">
            <SweepPlot sweep={sweep} />
          </Scroll>
          <Scroll label="powers of the sweep">
            <table class="grid-table">
              <thead>
                <tr>
                  <th scope="col">Code</th>
                  {sweep.points.map((point) => (
                    <th scope="col" class="number">{labelsOf(point.inputs).join(", ")}</th>
                  ))}
                </tr>
              </thead>
              <tbody>
                {names.map((name) => (
                  <tr>
                    <th scope="row">{name}</th>
                    {sweep.points.map((point) => {
                      const power = point.rows.find((row) => row.name === name)?.maxPowerCentiDbm ?? null;
                      return <td class="number" data-power={power ?? "none"}>{decibels(power)}</td>;
                    })}
                  </tr>
                ))}
              </tbody>
            </table>
          </Scroll>
        </>
      )}
    </div>
  );
}

/** Changes that are made together, as a button that makes them. */
function AdviceItem({ changes, apply, go }: { changes: Advice[]; apply(changes: Advice[]): void; go: Go }) {
  return (
    <li>
      <button disabled={changes.some((change) => change.options.length === 0)} onClick={() => apply(changes)}>
        {changes.map((change, index) => (
          <>
            {index > 0 && <b> and </b>}
            {change.words}: {change.from} → {change.to}
          </>
        ))}
      </button>
      <span class="number" data-power={changes[0].maxPowerCentiDbm}>{decibels(changes[0].maxPowerCentiDbm)} dBm</span>
      {changes.map((change) => change.pointer && <Where pointer={change.pointer} go={go} />)}
    </li>
  );
}

export function WhyNotPanel(props: {
  code: string;
  wanted: string;
  setWanted(power: string): void;
  answer: WhyNot | null;
  messages: string[];
  progress: Progress | null;
  cancel(): void;
  apply(changes: Advice[]): void;
  go: Go;
}) {
  const { answer } = props;
  const pairs = new Map<number, Advice[]>();
  for (const change of answer?.pairs ?? []) {
    pairs.set(change.pair, [...(pairs.get(change.pair) ?? []), change]);
  }
  const { apply, go } = props;
  return (
    <div id="why-not">
      <form
        class="row"
        onSubmit={(event) => {
          event.preventDefault();
          const form = new FormData(event.currentTarget as HTMLFormElement);
          props.setWanted(String(form.get("power")).trim());
        }}
      >
        <label for="wanted">What would let {props.code} have</label>
        <input id="wanted" name="power" inputMode="decimal" size={7} value={props.wanted} placeholder="18" />
        <span>dBm?</span>
        <button type="submit">Ask</button>
        {props.progress && (
          <span role="status" class="row">
            <progress max={props.progress.of} value={props.progress.done} aria-label="tried" />
            {props.progress.done} of {props.progress.of}
            <button type="button" onClick={props.cancel}>Cancel</button>
          </span>
        )}
      </form>
      <Messages messages={props.messages} />
      {answer && answer.allowed && <p class="note">It has {decibels(answer.maxPowerCentiDbm)} dBm: allowed already.</p>}
      {answer && answer.changes.length > 0 && (
        <>
          <p class="note">Any one of these changes alone allows it; each was tried.</p>
          <ul class="advice">
            {answer.changes.map((change) => <AdviceItem changes={[change]} {...{ apply, go }} />)}
          </ul>
        </>
      )}
      {pairs.size > 0 && (
        <>
          <p class="note">No single change allows it. These pairs do, the smallest first; each was tried.</p>
          <ul class="advice">
            {[...pairs.values()].map((changes) => <AdviceItem {...{ changes, apply, go }} />)}
          </ul>
        </>
      )}
      {answer && !answer.allowed && (
        <>
          {answer.changes.length === 0 && pairs.size === 0 && <p>Nothing that was tried allows it.</p>}
          {answer.without.length > 0 && (
            <p class="note">No change alone allows it of: {answer.without.join(", ")}.</p>
          )}
          <p class="note">Not tried: {answer.notTried.join("; ")}.</p>
        </>
      )}
    </div>
  );
}

export function DiffPanel({ diff, names, legend }: { diff: Diff; names: [string, string]; legend: Legend }) {
  return (
    <div id="diff">
      <Scroll label="powers of both">
        <table class="grid-table">
          <thead>
            <tr>
              <th scope="col">Code</th>
              <th scope="col" class="number">{names[0]}</th>
              <th scope="col" class="number">{names[1]}</th>
              <th scope="col" class="number">Difference/dB</th>
              <th scope="col">Limited by</th>
              <th scope="col">there by</th>
            </tr>
          </thead>
          <tbody>
            {diff.rows.map((row) => (
              <tr>
                <th scope="row">{row.name}</th>
                <td class="number">{decibels(row.a?.maxPowerCentiDbm)}</td>
                <td class="number">{decibels(row.b?.maxPowerCentiDbm)}</td>
                <td class="number strong">
                  {row.differenceCentiDb === null || row.differenceCentiDb === undefined ? "" : signed(row.differenceCentiDb)}
                </td>
                <td>{row.a?.rule && <RuleName rule={row.a.rule} legend={legend} />}</td>
                <td>{row.b?.rule && <RuleName rule={row.b.rule} legend={legend} />}</td>
              </tr>
            ))}
          </tbody>
        </table>
      </Scroll>
      <h3>What differs</h3>
      <Scroll label="what differs">
        <table class="grid-table">
          <thead>
            <tr>
              <th scope="col">Input</th>
              <th scope="col">{names[0]}</th>
              <th scope="col">{names[1]}</th>
            </tr>
          </thead>
          <tbody>
            {diff.inputs.map((input) => (
              <tr>
                <th scope="row">{input.input}</th>
                <td>{input.a ?? "–"}</td>
                <td>{input.b ?? "–"}</td>
              </tr>
            ))}
          </tbody>
        </table>
      </Scroll>
    </div>
  );
}

/** The file's text, with the reader's errors at their place. */
export function Editor(props: {
  text: string;
  errors: Finding[];
  place: { line: number; column: number; times: number } | null;
  edit(text: string): void;
}) {
  const area = useRef<HTMLTextAreaElement>(null);
  const gutter = useRef<HTMLPreElement>(null);
  const bad = new Map(props.errors.map((finding) => [finding.line, finding]));
  useEffect(() => {
    const { place } = props;
    if (!place || !area.current) {
      return;
    }
    const at = indexOf(props.text, place.line, place.column);
    const rest = props.text.slice(at).search(/[\n,\]}]/);
    area.current.focus();
    area.current.setSelectionRange(at, rest < 0 ? props.text.length : at + Math.max(1, rest));
    const height = area.current.scrollHeight / props.text.split("\n").length;
    area.current.scrollTop = Math.max(0, (place.line - 8) * height);
  }, [props.place]);
  const lines = props.text.split("\n").length;
  return (
    <div class="editor">
      {props.errors.map((finding) => (
        <p class="warning" role="alert">
          Line {finding.line}, column {finding.column}: {finding.message}
          {finding.remedy && <span> {finding.remedy}</span>}
        </p>
      ))}
      <div class="paper">
        <pre class="gutter" ref={gutter} aria-hidden="true">
          {Array.from({ length: lines }, (_, index) => (
            <span class={bad.has(index + 1) ? "bad" : ""}>{index + 1}</span>
          ))}
        </pre>
        <textarea
          id="file-text"
          ref={area}
          aria-label="Text of the radio file"
          spellcheck={false}
          wrap="off"
          value={props.text}
          onScroll={() => {
            if (gutter.current && area.current) {
              gutter.current.scrollTop = area.current.scrollTop;
            }
          }}
          onInput={(event) => props.edit(event.currentTarget.value)}
        />
      </div>
    </div>
  );
}

export function Messages({ messages, children }: { messages: string[]; children?: ComponentChildren }) {
  return messages.length === 0 ? null : (
    <div class="messages" role="alert">
      {messages.map((message) => (
        <p>{message}</p>
      ))}
      {children}
    </div>
  );
}

export function Tabs({ tabs, tab, setTab }: { tabs: [string, string][]; tab: string; setTab(tab: string): void }) {
  const list = useRef<HTMLDivElement>(null);
  const [, setFocus] = useState(0);
  const move = (event: KeyboardEvent) => {
    const step = event.key === "ArrowRight" ? 1 : event.key === "ArrowLeft" ? -1 : 0;
    if (step !== 0) {
      const next = (tabs.findIndex(([name]) => name === tab) + step + tabs.length) % tabs.length;
      setTab(tabs[next][0]);
      setFocus(next);
      (list.current?.children[next] as HTMLElement).focus();
    }
  };
  return (
    <div class="tabs" role="tablist" aria-label="Questions" ref={list} onKeyDown={move}>
      {tabs.map(([name, words]) => (
        <button role="tab" id={`tab-${name}`} key={name} aria-selected={name === tab} aria-controls="panel"
          tabIndex={name === tab ? 0 : -1} onClick={() => setTab(name)}>
          {words}
        </button>
      ))}
    </div>
  );
}
