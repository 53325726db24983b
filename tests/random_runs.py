#!/usr/bin/env python3
"""Runs the program on random herds and checks what holds for every run.

usage: tests/random_runs.py PROGRAM RUNS [SEED]

Makes RUNS random herds and parameter files, from SEED (1) on. The first violation ends it with
status 1, tells the seed that repeats it and leaves its folder.

Of every run: exit status 0, or 1 exactly when the input asks for it, with its message last in the
log; no sanitizer's report; files end in a line end and hold no NaN or infinity; input files stay as
they are; the same input gives the same bytes. Of every result, to the digits printed:
  matings        as many as asked for or as there is room for, of candidates of both sexes, used at
                 most max_matings times, males in multiples of limitmalematings
  relationships  by the tabular method (an animal's to an older one is the mean of its parents'; to
                 itself 1 + its inbreeding, half that between its parents), or those of the file
  the mateset's  x'Ax over the squared generation interval (mean age of the newborns' parents); x is
                 what the age classes have fixed, by what they will still leave, and the new matings
  founders       contribute 1 to those born last, together
  inbreeding     its rate: what that adds, of what is left to lose, in a generation
  merit          mean breeding value of the parents; scaled: in standard deviations of each sex's
                 candidates, above their mean by allowances
  value          what the search maximises: of these, by the criterion of the parameters
"""
import ast, itertools, math, pathlib, random, re, shutil, subprocess, sys, tempfile
from collections import Counter, namedtuple
from statistics import fmean

Animal = namedtuple("Animal", "id sire dam sex born most ebv text")  # a record; most: max_matings
MALE, FEMALE = 1, 2
counts = Counter()  # the kinds of runs that there were

# --- random input ---
# Groups, their keys, and what each value is drawn from; nmatings is replaced by what fits the herd.
DRAWN = {line.split()[0]: dict(item.split("=") for item in line.split()[1:]) for line in """\
DataParameters resultsdirectory='out/'|'res_' recodefile='_null_'|'codes.dat' \
  ignoreparentalpedigreeerrors=True|True|True|False
PopulationHistory pci_ngen=1|5|12
RelationshipMatrix source='pedigree'|'file' gfile='_null_'|'rel.dat' timesteps=0|0|0|0|1|1|5|5|9|-1
OCSParameters nmatings=1 limitmalematings=1|1|2|3|4|5 optimise='penalty'|'constraint'|'Merit'|'?' \
  w_merit=0.0|1.0|-0.5 w_relationship=0.0|-1.0|-20.0|2.0 dfconstraint=-1.0|0.001|0.02|0.2|5.0
AlgorithmParameters generations=-1|0|1|30|120|300 popsize=2|3|9|20|30 n_offspring=0|1|1|2|2|40 \
  restart_interval=0|2|10|50 exchange_algorithm=0|1|7|40 seed_rng=1|-5|2147483647|20240607 \
  mutate_probability=-1.0|0.0|0.02|0.3|1.0 crossover_probability=-1.0|0.0|0.3|1.0 \
  directed_mutation_probability=-1.0|0.0|0.02|0.3|1.0 ngenerationsnoimprovement=1|20|200|1000
MatingOptions matingstrategy='mai'|'MAI'|'random'|'mcac' repeatedmatings=True|False
Contrib ancestor=0|1|3|5 descendant=0|1|7 group=0|3|2005
""".splitlines()}

def random_herd(rng):
    """Animals of several birth times, parents first; two parents may have no record."""
    n = 300 if rng.random() < 0.03 else rng.randint(10, 80)
    small, any_size = range(1 - n // 2 * 2, n + 9, 2), range(1 - 2**31, 2**31, 2)
    ids = [i for i in rng.sample(rng.choice([small, any_size]), n + 3) if i != -1]
    unrecorded = ids[n:n + 2]  # a sire and a dam
    years = rng.sample(range(*rng.choice([(-5, 9), (2001, 2009)])), rng.randint(2, 6))
    known = rng.choice([0, 0.5, 0.9, 1])  # the share of parents that are known
    pool = rng.choice([1, 3, 99])  # parents are among so many of the youngest
    lost = rng.choice([0, 0, 0, 0.1])  # the share of parents without a record
    share, oldest = rng.choice([0.3, 0.7, 1]), rng.choice(years)  # of candidates, since then
    least, factor = rng.choice([1, 5]), rng.choice([1, 3, 12])  # of their allowances
    merit, spread = rng.choice(["{:.3f}", "{:.0f}", "1.5", "{:.6E}"]), rng.choice([0, 1, 9])
    herd = []

    def parent(sex):
        older = [a.id for a in herd if a.born < born and a.sex == sex][-pool:]
        if rng.random() < lost: return unrecorded[sex - 1]
        return rng.choice(older) if older and rng.random() < known else 0

    for i, born in zip(ids, sorted(rng.choices(years, k=n))):
        sire, dam = parent(MALE), parent(FEMALE)
        most = rng.randint(least, least * factor) * (born >= oldest and rng.random() < share)
        ebv = merit.format(rng.gauss(0, 10 ** rng.uniform(-spread, spread)))
        sex = rng.choice([MALE, FEMALE, FEMALE])
        text = rng.choice(["", f"tag{i}", "'two words'", '"with ""quotes"" inside"'])
        herd.append(Animal(i, sire, dam, sex, born, most, ebv, text))
    if rng.random() < 0.5:
        herd.sort(key=lambda a: any((a.sire, a.dam)))  # founders first
    return herd

def random_parameters(rng, herd):
    p = {key: ast.literal_eval(rng.choice(values.split("|")))
         for keys in DRAWN.values() for key, values in keys.items()}
    room = min(sum(a.most for a in herd if a.sex == sex) for sex in (MALE, FEMALE))
    slots = int(min(room, 60) * rng.choice([0.2, 0.5, 0.8, 1, 1.3]) / p["limitmalematings"])
    p["nmatings"] = rng.choice([-1, 0, 7] + 60 * [max(1, slots) * p["limitmalematings"]])
    return p

# --- a run ---
def run(program, folder, herd, p, relations="", more="", rules=""):
    """Runs the program, checks what holds for any input; gives its files and the fault it told.

    `more` stands behind the groups of p, `rules` in rules.csv."""
    (folder / "out").mkdir(parents=True)
    groups = (f"&{group} {', '.join(f'{key}={p[key]!r}' for key in keys)} /\n"
              for group, keys in DRAWN.items())
    inputs = {folder / "qob.dat": "".join(" ".join(map(str, a)) + "\n" for a in herd),
              folder / "qob.prm": "".join(groups) + more, folder / "read.dat": relations,
              folder / "rules.csv": rules}
    for path, text in inputs.items(): path.write_text(text, newline="")
    done = subprocess.run([program, "qob.prm"], cwd=folder, timeout=99, text=True, capture_output=1)
    kept = all(path.read_bytes() == text.encode() for path, text in inputs.items())
    assert kept, "an input file changed"
    assert not re.search("Sanitizer|runtime error", done.stderr), done.stderr
    files = {path.name.removeprefix("res_"): path.read_text() for path in folder.glob("**/*")
             if path.is_file() and path not in inputs}
    for name, text in [*files.items(), ("stdout", done.stdout), ("stderr", done.stderr)]:
        assert text.endswith("\n"), f"{name} does not end in a line end"
        assert name[-4:] != ".txt" or not re.search(r"(?i)\b(nan|inf|infinity)\b", text), name
        files[name] = re.sub(r"(?m)^(  cpu=| wall=| QOB started|  QOB started).*", "", text)
    told = done.stdout.split("\n")[-2] if done.returncode else ""
    said = " Program terminated. Check file qob.log\n" if told else "QOB ended successfully\n"
    assert done.stderr.endswith(said) and told in files["qob.log"].split("\n")[-2], done.stderr
    return files, told

# --- what there should be, by definition ---
def tabular(parents, inbreeding=None):
    """All relationships; Mendelian variances follow `inbreeding`, by default the table's own."""
    a = [[0.0] * len(parents) for _ in parents]
    for k, known in enumerate(parents):
        for j in range(k): a[k][j] = a[j][k] = sum(a[q][j] for q in known) / 2
        inherited = sum(a[q][r] for q in known for r in known) / 4
        lost = sum(1 + inbreeding[q] if inbreeding else a[q][q] for q in known) / 4
        a[k][k] = inherited + 1 - lost
    return a

def dot(u, v):
    return sum(s * t for s, t in zip(u, v))

def mean_of(column, members):
    return fmean(column[k] for k in members)

class Expected:
    """A herd as the program should see it. Animals are numbered from 0, parents first."""

    def __init__(self, herd, p, relations):
        record, unrecorded = {a.id: a for a in herd}, Animal(0, 0, 0, 0, -9999, 0, "0", "")
        order = dict.fromkeys(i for a in herd for i in (a.sire, a.dam, a.id) if i)
        self.p, self.inserted = p, len(order) > len(herd)
        self.animals = [record.get(i, unrecorded._replace(id=i)) for i in order]
        self.number = {i: k for k, i in enumerate(order)}
        self.parents = [[self.number[i] for i in (a.sire, a.dam) if i] for a in self.animals]
        self.born, self.merit = zip(*((a.born, float(a.ebv)) for a in self.animals))
        self.now = max(self.born) + 1  # when the offspring of the matings are born
        self.a = tabular(self.parents)
        self.rel = self.a if not relations else [[0.0] * len(order) for _ in order]
        for i, j, text in self.triples(relations):
            self.rel[i][j] = self.rel[j][i] = float(text)
        self.candidates = [[k for k, a in enumerate(self.animals) if a.most > 0 and a.sex == sex and
                            self.rel[k][k]] for sex in (MALE, FEMALE)]
        self.room = min(sum(self.animals[k].most for k in some) for some in self.candidates)
        # A parent, and the age class of its offspring: 1 for those born last.
        self.parentships = [(q, self.now - b) for known, b in zip(self.parents, self.born)
                            for q in known]
        self.ages = [self.now - 1 - self.born[q] for q, age in self.parentships if age == 1]
        self.interval = fmean(self.ages or [1])
        self.product = tabular(self.parents, [(r[k] or 1) - 1 for k, r in enumerate(self.rel)])
        self.last = dot(*self.fixed(0)) / self.interval ** 2  # relationship before the matings
        self.coming = self.fixed(1)
        self.decided = Counter()  # matings that are part of every plan

    def triples(self, text):
        lines = map(str.split, text.splitlines())
        return ((self.number[int(i)], self.number[int(j)], a) for i, j, a in lines)

    def fault(self):
        """What the run has to stop with; "" if it only ends before matings; None if it mates."""
        p, limit, (males, females) = self.p, self.p["limitmalematings"], self.candidates
        strict = not p["ignoreparentalpedigreeerrors"]
        faults = ((self.inserted and strict, "ERRORs found in pedigree"),
                  (p["timesteps"] < 0 or p["nmatings"] < 0, ""),
                  (p["nmatings"] % limit, "NMatings cannot be divided by LimitMaleMatings"),
                  (p["nmatings"] < limit, "LimitMaleMatings should be 1 <="),
                  (not males, "No male candidates"), (not females, "No female candidates"),
                  (all(self.animals[k].most < limit for k in males), "at least "),
                  (self.room < limit, "LimitMaleMatings should be 1 <="))
        return next((message for is_so, message in faults if is_so), None)

    def fixed(self, step):
        """What the parents of each age class have fixed, when all are `step` time steps older."""
        def still_to_come(age):
            return 1 if age < 2 else fmean(a >= age for a in self.ages or [0])
        size = Counter(age for _, age in self.parentships)
        x = [0.0] * len(self.born)
        for q, age in self.parentships:
            x[q] += still_to_come(age + step) / size[age]
        return x, [dot(row, x) for row in self.product]

    def relationship(self, used):
        y, ay = self.coming
        own = fmean(mean_of(self.rel[i], used) for i in used)
        return (dot(y, ay) + 2 * mean_of(ay, used) + own) / self.interval ** 2

    def scaled_merit(self, some, used):
        """Of one sex: the candidates `some`, the parents `used`."""
        w, merits = [self.animals[k].most for k in some], [self.merit[k] for k in some]
        average, n = dot(w, merits) / sum(w), len(w)
        squares = dot(w, [m * m for m in merits]) - average * average * sum(w)
        deviation = math.sqrt(max(squares, 0.0) / ((n - 1) * sum(w) / n or 1))
        if deviation < 1e-8 or len(set(merits)) == 1: deviation = 1.0
        return (mean_of(self.merit, used) - average) / deviation

    def values(self, matings):
        """Value, breeding value, relationship, rate of inbreeding, mean age of the parents."""
        p, used, last = self.p, sum(matings, ()), self.last
        merit, relationship = mean_of(self.merit, used), self.relationship(used)
        scaled = sum(map(self.scaled_merit, self.candidates, zip(*matings))) / 2
        left = 2 - last
        if p["optimise"] == "constraint":
            most = last + min(max(p["dfconstraint"], 1e-5), 1.0) * left / self.interval
            value = scaled - 1000 * max(0.0, relationship - most)
        elif p["optimise"] == "Merit":
            value = merit
        else:
            weight = p["w_relationship"] if p["w_relationship"] <= 0 else -1.0
            value = p["w_merit"] * scaled + weight * relationship
        rate = (relationship - last) * self.interval / left
        return [value, merit, relationship, rate, self.now - mean_of(self.born, used)]

# --- checks of a result ---
def check_numbers(line, values, slack=1e-12):
    """The line begins with these: integers, and reals to one unit of the last digit printed."""
    for text, value in zip(line.split()[:len(values)], values, strict=True):
        digits, power = re.fullmatch(r"[-+]?\d*\.?(\d*)(?:E(.+))?", text).groups("0")
        unit = 0 if isinstance(value, int) else 10.0 ** (int(power) - len(digits)) + slack
        assert abs(float(text) - value) <= unit, f"{text} should be {value} in {line}"

def check_outcome(want, files, told):
    """The run ended as the input asks for. Gives the fault, as Expected.fault does."""
    fault, p = want.fault(), want.p
    illegal = files["qob.log"].count("Base pop solution not legal")
    assert not illegal or p["limitmalematings"] > 1, "single matings are drawn by allowance"
    if fault is None and told and illegal + p["n_offspring"] >= p["popsize"]:
        fault = "A legal solution was NOT found"  # an unlucky start of the search
    assert bool(told) == bool(fault) and (fault or "") in told, f"{told!r} instead of {fault!r}"
    assert ("Candidates.txt" in files) == (fault is None), "matings, but not as asked for"
    return fault

def check_inbreeding(want, files):
    lines = files["f_coeff.txt"].split("\n")[4:-1]
    for k, (a, line) in enumerate(zip(want.animals, lines, strict=True)):
        check_numbers(line, [*a[:5], want.a[k][k] - 1])

def check_founders(files):
    """Their contributions to those born last sum to 1, half for those with a known parent."""
    lines = files["gencont.txt"].split("\n \n")[0].split("\n")[3:]
    total = sum(float(line.split()[5]) for line in lines)
    assert abs(total - 1) <= 1e-6 * len(lines), f"founders contribute {total}"

def check_mating_list(want, files, n):
    """Gives the matings: sire and dam by their numbers."""
    lines, rel, merit = files["qob_MatingList.txt"].split("\n")[1:-1], want.rel, want.merit
    matings = [tuple(want.number[int(i)] for i in line.split()[:2]) for line in lines]
    decided = [line.endswith(" decided") for line in lines]
    order = [(not first, *mating) for first, mating in zip(decided, matings)]
    assert len(matings) == n and order == sorted(order), f"{n} matings expected, in order"
    assert Counter(itertools.compress(matings, decided)) == want.decided, "the matings decided"
    had, nf = Counter(), 0  # the matings of the sire, and how often the dam came in a row
    for k, ((s, d), before, line) in enumerate(zip(matings, [(-1, -1)] + matings, lines), 1):
        assert s in want.candidates[0] and d in want.candidates[1], f"wrong parents in {line}"
        had[s], nf = had[s] + 1, nf * (d == before[1]) + 1
        variance = (2 - (rel[s][s] + rel[d][d]) / 2) / 2
        check_numbers(line, [want.animals[s].id, want.animals[d].id, k, had[s], nf,
                             (merit[s] + merit[d]) / 2, rel[s][d] / 2, variance])
    return matings

def check_candidates(want, files, matings):
    used, offspring = Counter(sum(matings, ())), Counter(sum(want.parents, []))
    rows = [line.split() for line in files["Candidates.txt"].split("\n")[7:-1]]
    groups = [*want.candidates, *zip(*matings)]  # all males, all females, those used of each
    for k, row in zip(sum(want.candidates, []), rows, strict=True):
        a, n = want.animals[k], used[k]
        free = n - sum(fixed for mating, fixed in want.decided.items() if k in mating)
        in_groups = a.sex == FEMALE or free % want.p["limitmalematings"] == 0
        assert n <= a.most and in_groups, f"{a} has {n} matings"
        check_numbers(" ".join(row), [a.id, a.sex, n, offspring[k], want.merit[k],
                                      *(mean_of(want.rel[k], group) for group in groups)])
    selected = [[row[0], *row[2:4], *row[5:9]] for row in rows if row[1] == "1" and row[2] != "0"]
    listed = [line.split()[:7] for line in files["male_list.txt"].split("\n")[6:-1]]
    assert listed == selected, "the males selected"

def check_search_result(want, files, matings, finished=False):
    p, values, slack = want.p, want.values(matings), 1e-12 * (1 + max(map(abs, want.merit)))
    found, value, merit, relationship, random_f, age, _, _, rate, _, paired_f = re.findall(
        r"(?m)^ \w[\w ]+:(.*)", files["F_summary.txt"])[-11:]
    check_numbers(" ".join((value, merit, relationship, rate, age)), values, slack)
    check_numbers(paired_f, [fmean(want.rel[s][d] / 2 for s, d in matings)])
    if p["generations"] >= 0:
        best = files["qob_best.txt"].split("\n")[-2]
        if not finished: check_numbers(best.split(None, 1)[1], values, slack)
        ran = min(int(found) + p["ngenerationsnoimprovement"], p["generations"])
        counts["exchanges"] += ran // (p["exchange_algorithm"] or 10**9)
        counts["restarts"] += files["qob.log"].count("Mutating solutions to increase variance")
    return value, random_f, paired_f

def written_relationships(program, folder, herd, p, rng):
    """A relationship file as a run writes it, perhaps with some lines left out."""
    first, kept = dict(p, source="pedigree", gfile="rel.dat", nmatings=-1), rng.choice([1, 0.9])
    written = run(program, folder, herd, first)[0].get("rel.dat", "")
    return "".join(line for line in written.splitlines(True) if rng.random() < kept)

def check_run(program, folder, rng, seed):
    herd, relations = random_herd(rng), ""
    p = random_parameters(rng, herd)
    if p["source"] == "file":
        relations = written_relationships(program, folder / "first", herd, p, rng)
        p.update({"gfile": "read.dat"} if relations else {"source": "Pedigree"})
    want = Expected(herd, p, relations)
    files, told = run(program, folder / "run", herd, p, relations)
    assert seed % 4 or run(program, folder / "again", herd, p, relations) == (files, told), "new"
    fault = check_outcome(want, files, told)
    counts[{None: "mated", "": "analysed"}.get(fault, f"told: {fault}")] += 1
    for i, j, a in want.triples(files.get("rel.dat", "")): check_numbers(a, [want.a[i][j]])
    if not fault:
        check_inbreeding(want, files)
        check_founders(files)
    if fault is None:
        n = min(p["nmatings"], want.room)
        matings = check_mating_list(want, files, n)
        check_candidates(want, files, matings)
        _, random_f, paired_f = check_search_result(want, files, matings)
        if random_f != paired_f:  # only pairing changes it, for the better if it may repeat matings
            assert p["matingstrategy"].lower() == "mai", f"{random_f} to {paired_f}"
            assert float(random_f) > float(paired_f) or not p["repeatedmatings"], f"{random_f} rose"
        merits = [want.merit[k] for k in sum(want.candidates, [])]
        counts.update(f"{key} {p[key]}" for key in ("optimise", "limitmalematings", "source"))
        counts.update(inserted=want.inserted, shortage=n < p["nmatings"],
                      ties=len(set(merits)) < len(merits))

def main(check_run):
    program, runs = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    first, name = int(sys.argv[3]) if len(sys.argv) > 3 else 1, pathlib.Path(sys.argv[0]).stem
    for seed in range(first, first + runs):
        folder = pathlib.Path(tempfile.mkdtemp(prefix=f"{name}_"))
        try: check_run(program, folder, random.Random(seed), seed)
        except Exception as fault: raise SystemExit(f"seed {seed}, {folder}: {fault!r}") from fault
        shutil.rmtree(folder)
    print(f"{runs} runs:", ", ".join(f"{number} {kind}" for kind, number in sorted(counts.items())))

if __name__ == "__main__": main(check_run)
