#!/usr/bin/env python3
"""Puts ordinary faults into herds and checks that what they change is told on standard error.

usage: tests/ordinary_faults.py PROGRAM RUNS SEED HERDFOLDER...

A herd: a data file, eight values a line apart by blanks, and the qob.prm that names it. Each of
RUNS runs, from SEED on, takes a herd and a fault at random; faults of relationship files only for
herds of less than 200,000 bytes. The first violation ends it with status 1, tells the seed that
repeats it and leaves its folder.
  without the fault  all is told that data and mating list give, and no more
  with it            the same by f_coeff.txt and mating list; and the fault with its place and how
                     often it is there, or the run ends with a message: nothing differs in silence
  --quiet            leaves the remarks out, and status and results as they are
"""
import pathlib, random, re, shutil, subprocess, sys, tempfile
from collections import Counter, namedtuple

# What a herd's qob.prm is replaced by, with the values that it gives.
TEXT = """&DataParameters
  datafile='{datafile}', resultsdirectory='./QOB_', ignoreparentalpedigreeerrors=.false.,
  recodefile='_null_' /
&PopulationHistory
  pci_ngen=5 /
&Contrib
  ancestor={ancestor}, group={group} /
&RelationshipMatrix
  source='pedigree', gfile='_null_', timesteps=0 /
&OCSParameters
  nmatings={nmatings}, optimise='penalty', w_merit=1.0, w_relationship=-20.0, limitmalematings=1 /
&AlgorithmParameters
  generations=20, popsize=100, n_offspring=10, restart_interval=500, exchange_algorithm=750,
  seed_rng=20240607, ngenerationsnoimprovement=1000 /
&MatingOptions
  matingstrategy='mai', repeatedmatings=.false. /
"""

# A fault: its kind; whom it befalls (records), or where it is put (a pattern in the parameter
# file); the ways to write it; what is told of it, after file and line if that begins with ":".
Fault = namedtuple("Fault", "kind where ways told")

# In these a capital is a value of the record: Animal, Sire, Dam, seX, Birth time, Matings, Ebv,
# Text; C the ebv with a decimal comma, Y the other sex, Z the birth time as a year, L the next one,
# Q U V long identifiers; P is blanks up to column 120; W counts the lines from here on.
DATA = [
    Fault("harmless", "all", ["A,S,D,X,B,M,E,T", "A\tS D X B\tM E T ", "A S D X B M E 'T'"], ""),
    Fault("blank row", "one candidate", ["\nA S D X B M E T", "\t\nA S D X B M E T"],
          ":fewer .* : {W}"),
    Fault("slash", "some", ["A S D X B M E / T", "A S D X B/05/03 M E T", "A S/D X B M E T"],
          ":what follows .*"),
    Fault("cut", "one", ["A P S D X B M E T", "A S D X B M P E T", "A S D X B M E P TTTT"],
          ":(longer than 120|fewer than three) .*"),
    Fault("empty", "some", ["A,,D,X,B,M,E,T", "A S D X B M,,T", "A,S,D,,B,M,E,T"],
          ":(sex .* -1|(?!sex).* 0) is.*"),
    Fault("many", "some", ["A S D X B M E brown cow", "A S D X B M E 7 T", "A,S,D,X,B,M,E,T,T"],
          ":more than .*"),
    Fault("comma", "some",
          ["A S D X B M C T", "A S D X B M C", "A,S,D,X,B,M,C,T", "A,S,D,X,B,M,C",
           "A S D X B,5 M E", "A S D X B M,5 E T", "A,S,D,X,B,M,5,E", "A,S,D,X,B,5,M,E"],
          r":(\S+,\d+ is read|more than eight|optional_text) .*"),
    Fault("shifted", "some decimal", ["A S D X B M 5 E", "A,S,D,X,5,B,M,E", "A S D X B 5 M E"],
          ":optional_text .*"),
    Fault("text", "some", ["A S D X B M E brown-cow-of-uncle-jim"],
          ":optional_text brown.* is cut : .*"),
    Fault("sex", "one parent", ["A S D Y B M E T"],
          r".*:\d+: (sire|dam) {A} is recorded as a (fe)?male.*"),
    Fault("swapped", "one dam", ["A D S X B M E T", "A D D X B M E T"],
          ":sire {D} is recorded as a female"),
    Fault("selfed", "one dam", ["A D D X B M E T"],
          ":{D} is (a sire and a dam|sire and dam of one animal)"),
    Fault("dates", "all", ["A S D X Z0503 M E T", "A S D X 302Z M E T", "A S D X Z11 M E T"],
          ":birth_time .*"),
    Fault("span", "one", ["A S D X Z0 M E T", "A S D X -1500 M E T"],
          r"\S+:\d+: birth times from .*"),
    Fault("undated", "one", ["A S D X -999999 M E T"],
          ":birth_time -999999 counts as unknown : .*"),
    Fault("wide", "all", ["Q U V X B M E T", "-Q -U -V X B M E T"], ""),
    Fault("orphan", "one dam", ["A 999999999 D X B M E T"], ".*(-9999|without a record).*"),
    Fault("unknown", "some candidate", ["A 0 0 X B M E T", "A S 0 X B M E T"],
          ".* have an unknown parent, .*"),
    Fault("founders", "all newborn", ["A 0 0 X B M E T"], r"No animal born in {B} \(the last .*"),
    Fault("old group", "one newborn", ["A S D X B M E T\n999999999 0 0 X -1 M E T"],
          "The group that comes last .*"),
    Fault("new group", "one newborn", ["A S D X B M E T\n999999999 A 0 X L 0 E T"],
          "Animals born in {L}.*")]

# Of a relationship file: animals A and S and their relationship D; F with a decimal comma, G as it
# is for an animal with itself and else 0, H in per cent.
RELATIONSHIPS = [
    Fault("more", "some", ["A S D 1.0", "A S F", "A S 1 D"], ":more than three values : .*"),
    Fault("fewer", "some", ["A S", "\nA S D", " \nA S D"], ":fewer than three values : .*"),
    Fault("cut values", "some", ["A S P D", "A P S D"], ":longer than 120 characters : .*"),
    Fault("all values", "all", ["A S G", "A S H"],
          "g.rel: (no two animals have a|largest) relationship .*")]

PARAMETERS = [
    Fault("option", r"(optimise|source|matingstrategy)='(\w+)\w", [r"\1='\2", r"\1='\2x", r"\1='M"],
          r":\1 = '.*"),
    Fault("clamped weight", "(w_relationship)=[^,]*", [r"\1=1.0", r"\1=20"],
          r":\1 = .* -1 is taken"),
    Fault("clamped rate", "(dfconstraint)=1", [r"\1=2.0", r"\1=1E-7", r"\1=-0.1", r"\1=0"],
          r":\1 = .* is taken"),
    Fault("unknown group", r"&(\w+)\w(?=\n)", [r"&\1", r"&Other x=1 / \g<0>"],
          ":&.* is no group that is r.*"),
    Fault("missing", r"&(?!Contrib)(\w+)\n(?:[^/']|'[^']*')*/\n", [""],
          r"qob.prm: &\1 is missing.*"),
    Fault("unclosed", r"/\n(?=&|\Z)", [r"\n"], "qob.prm.*(is not closed by|expected a key).*"),
    Fault("twice", r"&(?!Contrib|Algo)(\w+)(?=\n)", [r"&\1 / &\1"], r":&\1 is not read : .*"),
    Fault("early", "(&Pop[^/]*/\n)(&Contrib[^/]*/\n)", [r"\2\1"],
          ":&Contrib is not read : expected .*"),
    Fault("seed", r"(seed_rng)=\d+", [r"\1=0"], r"\1 = .* is taken from the clock : .*"),
    Fault("request", "(?=&Con|&Rel)", ["&Contrib group=777 /", "&Contrib descendant=3 /"],
          ":&Contrib.* : .*"),
    Fault("short", r"(nmatings)=\d+(.*limit.*)=1", [r"\1=6000\2=1", r"\1=6000\2=3"],
          r"\1 = 6000 .*"),
    Fault("width", r"(optimise|source)='(\w+)", [r"\1='\2 of a length"],
          r":\1 = '.* : expected at most .*"),
    Fault("long name", "(datafile|recodefile|gfile|directory)='", [r"\g<0>" + 90 * "x"],
          " ERROR .*long.*"),
    Fault("argument", r"\A", [""], "qob: further is not read : .*")]

# What a kind needs in the parameter file, without the fault too.
NEEDED = {"orphan": (r"\.false\.", ".true."), "wide": ("_null_'", "rec.txt'"),
          "clamped rate": ("'penalty'.*?(?=limit)", "'constraint', dfconstraint=1, ")}
# What is told and cannot be seen from the results alone.
FREE = ("Optimisation of|Units of|The plan does not|nmatings =|seed_rng =|Matings that repeat|"
        r"\d+ of \d+ parentages of the animals")

def chosen_records(rows, where, last, rng):
    """Numbers of the records that the fault befalls."""
    number, *words = where.split()
    parents = {p for v in rows for p in v[1:3]}
    fits = {"parent": lambda v: v[0] in parents, "dam": lambda v: v[2] != "0",
            "candidate": lambda v: v[5] != "0", "newborn": lambda v: int(v[4]) == last,
            "decimal": lambda v: "." in v[6]}
    some = [k for k, v in enumerate(rows) if all(fits[word](v) for word in words)]
    count = {"one": 1, "some": rng.choice([1, 3]), "all": len(some)}[number]
    return sorted(rng.sample(some, count))

def values_of(rows, k, last):
    """What the capitals stand for in record k; last: the last birth time."""
    r = rows[k]
    values = dict(zip("ASDXBMET", r), C=r[6].replace(".", ","), Y=3 - int(r[3]), L=last + 1,
                  Z=int(r[4]) + 2000 * (int(r[4]) < 1000), W=len(rows) - k,
                  F=r[2].replace(".", ","), G=r[2] if r[0] == r[1] else 0, H=100 * float(r[2]))
    return values | {c: i if i == "0" else "1" + i.zfill(9) for c, i in zip("QUV", r)}

def put_into_records(text, name, fault, rng):
    """Gives the text with the fault, and the pattern of what is to be told."""
    way, lines = rng.choice(fault.ways), text.splitlines()
    rows = [(line.split() + 5 * ["0"])[:8] for line in lines]
    last = max(int(v[4]) for v in rows)
    chosen = chosen_records(rows, fault.where, last, rng)
    for k in chosen:
        values = values_of(rows, k, last)
        parts = way.split("P")
        begin, *end = (re.sub("[A-Z]", lambda m: str(values[m[0]]), part) for part in parts)
        lines[k] = begin.ljust(rng.randint(117, 120)) + end[0] if end else begin
    told = fault.told.format(**values_of(rows, chosen[0], last))
    if told.startswith(":"):
        more = f" ... and {len(chosen) - 1} more" if len(chosen) > 1 else ""
        told = f"{name}:{chosen[0] + 1}: {told[1:]}{more}"
    return "\n".join(lines) + "\n", told

def put_into_parameters(text, name, fault, rng):
    match, way = rng.choice([*re.finditer(fault.where, text)]), rng.choice(fault.ways)
    line, told = text.count("\n", 0, match.start()) + 1, match.expand(fault.told)
    return (text[:match.start()] + match.expand(way) + text[match.end():],
            f"{name}:{line}: {told[1:]}" if told.startswith(":") else told)

def run(program, here, files, *arguments):
    """Runs the program in a new folder. Gives its status, what is told, and the results."""
    here.mkdir()
    for name, text in files.items(): (here / name).write_text(text)
    done = subprocess.run([program, "qob.prm", *arguments], cwd=here, text=1, capture_output=1)
    *told, _ = done.stderr.splitlines()
    assert not done.returncode or told[-1] in (here / "qob.log").read_text(), "no message"
    kinds = [re.sub(r":\d+:|-?\d[\d.]*", ":", line) for line in told if "prm:" not in line]
    assert len({*kinds}) == len(kinds), f"told twice: {told}"
    return done.returncode, told, {f.name: re.sub("(?m)^ ( cpu|wall|QOB st).*", "", f.read_text())
                                   for f in here.glob("[Qr]*.txt")}

def rows_of(results, name, first):
    """The lines of a result file behind its header, value by value."""
    return [line.split() for line in results.get(f"QOB_{name}.txt", "").split("\n")[first:-1]]

def animals_of(results):
    """Animal, sire, dam and birth time of all."""
    text = results.get("QOB_f_coeff.txt", "").split("\n")[4:-1]
    return [[*map(int, (*line.split()[:3], line[40:48]))] for line in text]  # may touch each other

def expected_remarks(results, from_file):
    """How what the results give rise to is told; from_file: relationships are not by pedigree."""
    animals = animals_of(results)
    *_, last = dict.fromkeys(v[3] for v in animals)  # in order of first appearance
    latest = max(v[3] for v in animals)
    youngest = [any(v[1:3]) for v in animals if v[3] == latest]
    unknown = {str(v[0]) for v in animals if 0 in v[1:3] and not from_file}
    mates = [*zip(*rows_of(results, "qob_MatingList", 1))][:2]
    chosen = [f"{len({*ids} & unknown)} of {len({*ids})} chosen {sex} with "
              f"{sum(i in unknown for i in ids)} of {len(ids)} matings"
              for sex, ids in zip(("males", "females"), mates) if {*ids} & unknown]
    candidates = [[i in unknown for i, x, *_ in rows_of(results, "Candidates", 7) if x == sex]
                  for sex in "12"]
    males, females = (f"{sum(some)} of {len(some)}" for some in candidates)
    at = rf"born in {latest} \(the last time step\)"
    if last != latest:
        yield f"The group that comes last in the data file is that of {last}.*, not of {latest} : "
    if mates and not any(youngest): yield f"No animal {at} has a known parent : "
    if mates and any(youngest) and len(youngest) < 10: yield f"Animals {at} : {len(youngest)}, "
    if any(map(any, candidates)): yield f"{males} male and {females} female candidates have an unk"
    if chosen: yield f"With an unknown parent : {', '.join(chosen)}$"

def check_told(told, results, files, allowed=""):
    """All is told that the results give rise to, and nothing else but what is allowed."""
    want = [*expected_remarks(results, from_file="g.rel" in files)]
    over = [line for line in told if not re.match("|".join([*want, FREE + allowed]), line)]
    lack = [start for start in want if not any(re.match(start, line) for line in told)]
    lack += [name for name, text in results.items() if "**" in text and name not in str(told)]
    assert not over + lack, f"told: {over}, not told: {lack}"

def fault_and_files(program, folder, herd, rng):
    """A fault, the files of a herd without it, and the name of the one to put it into."""
    given = dict(re.findall(r"\b(ancestor|group|nmatings|datafile)='?([^',\s]+)",
                            re.sub("!.*", "", (herd / "qob.prm").read_text())))
    parameters, name = TEXT.format(**given), given["datafile"]
    data = (herd / name).read_text()
    fault = rng.choice(DATA + PARAMETERS + (RELATIONSHIPS if len(data) < 200000 else []))
    files = {name: data, "qob.prm": re.sub(*NEEDED.get(fault.kind, ("^", "")), parameters, count=1)}
    if fault in PARAMETERS: return fault, files, "qob.prm"
    if fault in DATA: return fault, files, name
    files["qob.prm"] = parameters.replace("gfile='_null_'", "gfile='g.rel'")
    run(program, folder / "first", files)
    files |= {"g.rel": (folder / "first/g.rel").read_text(),
              "qob.prm": files["qob.prm"].replace("source='pedigree", "source='file")}
    return fault, files, "g.rel"

def check_run(program, folder, herd, rng):
    fault, files, name = fault_and_files(program, folder, herd, rng)
    status, told, plain = run(program, folder / "without", files)
    assert status == 0, f"without the fault: {told}"
    check_told(told, plain, files)
    put = put_into_parameters if fault in PARAMETERS else put_into_records
    files[name], own = put(files[name], name, fault, rng)
    arguments = ["further"] * (fault.kind == "argument")
    status, told, results = run(program, folder / "with", files, *arguments)
    mine = [line for line in told if re.fullmatch(own, line)]
    stopped = status == 1 and fault not in PARAMETERS  # by what the fault has led to
    assert mine or not own or stopped, f"{fault.kind}: not {own}, but {told}"
    if fault.kind == "harmless": assert results == plain, "harmless, but results differ"
    if status == 0: check_told(told, results, files, r"|\S+:" * (fault.kind != "harmless"))
    if fault.kind == "seed":  # to draw the same again
        files[name] = files[name].replace("seed_rng=0", mine[0].split(" is")[0])
    quiet = run(program, folder / "quiet", files, *arguments, "--quiet")
    assert quiet == (status, told[-1:] * status, results), "--quiet"
    counts[f"{fault.kind}, status {status}"] += 1

program, runs, first = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]), int(sys.argv[3])
herds, counts = [pathlib.Path(name) for name in sys.argv[4:]], Counter()
for seed in range(first, first + runs):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="ordinary_faults_"))
    rng = random.Random(seed)
    try: check_run(program, folder, rng.choice(herds), rng)
    except Exception as fault: raise SystemExit(f"seed {seed}, {folder}: {fault!r}") from fault
    shutil.rmtree(folder)
print(f"{runs} runs:", ", ".join(f"{n} {kind}" for kind, n in sorted(counts.items())))
