// Commands that a reader copies into a shell.

/** As a shell takes it for one word. */
export function quoted(name: string): string {
  return /^[\w./+@%:=-]+$/.test(name) ? name : `'${name.replaceAll("'", "'\\''")}'`;
}
