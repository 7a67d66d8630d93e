// The engine: the library, the desk and the analysis as WebAssembly. It is asked with a request and a
// text, and answers with an outcome, a text and messages.

/** An input by the name of the tool's option ("set" holds POINTER=VALUE), or of an axis. */
export interface Change {
  input: string;
  value: string;
}

export interface Request {
  ask: string;
  form?: string;
  name?: string;
  by?: string;
  path?: string;
  answer?: boolean;
  changes?: Change[];
  modulations?: string[];
  power?: string;
  most?: string;
  over?: string[];
  other?: string;
  otherName?: string;
  pointers?: string[];
  trace?: number;
  first?: boolean;
  last?: boolean;
  command?: string;
}

export interface Answer {
  outcome: number;
  text: string;
  messages: string[];
}

interface Exports {
  memory: WebAssembly.Memory;
  _initialize(): void;
  qorInput(which: number, size: number): number;
  qorAsk(): number;
  qorOutput(which: number): number;
  qorOutputSize(which: number): number;
}

/** The engine trapped or ran out of memory, and has been started again. */
export class EngineRestarted extends Error {}

// What a program may want of a system: there is no file, no clock and nowhere to write to.
const system: Record<string, (...values: never[]) => number> = {
  fd_close: () => 8,
  fd_fdstat_get: () => 8,
  fd_read: () => 8,
  fd_seek: () => 8,
  fd_write: () => 8,
};

function systemFor(module: WebAssembly.Module): WebAssembly.Imports {
  const imports: Record<string, Record<string, unknown>> = {};
  let memory: WebAssembly.Memory | undefined;
  for (const wanted of WebAssembly.Module.imports(module)) {
    imports[wanted.module] ??= {};
    imports[wanted.module][wanted.name] =
      system[wanted.name] ??
      (wanted.name === "proc_exit"
        ? () => {
            throw new Error("the engine ended itself");
          }
        : wanted.name.endsWith("sizes_get")
          ? (count: number, size: number) => {
              const view = new DataView(memory!.buffer);
              view.setUint32(count, 0, true);
              view.setUint32(size, 0, true);
              return 0;
            }
          : () => 0);
  }
  systemFor.give = (given: WebAssembly.Memory) => {
    memory = given;
  };
  return imports as WebAssembly.Imports;
}
systemFor.give = (_memory: WebAssembly.Memory): void => undefined;

export class Engine {
  private exports: Exports;
  private readonly encoder = new TextEncoder();
  private readonly decoder = new TextDecoder();

  private constructor(private readonly module: WebAssembly.Module) {
    this.exports = this.start();
  }

  static async from(bytes: BufferSource): Promise<Engine> {
    return new Engine(await WebAssembly.compile(bytes));
  }

  /** @throws EngineRestarted; whoever asks again gets an answer if the question was not the cause. */
  ask(request: Request, text = ""): Answer {
    try {
      this.put(0, JSON.stringify(request));
      this.put(1, text);
      const outcome = this.exports.qorAsk();
      return { outcome, text: this.take(0), messages: JSON.parse(this.take(1)) as string[] };
    } catch (error) {
      this.exports = this.start();
      throw new EngineRestarted(String(error));
    }
  }

  /** Begins anew, as a process would. */
  restart(): void {
    this.exports = this.start();
  }

  private start(): Exports {
    const imports = systemFor(this.module);
    const instance = new WebAssembly.Instance(this.module, imports);
    const exports = instance.exports as unknown as Exports;
    systemFor.give(exports.memory);
    exports._initialize();
    return exports;
  }

  private put(which: number, text: string): void {
    const bytes = this.encoder.encode(text);
    const place = this.exports.qorInput(which, bytes.length);
    new Uint8Array(this.exports.memory.buffer).set(bytes, place);
  }

  private take(which: number): string {
    const place = this.exports.qorOutput(which);
    const size = this.exports.qorOutputSize(which);
    return this.decoder.decode(new Uint8Array(this.exports.memory.buffer, place, size));
  }
}
