#include "frontier/possible.h"

#include <algorithm>
#include <cmath>

#include "frontier/kernels/definiteness.h"
#include "ocs/evaluation.h"

namespace qob {
namespace {

constexpr double kRounding = 1.0e-12;  // of sums, beside their terms
constexpr double kSlack = 1.0e-6;  // of a bound under a constraint, as a share of the curve's range

// Whether it gives all matings.
bool is_plan(const Uses& uses, const Selection& selection) {
  std::int64_t given[2] = {0, 0};
  for (std::int32_t i = 1; i <= selection.candidates.ncands; ++i)
    given[selection.candidates.is_male(i) ? 0 : 1] += uses(i);
  return given[0] == selection.nmatings && given[1] == selection.nmatings;
}

}  // namespace

double Reach::share(double value) const {
  if (value >= bound || !(bound > base)) return 1.0;
  return std::max(0.0, (value - base) / (bound - base));
}

Possible::Possible(const Selection& selection, const Relationship& relationship,
                   const Pedigree& pedigree)
    : selection_(selection),
      relationship_(relationship),
      rows_(relationship, selection.candidates) {
  const Uses start = greedy_uses({selection, relationship, {}}, {1.0, 0.0}, rows_);
  if (!is_plan(start, selection)) return;
  const bool by_pedigree = relationship.pedsource;
  relaxation_ = std::make_unique<Relaxation>(
      selection, rows_,
      whole_matings(selection, by_pedigree ? own_variances(pedigree) : Table<double>()),
      by_pedigree ? 0.0 : shift_to_definite(relationship, selection.candidates));
  curve_ = std::make_unique<BestPossible>(*relaxation_, start);
}

double Possible::bound(const Objective& objective) {
  if (objective.criterion == Criterion::kPenalty)
    return curve_->bound({objective.w_merit, objective.w_relationship});
  if (objective.criterion == Criterion::kConstraint)
    return curve_->bound_under(objective.constraint, objective.breach, kSlack);
  const Candidates& candidates = selection_.candidates;
  const PartMatings& matings = curve_->tangents().front().matings;  // of most merit
  double merit = 0.0, terms = 0.0;
  for (std::int32_t i = 1; i <= candidates.ncands; ++i) {
    const double term = matings[static_cast<std::size_t>(i)] * candidates.merit(i);
    merit += term;
    terms += std::abs(term);
  }
  return (merit + kRounding * terms) / static_cast<double>(2 * std::int64_t{selection_.nmatings});
}

// Of using all candidates in proportion to their mating limits.
double Possible::relationship_of_all() const {
  const Candidates& candidates = selection_.candidates;
  double places[2] = {0.0, 0.0};
  for (std::int32_t i = 1; i <= candidates.ncands; ++i)
    places[candidates.is_male(i) ? 0 : 1] += candidates.max_matings(i);
  Table<double> contributions(candidates.ncands, 0.0);
  for (std::int32_t i = 1; i <= candidates.ncands; ++i)
    contributions(i) = 0.5 * candidates.max_matings(i) / places[candidates.is_male(i) ? 0 : 1];
  return average_relationship(selection_, relationship_, contributions);
}

double Possible::base(const Objective& objective) const {
  if (objective.criterion == Criterion::kConstraint) return 0.0;
  if (objective.criterion == Criterion::kPenalty)
    return objective.w_relationship == 0.0 ? 0.0 : objective.w_relationship * relationship_of_all();
  return 0.5 * (selection_.goal.mean_merit[0] + selection_.goal.mean_merit[1]);
}

std::optional<Reach> Possible::reach(const Objective& objective) {
  const bool wants_relationship =
      objective.criterion == Criterion::kPenalty && objective.w_relationship > 0.0;
  if (!is_any() || wants_relationship) return std::nullopt;
  const Reach reach{base(objective), bound(objective)};
  if (!std::isfinite(reach.base) || !std::isfinite(reach.bound)) return std::nullopt;
  return reach;
}

}  // namespace qob
