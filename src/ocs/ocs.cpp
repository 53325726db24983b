// The optimisation from start to end.
#include <cmath>

#include "ocs/qobocs.h"

namespace qob {
namespace {

constexpr double kLargestWeight = 1.0e100;  // sums of weighted terms stay finite

void set_weights(OCSParameters& p) {
  p.optimise = option_text(p.optimise);
  const std::string_view optimise = p.optimise.trimmed();
  if (optimise == "merit" || optimise == "constraint") {
    p.w_merit = 1.0;
    p.w_relationship = 0.0;
  } else {
    p.optimise = "penalty";
    if (p.w_relationship > 0.0) p.w_relationship = -1.0;
  }
  if (optimise != "constraint" || p.dfconstraint > 1.0) p.dfconstraint = 1.0;
  if (p.dfconstraint < 1.0e-5) p.dfconstraint = 1.0e-5;
}

void set_probabilities(const OCSParameters& ocs, AlgorithmParameters& p) {
  const float entries = single(4 * std::int64_t{ocs.nmatings});
  const double by_default = 1.0 / static_cast<double>(entries);
  if (p.mutate_probability < 0.0) p.mutate_probability = by_default;
  if (p.crossover_probability < 0.0) p.crossover_probability = static_cast<double>(0.3F);
  if (p.directed_mutation_probability < 0.0) p.directed_mutation_probability = by_default;
}

void require(Model& model, bool kept, std::string_view message) {
  if (!kept) handle_error(model, format_list(message), 0);
}

void check(Model& model) {
  const OCSParameters& ocs = model.parameters.ocs;
  const AlgorithmParameters& p = model.parameters.algorithm;
  require(
      model, ocs.limitmalematings == 0 || ocs.nmatings % ocs.limitmalematings == 0,
      "ERROR: NMatings cannot be divided by LimitMaleMatings. MOD(NMatings,LimitMaleMatings)/=0 ");
  check_male_limit(model);
  require(model,
          std::abs(ocs.w_merit) <= kLargestWeight && std::abs(ocs.w_relationship) <= kLargestWeight,
          "ERROR: W_Merit and W_Relationship should lie between -1E100 and 1E100");
  require(model, p.popsize >= 1, "ERROR: PopSize should be at least 1");
  if (p.generations < 0) return;
  require(model, p.popsize >= 2,
          "ERROR: PopSize should be at least 2 when Generations is 0 or more");
}

void search_best(Model& model) {
  Search& search = model.search;
  const AlgorithmParameters& p = model.parameters.algorithm;
  if (!search.allocated) base_population(model);
  search.igeneration = 0;
  if (p.generations < 0) {
    Table<double> key;
    Table<std::int32_t> index;
    update_best(model, key, index);
    return;
  }
  for (;;) {
    mate_and_select(model);
    const std::int64_t unimproved = std::int64_t{search.igeneration} - search.last_gen_improved;
    if (unimproved >= p.ngenerationsnoimprovement) return;
    if (search.igeneration == p.generations) return;
    ++search.igeneration;
  }
}

}  // namespace

void check_male_limit(Model& model) {
  const OCSParameters& ocs = model.parameters.ocs;
  require(model, ocs.limitmalematings >= 1 && ocs.limitmalematings <= ocs.nmatings,
          "ERROR: LimitMaleMatings should be 1 <= LimitMaleMatings <= NMatings");
}

void initialize_qob(Model& model) {
  model.random.zigset(model.parameters.algorithm.seed_rng);
  set_weights(model.parameters.ocs);
  set_probabilities(model.parameters.ocs, model.parameters.algorithm);
  report_parameters(model);
  check(model);
}

void ocs(Model& model) {
  Units& units = model.units;
  Goal& goal = model.goal;
  initialize_qob(model);
  {
    const Timed timed(model.watches.stopwatch, model.watches.nrm);
    set_up_selection(model);
  }
  report_selection_data(model);
  write_list(units.out, "QOB initialised: starting Evolutionary Algorithm");
  goal.expmerit =
      0.5 * (goal.mean_merit[0] / goal.k_factor[0] + goal.mean_merit[1] / goal.k_factor[1]);
  goal.constraint =
      (2.0 - goal.last_rel) * model.parameters.ocs.dfconstraint / goal.last_genint + goal.last_rel;
  search_best(model);
  report_best_mateset(model);
  goal.apv2.release();
  model.rows = RelationshipRows{};
  for (RelationshipSums& sums : model.sums) sums = {};
  write_list(units.out);
  write_list(units.out, "Optimal contribution selection finished");
}

}  // namespace qob
