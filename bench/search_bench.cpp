// The value of matesets, and directed mutation.
#include "bench.h"
#include "ocs/base_population.h"
#include "plain/search.h"

namespace qob::bench {
namespace {

void make_population(HerdSelection& herd) {
  const Parameters& p = herd.run.parameters;
  herd.population.pop.assign(p.algorithm.popsize, herd.selection.nmatings);
  herd.population.pop_value.assign(p.algorithm.popsize, MatesetValue{});
  base_population(herd.selection, p.files.oldsol_file, herd.population, herd.random, herd.evaluator,
                  herd.run.journal);
}

// Calls form(herd) on a herd with a population; one call handles so many items.
template <class Form>
Body on_population(const std::string& name, std::int64_t items, Form form) {
  return [=](benchmark::State& state) {
    HerdSelection& herd = selection(name);
    if (herd.population.popsize() == 0) make_population(herd);
    measure(state, items, [&] { form(herd); });
  };
}

// Evaluates the population, so many matesets in a generation.
void evaluate_plainly(HerdSelection& herd) {
  auto& [pop, values] = herd.population;
  for (std::int64_t k = 1; k <= values.size(); ++k) {
    plain::evaluation(herd.problem, herd.evaluator, pop(k), values(k));
  }
}

void evaluate_by_generations(HerdSelection& herd) {
  auto& [pop, values] = herd.population;
  for (std::int64_t k = 1; k <= values.size(); ++k) {
    herd.evaluator.add(pop(k), values(k));
    if (k % herd.run.parameters.algorithm.n_offspring == 0) herd.evaluator.finish();
  }
  herd.evaluator.finish();
}

using Mutation = void (*)(HerdSelection&, Mateset, double);

void mutate_plainly(HerdSelection& herd, Mateset mateset, double probability) {
  plain::directed_mutation(herd.problem, probability, mateset, herd.random, herd.evaluator);
}

void mutate_fast(HerdSelection& herd, Mateset mateset, double probability) {
  directed_mutation(herd.problem, probability, mateset, herd.random, herd.caches, herd.evaluator,
                    herd.run.journal);
}

// Mutates a copy of each of the first `count` members.
void mutate_members(HerdSelection& herd, Mutation mutation, std::int64_t count,
                    double probability) {
  herd.random.zigset(1);
  MatesetTable copy;
  copy.assign(1, herd.selection.nmatings);
  for (std::int64_t k = 1; k <= count; ++k) {
    copy(1).copy_from(herd.population.pop(k));
    mutation(herd, copy(1), probability);
  }
}

// A generation's offspring, most of which change in no row or one, ten generations of them; and a
// mateset that changes in every row.
void directed_mutations(const std::string& name, const std::string& size, std::int32_t nmatings) {
  for (const bool plain : {true, false}) {
    const Mutation mutation = plain ? mutate_plainly : mutate_fast;
    const auto add = plain ? add_plain : add_fast;
    add("directed mutation of offspring", size,
        on_population(
            name, 100,
            [=](HerdSelection& herd) { mutate_members(herd, mutation, 100, 0.25 / nmatings); }),
        plain ? Repeat::kOnce : Repeat::kSeveral);
    add("directed mutation of all rows", size,
        on_population(name, 1,
                      [=](HerdSelection& herd) { mutate_members(herd, mutation, 1, 1.0); }),
        plain ? Repeat::kOnce : Repeat::kSeveral);
  }
}

void search(const std::string& name, const std::string& size, std::int32_t nmatings) {
  add_plain("evaluation", size, on_population(name, 100, evaluate_plainly));
  add_fast("evaluation", size, on_population(name, 100, evaluate_by_generations));
  directed_mutations(name, size, nmatings);
}

}  // namespace

void add_search_kernels() {
  search("s1000", "100 of 1,000", 100);
  search("s5000", "500 of 5,000", 500);
  search("s5000c", "500 of 5,000 constr.", 500);
}

}  // namespace qob::bench
