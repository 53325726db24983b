// The value of matesets, and directed mutation.
#include <vector>

#include "bench.h"
#include "ocs/qobocs.h"
#include "plain/search.h"

namespace qob::bench {
namespace {

// Calls form(model) on a population; one run handles so many items.
template <class Form>
Body on_population(const std::string& name, std::int64_t items, Form form) {
  return [=](benchmark::State& state) {
    Model& model = selection(name);
    if (!model.search.allocated) base_population(model);
    measure(state, items, [&] { form(model); });
  };
}

// Evaluates the population, so many matesets in a generation.
void evaluate_plainly(Model& model) {
  for (std::int64_t k = 1; k <= model.search.pop_value.size(); ++k) {
    plain::evaluation(model, model.search.pop(k), model.search.pop_value(k));
  }
}

void evaluate_by_generations(Model& model) {
  Search& search = model.search;
  for (std::int64_t k = 1; k <= search.pop_value.size();) {
    Evaluations evaluations(model);
    for (int o = 0; o < model.parameters.algorithm.n_offspring; ++o, ++k) {
      evaluations.add(search.pop(k), search.pop_value(k));
    }
    evaluations.finish();
  }
}

using Mutation = void (*)(Model&, Mateset);

// Mutates a copy of each of the first `count` members.
void mutate_members(Model& model, Mutation mutation, std::int64_t count, double probability) {
  model.random.zigset(1);
  model.parameters.algorithm.directed_mutation_probability = probability;
  MatesetTable copy;
  copy.assign(1, model.parameters.ocs.nmatings);
  for (std::int64_t k = 1; k <= count; ++k) {
    copy(1).copy_from(model.search.pop(k));
    mutation(model, copy(1));
  }
}

// A generation's offspring, most of which change in no row or one, ten generations of them; and a
// mateset that changes in every row.
void directed_mutations(const std::string& name, const std::string& size, std::int32_t nmatings) {
  for (const bool plain : {true, false}) {
    const Mutation mutation = plain ? plain::directed_mutation : directed_mutation;
    const auto add = plain ? add_plain : add_fast;
    add("directed mutation of offspring", size,
        on_population(name, 100,
                      [=](Model& model) { mutate_members(model, mutation, 100, 0.25 / nmatings); }),
        plain ? Repeat::kOnce : Repeat::kSeveral);
    add("directed mutation of all rows", size,
        on_population(name, 1, [=](Model& model) { mutate_members(model, mutation, 1, 1.0); }),
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
