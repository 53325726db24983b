// What is used of saxen, which comes without types.

declare module "saxen" {
  export type Attributes = Readonly<Record<string, string | undefined>>;

  export class Parser {
    on(event: "openTag", heard: (name: string, attributes: () => Attributes) => void): this;
    on(event: "closeTag" | "text" | "cdata" | "attention" | "comment" | "warn", heard: (what: string) => void): this;
    write(text: string): this;
    end(): void;
  }
}
