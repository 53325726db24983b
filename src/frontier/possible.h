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
  double base = 0.0;   // of using all candidates in proportion to their mating limits
  double bound = 0.0;  // no plan exceeds it

  // How much of the way from the base to the bound a value has come, 0 to 1.
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

  // Under the constraint merit alone counts for the base, which may be beyond the constraint. None
  // where there is no plan, where relationship is to rise, or where a value is no number.
  std::optional<Reach> reach(const Objective& objective);

 private:
  double bound(const Objective& objective);
  double base(const Objective& objective) const;
  double relationship_of_all() const;

  const Selection& selection_;
  const Relationship& relationship_;
  RowCache rows_;
  std::unique_ptr<Relaxation> relaxation_;
  std::unique_ptr<BestPossible> curve_;
};

}  // namespace qob
