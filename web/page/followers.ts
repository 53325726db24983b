// Whoever shows something that changes follows it.

export class Followed {
  private readonly followers = new Set<() => void>();

  /** Acts now and whenever anything has changed, until what it returns is called. */
  follow(act: () => void): () => void {
    this.followers.add(act);
    act();
    return () => this.followers.delete(act);
  }

  protected changed(): void {
    for (const act of [...this.followers]) act();
  }
}
