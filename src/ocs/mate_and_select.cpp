// One generation of the search.
#include <algorithm>

#include "core/numbers.h"
#include "core/sort.h"
#include "ocs/mutation.h"
#include "ocs/recombination.h"
#include "ocs/repair.h"
#include "ocs/rules/pairing.h"
#include "ocs/search.h"

namespace qob {
namespace {

constexpr double kMutateAtRestart = 0.5;  // probability by slot and row
constexpr double kDirectedAtExchange = 1.0;

// Cumulative probabilities, in solution-number order, of being drawn as a parent: linear in the
// rank, from 0 for the worst to twice the average for the best (Baker 1985). Ranks are divided in
// single precision: so because a weight has always been held with so many digits, and a draw near
// the border of two solutions hangs on the last of them.
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

}  // namespace

// The offspring of a generation. Those beyond `places` find no place in the population: they are
// made like the others, with their draws and messages, one over another.
struct Search::Offspring {
  Offspring(std::int64_t count, std::int64_t popsize, std::int64_t nmatings)
      : made(count), places(std::clamp<std::int64_t>(count, 0, popsize)), values(places + 1) {
    matesets.assign(places + 1, nmatings);
  }
  std::int64_t place(std::int64_t o) const { return std::min(o, places + 1); }

  std::int64_t made, places;
  MatesetTable matesets;
  Table<MatesetValue> values;
};

void Search::make_offspring(Offspring& offspring) {
  const Selection& selection = problem_.selection;
  const Table<double> cumulative = selection_probabilities(ranking_.index);
  std::int64_t parent1 = cumulative.size();
  std::int64_t parent2 = cumulative.size();
  for (std::int64_t o = 1; o <= offspring.made; ++o) {
    const Mateset child = offspring.matesets(offspring.place(o));
    parent1 = draw_parent(random_, cumulative, parent1);
    parent2 = draw_parent(random_, cumulative, parent2);
    if (parent1 == parent2) {
      child.copy_from(population_.pop(parent1));
    } else {
      recombine(selection, settings_.crossover_probability, population_.pop(parent1),
                population_.pop(parent2), child, random_, journal_);
    }
    mutate(selection, settings_.mutate_probability, child, random_, journal_.watches);
    directed_mutation(problem_, settings_.directed_mutation_probability, child, random_, caches_,
                      evaluator_, journal_);
    repair_mateset(selection, child, random_, journal_);
    mend_pairs(selection, child);
    evaluator_.add(child, offspring.values(offspring.place(o)));
    if (o > offspring.places)
      evaluator_.finish();  // its value is not to wait: the next has its place
  }
  evaluator_.finish();
}

// The offspring take the places of the solutions of lowest fitness, whatever their own.
void Search::replace_worst() {
  Offspring offspring(settings_.n_offspring, population_.popsize(), problem_.selection.nmatings);
  make_offspring(offspring);
  for (std::int64_t o = 1; o <= offspring.places; ++o) {
    population_.pop(ranking_.index(o)).copy_from(offspring.matesets(o));
    population_.pop_value(ranking_.index(o)) = offspring.values(o);
  }
}

void Search::take_best(std::int64_t k) {
  standing_.best_value = population_.pop_value(k);
  standing_.best().copy_from(population_.pop(k));
}

// A goal that is no number has no order.
void Search::rank_population() {
  const std::int32_t popsize = population_.popsize();
  ranking_.key.assign(popsize, 0.0);
  ranking_.index.assign(popsize, 0);
  for (std::int32_t k = 1; k <= popsize; ++k) {
    const MatesetValue& value = population_.pop_value(k);
    if (!is_number(problem_.objective, value)) {
      handle_error(journal_.units, "ERROR: Evaluation value is not finite, check relationships");
    }
    ranking_.key(k) = value.fitness;
    ranking_.index(k) = k;
  }
  quick_sort(ranking_.key, ranking_.index, 1, popsize);
}

// Ranks the population and takes up a better best solution. Returns whether there was one.
// Generation 0 takes the worst solution as its first best: so because then any legal one that is
// better takes its place as an improvement, and where none is legal there is a best to report all
// the same. By rules there is a legal one before.
bool Search::update_best() {
  rank_population();
  if (standing_.igeneration == 0 && !standing_.best_value.legal) take_best(ranking_.index(1));
  bool improved = false;
  for (std::int32_t k = 1; k <= population_.popsize(); ++k) {
    const MatesetValue& value = population_.pop_value(k);
    const MatesetValue& best = standing_.best_value;
    if (!value.legal || !(value.fitness > best.fitness || !best.legal)) continue;
    take_best(k);
    standing_.last_gen_improved = standing_.last_change = standing_.igeneration;
    improved = true;
  }
  return improved;
}

// After a long time without improvement: the best solution comes back; of the others, legal ones
// mutate and illegal ones are repaired.
void Search::restart() {
  write_list(journal_.units.log, "Mutating solutions to increase variance in generation ",
             standing_.igeneration);
  population_.pop(1).copy_from(standing_.best());
  population_.pop_value(1) = standing_.best_value;
  for (std::int32_t k = 2; k <= population_.popsize(); ++k) {
    const Mateset solution = population_.pop(k);
    if (population_.pop_value(k).legal) {
      mutate(problem_.selection, kMutateAtRestart, solution, random_, journal_.watches);
    } else {
      repair_mateset(problem_.selection, solution, random_, journal_);
    }
    evaluator_.add(solution, population_.pop_value(k));
  }
  evaluator_.finish();
  standing_.last_change = standing_.igeneration;
}

// Every entry of the solution that had the lowest fitness, before a restart if there was one, is
// replaced by the best that can take its place.
void Search::exchange(std::int64_t worst) {
  directed_mutation(problem_, kDirectedAtExchange, population_.pop(worst), random_, caches_,
                    evaluator_, journal_);
  evaluator_.evaluation(population_.pop(worst), population_.pop_value(worst));
}

void Search::mate_and_select() {
  const Timed timed(journal_.watches, journal_.watches.matesel);
  const std::int32_t g = standing_.igeneration;
  rank_population();
  replace_worst();
  if (g == 0) convergence_.open();
  const bool improved = update_best();
  if (g % 100 == 0 || improved) convergence_.write_lines(standing_, ranking_.key);
  if (std::int64_t{g} - standing_.last_change > settings_.restart_interval) restart();
  const std::int32_t interval = settings_.exchange_algorithm;
  if (g > 0 && interval > 0 && g % interval == 0) exchange(ranking_.index(1));
}

}  // namespace qob
