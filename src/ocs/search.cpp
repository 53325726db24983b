#include "ocs/search.h"

#include <cerrno>
#include <utility>

#include "core/stop.h"
#include "ocs/base_population.h"
#include "ocs/greedy_plan.h"

namespace qob {

Search::Search(const Problem& problem, const AlgorithmParameters& settings, Run& run)
    : problem_(problem),
      settings_(settings),
      run_(run),
      journal_(run.journal),
      caches_(problem.relationship, problem.selection.candidates, run.row_memory, &run.parallel),
      evaluator_(problem_, standing_, caches_.rows, journal_),
      convergence_(run) {
  const std::int32_t seed = random_.zigset(settings_.seed_rng);
  if (settings_.seed_rng != 0) return;
  journal_.units.tell("seed_rng = " + std::to_string(seed) +
                      " is taken from the clock : the same seed repeats the run");
}

void Search::make_population() {
  const Timed timed(journal_.watches, journal_.watches.basepop);
  const std::int64_t popsize = settings_.popsize;
  const std::int64_t nmatings = problem_.selection.nmatings;
  const bool made = memory_suffices([&] {
    population_.pop.assign(popsize, nmatings);
    population_.pop_value.assign(popsize, MatesetValue{});
    standing_.best_mating.assign(1, nmatings);
  });
  if (made) return;
  Units& units = journal_.units;
  write_list(units.log, "ERROR in allocating memory. Error code: ", ENOMEM);
  write_list(units.log, "Size of integer   arrays to be allocated :", (popsize + 1) * nmatings * 2);
  write_list(units.log, "Size of real      arrays to be allocated :", popsize);
  write_list(units.out, "ERROR in allocating memory. Error code: ", ENOMEM);
  stop("Allocation POP failed");
}

// Draws know nothing of most rules: a plan that keeps them takes the places of solutions that do
// not, so that there is a legal best from the beginning.
void Search::replace_illegal() {
  const Selection& selection = problem_.selection;
  Uses uses(std::int64_t{selection.candidates.ncands} + 1, 0);
  for (const auto& [male, female] : selection.rules.plan) {
    ++uses(male);
    ++uses(female);
  }
  for (std::int32_t k = 1; k <= population_.popsize(); ++k) {
    if (population_.pop_value(k).legal || !selection.enter(uses, population_.pop(k))) continue;
    evaluator_.evaluation(population_.pop(k), population_.pop_value(k));
  }
  update_best();
}

// In the place of the last random solution, or of the one by merit where none is to spare.
void Search::add_greedy_plan() {
  MatesetTable greedy;
  greedy.assign(1, problem_.selection.nmatings);
  if (!greedy_plan(problem_, caches_.rows, random_, greedy(1))) {
    write_list(journal_.units.log, "Improvement: the candidates have no room for a greedy plan");
    return;
  }
  if (!problem_.selection.rules.empty() && !is_legal(problem_.selection, greedy(1))) return;
  const std::int32_t popsize = population_.popsize();
  const std::int32_t place = popsize > 2 ? popsize - 1 : popsize;
  population_.pop(place).copy_from(greedy(1));
  evaluator_.evaluation(population_.pop(place), population_.pop_value(place));
}

bool Search::begin() {
  make_population();
  base_population(problem_.selection, run_.parameters.files.oldsol_file, population_, random_,
                  evaluator_, journal_);
  if (!problem_.selection.rules.plan.empty()) replace_illegal();
  if (run_.parameters.improvement.start) add_greedy_plan();
  if (settings_.generations >= 0) return true;
  update_best();
  return false;
}

bool Search::generation() {
  mate_and_select();
  const std::int64_t unimproved = std::int64_t{standing_.igeneration} - standing_.last_gen_improved;
  if (unimproved >= settings_.ngenerationsnoimprovement) return false;
  if (standing_.igeneration == settings_.generations) return false;
  ++standing_.igeneration;
  return true;
}

Plan Search::finish() {
  convergence_.close();
  return {std::move(standing_.best_mating), standing_.best_value, standing_.last_gen_improved,
          random_};
}

}  // namespace qob
