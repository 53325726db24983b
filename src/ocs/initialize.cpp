// The parameters of selection and search: completed, echoed, checked.
#include <cmath>

#include "core/numbers.h"
#include "ocs/plan_report.h"
#include "ocs/qobocs.h"

namespace qob {
namespace {

constexpr double kLargestWeight = 1.0e100;  // sums of weighted terms stay finite

void set_probabilities(const OCSParameters& ocs, AlgorithmParameters& p) {
  const float entries = single(4 * std::int64_t{ocs.nmatings});
  const double by_default = 1.0 / static_cast<double>(entries);
  if (p.mutate_probability < 0.0) p.mutate_probability = by_default;
  if (p.crossover_probability < 0.0) p.crossover_probability = static_cast<double>(0.3F);
  if (p.directed_mutation_probability < 0.0) p.directed_mutation_probability = by_default;
}

void require(Units& units, bool kept, std::string_view message) {
  if (!kept) handle_error(units, ErrorValue{0}, message);
}

// With rules matings may be decided, and only the others come in whole units.
void check(const Parameters& parameters, Units& units) {
  const OCSParameters& ocs = parameters.ocs;
  const AlgorithmParameters& p = parameters.algorithm;
  require(
      units,
      ocs.limitmalematings == 0 || ocs.nmatings % ocs.limitmalematings == 0 ||
          parameters.rules.has_file(),
      "ERROR: NMatings cannot be divided by LimitMaleMatings. MOD(NMatings,LimitMaleMatings)/=0 ");
  check_male_limit(ocs.limitmalematings, ocs.nmatings, units);
  require(units,
          std::abs(ocs.w_merit) <= kLargestWeight && std::abs(ocs.w_relationship) <= kLargestWeight,
          "ERROR: W_Merit and W_Relationship should lie between -1E100 and 1E100");
  require(units, p.popsize >= 1, "ERROR: PopSize should be at least 1");
  require(units, p.popsize >= 2 || p.generations < 0,
          "ERROR: PopSize should be at least 2 when Generations is 0 or more");
}

}  // namespace

void complete_weights(OCSParameters& p) {
  const Criterion criterion = criterion_of(p.optimise);
  p.optimise = option_text(p.optimise);
  if (criterion == Criterion::kMerit || criterion == Criterion::kConstraint) {
    p.w_merit = 1.0;
    p.w_relationship = 0.0;
  } else {
    p.optimise = "penalty";
    if (p.w_relationship > 0.0) p.w_relationship = -1.0;
  }
  if (criterion != Criterion::kConstraint || p.dfconstraint > 1.0) p.dfconstraint = 1.0;
  if (p.dfconstraint < 1.0e-5) p.dfconstraint = 1.0e-5;
}

void check_male_limit(std::int32_t limitmalematings, std::int32_t nmatings, Units& units) {
  require(units, limitmalematings >= 1 && limitmalematings <= nmatings,
          "ERROR: LimitMaleMatings should be 1 <= LimitMaleMatings <= NMatings");
}

void initialize_qob(Run& run) {
  const Timed timed(run.journal.watches, run.journal.watches.ocs);
  Units& units = run.journal.units;
  Parameters& p = run.parameters;
  complete_weights(p.ocs);
  set_probabilities(p.ocs, p.algorithm);
  report_parameters(p, units);
  check(p, units);
}

}  // namespace qob
