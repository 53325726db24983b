// What is computed from the relationships of all candidates.
#include "bench.h"
#include "mating/list_columns.h"
#include "mating/maximum_avoidance.h"
#include "ocs/kernels/means_by_sex.h"
#include "ocs/qobocs.h"
#include "plain/mating_lists.h"
#include "plain/selection_report.h"

namespace qob::bench {
namespace {

// A mateset of the candidates in turn.
void mate_in_turn(Model& model) {
  const Candidates& c = model.candidates;
  const std::int64_t nmatings = model.parameters.ocs.nmatings;
  model.search.best_mating.assign(1, nmatings);
  for (std::int64_t j = 1; j <= nmatings; ++j) {
    model.search.best().male(j) = static_cast<std::int32_t>(j % c.nmcands) + 1;
    model.search.best().female(j) = c.nmcands + static_cast<std::int32_t>(j % c.nfcands) + 1;
  }
}

// Calls form(model) on candidates with a mateset.
template <class Form>
Body on(const std::string& name, Form form) {
  return [=](benchmark::State& state) {
    Model& model = selection(name);
    mate_in_turn(model);
    measure(state, model.candidates.ncands, [&] { form(model); });
  };
}

void all_candidates(const std::string& name, const std::string& size) {
  add_plain(
      "candidates' mean relationships", size, on(name, [](Model& model) {
        benchmark::DoNotOptimize(plain::relationships_of(model.relationship, model.candidates));
      }));
  add_fast("candidates' mean relationships", size, on(name, [](Model& model) {
             benchmark::DoNotOptimize(means_by_sex(model.relationship, model.candidates));
           }));
  add_plain("relationships in the lists", size, on(name, [](Model& model) {
              for (std::int32_t i = 1; i <= model.candidates.ncands; ++i) {
                benchmark::DoNotOptimize(plain::averages_of(model.relationship, model.candidates,
                                                            model.search.best(), i));
              }
            }));
  add_fast("relationships in the lists", size, on(name, [](Model& model) {
             benchmark::DoNotOptimize(
                 list_columns(model.relationship, model.candidates, model.search.best()));
           }));
}

}  // namespace

void add_candidate_kernels() {
  all_candidates("p100k", "1k");
  all_candidates("p100k10k", "10k");
  add_fast("maximum avoidance", "5,000 matings", on("mat5000", [](Model& model) {
             mate_in_turn(model);
             model.random.zigset(1);
             maximum_avoidance(model);
           }));
}

}  // namespace qob::bench
