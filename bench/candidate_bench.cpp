// What is computed from the relationships of all candidates.
#include "bench.h"
#include "mating/list_columns.h"
#include "mating/maximum_avoidance.h"
#include "ocs/kernels/means_by_sex.h"
#include "plain/mating_lists.h"
#include "plain/selection_report.h"

namespace qob::bench {
namespace {

// The candidates mated in turn.
Plan mate_in_turn(const Selection& selection) {
  const Candidates& c = selection.candidates;
  Plan plan;
  plan.best_mating.assign(1, selection.nmatings);
  for (std::int64_t j = 1; j <= selection.nmatings; ++j) {
    plan.best().male(j) = static_cast<std::int32_t>(j % c.nmcands) + 1;
    plan.best().female(j) = c.nmcands + static_cast<std::int32_t>(j % c.nfcands) + 1;
  }
  return plan;
}

// Calls form(relationship, candidates, mateset).
template <class Form>
Body on(const std::string& name, Form form) {
  return [=](benchmark::State& state) {
    const HerdSelection& herd = selection(name);
    const Candidates& candidates = herd.selection.candidates;
    Plan plan = mate_in_turn(herd.selection);
    measure(state, candidates.ncands, [&] { form(herd.relationship, candidates, plan.best()); });
  };
}

void all_candidates(const std::string& name, const std::string& size) {
  add_plain("candidates' mean relationships", size,
            on(name, [](auto& relationship, auto& candidates, Mateset) {
              benchmark::DoNotOptimize(plain::relationships_of(relationship, candidates));
            }));
  add_fast("candidates' mean relationships", size,
           on(name, [](auto& relationship, auto& candidates, Mateset) {
             benchmark::DoNotOptimize(means_by_sex(relationship, candidates));
           }));
  add_plain("relationships in the lists", size,
            on(name, [](auto& relationship, auto& candidates, Mateset m) {
              for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
                benchmark::DoNotOptimize(plain::averages_of(relationship, candidates, m, i));
              }
            }));
  add_fast("relationships in the lists", size,
           on(name, [](auto& relationship, auto& candidates, Mateset m) {
             benchmark::DoNotOptimize(list_columns(relationship, candidates, m));
           }));
}

void pairing(benchmark::State& state) {
  HerdSelection& herd = selection("mat5000");
  measure(state, herd.selection.candidates.ncands, [&] {
    Plan plan = mate_in_turn(herd.selection);
    plan.random.zigset(1);
    maximum_avoidance(herd.selection.candidates, herd.relationship,
                      herd.run.parameters.mating.repeatedmatings, plan, herd.run.journal.units);
  });
}

}  // namespace

void add_candidate_kernels() {
  all_candidates("p100k", "1k");
  all_candidates("p100k10k", "10k");
  add_fast("maximum avoidance", "5,000 matings", pairing);
}

}  // namespace qob::bench
