// What the page knows of a step.

export interface Step {
  id: string;
  title: string;
  /** What it shows below its heading. */
  body: HTMLElement;
  /** Whether what it needs is there; until then it says what comes here. */
  ready: () => boolean;
  /** Shows the work as it is now; called when it is ready and something has changed. */
  show: () => void;
  /** The page is made anew or ends: stop what is under way. */
  end?: () => void;
}
