// The state of the view in the URL's fragment, so that a link opens it again.

import type { Change } from "./engine";

export interface Radio {
  name: string;
  text: string;
  path?: string; // of its file, as a list gives it
  isAnswer?: boolean; // of qor-power batch, in place of a radio file
}

export interface View {
  radio: Radio;
  other: Radio | null;
  changes: Change[];
  code: string | null;
  tab: string;
  over: string;
  wanted: string;
}

async function through(bytes: Uint8Array, stream: GenericTransformStream): Promise<Uint8Array> {
  const answer = new Response(new Blob([bytes]).stream().pipeThrough(stream as ReadableWritablePair));
  return new Uint8Array(await answer.arrayBuffer());
}

/** The bytes that five characters for each four of them stand for; see base85() of the build. */
export function fromBase85(text: string): Uint8Array {
  const bytes = new Uint8Array(Math.ceil(text.length / 5) * 4);
  const words = new DataView(bytes.buffer);
  for (let at = 0; at < text.length; at += 5) {
    let word = 0;
    for (const character of text.slice(at, at + 5).padEnd(5, "u")) {
      word = word * 85 + (character === "~" ? "<" : character).charCodeAt(0) - 33;
    }
    words.setUint32((at / 5) * 4, word);
  }
  return bytes.subarray(0, Math.floor((text.length * 4) / 5));
}

/** The bytes that base64 stands for. */
export function fromBase64(text: string): Uint8Array {
  return Uint8Array.from(atob(text), (character) => character.charCodeAt(0));
}

export function unpacked(bytes: Uint8Array): Promise<Uint8Array> {
  return through(bytes, new DecompressionStream("gzip"));
}

// Lone surrogates have no UTF-8; JSON escapes them.
export async function fragmentOf(view: View): Promise<string> {
  const bytes = new TextEncoder().encode(JSON.stringify(view));
  const packed = await through(bytes, new CompressionStream("gzip"));
  let characters = "";
  for (const byte of packed) {
    characters += String.fromCharCode(byte);
  }
  return `#v1.${btoa(characters).replaceAll("+", "-").replaceAll("/", "_").replaceAll("=", "")}`;
}

/** Nothing if the fragment is none of this page. */
export async function viewIn(fragment: string): Promise<View | null> {
  if (!fragment.startsWith("#v1.")) {
    return null;
  }
  try {
    const base64 = fragment.slice(4).replaceAll("-", "+").replaceAll("_", "/");
    const view = JSON.parse(new TextDecoder().decode(await unpacked(fromBase64(base64)))) as View;
    return typeof view.radio?.text === "string" && Array.isArray(view.changes) ? view : null;
  } catch {
    return null;
  }
}
