// A live control for every input: what it can be comes from the engine, and so does what it is.

import { Fragment, h } from "preact";
import { useState } from "preact/hooks";
import type { Choice, Input, Inputs } from "./answers";
import type { Change } from "./engine";

export type Set = (input: string, value: string | null, isLasting: boolean) => void;

interface Props {
  input: Input;
  value: string;
  id: string;
  set: Set;
  modulations: string[];
}

function Choices({ input, value, id, set }: Props) {
  const isKnown = input.values.some((choice) => choice.value === value);
  return (
    <select id={id} value={value} onChange={(event) => set(input.input, event.currentTarget.value, true)}>
      {!isKnown && <option value={value}>{value}</option>}
      {input.values.map((choice) => (
        <option value={choice.value} key={choice.value}>
          {choice.label}
        </option>
      ))}
    </select>
  );
}

/** A text with suggestions: what is typed counts when it is done. */
function Typed({ input, value, id, set }: Props) {
  return (
    <>
      <input
        id={id}
        list={`${id}-list`}
        value={value}
        onChange={(event) => set(input.input, event.currentTarget.value.trim() || "none", true)}
      />
      <datalist id={`${id}-list`}>
        {input.values.map((choice) => (
          <option value={choice.value} key={choice.value} />
        ))}
      </datalist>
    </>
  );
}

interface InForceProps {
  words: string;
  id?: string;
  value: string;
  before: string;
  remember: (value: string) => void;
  set: (value: string) => void;
}

/** Whether an input counts at all. What it was when it was taken away comes back with it. */
function InForce({ words, id, value, before, remember, set }: InForceProps) {
  return (
    <label class="inline">
      <input
        id={id}
        type="checkbox"
        checked={value !== "none"}
        onChange={(event) => {
          if (!event.currentTarget.checked) {
            remember(value);
          }
          set(event.currentTarget.checked ? before : "none");
        }}
      />
      {words}
    </label>
  );
}

function Decibels({ input, value, id, set }: Props) {
  const isOff = value === "none";
  const canBeOff = input.values.some((choice) => choice.value === "none");
  const [before, remember] = useState("0");
  const most = Math.max(10, Math.ceil(Number(isOff ? 0 : value)));
  return (
    <div class="decibels">
      {canBeOff && (
        <InForce words="in force" value={value} before={before} remember={remember}
          set={(text) => set(input.input, text, true)} />
      )}
      <input
        id={id}
        type="range"
        min="0"
        max={most}
        step="0.25"
        disabled={isOff}
        value={isOff ? before : value}
        onInput={(event) => set(input.input, event.currentTarget.value, false)}
        onChange={(event) => set(input.input, event.currentTarget.value, true)}
      />
      <input
        type="number"
        min="0"
        step="0.01"
        aria-label={`${input.words} in ${input.unit}`}
        disabled={isOff}
        value={isOff ? "" : value}
        onChange={(event) => set(input.input, event.currentTarget.value || "0", true)}
      />
      <span class="unit">{input.unit}</span>
    </div>
  );
}

const boosterParts = ["presence", "gain in dB", "highest input in dBm"];

function Booster({ input, value, id, set, modulations }: Props) {
  const isOff = value === "none";
  const usual = input.values.find((choice) => choice.value !== "none")?.value ?? `1,0,0,${modulations[0]}`;
  const [before, remember] = useState(usual);
  const parts = (isOff ? before : value).split(",");
  const change = (index: number, text: string) =>
    set(input.input, parts.map((part, at) => (at === index ? text : part)).join(","), true);
  return (
    <div class="booster">
      <InForce words="present" id={id} value={value} before={before} remember={remember}
        set={(text) => set(input.input, text, true)} />
      {!isOff && (
        <div class="parts">
          {boosterParts.map((words, index) => (
            <label key={words}>
              {words}
              <input type="number" step={index === 0 ? "1" : "0.01"} value={parts[index]}
                onChange={(event) => change(index, event.currentTarget.value || "0")} />
            </label>
          ))}
          <label>
            highest modulation
            <select value={parts[3]} onChange={(event) => change(3, event.currentTarget.value)}>
              {modulations.map((modulation) => (
                <option key={modulation}>{modulation}</option>
              ))}
            </select>
          </label>
        </div>
      )}
    </div>
  );
}

function controlFor(input: Input) {
  if (input.input === "booster") {
    return Booster;
  }
  if (input.unit === "dB") {
    return Decibels;
  }
  return input.input === "product" || input.input === "channel-spacing" ? Typed : Choices;
}

export function Controls({ inputs, requests, changes, set }: {
  inputs: Inputs;
  requests: Choice[];
  changes: Change[];
  set: Set;
}) {
  const format: Input = {
    input: "frame-format",
    words: "frame format",
    unit: null,
    value: "0",
    label: inputs.frameFormats[0].label,
    values: inputs.frameFormats,
  };
  const request: Input = {
    input: "request",
    words: "request of the file",
    unit: null,
    value: requests[0].value,
    label: requests[0].label,
    values: requests,
  };
  return (
    <div class="controls">
      {[format, request, ...inputs.inputs].map((input) => {
        const change = changes.find((each) => each.input === input.input);
        const Control = controlFor(input);
        const id = `input-${input.input}`;
        return (
          <div class={`control${change ? " changed" : ""}`} key={input.input}>
            <label for={id}>
              {input.words}
              {input.input === "channel-spacing" && ` in ${input.unit}`}
            </label>
            <button
              class="quiet reset"
              id={`reset-${input.input}`}
              disabled={!change}
              title={`As in the file: ${input.label}`}
              aria-label={`${input.words} as in the file: ${input.label}`}
              onClick={() => set(input.input, null, true)}
            >
              ↺
            </button>
            <Control input={input} value={change?.value ?? input.value} id={id} set={set} modulations={inputs.modulations} />
          </div>
        );
      })}
    </div>
  );
}
