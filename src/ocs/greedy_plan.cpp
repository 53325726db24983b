#include "ocs/greedy_plan.h"

#include <cmath>
#include <utility>

#include "ocs/allowances.h"
#include "ocs/kernels/plan_in_making.h"

namespace qob {
namespace {

// The least weight on relationship, against 1 on merit, that a constraint may need.
constexpr double kLeastWeight = 1.0e-3;
constexpr int kHalvings = 40;

class GreedyPlan {
 public:
  GreedyPlan(const Problem& problem, const Weights& weights, RowCache& rows)
      : candidates_(problem.selection.candidates),
        weights_(weights),
        plan_(problem, rows),
        left_{problem.selection.nmatings, problem.selection.nmatings} {
    for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
      const std::int32_t least = problem.selection.least(i);
      if (least == 0) continue;
      plan_.add(i, least);
      left_[sex_of(i)] -= least;
    }
  }

  const PlanInMaking& make() {
    for (std::int32_t i = best(); i != 0; i = best()) {
      plan_.add(i, plan_.unit(i));
      left_[sex_of(i)] -= plan_.unit(i);
    }
    return plan_;
  }

 private:
  int sex_of(std::int32_t i) const { return candidates_.is_male(i) ? 0 : 1; }

  // The candidate that gains most by another unit; the lowest-numbered of equal ones, 0 if none may
  // have one.
  std::int32_t best() const {
    std::int32_t found = 0;
    double most = 0.0;
    for (std::int32_t i = 1; i <= candidates_.ncands; ++i) {
      if (left_[sex_of(i)] < plan_.unit(i) || !plan_.has_room(i)) continue;
      const Worth change = plan_.addition(i);
      const double gain =
          weights_.scaled_merit * change.scaled_merit + weights_.relationship * change.relationship;
      // Units of a sex differ in size only from those of the other, of which none is left out.
      if (found != 0 && !(gain > most)) continue;
      found = i;
      most = gain;
    }
    return found;
  }

  const Candidates& candidates_;
  Weights weights_;
  PlanInMaking plan_;
  std::int32_t left_[2];  // rows without a parent, by sex
};

void pair_at_random(const Selection& selection, Mateset plan, Random& random) {
  for (std::int64_t j = selection.free_rows(); j > 1; --j)
    std::swap(plan.female(j), plan.female(random.ceiling_of_draw(j)));
}

}  // namespace

Uses greedy_uses(const Problem& problem, const Weights& weights, RowCache& rows) {
  return GreedyPlan(problem, weights, rows).make().uses();
}

Weights greedy_weights(const Problem& problem, RowCache& rows) {
  const Objective& objective = problem.objective;
  if (objective.criterion == Criterion::kMerit) return {1.0, 0.0};
  if (objective.criterion != Criterion::kConstraint)
    return {objective.w_merit, objective.w_relationship};
  const auto keeps = [&](double weight) {
    return GreedyPlan(problem, {1.0, -weight}, rows).make().worth().relationship <=
           objective.constraint;
  };
  if (keeps(0.0)) return {1.0, 0.0};
  double breaks = kLeastWeight, keeping = objective.breach;
  for (int k = 0; k < kHalvings; ++k) {
    const double middle = std::sqrt(breaks * keeping);
    (keeps(middle) ? keeping : breaks) = middle;
  }
  return {1.0, -keeping};
}

bool greedy_plan(const Problem& problem, RowCache& rows, Random& random, Mateset plan) {
  const Uses uses = greedy_uses(problem, greedy_weights(problem, rows), rows);
  if (!problem.selection.enter(uses, plan)) return false;
  pair_at_random(problem.selection, plan, random);
  return true;
}

}  // namespace qob
