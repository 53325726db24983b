// What is possible with a selection: the curve of the best possible, and how much of what any plan
// could reach a plan reaches.
#pragma once

#include <memory>
#include <optional>

#include "frontier/best_possible.h"
#include "ocs/objective.h"
#include "pedigree/pedigree.h"

namespace qob {

// The ends of a scale for the values of plans by one objective.
struct Reach {
  double base = 0.0;   // of using all candidates in proportion to their mating limits, as whole
                       // matings would on average
  double bound = 0.0;  // no plan exceeds it
  double slack = 0.0;  // of the bound: what rounding may have hidden

  // How much of the way from the base to the bound a value has come, 0 to 1. NaN where the base is
  // beyond the bound, as it may be under a constraint.
  double share(double value) const;
};

class Possible {
 public:
  // pedigree: by which the candidates are related, where no file relates them. Selection and
  // relationships must outlive it.
  Possible(const Selection& selection, const Relationship& relationship, const Pedigree& pedigree);

  // Whether there is any plan: in whole units of males, the mating limits may leave no room.
  bool is_any() const { return curve_ != nullptr; }
  // Of a selection with a plan.
  BestPossible& curve() { return *curve_; }

  // For the base under the constraint merit alone counts. None where there is no plan, where
  // relationship is to rise, or where a value is no number.
  std::optional<Reach> reach(const Objective& objective);

 private:
  double merit(const PartMatings& matings) const;
  PartMatings all_alike() const;
  Reach reach_by_merit();

  const Selection& selection_;
  RowCache rows_;
  std::unique_ptr<Relaxation> relaxation_;
  std::unique_ptr<Relaxation> average_;  // values plans in parts as whole matings would on average
  std::unique_ptr<BestPossible> curve_;
};

}  // namespace qob
