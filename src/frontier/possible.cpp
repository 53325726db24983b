#include "frontier/possible.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "frontier/kernels/definiteness.h"

namespace qob {
namespace {

constexpr double kRounding = 1.0e-12;  // of sums, beside their terms
constexpr double kSame = 1.0e-7;       // of the way from the base: as close as bounds come
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kSlack = 1.0e-6;  // of a bound under a constraint, as a share of the curve's range

// Whether it gives all matings.
bool is_plan(const Uses& uses, const Selection& selection) {
  std::int64_t given[2] = {0, 0};
  for (std::int32_t i = 1; i <= selection.candidates.ncands; ++i)
    given[selection.candidates.is_male(i) ? 0 : 1] += uses(i);
  return given[0] == selection.nmatings && given[1] == selection.nmatings;
}

// By animal: its relationship to itself less the mean of all candidates' relationships.
Table<double> own_parts(const Relationship& relationship, const Candidates& candidates) {
  const double n = candidates.ncands;
  double trace = 0.0, below = 0.0;  // the diagonal
  for (std::int32_t row = 1; row <= relationship.nnrm; ++row) {
    trace += nrmelement(relationship, row, row);
    for (std::int32_t column = 1; column < row; ++column)
      below += nrmelement(relationship, row, column);
  }
  Table<double> own(relationship.nrm_id.size(), 0.0);
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    const std::int32_t animal = candidates.cands(i), row = relationship.nrm_id(animal);
    own(animal) = nrmelement(relationship, row, row) - (trace + 2.0 * below) / (n * n);
  }
  return own;
}

}  // namespace

double Reach::share(double value) const {
  if (value >= bound - kSame * std::abs(bound - base) - slack) return 1.0;
  if (!(bound - slack > base)) return kNaN;
  return std::max(0.0, (value - base) / (bound - base));
}

Possible::Possible(const Selection& selection, const Relationship& relationship,
                   const Pedigree& pedigree)
    : selection_(selection), rows_(relationship, selection.candidates) {
  const Uses start = greedy_uses({selection, relationship, {}}, {1.0, 0.0}, rows_);
  if (!is_plan(start, selection)) return;
  if (relationship.pedsource) {
    const WholeMatings whole = whole_matings(selection, own_variances(pedigree));
    relaxation_ = std::make_unique<Relaxation>(selection, rows_, whole, 0.0);
    average_ = std::make_unique<Relaxation>(selection, rows_, whole, 0.0);
  } else {
    const Candidates& candidates = selection.candidates;
    relaxation_ = std::make_unique<Relaxation>(selection, rows_, whole_matings(selection, {}),
                                               shift_to_definite(relationship, candidates));
    average_ = std::make_unique<Relaxation>(
        selection, rows_, whole_matings(selection, own_parts(relationship, candidates)), 0.0);
  }
  curve_ = std::make_unique<BestPossible>(*relaxation_, start);
}

// Matings of a plan in parts by the criterion of merit.
double Possible::merit(const PartMatings& matings) const {
  const Candidates& candidates = selection_.candidates;
  double merit = 0.0;
  for (std::int32_t i = 1; i <= candidates.ncands; ++i)
    merit += matings[static_cast<std::size_t>(i)] * candidates.merit(i);
  return merit / static_cast<double>(2 * std::int64_t{selection_.nmatings});
}

// All candidates, in proportion to the most matings that a plan may give them beyond the fewest.
PartMatings Possible::all_alike() const {
  const Candidates& candidates = selection_.candidates;
  const WholeMatings& whole = relaxation_->whole();
  double places[2] = {0.0, 0.0}, left[2];
  left[0] = left[1] = selection_.nmatings;
  PartMatings matings(static_cast<std::size_t>(candidates.ncands) + 1, 0.0);
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    const std::size_t sex = candidates.is_male(i) ? 0 : 1;
    left[sex] -= whole.fewest(i);
    places[sex] += whole.largest(i) - whole.fewest(i);
  }
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    const std::size_t sex = candidates.is_male(i) ? 0 : 1;
    const double beyond = whole.largest(i) - whole.fewest(i);
    matings[static_cast<std::size_t>(i)] =
        whole.fewest(i) + (left[sex] > 0.0 ? beyond * left[sex] / places[sex] : 0.0);
  }
  return matings;
}

Reach Possible::reach_by_merit() {
  const Goal& goal = selection_.goal;
  Reach reach{merit(all_alike()), merit(curve_->most_merit().matings), 0.0};
  reach.slack = kRounding * (std::abs(reach.bound) + std::abs(goal.mean_merit[0]) +
                             std::abs(goal.mean_merit[1]));
  reach.bound += reach.slack;
  return reach;
}

std::optional<Reach> Possible::reach(const Objective& objective) {
  const bool constrains = objective.criterion == Criterion::kConstraint;
  const Weights weights =
      constrains ? Weights{1.0, 0.0} : Weights{objective.w_merit, objective.w_relationship};
  if (!is_any() || weights.relationship > 0.0) return std::nullopt;
  Reach reach;
  if (objective.criterion == Criterion::kMerit) {
    reach = reach_by_merit();
  } else {
    reach.bound = constrains ? curve_->bound_under(objective.constraint, objective.breach, kSlack)
                             : curve_->bound(weights);
    average_->start(all_alike());
    const RelaxedPlan all = average_->value(weights);
    reach.base = all.value;
    reach.slack = 2.0 * all.slack;
  }
  if (!std::isfinite(reach.base) || !std::isfinite(reach.bound)) return std::nullopt;
  return reach;
}

}  // namespace qob
