// What browsers have and the compiler's own list lacks.
declare class CompressionStream {
  constructor(format: "gzip");
  readonly readable: ReadableStream<Uint8Array>;
  readonly writable: WritableStream<BufferSource>;
}
declare class DecompressionStream extends CompressionStream {}
interface GenericTransformStream {
  readonly readable: ReadableStream;
  readonly writable: WritableStream;
}
