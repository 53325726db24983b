// What a search is to make of a selection: one number for each mateset, to be maximised.
#pragma once

#include <string_view>

#include "analysis/relationship.h"
#include "core/parameters.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"

namespace qob {

enum class Criterion { kPenalty, kMerit, kConstraint, kUnknown };

// The criterion that the option `optimise` names, in any case and with blanks around it.
Criterion criterion_of(std::string_view optimise);

struct Objective {
  Criterion criterion = Criterion::kPenalty;
  double w_merit = 0.0;  // weights under the penalty
  double w_relationship = -1.0;
  double constraint = 0.0;  // largest average relationship under the constraint
  double breach = 1000.0;   // what a plan loses there for each unit above it
};

// p: after `initialize_qob`. The constraint is the average relationship at which the predicted rate
// of inbreeding per generation is `dfconstraint`: the rate of a mateset's value solved for its
// relationship.
Objective objective_of(const OCSParameters& p, const Goal& goal);

// What the search maximises, for a legal mateset that is worth so much.
double fitness_of(const Objective& objective, double scaled_merit, double merit,
                  double relationship);

// Whether the goal is a number for this value. A rate of inbreeding that is none would keep every
// constraint.
bool is_number(const Objective& objective, const MatesetValue& value);

// What matesets are judged by, constant during a search.
struct Problem {
  const Selection& selection;
  const Relationship& relationship;
  Objective objective;
};

}  // namespace qob
