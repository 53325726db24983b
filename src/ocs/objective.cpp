#include "ocs/objective.h"

#include <cmath>
#include <string>

#include "core/text.h"

namespace qob {

Criterion criterion_of(std::string_view optimise) {
  const std::string name = option_text(optimise);
  if (name == "penalty") return Criterion::kPenalty;
  if (name == "merit") return Criterion::kMerit;
  if (name == "constraint") return Criterion::kConstraint;
  return Criterion::kUnknown;
}

Objective objective_of(const OCSParameters& p, const Goal& goal) {
  const double constraint =
      (2.0 - goal.last_rel) * p.dfconstraint / goal.last_genint + goal.last_rel;
  return {criterion_of(p.optimise), p.w_merit, p.w_relationship, constraint};
}

double fitness_of(const Objective& objective, double scaled_merit, double merit,
                  double relationship) {
  if (objective.criterion == Criterion::kMerit) return merit;
  if (objective.criterion == Criterion::kPenalty)
    return objective.w_merit * scaled_merit + objective.w_relationship * relationship;
  double fitness = scaled_merit;
  if (relationship > objective.constraint)
    fitness -= (relationship - objective.constraint) * objective.breach;
  return fitness;
}

bool is_number(const Objective& objective, const MatesetValue& value) {
  if (!std::isfinite(value.fitness)) return false;
  return objective.criterion != Criterion::kConstraint ||
         std::isfinite(value.rate + objective.constraint);
}

}  // namespace qob
