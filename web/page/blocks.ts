// What the page holds beside its program: blocks of JSON texts, large ones packed.

/** The text of a block; "" without one. */
export const block = (id: string): string => JSON.parse(document.getElementById(id)?.textContent ?? '""');

/** The bytes of a packed block. */
export function unpacked(id: string): Promise<ArrayBuffer> {
  const packed = Uint8Array.from(atob(block(id)), (letter) => letter.charCodeAt(0));
  return new Response(new Blob([packed]).stream().pipeThrough(new DecompressionStream("gzip"))).arrayBuffer();
}
