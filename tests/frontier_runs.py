#!/usr/bin/env python3
"""Judges the plans of qob-frontier by runs of qob, and by itself after sudden ends.

usage: tests/frontier_runs.py PROGRAMS KILLS HERD.dat...

PROGRAMS is the folder of both programs. Of each herd, with random goals, units of males and numbers
of jobs: every plan's files are, byte for byte but for clocks, those that qob leaves alone; no plan is
above its bound, and what the table says of it is what its own summary says, to the digits printed;
a frontier that is killed KILLS times at random moments, and goes on each time, ends as one that was
not. The first violation ends it with status 1 and leaves its folder.
"""
import csv, pathlib, random, re, shutil, subprocess, sys, tempfile, time

PARAMETERS = """&DataParameters datafile='herd.dat', resultsdirectory='./Q_' /
&PopulationHistory / &Contrib ancestor=2 / &RelationshipMatrix /
&OCSParameters nmatings={n}, limitmalematings={unit}, {goal} /
&AlgorithmParameters generations={g}, popsize=20, restart_interval=20, seed_rng=7 /
&Improvement {start} / &MatingOptions matingstrategy='{pairing}' /
{rules}
"""
CLOCKS = re.compile(rb"(cpu|wall)=.*|QOB started.*")

def files(folder):
    return {path.name: CLOCKS.sub(b"", path.read_bytes()) for path in folder.iterdir()}

def expect(kept, *what):
    if not kept:
        sys.exit("frontier_runs: " + " ".join(map(str, what)))

def random_rules(rng, animals, unit):
    """Decided matings, a unit of them, and one more male and female that must be used."""
    some = [[a[0] for a in animals if a[3] == sex and int(a[5]) >= unit] for sex in "12"]
    (sire, other), dams = rng.sample(some[0], 2), rng.sample([a[0] for a in animals if a[3] == "2" and int(a[5]) > 0], unit + 1)
    fixed = [f"fix,{sire},{dam},1" for dam in dams[:unit]]
    return "\n".join(["kind,a,b,value", *fixed, f"min,{other},,1", f"min,{dams[-1]},,1", f"forbid,{other},{dams[-1]},", ""])

def random_parameters(rng, data):
    animals = [line.split() for line in data.read_text().splitlines()]
    least = min(int(a[5]) for a in animals if a[3] == "1" and int(a[5]) > 0)
    unit = min(rng.choice([1, 1, 2, 3]), least)
    room = [sum(int(a[5]) // u * u for a in animals if a[3] == s) for s, u in (("1", unit), ("2", 1))]
    goal = rng.choice(["w_relationship=-20, w_merit=1", "optimise='constraint', dfconstraint=0.01"])
    rules = rng.random() < 0.5
    (data.parent / "rules.csv").write_text(random_rules(rng, animals, unit))
    return PARAMETERS.format(rules="&MatingRules rulesfile='rules.csv' /" if rules else "", n=max(min(40, *room) // unit, 1) * unit, unit=unit, goal=goal, g=rng.randint(0, 80),
                             start=rng.choice(["", "start=T", "finish=T"]), pairing=rng.choice(["mai", "random"]))

def judge_plan(qob, row, folder, alone):
    alone.mkdir(parents=True)
    shutil.copy(folder / "qob.prm", alone)
    ended = subprocess.run([qob, "qob.prm"], cwd=alone, capture_output=True)
    expect(ended.returncode == 0 and files(folder) == files(alone), folder, "is not", alone)
    summary = (folder / "Q_F_summary.txt").read_text()
    bound, value = float(row["bound"]), float(re.findall(r"Evaluation value *:\s*(\S+)", summary)[-1])
    expect(value <= bound + 1e-5 * max(1.0, abs(bound)), folder, "value", value, "bound", bound)  # of six digits
    if row["optimise"] == "penalty":
        value = float(row["scaled_merit"]) - float(row["weight"]) * float(row["relationship"])
        expect(value <= bound + 1e-9, folder, "value", value, "bound", bound)
    elif float(row["rate"]) <= float(row["constraint"]):
        expect(float(row["scaled_merit"]) <= bound + 1e-9, folder, row["scaled_merit"], "bound", bound)
    expect(row["share"] in ("", "-") or 0 <= float(row["share"]) <= 1, folder, "share", row["share"])
    for label, column in (("Average relationship", "relationship"), ("Average inbreeding", "inbreeding")):
        told = float(re.findall(label + r" *:\s*(\S+)", summary)[-1])
        expect(abs(told - float(row[column])) < 1e-6, folder, column, row[column], "is not", told)

def judge_herd(programs, kills, herd, rng, work):
    shutil.copy(herd, work / "herd.dat")
    (work / "herd.prm").write_text(random_parameters(rng, work / "herd.dat"))
    command = [programs / "qob-frontier", "herd.prm", "--points", "5", "--search", "--seeds", "1",
               "--target-ne", str(rng.choice([20, 50, 200])), "--quiet"]
    def frontier(*more, seconds=600):
        begin = time.time()
        with subprocess.Popen([*command, *more], cwd=work, stdout=subprocess.DEVNULL) as running:
            try:
                return running.wait(seconds), time.time() - begin
            except subprocess.TimeoutExpired:
                running.kill()
                return None, seconds
    status, took = frontier("-o", "whole", "--jobs", "1")
    expect(status == 0, herd, "status", status)
    rows = {row["folder"]: row for row in csv.DictReader((work / "whole/frontier.csv").open())}
    for name, row in rows.items():
        judge_plan(programs / "qob", row, work / "whole" / name, work / "alone" / name)
    killed = 0
    while killed < kills:
        status, _ = frontier("-o", "cut", "--resume", "--jobs", "3", seconds=rng.uniform(0, took))
        killed += status is None
        if status is not None:  # begin anew
            shutil.rmtree(work / "cut")
    expect(frontier("-o", "cut", "--resume")[0] == 0, herd, "does not go on")
    for row in csv.DictReader((work / "cut/frontier.csv").open()):
        expect({**row, "seconds": 0} == {**rows[row["folder"]], "seconds": 0}, row)
        expect(files(work / "cut" / row["folder"]) == files(work / "whole" / row["folder"]), "cut", row["folder"])
    return len(rows), killed

def main():
    programs, kills, herds = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]), sys.argv[3:]
    rng = random.Random(1)
    for herd in herds:
        work = pathlib.Path(tempfile.mkdtemp(prefix="frontier_runs_"))
        plans, killed = judge_herd(programs, kills, herd, rng, work)
        shutil.rmtree(work)
        print(f"{herd}: {plans} plans as qob leaves them, also after {killed} sudden ends")

main()
