// What the engine answers, as far as the page reads it. Powers are hundredths of a dBm.

export interface Place {
  pointer: string;
  line: number;
  column: number;
}

export interface Step {
  rule: string;
  kind: string;
  words: string;
  amountCentiDb: number;
  boundCentiDbm: number | null;
  powerCentiDbm: number;
  pointer: string | null;
  source: string | null;
}

export interface Bound {
  rule: string;
  words: string;
  powerCentiDbm: number;
  pointer: string | null;
}

export interface Explanation {
  modulation: string;
  maxPowerCentiDbm: number | null;
  rule: string;
  refusal: string | null;
  binding: Bound | null;
  runnerUp: Bound | null;
  headroomCentiDb: number | null;
  lookups: { role: string; modulation: string; table: string | null; pmaxCentiDbm: number | null; pointer: string | null }[];
  steps: Step[];
  mismatch: string | null;
  notes: string[];
}

export interface Row {
  code: number;
  name: string;
  modulation: string;
  maxPowerCentiDbm: number | null;
  belowMinimum: boolean;
  reason: string | null;
  warning: string | null;
  rule?: string;
  cutbackRule?: string | null;
  explanation?: Explanation;
}

export interface Powers {
  channel: number;
  productNumber: string;
  family: string;
  calculator: string;
  frameFormat: { id: number | null; market: string; channelSpacingMHz: number; dpdVersion: number };
  failure: string | null;
  minPowerCentiDbm: number | null;
  notes: string[];
  rows: Row[];
  pmaxTable: string;
}

export interface Choice {
  value: string;
  label: string;
}

export interface Input extends Choice {
  input: string;
  words: string;
  unit: string | null;
  values: Choice[];
}

export interface Inputs {
  inputs: Input[];
  modulations: string[];
  frameFormats: Choice[];
  requests: Choice[];
}

export interface RuleStyle {
  rule: string;
  words: string;
  color: string | null;
  pattern: string | null;
  width: string | null;
}

export interface Finding {
  code: string;
  severity: string;
  title: string;
  line: number;
  column: number;
  pointer: string | null;
  message: string;
  remedy: string | null;
}

export interface Check {
  files: { isRadioFile: boolean; findings: Finding[] }[];
}

export interface Sweep {
  over: { input: string; unit: string | null; values: (string | number | null)[] }[];
  points: {
    inputs: Record<string, unknown>;
    label?: string;
    failure: string | null;
    minPowerCentiDbm: number | null;
    rows: Row[];
  }[];
}

export interface Advice {
  input: string;
  words: string;
  from: string;
  to: string;
  amountCentiDb: number | null;
  maxPowerCentiDbm: number;
  pointer: string | null;
  options: string[];
}

export interface WhyNot {
  asked: string;
  wantedCentiDbm: number;
  maxPowerCentiDbm: number | null;
  allowed: boolean;
  changes: Advice[];
  pairs: (Advice & { pair: number })[];
  without: string[];
  notTried: string[];
}

/** Of a search that is not over. */
export interface Progress {
  done: number;
  of: number;
}

export interface Diff {
  equal: boolean;
  inputs: { input: string; a: string | null; b: string | null }[];
  rows: {
    name: string;
    a: Row | null;
    b: Row | null;
    differenceCentiDb?: number | null;
  }[];
}

export interface FleetLine {
  id: string | null;
  radioFile: string | null;
  error: string | null;
  place: string | null;
  family?: string;
  productNumber?: string;
  minPowerCentiDbm?: number | null;
  rows?: Row[];
}

export interface FleetReport {
  radios: number;
  bad: number;
  doubled: number;
  unreadable: number;
  firstUnreadable: string | null;
  unlikeCodes: number;
  powers: {
    group?: string;
    family: string;
    modulation: string;
    codes: number;
    denied: number;
    leastCentiDbm: number | null;
    lowerQuarterCentiDbm: number | null;
    medianCentiDbm: number | null;
    upperQuarterCentiDbm: number | null;
    greatestCentiDbm: number | null;
    meanCentiDbm: number | null;
  }[];
  rules: { group?: string; rule: string; radios: number; codes: number; headroomMedianCentiDb: number | null }[];
  outliers: {
    radio: string;
    name: string;
    powerCentiDbm: number;
    usualCentiDbm: number;
    differenceCentiDb: number;
    kind: string;
  }[];
}

export interface LoggedQuery {
  call: string | null;
  line: number;
  number?: number;
  process?: string;
  complete?: boolean;
  gaps?: string[];
  explanations: Explanation[];
}
