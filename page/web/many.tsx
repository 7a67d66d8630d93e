// Many radios, or a log with many queries: a list to search, and what each one says.

import { Fragment, h } from "preact";
import { useMemo, useRef, useState } from "preact/hooks";
import type { FleetLine, FleetReport, LoggedQuery, Powers } from "./answers";
import { decibels, signed } from "./format";
import { PowerTable, RuleName, Scroll, Waterfall } from "./panels";
import type { Legend } from "./plot";
import type { Radio } from "./link";

export interface Fleet {
  number: number; // of the fleets that were read
  radios: Radio[];
  lines: FleetLine[];
  by: string;
  report: FleetReport | null;
  isDone: boolean;
}

export interface Log {
  name: string;
  queries: LoggedQuery[];
  messages: string[];
  isDone: boolean;
}

const shownAtMost = 200;

/** A fleet may be answers of qor-power batch in place of radios. */
export function batchAnswerIn(text: string): FleetLine | null {
  if (!text.startsWith("{") || !/"radioFile"\s*:/.test(text.slice(0, 4000))) {
    return null;
  }
  try {
    const line = JSON.parse(text) as FleetLine;
    return "radioFile" in line ? line : null;
  } catch {
    return null;
  }
}

function rulesOf(line: FleetLine): string[] {
  const rules = (line.rows ?? []).flatMap((row) => [row.rule, row.cutbackRule]);
  return [...new Set(rules)].filter((rule): rule is string => Boolean(rule));
}

/** What the fleet's report leaves out, and why. */
function RemarksOf({ report }: { report: FleetReport }) {
  const remarks = [
    report.bad > 0 && `${report.bad} without powers`,
    report.doubled > 0 && `${report.doubled} of names that came before`,
    report.unreadable > 0 && `${report.unreadable} that are no answers; the first: ${report.firstUnreadable}`,
  ].filter(Boolean);
  return remarks.length > 0 ? <p class="note" id="fleet-remarks">Not counted: {remarks.join("; ")}.</p> : null;
}

function PowersOf({ report }: { report: FleetReport }) {
  const isGrouped = report.powers.some((line) => line.group !== undefined);
  return (
    <Scroll label="powers of the codes of each modulation">
      <h3>Powers of the codes of each modulation, in dBm</h3>
      <table class="grid-table" id="fleet-powers">
        <thead>
          <tr>
            {isGrouped && <th scope="col">Group</th>}
            <th scope="col">Family</th>
            <th scope="col">Modulation</th>
            {["Codes", "Without", "Least", "25 %", "Median", "75 %", "Greatest", "Mean"].map((name) => (
              <th scope="col" class="number">{name}</th>
            ))}
          </tr>
        </thead>
        <tbody>
          {report.powers.map((line) => (
            <tr>
              {isGrouped && <td>{line.group}</td>}
              <td>{line.family}</td>
              <th scope="row">{line.modulation}</th>
              <td class="number">{line.codes}</td>
              <td class="number">{line.denied}</td>
              {[
                line.leastCentiDbm,
                line.lowerQuarterCentiDbm,
                line.medianCentiDbm,
                line.upperQuarterCentiDbm,
                line.greatestCentiDbm,
                line.meanCentiDbm,
              ].map((power) => <td class="number">{decibels(power)}</td>)}
            </tr>
          ))}
        </tbody>
      </table>
    </Scroll>
  );
}

function Outliers({ report, show }: { report: FleetReport; show(radio: string): void }) {
  if (report.outliers.length === 0) {
    return null;
  }
  return (
    <div class="scroll">
      <h3>Radios unlike their like</h3>
      <table class="grid-table" id="fleet-outliers">
        <thead>
          <tr>
            <th scope="col">Radio</th>
            <th scope="col">Code</th>
            <th scope="col" class="number">Power/dBm</th>
            <th scope="col" class="number">Usual/dBm</th>
            <th scope="col" class="number">Difference/dB</th>
            <th scope="col">Its like</th>
          </tr>
        </thead>
        <tbody>
          {report.outliers.slice(0, shownAtMost).map((line) => (
            <tr>
              <th scope="row">
                <button class="link" onClick={() => show(line.radio)}>{line.radio}</button>
              </th>
              <td>{line.name}</td>
              <td class="number">{decibels(line.powerCentiDbm)}</td>
              <td class="number">{decibels(line.usualCentiDbm)}</td>
              <td class="number">{signed(line.differenceCentiDb)}</td>
              <td>{line.kind}</td>
            </tr>
          ))}
        </tbody>
      </table>
      {report.outliers.length > shownAtMost && (
        <p class="note">The {shownAtMost} furthest of {report.outliers.length} are shown.</p>
      )}
    </div>
  );
}

interface FleetProps {
  fleet: Fleet;
  legend: Legend;
  groupings: string[];
  open(radio: Radio): void;
  cancel(): void;
  group(by: string): void;
  save(form: "csv" | "svg"): void;
}

export function FleetView(props: FleetProps) {
  const { fleet, legend } = props;
  const { report } = fleet;
  const [search, setSearch] = useState("");
  const [rule, setRule] = useState("");
  const [opened, setOpened] = useState(-1);
  const searchBox = useRef<HTMLInputElement>(null);
  const canSave = fleet.isDone && fleet.lines.length > 0;
  const words = search.toLowerCase();
  const nameOf = (index: number) => {
    const line = fleet.lines[index];
    return line.id ?? line.radioFile ?? fleet.radios[index].name;
  };
  /** Opens a radio; of an answer alone its row. */
  const show = (name: string) => {
    const index = fleet.lines.findIndex((_, place) => nameOf(place) === name);
    if (index >= 0 && !fleet.radios[index].isAnswer) {
      props.open({ ...fleet.radios[index], name });
      return;
    }
    setRule("");
    setSearch(name.replace(/\.\.\.$/, ""));
    setOpened(index);
    searchBox.current?.focus();
    searchBox.current?.scrollIntoView({ block: "center" });
  };
  const found = useMemo(
    () =>
      fleet.lines
        .map((line, index) => ({ line, index, name: nameOf(index) }))
        .filter(
          ({ line, name }) =>
            (rule === "" || rulesOf(line).includes(rule)) &&
            `${name} ${line.family ?? ""} ${line.productNumber ?? ""} ${line.error ?? ""}`.toLowerCase().includes(words),
        ),
    [fleet, words, rule],
  );
  return (
    <section id="fleet">
      <h2>
        {fleet.lines.length} of {fleet.radios.length} radios
        {!fleet.isDone && (
          <>
            {" "}
            <progress max={fleet.radios.length} value={fleet.lines.length} aria-label="answered" />{" "}
            <button onClick={props.cancel}>Cancel</button>
          </>
        )}
      </h2>
      <div class="row tools">
        <label for="fleet-by">In groups by</label>
        <select id="fleet-by" value={fleet.by} disabled={!fleet.isDone} onChange={(event) => props.group(event.currentTarget.value)}>
          <option value="">none</option>
          {props.groupings.map((by) => <option>{by}</option>)}
        </select>
        <button id="fleet-svg" disabled={!canSave} onClick={() => props.save("svg")}>Save picture</button>
        <button id="fleet-csv" disabled={!canSave} onClick={() => props.save("csv")}>Save table</button>
      </div>
      {report && <RemarksOf report={report} />}
      <div class="columns">
        <div class="scroll">
          <h3>Limited by</h3>
          <table class="grid-table" id="fleet-rules">
            <thead>
              <tr>
                {fleet.by !== "" && <th scope="col">Group</th>}
                <th scope="col">Rule</th>
                <th scope="col" class="number">Radios</th>
                <th scope="col" class="number">Codes</th>
                <th scope="col" class="number" title="the median, up to the next bound">Headroom/dB</th>
              </tr>
            </thead>
            <tbody>
              {(report?.rules ?? []).map((count) => (
                <tr class={count.rule === rule ? "chosen" : ""}>
                  {fleet.by !== "" && <td>{count.group}</td>}
                  <th scope="row">
                    <button class="link" aria-pressed={count.rule === rule}
                      onClick={() => setRule(count.rule === rule ? "" : count.rule)}>
                      <RuleName rule={count.rule} legend={legend} />
                    </button>
                  </th>
                  <td class="number">{count.radios}</td>
                  <td class="number">{count.codes}</td>
                  <td class="number">{decibels(count.headroomMedianCentiDb)}</td>
                </tr>
              ))}
            </tbody>
          </table>
        </div>
        <div>
          <div class="row">
            <label for="fleet-search">Search</label>
            <input id="fleet-search" type="search" value={search} ref={searchBox}
              onInput={(event) => setSearch(event.currentTarget.value)} />
            <span role="status">{found.length} found</span>
          </div>
          <div class="scroll tall">
            <table class="grid-table" id="fleet-radios">
              <thead>
                <tr>
                  <th scope="col">Radio</th>
                  <th scope="col">Family</th>
                  <th scope="col" class="number">Lowest</th>
                  <th scope="col" class="number">Highest</th>
                  <th scope="col">Limited by</th>
                </tr>
              </thead>
              <tbody>
                {found.slice(0, shownAtMost).map(({ line, index, name }) => {
                  const powers = (line.rows ?? [])
                    .map((row) => row.maxPowerCentiDbm)
                    .filter((power): power is number => power !== null);
                  const answer = fleet.radios[index].isAnswer;
                  return (
                    <>
                    <tr class={index === opened ? "chosen" : ""}>
                      <th scope="row">
                        {answer && !line.rows ? name : (
                          <button class="link" aria-expanded={answer ? index === opened : undefined}
                            onClick={() =>
                              answer ? setOpened(index === opened ? -1 : index) : props.open({ ...fleet.radios[index], name })}>
                            {name}
                          </button>
                        )}
                      </th>
                      <td>{line.error ? <span class="warning">{line.place} {line.error}</span> : line.family}</td>
                      <td class="number lowest">{powers.length > 0 ? decibels(Math.min(...powers)) : ""}</td>
                      <td class="number highest">{powers.length > 0 ? decibels(Math.max(...powers)) : ""}</td>
                      <td>
                        {rulesOf(line).map((each) => (
                          <RuleName rule={each} legend={legend} key={each} />
                        ))}
                      </td>
                    </tr>
                    {answer && line.rows && index === opened && (
                      <tr>
                        <td colSpan={5}>
                          <PowerTable powers={line as unknown as Powers} inFile={null} legend={legend} chosen={null} />
                          <p class="note">
                            This is the answer alone. Drop {line.radioFile ?? "the radio file"} together with it to see why.
                          </p>
                        </td>
                      </tr>
                    )}
                    </>
                  );
                })}
              </tbody>
            </table>
          </div>
          {found.length > shownAtMost && <p class="note">The first {shownAtMost} are shown; search for others.</p>}
        </div>
      </div>
      {report && <PowersOf report={report} />}
      {report && <Outliers report={report} show={show} />}
    </section>
  );
}

export function LogView({ log, legend, cancel }: { log: Log; legend: Legend; cancel(): void }) {
  const [chosen, choose] = useState(0);
  const [modulation, setModulation] = useState(0);
  const query = log.queries[chosen];
  const explanation = query?.explanations[Math.min(modulation, query.explanations.length - 1)];
  return (
    <section id="log">
      <h2>
        {log.name}: {log.queries.length} queries{" "}
        {!log.isDone && (
          <>
            <span role="status">reading …</span> <button onClick={cancel}>Cancel</button>
          </>
        )}
      </h2>
      {log.messages.map((message) => (
        <p class="warning" role="alert">{message}</p>
      ))}
      <div class="columns">
        <div class="scroll tall">
          <table class="grid-table">
            <thead>
              <tr>
                <th scope="col" class="number">Line</th>
                <th scope="col">Query</th>
                <th scope="col" class="number">Powers</th>
              </tr>
            </thead>
            <tbody>
              {log.queries.slice(0, 1000).map((each, index) => (
                <tr class={index === chosen ? "chosen" : ""}>
                  <td class="number">{each.line}</td>
                  <th scope="row">
                    <button class="link" aria-pressed={index === chosen} onClick={() => choose(index)}>
                      {each.call ?? "query"}
                    </button>
                    {each.complete === false && <span class="warning"> incomplete</span>}
                  </th>
                  <td class="number">{each.explanations.length}</td>
                </tr>
              ))}
            </tbody>
          </table>
        </div>
        <div>
          {query?.gaps?.map((gap) => <p class="warning">{gap}</p>)}
          {query && (
            <div class="row" role="group" aria-label="Modulation">
              {query.explanations.map((each, index) => (
                <button aria-pressed={each === explanation} onClick={() => setModulation(index)}>
                  {each.modulation} <b>{decibels(each.maxPowerCentiDbm)}</b>
                </button>
              ))}
            </div>
          )}
          {explanation && <Waterfall explanation={explanation} legend={legend} go={null} />}
        </div>
      </div>
    </section>
  );
}
