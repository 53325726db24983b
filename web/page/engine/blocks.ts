// What the page holds in blocks of its document.

/** The text of a block. */
export const block = (id: string): string => JSON.parse(document.getElementById(id)?.textContent ?? '""');

/** What was packed (gzip, base64). */
export function unpacked(packed: string): Response {
  const bytes = Uint8Array.from(atob(packed), (letter) => letter.charCodeAt(0));
  return new Response(new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip")));
}
