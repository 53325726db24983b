// One generation of the search. Reads the parameters; writes model.search and the convergence
// files.
#include <algorithm>
#include <cmath>

#include "core/sort.h"
#include "ocs/qobocs.h"

namespace qob {
namespace {

// Solutions by ascending fitness: key(j) is the fitness of solution index(j).
void rank_population(const Search& search, Table<double>& key, Table<std::int32_t>& index) {
  const std::int64_t popsize = search.pop_value.size();
  key.assign(popsize, 0.0);
  index.assign(popsize, 0);
  for (std::int64_t k = 1; k <= popsize; ++k) {
    key(k) = search.pop_value(k).fitness;
    index(k) = static_cast<std::int32_t>(k);
  }
  quick_sort(key, index, 1, popsize);
}

// Cumulative probabilities, in solution-number order, of being drawn as a parent: linear in the
// rank, from 0 for the worst to twice the average for the best (Baker 1985).
Table<double> selection_probabilities(const Table<std::int32_t>& index) {
  const std::int64_t popsize = index.size();
  Table<double> cumulative(popsize, 0.0);
  for (std::int64_t j = 1; j <= popsize; ++j) {
    const float weight = 2.0F * single(j - 1) / single(popsize - 1);
    cumulative(index(j)) = static_cast<double>(weight);
  }
  double sum = 0.0;
  for (const double weight : cumulative) sum += weight;
  double running = 0.0;
  for (double& weight : cumulative) {
    running += weight / sum;
    weight = running;
  }
  return cumulative;
}

// The first solution whose cumulative probability exceeds a draw; `before` if rounding leaves none.
std::int64_t draw_parent(Random& random, const Table<double>& cumulative, std::int64_t before) {
  const double u = random.uni();
  for (std::int64_t k = 1; k <= cumulative.size(); ++k) {
    if (cumulative(k) > u) return k;
  }
  return before;
}

// The offspring of a generation. Those beyond `places` find no place in the population: they are
// made like the others, with their draws and messages, one over another.
struct Offspring {
  Offspring(std::int64_t count, std::int64_t popsize, std::int64_t nmatings)
      : made(count), places(std::clamp<std::int64_t>(count, 0, popsize)), values(places + 1) {
    matesets.assign(places + 1, nmatings);
  }
  std::int64_t place(std::int64_t o) const { return std::min(o, places + 1); }

  std::int64_t made, places;
  MatesetTable matesets;
  Table<ValueRecord> values;
};

void make_offspring(Model& model, const Table<std::int32_t>& index, Offspring& offspring) {
  Search& search = model.search;
  const Table<double> cumulative = selection_probabilities(index);
  std::int64_t parent1 = cumulative.size();
  std::int64_t parent2 = cumulative.size();
  Evaluations evaluations(model);
  for (std::int64_t o = 1; o <= offspring.made; ++o) {
    const Mateset child = offspring.matesets(offspring.place(o));
    parent1 = draw_parent(model.random, cumulative, parent1);
    parent2 = draw_parent(model.random, cumulative, parent2);
    if (parent1 == parent2) {
      child.copy_from(search.pop(parent1));
    } else {
      recombine(model, search.pop(parent1), search.pop(parent2), child);
    }
    mutate(model, child);
    directed_mutation(model, child);
    repair_mateset(model, child);
    evaluations.add(child, offspring.values(offspring.place(o)));
  }
  evaluations.finish();
}

// The offspring take the places of the solutions of lowest fitness, whatever their own.
void replace_worst(Model& model, const Table<std::int32_t>& index) {
  Search& search = model.search;
  Offspring offspring(model.parameters.algorithm.n_offspring, index.size(),
                      model.parameters.ocs.nmatings);
  make_offspring(model, index, offspring);
  for (std::int64_t o = 1; o <= offspring.places; ++o) {
    search.pop(index(o)).copy_from(offspring.matesets(o));
    search.pop_value(index(o)) = offspring.values(o);
  }
}

void open_convergence_files(Model& model) {
  Units& units = model.units;
  const FileNames& files = model.parameters.files;
  const Text<80>& prefix = model.parameters.data.resultsdirectory;
  openresultsfile(model, prefix, files.cnv1_file, units.cnv1, OutputFile::Show::kEachLine);
  openresultsfile(model, prefix, files.cnv2_file, units.cnv2, OutputFile::Show::kEachLine);
  both(units.log, units.cnv2, "(A10,A11,4A14)", "Generation", "Best", "Median", "Worst", "Mean",
       "Std");
  write(units.cnv1, "(A10,4A14,A10)", "Generation", "Evaluation", "Merit", "Avg.rel", "dF",
        "Genint");
  write(units.out, "(1X,A10,4A14,A10,/)", "Generation", "Evaluation", "Merit", "Avg.rel", "dF",
        "Genint");
}

void take_best(Search& search, std::int64_t k) {
  search.best_value = search.pop_value(k);
  search.best().copy_from(search.pop(k));
}

// key: the fitness of the population in ascending order.
void write_convergence(Model& model, const Table<double>& key) {
  Units& units = model.units;
  const Search& search = model.search;
  const ValueRecord& best = search.best_value;
  const std::int64_t popsize = key.size();
  double sum = 0.0;
  for (const double fitness : key) sum += fitness;
  const double mean = sum / static_cast<double>(popsize);
  double squares = 0.0;
  for (const double fitness : key) squares += (fitness - mean) * (fitness - mean);
  const double deviation = std::sqrt(squares / static_cast<double>(single(popsize - 1)));
  both(units.cnv2, units.log, "(I10,E16.8,4E14.6)", search.igeneration, best.fitness,
       key(popsize / 2), key(1), mean, deviation);
  write(units.cnv1, "(I10,E16.8,3E14.6,F8.3)", search.igeneration, best.fitness, best.merit,
        best.relationship, best.rate, best.age);
  write(units.out, "(\"+\",I10,E16.8,3E14.6,F8.3)", search.igeneration, best.fitness, best.merit,
        best.relationship, best.rate, best.age);
}

// After a long time without improvement: the best solution comes back, all others mutate.
void restart(Model& model) {
  Search& search = model.search;
  AlgorithmParameters& p = model.parameters.algorithm;
  write_list(model.units.log, "Mutating solutions to increase variance in generation ",
             search.igeneration);
  const double mutate_probability = std::exchange(p.mutate_probability, 0.5);
  search.pop(1).copy_from(search.best());
  search.pop_value(1) = search.best_value;
  Evaluations evaluations(model);
  for (std::int64_t k = 2; k <= p.popsize; ++k) {
    if (search.pop_value(k).legal) {
      mutate(model, search.pop(k));
    } else {
      repair_mateset(model, search.pop(k));
    }
    evaluations.add(search.pop(k), search.pop_value(k));
  }
  evaluations.finish();
  search.last_change = search.igeneration;
  p.mutate_probability = mutate_probability;
}

// The solution of lowest fitness is improved entry by entry.
void exchange(Model& model, std::int64_t worst) {
  Search& search = model.search;
  AlgorithmParameters& p = model.parameters.algorithm;
  const double probability = std::exchange(p.directed_mutation_probability, 1.0);
  directed_mutation(model, search.pop(worst));
  evaluation(model, search.pop(worst), search.pop_value(worst));
  p.directed_mutation_probability = probability;
}

}  // namespace

bool update_best(Model& model, Table<double>& key, Table<std::int32_t>& index) {
  Search& search = model.search;
  rank_population(search, key, index);
  if (search.igeneration == 0) take_best(search, index(1));
  bool improved = false;
  for (std::int64_t k = 1; k <= search.pop_value.size(); ++k) {
    const ValueRecord& value = search.pop_value(k);
    if (!value.legal) continue;
    if (value.fitness > search.best_value.fitness || !search.best_value.legal) {
      take_best(search, k);
      search.last_gen_improved = search.igeneration;
      search.last_change = search.igeneration;
      improved = true;
    }
  }
  return improved;
}

void mate_and_select(Model& model) {
  const Timed timed(model.watches.stopwatch, model.watches.matesel);
  Search& search = model.search;
  const AlgorithmParameters& p = model.parameters.algorithm;
  Table<double> key;
  Table<std::int32_t> index;
  rank_population(search, key, index);
  replace_worst(model, index);
  if (search.igeneration == 0) open_convergence_files(model);
  const bool improved = update_best(model, key, index);
  if (search.igeneration % 100 == 0 || improved) write_convergence(model, key);
  if (std::int64_t{search.igeneration} - search.last_change > p.restart_interval) restart(model);
  if (search.igeneration > 0 && p.exchange_algorithm > 0 &&
      search.igeneration % p.exchange_algorithm == 0) {
    exchange(model, index(1));
  }
}

}  // namespace qob
