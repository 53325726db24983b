#!/usr/bin/env python3
"""Compares what a report tells of a population with the measures computed by their definitions.

usage: tests/population_measures.py QOB QOB_REPORT HERD.dat...

For each data file (some thousand animals at most: matrices are dense) a plan is made and reported;
every number of the population, and what its candidates are told of kinship and contributions, must
agree to nine digits, of single animals to the eight that are told. The first violation ends it with status 1 and leaves its folder, whose path it
tells. Who lives is taken from the report; the span of the regressions, the last three generation
intervals and at least three birth times, is decided here anew.
"""
import argparse, collections, functools, itertools, json, math, pathlib, shutil, statistics
import subprocess, tempfile
from array import array

PARAMETERS = """&DataParameters datafile='{}', resultsdirectory='./QOB_' /
&PopulationHistory pci_ngen=5 /
&RelationshipMatrix /
&OCSParameters nmatings=4, w_merit=1.0, w_relationship=-20.0 /
&AlgorithmParameters generations=20, popsize=20, n_offspring=5, restart_interval=50,
  exchange_algorithm=60, seed_rng=1, ngenerationsnoimprovement=20 /
&MatingOptions matingstrategy='mai' /
"""
UNDATED, DEPTH = -9999, 5
PATHS = [(0, 0), (0, 1), (1, 0), (1, 1)]  # sire-son, sire-daughter, dam-son, dam-daughter


class Herd:
    """Animals 1.. in the order of the data file, a parent without a record before its offspring;
    0 is an unknown parent."""

    def __init__(self, path):
        lines = path.read_text().splitlines()
        rows = [[*map(int, line.split()[:6])] for line in lines if line.split()]
        number = {0: 0}
        for animal, sire, dam, *_ in rows:
            for i in (sire, dam, animal): number.setdefault(i, len(number))
        self.id = list(number)
        records = {number[r[0]]: r for r in rows}
        self.all = range(1, len(number))
        records = [records.get(i, [0, 0, 0, 0, UNDATED, 0]) for i in [0, *self.all]]
        self.parents = [(number[r[1]], number[r[2]]) for r in records]
        self.sex, self.born, self.matings = ([r[k] for r in records] for k in (3, 4, 5))
        self.dated = [i for i in self.all if self.born[i] > UNDATED]
        self.dated_set = set(self.dated)
        self.times = sorted({self.born[i] for i in self.dated})
        self.make_matrices()

    def make_matrices(self):
        """Relationships by the tabular method; genes of i from j, row by row."""
        self.a, self.flow = [array("d", [0.0])], [array("d", [0.0])]
        for i in self.all:
            s, d = self.parents[i]
            row = array("d", (0.5 * (x + y) for x, y in zip(self.a[s], self.a[d])))
            for j, x in enumerate(row): self.a[j].append(x)
            row.append(1.0 + 0.5 * self.a[s][d])
            self.a.append(row)
            pairs = itertools.zip_longest(self.flow[s], self.flow[d], fillvalue=0.0)
            self.flow.append(array("d", (0.5 * (x + y) for x, y in pairs)))
            self.flow[i].extend([0.0] * (i + 1 - len(self.flow[i])))
            self.flow[i][i] = 1.0

    def f(self, i): return self.a[i][i] - 1.0

    def generations(self, i):
        """Of each known ancestor (1/2)^n, n generations back."""
        return math.fsum(self.flow[i]) - 1.0

    def genes_of(self, group):
        """Share of their genes from each animal."""
        total = [0.0] * len(self.id)
        for i in group:
            for j, x in enumerate(self.flow[i]): total[j] += x / len(group)
        return total

    def kinship(self, i, group): return math.fsum(self.a[i][j] for j in group) / 2 / len(group)

    @functools.cache
    def known(self, i, k):
        """Share of the ancestors k generations back that are known."""
        return sum(0.5 * (self.known(p, k - 1) if k > 1 else 1.0) for p in self.parents[i] if p)

    def completeness(self, i):
        s, d = (sum(self.known(p, k) for k in range(1, DEPTH + 1)) / DEPTH if p else 0.0
                for p in self.parents[i])
        return 2 * s * d / (s + d) if s * d > 0 else 0.0


def mean(values): return statistics.fmean(values) if values else None


def standard_error(values):
    return statistics.stdev(values) / math.sqrt(len(values)) if len(values) > 1 else None


def recent_since(times, interval):
    return next(t for t in times if t >= times[-1] - 3 * interval or t in times[-3:])


def founders(herd, living):
    """Shares of known founders, and those of unknown parents of animals with a known one."""
    genes = herd.genes_of(living)
    known = {i: genes[i] for i in herd.all if herd.parents[i] == (0, 0)}
    unknown = [genes[i] / 2 for i in herd.all if [*map(bool, herd.parents[i])].count(True) == 1]
    return known, unknown


def effective_ancestors(herd, living):
    parents, taken, total, squares = list(herd.parents), set(), 0.0, 0.0
    old = {j for i in living for j, share in enumerate(herd.flow[i]) if share > 0 and j != i}
    while total < 1 - 1e-9:
        flow, explained = [0.0] * len(herd.id), [0.0] * len(herd.id)
        for i in living: flow[i] = 1 / len(living)
        for i in reversed(herd.all):
            for p in parents[i]: flow[p] += flow[i] / 2
        for i in herd.all:
            explained[i] = 1.0 if i in taken else sum(explained[p] for p in parents[i]) / 2
        marginal = [0.0, *(flow[i] * (1 - explained[i]) for i in herd.all)]
        largest = max(marginal) * (1 - 1e-9)
        # Of equals the oldest, but one that is nobody's ancestor last.
        k = min((i for i in herd.all if marginal[i] >= largest), key=lambda i: (i not in old, i))
        taken.add(k)
        parents[k] = (0, 0)
        total += marginal[k]
        squares += marginal[k] ** 2
    return 1 / squares


def effective_size(values, interval):
    """Of pairs (birth time, F or coancestry)."""
    values = [(t, v) for t, v in values if v < 1]
    times = sorted({t for t, _ in values})
    if len(times) < 3 or not interval: return {"ne": None}
    first = recent_since(times, interval)
    x, y = zip(*((t, math.log(1 - v)) for t, v in values if t >= first))
    slope, start = statistics.linear_regression(x, y)
    rest = math.fsum((v - start - slope * t) ** 2 for t, v in zip(x, y)) / (len(x) - 2)
    error = math.sqrt(rest / math.fsum((t - mean(x)) ** 2 for t in x))
    rate, se = 1 - math.exp(slope * interval), error * interval * math.exp(slope * interval)
    ne = lambda r: 1 / (2 * r) if r > 0 and rate > 1e-8 else None
    return {"rate": rate, "rate_se": se, "n": len(x), "first": first, "last": times[-1],
            "ne": ne(rate), "ne_low": ne(rate + se), "ne_high": ne(rate - se)}


def intervals(herd, since):
    """Ages of parents by path; the last row is the mean of the paths."""
    roles = [{p[k] for p in herd.parents} for k in (0, 1)]
    rows = []
    for k, role in PATHS:
        offspring = [i for i in herd.dated if herd.born[i] >= since and i in roles[role]]
        ages = [herd.born[i] - herd.born[herd.parents[i][k]] for i in offspring
                if herd.parents[i][k] in herd.dated_set]
        rows.append((len(ages), mean(ages), standard_error(ages)))
    some = [r for r in rows if r[0]]
    errors = [r[2] for r in some]
    error = None if None in errors or not some else math.hypot(*errors) / len(some)
    rows.append((sum(r[0] for r in rows), mean([r[1] for r in some]), error))
    return dict(zip(("n", "mean", "se"), map(list, zip(*rows))))


def trend(herd):
    rows = []
    for t in herd.times:
        born = [i for i in herd.dated if herd.born[i] == t]
        f = [herd.f(i) for i in born]
        pairs = [herd.a[i][j] / 2 for i, j in itertools.combinations(born, 2)]
        ages = [t - herd.born[p] for i in born for p in herd.parents[i] if p in herd.dated_set]
        sexes = [herd.sex[i] for i in born]
        rows.append({"birth_time": t, "animals": len(born),
                     "males": sexes.count(1), "females": sexes.count(2),
                     "sires": len({herd.parents[i][0] for i in born} - {0}),
                     "dams": len({herd.parents[i][1] for i in born} - {0}),
                     "inbred": sum(v > 0 for v in f), "mean_f": mean(f), "max_f": max(f),
                     "coancestry": math.fsum(pairs) / len(pairs) if pairs else None,
                     "completeness": mean([herd.completeness(i) for i in born]),
                     "generations": mean([herd.generations(i) for i in born]),
                     "interval": mean(ages)})
    return {key: [r[key] for r in rows] for key in rows[0]}


def families(herd):
    count = [collections.Counter(p[k] for p in herd.parents[1:] if p[k]) for k in (0, 1)]
    sizes = [collections.Counter(c.values()) for c in count]
    offspring = sorted({*sizes[0], *sizes[1]})
    return {"offspring": offspring, "sires": [sizes[0][n] for n in offspring],
            "dams": [sizes[1][n] for n in offspring]}


def ages(herd, living):
    shown = [i for i in herd.all if herd.sex[i] in (1, 2) and (i in living or herd.matings[i] > 0)]
    times = sorted({herd.born[i] for i in shown}, reverse=True)
    count = lambda t, sex, group: sum(herd.born[i] == t and herd.sex[i] == sex for i in group)
    candidates = [i for i in shown if herd.matings[i] > 0]
    alive = [i for i in shown if i in living]
    return {name: [count(t, sex, group) for t in times] for name, sex, group in [
        ("males", 1, alive), ("females", 2, alive), ("candidate_males", 1, candidates),
        ("candidate_females", 2, candidates)]}


def measures(herd, living):
    """What the report's population is to hold."""
    known, unknown = founders(herd, living)
    kinship = mean([herd.kinship(i, living) for i in living])
    by_path = intervals(herd, UNDATED + 1)
    interval = by_path["mean"][-1]
    since = recent_since(herd.times, interval)
    told, f = trend(herd), [herd.f(i) for i in herd.all]
    by_birth = [(herd.born[i], herd.f(i)) for i in herd.dated]
    within = [v for v in zip(told["birth_time"], told["coancestry"]) if v[1] is not None]
    ancestors = effective_ancestors(herd, living)
    ranked = sorted((q for q in known.values() if q > 0), reverse=True)[:500]
    return {"animals": len(herd.all), "founders": len(known), "living": len(living),
            "mean_f": mean(f), "max_f": max(f), "trend": told,
            "by_inbreeding": effective_size(by_birth, interval),
            "by_coancestry": effective_size(within, interval),
            "interval": interval, "intervals": by_path, "recent_since": since,
            "recent_intervals": intervals(herd, since),
            "founder_equivalents": 1 / math.fsum(q * q for q in [*known.values(), *unknown]),
            "founder_genomes": 1 / (2 * kinship), "mean_kinship": kinship,
            "gene_diversity": 1 - kinship,
            "effective_ancestors": ancestors, "effective_ancestors_high": ancestors,
            "unknown_genes": math.fsum(unknown), "founders_ranked": {"contribution": ranked},
            "founders_cumulative": list(itertools.accumulate(ranked)),
            "families": families(herd), "ages": ages(herd, living)}


def compare(where, told, wanted):
    """Counts the numbers compared."""
    if isinstance(wanted, dict):
        return sum(compare(f"{where}.{k}", told[k], v) for k, v in wanted.items())
    if isinstance(wanted, list):
        assert len(told) == len(wanted), f"{where}: {len(told)} numbers, {len(wanted)} wanted"
        return sum(compare(f"{where}[{k}]", *pair) for k, pair in enumerate(zip(told, wanted)))
    digits = 1e-9 if where.startswith("population") else 6e-8  # of single animals there are eight
    close = functools.partial(math.isclose, rel_tol=digits, abs_tol=1e-12)
    same = told is wanted if None in (told, wanted) else close(told, wanted)
    assert same, f"{where}: {told}, wanted {wanted}"
    return 1


def report(folder, path):
    shutil.copy(path, folder)
    (folder / "herd.prm").write_text(PARAMETERS.format(path.name))
    for command in ([programs.qob, "herd.prm", "--quiet"],
                    [programs.report, "QOB_", "--json", "-o", "result.json"]):
        done = subprocess.run(command, cwd=folder, text=True, capture_output=True)
        assert done.returncode == 0, done.stdout + done.stderr
    return json.loads((folder / "result.json").read_text())


def check_herd(path):
    folder = pathlib.Path(tempfile.mkdtemp())
    try:
        herd, told = Herd(path), report(folder, path)
        living = {i for i in herd.all if herd.born[i] >= told["population"]["living_since"]}
        numbers = compare("population", told["population"], measures(herd, living))
        place = {identifier: i for i, identifier in enumerate(herd.id)}
        shown = [place[v] for v in told["animals"]["number"]]
        numbers += compare("animals.f", told["animals"]["f"], [herd.f(i) for i in shown])
        youngest = [i for i in herd.all if herd.born[i] == herd.times[-1]]
        genes = herd.genes_of(youngest)
        candidates = [shown[v] for v in told["candidates"]["animal"]]
        own = lambda i: (herd.born[i] == herd.times[-1]) / len(youngest)
        numbers += compare("candidates", told["candidates"], {
            "mean_kinship": [herd.kinship(i, living) for i in candidates],
            "contribution_so_far": [genes[i] - own(i) for i in candidates]})
    except Exception as violation:
        raise SystemExit(f"{path}, {folder}: {violation!r}") from violation
    shutil.rmtree(folder)
    print(f"{path.stem}: {len(herd.all)} animals, {numbers} numbers agree", flush=True)


arguments = argparse.ArgumentParser()
arguments.add_argument("qob", type=lambda p: pathlib.Path(p).resolve())
arguments.add_argument("report", type=lambda p: pathlib.Path(p).resolve())
arguments.add_argument("herds", type=lambda p: pathlib.Path(p).resolve(), nargs="+")
programs = arguments.parse_args()
for herd in programs.herds: check_herd(herd)
