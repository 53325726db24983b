// The evolutionary search for the best mateset: a population of matesets that evolves by rank-based
// selection, recombination, mutation and directed mutation (Holland 1975, Adaptation in Natural and
// Artificial Systems; rank selection: Baker 1985, Proc. 1st Int. Conf. Genetic Algorithms, 101).
//
// A search owns all that it changes: population, best mateset, random stream, caches. The selection
// and the relationships are only read, so that several searches can work on them at the same time,
// each with a run of its own for its files and messages. From outside it is driven step by step:
//
//   Search search(problem, settings, run);
//   for (bool more = search.begin(); more;) more = search.generation();
//   Plan plan = search.finish();
//
// so that progress, cancelling and time limits need nothing inside.
#pragma once

#include <cstdint>

#include "core/parameters.h"
#include "core/qobtypestools.h"
#include "core/random.h"
#include "ocs/convergence.h"
#include "ocs/directed_mutation.h"
#include "ocs/evaluation.h"
#include "ocs/mateset.h"
#include "ocs/objective.h"
#include "ocs/population.h"

namespace qob {

// The population by ascending fitness: key(j) is the fitness of solution index(j).
struct Ranking {
  Table<double> key;
  Table<std::int32_t> index;
};

// What a search has found, for the mating.
struct Plan {
  MatesetTable best_mating;  // one mateset
  MatesetValue best_value;
  std::int32_t generation = 0;  // in which it was found
  Random random;                // the stream as the search left it

  Mateset best() { return best_mating(1); }
};

class Search {
 public:
  // problem, run: must outlive the search, as all that they refer to. settings: after
  // `initialize_qob`; popsize is 2 at least unless there are to be no generations.
  Search(const Problem& problem, const AlgorithmParameters& settings, Run& run);

  // Makes the first population. Returns whether there is to be a generation.
  bool begin();
  // One generation; the first is number 0. Returns whether another one is to follow.
  bool generation();
  // Closes the files of the search. The best mateset leaves it.
  Plan finish();

  const Standing& standing() const { return standing_; }
  const Population& population() const { return population_; }

 private:
  struct Offspring;

  void make_population();
  void replace_illegal();
  void add_greedy_plan();
  void mate_and_select();
  void rank_population();
  bool update_best();
  void take_best(std::int64_t k);
  void replace_worst();
  void make_offspring(Offspring& offspring);
  void restart();
  void exchange(std::int64_t worst);

  const Problem& problem_;
  const AlgorithmParameters settings_;
  Run& run_;
  Journal& journal_;
  Random random_;
  Population population_;
  Ranking ranking_;  // of the population when it was last ranked
  Standing standing_;
  SearchCaches caches_;
  Evaluator evaluator_;
  Convergence convergence_;
};

}  // namespace qob
