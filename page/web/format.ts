/** Hundredths of a dB as decibels: 1750 is "17.50". */
export function decibels(centi: number | null | undefined): string {
  return centi === null || centi === undefined ? "–" : (centi / 100).toFixed(2).replace("-", "−");
}

/** Likewise with its sign. */
export function signed(centi: number): string {
  return centi > 0 ? `+${decibels(centi)}` : decibels(centi);
}

/** The value of a JSON answer as it stands in a list of an axis. */
export function plain(value: unknown): string {
  return value === null || value === undefined ? "none" : String(value);
}

/** Where a line and a column, both from 1 and in characters, stand in a text. */
export function indexOf(text: string, line: number, column: number): number {
  let at = text.charCodeAt(0) === 0xfeff ? 1 : 0;
  for (let passed = 1; passed < line; ++passed) {
    const end = text.indexOf("\n", at);
    if (end < 0) {
      return text.length;
    }
    at = end + 1;
  }
  for (let passed = 1; passed < column && at < text.length; ++passed) {
    at += (text.codePointAt(at) ?? 0) > 0xffff ? 2 : 1;
  }
  return at;
}

export function save(name: string, type: string, text: string): void {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(new Blob([text], { type }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}
