// What a reader reads about how the report was made.

export const title = "How it was made";
export const facts = {
  run: "The plan was made by", started: "Run started", report: "This report was made by", time: "Made on", seed: "Seed of the random numbers", prefix: "Results begin with",
};
export const repeat = {
  title: "To repeat it",
  text: "The same program, files and seed give the same plan, byte by byte. Put the files below where their names say, compare their checksums (sha256sum), and run:",
  seed: (seed: string) => `The seed was taken from the clock: to repeat the plan, write seed_rng = ${seed} into the parameter file first.`,
  parameter_file: "PARAMETERS.prm",
  unknown: "The parameter file was not found beside the results: PARAMETERS.prm stands for one with the parameters below.",
};
export const parameters = { title: "Parameters", columns: { group: "Group", key: "Parameter", value: "Value" }, none: "No parameters are told.", all: (n: string) => `All ${n} parameters` };
export const files = {
  title: "Files",
  columns: { role: "What it is", name: "Name", bytes: "Size", sha256: "Checksum (SHA-256)" },
  roles: {
    parameters: "parameters", data: "data", rules: "rules of matings", names: "names of the animals", faults: "faults of the herd book",
    relationships: "relationships", result: "result",
  } as Record<string, string>,
  none: "No files are told.",
};
export const licences = {
  title: "Licences of what is in this page",
  text: "The page draws and sorts with these programs, which are part of it. Their authors allow that on the terms below.",
  none: "The licences are not in this page.",
  one: (name: string, version: string, licence: string) => `${name} ${version} (${licence})`,
};
