#!/usr/bin/env python3
"""Runs the program on random herds and parameter files and checks what holds for every run.

Usage: tests/random_runs.py PROGRAM RUNS [SEED]
The first violation ends it with status 1, tells the seed that repeats it and leaves its folder."""
# Of every run: exit status 0, or 1 exactly when the input asks for it, with its message last in the
# log; no sanitizer's report; files end in a line end and hold no NaN or infinity; input files stay
# as they are; the same input gives the same bytes. Of every result: matings keep nmatings, sexes,
# max_matings and limitmalematings; inbreeding, relationships, contributions and the best mateset's
# values equal those computed here, plainly, to the digits printed.
import ast, collections, math, pathlib, random, re, shutil, subprocess, sys, tempfile
from collections import Counter

Animal = collections.namedtuple("Animal", "id sire dam sex born most ebv text")
CLOCK = re.compile(r"^(  cpu=| wall=|  ?QOB started).*$", re.M)
NOT_FINITE = re.compile(r"(?i)(?<![a-z_])(nan|inf|infinity)(?![a-z_])")
counts = Counter()
# What the value of each key is drawn from; some are replaced by what fits the herd.
DRAWN = {line.split()[0]: dict(item.split("=") for item in line.split()[1:]) for line in """\
DataParameters datafile='herd.dat' resultsdirectory='out/'|'res_' recodefile='_null_'|'codes.dat' \
  ignoreparentalpedigreeerrors=True|True|True|False
PopulationHistory pci_ngen=1|5|12
RelationshipMatrix source='pedigree'|'PEDIGREE'|'file' gfile='_null_'|'relations.dat' \
  timesteps=-1|0|0|0|0|0|0|0|0|0|1|1|1|1|5|5|5|5
OCSParameters nmatings=1 limitmalematings=1|1|2|3|4|5 optimise='penalty'|'constraint'|'Merit'|'else' \
  w_merit=0.0|1.0|-0.5 w_relationship=0.0|-1.0|-20.0|2.0 dfconstraint=-1.0|0.001|0.02|0.2|5.0
AlgorithmParameters generations=-1|0|1|30|120|300 popsize=2|3|9|20|30 n_offspring=1|2|5|9 \
  restart_interval=0|2|10|50 exchange_algorithm=-1|0|1|7|40 mutate_probability=-1.0|0.0|0.02|0.3|1.0 \
  crossover_probability=-1.0|0.0|0.3|1.0 directed_mutation_probability=-1.0|-1.0|0.0|0.02|0.3|1.0 \
  seed_rng=1|-5|2147483647|20240607 ngenerationsnoimprovement=1|20|200|1000
MatingOptions matingstrategy='mai'|'MAI'|'random'|'mcac' repeatedmatings=True|False
""".splitlines()}


def same(line, values, slack=1e-12):
    """The line begins with the values: integers, and reals to one unit of their last digit."""
    assert len(line.split()) >= len(values), f"{line} has too few values"
    for text, value in zip(line.split(), values):
        digits, power = re.fullmatch(r"[-+]?\d*\.?(\d*)(?:E(.+))?", text).groups("0")
        unit = 0 if isinstance(value, int) else 10.0 ** (int(power) - len(digits)) + slack
        assert abs(float(text) - value) <= unit, f"{text} should be {value} in {line}"


def random_herd(rng):
    """Animals of several birth times, parents first; two of the parents may have no record."""
    n = 300 if rng.random() < 0.03 else rng.randint(10, 80)
    ids = rng.choice([range(1, n + 9), range(-n, 9), rng.sample(range(-2**31 + 1, 2**31), n + 9)])
    ids = rng.sample([i for i in ids if i], n + 2)
    years = rng.sample(range(*rng.choice([(-5, 9), (2001, 2009)])), rng.randint(2, 6))
    known, pool, unrecorded = (rng.choice(x) for x in ([0, 0.5, 0.9, 1], [1, 3, 99], [0, 0, 0, 0.1]))
    share, oldest, flat = rng.choice([0.3, 0.7, 1]), rng.choice(years), rng.random() < 0.4
    limits = 0, rng.choice([2, 12, 60]), rng.choice([1, 5, 12, 60])
    merit = rng.choice([lambda: f"{rng.gauss(100, 10):.3f}", lambda: str(rng.randint(-2, 2)),
                        lambda: "1.5", lambda: f"{rng.gauss(0, 10 ** rng.uniform(-9, 9)):.6E}"])
    herd, depth = [], {}
    for i, born in zip(ids, sorted(rng.choices(years, k=n))):
        older = [[a.id for a in herd if a.born < born and a.sex == sex][-pool:] for sex in (1, 2)]
        parents = [rng.choice(some) if some and rng.random() < known else 0 for some in older]
        parents = [ids[-k] if rng.random() < unrecorded else p for k, p in enumerate(parents, 1)]
        sex, candidate = rng.choice([1, 2, 2]), born >= oldest and rng.random() < share
        most = candidate * (limits[sex] if flat else rng.randint(1, limits[sex]))
        text = rng.choice(["", f"tag{i}", "'two words'", '"with ""quotes"" inside"'])
        herd.append(Animal(i, *parents, sex, born, most, merit(), text))
        depth[i] = 1 + max(depth.get(p, 0) for p in parents)
    return sorted(herd, key=lambda a: depth[a.id]) if rng.random() < 0.5 else herd


def random_parameters(rng, herd):
    p = {key: ast.literal_eval(rng.choice(drawn.split("|")))
         for keys in DRAWN.values() for key, drawn in keys.items()}
    room = min(sum(a.most for a in herd if a.sex == sex) for sex in (1, 2))
    wanted = int(min(room, 60) * rng.choice([0.2, 0.5, 0.8, 1, 1.3]) / p["limitmalematings"])
    p["nmatings"] = rng.choice([-1, 0, 7] + 40 * [max(1, wanted) * p["limitmalematings"]])
    p["n_offspring"] = min(p["n_offspring"], p["popsize"])
    p["requests"] = "".join(f"&Contrib ancestor={rng.choice(herd).id} group={a.born} /\n&Contrib "
                            f"ancestor={rng.choice(herd).id} descendant={a.id} /\n" for a in herd[::40])
    return p


def run(program, folder, herd, p, relations=""):
    """Checks what holds for every input; returns the text of the results and the fault told."""
    (folder / "out").mkdir(parents=True)
    inputs = {"herd.dat": "".join(" ".join(map(str, a)) + "\n" for a in herd), "qob.prm": "".join(
        f"&{group} {', '.join(f'{key}={p[key]!r}' for key in keys)} /\n"
        for group, keys in DRAWN.items()) + p["requests"]}
    inputs.update({"relations.dat": relations} if relations else {})
    for name, text in inputs.items():
        (folder / name).write_text(text)
    done = subprocess.run([program, "qob.prm"], cwd=folder, capture_output=True, text=True, timeout=300)
    files = {path.name.removeprefix("res_"): CLOCK.sub("", path.read_text())
             for path in sorted(folder.glob("**/*")) if path.is_file()}
    assert all(files.pop(name) == text for name, text in inputs.items()), "an input file changed"
    files["stdout"] = CLOCK.sub("", done.stdout)
    assert not re.search("Sanitizer|runtime error", done.stderr), done.stderr
    for name, text in files.items():
        assert text.endswith("\n"), f"{name} does not end in a line end"
        assert name[-4:] != ".txt" or not NOT_FINITE.search(text), f"{name} is not finite"
    said, last = done.stderr.split("\n")[-2].strip(), files["stdout"].split("\n")[-2]
    assert done.returncode in (0, 1), f"exit status {done.returncode}: {said}"
    if done.returncode == 1:
        assert said == "Program terminated. Check file qob.log" or "index 0" in said, said
        assert files["qob.log"].endswith(last + "\n") or "index 0" in said, f"not in the log: {last}"
    return files, last if done.returncode else ""


def tabular(parents, f=None):
    """All relationships; Mendelian variances follow the inbreeding `f`, if given."""
    a = []
    for k, known in enumerate(parents):
        a.append([sum(a[p][j] for p in known) / 2 for j in range(k)])
        variance = 1 - sum(1 + f[p] if f else a[p][p] for p in known) / 4
        for j in range(k):
            a[j].append(a[k][j])
        a[k].append(variance + sum(a[p][q] for p in known for q in known) / 4)
    return a


class Expected:
    """Animals, relationships and candidates, and what is to be found with them."""

    def __init__(self, herd, p, relations):
        record, unrecorded = {a.id: a for a in herd}, Animal(0, 0, 0, 0, -9999, 0, "0", "")
        order = dict.fromkeys(i for a in herd for i in (a.sire, a.dam, a.id) if i)
        self.animals, self.p = [record.get(i, unrecorded._replace(id=i)) for i in order], p
        self.at, self.inserted = {i: k for k, i in enumerate(order)}, len(order) - len(herd)
        self.parents = [[self.at[i] for i in (a.sire, a.dam) if i] for a in self.animals]
        self.born, self.merit = [a.born for a in self.animals], [float(a.ebv) for a in self.animals]
        self.a = self.rel = self.product = tabular(self.parents)
        if relations:
            self.rel = [[0.0] * len(order) for _ in order]
            for i, j, value in map(str.split, relations.splitlines()):
                i, j = self.at[int(i)], self.at[int(j)]
                self.rel[i][j] = self.rel[j][i] = float(value)
            self.product = tabular(self.parents, [(row[k] or 1) - 1 for k, row in enumerate(self.rel)])
        self.sexes = [[k for k, a in enumerate(self.animals) if a.most > 0 and a.sex == sex and
                       self.rel[k][k]] for sex in (1, 2)]
        self.cands = sum(self.sexes, [])
        self.room = min(sum(self.animals[k].most for k in sex) for sex in self.sexes)

    def fault(self):
        """What the run has to stop with; "" if with nothing but before matings; else None."""
        p, limit, (males, females) = self.p, self.p["limitmalematings"], self.sexes
        return next((message for true, message in [
            (self.inserted and not p["ignoreparentalpedigreeerrors"], "ERRORs found in pedigree"),
            (p["timesteps"] < 0 or p["nmatings"] < 0, ""),
            (p["nmatings"] % limit, "NMatings cannot be divided by LimitMaleMatings"),
            (p["nmatings"] < limit, "LimitMaleMatings should be 1 <="),
            (not males, "No male candidates"), (not females, "No female candidates"),
            (all(self.animals[k].most < limit for k in males), "at least LimitMaleMatings matings"),
            (self.room < limit, "index 0")] if true), None)

    def values(self, matings):
        """Evaluation value, breeding value, relationship, rate of inbreeding, age of the parents."""
        p, now, n, used = self.p, max(self.born) + 1, 2 * len(matings), Counter(sum(matings, ()))
        mean = lambda of: sum(of(k) * times for k, times in used.items()) / n
        dot = lambda u, v: sum(s * t for s, t in zip(u, v))
        ages = [now - 1 - self.born[parent] for parents, born in zip(self.parents, self.born)
                if born == now - 1 for parent in parents]
        interval = sum(ages) / len(ages) if ages else 1.0
        weight = lambda a: sum(x >= a for x in ages) / len(ages) if ages and a > 1 else a == 1
        # What parents of each age class have fixed, now (x) and when all are a time step older (y).
        pairs = [(parent, now - born) for parents, born in zip(self.parents, self.born)
                 for parent in parents]
        size, x, y = Counter(a for _, a in pairs), [0.0] * len(self.born), [0.0] * len(self.born)
        for parent, a in pairs:
            x[parent] += weight(a) / size[a]
            y[parent] += weight(a + 1) / size[a]
        ax, ay = ([dot(row, v) for row in self.product] for v in (x, y))
        last, own = dot(x, ax) / interval ** 2, mean(lambda i: mean(lambda j: self.rel[i][j]))
        relationship = (dot(y, ay) + 2 * mean(lambda k: ay[k]) + own) / interval ** 2
        scaled = 0.0  # merit in standard deviations of each sex, above that of using all
        for sex, column in zip(self.sexes, zip(*matings)):
            merits = [(self.animals[k].most, self.merit[k]) for k in sex]
            w, count = sum(m for m, _ in merits), len(sex)
            average = sum(m * v for m, v in merits) / w
            square = sum(m * (v * v) for m, v in merits) - average * average * w
            unit = math.sqrt(max(square, 0.0) / ((count - 1) * w / count or 1))
            unit = 1.0 if unit < 1e-8 or len({v for _, v in merits}) == 1 else unit
            scaled += sum(self.merit[k] - average for k in column) / unit / n
        penalty = p["w_relationship"] if p["w_relationship"] <= 0 else -1.0
        most = min(max(p["dfconstraint"], 1e-5), 1.0) * (2 - last) / interval + last
        merit, fitness = mean(lambda k: self.merit[k]), p["w_merit"] * scaled + penalty * relationship
        if p["optimise"] != "penalty":
            fitness = {"constraint": scaled - 1000 * max(0.0, relationship - most),
                       "Merit": merit}.get(p["optimise"], fitness)
        return [fitness, merit, relationship, (relationship - last) * interval / (2 - last),
                mean(lambda k: now - self.born[k])]


def check_pedigree(want, files):
    for k, (a, line) in enumerate(zip(want.animals, files["f_coeff.txt"].split("\n")[4:])):
        same(line, [a.id, a.sire, a.dam, a.sex, a.born, want.a[k][k] - 1])
    for born, line in zip(dict.fromkeys(want.born), files["F_summary.txt"].split("\n")[9:]):
        group = [k for k, b in enumerate(want.born) if b == born]
        f, n = [want.a[k][k] - 1 for k in group], len(group)
        coancestry = sum(want.a[i][j] for i in group for j in group) / n / n / 2
        same(line, [born, n, sum(x > 0 for x in f), sum(f) / n, max(f), coancestry])
    for i, j, value in map(str.split, files.get("relations.dat", "").splitlines()):
        same(value, [want.a[want.at[int(i)]][want.at[int(j)]]])


def check_lists(want, files, n):
    """Returns the matings, pairs of animals."""
    lines, matings, rel = files["qob_MatingList.txt"].split("\n")[1:-1], [(None, None)], want.rel
    assert len(lines) == n, f"{len(lines)} matings instead of {n}"
    for number, line in enumerate(lines, 1):
        (sire, dam), (s, d) = matings[-1], (want.at[int(i)] for i in line.split()[:2])
        assert s in want.sexes[0] and d in want.sexes[1], f"no candidates of their sexes: {line}"
        nm, nf = nm + 1 if s == sire else 1, nf + 1 if d == dam else 1
        same(line, [want.animals[s].id, want.animals[d].id, number, nm, nf, (want.merit[s] +
             want.merit[d]) / 2, rel[s][d] / 2, (2 - (rel[s][s] + rel[d][d]) / 2) / 2])
        matings.append((s, d))
    matings = matings[1:]
    assert matings == sorted(matings), "the list is not sorted"
    used, offspring = Counter(sum(matings, ())), Counter(sum(want.parents, []))
    selected = [k for k in want.sexes[0] if used[k]]
    for name, head, animals in ("Candidates", 7, want.cands), ("male_list", 6, selected):
        lines = files[name + ".txt"].split("\n")[head:-1]
        assert len(lines) == len(animals), f"{name} has {len(lines)} lines"
        for k, line in zip(animals, lines):
            a, legal = want.animals[k], used[k] % want.p["limitmalematings"] == 0
            assert used[k] <= a.most and (a.sex == 2 or legal), f"{a} has {used[k]} matings"
            means = [sum(rel[k][j] for j in s) / len(s) for s in [*want.sexes, *zip(*matings)]]
            same(line, [a.id, a.sex, used[k], offspring[k], want.merit[k], *means] if head == 7 else
                 [a.id, used[k], offspring[k], *means])
    return matings


def check_report(want, files, matings):
    p, values, slack = want.p, want.values(matings), 1e-12 * (1 + max(map(abs, want.merit)))
    printed = lambda label: re.findall(rf"(?m)^ {label} *:(.*)$", files["F_summary.txt"])
    labels = ["Evaluation value", "Average breeding value", "Average relationship",
              "Rate of  inbreeding", "Generation interval"]
    same(" ".join(printed(label)[-1] for label in labels), values, slack)
    first, last = printed("Average inbreeding")
    same(last, [sum(want.rel[s][d] for s, d in matings) / 2 / len(matings)])
    assert first == last or p["matingstrategy"] in ("mai", "MAI") and (
        not p["repeatedmatings"] or float(last) < float(first)), f"inbreeding {first} {last}"
    if p["generations"] >= 0:
        same(files["qob_best.txt"].split("\n")[-2].split(None, 1)[1], values, slack)
        ran = int(printed("Found in QOB generation")[0]) + p["ngenerationsnoimprovement"]
        if p["exchange_algorithm"] > 0:
            counts["exchanges"] += min(ran, p["generations"]) // p["exchange_algorithm"]
        counts["restarts"] += files["qob.log"].count("Mutating solutions to increase variance")


def check_run(program, folder, rng, again):
    herd, relations = random_herd(rng), ""
    p = random_parameters(rng, herd)
    if p["source"] == "file":  # relationships that a run writes, perhaps with some lines left out
        before, kept = dict(p, source="pedigree", gfile="relations.dat"), rng.choice([1, 0.95, 0.7])
        relations = run(program, folder / "first", herd, before)[0].get("relations.dat", "")
        relations = "".join(x for x in relations.splitlines(True) if rng.random() < kept)
        p.update(source="file" if relations else "pedigree", gfile="relations.dat")
    want, found = Expected(herd, p, relations), run(program, folder / "run", herd, p, relations)
    assert not again or run(program, folder / "again", herd, p, relations) == found, "not the same again"
    (files, told), fault, n = found, want.fault(), min(p["nmatings"], want.room)
    counts[f"expected: {fault}" if fault else "analysed"] += 1
    assert (fault or "") in told, f"{told} instead of {fault}"
    if not fault:
        check_pedigree(want, files)
    if fault is not None:
        assert "Candidates.txt" not in files and bool(fault) == bool(told), f"unexpected: {told}"
        return
    counts["shortages"] += n < p["nmatings"]
    if told:
        assert "A legal solution was NOT found" in told, f"unexpected: {told}"
        assert n % p["limitmalematings"] or any(want.animals[k].most < n for k in want.cands), told
        counts["without a legal solution"] += 1
        return
    check_report(want, files, check_lists(want, files, n))
    ties = len({want.merit[k] for k in want.cands}) < len(want.cands)
    counts.update(["mated", *(f"{key} {p[key]}" for key in ("optimise", "limitmalematings", "source"))])
    counts.update({"inserted parents": want.inserted > 0, "ties": ties})


def main():
    program, runs = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    first = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    for seed in range(first, first + runs):
        folder = pathlib.Path(tempfile.mkdtemp(prefix="random_runs_"))
        try:
            check_run(program, folder, random.Random(seed), seed % 4 == 0)
        except Exception as fault:
            print(f"seed {seed}, folder {folder}: {fault!r}")
            raise
        shutil.rmtree(folder)
    print(f"{runs} runs:", ", ".join(f"{number} {kind}" for kind, number in sorted(counts.items())))


if __name__ == "__main__":
    main()
