// The powers as bars: the minimum as a floor, the rule that limits by colour and pattern, and what it was
// in the file as a ghost.

import { Fragment, h } from "preact";
import type { Powers, Row, RuleStyle, Sweep } from "./answers";
import { decibels, plain } from "./format";

export interface Legend {
  [rule: string]: RuleStyle;
}

/** Round ticks that enclose all figures, and nothing as well where bars begin there. */
export function ticksOf(figures: number[], isOfBars = true): number[] {
  const low = Math.min(...(isOfBars || figures.length === 0 ? [0] : []), ...figures);
  const high = Math.max(isOfBars ? 100 : low + 100, ...figures);
  const step = [100, 200, 250, 500, 1000, 2000, 5000, 10000, 100000, 1e6, 1e7, 1e8, 1e9].find(
    (each) => (high - low) / each <= 8,
  ) as number;
  const ticks = [];
  for (let tick = Math.floor(low / step) * step; tick < high + step; tick += step) {
    ticks.push(tick);
  }
  return ticks;
}

const left = 44;
const right = 12;
const top = 22;
const height = 330;

function scaleOf(ticks: number[]): (power: number) => number {
  const low = ticks[0];
  const high = ticks[ticks.length - 1];
  return (power) => top + ((high - power) * height) / (high - low);
}

export function Patterns({ rules }: { rules: RuleStyle[] }) {
  return (
    <svg class="defs" width="0" height="0" aria-hidden="true">
      <defs>
        {rules.map((rule) => (
          <pattern
            id={`rule-${rule.rule}`}
            class="rule"
            style={{ "--rule": rule.color ?? "#555555" }}
            width="8"
            height="8"
            patternUnits="userSpaceOnUse"
          >
            <rect width="8" height="8" class="ground" />
            {rule.pattern && (
              <path d={rule.pattern} class="mark" stroke-width={rule.width ?? "1.3"} />
            )}
          </pattern>
        ))}
      </defs>
    </svg>
  );
}

export function Swatch({ rule }: { rule: RuleStyle }) {
  return (
    <svg class="swatch rule" style={{ "--rule": rule.color ?? "#555555" }} width="20" height="14" aria-hidden="true">
      {rule.color ? (
        <rect x="0.5" y="0.5" width="19" height="13" class="edge" fill={`url(#rule-${rule.rule})`} />
      ) : (
        <path d="M6 3 l8 8 m0 -8 l-8 8" class="cross" />
      )}
    </svg>
  );
}

function Grid({ ticks, width }: { ticks: number[]; width: number }) {
  const y = scaleOf(ticks);
  return (
    <>
      {ticks.map((tick) => (
        <>
          <line class="grid" x1={left} x2={width - right} y1={y(tick)} y2={y(tick)} />
          <text class="tick" x={left - 8} y={y(tick) + 4} text-anchor="end">
            {tick / 100}
          </text>
        </>
      ))}
      <text class="unit" x={left - 8} y={12} text-anchor="end">
        dBm
      </text>
    </>
  );
}

export interface PlotProps {
  powers: Powers;
  inFile: Powers | null;
  legend: Legend;
  chosen: string | null;
  choose(name: string): void;
}

export function PowerPlot({ powers, inFile, legend, chosen, choose }: PlotProps) {
  const rows = powers.rows;
  const ghosts = new Map((inFile?.rows ?? []).map((row) => [row.name, row.maxPowerCentiDbm]));
  const figures = [powers.minPowerCentiDbm, ...rows.map((row) => row.maxPowerCentiDbm), ...ghosts.values()];
  const ticks = ticksOf(figures.filter((figure): figure is number => figure !== null));
  const y = scaleOf(ticks);
  const slot = Math.max(30, Math.min(84, 700 / Math.max(1, rows.length)));
  const width = left + right + slot * rows.length;
  const base = top + height;
  const isNarrow = slot < 76;
  const labels = isNarrow ? 118 : 40;
  return (
    <svg
      class="plot"
      id="power-plot"
      viewBox={`0 0 ${width} ${base + labels}`}
      role="img"
      aria-label="Maximum power of each modulation and code; the table holds the same figures"
    >
      <Grid ticks={ticks} width={width} />
      {powers.minPowerCentiDbm !== null && (
        <rect class="floor" x={left} width={width - left - right} y={y(powers.minPowerCentiDbm)}
          height={Math.max(0, base - y(powers.minPowerCentiDbm))} />
      )}
      {rows.map((row, index) => {
        const x = left + slot * index + 3;
        const power = row.maxPowerCentiDbm;
        const rule = legend[row.rule ?? row.explanation?.rule ?? ""];
        const ghost = ghosts.get(row.name);
        return (
          <g
            class={`bar rule${row.name === chosen ? " chosen" : ""}`}
            style={{ "--rule": rule?.color ?? "#555555" }}
            data-code={row.name}
            onClick={() => choose(row.name)}
          >
            <rect class="reach" x={x - 3} y={top - 20} width={slot} height={height + labels + 20} />
            {power !== null ? (
              <>
                <rect class="edge" x={x} y={y(power)} width={slot - 6} height={Math.max(1, base - y(power))}
                  fill={`url(#rule-${rule?.rule ?? "unexplained"})`} />
                <text class="figure" x={x + slot / 2 - 3} y={y(power) - 6} text-anchor="middle">
                  {slot < 44 ? decibels(power).replace(/0$/, "") : decibels(power)}
                </text>
              </>
            ) : (
              <path class="cross" d={`M${x + slot / 2 - 9} ${base - 16} l12 12 m0 -12 l-12 12`} />
            )}
            {ghost !== undefined && ghost !== power && ghost !== null && (
              <path class="ghost" d={`M${x} ${base} V${y(ghost)} h${slot - 6} V${base}`} />
            )}
            <text
              class="label"
              text-anchor={isNarrow ? "end" : "middle"}
              transform={
                isNarrow
                  ? `translate(${x + slot / 2} ${base + 12}) rotate(-55)`
                  : `translate(${x + slot / 2 - 3} ${base + 18})`
              }
            >
              {isNarrow || row.name.length < 9
                ? row.name
                : row.name.split(/(?=_)/).map((part, line) => (
                    <tspan x="0" dy={line === 0 ? 0 : 14}>
                      {part.replace("_", "")}
                    </tspan>
                  ))}
            </text>
          </g>
        );
      })}
      <line class="axis" x1={left} x2={width - right} y1={base} y2={base} />
      {powers.minPowerCentiDbm !== null && (
        <line class="minimum" x1={left} x2={width - right}
          y1={y(powers.minPowerCentiDbm)} y2={y(powers.minPowerCentiDbm)} />
      )}
    </svg>
  );
}

const dashes = ["", "7 4", "2 3", "9 3 2 3", "12 4", "4 4", "1 4", "12 3 2 3 2 3"];

/** A sweep as lines: one for each code, over the values of the input. */
export function SweepPlot({ sweep }: { sweep: Sweep }) {
  const names = [...new Set(sweep.points.flatMap((point) => point.rows.map((row) => row.name)))];
  const powerOf = (row: Row | undefined) => row?.maxPowerCentiDbm ?? null;
  const lines = names.map((name) => ({
    names: [name],
    powers: sweep.points.map((point) => powerOf(point.rows.find((row) => row.name === name))),
  }));
  // Codes with the same powers share a line.
  const shared = lines.reduce<typeof lines>((kept, line) => {
    const same = kept.find((each) => each.powers.every((power, index) => power === line.powers[index]));
    if (same) {
      same.names.push(...line.names);
      return kept;
    }
    return [...kept, line];
  }, []);
  const figures = shared.flatMap((line) => line.powers).filter((power): power is number => power !== null);
  const ticks = ticksOf(figures, false);
  const y = scaleOf(ticks);
  const count = sweep.points.length;
  const width = 900;
  const legendAt = width - 215;
  const x = (index: number) => left + 20 + ((legendAt - left - 40) * index) / Math.max(1, count - 1);
  const base = top + height;
  const every = Math.ceil(count / 12);
  const valueOf = (index: number) => labelsOf(sweep.points[index].inputs).join(", ");
  const labelAt = shared
    .map((line, index) => ({ index, at: y([...line.powers].reverse().find((power) => power !== null) ?? ticks[0]) }))
    .sort((one, two) => one.at - two.at);
  labelAt.forEach((each, index) => {
    each.at = Math.max(each.at, index === 0 ? 0 : labelAt[index - 1].at + 17);
  });
  const bottom = Math.max(base + 44, ...labelAt.map((each) => each.at + 10));
  return (
    <svg class="plot sweep" viewBox={`0 0 ${width} ${bottom}`} role="img"
      aria-label="Maximum powers over the values of the input; the table holds the same figures">
      <Grid ticks={ticks} width={legendAt} />
      <line class="axis" x1={left} x2={legendAt - right} y1={base} y2={base} />
      {sweep.points.map((_, index) =>
        index % every === 0 ? (
          <text class="label" x={x(index)} y={base + 20} text-anchor="middle">
            {valueOf(index)}
          </text>
        ) : null,
      )}
      {shared.map((line, index) => {
        const hue = `line-${index % 8}`;
        const points = line.powers.map((power, at) => (power === null ? null : `${x(at)} ${y(power)}`));
        const path = points.map((point, at) => (point === null ? "" : `${points[at - 1] ? "L" : "M"}${point}`)).join("");
        const at = labelAt.find((each) => each.index === index)!.at;
        return (
          <g class={`line ${hue}`}>
            <path d={path} stroke-dasharray={dashes[index % 8]} />
            {line.powers.map((power, point) =>
              power === null ? null : <circle cx={x(point)} cy={y(power)} r="3.4" />,
            )}
            <path d={`M${legendAt - 6} ${at} h22`} stroke-dasharray={dashes[index % 8]} />
            <text class="name" x={legendAt + 22} y={at + 4}>
              {line.names.length > 2 ? `${line.names[0]} … ${line.names[line.names.length - 1]}` : line.names.join(", ")}
            </text>
          </g>
        );
      })}
    </svg>
  );
}

/** The values of a point's inputs; those in hundredths of a dB as decibels. */
export function labelsOf(inputs: Record<string, unknown>): string[] {
  return Object.entries(inputs).map(([key, value]) => {
    if (typeof value === "object" && value !== null) {
      return labelsOf(value as Record<string, unknown>).join(",");
    }
    return typeof value === "number" && /CentiDbm?$/.test(key) ? decibels(value) : plain(value);
  });
}
